// locator, camera and the measuring shape.
#include "graph/evaluation.h"
#include "nodes/core/base_attrs.h"
#include "nodes/core/fn_numbers.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

constexpr AttrRow kLocatorAttrs[] = {
    vectorRow("localPosition", "lp", AttrType::Distance, 0.0, 0, "worldPosition"),
    vectorRow("localScale", "los", AttrType::Double, 1.0),
    vectorRow("worldPosition", "wp", AttrType::Distance, 0.0,
              kOutput | kNotStored | kArray | kPerInstance),
};
constexpr AffectRow kLocatorAffects[] = {{"worldMatrix", "worldPosition"}};

constexpr TypeAttrs kLocator("locator", kGeometryShape, kLocatorAttrs, kLocatorAffects);

void evaluateLocator(Evaluation& e) {
    constexpr AttrIndex localPosition = kLocator["localPosition"],
                        worldPosition = kLocator["worldPosition"];
    if (e.output() != worldPosition) {
        evaluateDagNode(e);
        return;
    }
    const std::size_t count = e.elementCount(worldPosition);
    for (std::size_t i = 0; i < count; ++i) {
        const auto at = static_cast<std::int32_t>(i);
        e.set(e.plug(worldPosition, at),
              e.vec3(localPosition) * e.matrix(e.plug(dagAttrs().worldMatrix, at)));
    }
}

constexpr AttrRow kCameraAttrs[] = {
    attrRow("renderable", "rnd", AttrType::Bool, 1.0),
    attrRow("focalLength", "fl", AttrType::Double, 35.0),
    attrRow("lensSqueezeRatio", "lsr", AttrType::Double, 1.0),
    compoundRow("cameraAperture", "cap", AttrType::Double2),
    under("cameraAperture", attrRow("horizontalFilmAperture", "hfa", AttrType::Double, 1.41732)),
    under("cameraAperture", attrRow("verticalFilmAperture", "vfa", AttrType::Double, 0.94488)),
    enumRow("filmFit", "ff", "Fill=0:Horizontal=1:Vertical=2:Overscan=3", 1.0),
    attrRow("overscan", "ovr", AttrType::Double, 1.0),
    attrRow("cameraScale", "cs", AttrType::Double, 1.0),
    attrRow("nearClipPlane", "ncp", AttrType::Distance, 0.1),
    attrRow("farClipPlane", "fcp", AttrType::Distance, 10000.0),
    attrRow("orthographic", "o", AttrType::Bool),
    attrRow("orthographicWidth", "ow", AttrType::Distance, 10.0),
    attrRow("centerOfInterest", "coi", AttrType::Distance, 5.0),
    vectorRow("tumblePivot", "tp", AttrType::Distance),
    attrRow("imageName", "imn", AttrType::String),
    attrRow("depthName", "den", AttrType::String),
    attrRow("maskName", "man", AttrType::String),
    attrRow("homeCommand", "hc", AttrType::String),
    attrRow("displayResolution", "dr", AttrType::Bool),
    attrRow("displayFilmGate", "dfg", AttrType::Bool),
};

constexpr TypeAttrs kCamera("camera", kShape, kCameraAttrs);

constexpr AttrRow kDistanceAttrs[] = {
    vectorRow("startPoint", "sp", AttrType::Distance, 0.0, 0, "distance"),
    vectorRow("endPoint", "ep", AttrType::Distance, 0.0, 0, "distance"),
    attrRow("distance", "dist", AttrType::Distance, 0.0, kOutput | kNotStored),
};

constexpr TypeAttrs kDistance("distanceDimShape", kShape, kDistanceAttrs);

void evaluateDistance(Evaluation& e) {
    constexpr AttrIndex start = kDistance["startPoint"], end = kDistance["endPoint"],
                        distance = kDistance["distance"];
    if (e.output() == distance)
        e.set(distance, (e.vec3(end) - e.vec3(start)).length());
    else
        evaluateDagNode(e);
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kLocator, fn::kLocator, "kLocator", 0, evaluateLocator),
    typeRow(kCamera, fn::kCamera, "kCamera"),
    typeRow(kDistance, fn::kShape, "kShape", 0, evaluateDistance),
};

}  // namespace

TypeRows viewShapeTypes() {
    return family(kTypes);
}

}  // namespace torvel
