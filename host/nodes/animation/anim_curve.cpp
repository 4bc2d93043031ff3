// Animation curves. The T types run over time and the U types over any number; the second letter is
// the kind of value.
#include "nodes/animation/anim_curve.h"

#include <algorithm>
#include <cmath>

#include "graph/evaluation.h"
#include "graph/payload.h"
#include "nodes/animation/time_units.h"
#include "nodes/core/base_attrs.h"
#include "nodes/core/fn_numbers.h"
#include "nodes/core/quick_node.h"

namespace torvel {
namespace {

constexpr const char* kTangentNames =
    "Fixed=1:Linear=2:Flat=3:Step=5:Slow=6:Fast=7:Spline=9:Clamped=10:Plateau=16:StepNext=17:Auto="
    "18";
constexpr const char* kInfinityNames =
    "Constant=0:Linear=1:Cycle=3:Cycle with Offset=4:Oscillate=5";

// What all curves have. Their input, keys and output differ in kind and stand in the rows of each
// type.
constexpr AttrRow kCommon[] = {
    enumRow("tangentType", "tan", kTangentNames, kAutoTangent, 0),
    attrRow("weightedTangents", "wgt", AttrType::Bool),
    enumRow("preInfinity", "pre", kInfinityNames),
    enumRow("postInfinity", "pst", kInfinityNames),
    enumRow("keyTanInType", "kit", kTangentNames, kAutoTangent, kArray),
    enumRow("keyTanOutType", "kot", kTangentNames, kAutoTangent, kArray),
    attrRow("keyTanInX", "kix", AttrType::Float, 1.0, kArray),
    attrRow("keyTanInY", "kiy", AttrType::Float, 0.0, kArray),
    attrRow("keyTanOutX", "kox", AttrType::Float, 1.0, kArray),
    attrRow("keyTanOutY", "koy", AttrType::Float, 0.0, kArray),
    attrRow("keyTanLocked", "ktl", AttrType::Bool, 1.0, kArray),
    attrRow("keyWeightLocked", "kwl", AttrType::Bool, 1.0, kArray),
    attrRow("keyBreakdown", "kbd", AttrType::Bool, 0.0, kArray),
    enumRow("rotationInterpolation", "roti",
            "None=0:NoneRI=1:synced Euler=2:Quaternion=3:Quaternion Slerp=4:Quaternion "
            "Tangent=5:Quaternion Squad=6",
            1.0),
    attrRow("useCurveColor", "ucc", AttrType::Bool),
};
constexpr AffectRow kAffects[] = {{"tangentType", "keyCache"},   {"keyTanInType", "keyCache"},
                                  {"keyTanOutType", "keyCache"}, {"keyTanInX", "keyCache"},
                                  {"keyTanInY", "keyCache"},     {"keyTanOutX", "keyCache"},
                                  {"keyTanOutY", "keyCache"},    {"preInfinity", "keyCache"},
                                  {"postInfinity", "keyCache"},  {"keyCache", "output"}};

struct CurveRows {
    AttrRow rows[6];
};

constexpr CurveRows rowsFor(AttrType driver, AttrType value) {
    return {{attrRow("input", "i", driver, 0.0, 0, "output"),
             compoundRow("keyTimeValue", "ktv", AttrType::Compound, kArray, "keyCache"),
             under("keyTimeValue", attrRow("keyTime", "kt", driver)),
             under("keyTimeValue", attrRow("keyValue", "kv", value)),
             attrRow("output", "o", value, 0.0, kOutput | kNotStored),
             // the keys made ready for evaluation; nobody sees it by name
             attrRow("keyCache", "keyCache", AttrType::Any, 0.0, kOutput | kNotStored | kOpaque)}};
}

constexpr CurveRows kTL = rowsFor(AttrType::Time, AttrType::Distance);
constexpr CurveRows kTA = rowsFor(AttrType::Time, AttrType::Angle);
constexpr CurveRows kTU = rowsFor(AttrType::Time, AttrType::Double);
constexpr CurveRows kTT = rowsFor(AttrType::Time, AttrType::Time);
constexpr CurveRows kUL = rowsFor(AttrType::Double, AttrType::Distance);
constexpr CurveRows kUA = rowsFor(AttrType::Double, AttrType::Angle);
constexpr CurveRows kUU = rowsFor(AttrType::Double, AttrType::Double);
constexpr CurveRows kUT = rowsFor(AttrType::Double, AttrType::Time);

constexpr TypeAttrs kCurve("animCurve", kDependNode, kCommon);
constexpr TypeAttrs kCurveTL("animCurveTL", kCurve, kTL.rows, kAffects);
constexpr TypeAttrs kCurveTA("animCurveTA", kCurve, kTA.rows, kAffects);
constexpr TypeAttrs kCurveTU("animCurveTU", kCurve, kTU.rows, kAffects);
constexpr TypeAttrs kCurveTT("animCurveTT", kCurve, kTT.rows, kAffects);
constexpr TypeAttrs kCurveUL("animCurveUL", kCurve, kUL.rows, kAffects);
constexpr TypeAttrs kCurveUA("animCurveUA", kCurve, kUA.rows, kAffects);
constexpr TypeAttrs kCurveUU("animCurveUU", kCurve, kUU.rows, kAffects);
constexpr TypeAttrs kCurveUT("animCurveUT", kCurve, kUT.rows, kAffects);

// Positions are the same in all eight types, since each adds the same rows after the common ones.
struct CurveAttrs {
    AttrIndex input = kCurveTL["input"], output = kCurveTL["output"], cache = kCurveTL["keyCache"];
    AttrIndex keys = kCurveTL["keyTimeValue"], time = kCurveTL["keyTime"],
              value = kCurveTL["keyValue"];
    AttrIndex inKind = kCurveTL["keyTanInType"], inX = kCurveTL["keyTanInX"],
              inY = kCurveTL["keyTanInY"];
    AttrIndex outKind = kCurveTL["keyTanOutType"], outX = kCurveTL["keyTanOutX"],
              outY = kCurveTL["keyTanOutY"];
    AttrIndex tangentType = kCurveTL["tangentType"], pre = kCurveTL["preInfinity"],
              post = kCurveTL["postInfinity"];
};
constexpr CurveAttrs kAt{};

bool isCurve(const Scene& scene, NodeHandle node) {
    return scene.isType(node, "animCurve");
}

bool runsOnTime(const Node& node) {
    return node.type->attrs[kAt.input].type == AttrType::Time;
}

bool sameValue(double a, double b) {
    return std::fabs(a - b) < 1e-12;
}

// The chord between the neighbours: the slope of a Catmull-Rom spline over uneven steps.
double splineSlope(const CurveKey* before, const CurveKey& key, const CurveKey* after) {
    const CurveKey& from = before ? *before : key;
    const CurveKey& to = after ? *after : key;
    return to.time > from.time ? (to.value - from.value) / (to.time - from.time) : 0.0;
}

// Flat at extremes, ends and plateaus; elsewhere limited to three times the smaller secant, so that
// the curve stays between its neighbours: F. N. Fritsch and R. E. Carlson, "Monotone Piecewise
// Cubic Interpolation", SIAM J. Numer. Anal. 17 (1980).
double autoSlope(const CurveKey* before, const CurveKey& key, const CurveKey* after) {
    if (!before || !after)
        return 0.0;
    const double in = (key.value - before->value) / (key.time - before->time);
    const double out = (after->value - key.value) / (after->time - key.time);
    if (in * out <= 0.0)
        return 0.0;
    const double limit = 3.0 * std::min(std::fabs(in), std::fabs(out));
    return std::clamp(splineSlope(before, key, after), -limit, limit);
}

double secant(const CurveKey* from, const CurveKey* to) {
    return from && to && to->time > from->time ? (to->value - from->value) / (to->time - from->time)
                                               : 0.0;
}

double slope(int kind, double fixed, double straight, const CurveKey* before, const CurveKey& key,
             const CurveKey* after) {
    switch (kind) {
        case kFixedTangent: return fixed;
        case kLinearTangent: return straight;
        case kFlatTangent:
        case kStepTangent:
        case kStepNextTangent: return 0.0;
        case kSplineTangent: return splineSlope(before, key, after);
        case kClampedTangent:
            return (before && sameValue(before->value, key.value)) ||
                           (after && sameValue(after->value, key.value))
                       ? 0.0
                       : splineSlope(before, key, after);
        default: return autoSlope(before, key, after);
    }
}

// Cubic Hermite basis.
double hermite(const CurveKey& a, const CurveKey& b, double m0, double m1, double time) {
    const double length = b.time - a.time;
    const double u = (time - a.time) / length, u2 = u * u, u3 = u2 * u;
    return (2 * u3 - 3 * u2 + 1) * a.value + (u3 - 2 * u2 + u) * length * m0 +
           (3 * u2 - 2 * u3) * b.value + (u3 - u2) * length * m1;
}

// Fixed tangents are stored as value per second, or per unit of the driver.
double unitsPerSlope(const Scene& scene, const Node& node) {
    return runsOnTime(node) ? framesPerSecond(scene) : 1.0;
}

Plug timePlug(const Scene& scene) {
    return {scene.timeNode(), timeAttr()};
}

void cacheKeys(Evaluation& e) {
    const CurveAttrs& a = kAt;
    auto shape = std::make_shared<CurveShape>(keysOf(e.scene(), e.handle()));
    shape->pre = static_cast<int>(e.number(a.pre));
    shape->post = static_cast<int>(e.number(a.post));
    e.set(a.cache, std::move(shape));
}

void evaluateCurve(Evaluation& e) {
    const CurveAttrs& a = kAt;
    if (e.output() == a.cache)
        return cacheKeys(e);
    if (e.output() != a.output)
        return;
    const Node& node = e.node();
    const bool fed = node.linkedInputs != 0 && !e.scene().effectiveSource(e.plug(a.input)).isNull();
    const double time = fed || !runsOnTime(node) ? QuickNode(e).number(a.input)
                                                 : e.scene().number(timePlug(e.scene()));
    const Slot* cache = node.peek(a.cache);
    const auto* shape = cache ? payloadAs<CurveShape>(cache->data.get()) : nullptr;
    QuickNode(e).set(a.output, shape ? shape->value(time) : 0.0);
}

constexpr NodeTypeRow curveRow(const TypeAttrs& type) {
    return typeRow(type, fn::kAnimCurve, "kAnimCurve", 0, evaluateCurve);
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kCurve, fn::kAnimCurve, "kAnimCurve", kAbstractType),
    curveRow(kCurveTL),
    curveRow(kCurveTA),
    curveRow(kCurveTU),
    curveRow(kCurveTT),
    curveRow(kCurveUL),
    curveRow(kCurveUA),
    curveRow(kCurveUU),
    curveRow(kCurveUT),
};

}  // namespace

