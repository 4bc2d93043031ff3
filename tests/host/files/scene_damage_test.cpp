#include <algorithm>
#include <cstdlib>

#include "host/files/file_fixture.h"

namespace torvel::test {
namespace {

const char* const kWhole =
    "//Maya ASCII 2024 scene\n"
    "requires maya \"2024\";\n"
    "currentUnit -l centimeter -a degree -t film;\n"
    "fileInfo \"application\" \"maya\";\n"
    "createNode transform -n \"top\";\n"
    "\trename -uid \"0000\";\n"
    "\taddAttr -ci true -sn \"w\" -ln \"weight\" -at \"double\";\n"
    "\tsetAttr \".t\" -type \"double3\" 1 2 3 ;\n"
    "\tsetAttr -s 2 \".unknown[0:1]\" 1 2;\n"
    "createNode joint -n \"j\" -p \"top\";\n"
    "select -ne :time1;\n"
    "\tsetAttr \".o\" 1;\n"
    "connectAttr \"top.w\" \"j.tx\";\n"
    "relationship \"link\" \":a\" \":b.message\" \":c.message\";\n"
    "// End of x.ma\n";

class Damage : public FileTest {
  protected:
    // Whatever goes wrong, the scene from before must be there, as it was.
    Damage() {
        NodeHandle made;
        EXPECT_TRUE(scene().createNode("transform", "former", {}, made));
        scene().setNumber(scene().findPlug(made, "tx"), 5.0);
        former = made;
        before = saved();
    }

    void expectFormer(const std::string& what) {
        EXPECT_TRUE(scene().isValid(former)) << what;
        EXPECT_EQ(saved(), before) << what;
    }

    void expectFailure(const std::string& body, const std::string& line, const std::string& part) {
        const std::string error = openBody(body);
        EXPECT_EQ(error.substr(0, error.find(':')), "in.ma line " + line) << error;
        EXPECT_NE(error.find(part), std::string::npos) << error;
        expectFormer(body);
    }

