// The control window as it opens, its pictures, and what ends with it.

#include <QAbstractButton>
#include <QImage>

#include "plugin/fixtures/control_scene.h"

namespace torvel::test {

using ControlWindowTest = ControlScene;

TEST_F(ControlWindowTest, EveryWidgetAsItsPageShows) {
    expectWindowPage(window, "control");
    EXPECT_TRUE(widget<QWidget>("label_colorPicked")->testAttribute(Qt::WA_Hover));
    EXPECT_EQ(transcript(), Lines{}) << "no handler runs before the first click";
}

TEST_F(ControlWindowTest, APictureForEveryNumber) {
    for (int number = 1; number <= 46; ++number) {
        const QImage picture(
            QString(":/images/img/new/ccButton%1 copy.jpg").arg(number, 2, 10, QChar('0')));
        EXPECT_FALSE(picture.isNull()) << number;
        EXPECT_EQ(picture.width(), picture.height()) << number;
    }
}

// A style sheet whose picture is not found leaves the button in its plain colour.
TEST_F(ControlWindowTest, TheButtonsShowTheirPictures) {
    const QImage shown = widget<QWidget>("btnShape46")->grab().toImage();
    const QImage picture =
        QImage(":/images/img/new/ccButton46 copy.jpg")
            .scaled(shown.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QColor a = shown.pixelColor(shown.width() / 2, shown.height() / 2);
    const QColor b = picture.pixelColor(shown.width() / 2, shown.height() / 2);
    EXPECT_NEAR(a.red(), b.red(), 12);
    EXPECT_NEAR(a.green(), b.green(), 12);
    EXPECT_NEAR(a.blue(), b.blue(), 12);
}

TEST_F(ControlWindowTest, WindowsAreIndependentAndEndWhenClosed) {
    QWidget* second = openControls();
    ASSERT_NE(second, window);
    press(second, "rad_Z");
    EXPECT_TRUE(widget<QAbstractButton>("rad_X")->isChecked());
    second->close();
    finishDeletion();
    EXPECT_EQ(windowsNamed("ControlWindow").size(), 1u);
}

TEST_F(ControlWindowTest, NoCommandOfTheShippedPluginOpensIt) {
    python("cmds.loadPlugin('" TORVEL_PLUGIN_PATH "')");
    for (const char* name : {"CtrlCreator", "ControlWindow", "torvel_control"})
        EXPECT_FALSE(python(std::string("hasattr(cmds, '") + name + "')").truth()) << name;
}

}  // namespace torvel::test