TypeRows animCurveTypes() {
    return family(kTypes);
}

CurveShape::CurveShape(std::vector<CurveKey> sortedKeys) : keys(std::move(sortedKeys)) {
    const std::vector<CurveKey> given = keys;
    for (std::size_t i = 0; i < given.size(); ++i) {
        const CurveKey* before = i > 0 ? &given[i - 1] : nullptr;
        const CurveKey* after = i + 1 < given.size() ? &given[i + 1] : nullptr;
        const CurveKey& key = given[i];
        // an outermost key has the direction of its only neighbour on both sides
        const double left = before ? secant(before, &key) : secant(&key, after);
        const double right = after ? secant(&key, after) : secant(before, &key);
        keys[i].inSlope = slope(key.inKind, key.inSlope, left, before, key, after);
        keys[i].outSlope = slope(key.outKind, key.outSlope, right, before, key, after);
    }
}

double CurveShape::inside(double time) const {
    const auto above = std::upper_bound(keys.begin(), keys.end(), time,
                                        [](double t, const CurveKey& key) { return t < key.time; });
    if (above == keys.begin())
        return keys.front().value;
    if (above == keys.end())
        return keys.back().value;
    const CurveKey& b = *above;
    const CurveKey& a = *(above - 1);
    if (time == a.time || a.outKind == kStepTangent)
        return a.value;
    if (a.outKind == kStepNextTangent)
        return b.value;
    return hermite(a, b, a.outSlope, b.inSlope, time);
}

