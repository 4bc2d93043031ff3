#include <maya/MDagPath.h>
#include <maya/MFnTransform.h>
#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MVector.h>

#include "api/bridge.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::Node;
using torvel::V3d;

namespace {

MPoint originOf(const MMatrix& matrix) {
    return MPoint(matrix(3, 0), matrix(3, 1), matrix(3, 2));
}

}  // namespace

MFnTransform::MFnTransform() = default;

MFnTransform::MFnTransform(MObject& object, MStatus* ReturnStatus) {
    report(ReturnStatus, attach(object, MFn::kTransform).statusCode());
}

MFnTransform::MFnTransform(const MObject& object, MStatus* ReturnStatus) {
    report(ReturnStatus, attach(object, MFn::kTransform).statusCode());
}

MFnTransform::MFnTransform(const MDagPath& path, MStatus* ReturnStatus) {
    report(ReturnStatus, MFnDagNode::setObject(path).statusCode());
}

MFnTransform::~MFnTransform() = default;

MFn::Type MFnTransform::type() const {
    return MFn::kTransform;
}

MObject MFnTransform::create(const MObject& parent, MStatus* ReturnStatus) {
    return MFnDagNode::create(MString("transform"), parent, ReturnStatus);
}

MVector MFnTransform::getTranslation(MSpace::Space space, MStatus* ReturnStatus) const {
    const Node* node = sceneNode(fObject);
    if (!check(ReturnStatus, node))
        return MVector();
    if (space == MSpace::kWorld) {
        const MDagPath path = dagPath(ReturnStatus);
        return path.isValid() ? MVector(originOf(path.inclusiveMatrix())) : MVector();
    }
    const torvel::Plug translate = scene()->findPlug(node->self, "translate");
    if (!check(ReturnStatus, space != MSpace::kInvalid && !translate.isNull()))
        return MVector();
    const V3d value = scene()->vec3(translate);
    return MVector(value.x, value.y, value.z);
}

MStatus MFnTransform::setTranslation(const MVector& translation, MSpace::Space space) {
    const Node* node = sceneNode(fObject);
    const torvel::Plug translate =
        node ? scene()->findPlug(node->self, "translate") : torvel::Plug();
    if (translate.isNull() || space == MSpace::kInvalid)
        return MStatus::kInvalidParameter;
    if (!scene()->isSettable(translate))
        return MStatus::kFailure;
    MVector value = translation;
    if (space == MSpace::kWorld) {
        const MDagPath path = dagPath();
        if (!path.isValid())
            return MStatus::kInvalidParameter;
        // What pivots add to the channels stays as it is, so only the way to go is turned into the
        // parent's space.
        const MVector way = translation - MVector(originOf(path.inclusiveMatrix()));
        value = getTranslation(MSpace::kTransform) + way * path.exclusiveMatrix().inverse();
    }
    scene()->setVec3(translate, V3d(value.x, value.y, value.z));
    return MStatus::kSuccess;
}

MAYA_API_NAMESPACE_CLOSE
