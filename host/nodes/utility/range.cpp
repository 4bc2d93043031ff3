// Nodes that compare numbers and move them between ranges.
#include <algorithm>
#include <cmath>
#include <vector>

#include "nodes/core/fn_numbers.h"
#include "nodes/core/quick_node.h"
#include "nodes/utility/rows.h"
#include "nodes/utility/types.h"

namespace torvel {
namespace {

// --- condition
// -----------------------------------------------------------------------------------------------

constexpr AttrRow kConditionAttrs[] = {
    enumRow("operation", "op",
            "Equal:Not Equal:Greater Than:Greater or Equal:Less Than:Less or Equal", 0.0, kKeyable,
            "outColor"),
    inputRow("firstTerm", "ft", "outColor"),
    inputRow("secondTerm", "st", "outColor"),
    floatTriple("colorIfTrue", "ct", "RGB", 0.0, kKeyable, "outColor"),
    floatTriple("colorIfFalse", "cf", "RGB", 1.0, kKeyable, "outColor"),
    floatTriple("outColor", "oc", "RGB", 0.0, kComputedOutput),
};

bool holds(int operation, double a, double b) {
    switch (operation) {
        case 0: return a == b;
        case 1: return a != b;
        case 2: return a > b;
        case 3: return a >= b;
        case 4: return a < b;
        default: return a <= b;
    }
}

void condition(Evaluation& e) {
    static const AttrPositions<6> at("condition", {"operation", "firstTerm", "secondTerm",
                                                   "colorIfTrue", "colorIfFalse", "outColor"});
    QuickNode node(e);
    // The terms are floats: a driver with more digits compares as what a float holds.
    const double first = static_cast<float>(node.number(at[1])),
                 second = static_cast<float>(node.number(at[2]));
    node.set(at[5], node.vec3(holds(node.whole(at[0]), first, second) ? at[3] : at[4]));
}

// --- clamp, setRange
// -----------------------------------------------------------------------------------------

constexpr AttrRow kClampAttrs[] = {
    floatTriple("min", "mn", "RGB", 0.0, kKeyable, "output"),
    floatTriple("max", "mx", "RGB", 0.0, kKeyable, "output"),
    floatTriple("input", "ip", "RGB", 0.0, kKeyable, "output"),
    floatTriple("output", "op", "RGB", 0.0, kComputedOutput),
};

void clamp(Evaluation& e) {
    static const AttrPositions<4> at("clamp", {"min", "max", "input", "output"});
    QuickNode node(e);
    const V3d low = node.vec3(at[0]), high = node.vec3(at[1]), in = node.vec3(at[2]);
    V3d out;
    for (int i = 0; i < 3; ++i)
        out[i] = std::min(std::max(in[i], low[i]), high[i]);
    node.set(at[3], out);
}

constexpr AttrRow kSetRangeAttrs[] = {
    floatTriple("value", "v", "XYZ", 0.0, kKeyable, "outValue"),
    floatTriple("min", "n", "XYZ", 0.0, kKeyable, "outValue"),
    floatTriple("max", "m", "XYZ", 0.0, kKeyable, "outValue"),
    floatTriple("oldMin", "on", "XYZ", 0.0, kKeyable, "outValue"),
    floatTriple("oldMax", "om", "XYZ", 0.0, kKeyable, "outValue"),
    floatTriple("outValue", "o", "XYZ", 0.0, kComputedOutput),
};

// Where `value` stands between the two ends, 0 to 1; the first end when they are the same.
double placeBetween(double value, double low, double high) {
    return high == low ? 0.0 : std::clamp((value - low) / (high - low), 0.0, 1.0);
}

double between(double low, double high, double place) {
    return low + (high - low) * place;
}

void setRange(Evaluation& e) {
    static const AttrPositions<6> at("setRange",
                                     {"value", "min", "max", "oldMin", "oldMax", "outValue"});
    QuickNode node(e);
    const V3d value = node.vec3(at[0]), low = node.vec3(at[1]), high = node.vec3(at[2]),
              oldLow = node.vec3(at[3]), oldHigh = node.vec3(at[4]);
    V3d out;
    for (int i = 0; i < 3; ++i)
        out[i] = between(low[i], high[i], placeBetween(value[i], oldLow[i], oldHigh[i]));
    node.set(at[5], out);
}

// --- remapValue
// ----------------------------------------------------------------------------------------------

enum Interpolation { kNone, kLinear, kSmooth, kSpline };
constexpr const char* kInterpolationNames = "None:Linear:Smooth:Spline";
constexpr const char* kBothOutputs = "outValue outColor";

constexpr AttrRow kRemapAttrs[] = {
    inputRow("inputValue", "i", kBothOutputs),
    inputRow("inputMin", "imn", kBothOutputs),
    inputRow("inputMax", "imx", kBothOutputs, 1.0),
    inputRow("outputMin", "omn", kBothOutputs),
    inputRow("outputMax", "omx", kBothOutputs, 1.0),
    compoundRow("value", "vl", AttrType::Compound, kArray, "outValue"),
    under("value", attrRow("value_Position", "vlp", AttrType::Float)),
    under("value", attrRow("value_FloatValue", "vlfv", AttrType::Float)),
    under("value", enumRow("value_Interp", "vli", kInterpolationNames)),
    compoundRow("color", "cl", AttrType::Compound, kArray, "outColor"),
    under("color", attrRow("color_Position", "clp", AttrType::Float)),
    under("color", floatTriple("color_Color", "clc", "RGB", 0.0, 0)),
    under("color", enumRow("color_Interp", "cli", kInterpolationNames)),
    outputRow("outValue", "ov", AttrType::Float),
    floatTriple("outColor", "oc", "RGB", 0.0, kComputedOutput),
};

const AttrPositions<15>& remapAt() {
    static const AttrPositions<15> at(
        "remapValue", {"inputValue", "inputMin", "inputMax", "outputMin", "outputMax", "value",
                       "value_Position", "value_FloatValue", "value_Interp", "color",
                       "color_Position", "color_Color", "color_Interp", "outValue", "outColor"});
    return at;
}

// A new node maps its input straight, from black to white.
void createdRemap(Scene& scene, Node& node) {
    const AttrPositions<15>& at = remapAt();
    for (std::int32_t i = 0; i < 2; ++i) {
        scene.setNumber(Plug(node.self, at[6], i), i);
        scene.setNumber(Plug(node.self, at[7], i), i);
        scene.setNumber(Plug(node.self, at[8], i), kLinear);
        scene.setNumber(Plug(node.self, at[10], i), i);
        scene.setVec3(Plug(node.self, at[11], i), V3d(i));
        scene.setNumber(Plug(node.self, at[12], i), kLinear);
    }
}

struct RampKey {
    double position, value;
    int kind;
};

double rampSlope(const RampKey& from, const RampKey& to) {
    return to.position > from.position ? (to.value - from.value) / (to.position - from.position)
                                       : 0.0;
}

double rampSpline(const RampKey* keys, std::size_t count, std::size_t left, double u) {
    const RampKey &a = keys[left], &b = keys[left + 1];
    const double length = b.position - a.position;
    const double m0 = rampSlope(left > 0 ? keys[left - 1] : a, b) * length;
    const double m1 = rampSlope(a, left + 2 < count ? keys[left + 2] : b) * length;
    const double u2 = u * u, u3 = u2 * u;
    return (2 * u3 - 3 * u2 + 1) * a.value + (u3 - 2 * u2 + u) * m0 + (3 * u2 - 2 * u3) * b.value +
           (u3 - u2) * m1;
}

// The key on the left says how to go on to the next one.
double rampValue(const RampKey* keys, std::size_t count, double place) {
    if (count == 0)
        return 0.0;
    std::size_t right = 0;
    while (right < count && keys[right].position <= place)
        ++right;
    if (right == 0 || right == count)
        return keys[right == 0 ? 0 : count - 1].value;
    const RampKey &a = keys[right - 1], &b = keys[right];
    const double u = (place - a.position) / (b.position - a.position);
    switch (a.kind) {
        case kNone: return a.value;
        case kLinear: return between(a.value, b.value, u);
        case kSmooth: return between(a.value, b.value, u * u * (3.0 - 2.0 * u));
        default: return rampSpline(keys, count, right - 1, u);
    }
}

double rampAt(const QuickNode& node, AttrIndex array, AttrIndex position, AttrIndex value,
              AttrIndex kind, double place) {
    constexpr std::size_t kFew = 16;
    const std::size_t count = node.count(array);
    RampKey few[kFew];
    std::vector<RampKey> many(count > kFew ? count : 0);
    RampKey* keys = count > kFew ? many.data() : few;
    for (std::size_t i = 0; i < count; ++i)
        keys[i] = {node.element(array, i, position), node.element(array, i, value),
                   static_cast<int>(node.element(array, i, kind))};
    std::stable_sort(keys, keys + count,
                     [](const RampKey& a, const RampKey& b) { return a.position < b.position; });
    return rampValue(keys, count, place);
}

void remapValue(Evaluation& e) {
    const AttrPositions<15>& at = remapAt();
    QuickNode node(e);
    const double place = placeBetween(node.number(at[0]), node.number(at[1]), node.number(at[2]));
    const double low = node.number(at[3]), high = node.number(at[4]);
    if (e.output() == at[13]) {
        node.set(at[13], between(low, high, rampAt(node, at[5], at[6], at[7], at[8], place)));
        return;
    }
    V3d color;
    for (AttrIndex i = 0; i < 3; ++i)
        color[static_cast<int>(i)] =
            between(low, high, rampAt(node, at[9], at[10], at[11] + 1 + i, at[12], place));
    node.set(at[14], color);
}

constexpr NodeTypeRow kConditionRow =
    utilityRow("condition", fn::kCondition, "kCondition", kConditionAttrs, condition);
constexpr NodeTypeRow kClampRow =
    utilityRow("clamp", fn::kDependencyNode, "kClampColor", kClampAttrs, clamp);
constexpr NodeTypeRow kSetRangeRow =
    utilityRow("setRange", fn::kDependencyNode, "kSetRange", kSetRangeAttrs, setRange);
constexpr NodeTypeRow kRemapRow = utilityRow("remapValue", fn::kDependencyNode, "kRemapValue",
                                             kRemapAttrs, remapValue, createdRemap);

const NodeTypeRow* const kRows[] = {&kConditionRow, &kClampRow, &kSetRangeRow, &kRemapRow};

}  // namespace

TypeRows rangeTypes() {
    return {kRows, std::size(kRows)};
}

}  // namespace torvel
