#include <QCheckBox>
#include <QPointer>

#include "plugin/fixtures/plugin_scene.h"
#include "plugin/fixtures/window_page.h"
#include "ui/desktop/main_window.h"

namespace torvel::test {

using WindowTest = PluginScene;

TEST_F(WindowTest, EveryWidgetAsItsPageShows) {
    expectWindowPage(openTool(), "skeleton");
    EXPECT_EQ(messages(), Lines{}) << "no handler runs before the first click";
}

TEST_F(WindowTest, AHundredWindowsEndWhenClosed) {
    for (int i = 0; i < 100; ++i) {
        QPointer<QWidget> window = openTool();
        ASSERT_FALSE(window.isNull());
        window->close();
        finishDeletion();
        ASSERT_TRUE(window.isNull()) << i;
    }
    EXPECT_TRUE(toolWindows().empty());
    EXPECT_TRUE(mainWindow().findChildren<QWidget*>("SkeletonWindow").isEmpty());
}

TEST_F(WindowTest, TwoWindowsAreIndependent) {
    QWidget* first = openTool();
    QWidget* second = openTool();
    ASSERT_NE(first, second);
    EXPECT_EQ(toolWindows().size(), 2u);
    check(first, "cBox_allHierarchy", true);
    EXPECT_FALSE(second->findChild<QCheckBox*>("cBox_allHierarchy")->isChecked());
    QPointer<QWidget> kept = second;
    first->close();
    finishDeletion();
    EXPECT_FALSE(kept.isNull());
}

TEST_F(WindowTest, NoMainWindowGivesAPlainWindow) {
    auto* const desktop = session().mainWindow;
    session().mainWindow = nullptr;
    QPointer<QWidget> window = openTool();
    session().mainWindow = desktop;
    ASSERT_FALSE(window.isNull());
    EXPECT_EQ(window->parentWidget(), nullptr);
    EXPECT_TRUE(window->isVisible());
    window->close();
    finishDeletion();
    EXPECT_TRUE(window.isNull());
}

}  // namespace torvel::test
