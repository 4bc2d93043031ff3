#include "files/file_commands.h"

#include "host/files/file_fixture.h"

namespace torvel::test {
namespace {

class FileCommand : public FileTest {
  protected:
    FileCommand() { session.addCommands(fileCommands().rows, fileCommands().count); }

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
    EXPECT_NE(run({on("import")}, {Value("x.ma")}).find("'import' is not supported"),
              std::string::npos);
    EXPECT_NE(run({on("reference")}, {Value("x.ma")}).find("'reference' is not supported"),
              std::string::npos);
    EXPECT_NE(run({on("save"), with("type", "mayaBinary")}).find("mayaBinary"), std::string::npos);
    EXPECT_NE(run({on("open")}).find("path"), std::string::npos);
}

TEST_F(FileCommand, AFailedOpenKeepsTheScene) {
    make("a");
    EXPECT_NE(run({on("open"), on("force")}, {Value(path("none.ma"))}).find("No such file"),
              std::string::npos);
    EXPECT_FALSE(node("a").isNull());
}

}  // namespace
}  // namespace torvel::test
