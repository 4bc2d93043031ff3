// The control window as it opens, and what its radios say.

#include <QAbstractButton>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

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
        const QString path =
            QString(":/images/img/new/ccButton%1 copy.jpg").arg(number, 2, 10, QChar('0'));
        const QImage picture(path);
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

TEST_F(ControlWindowTest, DeadControlsDoNothing) {
    for (const char* name :
         {"btn_IKspline", "btn_assignHierarchy", "btn_assignCtrl", "pushButton_3"}) {
        widget<QPushButton>(name)->click();
        EXPECT_EQ(transcript(), Lines{}) << name;
    }
    widget<QCheckBox>("cBox_createRoot")->setChecked(true);
    widget<QLineEdit>("lineEdit")->setText("master");
    widget<QLineEdit>("lineEdit_2")->setText("ñ %&");
    EXPECT_EQ(transcript(), Lines{});
}

TEST_F(ControlWindowTest, RadiosEchoTheirChoice) {
    for (const char* name : {"rad_Z", "rad_Y", "rad_X", "rad_X", "rad_offsetAuto", "rad_offset"})
        click(name);
    EXPECT_EQ(transcript(), (Lines{"info: z", "info: y", "info: x", "info: x", "info: offsetAuto",
                                   "info: offset"}));
}

TEST_F(ControlWindowTest, RotationAxisSaysTwoLines) {
    for (const char* name : {"rad_rotShp_Y", "rad_rotShp_Z", "rad_rotShp_X"})
        click(name);
    EXPECT_EQ(transcript(),
              (Lines{"info: Eje Y seleccionado para rotaci\xEF\xBF\xBDn secundaria.", "info: y",
                     "info: Eje Z seleccionado para rotaci\xEF\xBF\xBDn secundaria.", "info: z",
                     "info: Eje X seleccionado para rotaci\xEF\xBF\xBDn secundaria.", "info: x"}));
}

TEST_F(ControlWindowTest, RadiosExcludeEachOtherWithinTheirFrame) {
    click("rad_Z");
    click("rad_offsetAuto");
    click("rad_rotShp_Y");
    for (const char* name : {"rad_Z", "rad_offsetAuto", "rad_rotShp_Y"})
        EXPECT_TRUE(widget<QAbstractButton>(name)->isChecked()) << name;
    for (const char* name : {"rad_X", "rad_offset", "rad_rotShp_X"})
        EXPECT_FALSE(widget<QAbstractButton>(name)->isChecked()) << name;
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
