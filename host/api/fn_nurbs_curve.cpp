#include <algorithm>
#include <memory>

#include <maya/MDagPath.h>
#include <maya/MDoubleArray.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>

#include "api/bridge.h"
#include "edit/curves.h"
#include "nodes/shape/nurbs_curve.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::NodeHandle;
using torvel::NurbsCurveData;
using torvel::V3d;
using CurvePtr = std::shared_ptr<const NurbsCurveData>;

namespace {

/// What the shape shows: history and moved vertices included. Null when there is none.
CurvePtr curveOf(const MObject& curve) {
    const torvel::Node* node = sceneNode(curve);
    return node ? torvel::curveOf(*scene(), node->self) : nullptr;
}

bool ascends(const MDoubleArray& knots) {
    return std::is_sorted(knots.begin(), knots.end());
}

std::shared_ptr<NurbsCurveData> makeData(const MPointArray& cvs, const MDoubleArray& knots,
                                         unsigned int degree, MFnNurbsCurve::Form form) {
    auto data = std::make_shared<NurbsCurveData>();
    data->degree = static_cast<int>(degree);
    data->spans = static_cast<int>(cvs.length() - degree);
    data->form = form == MFnNurbsCurve::kPeriodic ? 2 : form == MFnNurbsCurve::kClosed ? 1 : 0;
    data->knots.assign(knots.begin(), knots.end());
    for (const MPoint& cv : cvs)
        data->cvs.emplace_back(cv.x, cv.y, cv.z);
    return data;
}

/// The shape below `parent`; with the world as parent the transform above it, too.
bool makeShape(NodeHandle parent, NodeHandle& transform, NodeHandle& shape) {
    if (!parent.isNull())
        return scene()->createNode("nurbsCurve", {}, parent, shape).isOk();
    if (!scene()->createNode("transform", "curve1", {}, transform))
        return false;
    // "curve7" goes with "curveShape7".
    const std::string number = scene()->node(transform)->name.substr(5);
    const std::string name = torvel::freeShapeName(*scene(), "curveShape", number);
    return scene()->createNode("nurbsCurve", name, transform, shape).isOk();
}

}  // namespace

MFnNurbsCurve::MFnNurbsCurve() = default;

MFnNurbsCurve::MFnNurbsCurve(MObject& object, MStatus* ReturnStatus) {
    report(ReturnStatus, attach(object, MFn::kNurbsCurve).statusCode());
}

MFnNurbsCurve::MFnNurbsCurve(const MObject& object, MStatus* ReturnStatus) {
    report(ReturnStatus, attach(object, MFn::kNurbsCurve).statusCode());
}

MFnNurbsCurve::MFnNurbsCurve(const MDagPath& path, MStatus* ReturnStatus) {
    // A path to a transform stands for the curve below it.
    MDagPath toShape(path);
    toShape.extendToShape();
    report(ReturnStatus, MFnDagNode::setObject(toShape).statusCode());
}

MFnNurbsCurve::~MFnNurbsCurve() = default;

MFn::Type MFnNurbsCurve::type() const {
    return MFn::kNurbsCurve;
}

MObject MFnNurbsCurve::create(const MPointArray& cvs, const MDoubleArray& knots,
                              unsigned int degree, Form form, bool create2D, bool createRational,
                              const MObject& parentOrOwner, MStatus* ReturnStatus) {
    MFnDagNode::setObject(MObject());
    const NodeHandle parent = MApiBridge::handle(parentOrOwner);
    const bool toWorld =
        MApiBridge::isBlank(parentOrOwner) || (scene() && parent == scene()->world());
    const bool sound = degree > 0 && cvs.length() > degree &&
                       knots.length() == cvs.length() + degree - 1 && ascends(knots) &&
                       form > kInvalid && form < kLast;
    const bool placed = scene() && (toWorld || torvel::api::hasFn(parent, MFn::kTransform));
    if (!check(ReturnStatus, sound && placed))
        return MObject();
    if (!check(ReturnStatus, !create2D && !createRational, MStatus::kNotImplemented))
        return MObject();

    NodeHandle transform, shape;
    if (!check(ReturnStatus, makeShape(toWorld ? NodeHandle() : parent, transform, shape),
               MStatus::kFailure))
        return MObject();
    const MObject made = MApiBridge::object(shape);
    torvel::setCurve(*scene(), shape, makeData(cvs, knots, degree, form));
    MFnDagNode::setObject(made);
    return toWorld ? MApiBridge::object(transform) : made;
}

