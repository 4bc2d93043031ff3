#include <maya/MDoubleArray.h>
#include <maya/MFnDagNode.h>
#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>

#include "control/control_window.h"
#include "toolkit/nodes.h"

// The button changes before the scene does, so it asks for a confirmation even after a failure.
void ControlWindow::createFootRoll() {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    const MObjectArray selected = selectionToArray(selection);

    if (guidesPosed) {
        MGlobal::displayInfo("Done");
        btn_footRoll->setText("Pose guides");
        btn_footRoll->setStyleSheet("");
        guidesPosed = false;
        return;
    }

    MGlobal::displayInfo("Creating footRooll");
    btn_footRoll->setText("Confirm guides");
    btn_footRoll->setStyleSheet("background-color: rgb(0, 85, 255); color: rgb(255, 255, 255); ");

    MString name;  // stays empty without a selection
    if (selected.length() > 0)
        name = MFnDagNode(selected[0]).name();
    MDoubleArray normal(3, 0.0);
    if (primaryAxis == "x")
        normal[0] = 1.0;
    else if (primaryAxis == "y")
        normal[1] = 1.0;
    else if (primaryAxis == "z")
        normal[2] = 1.0;

    const MString circleScript = "circle -name \"" + name + "_ctrl\" -nr " + normal[0] + " " +
                                 normal[1] + " " + normal[2] + ";";
    MGlobal::executeCommand(circleScript, false, false);
    const MString matchScript = "matchTransform " + name + "_ctrl " + name + ";";
    MGlobal::executeCommand(matchScript, false, false);
    guidesPosed = true;
}

void ControlWindow::cancelFootRoll() {
    MGlobal::displayInfo("Cancelling footRoll");
    btn_footRoll->setText("Pose guides");
    btn_footRoll->setStyleSheet("");
    guidesPosed = false;
}
