#include "plugin/tool_clicks.h"

#include <QComboBox>
#include <QWidget>

namespace torvel::test {

void chooseSign(QWidget* window, char sign) {
    window->findChild<QComboBox*>("opt_revertAxis")->setCurrentIndex(sign == '+' ? 0 : 1);
}

// The secondary click comes last: a clash on the way would move it on.
void chooseAxes(PluginScene& scene, QWidget* window, const AxisRow& row) {
    scene.press(window, (std::string("rad_prim") + upperCase(row.primary)).c_str());
    scene.press(window, (std::string("rad_sec") + upperCase(row.secondary)).c_str());
    chooseSign(window, row.sign);
}

void orient(PluginScene& scene, const std::vector<std::string>& selection, const AxisRow& row,
            bool children) {
    QWidget* window = scene.openTool();
    ASSERT_NE(window, nullptr);
    chooseAxes(scene, window, row);
    scene.check(window, "cBox_orientChld", children);
    scene.select(selection);
    scene.forget();
    scene.press(window, "btn_OrientJoints");
    window->close();
}

void flip(PluginScene& scene, const std::vector<std::string>& selection, char primary,
          char secondary) {
    QWidget* window = scene.openTool();
    ASSERT_NE(window, nullptr);
    chooseAxes(scene, window, {primary, secondary, '+', "", ""});
    scene.select(selection);
    scene.forget();
    scene.press(window, "btn_flipOrient");
    window->close();
}

void clickOn(PluginScene& scene, const std::vector<std::string>& selection, const char* button) {
    QWidget* window = scene.openTool();
    ASSERT_NE(window, nullptr);
    scene.select(selection);
    scene.forget();
    scene.press(window, button);
    window->close();
}

}  // namespace torvel::test
