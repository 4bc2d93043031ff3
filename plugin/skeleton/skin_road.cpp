#include "skeleton/skin_road.h"

#include <maya/MFnDagNode.h>
#include <maya/MGlobal.h>
#include <maya/MStatus.h>

#include "toolkit/hierarchy.h"
#include "toolkit/nodes.h"
#include "toolkit/reconnection.h"

const char* const kTempGroup = "tempOldSkeletonGroup";

static void runPython(const MString& script) {
    MGlobal::executePythonCommand(script, false, false);
}

void restoreBindPose(const MObject& joint) {
    const MString script = "dagPose -r -g -bp " + getNodeName(joint) + ";";
    MGlobal::executeCommand(script, false, false);
}

MString duplicateSkeleton(const MString& rootPath) {
    MString dup;
    const MString script = "cmds.duplicate('" + rootPath + "')[0]";
    MGlobal::executePythonCommand(script, dup, false, false);
    return dup;
}

void parkOldSkeleton(const MString& rootPath) {
    runPython("cmds.group('" + rootPath + "', n='" + kTempGroup + "')");
}

void deleteOldSkeleton() {
    runPython(MString("cmds.delete('") + kTempGroup + "')");
}

void renameTo(const MString& dup, const MString& name) {
    MString renamed;
    const MString script = "cmds.rename('" + dup + "', '" + name + "')";
    MGlobal::executePythonCommand(script, renamed, false, false);
}

static bool sameJointCount(const MObject& oldRoot, const MObject& newRoot) {
    const unsigned int oldCount = getJointHierarchy(oldRoot).length();
    const unsigned int newCount = getJointHierarchy(newRoot).length();
    if (oldCount != newCount)
        printCountMismatch(oldCount, newCount);
    return oldCount == newCount;
}

bool reconnectInSilence(const MObject& oldRoot, const MString& rootName,
                        const MObjectArray& skins) {
    for (unsigned int i = 0; i < skins.length(); ++i) {
        const MObject newRoot = getObjectByName(rootName);
        if (!sameJointCount(oldRoot, newRoot))
            return false;
        reconnectInfluencesByName(oldRoot, newRoot, skins[i]);
    }
    return true;
}

void bindMesh(const MString& rootName, const MString& mesh) {
    runPython("cmds.skinCluster('" + rootName + "', '" + mesh +
              "', bindMethod=0, skinMethod=0, normalizeWeights=1)");
}

void bindMeshesOf(const MString& rootName, const MObjectArray& skins) {
    const MObjectArray meshes = getDownstreamMeshes(skins);
    for (unsigned int i = 0; i < meshes.length(); ++i) {
        MStatus status;
        MFnDagNode meshFn(meshes[i], &status);
        if (status)
            bindMesh(rootName, meshFn.fullPathName());
    }
}
