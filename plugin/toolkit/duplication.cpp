#include "toolkit/duplication.h"

#include <vector>

#include <maya/MDagModifier.h>
#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnSkinCluster.h>
#include <maya/MFnTransform.h>
#include <maya/MGlobal.h>
#include <maya/MItDag.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>
#include <maya/MStringArray.h>

#include "toolkit/hierarchy.h"
#include "toolkit/nodes.h"
#include "toolkit/text.h"

void detachSkin(const MObject& skinCluster) {
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

void removeConstraints(const MString& dup) {
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

void freezeJoint(const MString& joint) {
    const MString script = "cmds.makeIdentity('" + joint + "', apply=True, rotate=True)";
    MGlobal::executePythonCommand(script, false, false);
}

// Top joint last: the script adds it behind its descendants.
void freezeHierarchy(const MString& top) {
    const MString script =
        "cmds.listRelatives('" + top + "', ad=True, type='joint', f=True) + ['" + top + "']";
    MStringArray joints;
    MGlobal::executePythonCommand(script, joints, false, false);
    for (unsigned int i = 0; i < joints.length(); ++i)
        freezeJoint(joints[i]);
}

static MObject duplicateRoot(const MObject& root, const MObjectArray& skinClusters) {
    MFnDagNode rootFn(root);
    const MString rootName = rootFn.name();
    const MString rootPath = rootFn.fullPathName();

    for (unsigned int i = 0; i < skinClusters.length(); ++i)
        detachSkin(skinClusters[i]);

    MString dup;
    const MString duplicateScript = "cmds.duplicate('" + rootPath + "')[0]";
    MGlobal::executePythonCommand(duplicateScript, dup, false, false);
    const MObject newRoot = getObjectByName(dup);
    MFnDagNode newRootFn(newRoot);
    const MString dupPath = newRootFn.fullPathName();

    removeConstraints(dup);
    freezeHierarchy(dup);

    const MString groupScript = "cmds.group('" + rootPath + "', n='tempOldSkeletonGroup')";
    MGlobal::executePythonCommand(groupScript, false, false);
    const MString renameScript = "cmds.rename('" + dupPath + "', '" + rootName + "')";
    MGlobal::executePythonCommand(renameScript, false, false);
    return newRoot;
}

MObjectArray duplicateSkeletonForEdit(const MObjectArray& roots, const MObjectArray& skinClusters) {
    MObjectArray newRoots;
    for (unsigned int i = 0; i < roots.length(); ++i)
        newRoots.append(duplicateRoot(roots[i], skinClusters));
    return newRoots;
}

static void parkOldCharacter(const MObjectArray& roots, const MObjectArray& meshes,
                             CharacterDuplicate& character) {
    MFnDagNode groupFn;
    const MObject group = groupFn.create("transform", MObject::kNullObj);
    groupFn.setName("oldChr");

    MDagModifier modifier;
    for (unsigned int i = 0; i < roots.length(); ++i) {
        modifier.reparentNode(roots[i], group);
        modifier.doIt();
        character.oldRoots.append(roots[i]);
    }
    for (unsigned int i = 0; i < meshes.length(); ++i) {
        const MObject parent = MFnDagNode(meshes[i]).parent(0);
        modifier.reparentNode(parent, group);
        modifier.doIt();
        character.oldMeshParents.append(parent);
    }
}

static MObjectArray nodesBelow(const MObject& top, MFn::Type filter) {
    MObjectArray nodes;
    MItDag it(MItDag::kDepthFirst, filter);
    it.reset(top, MItDag::kDepthFirst, filter);
    for (; !it.isDone(); it.next()) {
        MDagPath path;
        it.getPath(path);
        nodes.append(path.node());
    }
    return nodes;
}

CharacterDuplicate duplicateCharacterGroup(const MObjectArray& roots, const MObjectArray& meshes) {
    CharacterDuplicate character;
    parkOldCharacter(roots, meshes, character);

    const MString script =
        "import maya.cmds as cmds\n"
        "oldChr = cmds.ls('oldChr')\n"
        "newChr = cmds.duplicate(oldChr, n='newChr')\n"
        "cmds.select(newChr[0])\n";
    MGlobal::executePythonCommand(script, false, false);

    MSelectionList matches;
    MGlobal::getSelectionListByName("newChr", matches);
    MObject newGroup;
    if (matches.length() == 0 || !matches.getDependNode(0, newGroup))
        return character;

    character.newRoots = getRootJoints(nodesBelow(newGroup, MFn::kJoint));
    const MObjectArray shapes = nodesBelow(newGroup, MFn::kMesh);
    for (unsigned int i = 0; i < shapes.length(); ++i) {
        const MObject parent = MFnDagNode(shapes[i]).parent(0);
        if (!arrayContains(character.newMeshParents, parent))
            character.newMeshParents.append(parent);
    }
    return character;
}

MObject createNamedTransform(const MString& name) {
    MDagModifier modifier;
    MObject transform = modifier.createNode("transform", MObject::kNullObj);
    modifier.doIt();
    MFnTransform transformFn(transform);
    transformFn.setName(name);
    return transform;
}

void deleteHierarchyChildren(const MObject& root) {
    MStatus status;
    MFnDagNode rootFn(root, &status);
    if (!status) {
        MGlobal::displayError(utf8Text("No se pudo inicializar MFnDagNode para el nodo raíz."));
        return;
    }
    std::vector<MObject> children;
    for (unsigned int i = 0; i < rootFn.childCount(); ++i) {
        const MObject child = rootFn.child(i, &status);
        if (status)
            children.push_back(child);
    }
    for (const MObject& child : children) {
        const MString name = getNodeName(child, false);
        if (name.length() == 0)
            continue;
        const MString script = "delete " + name + ";";
        MGlobal::executeCommand(script, false, false);
    }
}
