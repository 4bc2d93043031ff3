// Orient Joints: the axes of the selected joints as the window's choices say. Where the skeleton
// carries a skin or a selected joint a constraint, the tool orients a copy and swaps it for the old
// skeleton, so that the weights stay untouched.

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

namespace {

struct OrientChoice {
    MString order;
    MString secondary;
    bool children;
};

void orientOnly(const MString& joint, const OrientChoice& choice) {
    const MString start = "cmds.joint(' " + joint + " ', edit=True, oj='" + choice.order +
                          "',sao ='" + choice.secondary;
    const MString script = start + (choice.children ? "', ch=True)" : "')");
    MGlobal::executePythonCommand(script, false, false);
}

void orientCopy(const MString& joint, const OrientChoice& choice) {
    const MString start = "cmds.joint(' " + joint + " ', edit=True, oj='" + choice.order +
                          "', sao ='" + choice.secondary;
    const MString script = start + (choice.children ? "', ch=True)" : "', ch=False)");
    MGlobal::executePythonCommand(script, false, false);
}

void orientUnskinned(const MObjectArray& sel, const MString& rootName, const OrientChoice& choice) {
    restoreBindPose(sel[0]);
    freezeHierarchy(rootName);
    MGlobal::displayInfo("Orient no Skinned joints");
    for (unsigned int i = 0; i < sel.length(); ++i)
        orientOnly(MFnDependencyNode(sel[i]).name(), choice);
}

void orientSkinned(const MObjectArray& sel, const MObject& root, const MObjectArray& skins,
                   const OrientChoice& choice) {
    const MString rootName = MFnDependencyNode(root).name();
    const MString rootPath = MFnDagNode(root).fullPathName();

    restoreBindPose(sel[0]);
    for (unsigned int i = 0; i < skins.length(); ++i)
        detachSkin(skins[i]);

    const MString dup = duplicateSkeleton(rootPath);
    const MObject dupRoot = getObjectByName(dup);
    const MString dupPath = MFnDagNode(dupRoot).fullPathName();
    freezeHierarchy(dup);
    removeConstraints(dup);

    const MObjectArray targets = findNamesakesUnder(sel, dupRoot);
    for (unsigned int i = 0; i < targets.length(); ++i)
        orientCopy(MFnDagNode(targets[i]).fullPathName(), choice);

    const MObjectArray oldJoints = getJointHierarchy(root);
    const MObjectArray copies = getJointHierarchy(dupRoot);
    recreateConstraints(oldJoints, copies);
    reconnectRotations(oldJoints, copies);

    parkOldSkeleton(rootPath);
    renameTo(dupPath, rootName);
    if (!reconnectInSilence(root, rootName, skins))
        return;
    deleteOldSkeleton();
    bindMeshesOf(rootName, skins);
}

}  // namespace

void SkeletonWindow::orientJoints() {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    if (!isJointSelection(selection)) {
        MGlobal::displayInfo("Por favor, selecciona solo joints.");
        return;
    }
    const MObjectArray sel = selectionToArray(selection);
    const MObjectArray joints = getJointsOfRoots(getRootJoints(sel));
    const MObjectArray skins = collectSkinClusters(joints);
    const MObjectArray roots = getRootJoints(sel);
    const bool constrained = hasConstraintChild(sel);
    if (sel.length() == 0) {
        MGlobal::displayError("Please, select at least 1 joint.");
        return;
    }
    if (roots.length() == 0)
        return;  // no joint had a path, which has been told

    const OrientChoice choice{orientOrder, secondaryAxisOrient, orientChildren};
    if (skins.length() == 0 && !constrained)
        orientUnskinned(sel, MFnDependencyNode(roots[0]).name(), choice);
    else
        orientSkinned(sel, roots[0], skins, choice);
}