double CurveShape::beyond(double time, int kind) const {
    const CurveKey &first = keys.front(), &last = keys.back();
    const double length = last.time - first.time;
    if (kind == kLinearEnd)
        return time < first.time ? first.value + (time - first.time) * first.inSlope
                                 : last.value + (time - last.time) * last.outSlope;
    if (kind == kConstantEnd || length <= 0.0)
        return time < first.time ? first.value : last.value;
    const double turns = std::floor((time - first.time) / length);
    const double into = time - first.time - turns * length;
    if (kind == kOscillateEnd && std::fmod(turns, 2.0) != 0.0)
        return inside(last.time - into);
    return inside(first.time + into) +
           (kind == kCycleOffsetEnd ? turns * (last.value - first.value) : 0.0);
}

double CurveShape::value(double time) const {
    if (keys.empty())
        return 0.0;
    if (time < keys.front().time)
        return beyond(time, pre);
    return time > keys.back().time ? beyond(time, post) : inside(time);
}

double curveValue(const std::vector<CurveKey>& keys, double time) {
    return CurveShape(keys).value(time);
}

std::vector<CurveKey> keysOf(const Scene& scene, NodeHandle curve) {
    std::vector<CurveKey> keys;
    if (!isCurve(scene, curve))
        return keys;
    const CurveAttrs& a = kAt;
    const int common = static_cast<int>(scene.storedNumber(Plug(curve, a.tangentType)));
    const auto at = [&](AttrIndex attr, std::int32_t i) {
        return scene.storedNumber(Plug(curve, attr, i));
    };
    const auto kind = [&](AttrIndex attr, std::int32_t i) {
        return scene.peekSlot(Plug(curve, attr, i)) ? static_cast<int>(at(attr, i)) : common;
    };
    const double units = unitsPerSlope(scene, *scene.node(curve));
    const auto slopeOf = [units](double x, double y) { return x != 0.0 ? y / x / units : 0.0; };
    for (const std::int32_t i : scene.elementIndices(Plug(curve, a.keys))) {
        CurveKey key;
        key.time = at(a.time, i);
        key.value = at(a.value, i);
        key.inKind = kind(a.inKind, i);
        key.outKind = kind(a.outKind, i);
        key.inSlope = slopeOf(at(a.inX, i), at(a.inY, i));
        key.outSlope = slopeOf(at(a.outX, i), at(a.outY, i));
        keys.push_back(key);
    }
    std::stable_sort(keys.begin(), keys.end(),
                     [](const CurveKey& x, const CurveKey& y) { return x.time < y.time; });
    return keys;
}

