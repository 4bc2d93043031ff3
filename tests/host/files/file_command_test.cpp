#include "files/file_commands.h"

#include <tuple>

#include "host/files/file_fixture.h"

namespace torvel::test {
namespace {

class FileCommand : public FileTest {
  protected:
    FileCommand() { session.addCommands(fileCommands()); }

    std::string run(std::vector<RawFlag> flags, std::vector<Value> args = {}) {
        result = Value();
        const Status status = session.call("file", flags, std::move(args), result);
        return status ? "" : status.text();
    }
    static RawFlag on(const char* name) { return {name, {Value(true)}, true}; }
    static RawFlag with(const char* name, const std::string& value) {
        return {name, {Value(value)}, true};
    }
    std::string query(const char* name) {
        EXPECT_EQ(run({on("query"), on(name)}), "");
        return result.isString() ? result.string() : result.truth() ? "true" : "false";
    }
    void make(const char* name) {
        NodeHandle made;
        ASSERT_TRUE(scene().createNode("transform", name, {}, made));
    }

    Value result;
};

TEST_F(FileCommand, SavesUnderANameAndOpensAgain) {
    make("a");
    EXPECT_EQ(query("modified"), "true");
    EXPECT_EQ(run({with("rename", path("x.ma"))}), "");
    EXPECT_EQ(run({on("save"), with("type", "mayaAscii")}), "");
    EXPECT_EQ(query("modified"), "false");
    EXPECT_EQ(query("sceneName"), path("x.ma"));
    EXPECT_EQ(run({on("new")}), "");
    EXPECT_EQ(query("sceneName"), "");
    EXPECT_TRUE(node("a").isNull());
    EXPECT_EQ(run({on("open")}, {Value(path("x.ma"))}), "");
    EXPECT_FALSE(node("a").isNull());
}

TEST_F(FileCommand, UnsavedChangesNeedForce) {
    make("a");
    EXPECT_EQ(run({on("new")}), "Unsaved changes.");
    EXPECT_FALSE(node("a").isNull());
    EXPECT_EQ(run({on("newFile"), on("force")}), "");
    EXPECT_TRUE(node("a").isNull());
    EXPECT_FALSE(scene().timeNode().isNull());
}

TEST_F(FileCommand, RefusesByName) {
    EXPECT_NE(run({on("save")}).find("no name"), std::string::npos);
    EXPECT_NE(run({on("import")}, {Value("x.ma")}).find("No such file"), std::string::npos);
    EXPECT_NE(run({on("exportSelected")}, {Value(path("x.ma"))}).find("Nothing is selected"),
              std::string::npos);
    EXPECT_NE(run({on("reference")}, {Value("x.ma")}).find("'reference' is not supported"),
              std::string::npos);
    EXPECT_NE(run({on("save"), with("type", "mayaBinary")}).find("mayaBinary"), std::string::npos);
    EXPECT_NE(run({on("open")}).find("path"), std::string::npos);
}

// A file with a chain, a shape, a skin-like connection and a shared camera, and a scene with the
// same names.
class Exchange : public FileCommand {
  protected:
    Exchange() {
        write("part.ma",
              "//Maya ASCII 2024 scene\nrequires \"plug\" \"1\";\ncurrentUnit -l meter -a degree;\n"
              "createNode transform -s -n \"persp\";\n\tsetAttr \".tx\" 9;\n"
              "createNode transform -n \"a\";\n\tsetAttr \".tx\" 2;\ncreateNode joint -n \"b\" -p "
              "\"a\";\n"
              "createNode plusMinusAverage -n \"n\";\ncreateNode oddNode -n \"o\";\n\tsetAttr "
              "\".x\" 1;\n"
              "createNode shadingEngine -n \"sg\";\ncreateNode mesh -n \"m\" -p \"|a|b\";\n"
              "connectAttr \"n.o1\" \"b.ty\";\nconnectAttr \"o.out\" \"n.i1[0]\";\n"
              "connectAttr \"m.iog\" \"sg.dsm\" -na;\nconnectAttr \"sg.pa\" "
              "\":renderPartition.st\" -na;\n"
              "// End of part.ma\n");
        EXPECT_EQ(openBody("createNode transform -s -n \"persp\";\ncreateNode transform -n \"a\";\n"
                           "createNode transform -n \"n\";\ncreateNode joint -n \"b\" -p \"n\";\n"),
                  "");
    }
    std::string import(std::vector<RawFlag> flags) {
        flags.push_back(on("import"));
        flags.push_back(on("returnNewNodes"));
        const std::string error = run(std::move(flags), {Value(path("part.ma"))});
        std::string names;
        for (std::size_t i = 0; error.empty() && i < result.list().size(); ++i)
            names += (i ? " " : "") + result.list()[i].string();
        return error + names;
    }
};

TEST_F(Exchange, ImportedNamesGiveWay) {
    const std::tuple<std::vector<RawFlag>, const char*, const char*> cases[] = {
        {{}, "part_a part_a|b m part_n o sg", "part_a"},
        {{with("renamingPrefix", "x")}, "x_a x_a|b x_a|b|m x_n x_o x_sg", "x_a"},
        {{with("namespace", "ns")}, "ns:a ns:b ns:m ns:n ns:o ns:sg", "ns:a"},
        {{with("namespace", "ns")}, "ns1:a ns1:b ns1:m ns1:n ns1:o ns1:sg", "ns1:a"},
        {{with("namespace", "ns"), on("mergeNamespacesOnClash")},
         "ns:a1 ns:a1|ns:b ns:a1|ns:b|ns:m ns:n1 ns:o1 ns:sg1",
         "ns:a1"},
        {{with("renamingPrefix", "y"), on("renameAll")}, "y_a y_b y_m y_n y_o y_sg", "y_a"}};
    for (const auto& [flags, names, top] : cases) {
        EXPECT_EQ(import(flags), names);
        EXPECT_EQ(number(std::string(top) + ".tx"), 200.0);  // the file is in metres
        const NodeHandle joint = scene().node(node(top))->children.front();
        EXPECT_FALSE(scene().source(scene().findPlug(joint, "ty")).isNull());
    }
    EXPECT_EQ(number("persp.tx"), 0.0);
    EXPECT_NE(saved().find("requires \"plug\" \"1\";"), std::string::npos);
    EXPECT_NE(saved().find("currentUnit -l centimeter"), std::string::npos);
    expectStable();
}

TEST_F(Exchange, AFileThatCannotBeReadLeavesTheScene) {
    const std::string before = saved();
    write("part.ma",
          "//Maya ASCII 2024 scene\ncreateNode transform -n \"z\";\n\tsetAttr \".tx\" x;\n");
    EXPECT_NE(import({}).find("part.ma line 3"), std::string::npos);
    EXPECT_EQ(saved(), before);
}

TEST_F(Exchange, ExportTakesWhatFeedsTheSelected) {
    ASSERT_NE(import({}), "");
    const std::string before = saved();
    scene().selection().replace(node("part_a|b"));
    EXPECT_EQ(run({on("exportSelected"), on("force")}, {Value(path("out.ma"))}), "");
    EXPECT_EQ(saved(), before);
    EXPECT_EQ(query("sceneName"), path("in.ma"));
    const std::string out = read(path("out.ma"));
    EXPECT_EQ(out.find("\"n\""), std::string::npos) << out;
    ASSERT_TRUE(openScene(session, path("out.ma")));
    for (const char* name : {"part_a", "part_a|b", "m", "part_n", "o", "sg"})
        EXPECT_FALSE(node(name).isNull()) << name;
    EXPECT_EQ(scene().allConnections().size(), 4u) << out;
    EXPECT_EQ(number("part_a.tx"), 200.0);
    EXPECT_EQ(run({on("exportAll")}, {Value(path("all.ma"))}), "");
    EXPECT_EQ(read(path("all.ma")), saved());
}

TEST_F(FileCommand, AFailedOpenKeepsTheScene) {
    make("a");
    EXPECT_NE(run({on("open"), on("force")}, {Value(path("none.ma"))}).find("No such file"),
              std::string::npos);
    EXPECT_FALSE(node("a").isNull());
}

}  // namespace
}  // namespace torvel::test
