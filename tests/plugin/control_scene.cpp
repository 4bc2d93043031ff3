#include "plugin/control_scene.h"

#include <cmath>

#include <maya/MDoubleArray.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>

#include <QApplication>
#include <QColorDialog>
#include <QLayout>
#include <QMouseEvent>
#include <QSlider>
#include <QTimer>

#include "support/test_scene.h"

namespace torvel::test {

ControlScene::ControlScene()
    : window((python("cmds.loadPlugin('" TORVEL_PROBE_PATH "')"), openControls())) {
    forget();
}

QLayout* ControlScene::layoutOf(const char* name) {
    auto* layout = window->findChild<QLayout*>(name);
    if (!layout)
        layout = widget<QWidget>(name)->layout();
    EXPECT_NE(layout, nullptr) << name;
    return layout;
}

void ControlScene::clickOn(const std::vector<std::string>& selection, const char* button) {
    select(selection);
    forget();
    click(button);
}

void ControlScene::slide(int value) {
    widget<QSlider>("hSlider_scalar")->setValue(value);
}

QColor ControlScene::pickColor(const QColor& answer, Qt::MouseButton button) {
    QColor start;
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        EXPECT_EQ(dialog->windowTitle(), "Selecciona un color");
        EXPECT_EQ(dialog->parentWidget(), window);
        start = dialog->currentColor();
        if (answer.isValid()) {
            dialog->setCurrentColor(answer);
            dialog->accept();
        } else {
            dialog->reject();
        }
    });
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(3, 3), button, button, Qt::NoModifier);
    QApplication::sendEvent(widget<QWidget>("label_colorPicked"), &press);
    QApplication::processEvents();
    return start;
}

Points ControlScene::points(const std::string& shape) {
    MPointArray vertices;
    MFnNurbsCurve(object(shape)).getCVs(vertices);
    Points all;
    for (unsigned int i = 0; i < vertices.length(); ++i)
        all.push_back({vertices[i].x, vertices[i].y, vertices[i].z});
    return all;
}

std::vector<double> ControlScene::knots(const std::string& shape) {
    MDoubleArray values;
    MFnNurbsCurve(object(shape)).getKnots(values);
    std::vector<double> all;
    for (unsigned int i = 0; i < values.length(); ++i)
        all.push_back(values[i]);
    return all;
}

Lines ControlScene::shapesOf(const std::string& transform) {
    return textsOf(python("cmds.listRelatives('" + transform + "', shapes=True) or []"));
}

void ControlScene::makeCircle(const std::string& name) {
    python("cmds.circle(name='" + name + "', constructionHistory=False)");
}

void expectPoints(const Points& actual, const Points& expected, double tolerance) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        for (int k = 0; k < 3; ++k)
            EXPECT_NEAR(actual[i][k], expected[i][k], tolerance) << "point " << i << " axis " << k;
    }
}

Points scaled(Points points, double factor) {
    for (std::vector<double>& point : points) {
        for (double& number : point)
            number *= factor;
    }
    return points;
}

Points turned(const Points& points, char axis, double degrees) {
    const double angle = degrees * std::acos(-1.0) / 180.0;
    const double c = std::cos(angle), s = std::sin(angle);
    Points result;
    for (const std::vector<double>& p : points) {
        if (axis == 'x')
            result.push_back({p[0], c * p[1] - s * p[2], s * p[1] + c * p[2]});
        else if (axis == 'y')
            result.push_back({c * p[0] + s * p[2], p[1], c * p[2] - s * p[0]});
        else
            result.push_back({c * p[0] - s * p[1], s * p[0] + c * p[1], p[2]});
    }
    return result;
}

}  // namespace torvel::test
