// The built library through the host's own loading commands.

#include <dlfcn.h>

#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <QAction>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QWidget>

#include "plugin/fixtures/plugin_scene.h"
#include "ui/desktop/main_window.h"

namespace torvel::test {

class EntryTest : public PluginScene {
  public:
    EntryTest() {
        for (const std::string& name : kAll)
            session().removePluginCommand(name);
        passDailyStep();
    }

    void load() {
        forget();
        python("cmds.loadPlugin('" TORVEL_PLUGIN_PATH "')");
    }
    void unload() {
        forget();
        python("cmds.unloadPlugin('torvel')");
    }
    Lines commands() {
        Lines names;
        for (const auto& [name, run] : session().pluginCommands())
            names.push_back(name);
        return names;
    }
    std::vector<QMenu*> menus() {
        std::vector<QMenu*> found;
        for (QAction* action : mainWindow().menuBar()->actions()) {
            if (action->text() == "Torvel Plugin")
                found.push_back(action->menu());
        }
        return found;
    }

    const Lines kAll{"checkUpdates", "torvel_renameUI", "torvel_skeleton", "torvel_twist"};
};

TEST_F(EntryTest, LoadingBringsFourCommandsAndOneMenu) {
    load();
    EXPECT_EQ(messages(), Lines{"info: Plugin has been initialized"});
    EXPECT_EQ(commands(), kAll);
    ASSERT_EQ(menus().size(), 1u);
    EXPECT_EQ(mainWindow().menuBar()->actions().back()->text(), "Torvel Plugin");
    EXPECT_TRUE(menus()[0]->isTearOffEnabled());
    EXPECT_FALSE(python("hasattr(cmds, 'CtrlCreator')").truth());
}

TEST_F(EntryTest, TheMenuFromTopToBottom) {
    load();
    ASSERT_EQ(menus().size(), 1u);
    Lines items;
    for (QAction* action : menus()[0]->actions()) {
        const std::string text = action->text().toStdString();
        items.push_back(action->isSeparator() ? "--" + text : text);
    }
    EXPECT_EQ(items, (Lines{"Rename", "--Rigging", "Skeleton Configuration", "Twist Bones", "--",
                            "Check for updates"}));
}

TEST_F(EntryTest, AnItemOpensItsTool) {
    load();
    ASSERT_EQ(menus().size(), 1u);
    menus()[0]->actions().at(2)->trigger();
    ASSERT_EQ(toolWindows().size(), 1u);
    EXPECT_STREQ(toolWindows()[0]->metaObject()->className(), "SkeletonWindow");
}

TEST_F(EntryTest, EveryItemDoesItsJob) {
    load();
    ASSERT_EQ(menus().size(), 1u);
    const auto choose = [this](int item) { menus()[0]->actions().at(item)->trigger(); };
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

TEST_F(EntryTest, UnloadingLeavesOneCommand) {
    load();
    unload();
    finishDeletion();
    EXPECT_EQ(messages(), Lines{"info: Plugin has been uninitialized!"});
    EXPECT_EQ(commands(), Lines{"checkUpdates"});
    EXPECT_TRUE(menus().empty());
}

TEST_F(EntryTest, LoadingAgainBringsEverythingBack) {
    for (int round = 0; round < 3; ++round) {
        load();
        finishDeletion();
        EXPECT_EQ(commands(), kAll);
        EXPECT_EQ(menus().size(), 1u);
        python("cmds.torvel_skeleton()");
        EXPECT_EQ(toolWindows().size(), static_cast<std::size_t>(round + 1));
        unload();
        EXPECT_EQ(commands(), Lines{"checkUpdates"});
    }
}

TEST_F(EntryTest, LoadingWhatIsLoadedDoesNothing) {
    load();
    forget();
    python("cmds.loadPlugin('" TORVEL_PLUGIN_PATH "')");
    EXPECT_EQ(scripts(), Lines{});
    EXPECT_EQ(menus().size(), 1u);
    EXPECT_EQ(commands(), kAll);
}

TEST_F(EntryTest, InitialisingTwiceReplacesTheMenu) {
    load();
    void* library = dlopen(TORVEL_PLUGIN_PATH, RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr);
    using Entry = MStatus (*)(MObject);
    void* symbol = dlsym(library, "initializePlugin");
    ASSERT_NE(symbol, nullptr);
    EXPECT_TRUE(reinterpret_cast<Entry>(symbol)(MObject()));
    finishDeletion();
    EXPECT_EQ(menus().size(), 1u);
    EXPECT_EQ(commands(), kAll);
    dlclose(library);
}

TEST_F(EntryTest, TheMenuScriptRunsQuietly) {
    load();
    ASSERT_EQ(scripts().size(), 1u);
    EXPECT_EQ(scripts()[0],
              "python plain: from maya import cmds\n"
              "cmds.setParent('MayaWindow')\n"
              "if cmds.menu('TorvelPlugin', exists=True):\n"
              "    cmds.deleteUI('TorvelPlugin', menu=True)\n"
              "cmds.menu('TorvelPlugin', label='Torvel Plugin', tearOff=True)\n"
              "cmds.menuItem(label='Rename', command='cmds.torvel_renameUI()')\n"
              "cmds.menuItem(dividerLabel='Rigging', divider=True)\n"
              "cmds.menuItem(label='Skeleton Configuration', command='cmds.torvel_skeleton()')\n"
              "cmds.menuItem(label='Twist Bones', command='cmds.torvel_twist()')\n"
              "cmds.menuItem(divider=True)\n"
              "cmds.menuItem(label='Check for updates', command='cmds.checkUpdates()')\n");
    unload();
    EXPECT_EQ(scripts(), Lines{"python plain: import maya.cmds as cmds\n"
                               "if cmds.menu('TorvelPlugin', exists=True):\n"
                               "    cmds.deleteUI('TorvelPlugin')\n"});
}

}  // namespace torvel::test