int MFnNurbsCurve::numCVs(MStatus* ReturnStatus) const {
    const CurvePtr curve = curveOf(fObject);
    return check(ReturnStatus, curve != nullptr) ? static_cast<int>(curve->cvs.size()) : 0;
}

int MFnNurbsCurve::numKnots(MStatus* ReturnStatus) const {
    const CurvePtr curve = curveOf(fObject);
    return check(ReturnStatus, curve != nullptr) ? static_cast<int>(curve->knots.size()) : 0;
}

int MFnNurbsCurve::numSpans(MStatus* ReturnStatus) const {
    const CurvePtr curve = curveOf(fObject);
    return check(ReturnStatus, curve != nullptr) ? curve->spans : 0;
}

int MFnNurbsCurve::degree(MStatus* ReturnStatus) const {
    const CurvePtr curve = curveOf(fObject);
    return check(ReturnStatus, curve != nullptr) ? curve->degree : 0;
}

MFnNurbsCurve::Form MFnNurbsCurve::form(MStatus* ReturnStatus) const {
    const CurvePtr curve = curveOf(fObject);
    if (!check(ReturnStatus, curve != nullptr))
        return kInvalid;
    return curve->form == 2 ? kPeriodic : curve->form == 1 ? kClosed : kOpen;
}

MStatus MFnNurbsCurve::getKnots(MDoubleArray& knots) const {
    const CurvePtr curve = curveOf(fObject);
    knots.clear();
    if (!curve)
        return MStatus::kInvalidParameter;
    for (const double knot : curve->knots)
        knots.append(knot);
    return MStatus::kSuccess;
}

MStatus MFnNurbsCurve::getCVs(MPointArray& cvs, MSpace::Space space) const {
    const CurvePtr curve = curveOf(fObject);
    const MDagPath path = dagPath();
    cvs.clear();
    if (!curve || (space == MSpace::kWorld && !path.isValid()))
        return MStatus::kInvalidParameter;
    const MMatrix matrix = space == MSpace::kWorld ? path.inclusiveMatrix() : MMatrix();
    for (const V3d& cv : curve->cvs)
        cvs.append(MPoint(cv.x, cv.y, cv.z) * matrix);
    return MStatus::kSuccess;
}

MStatus MFnNurbsCurve::setCVs(const MPointArray& cvs, MSpace::Space space) {
    const CurvePtr curve = curveOf(fObject);
    const MDagPath path = dagPath();
    if (!curve || curve->cvs.size() != cvs.length() || (space == MSpace::kWorld && !path.isValid()))
        return MStatus::kInvalidParameter;
    const MMatrix toLocal = space == MSpace::kWorld ? path.inclusiveMatrix().inverse() : MMatrix();
    std::vector<V3d> points;
    for (const MPoint& given : cvs) {
        const MPoint cv = given * toLocal;
        points.emplace_back(cv.x, cv.y, cv.z);
    }
    const bool moved = torvel::setCurvePoints(*scene(), MApiBridge::handle(fObject), points);
    return moved ? MStatus::kSuccess : MStatus::kFailure;
}

MStatus MFnNurbsCurve::updateCurve() {
    const torvel::Node* node = sceneNode(fObject);
    if (!node)
        return MStatus::kInvalidParameter;
    scene()->setDirty(scene()->findPlug(node->self, "local"));
    return MStatus::kSuccess;
}

MAYA_API_NAMESPACE_CLOSE
