// Flip: each selected joint is turned by half a turn about both chosen axes, out of its chain, so
// that its children stay where they are. Where there is a skin or a constraint, the tool flips a
// copy of the skeleton and swaps it for the old one.

#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>

#include "shell/selection_checks.h"
#include "skeleton/skeleton_window.h"
#include "skeleton/skin_road.h"
#include "toolkit/constraint_transfer.h"
#include "toolkit/duplication.h"
#include "toolkit/hierarchy.h"
#include "toolkit/nodes.h"
#include "toolkit/skin_discovery.h"
#include "toolkit/text.h"

namespace {

// The world's path is the empty text.
MString pathOf(const MObject& node) {
    return node.isNull() ? MString() : MFnDagNode(node).fullPathName();
}

MObjectArray childrenOf(const MObject& node) {
    MObjectArray children;
    MFnDagNode nodeFn(node);
    for (unsigned int i = 0; i < nodeFn.childCount(); ++i)
        children.append(nodeFn.child(i));
    return children;
}

void moveUnder(const MString& node, const MString& parent) {
    const MString script = "cmds.parent('" + node + "', '" + parent + "')";
    MGlobal::executePythonCommand(script, false, false);
}

// To the level of the chain's top.
void liftOut(const MString& node, const MString& rootParent) {
    if (rootParent.length() > 0) {
        moveUnder(node, rootParent);
        return;
    }
    MGlobal::executePythonCommand("cmds.parent('" + node + "', w=True)", false, false);
}

void turnHalf(const MString& joint, const MString& primAxis, const MString& secAxis) {
    // clang-format off
    const MString script =
    "import maya.cmds as cmds\n"
    "jointName = '" + joint + "'\n"
    "primAxis = '" + primAxis + "'\n"
    "secAxis = '" + secAxis + "'\n"
    "cmds.makeIdentity(jointName, apply=True, rotate=True)\n"
    "primAttr = jointName + '.rotate' + primAxis\n"
    "primValue = cmds.getAttr(primAttr)\n"
    "cmds.setAttr(primAttr, (primValue + 180.0) % 360)\n"
    "secAttr = jointName + '.rotate' + secAxis\n"
    "secValue = cmds.getAttr(secAttr)\n"
    "cmds.setAttr(secAttr, (secValue + 180.0) % 360)\n"
    "cmds.makeIdentity(jointName, apply=True, rotate=True)\n";
    // clang-format on
    MGlobal::executePythonCommand(script, false, false);
}

// Paths change with the parent, so each is read at the moment of its use.
void flipJoint(const MObject& joint, const MString& primAxis, const MString& secAxis) {
    const MObjectArray children = childrenOf(joint);
    const MString jointParent = pathOf(getParentNode(joint));
    const MString rootParent = pathOf(getParentNode(findRootJoint(joint)));

    for (unsigned int i = 0; i < children.length(); ++i)
        liftOut(pathOf(children[i]), rootParent);
    liftOut(pathOf(joint), rootParent);
    turnHalf(pathOf(joint), primAxis, secAxis);
    moveUnder(pathOf(joint), jointParent);
    for (unsigned int i = 0; i < children.length(); ++i)
        moveUnder(pathOf(children[i]), pathOf(joint));
}

void flipEach(const MObjectArray& joints, const MString& primAxis, const MString& secAxis) {
    for (unsigned int i = 0; i < joints.length(); ++i)
        flipJoint(joints[i], primAxis, secAxis);
}

void flipSkinned(const MObjectArray& sel, const MObjectArray& skins, const MString& primAxis,
                 const MString& secAxis) {
    const MObjectArray roots = getRootJoints(sel);
    if (roots.length() == 0)
        return;  // no joint had a path, which has been told
    const MObjectArray copies = duplicateSkeletonForEdit(roots, skins);
    const MString rootName = MFnDependencyNode(roots[0]).name();

    const MObjectArray targets = findNamesakesUnder(sel, copies[0]);
    const MObjectArray oldJoints = getJointHierarchy(roots[0]);
    const MObjectArray newJoints = getJointHierarchy(copies[0]);
    flipEach(targets, primAxis, secAxis);
    recreateConstraints(oldJoints, newJoints);
    reconnectRotations(oldJoints, newJoints);

    renameTo(MFnDagNode(copies[0]).fullPathName(), rootName);
    if (!reconnectInSilence(roots[0], rootName, skins))
        return;
    MGlobal::executePythonCommand("cmds.delete('tempOldSkeletonGroup')", false, false);
    bindMeshesOf(rootName, skins);
}

}  // namespace

void SkeletonWindow::flipOrientation() {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    const MObjectArray sel = selectionToArray(selection);
    if (!isJointArray(sel)) {
        MGlobal::displayInfo("Por favor, selecciona solo joints.");
        return;
    }
    restoreBindPose(sel[0]);
    const MObjectArray skins = collectSkinClusters(sel);
    const bool constrained = hasConstraintChild(sel);
    if (skins.length() == 0 && !constrained) {
        flipEach(sel, primAxis, secAxis);
        MGlobal::setActiveSelectionList(selection);
        MGlobal::displayInfo(utf8Text("Orientación de joints invertida correctamente."));
    } else {
        flipSkinned(sel, skins, primAxis, secAxis);
    }
}
