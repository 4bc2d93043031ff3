// How the selected joints are drawn: local axes, bone style, radius.

#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MFnDagNode.h>
#include <maya/MGlobal.h>
#include <maya/MItSelectionList.h>
#include <maya/MObject.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>

#include "shell/selection_checks.h"
#include "skeleton/skeleton_window.h"
#include "toolkit/nodes.h"

// At the top level of the script: its variables stay in the global namespace.
void SkeletonWindow::showAxis() {
    const MString script =
        "sel = cmds.ls(sl=True)\n"
        "# Verificar que todos los objetos seleccionados sean de tipo 'Joint'\n"
        "all_joints = all(cmds.nodeType(obj) == 'joint' for obj in sel)\n"
        "if all_joints:\n"
        "   for i in sel:\n"
        "      iType = cmds.nodeType(i)\n"
        "      if iType != 'joint':\n"
        "         cmds.warning( i + ' no es un hueso')\n"
        "      else:\n"
        "         cmds.setAttr(i + '.displayLocalAxis', True)\n"
        "else:\n"
        "   cmds.warning('Debes seleccionar unicamente huesos')\n";
    MGlobal::executePythonCommand(script, false, false);
}

void SkeletonWindow::hideAxis() {
    const MString script =
        "def hideAxis():\n"
        "    sel = cmds.ls(sl=True)\n"
        "    # Verificar que todos los objetos seleccionados sean de tipo 'Joint'\n"
        "    all_joints = all(cmds.nodeType(obj) == 'joint' for obj in sel)\n"
        "    if all_joints:\n"
        "        for i in sel:\n"
        "            iType = cmds.nodeType(i)\n"
        "            if iType != 'joint':\n"
        "                cmds.warning( i + ' no es un hueso')\n"
        "            else:\n"
        "                cmds.setAttr(i + '.displayLocalAxis', False)\n"
        "    else:\n"
        "        cmds.warning('Debes seleccionar unicamente huesos')\n"
        "hideAxis()\n";
    MGlobal::executePythonCommand(script, false, false);
}

// Hands each selected joint's path to `set`; any other item gets its message and is passed over.
template <typename Setter>
static void forEachJoint(const MSelectionList& selection, const Setter& set) {
    MItSelectionList it(selection, MFn::kInvalid, nullptr);
    for (; !it.isDone(); it.next()) {
        MDagPath dagPath;
        it.getDagPath(dagPath);
        const MString path = dagPath.fullPathName();
        MObject node;
        it.getDependNode(node);
        if (MFnDagNode(node).typeName() == "joint")
            set(path);
        else
            MGlobal::displayInfo(path + " no es un joint. Por favor selecciona solo joints.");
    }
}

void SkeletonWindow::setDrawStyle(int style) {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    forEachJoint(selection, [style](const MString& path) {
        MGlobal::displayInfo(path + " Drawing bones style");
        const MString script =
            "cmds.setAttr('" + path + ".drawStyle', " + static_cast<double>(style) + ")";
        MGlobal::executePythonCommand(script, false, false);
    });
}

// The refusal of the whole action when anything but joints is selected.
static bool onlyJointsSelected(MSelectionList& selection) {
    MGlobal::getActiveSelectionList(selection, false);
    if (isJointArray(selectionToArray(selection)))
        return true;
    MGlobal::displayInfo("Por favor, selecciona solo joints.");
    return false;
}

void SkeletonWindow::minusRadius() {
    MSelectionList selection;
    if (!onlyJointsSelected(selection))
        return;
    forEachJoint(selection, [](const MString& path) {
        MGlobal::displayInfo(path + " Minus Radius");
        const MString script =
            "cmds.setAttr('" + path + ".radius', cmds.getAttr('" + path + ".radius') - 1)";
        MGlobal::executePythonCommand(script, false, false);
    });
}

void SkeletonWindow::plusRadius() {
    MSelectionList selection;
    if (!onlyJointsSelected(selection))
        return;
    forEachJoint(selection, [](const MString& path) {
        MGlobal::displayInfo(path + " Plus Radius");
        const MString script =
            "cmds.setAttr('" + path + ".radius', cmds.getAttr('" + path + ".radius') + 1)";
        MGlobal::executePythonCommand(script, false, false);
    });
}
