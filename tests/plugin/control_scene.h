#pragma once

#include <QColor>
#include <QWidget>

#include "plugin/plugin_scene.h"
#include "plugin/window_table.h"

class QLayout;

namespace torvel::test {

using Points = std::vector<std::vector<double>>;

/// A plug-in scene with the control window open, through the plug-in of the tests' own. What the
/// opening recorded is forgotten.
class ControlScene : public PluginScene {
  public:
    ControlScene();

    QWidget* openControls() { return openWindow("controlProbe", "ControlWindow"); }

    template <class T>
    T* widget(const char* name) {
        return namedWidget<T>(window, name);
    }
    /// The layout itself, or the one that a widget holds.
    QLayout* layoutOf(const char* name);

    void click(const char* button) { press(window, button); }
    /// Selects and clicks; only what the click did is recorded.
    void clickOn(const std::vector<std::string>& selection, const char* button);
    void slide(int value);

    /// Presses the swatch with the mouse and answers the dialog that comes up; an invalid colour
    /// cancels. Gives the colour that the dialog started with, invalid when none came up.
    QColor pickColor(const QColor& answer, Qt::MouseButton button = Qt::LeftButton);

    /// All control points of a curve shape, three numbers each, in its own space.
    Points points(const std::string& shape);
    std::vector<double> knots(const std::string& shape);
    /// Names of the shapes below a transform, in order.
    Lines shapesOf(const std::string& transform);
    /// A circle of the given name with its normal along Z and no history.
    void makeCircle(const std::string& name);

    QWidget* const window;
};

/// Reports each number that is farther away than `tolerance`, and a count that differs.
void expectPoints(const Points& actual, const Points& expected, double tolerance = 1e-9);
Points scaled(Points points, double factor);
/// Turned about the axis 'x', 'y' or 'z' by the angle in degrees, counter-clockwise when the axis
/// points to the eye.
Points turned(const Points& points, char axis, double degrees);

}  // namespace torvel::test
