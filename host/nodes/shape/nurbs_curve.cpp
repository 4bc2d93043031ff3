#include "nodes/shape/nurbs_curve.h"

#include <algorithm>

#include "graph/evaluation.h"
#include "nodes/core/base_attrs.h"
#include "nodes/core/fn_numbers.h"
#include "nodes/shape/nurbs_curve_math.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

constexpr const char* kShapes = "local worldSpace degree spans form minMaxValue";

constexpr AttrRow kAttrs[] = {
    attrRow("create", "cr", AttrType::NurbsCurve, 0.0, kGeometryIn | kNotStored, kShapes),
    attrRow("cached", "cc", AttrType::NurbsCurve, 0.0, kHidden, kShapes),
    attrRow("tweak", "tw", AttrType::Bool, 0.0, 0, kShapes),
    attrRow("tweakLocation", "twl", AttrType::Any, 0.0, kHidden | kNotStored),
    compoundRow("controlPoints", "cp", AttrType::Double3, kArray, kShapes),
    under("controlPoints", attrRow("xValue", "xv", AttrType::Distance)),
    under("controlPoints", attrRow("yValue", "yv", AttrType::Distance)),
    under("controlPoints", attrRow("zValue", "zv", AttrType::Distance)),
    attrRow("local", "l", AttrType::NurbsCurve, 0.0, kComputedOutput | kGeometryOut),
    attrRow("worldSpace", "ws", AttrType::NurbsCurve, 0.0,
            kComputedOutput | kGeometryOut | kArray | kPerInstance),
    compoundRow("minMaxValue", "mmv", AttrType::Double2, kComputedOutput),
    under("minMaxValue", attrRow("minValue", "min", AttrType::Double, 0.0, kComputedOutput)),
    under("minMaxValue", attrRow("maxValue", "max", AttrType::Double, 0.0, kComputedOutput)),
    attrRow("degree", "d", AttrType::Long, 0.0, kComputedOutput),
    attrRow("spans", "s", AttrType::Long, 0.0, kComputedOutput),
    enumRow("form", "f", "Open:Closed:Periodic", 0.0, kComputedOutput),
    attrRow("dispCV", "dcv", AttrType::Bool),
    attrRow("dispEP", "dep", AttrType::Bool),
    attrRow("dispHull", "dh", AttrType::Bool),
    attrRow("dispGeometry", "dg", AttrType::Bool, 1.0),
    attrRow("lineWidth", "lw", AttrType::Float, -1.0),
};
constexpr AffectRow kAffects[] = {{"worldMatrix", "worldSpace"}, {"local", "worldSpace"}};

constexpr TypeAttrs kCurve("nurbsCurve", kDeformableShape, kAttrs, kAffects);

struct CurveAttrs {
    AttrIndex create = kCurve["create"], cached = kCurve["cached"], tweak = kCurve["tweak"],
              controlPoints = kCurve["controlPoints"];
    AttrIndex local = kCurve["local"], worldSpace = kCurve["worldSpace"];
    AttrIndex degree = kCurve["degree"], spans = kCurve["spans"], form = kCurve["form"];
    AttrIndex minMaxValue = kCurve["minMaxValue"], minValue = kCurve["minValue"],
              maxValue = kCurve["maxValue"];
};
constexpr CurveAttrs kAt{};

using CurvePtr = std::shared_ptr<const NurbsCurveData>;

CurvePtr tweaked(const Evaluation& e, const CurvePtr& curve) {
    const CurveAttrs& a = kAt;
    auto out = std::make_shared<NurbsCurveData>(*curve);
    for (std::size_t i = 0; i < e.elementCount(a.controlPoints); ++i) {
        const std::int32_t at = e.logicalAt(a.controlPoints, i);
        if (at >= 0 && static_cast<std::size_t>(at) < out->cvs.size())
            out->cvs[static_cast<std::size_t>(at)] += e.vec3(e.plug(a.controlPoints, at));
    }
    return out;
}

CurvePtr shapeOf(const Evaluation& e) {
    const CurveAttrs& a = kAt;
    const auto made = e.dataAs<NurbsCurveData>(e.plug(a.create));
    if (!made)
        return e.dataAs<NurbsCurveData>(e.plug(a.cached));
    return e.flag(a.tweak) && e.elementCount(a.controlPoints) ? tweaked(e, made) : made;
}