void setKeys(Scene& scene, NodeHandle curve, const std::vector<CurveKey>& keys) {
    if (!isCurve(scene, curve))
        return;
    const CurveAttrs& a = kAt;
    for (AttrIndex array : {a.keys, a.inKind, a.outKind, a.inX, a.inY, a.outX, a.outY})
        for (const std::int32_t i : scene.elementIndices(Plug(curve, array)))
            scene.removeElement(Plug(curve, array, i));
    const double units = unitsPerSlope(scene, *scene.node(curve));
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const auto n = static_cast<std::int32_t>(i);
        const auto put = [&](AttrIndex attr, double value) {
            scene.setNumber(Plug(curve, attr, n), value);
        };
        put(a.time, keys[i].time);
        put(a.value, keys[i].value);
        put(a.inKind, keys[i].inKind);
        put(a.outKind, keys[i].outKind);
        put(a.inX, 1.0);
        put(a.inY, keys[i].inSlope * units);
        put(a.outX, 1.0);
        put(a.outY, keys[i].outSlope * units);
    }
    scene.setDirty(Plug(curve, a.input));
}

bool isTimeCurve(const Scene& scene, NodeHandle curve) {
    return isCurve(scene, curve) && runsOnTime(*scene.node(curve));
}

double sceneTime(const Scene& scene) {
    return scene.number(timePlug(scene));
}

void setSceneTime(Scene& scene, double frame) {
    scene.setNumber(timePlug(scene), frame);
    dirtyTimeCurves(scene);
}

void dirtyTimeCurves(Scene& scene) {
    std::vector<Plug> inputs;
    scene.forEachNode([&](const Node& node) {
        if (node.type->evaluate == evaluateCurve && runsOnTime(node))
            inputs.push_back(Plug(node.self, kAt.input));
    });
    for (const Plug& input : inputs)
        scene.setDirty(input);
}

}  // namespace torvel
