#include "api/plugin_loader.h"

#include <cstdlib>

#include "api/plugin_commands.h"
#include "host/api/api_scene.h"

namespace torvel::test {
namespace {

const std::string kFolder = TEST_PLUGIN_FOLDER;

class PluginLoaderTest : public ApiTest {
  protected:
    void SetUp() override {
        scene.session().addCommands({kPluginCommands, kPluginCommandCount});
        setenv("MAYA_PLUG_IN_PATH", ("/no/such/folder::" + kFolder).c_str(), 1);
    }
    void TearDown() override { unsetenv("MAYA_PLUG_IN_PATH"); }
    bool has(const char* command) { return scene.session().findPluginCommand(command) != nullptr; }
};

TEST_F(PluginLoaderTest, loadsByNameAndRunsItsCommands) {
    EXPECT_EQ(scene.text("loadPlugin", {"api_sample"}), "api_sample");
    EXPECT_EQ(scene.text("sampleEcho", {"hello"}), "hello");
    EXPECT_NE(scene.error("sampleFail"), "ok");
    EXPECT_NE(scene.error("sampleThrow").find("on purpose"), std::string::npos);
}

TEST_F(PluginLoaderTest, infoNamesVendorVersionAndPath) {
    scene.call("loadPlugin", {kFolder + "/api_sample.so"});
    const TestScene::Args name{"api_sample"};
    EXPECT_EQ(scene.text("pluginInfo", name, {flag("query"), flag("vendor")}), "A Vendor");
    EXPECT_EQ(scene.text("pluginInfo", name, {flag("query"), flag("version")}), "1.5");
    EXPECT_EQ(scene.text("pluginInfo", name, {flag("query"), flag("apiVersion")}), "20240200");
    EXPECT_EQ(scene.text("pluginInfo", name, {flag("query"), flag("path")}),
              kFolder + "/api_sample.so");
    EXPECT_EQ(scene.text("pluginInfo", {}, {flag("query"), flag("listPlugins")}), "api_sample");
    EXPECT_FALSE(scene.call("pluginInfo", {"other"}, {flag("query"), flag("loaded")}).truth());
}

TEST_F(PluginLoaderTest, loadingTwiceWarnsAndDoesNothing) {
    scene.call("loadPlugin", {"api_sample"});
    scene.clearLines();
    scene.call("loadPlugin", {"api_sample.so"});
    ASSERT_EQ(scene.lines().size(), 1u);
    EXPECT_EQ(scene.lines()[0].channel, Channel::Warning);
    scene.call("loadPlugin", {"api_sample"}, {flag("quiet")});
    EXPECT_EQ(scene.lines().size(), 1u);
}

TEST_F(PluginLoaderTest, commandsKeptAtUnloadStayCallableAndALaterLoadWorks) {
    scene.call("loadPlugin", {"api_sample"});
    EXPECT_EQ(scene.text("unloadPlugin", {"api_sample"}), "api_sample");
    EXPECT_FALSE(has("sampleFail"));
    EXPECT_EQ(scene.text("sampleEcho", {"still"}), "still");
    EXPECT_NE(scene.error("unloadPlugin", {"api_sample"}), "ok");
    scene.clearLines();
    scene.call("loadPlugin", {"api_sample"});
    EXPECT_TRUE(has("sampleFail"));
    EXPECT_EQ(scene.text("sampleEcho", {"again"}), "again");
    EXPECT_TRUE(scene.lines().empty()) << "the name that is taken fails unseen";
}

TEST_F(PluginLoaderTest, aPluginThatRefusesLeavesNothing) {
    EXPECT_NE(scene.error("loadPlugin", {"api_refusing"}).find("refused to initialise"),
              std::string::npos);
    EXPECT_FALSE(has("refusedCommand"));
    EXPECT_FALSE(
        scene.call("pluginInfo", {"api_refusing"}, {flag("query"), flag("loaded")}).truth());
}

TEST_F(PluginLoaderTest, faultsAreNamed) {
    EXPECT_NE(
        scene.error("loadPlugin", {"api_incomplete"}).find("lacks the symbol uninitializePlugin"),
        std::string::npos);
    EXPECT_NE(scene.error("loadPlugin", {"no_such_plugin"}).find("was not found"),
              std::string::npos);
    EXPECT_NE(scene.error("loadPlugin", {std::string(TORVEL_SOURCE_DIR) + "/LICENSE"})
                  .find("not a loadable library"),
              std::string::npos);
}

TEST_F(PluginLoaderTest, aNewSessionStartsWithoutPlugins) {
    scene.call("loadPlugin", {"api_sample"});
    TestScene other;
    EXPECT_TRUE(Plugins::current().all().empty());
    EXPECT_EQ(other.session().findPluginCommand("sampleEcho"), nullptr);
}

}  // namespace
}  // namespace torvel::test
