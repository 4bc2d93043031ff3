// Nodes that add, multiply and measure. Their numbers are floats, as rigs expect of them, unless
// said otherwise.
#include <cmath>

#include "nodes/core/fn_numbers.h"
#include "nodes/core/quick_node.h"
#include "nodes/utility/rows.h"
#include "nodes/utility/types.h"

namespace torvel {
namespace {

constexpr AttrRow floatPair(const char* longName, const char* shortName, std::uint32_t flags,
                            const char* affects) {
    AttrRow row = attrRow(longName, shortName, AttrType::Float2, 0.0, flags, affects);
    row.childSuffixes = "xy";
    return row;
}

// --- multiplyDivide
// ------------------------------------------------------------------------------------------

enum { kMultiply = 1, kDivide = 2, kPower = 3 };

constexpr AttrRow kMultiplyDivideAttrs[] = {
    enumRow("operation", "op", "No operation:Multiply:Divide:Power", kMultiply, kKeyable, "output"),
    floatTriple("input1", "i1", "XYZ", 0.0, kKeyable, "output"),
    floatTriple("input2", "i2", "XYZ", 1.0, kKeyable, "output"),
    floatTriple("output", "o", "XYZ", 0.0, kComputedOutput),
};

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
    static const AttrPositions<4> at("multiplyDivide", {"operation", "input1", "input2", "output"});
    QuickNode node(e);
    const int operation = node.whole(at[0]);
    const V3d a = node.vec3(at[1]), b = node.vec3(at[2]);
    node.set(at[3], V3d(combined(operation, a.x, b.x), combined(operation, a.y, b.y),
                        combined(operation, a.z, b.z)));
}

// --- plusMinusAverage
// ----------------------------------------------------------------------------------------

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
    static const AttrPositions<7> at(
        "plusMinusAverage",
        {"operation", "input1D", "input2D", "input3D", "output1D", "output2D", "output3D"});
    QuickNode node(e);
    const int operation = node.whole(at[0]);
    if (e.output() == at[4]) {
        node.set(at[4], folded(node, operation, at[1], at[1]));
        return;
    }
    const bool pair = e.output() == at[5];
    const AttrIndex array = pair ? at[2] : at[3], output = pair ? at[5] : at[6];
    for (AttrIndex i = 1; i <= (pair ? 2u : 3u); ++i)  // children stand behind their compound
        node.set(output + i, folded(node, operation, array, array + i));
}

// --- reverse
// -------------------------------------------------------------------------------------------------

constexpr AttrRow kReverseAttrs[] = {floatTriple("input", "i", "XYZ", 0.0, kKeyable, "output"),
                                     floatTriple("output", "o", "XYZ", 0.0, kComputedOutput)};

void reverse(Evaluation& e) {
    static const AttrPositions<2> at("reverse", {"input", "output"});
    QuickNode node(e);
    node.set(at[1], V3d(1.0) - node.vec3(at[0]));
}

// --- addDoubleLinear, multDoubleLinear (double precision, lengths)
// -------------------------------------------

constexpr AttrRow kTwoLengths[] = {
    attrRow("input1", "i1", AttrType::Distance, 0.0, kKeyable, "output"),
    attrRow("input2", "i2", AttrType::Distance, 0.0, kKeyable, "output"),
    attrRow("output", "o", AttrType::Distance, 0.0, kComputedOutput),
};

void addDoubleLinear(Evaluation& e) {
    static const AttrPositions<3> at("addDoubleLinear", {"input1", "input2", "output"});
    QuickNode node(e);
    node.set(at[2], node.number(at[0]) + node.number(at[1]));
}

void multDoubleLinear(Evaluation& e) {
    static const AttrPositions<3> at("multDoubleLinear", {"input1", "input2", "output"});
    QuickNode node(e);
    node.set(at[2], node.number(at[0]) * node.number(at[1]));
}

// --- multiply, sum, floatConstant
// ----------------------------------------------------------------------------

constexpr AttrRow kManyNumbers[] = {
    attrRow("input", "i", AttrType::Double, 0.0, kArray | kKeyable, "output"),
    attrRow("output", "o", AttrType::Double, 0.0, kComputedOutput)};

