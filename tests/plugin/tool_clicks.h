#pragma once

#include <string>
#include <vector>

#include "plugin/axis_choices.h"
#include "plugin/plugin_scene.h"

namespace torvel::test {

/// Clicks the two radios and sets the combo box.
void chooseAxes(PluginScene& scene, QWidget* window, const AxisRow& row);
void chooseSign(QWidget* window, char sign);

/// Opens a window, makes the choices, selects and presses Orient Joints; forgets what the
/// preparation recorded.
void orient(PluginScene& scene, const std::vector<std::string>& selection, const AxisRow& row,
            bool children);
/// The same for Flip.
void flip(PluginScene& scene, const std::vector<std::string>& selection, char primary,
          char secondary);
/// Presses any button of a fresh window on the selection.
void clickOn(PluginScene& scene, const std::vector<std::string>& selection, const char* button);

}  // namespace torvel::test