    NodeHandle former;
    std::string before;
};

TEST_F(Damage, CutAnywhereInsideAStatementIsToldWithItsLine) {
    const std::string whole = kWhole;
    const std::size_t last = whole.rfind(';');
    for (std::size_t length = std::string("//Maya ASCII").size(); length <= last; ++length) {
        const std::string part = whole.substr(0, length);
        const std::size_t content = part.find_last_not_of(" \t\n");
        const bool between = part[content] == ';' || part.rfind('\n', content) == std::string::npos;
        const std::string error = open(part);
        if (between) {
            EXPECT_EQ(error, "") << part;
            EXPECT_NE(told.find("no end line"), std::string::npos) << part;
            told.clear();
            newScene(session);
            NodeHandle made;
            ASSERT_TRUE(scene().createNode("transform", "former", {}, made));
            scene().setNumber(scene().findPlug(made, "tx"), 5.0);
            former = made;
            before = saved();
        } else {
            EXPECT_NE(error.find("in.ma line "), std::string::npos) << part;
            EXPECT_NE(error.find("the file ends inside a statement"), std::string::npos) << error;
            expectFormer(part);
        }
    }
}

// A saved file that ends between two statements lacks its end line only; a text written by hand may
// lack it.
TEST_F(Damage, ASavedFileCutBetweenStatementsIsRefused) {
    const std::string whole = saved();
    ASSERT_NE(whole.find("//Codeset:"), std::string::npos);
    int cuts = 0;
    for (std::size_t at = whole.find(";\n"); at != std::string::npos;
         at = whole.find(";\n", at + 1), ++cuts) {
        const std::string part = whole.substr(0, at + 2);
        const std::string lines = std::to_string(std::count(part.begin(), part.end(), '\n') + 1);
        EXPECT_EQ(open(part), "in.ma line " + lines + ": the file has no end line; it was cut off");
        expectFormer(part);
    }
    EXPECT_GE(cuts, 4);
    EXPECT_EQ(open(whole), "");
}

TEST_F(Damage, ASuccessfulOpenEndsTheFormerScene) {
    ASSERT_EQ(open(kWhole), "");
    EXPECT_FALSE(scene().isValid(former));
    EXPECT_TRUE(node("former").isNull());
    EXPECT_EQ(number("j.tx"), 0.0);
}

TEST_F(Damage, FilesThatAreNoScenesAreRefused) {
    EXPECT_NE(openScene(session, path("missing.ma")).text().find("No such file"),
              std::string::npos);
    EXPECT_NE(openScene(session, folder.string()).text().find("folder"), std::string::npos);
    EXPECT_NE(open("").find("no Maya ASCII scene"), std::string::npos);
    EXPECT_NE(open("import os\n").find("no Maya ASCII scene"), std::string::npos);
    EXPECT_NE(open(std::string("FOR8\0\0\0\x10", 8)).find("binary"), std::string::npos);
    EXPECT_NE(open(std::string("//Maya ASCII\ncreateNode\0 x;", 26)).find("binary"),
              std::string::npos);
    expectFormer("no scene");
}

TEST_F(Damage, DamagedLinesAreToldWithTheirNumber) {
    const std::string node = "createNode transform -n \"a\";\n";
    expectFailure(node + "\tsetAttr \".tx\" 1x;\n", "3", "'x'");
    expectFailure(node + "\tsetAttr \".ro\" nan;\n", "3", "a number was expected, not 'nan'");
    expectFailure(node + "\tsetAttr \".ro\" -inf;\n", "3", "a number was expected, not '-inf'");
    expectFailure(node + "\tsetAttr -nan \".tx\" 1;\n\tsetAttr \".t[nan]\" 1;\n", "4", "malformed");
    expectFailure(node + "\tsetAttr \".tx\" 1e999;\n", "3", "a number was expected, not '1e999'");
    expectFailure(node + "\tsetAttr \".t\" -type \"double3\" 1e999 1 0;\n", "3",
                  "a number was expected");
    expectFailure(node + "createNode mesh -n \"s\" -p \"a\";\n\tsetAttr \".vt[0]\" 1e999 0 0;\n",
                  "4", "a number is missing at element 0");
    expectFailure(node + "\tsetAttr \".t\" -type \"double3\" 1 2;\n", "3", "a number was expected");
    expectFailure(node + "\tsetAttr \".t\" -type \"double3\" 1 2 3 4;\n", "3", "more values");
    expectFailure(node + "\tsetAttr .tx 1;\n", "3", "in quotes");
    expectFailure(node + "\tsetAttr \".t[\" 1;\n", "3", "malformed");
    expectFailure(node + "\nse@#ttr \".tx\" 1;\n", "4", "no statement of a scene file");
    expectFailure(node + "createNode joint -n;\n", "3", "createNode");
    expectFailure(node + "connectAttr \"a.tx\";\n", "3", "two attribute names");
}

TEST_F(Damage, AMissingSemicolonIsToldWithItsLine) {
    const char* const before[] = {"setAttr \".unknown\" -type \"x\" 1 2",
                                  "setAttr \".v\"",
                                  "fileInfo \"a\" \"b\"",
                                  "select -ne :time1",
                                  "lockNode -l 1",
                                  "rename -uid \"1\"",
                                  "relationship \"link\" \":a\"",
                                  "setAttr \".unknown\" -type \"string\" \"a\nb\\\"\""};
    for (const std::string text : before) {
        const int lines = static_cast<int>(std::count(text.begin(), text.end(), '\n'));
        expectFailure("createNode transform -n \"a\";\n" + text + "\n\n\tsetAttr \".tx\" 1;\n",
                      std::to_string(3 + lines), "';' is missing");
    }
    EXPECT_EQ(openBody("createNode script -n \"s\";\n\tsetAttr \".b\" -type \"string\" \"a\n"
                       "setAttr b\"\n;\n\tsetAttr \".q\" -type \"d\" a\nsetAttributes 1;\n"),
              "");
}

TEST_F(Damage, HugeIndicesCostNoMemory) {
    const std::string nodes =
        "createNode transform -n \"a\";\ncreateNode mesh -n \"s\" -p \"a\";\n";
    expectFailure(nodes + "\tsetAttr \".vt[4000000000]\" 1 2 3;\n", "4", "index out of range");
    expectFailure(nodes + "\tsetAttr \".vt[0:4000000000]\" 1 2 3;\n", "4", "index out of range");
    expectFailure(nodes + "\tsetAttr \".vt[0:2000000000]\" 1 2 3;\n", "4", "missing at element 1");
    expectFailure("createNode skinCluster -n \"s\";\n\tsetAttr \".wl[1000000000].w[0]\" 1;\n", "3",
                  "out of range");
    expectFailure(nodes + "connectAttr \"a.tx\" \"s.vt[4000000000]\";\n", "4",
                  "index out of range in 's.vt[4000000000]'");
    expectFailure(nodes + "connectAttr \"a.notes[4000000000]\" \"a.ty\";\n", "4",
                  "index out of range");
    expectFailure(
        "createNode transform -n \"a\";\n\taddAttr -m -ln \"d\" -at \"double\";\n"
        "\tsetAttr \".d[0:2000000000]\" 1 2;\n",
        "4", "a number was expected");
}

TEST_F(Damage, CyclesOfParentsAreRefused) {
    expectFailure(
        "createNode transform -n \"a\" -p \"b\";\ncreateNode transform -n \"b\" -p \"a\";\n", "2",
        "the parent 'b'");
    expectFailure("createNode transform -n \"a\" -p \"a\";\n", "2", "the parent 'a'");
    expectFailure(
        "createNode transform -n \"a\";\ncreateNode transform -n \"b\" -p \"a\";\n"
        "parent -s -nc -r -add \"|a\" \"b\" ;\n",
        "4", "parent");
    expectFailure(
        "createNode transform -n \"a\";\ncreateNode transform -n \"b\" -p \"a\";\n"
        "parent \"|a\" \"|a|b\" ;\n",
        "4", "parent");
}

TEST_F(Damage, NothingOfAFileIsRun) {
    expectFailure("python(\"open('x','w')\");\n", "2", "nothing of it was run");
    expectFailure("eval \"system touch x\";\n", "2", "nothing of it was run");
    expectFailure("createNode transform -n \"a\"; global proc f() { print 1; }\n", "2",
                  "nothing of it was run");
}

}  // namespace
}  // namespace torvel::test
