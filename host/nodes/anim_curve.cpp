// Animation curves. The T types run over time and the U types over any number; the second letter is the kind of value.
#include "nodes/anim_curve.h"

#include <algorithm>
#include <cmath>

#include "graph/evaluation.h"
#include "nodes/fn_numbers.h"
#include "nodes/node_table.h"
#include "nodes/node_types.h"
#include "nodes/rows.h"

namespace torvel {
namespace {

constexpr double kFramesPerSecond = 24.0;  // fixed tangents are stored as value per second
constexpr const char* kTangentNames =
    "Fixed=1:Linear=2:Flat=3:Step=5:Slow=6:Fast=7:Spline=9:Clamped=10:Plateau=16:StepNext=17:Auto=18";
constexpr const char* kInfinityNames = "Constant=0:Linear=1:Cycle=3:Cycle with Offset=4:Oscillate=5";

// What all curves have. Their input, keys and output differ in kind and stand in the rows of each type.
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
            "None=0:NoneRI=1:synced Euler=2:Quaternion=3:Quaternion Slerp=4:Quaternion Tangent=5:Quaternion Squad=6",
            1.0),
    attrRow("useCurveColor", "ucc", AttrType::Bool),
};
constexpr AffectRow kAffects[] = {
    {"tangentType", "output"}, {"keyTanInType", "output"}, {"keyTanOutType", "output"}, {"keyTanInX", "output"},
    {"keyTanInY", "output"},   {"keyTanOutX", "output"},   {"keyTanOutY", "output"}};

struct CurveRows
{
    AttrRow rows[5];
};

constexpr CurveRows rowsFor(AttrType driver, AttrType value)
{
    return {{attrRow("input", "i", driver, 0.0, 0, "output"),
             compoundRow("keyTimeValue", "ktv", AttrType::Compound, kArray, "output"),
             under("keyTimeValue", attrRow("keyTime", "kt", driver)),
             under("keyTimeValue", attrRow("keyValue", "kv", value)),
             attrRow("output", "o", value, 0.0, kOutput | kNotStored)}};
}

constexpr CurveRows kTL = rowsFor(AttrType::Time, AttrType::Distance);
constexpr CurveRows kTA = rowsFor(AttrType::Time, AttrType::Angle);
constexpr CurveRows kTU = rowsFor(AttrType::Time, AttrType::Double);
constexpr CurveRows kTT = rowsFor(AttrType::Time, AttrType::Time);
constexpr CurveRows kUL = rowsFor(AttrType::Double, AttrType::Distance);
constexpr CurveRows kUA = rowsFor(AttrType::Double, AttrType::Angle);
constexpr CurveRows kUU = rowsFor(AttrType::Double, AttrType::Double);
constexpr CurveRows kUT = rowsFor(AttrType::Double, AttrType::Time);

// Positions are the same in all eight types, since each adds the same rows after the common ones.
struct CurveAttrs
{
    AttrIndex input, keys, time, value, output, inKind, outKind, inX, inY, outX, outY, tangentType;
};

const CurveAttrs& curveAttrs()
{
    static const CurveAttrs attrs = [] {
        const NodeType& type = *nodeTypes().find("animCurveTL");
        const auto at = [&](const char* name) { return type.byName.at(name); };
        return CurveAttrs{at("input"), at("ktv"), at("kt"), at("kv"), at("output"), at("kit"), at("kot"),
                          at("kix"), at("kiy"), at("kox"), at("koy"), at("tan")};
    }();
    return attrs;
}

bool isCurve(const Scene& scene, NodeHandle node)
{
    return scene.isType(node, "animCurve");
}

bool runsOnTime(const Node& node)
{
    return node.type->attrs[curveAttrs().input].type == AttrType::Time;
}

bool sameValue(double a, double b)
{
    return std::fabs(a - b) < 1e-12;
}

double splineSlope(const CurveKey* before, const CurveKey& key, const CurveKey* after)
{
    const CurveKey& from = before ? *before : key;
    const CurveKey& to = after ? *after : key;
    return to.time > from.time ? (to.value - from.value) / (to.time - from.time) : 0.0;
}

// Flat at extremes, ends and plateaus; elsewhere limited so that the curve stays between its neighbours.
double autoSlope(const CurveKey* before, const CurveKey& key, const CurveKey* after)
{
    if (!before || !after)
        return 0.0;
    const double in = (key.value - before->value) / (key.time - before->time);
    const double out = (after->value - key.value) / (after->time - key.time);
    if (in * out <= 0.0)
        return 0.0;
    const double limit = 3.0 * std::min(std::fabs(in), std::fabs(out));
    return std::clamp(splineSlope(before, key, after), -limit, limit);
}

double secant(const CurveKey* from, const CurveKey* to)
{
    return from && to && to->time > from->time ? (to->value - from->value) / (to->time - from->time) : 0.0;
}

double slope(int kind, double fixed, double straight, const CurveKey* before, const CurveKey& key,
             const CurveKey* after)
{
    switch (kind) {
    case kFixedTangent: return fixed;
    case kLinearTangent: return straight;
    case kFlatTangent: case kStepTangent: case kStepNextTangent: return 0.0;
    case kSplineTangent: return splineSlope(before, key, after);
    case kClampedTangent:
        return (before && sameValue(before->value, key.value)) || (after && sameValue(after->value, key.value))
                   ? 0.0
                   : splineSlope(before, key, after);
    default: return autoSlope(before, key, after);
    }
}

