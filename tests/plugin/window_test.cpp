#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QPointer>
#include <QWidget>

#include "plugin/fixtures/plugin_scene.h"
#include "plugin/fixtures/window_page.h"
#include "ui/desktop/main_window.h"

namespace torvel::test {

class WindowTest : public PluginScene {
  public:
    Lines checkedRadios(QWidget* window) {
        Lines names;
        for (const char* name :
             {"rad_primX", "rad_primY", "rad_primZ", "rad_secX", "rad_secY", "rad_secZ"}) {
            if (window->findChild<QAbstractButton*>(name)->isChecked())
                names.push_back(name);
        }
        return names;
    }
};

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
    press(first, "rad_primZ");
    check(first, "cBox_allHierarchy", true);
    EXPECT_EQ(checkedRadios(first), (Lines{"rad_primZ", "rad_secY"}));
    EXPECT_EQ(checkedRadios(second), (Lines{"rad_primX", "rad_secY"}));
    EXPECT_FALSE(second->findChild<QCheckBox*>("cBox_allHierarchy")->isChecked());
    QPointer<QWidget> kept = second;
    first->close();
    finishDeletion();
    EXPECT_FALSE(kept.isNull());
}

TEST_F(WindowTest, RadiosExcludeEachOtherWithinTheirFrame) {
    QWidget* window = openTool();
    press(window, "rad_primZ");
    EXPECT_EQ(checkedRadios(window), (Lines{"rad_primZ", "rad_secY"}));
    press(window, "rad_secX");
    EXPECT_EQ(checkedRadios(window), (Lines{"rad_primZ", "rad_secX"}));
}

TEST_F(WindowTest, AClashMovesTheSecondaryAxisOn) {
    QWidget* window = openTool();
    press(window, "rad_primY");
    EXPECT_EQ(checkedRadios(window), (Lines{"rad_primY", "rad_secZ"}));
    press(window, "rad_primZ");
    EXPECT_EQ(checkedRadios(window), (Lines{"rad_primZ", "rad_secX"}));
    press(window, "rad_primX");
    EXPECT_EQ(checkedRadios(window), (Lines{"rad_primX", "rad_secY"}));
    press(window, "rad_secX");
    EXPECT_EQ(checkedRadios(window), (Lines{"rad_primX", "rad_secY"}));
}

TEST_F(WindowTest, NoPairOfEqualAxesSurvives) {
    QWidget* window = openTool();
    const char* const axes[] = {"X", "Y", "Z"};
    for (const char* primary : axes) {
        for (const char* secondary : axes) {
            press(window, (std::string("rad_prim") + primary).c_str());
            press(window, (std::string("rad_sec") + secondary).c_str());
            const Lines checked = checkedRadios(window);
            ASSERT_EQ(checked.size(), 2u);
            EXPECT_EQ(checked[0], std::string("rad_prim") + primary);
            EXPECT_NE(checked[0].back(), checked[1].back());
        }
    }
    EXPECT_EQ(messages(), Lines{}) << "the radios report nothing";
}

TEST_F(WindowTest, BoxesReportTheirState) {
    QWidget* window = openTool();
    for (bool on : {true, false}) {
        check(window, "cBox_ignoreLastChild", on);
        check(window, "cBox_allHierarchy", on);
        check(window, "cBox_orientChld", !on);
    }
    EXPECT_EQ(messages(),
              (Lines{"info: Se ignorará lastJnt", "info: Freeze all hierarchy",
                     "info: Orient just selected joints", "info: NO se ignorará lastJnt",
                     "info: Freeze just selected", "info: Orient Children joints"}));
}

TEST_F(WindowTest, AHalfCheckedBoxCountsAsUnchecked) {
    QWidget* window = openTool();
    auto* box = window->findChild<QCheckBox*>("cBox_allHierarchy");
    box->setTristate(true);
    box->setCheckState(Qt::PartiallyChecked);
    EXPECT_EQ(messages(), Lines{"info: Freeze just selected"});
}

TEST_F(WindowTest, TheSignIsReportedOnceForEachChange) {
    auto* sign = openTool()->findChild<QComboBox*>("opt_revertAxis");
    sign->setCurrentIndex(1);
    sign->setCurrentIndex(1);
    sign->setCurrentIndex(0);
    EXPECT_EQ(messages(), (Lines{"info: -", "info: +"}));
}

TEST_F(WindowTest, NoMainWindowGivesAPlainWindow) {
    QWidget* const desktop = session().mainWindow;
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
