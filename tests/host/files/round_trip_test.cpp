#include <algorithm>
#include <cstdlib>

#include "host/files/file_fixture.h"

namespace torvel::test {
namespace {

using RoundTrip = FileTest;

TEST_F(RoundTrip, AnEmptySceneOpensAgain) {
    expectStable("empty");
}

TEST_F(RoundTrip, TheSceneOpensOnlyAfterItWasSavedWithTheSameText) {
    ASSERT_EQ(
        openBody(
            "requires -nodeType \"x\" \"plug\" \"1.0\";\nfileInfo \"osv\" \"a \\\"b\\\"\\n\";\n"
            "createNode transform -n \"a\";\n\tsetAttr \".r\" -type \"double3\" 12.345678901234567 "
            "-1e-17 0 ;\n"
            "\tsetAttr -k off \".sx\";\n\tsetAttr -cb on \".tx\";\n"),
        "");
    const std::string text = saved();
    EXPECT_NE(text.find("requires -nodeType \"x\" \"plug\" \"1.0\";\n"), std::string::npos);
    EXPECT_NE(text.find("fileInfo \"osv\" \"a \\\"b\\\"\\n\";\n"), std::string::npos);
    EXPECT_NE(text.find("setAttr \".r\" -type \"double3\" 12.345678901234567 "), std::string::npos)
        << text;
    EXPECT_NE(text.find("setAttr -k off \".sx\";\n"), std::string::npos) << text;
    EXPECT_NE(text.find("setAttr -cb on \".tx\";\n"), std::string::npos);
    expectStable();
}

TEST_F(RoundTrip, NodesMadeHereComeBackWithTheirValues) {
    NodeHandle a, b;
    ASSERT_TRUE(scene().createNode("transform", "a", {}, a));
    ASSERT_TRUE(scene().createNode("joint", "b", a, b));
    AttrInfo info;
    info.longName = "mode";
    info.type = AttrType::Enum;
    info.flags = kKeyable;
    info.enumNames = {"off", "on", "auto"};
    AttrIndex made;
    ASSERT_TRUE(scene().addAttribute(a, info, kNoAttr, made));
    scene().setNumber(Plug(a, made), 2.0);
    scene().setVec3(scene().findPlug(b, "rotate"), V3d(0.1, 0.2, 0.3));
    ASSERT_TRUE(scene().connect(scene().findPlug(a, "tx"), scene().findPlug(b, "tx")));
    ASSERT_TRUE(saveScene(scene(), path("made.ma")));
    ASSERT_TRUE(openScene(session, path("made.ma")));
    EXPECT_EQ(number("a.mode"), 2.0);
    EXPECT_EQ(scene().info(plug("a.mode")).enumNames.size(), 3u);
    EXPECT_TRUE(scene().isKeyable(plug("a.mode")));
    EXPECT_NEAR(number("b.rotateY"), 0.2, 1e-15);
    EXPECT_EQ(scene().source(plug("b.tx")), plug("a.tx"));
    expectStable();
}

// Scenes of the user's own collection, when the environment names a folder of them.
TEST_F(RoundTrip, ScenesOfTheRigFolderAreStable) {
    const char* rigs = std::getenv("TORVEL_RIGS");
    if (!rigs || !std::filesystem::is_directory(rigs))
        GTEST_SKIP() << "TORVEL_RIGS names no folder";
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(rigs))
        if (entry.path().extension() == ".ma")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& file : files) {
        const std::string name = file.filename().string();
        const Status status = openScene(session, file.string());
        EXPECT_TRUE(status) << status.text();
        if (!status)
            continue;
        const std::size_t nodes = scene().nodeCount();
        const std::size_t connections = scene().allConnections().size();
        expectStable(name);
        EXPECT_EQ(scene().nodeCount(), nodes) << name;
        EXPECT_EQ(scene().allConnections().size(), connections) << name;
    }
    RecordProperty("scenes", static_cast<int>(files.size()));
}

}  // namespace
}  // namespace torvel::test
