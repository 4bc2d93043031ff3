#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MFnDagNode.h>
#include <maya/MGlobal.h>
#include <maya/MItSelectionList.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include "control/control_window.h"

static void reportChild(const MObject& child) {
    if (child.hasFn(MFn::kMesh))
        MGlobal::displayInfo("? Tiene una malla (kMesh) como shape.");
    else if (child.hasFn(MFn::kNurbsCurve))
        MGlobal::displayInfo("? Tiene una curva NURBS (kNurbsCurve) como shape.");
    else
        MGlobal::displayInfo(MString("? Hijo no malla/curva, tipo: ") + child.apiTypeStr());
}

void ControlWindow::inspectSelection() {
    MSelectionList selection;
    const MStatus status = MGlobal::getActiveSelectionList(selection, false);
    if (status != MS::kSuccess || selection.length() == 0) {
        MGlobal::displayInfo("No hay objetos seleccionados.");
        return;
    }

    MItSelectionList it(selection, MFn::kDagNode, nullptr);
    for (; !it.isDone(); it.next()) {
        MDagPath path;
        it.getDagPath(path);
        const MObject node = path.node();
        MGlobal::displayInfo(MString("Nodo seleccionado: ") + node.apiTypeStr());
        if (!node.hasFn(MFn::kTransform))
            continue;
        MFnDagNode nodeFn(path);
        for (unsigned int i = 0; i < nodeFn.childCount(); ++i)
            reportChild(nodeFn.child(i));
    }
}