double hermite(const CurveKey& a, const CurveKey& b, double m0, double m1, double time)
{
    const double length = b.time - a.time;
    const double u = (time - a.time) / length, u2 = u * u, u3 = u2 * u;
    return (2 * u3 - 3 * u2 + 1) * a.value + (u3 - 2 * u2 + u) * length * m0 + (3 * u2 - 2 * u3) * b.value +
           (u3 - u2) * length * m1;
}

double unitsPerSlope(const Node& node)
{
    return runsOnTime(node) ? kFramesPerSecond : 1.0;
}

void evaluateCurve(Evaluation& e)
{
    const CurveAttrs& a = curveAttrs();
    if (e.output() != a.output)
        return;
    const Scene& scene = e.scene();
    const bool fed = !scene.effectiveSource(e.plug(a.input)).isNull();
    const double time =
        fed || !runsOnTime(e.node()) ? e.number(a.input) : scene.number(scene.findPlug(scene.timeNode(), "outTime"));
    e.set(e.output(), curveValue(keysOf(scene, e.handle()), time));
}

template <std::size_t N>
constexpr NodeTypeRow curveRow(const char* name, const AttrRow (&rows)[N])
{
    return typeRow(name, "animCurve", fn::kAnimCurve, "kAnimCurve", rows, kAffects, 0, evaluateCurve);
}

}  // namespace

const NodeTypeRow kAnimCurveBase =
    typeRow("animCurve", "dependNode", fn::kAnimCurve, "kAnimCurve", kCommon, kAbstractType);
const NodeTypeRow kAnimCurveTL = curveRow("animCurveTL", kTL.rows);
const NodeTypeRow kAnimCurveTA = curveRow("animCurveTA", kTA.rows);
const NodeTypeRow kAnimCurveTU = curveRow("animCurveTU", kTU.rows);
const NodeTypeRow kAnimCurveTT = curveRow("animCurveTT", kTT.rows);
const NodeTypeRow kAnimCurveUL = curveRow("animCurveUL", kUL.rows);
const NodeTypeRow kAnimCurveUA = curveRow("animCurveUA", kUA.rows);
const NodeTypeRow kAnimCurveUU = curveRow("animCurveUU", kUU.rows);
const NodeTypeRow kAnimCurveUT = curveRow("animCurveUT", kUT.rows);

double curveValue(const std::vector<CurveKey>& keys, double time)
{
    if (keys.empty())
        return 0.0;
    if (time <= keys.front().time)
        return keys.front().value;
    if (time >= keys.back().time)
        return keys.back().value;
    const auto above = std::upper_bound(keys.begin(), keys.end(), time,
                                        [](double t, const CurveKey& key) { return t < key.time; });
    const CurveKey& b = *above;
    const CurveKey& a = *(above - 1);
    if (time == a.time || a.outKind == kStepTangent)
        return a.value;
    if (a.outKind == kStepNextTangent)
        return b.value;
    const CurveKey* before = above - 1 == keys.begin() ? nullptr : &a - 1;
    const CurveKey* after = above + 1 == keys.end() ? nullptr : &b + 1;
    const double straight = secant(&a, &b);
    const double m0 = slope(a.outKind, a.outSlope, straight, before, a, &b);
    const double m1 = slope(b.inKind, b.inSlope, straight, &a, b, after);
    return hermite(a, b, m0, m1, time);
}

std::vector<CurveKey> keysOf(const Scene& scene, NodeHandle curve)
{
    std::vector<CurveKey> keys;
    if (!isCurve(scene, curve))
        return keys;
    const CurveAttrs& a = curveAttrs();
    const int common = static_cast<int>(scene.storedNumber(Plug(curve, a.tangentType)));
    const auto at = [&](AttrIndex attr, std::int32_t i) { return scene.storedNumber(Plug(curve, attr, i)); };
    const auto kind = [&](AttrIndex attr, std::int32_t i) {
        return scene.peekSlot(Plug(curve, attr, i)) ? static_cast<int>(at(attr, i)) : common;
    };
    const double units = unitsPerSlope(*scene.node(curve));
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
    std::stable_sort(keys.begin(), keys.end(), [](const CurveKey& x, const CurveKey& y) { return x.time < y.time; });
    return keys;
}

void setKeys(Scene& scene, NodeHandle curve, const std::vector<CurveKey>& keys)
{
    if (!isCurve(scene, curve))
        return;
    const CurveAttrs& a = curveAttrs();
    for (AttrIndex array : {a.keys, a.inKind, a.outKind, a.inX, a.inY, a.outX, a.outY})
        for (const std::int32_t i : scene.elementIndices(Plug(curve, array)))
            scene.removeElement(Plug(curve, array, i));
    const double units = unitsPerSlope(*scene.node(curve));
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const auto n = static_cast<std::int32_t>(i);
        const auto put = [&](AttrIndex attr, double value) { scene.setNumber(Plug(curve, attr, n), value); };
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

void dirtyTimeCurves(Scene& scene)
{
    std::vector<Plug> inputs;
    scene.forEachNode([&](const Node& node) {
        if (node.type->derivesFrom("animCurve") && runsOnTime(node))
            inputs.push_back(Plug(node.self, curveAttrs().input));
    });
    for (const Plug& input : inputs)
        scene.setDirty(input);
}

}  // namespace torvel
