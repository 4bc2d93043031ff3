#include "toolkit/reconnection.h"

#include <map>
#include <set>
#include <string>
#include <unordered_map>

#include <maya/MDGModifier.h>
#include <maya/MDagPath.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MPlug.h>
#include <maya/MPlugArray.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include "toolkit/hierarchy.h"
#include "toolkit/nodes.h"
#include "toolkit/skin_discovery.h"
#include "toolkit/text.h"

using JointsByName = std::unordered_map<std::string, MObject>;

static JointsByName mapByName(const MObjectArray& joints) {
    JointsByName byName;
    for (unsigned int i = 0; i < joints.length(); ++i)
        byName[MFnDependencyNode(joints[i]).name().asChar()] = joints[i];
    return byName;
}

// Physical indices, since influence indices need not be dense.
static void rewireElements(const MPlug& elements, const MObject& oldJoint, const MPlug& oldSource,
                           const MPlug& newSource) {
    MPlugArray sources;
    for (unsigned int i = 0; i < elements.numElements(); ++i) {
        const MPlug element = elements.elementByPhysicalIndex(i);
        element.connectedTo(sources, true, false);
        for (unsigned int s = 0; s < sources.length(); ++s) {
            if (sources[s].node() != oldJoint)
                continue;
            MDGModifier modifier;
            modifier.disconnect(oldSource, element);
            modifier.connect(newSource, element);
            modifier.doIt();
        }
    }
}

static void rewireJoint(const MObject& oldJoint, const MObject& newJoint,
                        const MFnDependencyNode& skinFn) {
    MFnDependencyNode oldFn(oldJoint);
    MFnDependencyNode newFn(newJoint);

    const MPlug oldWorld = oldFn.findPlug("worldMatrix", true);
    const MPlug newWorld = newFn.findPlug("worldMatrix", true);
    const MPlug matrix = skinFn.findPlug("matrix", true);
    rewireElements(matrix, oldJoint, oldWorld.elementByLogicalIndex(0),
                   newWorld.elementByLogicalIndex(0));

    const MPlug oldLock = oldFn.findPlug("lockInfluenceWeights", true);
    const MPlug newLock = newFn.findPlug("lockInfluenceWeights", true);
    const MPlug lockWeights = skinFn.findPlug("lockWeights", true);
    rewireElements(lockWeights, oldJoint, oldLock, newLock);

    // The colour plugs are looked up and left where they are, as required.
    if (oldFn.hasAttribute("objectColorRGB") && newFn.hasAttribute("objectColorRGB")) {
        [[maybe_unused]] const MPlug oldColor = oldFn.findPlug("objectColorRGB", true);
        [[maybe_unused]] const MPlug newColor = newFn.findPlug("objectColorRGB", true);
    }
}

void reconnectInfluencesByName(const MObject& originalRoot, const MObject& duplicateRoot,
                               const MObject& skinCluster) {
    const MObjectArray oldJoints = getJointHierarchy(originalRoot);
    const JointsByName newJoints = mapByName(getJointHierarchy(duplicateRoot));
    MFnDependencyNode skinFn(skinCluster);

    for (unsigned int i = 0; i < oldJoints.length(); ++i) {
        const MString name = MFnDependencyNode(oldJoints[i]).name();
        const auto match = newJoints.find(name.asChar());
        if (match == newJoints.end()) {
            MGlobal::displayWarning(utf8Text("No se encontró duplicado para el joint: ") + name);
            continue;
        }
        rewireJoint(oldJoints[i], match->second, skinFn);
    }
    MGlobal::displayInfo(utf8Text("Reconexión por nombre completada."));
}

static void printJointNames(const MObjectArray& joints) {
    for (unsigned int i = 0; i < joints.length(); ++i)
        MGlobal::displayInfo("  " + getNodeName(joints[i], false));
}

void printCountMismatch(unsigned int oldCount, unsigned int newCount) {
    MGlobal::displayError(utf8Text("El número de joints no coincide: "
                                   "originalRoot (") +
                          static_cast<double>(oldCount) +
                          "), "
                          "duplicateRoot (" +
                          static_cast<double>(newCount) + ")");
}

void printJointMismatch(const MObjectArray& oldJoints, const MObjectArray& newJoints) {
    printCountMismatch(oldJoints.length(), newJoints.length());
    MGlobal::displayInfo("Joints en originalRoot:");
    printJointNames(oldJoints);
    MGlobal::displayInfo("Joints en duplicateRoot:");
    printJointNames(newJoints);
}

