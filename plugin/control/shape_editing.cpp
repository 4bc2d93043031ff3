// The right panel: replace, colour, scale and rotate the curves of the selected controls.

#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MGlobal.h>
#include <maya/MItSelectionList.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>
#include <maya/MSelectionList.h>
#include <maya/MSpace.h>
#include <maya/MString.h>

#include "control/control_window.h"
#include "shell/selection_checks.h"
#include "toolkit/nodes.h"

// The curves directly below each selected item, item by item and child by child.
static MObjectArray curvesOfSelection(const MSelectionList& selection) {
    MObjectArray curves;
    MItSelectionList it(selection, MFn::kInvalid, nullptr);
    for (; !it.isDone(); it.next()) {
        MDagPath path;
        it.getDagPath(path);
        for (unsigned int i = 0; i < path.childCount(); ++i) {
            const MObject child = path.child(i);
            if (child.hasFn(MFn::kNurbsCurve))
                curves.append(child);
        }
    }
    return curves;
}

void ControlWindow::changeShape(const ShapeRoutine& shapeRoutine) {
    MGlobal::displayInfo("Changing Shapes");
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    const MObjectArray spare = selectionToArray(selection);  // unused, kept

    if (isNurbsControlSelection(selection))
        replaceShape(shapeRoutine);
    else
        MGlobal::displayInfo("Select just controls type NurbsCurves");
}

void ControlWindow::replaceShape(const ShapeRoutine& shapeRoutine) {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);

    MItSelectionList it(selection, MFn::kTransform, nullptr);
    for (; !it.isDone(); it.next()) {
        MDagPath path;
        it.getDagPath(path);
        MFnDagNode transformFn(path);

        const MObject curve = shapeRoutine();
        const MString newCurve = getNodeName(curve);
        MGlobal::displayInfo("NewCurve: " + newCurve);
        const MString oldTransform = transformFn.name();
        MGlobal::displayInfo("oldCurv: " + oldTransform);

        const MString script = "cmds.select('" + oldTransform +
                               "')\n"
                               "oldTransform = cmds.ls(sl=True)[0]\n"
                               "oldShape = cmds.listRelatives(oldTransform, s=True)\n"
                               "cmds.delete(oldShape)\n"
                               "newShape = cmds.listRelatives('" +
                               newCurve +
                               "', s=True)[0]\n"
                               "cmds.parent(newShape, oldTransform, r=True, s=True)\n"
                               "cmds.delete('" +
                               newCurve + "')\n";
        MGlobal::executePythonCommand(script, false, false);
    }
    MGlobal::setActiveSelectionList(selection, MGlobal::kReplaceList);
}

void ControlWindow::applyColor(double red, double green, double blue) {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    if (!isNurbsControlSelection(selection)) {
        MGlobal::displayError("Please select NurbsCurve controls only.");
        return;
    }

    const MObjectArray curves = curvesOfSelection(selection);
    for (unsigned int i = 0; i < curves.length(); ++i) {
        const MString shape = MFnDependencyNode(curves[i]).name();
        const MString script =
            "import maya.cmds as cmds\n"
            "cmds.setAttr('" +
            shape +
            ".overrideEnabled', 1)\n"
            "cmds.setAttr('" +
            shape +
            ".overrideRGBColors', 1)\n"
            "cmds.setAttr('" +
            shape + ".overrideColorR', " + red +
            ")\n"
            "cmds.setAttr('" +
            shape + ".overrideColorG', " + green +
            ")\n"
            "cmds.setAttr('" +
            shape + ".overrideColorB', " + blue + ")";
        MGlobal::executePythonCommand(script, false, false);
    }
}

void ControlWindow::scaleShapes(int value) {
    const double factor = 1.0 + value / 20.0;
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    if (!isNurbsControlSelection(selection)) {
        MGlobal::displayError("Selecciona solo controles tipo NurbsCurve.");
        return;
    }

    // The factor of the slider's value, not of its change: the steps of a drag compound.
    MObjectArray curves = curvesOfSelection(selection);
    for (unsigned int i = 0; i < curves.length(); ++i) {
        MFnNurbsCurve curveFn(curves[i]);  // by non-const reference: the points are written
        MPointArray points;
        curveFn.getCVs(points, MSpace::kObject);
        for (unsigned int k = 0; k < points.length(); ++k)
            points[k] *= factor;
        curveFn.setCVs(points, MSpace::kObject);
        curveFn.updateCurve();
    }
}

void ControlWindow::resetScale() {
    hSlider_scalar->setValue(0);
}
