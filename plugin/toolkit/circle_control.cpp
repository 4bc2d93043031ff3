#include "toolkit/circle_control.h"

#include <maya/MDagPath.h>
#include <maya/MDoubleArray.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MGlobal.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>
#include <maya/MSelectionList.h>
#include <maya/MSpace.h>

#include "toolkit/nodes.h"

// The points grow, not the transform, so the control's scale channels stay at 1.
static void scalePoints(const MDagPath& curve, double scale) {
    MFnNurbsCurve curveFn(curve);
    const int count = curveFn.numCVs();
    MPointArray points;
    curveFn.getCVs(points, MSpace::kObject);
    for (int i = 0; i < count; ++i)
        points[static_cast<unsigned int>(i)] *= scale;
    curveFn.setCVs(points, MSpace::kObject);
    curveFn.updateCurve();
}

MObject createCircleControl(const MObject& joint, const MString& axis, const double& scale) {
    const MString name = getNodeName(joint, false);
    const MString jointPath = getNodeName(joint, true);
    MDoubleArray normal(3, 0.0);
    normal[0] = axis == "x" ? 1.0 : 0.0;
    normal[1] = axis == "y" ? 1.0 : 0.0;
    normal[2] = axis == "z" ? 1.0 : 0.0;
    const MString ctrl = name + "_ctrl";

    const MString circleScript =
        "circle -name \"" + ctrl + "\" -nr " + normal[0] + " " + normal[1] + " " + normal[2] + ";";
    MGlobal::executeCommand(circleScript, false, false);
    const MString matchScript = "matchTransform " + ctrl + " " + jointPath + ";";
    MGlobal::executeCommand(matchScript, false, false);

    MSelectionList list;
    list.add(ctrl);
    MDagPath path;
    list.getDagPath(0, path);
    path.extendToShape();
    scalePoints(path, scale);

    MObject control;
    list.getDependNode(0, control);
    return control;
}
