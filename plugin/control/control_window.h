#pragma once

#include <functional>

#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MString.h>

#include <QColor>
#include <QWidget>

#include "ui_control_window.h"

/// The control creator: rigging tools in tabs on the left, changes to the shape of existing
/// controls on the right. Each handler works on the active selection at the moment of the click.
/// Nothing survives closing, which also deletes the window. Scripts run without display and undo.
class ControlWindow : public QWidget, public Ui::ControlWindow {
    Q_OBJECT

  public:
    /// Makes a new curve at the top of the scene and returns its transform.
    using ShapeRoutine = std::function<MObject()>;

    /// Shows itself, as a child of the application's main window when there is one.
    explicit ControlWindow(QWidget* parent = nullptr);

  protected:
    /// A press of any mouse button on the colour swatch asks for a colour in a modal dialog, shows
    /// it in the swatch and applies it. Such a press is always consumed.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void connectSystems();
    void connectShapes();
    void connectShapeEditing();

    // Each copies its radio buttons into its field and prints the field.
    void onPrimaryAxisChanged(bool checked);
    void onOffsetTypeChanged(bool checked);
    void onRotationAxisChanged(bool checked);

    /// The controls, first joint first; empty when the selection is refused.
    MObjectArray createFKSystem();
    /// The IK control and the pole vector control; empty when the selection is refused.
    MObjectArray createIKSystem();
    void createFKIKSystem();

    /// Poses the guide circle on the first selected object, or confirms it: by turns.
    void createFootRoll();
    void cancelFootRoll();
    /// Prints the type of each selected DAG node and of each child of the transforms among them.
    void inspectSelection();

    /// Gives each selected control a new shape; refuses a selection that is not all controls.
    void changeShape(const ShapeRoutine& shapeRoutine);
    /// Replaces all shapes of each selected transform by the one of a new curve, which goes. The
    /// selection is restored.
    void replaceShape(const ShapeRoutine& shapeRoutine);
    /// Override colour of the curves directly below the selected controls; each value in [0, 1].
    void applyColor(double red, double green, double blue);
    /// Multiplies the points by 1 + value / 20 about the shape's origin, at each call anew.
    void scaleShapes(int value);
    /// Centres the slider and no more.
    void resetScale();
    /// Turns the points of the first shape about `rotationAxis`, once for each child of the
    /// control. `angle` in degrees. The last control stays selected.
    void rotateShape(int angle);

    /// `state` is a Qt::CheckState. Refused, with the mode as it was, when nothing is selected.
    void toggleFreeModify(int state);
    void enterFreeModify();
    void leaveFreeModify();
    void setPanelsEnabled(bool enabled);

    MString primaryAxis = "x";             ///< main axis of the joints: "x", "y" or "z"
    MString offsetType = "offset";         ///< "offset" or "offsetAuto"
    QColor chosenColor = QColor(QRgb(0));  ///< where the next colour dialog starts
    MString rotationAxis = "x";            ///< axis for turning shapes: "x", "y" or "z"
    bool guidesPosed = false;              ///< the foot roll's circle waits for a confirmation
};
