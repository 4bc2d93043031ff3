#include "shell/selection_checks.h"

#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MItSelectionList.h>
#include <maya/MString.h>

#include "toolkit/text.h"

static bool isJoint(const MObject& node) {
    MFnDependencyNode nodeFn(node);
    return nodeFn.typeName() == "joint";
}

bool isJointSelection(const MSelectionList& selection) {
    if (selection.length() == 0) {
        MGlobal::displayInfo("Please, select any 'Joint'");
        return false;
    }
    MItSelectionList it(selection, MFn::kInvalid, nullptr);
    for (; !it.isDone(); it.next()) {
        MObject node;
        it.getDependNode(node);
        if (!isJoint(node))
            return false;
    }
    return true;
}

bool isJointArray(const MObjectArray& nodes) {
    if (nodes.length() == 0) {
        MGlobal::displayInfo("Please, select any 'Joint'");
        return false;
    }
    for (unsigned int i = 0; i < nodes.length(); ++i) {
        if (!isJoint(nodes[i]))
            return false;
    }
    return true;
}

bool isNurbsControlSelection(const MSelectionList& selection) {
    if (selection.length() == 0) {
        MGlobal::displayInfo(utf8Text("Por favor, selecciona algún control NURBS."));
        return false;
    }
    MItSelectionList it(selection, MFn::kInvalid, nullptr);
    for (; !it.isDone(); it.next()) {
        MObject node;
        it.getDependNode(node);
        if (!isNurbsControl(node))
            return false;
    }
    return true;
}

bool isNurbsControl(const MObject& node) {
    if (!node.hasFn(MFn::kTransform))
        return node.hasFn(MFn::kNurbsCurve);

    MFnDagNode dagFn(node);
    for (unsigned int i = 0; i < dagFn.childCount(); ++i) {
        if (dagFn.child(i).hasFn(MFn::kNurbsCurve))
            return true;
    }
    return false;
}

void printObjectPaths(const MObjectArray& nodes) {
    for (unsigned int i = 0; i < nodes.length(); ++i) {
        MDagPath path;
        MDagPath::getAPathTo(nodes[i], path);
        MGlobal::displayInfo(path.fullPathName());
    }
}
