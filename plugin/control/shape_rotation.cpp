#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MFnDagNode.h>
#include <maya/MGlobal.h>
#include <maya/MItSelectionList.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>

#include "control/control_window.h"
#include "shell/selection_checks.h"

// The lines before the turn: the points of the node's first shape become the selection.
static MString selectPointsScript(const MString& node) {
    return "import maya.cmds as cmds\n"
           "cmds.select('" +
           node +
           "')\n"
           "transform = cmds.ls(sl=True)[0]\n"
           "shape = cmds.listRelatives(transform, s=True)[0]\n"
           "cmds.selectMode(component=True)\n"
           "each_cvs = cmds.select(str(shape) + '.cv[*]')\n";
}

void ControlWindow::rotateShape(int angle) {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    if (!isNurbsControlSelection(selection)) {
        MGlobal::displayError("Please select NurbsCurve controls only.");
        return;
    }

    const double degrees = angle;
    MItSelectionList it(selection, MFn::kInvalid, nullptr);
    for (; !it.isDone(); it.next()) {
        MDagPath path;
        it.getDagPath(path);
        MFnDagNode nodeFn(path);
        const MString selectPoints = selectPointsScript(nodeFn.name());

        // Once for each child of whatever kind: a control with a child transform turns twice.
        for (unsigned int i = 0; i < path.childCount(); ++i) {
            MString script;
            if (rotationAxis == "x") {
                MGlobal::displayInfo(MString("Rotating shape on X axis: ") + degrees);
                script = selectPoints + "cmds.rotate(" + degrees +
                         ",0,0, each_cvs)\n"
                         "cmds.selectMode(object=True)\n";
            } else if (rotationAxis == "y") {
                script = selectPoints + "cmds.rotate(0," + degrees +
                         ",0, each_cvs)\n"
                         "cmds.selectMode(object=True)\n";
            } else if (rotationAxis == "z") {
                script = selectPoints + "cmds.rotate(0,0," + degrees +
                         ", each_cvs)\n"
                         "cmds.selectMode(object=True)\n";
            }
            MGlobal::executePythonCommand(script, false, false);
        }
    }
}
