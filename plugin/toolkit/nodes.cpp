#include "toolkit/nodes.h"

#include <maya/MFn.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MItSelectionList.h>
#include <maya/MStatus.h>

#include "toolkit/text.h"

MSelectionList objectsToSelectionList(const MObjectArray& objects) {
    MSelectionList list;
    for (unsigned int i = 0; i < objects.length(); ++i)
        list.add(objects[i], false);
    return list;
}

MObjectArray selectionToArray(const MSelectionList& selection) {
    MObjectArray objects;
    MItSelectionList it(selection, MFn::kInvalid, nullptr);
    for (; !it.isDone(); it.next()) {
        MObject object;
        it.getDependNode(object);
        objects.append(object);
    }
    return objects;
}

bool arrayContains(const MObjectArray& array, const MObject& object) {
    for (unsigned int i = 0; i < array.length(); ++i) {
        if (array[i] == object)
            return true;
    }
    return false;
}

void printSelection() {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);

    MItSelectionList it(selection, MFn::kInvalid, nullptr);
    for (; !it.isDone(); it.next()) {
        MObject object;
        it.getDependNode(object);
        if (object.isNull()) {
            MGlobal::displayInfo("Objeto nulo.");
            continue;
        }
        MFnDependencyNode nodeFn(object);
        MGlobal::displayInfo("Objeto: " + nodeFn.name() + " | Tipo: " + nodeFn.typeName());
    }
}

MString getNodeName(const MObject& node, const bool& fullPath) {
    MStatus status;
    MFnDagNode dagFn(node, &status);
    if (!status) {
        MGlobal::displayError("No se pudo obtener el nombre del objeto.");
        return MString();
    }
    return fullPath ? dagFn.fullPathName() : dagFn.name();
}

MObject getObjectByName(const MString& name) {
    MSelectionList matches;
    MGlobal::getSelectionListByName(name, matches);
    if (matches.length() == 0) {
        MGlobal::displayError(utf8Text("No se encontró el objeto: ") + name);
        return MObject();
    }
    MObject object;
    matches.getDependNode(0, object);
    return object;
}

MObject getParentNode(const MObject& node) {
    MStatus status;
    MFnDagNode dagFn(node, &status);
    if (!status) {
        MGlobal::displayError(utf8Text("El objeto no es un nodo DAG válido."));
        return MObject();
    }
    return dagFn.parentCount() > 0 ? dagFn.parent(0) : MObject();
}

MObject getMeshChild(const MObject& transform) {
    MStatus status;
    MFnDagNode dagFn(transform, &status);
    if (!status) {
        MGlobal::displayError("El objeto no es un nodo DAG.");
        return MObject();
    }
    for (unsigned int i = 0; i < dagFn.childCount(); ++i) {
        const MObject child = dagFn.child(i, &status);
        if (!status) {
            MGlobal::displayError("Error al obtener el hijo del nodo transform.");
            continue;
        }
        if (child.hasFn(MFn::kMesh))
            return child;
    }
    return MObject();
}

bool endsWith(const MString& text, const std::string& suffix) {
    const std::string whole = text.asChar();
    if (whole.size() < suffix.size())
        return false;
    return whole.compare(whole.size() - suffix.size(), suffix.size(), suffix) == 0;
}