static bool reconnectOne(const MObject& originalRoot, const MString& rootName,
                         const MObject& skinCluster) {
    const MString skin = MFnDependencyNode(skinCluster).name();
    MGlobal::displayInfo("Reconnecting skinCluster: " + skin);

    const MObject duplicateRoot = getObjectByName(rootName);
    const MObjectArray oldJoints = getJointHierarchy(originalRoot);
    const MObjectArray newJoints = getJointHierarchy(duplicateRoot);
    if (oldJoints.length() != newJoints.length()) {
        printJointMismatch(oldJoints, newJoints);
        return false;
    }
    reconnectInfluencesByName(originalRoot, duplicateRoot, skinCluster);
    return true;
}

static void bindMesh(const MObject& meshNode, const MString& rootName) {
    MStatus status;
    MFnDagNode meshFn(meshNode, &status);
    if (!status)
        return;

    MDagPath path;
    meshFn.getPath(path);
    const MString mesh = path.fullPathName();
    MGlobal::displayInfo("Binding skin to: " + mesh);
    MGlobal::displayInfo("Root name: " + rootName);
    const MString script = "cmds.skinCluster('" + rootName + "', '" + mesh +
                           "', bindMethod=0, skinMethod=0, normalizeWeights=1)";
    MGlobal::executePythonCommand(script, false, false);
}

void reconnectSkinCluster(const MObjectArray& roots, const MObjectArray&,
                          const MObjectArray& skinClusters) {
    if (roots.length() == 0)
        return;
    const MString rootName = MFnDagNode(roots[0]).name();

    for (unsigned int i = 0; i < skinClusters.length(); ++i) {
        if (!reconnectOne(roots[0], rootName, skinClusters[i]))
            return;
    }
    MGlobal::executePythonCommand("cmds.delete('tempOldSkeletonGroup')", false, false);

    const MObjectArray meshes = getDownstreamMeshes(skinClusters);
    for (unsigned int i = 0; i < meshes.length(); ++i)
        bindMesh(meshes[i], rootName);
}

static void removeForeignInfluences(const MObject& sourceSkin, const MObject& destinationSkin) {
    std::map<std::string, std::string> sourcePaths;
    std::map<std::string, std::string> destinationPaths;
    const std::set<std::string> sourceNames = getSkinInfluences(sourceSkin, sourcePaths);
    const std::set<std::string> destinationNames =
        getSkinInfluences(destinationSkin, destinationPaths);
    const MString dstSkin = MFnDependencyNode(destinationSkin).name();

    for (const std::string& name : destinationNames) {
        if (sourceNames.count(name) > 0)
            continue;
        const MString influence = destinationPaths[name].c_str();
        const MString script =
            "cmds.skinCluster('" + dstSkin + "', e=True, ri='" + influence + "')";
        MGlobal::executePythonCommand(script, false, false);
    }
}

static void transferWeights(const MObject& source, const MObject& destination) {
    const MObject sourceSkin = findSkinClusterOfMesh(source);
    const MObject destinationSkin = findSkinClusterOfMesh(destination);
    if (sourceSkin.isNull() || destinationSkin.isNull()) {
        MGlobal::displayError(utf8Text("No se encontró un skin cluster para uno de los objetos."));
        return;
    }
    removeForeignInfluences(sourceSkin, destinationSkin);

    const MString srcSkin = MFnDependencyNode(sourceSkin).name();
    const MString dstSkin = MFnDependencyNode(destinationSkin).name();
    const MString script = "cmds.copySkinWeights(ss=\"" + srcSkin + "\", ds=\"" + dstSkin +
                           "\", noMirror=True, surfaceAssociation=\"closestPoint\", "
                           "influenceAssociation=\"oneToOne\")";
    MGlobal::executePythonCommand(script, false, false);
}

void transferSkinWeights(const MObjectArray& sources, const MObjectArray& destinations) {
    if (sources.length() == 0 || destinations.length() == 0) {
        MGlobal::displayError(utf8Text("Las listas de skins fuente o destino están vacías."));
        return;
    }
    if (sources.length() != destinations.length()) {
        MGlobal::displayError(
            utf8Text("Las listas de skins fuente y destino deben tener el mismo tamaño."));
        return;
    }
    for (unsigned int i = 0; i < sources.length(); ++i)
        transferWeights(sources[i], destinations[i]);
}
