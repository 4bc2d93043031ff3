#include "toolkit/skin_discovery.h"

#include <maya/MDagPath.h>
#include <maya/MDagPathArray.h>
#include <maya/MFn.h>
#include <maya/MFnBase.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnSkinCluster.h>
#include <maya/MGlobal.h>
#include <maya/MItDependencyGraph.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include "toolkit/nodes.h"
#include "toolkit/text.h"

MObjectArray findSkinClustersOfJoint(const MObject& joint) {
    MObjectArray clusters;
    MObject start = joint;  // the iterator takes its root by non-const reference
    MItDependencyGraph it(start, MFn::kSkinClusterFilter, MItDependencyGraph::kDownstream,
                          MItDependencyGraph::kDepthFirst, MItDependencyGraph::kNodeLevel);
    for (; !it.isDone(); it.next()) {
        const MObject item = it.currentItem();
        if (item.hasFn(MFn::kSkinClusterFilter))
            clusters.append(item);
    }
    return clusters;
}

MObject findSkinClusterOfMesh(const MObject& transform) {
    MObject mesh = getMeshChild(transform);
    if (mesh.isNull()) {
        MGlobal::displayError(utf8Text("No se encontró un nodo mesh asociado."));
        return MObject();
    }
    MItDependencyGraph it(mesh, MFn::kSkinClusterFilter, MItDependencyGraph::kUpstream,
                          MItDependencyGraph::kDepthFirst, MItDependencyGraph::kNodeLevel);
    for (; !it.isDone(); it.next()) {
        const MObject item = it.currentItem();
        if (item.hasFn(MFn::kSkinClusterFilter))
            return item;
    }
    return MObject();
}

static bool isValidNode(const MObject& node) {
    return !node.isNull() && MFnBase::isValid(node.apiType());
}

static void appendOnce(const MObject& node, MObjectArray& array) {
    if (!arrayContains(array, node))
        array.append(node);
}

static void collectFromJoint(const MObject& joint, MObjectArray& clusters) {
    const MObjectArray found = findSkinClustersOfJoint(joint);
    for (unsigned int i = 0; i < found.length(); ++i) {
        if (isValidNode(found[i]))
            appendOnce(found[i], clusters);
        else
            MGlobal::displayWarning(utf8Text("No se encontró SkinCluster asociado al joint."));
    }
}

static void collectFromTransform(const MObject& transform, MObjectArray& clusters) {
    const MObject mesh = getMeshChild(transform);
    if (mesh.isNull()) {
        MGlobal::displayWarning(utf8Text("No se encontró Mesh asociado al transform."));
        return;
    }
    // The shape is handed on, not the transform: this road finds no cluster, as required.
    const MObject cluster = findSkinClusterOfMesh(mesh);
    if (isValidNode(cluster))
        appendOnce(cluster, clusters);
    else
        MGlobal::displayWarning(utf8Text("No se encontró SkinCluster asociado al mesh."));
}

MObjectArray collectSkinClusters(const MObjectArray& nodes) {
    MObjectArray clusters;
    for (unsigned int i = 0; i < nodes.length(); ++i) {
        if (nodes[i].hasFn(MFn::kJoint))
            collectFromJoint(nodes[i], clusters);
        else
            collectFromTransform(nodes[i], clusters);
    }
    return clusters;
}

std::set<std::string> getSkinInfluences(const MObject& skinCluster,
                                        std::map<std::string, std::string>& fullPathByName) {
    std::set<std::string> names;
    MStatus status;
    MFnSkinCluster skinFn(skinCluster, &status);
    if (!status) {
        MGlobal::displayError("No se pudo inicializar MFnSkinCluster.");
        return names;
    }
    MDagPathArray influences;
    const unsigned int count = skinFn.influenceObjects(influences, &status);
    if (!status) {
        MGlobal::displayError("No se pudo obtener las influencias.");
        return names;
    }
    for (unsigned int i = 0; i < count; ++i) {
        MFnDagNode dagFn(influences[i].node(), &status);
        if (!status)
            continue;
        const MString name = dagFn.name();
        names.insert(name.asChar());
        fullPathByName[name.asChar()] = dagFn.fullPathName().asChar();
    }
    return names;
}
