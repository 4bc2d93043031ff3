// Freeze Rotations: rotation goes into joint orientation. Where the skeleton carries a skin, the
// tool freezes a copy and swaps it for the old skeleton, so that the weights stay untouched.

#include <maya/MDagPath.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnSkinCluster.h>
#include <maya/MGlobal.h>
#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

#include "shell/selection_checks.h"
#include "skeleton/skeleton_window.h"
#include "toolkit/constraint_transfer.h"
#include "toolkit/hierarchy.h"
#include "toolkit/nodes.h"
#include "toolkit/reconnection.h"
#include "toolkit/skin_discovery.h"

static const char* const kTempGroup = "tempOldSkeletonGroup";

void SkeletonWindow::setAllHierarchy(int state) {
    allHierarchy = state == 2;
    if (allHierarchy)
        MGlobal::displayInfo("Freeze all hierarchy");
    else
        MGlobal::displayInfo("Freeze just selected");
}

static void freezeJoint(const MString& joint) {
    const MString script = "cmds.makeIdentity('" + joint + "', apply=True, rotate=True)";
    MGlobal::executePythonCommand(script, false, false);
}

// Top joint last: the script adds it behind its descendants.
static void freezeHierarchy(const MString& top) {
    const MString script =
        "cmds.listRelatives('" + top + "', ad=True, type='joint', f=True) + ['" + top + "']";
    MStringArray joints;
    MGlobal::executePythonCommand(script, joints, false, false);
    for (unsigned int i = 0; i < joints.length(); ++i)
        freezeJoint(joints[i]);
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

// Once per output geometry: the command names the cluster, so two outputs detach it twice.
static void unbind(const MObject& skinCluster) {
    MFnSkinCluster skinFn(skinCluster);
    const MString skin = skinFn.name();
    MObjectArray outputs;
    skinFn.getOutputGeometry(outputs);
    for (unsigned int i = 0; i < outputs.length(); ++i) {
        [[maybe_unused]] const MString geometryPath = MFnDagNode(outputs[i]).fullPathName();
        const MString script = "cmds.skinCluster('" + skin + "', e=True, unbindKeepHistory=True)";
        MGlobal::executePythonCommand(script, false, false);
    }
}

static void stripConstraints(const MString& dup) {
    // clang-format off
    const MString script =
    "import maya.cmds as cmds\n"
    "dup_joints = cmds.listRelatives('" + dup + "', ad=True, type='joint', f=True) + ['" + dup + "']\n"
    "for j in dup_joints:\n"
    "    cons = cmds.listRelatives(j, type='constraint', f=True) or []\n"
    "    if cons:\n"
    "        cmds.delete(cons)\n";
    // clang-format on
    MGlobal::executePythonCommand(script, false, false);
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
    const MString script = "cmds.skinCluster('" + rootName + "', '" + mesh +
                           "', bindMethod=0, skinMethod=0, normalizeWeights=1)";
    MGlobal::executePythonCommand(script, false, false);
}

static void freezeSkinned(const MObjectArray& sel, const MObject& root, const MObjectArray& skins,
                          const MObjectArray& meshes, bool allHierarchy) {
    const MString rootName = MFnDagNode(root).name();
    const MString rootPath = MFnDagNode(root).fullPathName();

    for (unsigned int i = 0; i < skins.length(); ++i)
        unbind(skins[i]);

    MString dup;
    const MString duplicateScript = "cmds.duplicate('" + rootPath + "')[0]";
    MGlobal::executePythonCommand(duplicateScript, dup, false, false);
    const MObject dupRoot = getObjectByName(dup);

    stripConstraints(dup);
    freezeCopy(sel, dupRoot, dup, allHierarchy);

    const MObjectArray oldJoints = getJointHierarchy(root);
    const MObjectArray copies = getJointHierarchy(dupRoot);
    recreateConstraints(oldJoints, copies);
    reconnectRotations(oldJoints, copies);

    const MString groupScript = "cmds.group('" + rootPath + "', n='" + kTempGroup + "')";
    MGlobal::executePythonCommand(groupScript, false, false);
    MString renamed;
    const MString renameScript = "cmds.rename('" + dup + "', '" + rootName + "')";
    MGlobal::executePythonCommand(renameScript, renamed, false, false);

    for (unsigned int i = 0; i < skins.length(); ++i) {
        if (!reconnect(root, rootName, skins[i]))
            return;
    }
    const MString deleteScript = MString("cmds.delete('") + kTempGroup + "')";
    MGlobal::executePythonCommand(deleteScript, false, false);

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
