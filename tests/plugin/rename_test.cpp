// What the page of the rename window cannot show: that there is one window, and that it outlives
// the library.

#include <QApplication>
#include <QPushButton>

#include "plugin/fixtures/plugin_scene.h"

namespace torvel::test {

class RenameTest : public PluginScene {
  public:
    /// The one window of that title; null, reported, when there is another count of them.
    QWidget* renameWindow() {
        QWidget* found = nullptr;
        int count = 0;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->windowTitle() == "Rename" && ++count)
                found = window;
        }
        EXPECT_EQ(count, 1);
        return count == 1 ? found : nullptr;
    }
};

TEST_F(RenameTest, ASecondOpeningRaisesTheOneWindow) {
    python("cmds.torvel_renameUI()");
    QWidget* const window = renameWindow();
    python("cmds.torvel_renameUI()");
    EXPECT_EQ(renameWindow(), window);
    EXPECT_TRUE(window->isVisible());
}

// The built library, loaded and unloaded: window and functions stay in the application.
TEST_F(RenameTest, UnloadingLeavesTheWindowWorking) {
    for (const char* name : {"torvel_skeleton", "torvel_renameUI", "torvel_twist", "checkUpdates"})
        session().removePluginCommand(name);
    python("del cmds; import maya.cmds; maya.cmds.loadPlugin('" TORVEL_PLUGIN_PATH "')");
    python(
        "cmds.torvel_renameUI()\n"
        "cmds.textField('tfPrefix', edit=True, text='p_')\n"
        "cmds.unloadPlugin('torvel')\n"
        "cmds.createNode('transform', name='a')");
    EXPECT_FALSE(python("hasattr(cmds, 'torvel_renameUI')").truth());
    QWidget* const window = renameWindow();
    ASSERT_NE(window, nullptr);
    for (QPushButton* button : window->findChildren<QPushButton*>()) {
        if (button->text() == "Add Prefix")
            button->click();
    }
    EXPECT_EQ(selected(), Lines{"|p_a"});
}

}  // namespace torvel::test
