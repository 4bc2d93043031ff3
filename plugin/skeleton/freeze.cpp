// Freeze Rotations: rotation goes into joint orientation. Where the skeleton carries a skin, the
// tool freezes a copy and swaps it for the old skeleton, so that the weights stay untouched.

#include <maya/MDagPath.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include "shell/selection_checks.h"
#include "skeleton/skeleton_window.h"
#include "skeleton/skin_road.h"
#include "toolkit/constraint_transfer.h"
#include "toolkit/duplication.h"
#include "toolkit/hierarchy.h"
#include "toolkit/nodes.h"
#include "toolkit/reconnection.h"
#include "toolkit/skin_discovery.h"

void SkeletonWindow::setAllHierarchy(int state) {
    allHierarchy = state == 2;
    if (allHierarchy)
        MGlobal::displayInfo("Freeze all hierarchy");
    else
        MGlobal::displayInfo("Freeze just selected");
}

static void freezeUnskinned(const MObjectArray& sel, const MString& rootName, bool allHierarchy) {
    if (allHierarchy) {
        freezeHierarchy(rootName);
        return;
    }
    for (unsigned int i = 0; i < sel.length(); ++i) {
        const MString path = MFnDagNode(sel[i]).fullPathName();
        MGlobal::displayInfo("Freezing rotations for: " + path);
        freezeJoint(path);
    }
}

static void freezeCopy(const MObjectArray& sel, const MObject& dupRoot, const MString& dup,
                       bool allHierarchy) {
    if (allHierarchy) {
        freezeHierarchy(dup);
        return;
    }
    const MObjectArray targets = findNamesakesUnder(sel, dupRoot);
    for (unsigned int i = 0; i < targets.length(); ++i)
        freezeJoint(MFnDagNode(targets[i]).fullPathName());
}

// False when the joint counts differ, which stops the whole action.
static bool reconnect(const MObject& oldRoot, const MString& rootName, const MObject& skinCluster) {
    const MString skin = MFnDependencyNode(skinCluster).name();
    MGlobal::displayInfo("Reconnecting skinCluster: " + skin);

    const MObject newRoot = getObjectByName(rootName);
    const MObjectArray oldJoints = getJointHierarchy(oldRoot);
    const MObjectArray newJoints = getJointHierarchy(newRoot);
    if (oldJoints.length() != newJoints.length()) {
        printJointMismatch(oldJoints, newJoints);
        return false;
    }
    reconnectInfluencesByName(oldRoot, newRoot, skinCluster);
    return true;
}

static void bindAgain(const MObject& meshNode, const MString& rootName) {
    MStatus status;
    MFnDagNode meshFn(meshNode, &status);
    if (!status)
        return;  // the null entry that stands for "no meshes"

    MDagPath path;
    meshFn.getPath(path);
    const MString mesh = path.fullPathName();
    MGlobal::displayInfo("Binding skin to: " + mesh);
    MGlobal::displayInfo("Root name: " + rootName);
    bindMesh(rootName, mesh);
}

static void freezeSkinned(const MObjectArray& sel, const MObject& root, const MObjectArray& skins,
                          const MObjectArray& meshes, bool allHierarchy) {
    const MString rootName = MFnDagNode(root).name();
    const MString rootPath = MFnDagNode(root).fullPathName();

    for (unsigned int i = 0; i < skins.length(); ++i)
        detachSkin(skins[i]);

    const MString dup = duplicateSkeleton(rootPath);
    const MObject dupRoot = getObjectByName(dup);

    removeConstraints(dup);
    freezeCopy(sel, dupRoot, dup, allHierarchy);

    const MObjectArray oldJoints = getJointHierarchy(root);
    const MObjectArray copies = getJointHierarchy(dupRoot);
    recreateConstraints(oldJoints, copies);
    reconnectRotations(oldJoints, copies);

    parkOldSkeleton(rootPath);
    renameTo(dup, rootName);
    for (unsigned int i = 0; i < skins.length(); ++i) {
        if (!reconnect(root, rootName, skins[i]))
            return;
    }
    deleteOldSkeleton();
    for (unsigned int i = 0; i < meshes.length(); ++i)
        bindAgain(meshes[i], rootName);
    MGlobal::displayInfo("Freeze Rotations completado. El skinning se ha conservado.");
}

void SkeletonWindow::freezeRotations() {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    if (!isJointSelection(selection)) {
        MGlobal::displayInfo("Por favor, selecciona solo joints.");
        return;
    }
    const MObjectArray sel = selectionToArray(selection);
    const MObjectArray roots = getRootJoints(sel);
    if (roots.length() == 0)
        return;  // no joint had a path, which has been told

    const MObjectArray joints = getJointsOfRoots(roots);
    const MObjectArray skins = collectSkinClusters(joints);
    const MObjectArray meshes = getDownstreamMeshes(skins);
    if (skins.length() == 0)
        freezeUnskinned(sel, MFnDagNode(roots[0]).name(), allHierarchy);
    else
        freezeSkinned(sel, roots[0], skins, meshes, allHierarchy);
}
