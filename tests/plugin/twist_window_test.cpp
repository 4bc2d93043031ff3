// The twist window, and what its small buttons run.

#include <QPointer>
#include <QRadioButton>

#include "plugin/fixtures/plugin_scene.h"
#include "plugin/fixtures/window_page.h"

namespace torvel::test {

class TwistWindowTest : public PluginScene {
  public:
    bool isChecked(const char* radio) {
        return namedWidget<QRadioButton>(window, radio)->isChecked();
    }

    QWidget* const window = openTwist();
};

TEST_F(TwistWindowTest, EveryWidgetAsItsPageShows) {
    expectWindowPage(window, "twist");
    EXPECT_EQ(transcript(), Lines{});
}

TEST_F(TwistWindowTest, RadiosExcludeEachOtherInSilence) {
    for (const std::string pressed : {"rad_Y", "rad_Z", "rad_X", "rad_X"}) {
        press(window, pressed.c_str());
        for (const char* name : {"rad_X", "rad_Y", "rad_Z"})
            EXPECT_EQ(isChecked(name), name == pressed) << name;
    }
    EXPECT_EQ(transcript(), Lines{});
}

TEST_F(TwistWindowTest, EachRunOpensAnotherWindow) {
    QPointer<QWidget> second = openTwist();
    ASSERT_FALSE(second.isNull());
    EXPECT_NE(second.data(), window);
    press(second, "rad_Z");
    EXPECT_TRUE(isChecked("rad_X"));
    second->close();
    finishDeletion();
    EXPECT_TRUE(second.isNull());
    EXPECT_EQ(windowsNamed("TwistWindow").size(), 1u);
}

TEST_F(TwistWindowTest, WithoutAMainWindowItStandsAlone) {
    auto* const desktop = session().mainWindow;
    session().mainWindow = nullptr;
    QPointer<QWidget> alone = openTwist();
    session().mainWindow = desktop;
    ASSERT_FALSE(alone.isNull());
    EXPECT_EQ(alone->parentWidget(), nullptr);
    EXPECT_TRUE(alone->isVisible());
}

TEST_F(TwistWindowTest, TheWeightButtonsOpenTheHostsTools) {
    press(window, "btn_paintWeights");
    press(window, "btn_mirror");
    for (const char* tool : {"paintSkinWeights", "mirrorSkinWeightsOptions"})
        EXPECT_EQ(windowsNamed(tool).size(), 1u) << tool;
}

}  // namespace torvel::test