void multiply(Evaluation& e) {
    static const AttrPositions<2> at("multiply", {"input", "output"});
    QuickNode node(e);
    const std::size_t count = node.count(at[0]);
    double product = count ? 1.0 : 0.0;
    for (std::size_t i = 0; i < count; ++i)
        product *= node.element(at[0], i, at[0]);
    node.set(at[1], product);
}

void sum(Evaluation& e) {
    static const AttrPositions<2> at("sum", {"input", "output"});
    QuickNode node(e);
    node.set(at[1], folded(node, kSum, at[0], at[0]));
}

constexpr AttrRow kConstantAttrs[] = {
    attrRow("inFloat", "_f", AttrType::Float, 1.0, kKeyable, "outFloat"),
    attrRow("outFloat", "of", AttrType::Float, 0.0, kComputedOutput)};

void floatConstant(Evaluation& e) {
    static const AttrPositions<2> at("floatConstant", {"inFloat", "outFloat"});
    QuickNode node(e);
    node.set(at[1], node.number(at[0]));
}

// --- distanceBetween
// -----------------------------------------------------------------------------------------

constexpr AttrRow kDistanceAttrs[] = {
    vectorRow("point1", "p1", AttrType::Distance, 0.0, kKeyable, "distance"),
    attrRow("inMatrix1", "im1", AttrType::Matrix, 0.0, 0, "distance"),
    vectorRow("point2", "p2", AttrType::Distance, 0.0, kKeyable, "distance"),
    attrRow("inMatrix2", "im2", AttrType::Matrix, 0.0, 0, "distance"),
    attrRow("distance", "d", AttrType::Double, 0.0, kComputedOutput),
};

void distanceBetween(Evaluation& e) {
    static const AttrPositions<5> at("distanceBetween",
                                     {"point1", "inMatrix1", "point2", "inMatrix2", "distance"});
    QuickNode node(e);
    const V3d from = node.vec3(at[0]) * node.matrix(at[1]),
              to = node.vec3(at[2]) * node.matrix(at[3]);
    node.set(at[4], (to - from).length());
}

constexpr NodeTypeRow kMultiplyDivideRow = utilityRow(
    "multiplyDivide", fn::kMultiplyDivide, "kMultiplyDivide", kMultiplyDivideAttrs, multiplyDivide);
constexpr NodeTypeRow kPlusMinusRow =
    utilityRow("plusMinusAverage", fn::kPlusMinusAverage, "kPlusMinusAverage", kPlusMinusAttrs,
               plusMinusAverage);
constexpr NodeTypeRow kReverseRow =
    utilityRow("reverse", fn::kReverse, "kReverse", kReverseAttrs, reverse);
constexpr NodeTypeRow kAddRow = utilityRow("addDoubleLinear", fn::kAddDoubleLinear,
                                           "kAddDoubleLinear", kTwoLengths, addDoubleLinear);
constexpr NodeTypeRow kMultRow = utilityRow("multDoubleLinear", fn::kDependencyNode,
                                            "kMultDoubleLinear", kTwoLengths, multDoubleLinear);
constexpr NodeTypeRow kMultiplyRow =
    utilityRow("multiply", fn::kDependencyNode, "kMultiply", kManyNumbers, multiply);
constexpr NodeTypeRow kSumRow = utilityRow("sum", fn::kDependencyNode, "kSum", kManyNumbers, sum);
constexpr NodeTypeRow kConstantRow = utilityRow("floatConstant", fn::kDependencyNode,
                                                "kFloatConstant", kConstantAttrs, floatConstant);
constexpr NodeTypeRow kDistanceRow = utilityRow(
    "distanceBetween", fn::kDependencyNode, "kDistanceBetween", kDistanceAttrs, distanceBetween);

const NodeTypeRow* const kRows[] = {
    &kMultiplyDivideRow, &kPlusMinusRow, &kReverseRow,  &kAddRow,     &kMultRow,
    &kMultiplyRow,       &kSumRow,       &kConstantRow, &kDistanceRow};

}  // namespace

TypeRows arithmeticTypes() {
    return {kRows, std::size(kRows)};
}

}  // namespace torvel