void evaluateWorldSpace(Evaluation& e) {
    const auto curve = e.dataAs<NurbsCurveData>(e.plug(kAt.local));
    const AttrIndex world = dagAttrs().worldMatrix;
    const std::size_t count = e.elementCount(kAt.worldSpace);
    for (std::size_t i = 0; i < count; ++i) {
        const auto at = static_cast<std::int32_t>(i);
        e.set(e.plug(e.output(), at),
              PayloadPtr(curve ? transformed(*curve, e.matrix(e.plug(world, at))) : nullptr));
    }
}

void evaluateRange(Evaluation& e) {
    const CurvePtr curve = shapeOf(e);
    const bool sound = curve && curveFault(*curve).empty();
    e.set(kAt.minValue, sound ? firstParameter(*curve) : 0.0);
    e.set(kAt.maxValue, sound ? lastParameter(*curve) : 0.0);
}

void evaluateCurve(Evaluation& e) {
    const CurveAttrs& a = kAt;
    const AttrIndex output = e.output();
    if (output == a.local) {
        e.set(output, PayloadPtr(shapeOf(e)));
    } else if (output == a.worldSpace) {
        evaluateWorldSpace(e);
    } else if (output == a.minMaxValue) {
        evaluateRange(e);
    } else if (output == a.degree || output == a.spans || output == a.form) {
        const CurvePtr curve = shapeOf(e);
        if (curve)
            e.set(output, static_cast<double>(output == a.degree  ? curve->degree
                                              : output == a.spans ? curve->spans
                                                                  : curve->form));
        else
            e.set(output, 0.0);
    } else {
        evaluateDagNode(e);
    }
}

bool isCurve(const Scene& scene, NodeHandle shape) {
    return scene.isType(shape, "nurbsCurve");
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kCurve, fn::kNurbsCurve, "kNurbsCurve", 0, evaluateCurve)};

}  // namespace

TypeRows curveShapeTypes() {
    return family(kTypes);
}

CurvePtr curveOf(const Scene& scene, NodeHandle shape) {
    if (!isCurve(scene, shape))
        return nullptr;
    return scene.dataAs<NurbsCurveData>(Plug(shape, kAt.local));
}

void setCurve(Scene& scene, NodeHandle shape, CurvePtr curve) {
    if (!isCurve(scene, shape))
        return;
    const CurveAttrs& a = kAt;
    for (const std::int32_t index : scene.elementIndices(Plug(shape, a.controlPoints)))
        scene.removeElement(Plug(shape, a.controlPoints, index));
    scene.setNumber(Plug(shape, a.tweak), 0.0);
    scene.setData(Plug(shape, a.cached), std::move(curve));
}

bool setCurvePoints(Scene& scene, NodeHandle shape, const std::vector<V3d>& points) {
    const CurvePtr now = curveOf(scene, shape);
    if (!now)
        return false;
    const CurveAttrs& a = kAt;
    const std::size_t count = std::min(points.size(), now->cvs.size());
    if (scene.dataAs<NurbsCurveData>(Plug(shape, a.create))) {
        for (std::size_t i = 0; i < count; ++i) {
            const Plug tweak(shape, a.controlPoints, static_cast<std::int32_t>(i));
            const V3d before =
                scene.number(Plug(shape, a.tweak)) != 0.0 ? scene.vec3(tweak) : V3d(0.0);
            scene.setVec3(tweak, before + points[i] - now->cvs[i]);
        }
        scene.setNumber(Plug(shape, a.tweak), 1.0);
        return true;
    }
    auto changed = std::make_shared<NurbsCurveData>(*now);
    std::copy_n(points.begin(), count, changed->cvs.begin());
    scene.setData(Plug(shape, a.cached), std::move(changed));
    return true;
}

CurvePtr transformed(const NurbsCurveData& curve, const M44d& matrix) {
    auto out = std::make_shared<NurbsCurveData>(curve);
    for (V3d& cv : out->cvs)
        cv = cv * matrix;
    return out;
}

}  // namespace torvel
