// Nodes that compare numbers and move them between ranges.
#include <algorithm>
#include <cmath>
#include <vector>

#include "nodes/core/fn_numbers.h"
#include "nodes/core/quick_node.h"
#include "nodes/utility/rows.h"

namespace torvel {
namespace {

// --- condition ---

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
constexpr TypeAttrs kConditionType("condition", kDependNode, kConditionAttrs);

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
    constexpr const TypeAttrs& at = kConditionType;
    constexpr AttrIndex kOperation = at["operation"], kFirstTerm = at["firstTerm"],
                        kSecondTerm = at["secondTerm"], kColorIfTrue = at["colorIfTrue"],
                        kColorIfFalse = at["colorIfFalse"], kOutColor = at["outColor"];
    QuickNode node(e);
    // The terms are floats: a driver with more digits compares as what a float holds.
    const double first = static_cast<float>(node.number(kFirstTerm)),
                 second = static_cast<float>(node.number(kSecondTerm));
    node.set(kOutColor, node.vec3(holds(node.whole(kOperation), first, second) ? kColorIfTrue
                                                                               : kColorIfFalse));
}

// --- clamp, setRange ---

constexpr AttrRow kClampAttrs[] = {
    floatTriple("min", "mn", "RGB", 0.0, kKeyable, "output"),
    floatTriple("max", "mx", "RGB", 0.0, kKeyable, "output"),
    floatTriple("input", "ip", "RGB", 0.0, kKeyable, "output"),
    floatTriple("output", "op", "RGB", 0.0, kComputedOutput),
};
constexpr TypeAttrs kClampType("clamp", kDependNode, kClampAttrs);

void clamp(Evaluation& e) {
    constexpr const TypeAttrs& at = kClampType;
    constexpr AttrIndex kMin = at["min"], kMax = at["max"], kInput = at["input"],
                        kResult = at["output"];
    QuickNode node(e);
    const V3d low = node.vec3(kMin), high = node.vec3(kMax), in = node.vec3(kInput);
    V3d out;
    for (int i = 0; i < 3; ++i)
        out[i] = std::min(std::max(in[i], low[i]), high[i]);
    node.set(kResult, out);
}

constexpr AttrRow kSetRangeAttrs[] = {
    floatTriple("value", "v", "XYZ", 0.0, kKeyable, "outValue"),
    floatTriple("min", "n", "XYZ", 0.0, kKeyable, "outValue"),
    floatTriple("max", "m", "XYZ", 0.0, kKeyable, "outValue"),
    floatTriple("oldMin", "on", "XYZ", 0.0, kKeyable, "outValue"),
    floatTriple("oldMax", "om", "XYZ", 0.0, kKeyable, "outValue"),
    floatTriple("outValue", "o", "XYZ", 0.0, kComputedOutput),
};
constexpr TypeAttrs kSetRangeType("setRange", kDependNode, kSetRangeAttrs);

// Where `value` stands between the two ends, 0 to 1; the first end when they are the same.
double placeBetween(double value, double low, double high) {
    return high == low ? 0.0 : std::clamp((value - low) / (high - low), 0.0, 1.0);
}

double between(double low, double high, double place) {
    return low + (high - low) * place;
}

void setRange(Evaluation& e) {
    constexpr const TypeAttrs& at = kSetRangeType;
    constexpr AttrIndex kValue = at["value"], kMin = at["min"], kMax = at["max"],
                        kOldMin = at["oldMin"], kOldMax = at["oldMax"], kOutValue = at["outValue"];
    QuickNode node(e);
    const V3d value = node.vec3(kValue), low = node.vec3(kMin), high = node.vec3(kMax),
              oldLow = node.vec3(kOldMin), oldHigh = node.vec3(kOldMax);
    V3d out;
    for (int i = 0; i < 3; ++i)
        out[i] = between(low[i], high[i], placeBetween(value[i], oldLow[i], oldHigh[i]));
    node.set(kOutValue, out);
}

// --- remapValue ---

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
constexpr TypeAttrs kRemapValueType("remapValue", kDependNode, kRemapAttrs);

constexpr AttrIndex kInputValue = kRemapValueType["inputValue"],
                    kInputMin = kRemapValueType["inputMin"],
                    kInputMax = kRemapValueType["inputMax"],
                    kOutputMin = kRemapValueType["outputMin"],
                    kOutputMax = kRemapValueType["outputMax"], kValue = kRemapValueType["value"],
                    kValuePosition = kRemapValueType["value_Position"],
                    kValueFloatValue = kRemapValueType["value_FloatValue"],
                    kValueInterp = kRemapValueType["value_Interp"],
                    kColor = kRemapValueType["color"],
                    kColorPosition = kRemapValueType["color_Position"],
                    kColorColor = kRemapValueType["color_Color"],
                    kColorInterp = kRemapValueType["color_Interp"],
                    kOutValue = kRemapValueType["outValue"],
                    kOutColor = kRemapValueType["outColor"];

// A new node maps its input straight, from black to white.
void createdRemap(Scene& scene, Node& node) {
    for (std::int32_t i = 0; i < 2; ++i) {
        scene.setNumber(Plug(node.self, kValuePosition, i), i);
        scene.setNumber(Plug(node.self, kValueFloatValue, i), i);
        scene.setNumber(Plug(node.self, kValueInterp, i), kLinear);
        scene.setNumber(Plug(node.self, kColorPosition, i), i);
        scene.setVec3(Plug(node.self, kColorColor, i), V3d(i));
        scene.setNumber(Plug(node.self, kColorInterp, i), kLinear);
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

// Cubic Hermite with Catmull-Rom slopes, one-sided at the ends.
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
    QuickNode node(e);
    const double place =
        placeBetween(node.number(kInputValue), node.number(kInputMin), node.number(kInputMax));
    const double low = node.number(kOutputMin), high = node.number(kOutputMax);
    if (e.output() == kOutValue) {
        node.set(kOutValue, between(low, high,
                                    rampAt(node, kValue, kValuePosition, kValueFloatValue,
                                           kValueInterp, place)));
        return;
    }
    V3d color;
    for (AttrIndex i = 0; i < 3; ++i)
        color[static_cast<int>(i)] =
            between(low, high,
                    rampAt(node, kColor, kColorPosition, kColorColor + 1 + i, kColorInterp, place));
    node.set(kOutColor, color);
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kConditionType, fn::kCondition, "kCondition", 0, condition),
    typeRow(kClampType, fn::kDependencyNode, "kClampColor", 0, clamp),
    typeRow(kSetRangeType, fn::kDependencyNode, "kSetRange", 0, setRange),
    typeRow(kRemapValueType, fn::kDependencyNode, "kRemapValue", 0, remapValue, createdRemap),
};

}  // namespace

TypeRows rangeTypes() {
    return family(kTypes);
}

}  // namespace torvel
