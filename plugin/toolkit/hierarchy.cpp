#include "toolkit/hierarchy.h"

#include <algorithm>
#include <vector>

#include <maya/MDagModifier.h>
#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MItDag.h>
#include <maya/MItDependencyGraph.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include "toolkit/nodes.h"

static bool isJointType(const MObject& node) {
    MFnDependencyNode nodeFn(node);
    return nodeFn.typeName() == "joint";
}

static void pushChildrenReversed(const MFnDagNode& dagFn, std::vector<MObject>& pending) {
    for (unsigned int i = dagFn.childCount(); i-- > 0;) {
        MStatus status;
        const MObject child = dagFn.child(i, &status);
        if (status)
            pending.push_back(child);
    }
}

// The stack stands in for recursion, which a chain of ten thousand joints would overflow.
static void appendJointHierarchy(const MObject& root, MObjectArray& joints) {
    std::vector<MObject> pending{root};
    while (!pending.empty()) {
        const MObject node = pending.back();
        pending.pop_back();

        MStatus status;
        MFnDagNode dagFn(node, &status);
        if (!status)
            continue;
        if (dagFn.typeName() == "joint")
            joints.append(node);
        pushChildrenReversed(dagFn, pending);
    }
}

MObjectArray getJointHierarchy(const MObject& root) {
    MObjectArray joints;
    appendJointHierarchy(root, joints);
    return joints;
}

MObjectArray getJointsOfRoots(const MObjectArray& roots) {
    MObjectArray joints;
    for (unsigned int i = 0; i < roots.length(); ++i)
        appendJointHierarchy(roots[i], joints);
    return joints;
}

MObject findRootJoint(const MObject& node) {
    MDagPath path;
    const MStatus status = MDagPath::getAPathTo(node, path);
    if (!status || !path.isValid())
        return node;

    MObject current = node;
    MFnDagNode dagFn(path);
    while (true) {
        const MObject parent = dagFn.parentCount() > 0 ? dagFn.parent(0) : MObject();
        if (parent.isNull() || !isJointType(parent))
            return current;
        current = parent;
        dagFn.setObject(current);
    }
}

static MObject climbToTop(MFnDagNode& dagFn) {
    MObject candidate;
    while (dagFn.parentCount() > 0) {
        const MObject parent = dagFn.parent(0);
        if (!isJointType(parent))
            return dagFn.object();
        candidate = parent;
        dagFn.setObject(candidate);
    }
    return candidate;
}

MObjectArray getRootJoints(const MObjectArray& nodes) {
    MObjectArray roots;
    for (unsigned int i = 0; i < nodes.length(); ++i) {
        MDagPath path;
        MDagPath::getAPathTo(nodes[i], path);
        if (!path.isValid()) {
            MGlobal::displayWarning("Object is not valid!");
            continue;
        }
        MFnDagNode dagFn(path);
        const MObject top = climbToTop(dagFn);
        if (!arrayContains(roots, top))
            roots.append(top);
    }
    return roots;
}

MObjectArray getParentsOfArray(const MObjectArray& nodes) {
    MObjectArray parents;
    for (unsigned int i = 0; i < nodes.length(); ++i) {
        MDagPath path;
        MDagPath::getAPathTo(nodes[i], path);
        if (path.length() < 2) {
            parents.append(MObject());
            continue;
        }
        MDagPath parentPath = path;
        parentPath.pop(1);
        parents.append(parentPath.node());
    }
    return parents;
}

MObjectArray getDownstreamMeshes(const MObjectArray& nodes) {
    MObjectArray meshes;
    for (unsigned int i = 0; i < nodes.length(); ++i) {
        MObject start = nodes[i];  // the iterator takes its root by non-const reference
        MItDependencyGraph it(start, MFn::kMesh, MItDependencyGraph::kDownstream,
                              MItDependencyGraph::kDepthFirst, MItDependencyGraph::kNodeLevel);
        for (; !it.isDone(); it.next())
            meshes.append(it.currentItem());
    }
    if (meshes.length() == 0)
        meshes.append(MObject());
    return meshes;
}

bool hasConstraintChild(const MObjectArray& nodes) {
    for (unsigned int i = 0; i < nodes.length(); ++i) {
        MFnDagNode dagFn(nodes[i]);
        for (unsigned int c = 0; c < dagFn.childCount(); ++c) {
            if (dagFn.child(c).hasFn(MFn::kConstraint))
                return true;
        }
    }
    return false;
}

static std::vector<MString> shortNames(const MObjectArray& nodes) {
    std::vector<MString> names;
    for (unsigned int i = 0; i < nodes.length(); ++i) {
        MFnDependencyNode nodeFn(nodes[i]);
        names.push_back(nodeFn.name());
    }
    return names;
}

MObjectArray findNamesakesUnder(const MObjectArray& references, const MObject& root) {
    const std::vector<MString> names = shortNames(references);
    MObjectArray namesakes;
    MDagPath rootPath;
    MDagPath::getAPathTo(root, rootPath);

    MItDag it(MItDag::kDepthFirst, MFn::kInvalid);
    it.reset(rootPath, MItDag::kDepthFirst, MFn::kInvalid);
    for (; !it.isDone(); it.next()) {
        MDagPath path;
        it.getPath(path);
        MFnDagNode dagFn(path);
        if (std::find(names.begin(), names.end(), dagFn.name()) != names.end())
            namesakes.append(path.node());
    }
    return namesakes;
}

void reparentNode(const MObjectArray& newParents, const MObjectArray& nodes) {
    MDagModifier modifier;
    for (unsigned int i = 0; i < nodes.length(); ++i) {
        modifier.reparentNode(nodes[i], newParents[i]);
        modifier.doIt();
    }
}

static bool hasJointChild(const MDagPath& path) {
    MFnDagNode dagFn(path);
    for (unsigned int i = 0; i < dagFn.childCount(); ++i) {
        if (dagFn.child(i).hasFn(MFn::kJoint))
            return true;
    }
    return false;
}

void selectHierarchy(const MObjectArray& roots, bool skipEndJoints) {
    MSelectionList list;
    for (unsigned int i = 0; i < roots.length(); ++i) {
        MDagPath rootPath;
        MDagPath::getAPathTo(roots[i], rootPath);
        list.add(rootPath, MObject::kNullObj, false);

        MItDag it(MItDag::kDepthFirst, MFn::kJoint);
        it.reset(rootPath, MItDag::kDepthFirst, MFn::kJoint);
        for (; !it.isDone(); it.next()) {
            MDagPath path;
            it.getPath(path);
            if (!skipEndJoints || hasJointChild(path))
                list.add(path, MObject::kNullObj, false);
        }
    }
    MGlobal::setActiveSelectionList(list, MGlobal::kReplaceList);
}
