// Nodes that add, multiply and measure. Their numbers are floats, as rigs expect of them, unless
// said otherwise.
#include <cmath>

#include "nodes/core/fn_numbers.h"
#include "nodes/core/quick_node.h"
#include "nodes/utility/rows.h"

namespace torvel {
namespace {

constexpr AttrRow floatPair(const char* longName, const char* shortName, std::uint32_t flags,
                            const char* affects) {
    AttrRow row = attrRow(longName, shortName, AttrType::Float2, 0.0, flags, affects);
    row.childSuffixes = "xy";
    return row;
}

// --- multiplyDivide ---

enum { kMultiply = 1, kDivide = 2, kPower = 3 };

constexpr AttrRow kMultiplyDivideAttrs[] = {
    enumRow("operation", "op", "No operation:Multiply:Divide:Power", kMultiply, kKeyable, "output"),
    floatTriple("input1", "i1", "XYZ", 0.0, kKeyable, "output"),
    floatTriple("input2", "i2", "XYZ", 1.0, kKeyable, "output"),
    floatTriple("output", "o", "XYZ", 0.0, kComputedOutput),
};
constexpr TypeAttrs kMultiplyDivideType("multiplyDivide", kDependNode, kMultiplyDivideAttrs);

// What has no value (a quotient by zero, a root of a negative number) is 0: nothing behind it
// becomes not a number.
double combined(int operation, double a, double b) {
    double value = a;
    if (operation == kMultiply)
        value = a * b;
    else if (operation == kDivide)
        value = a / b;
    else if (operation == kPower)
        value = std::pow(a, b);
    return std::isfinite(value) ? value : 0.0;
}

void multiplyDivide(Evaluation& e) {
    constexpr const TypeAttrs& at = kMultiplyDivideType;
    constexpr AttrIndex kOperation = at["operation"], kInput1 = at["input1"],
                        kInput2 = at["input2"], kResult = at["output"];
    QuickNode node(e);
    const int operation = node.whole(kOperation);
    const V3d a = node.vec3(kInput1), b = node.vec3(kInput2);
    node.set(kResult, V3d(combined(operation, a.x, b.x), combined(operation, a.y, b.y),
                          combined(operation, a.z, b.z)));
}

// --- plusMinusAverage ---

enum { kSum = 1, kSubtract = 2, kAverage = 3 };

constexpr AttrRow kPlusMinusAttrs[] = {
    enumRow("operation", "op", "No operation:Sum:Subtract:Average", kSum, kKeyable,
            "output1D output2D output3D"),
    attrRow("input1D", "i1", AttrType::Float, 0.0, kArray | kKeyable, "output1D"),
    floatPair("input2D", "i2", kArray | kKeyable, "output2D"),
    floatTriple("input3D", "i3", "xyz", 0.0, kArray | kKeyable, "output3D"),
    attrRow("output1D", "o1", AttrType::Float, 0.0, kComputedOutput),
    floatPair("output2D", "o2", kComputedOutput, ""),
    floatTriple("output3D", "o3", "xyz", 0.0, kComputedOutput),
};
constexpr TypeAttrs kPlusMinusAverageType("plusMinusAverage", kDependNode, kPlusMinusAttrs);

double folded(const QuickNode& node, int operation, AttrIndex array, AttrIndex leaf) {
    const std::size_t count = node.count(array);
    if (count == 0)
        return 0.0;
    double value = node.element(array, 0, leaf);
    if (operation == 0)
        return value;
    const double sign = operation == kSubtract ? -1.0 : 1.0;
    for (std::size_t i = 1; i < count; ++i)
        value += sign * node.element(array, i, leaf);
    return operation == kAverage ? value / static_cast<double>(count) : value;
}

void plusMinusAverage(Evaluation& e) {
    constexpr const TypeAttrs& at = kPlusMinusAverageType;
    constexpr AttrIndex kOperation = at["operation"], kInput1D = at["input1D"],
                        kInput2D = at["input2D"], kInput3D = at["input3D"],
                        kOutput1D = at["output1D"], kOutput2D = at["output2D"],
                        kOutput3D = at["output3D"];
    QuickNode node(e);
    const int operation = node.whole(kOperation);
    if (e.output() == kOutput1D) {
        node.set(kOutput1D, folded(node, operation, kInput1D, kInput1D));
        return;
    }
    const bool pair = e.output() == kOutput2D;
    const AttrIndex array = pair ? kInput2D : kInput3D, output = pair ? kOutput2D : kOutput3D;
    for (AttrIndex i = 1; i <= (pair ? 2u : 3u); ++i)  // children stand behind their compound
        node.set(output + i, folded(node, operation, array, array + i));
}

// --- reverse ---

constexpr AttrRow kReverseAttrs[] = {floatTriple("input", "i", "XYZ", 0.0, kKeyable, "output"),
                                     floatTriple("output", "o", "XYZ", 0.0, kComputedOutput)};
constexpr TypeAttrs kReverseType("reverse", kDependNode, kReverseAttrs);

void reverse(Evaluation& e) {
    constexpr AttrIndex kInput = kReverseType["input"], kResult = kReverseType["output"];
    QuickNode node(e);
    node.set(kResult, V3d(1.0) - node.vec3(kInput));
}

// --- addDoubleLinear, multDoubleLinear (double precision, lengths) ---

constexpr AttrRow kTwoLengths[] = {
    attrRow("input1", "i1", AttrType::Distance, 0.0, kKeyable, "output"),
    attrRow("input2", "i2", AttrType::Distance, 0.0, kKeyable, "output"),
    attrRow("output", "o", AttrType::Distance, 0.0, kComputedOutput),
};
constexpr TypeAttrs kAddDoubleLinearType("addDoubleLinear", kDependNode, kTwoLengths);
constexpr TypeAttrs kMultDoubleLinearType("multDoubleLinear", kDependNode, kTwoLengths);

void addDoubleLinear(Evaluation& e) {
    constexpr AttrIndex kInput1 = kAddDoubleLinearType["input1"],
                        kInput2 = kAddDoubleLinearType["input2"],
                        kResult = kAddDoubleLinearType["output"];
    QuickNode node(e);
    node.set(kResult, node.number(kInput1) + node.number(kInput2));
}

void multDoubleLinear(Evaluation& e) {
    constexpr AttrIndex kInput1 = kMultDoubleLinearType["input1"],
                        kInput2 = kMultDoubleLinearType["input2"],
                        kResult = kMultDoubleLinearType["output"];
    QuickNode node(e);
    node.set(kResult, node.number(kInput1) * node.number(kInput2));
}

// --- multiply, sum, floatConstant ---

constexpr AttrRow kManyNumbers[] = {
    attrRow("input", "i", AttrType::Double, 0.0, kArray | kKeyable, "output"),
    attrRow("output", "o", AttrType::Double, 0.0, kComputedOutput)};
constexpr TypeAttrs kMultiplyType("multiply", kDependNode, kManyNumbers);
constexpr TypeAttrs kSumType("sum", kDependNode, kManyNumbers);

void multiply(Evaluation& e) {
    constexpr AttrIndex kInput = kMultiplyType["input"], kResult = kMultiplyType["output"];
    QuickNode node(e);
    const std::size_t count = node.count(kInput);
    double product = count ? 1.0 : 0.0;
    for (std::size_t i = 0; i < count; ++i)
        product *= node.element(kInput, i, kInput);
    node.set(kResult, product);
}

void sum(Evaluation& e) {
    constexpr AttrIndex kInput = kSumType["input"], kResult = kSumType["output"];
    QuickNode node(e);
    node.set(kResult, folded(node, kSum, kInput, kInput));
}

constexpr AttrRow kConstantAttrs[] = {
    attrRow("inFloat", "_f", AttrType::Float, 1.0, kKeyable, "outFloat"),
    attrRow("outFloat", "of", AttrType::Float, 0.0, kComputedOutput)};
constexpr TypeAttrs kFloatConstantType("floatConstant", kDependNode, kConstantAttrs);

void floatConstant(Evaluation& e) {
    constexpr AttrIndex kInFloat = kFloatConstantType["inFloat"],
                        kOutFloat = kFloatConstantType["outFloat"];
    QuickNode node(e);
    node.set(kOutFloat, node.number(kInFloat));
}

// --- distanceBetween ---

constexpr AttrRow kDistanceAttrs[] = {
    vectorRow("point1", "p1", AttrType::Distance, 0.0, kKeyable, "distance"),
    attrRow("inMatrix1", "im1", AttrType::Matrix, 0.0, 0, "distance"),
    vectorRow("point2", "p2", AttrType::Distance, 0.0, kKeyable, "distance"),
    attrRow("inMatrix2", "im2", AttrType::Matrix, 0.0, 0, "distance"),
    attrRow("distance", "d", AttrType::Double, 0.0, kComputedOutput),
};
constexpr TypeAttrs kDistanceBetweenType("distanceBetween", kDependNode, kDistanceAttrs);

void distanceBetween(Evaluation& e) {
    constexpr const TypeAttrs& at = kDistanceBetweenType;
    constexpr AttrIndex kPoint1 = at["point1"], kInMatrix1 = at["inMatrix1"],
                        kPoint2 = at["point2"], kInMatrix2 = at["inMatrix2"],
                        kDistance = at["distance"];
    QuickNode node(e);
    const V3d from = node.vec3(kPoint1) * node.matrix(kInMatrix1),
              to = node.vec3(kPoint2) * node.matrix(kInMatrix2);
    node.set(kDistance, (to - from).length());
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kMultiplyDivideType, fn::kMultiplyDivide, "kMultiplyDivide", 0, multiplyDivide),
    typeRow(kPlusMinusAverageType, fn::kPlusMinusAverage, "kPlusMinusAverage", 0, plusMinusAverage),
    typeRow(kReverseType, fn::kReverse, "kReverse", 0, reverse),
    typeRow(kAddDoubleLinearType, fn::kAddDoubleLinear, "kAddDoubleLinear", 0, addDoubleLinear),
    typeRow(kMultDoubleLinearType, fn::kDependencyNode, "kMultDoubleLinear", 0, multDoubleLinear),
    typeRow(kMultiplyType, fn::kDependencyNode, "kMultiply", 0, multiply),
    typeRow(kSumType, fn::kDependencyNode, "kSum", 0, sum),
    typeRow(kFloatConstantType, fn::kDependencyNode, "kFloatConstant", 0, floatConstant),
    typeRow(kDistanceBetweenType, fn::kDependencyNode, "kDistanceBetween", 0, distanceBetween),
};

}  // namespace

TypeRows arithmeticTypes() {
    return family(kTypes);
}

}  // namespace torvel
