// The built library through the host's own loading commands.

#include <dlfcn.h>

#include <sstream>

#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <QAction>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QWidget>

#include "plugin/fixtures/plugin_scene.h"
#include "plugin/fixtures/recorded_page.h"
#include "ui/desktop/main_window.h"

namespace torvel::test {

class EntryTest : public PluginScene {
  public:
    EntryTest() {
        for (const std::string& name : kAll)
            session().removePluginCommand(name);
        passDailyStep();
        load();
    }

    void load() {
        forget();
        python("cmds.loadPlugin('" TORVEL_PLUGIN_PATH "')");
    }
    void unload() {
        forget();
        python("cmds.unloadPlugin('torvel')");
    }

    /// The four commands and one menu, the last of the bar; null, reported, when there is another
    /// count of them.
    QMenu* expectLoaded() {
        EXPECT_EQ(commands(), kAll);
        const auto bar = mainWindow().menuBar()->actions();
        EXPECT_EQ(menuCount(), 1);
        EXPECT_EQ(bar.back()->text(), "Torvel Plugin");
        return bar.back()->menu();
    }
    void expectUnloaded() {
        EXPECT_EQ(commands(), Lines{"checkUpdates"});
        EXPECT_EQ(menuCount(), 0);
    }

    Lines commands() {
        Lines names;
        for (const auto& [name, run] : session().pluginCommands())
            names.push_back(name);
        return names;
    }
    int menuCount() {
        int count = 0;
        for (QAction* action : mainWindow().menuBar()->actions())
            count += action->text() == "Torvel Plugin";
        return count;
    }

    /// Adds what happened, the further lines of a text two blanks deeper.
    void addTranscript(Lines& lines) {
        for (const std::string& entry : transcript()) {
            std::istringstream text(entry);
            std::string deeper;
            for (std::string line; std::getline(text, line); deeper = "  ")
                lines.push_back(deeper + line);
        }
    }

    const Lines kAll{"checkUpdates", "torvel_renameUI", "torvel_skeleton", "torvel_twist"};
};

TEST_F(EntryTest, LoadingAndUnloading) {
    QMenu* menu = expectLoaded();
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(menu->isTearOffEnabled());
    EXPECT_FALSE(python("hasattr(cmds, 'CtrlCreator')").truth());
    Lines items;
    for (QAction* action : menu->actions())
        items.push_back((action->isSeparator() ? "--" : "") + action->text().toStdString());
    EXPECT_EQ(items, (Lines{"Rename", "--Rigging", "Skeleton Configuration", "Twist Bones", "--",
                            "Check for updates"}));
    Lines told;
    addTranscript(told);
    unload();
    finishDeletion();
    expectUnloaded();
    addTranscript(told);
    expectPage("menu_scripts", told);
}

TEST_F(EntryTest, EveryItemDoesItsJob) {
    QMenu* menu = expectLoaded();
    ASSERT_NE(menu, nullptr);
    const auto choose = [&](int item) { menu->actions().at(item)->trigger(); };
    choose(0);
    EXPECT_TRUE(python("cmds.window('torvelRenameWin', exists=True)").truth());
    choose(2);
    EXPECT_EQ(windowsNamed("SkeletonWindow").size(), 1u);
    choose(3);
    EXPECT_EQ(windowsNamed("TwistWindow").size(), 1u);
    forget();
    choose(5);
    bool answered = !messages().empty();
    for (QDialog* dialog : mainWindow().findChildren<QDialog*>())
        answered = answered || dialog->windowTitle() == "Versión del Plugin";
    EXPECT_TRUE(answered) << "with or without a server on this machine";
    EXPECT_EQ(languageErrors(), 0);
}

TEST_F(EntryTest, LoadingAgainBringsEverythingBack) {
    for (std::size_t round = 1; round <= 3; ++round) {
        finishDeletion();
        expectLoaded();
        python("cmds.torvel_skeleton()");
        ASSERT_EQ(toolWindows().size(), round);
        EXPECT_STREQ(toolWindows()[0]->metaObject()->className(), "SkeletonWindow");
        unload();
        EXPECT_EQ(commands(), Lines{"checkUpdates"});
        load();
    }
    load();
    EXPECT_EQ(scripts(), Lines{}) << "what is loaded stays as it is";
    expectLoaded();
}

TEST_F(EntryTest, InitialisingTwiceReplacesTheMenu) {
    void* library = dlopen(TORVEL_PLUGIN_PATH, RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr);
    using Entry = MStatus (*)(MObject);
    void* symbol = dlsym(library, "initializePlugin");
    ASSERT_NE(symbol, nullptr);
    EXPECT_TRUE(reinterpret_cast<Entry>(symbol)(MObject()));
    finishDeletion();
    expectLoaded();
    dlclose(library);
}

}  // namespace torvel::test
