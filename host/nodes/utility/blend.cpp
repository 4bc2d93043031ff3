// Nodes that mix or choose between values.
#include <Imath/ImathMatrixAlgo.h>

#include <algorithm>

#include "nodes/core/fn_numbers.h"
#include "nodes/core/quick_node.h"
#include "nodes/transform/rotation.h"
#include "nodes/utility/rows.h"
#include "nodes/utility/types.h"

namespace torvel {
namespace {

// --- blendColors
// ---------------------------------------------------------------------------------------------

constexpr AttrRow colorPart(const char* parent, const char* longName, const char* shortName,
                            double value) {
    return under(parent, attrRow(longName, shortName, AttrType::Float, value, kKeyable));
}

constexpr AttrRow kBlendColorsAttrs[] = {
    inputRow("blender", "b", "output", 0.5),
    compoundRow("color1", "c1", AttrType::Float3, kKeyable, "output"),
    colorPart("color1", "color1R", "c1r", 1.0),
    colorPart("color1", "color1G", "c1g", 0.0),
    colorPart("color1", "color1B", "c1b", 0.0),
    compoundRow("color2", "c2", AttrType::Float3, kKeyable, "output"),
    colorPart("color2", "color2R", "c2r", 0.0),
    colorPart("color2", "color2G", "c2g", 0.0),
    colorPart("color2", "color2B", "c2b", 1.0),
    floatTriple("output", "op", "RGB", 0.0, kComputedOutput),
};

void blendColors(Evaluation& e) {
    static const AttrPositions<4> at("blendColors", {"blender", "color1", "color2", "output"});
    QuickNode node(e);
    const double share = node.number(at[0]);
    node.set(at[3], node.vec3(at[1]) * share + node.vec3(at[2]) * (1.0 - share));
}

// --- blendTwoAttr, blendWeighted
// -----------------------------------------------------------------------------

constexpr AttrRow kTwoAttrs[] = {
    attrRow("input", "i", AttrType::Double, 0.0, kArray | kKeyable, "output"),
    attrRow("current", "c", AttrType::Long, 0.0, 0),
    inputRow("attributesBlender", "ab", "output", 0.0, AttrType::Double),
    outputRow("output", "o", AttrType::Double),
};

void blendTwoAttr(Evaluation& e) {
    static const AttrPositions<3> at("blendTwoAttr", {"input", "attributesBlender", "output"});
    QuickNode node(e);
    const double share = node.number(at[1]);
    const double a = node.elementOr(at[0], 0, at[0], 0.0), b = node.elementOr(at[0], 1, at[0], 0.0);
    node.set(at[2], (1.0 - share) * a + share * b);
}

constexpr AttrRow kWeightedAttrs[] = {
    attrRow("input", "i", AttrType::Double, 0.0, kArray | kKeyable, "output"),
    attrRow("weight", "w", AttrType::Double, 1.0, kArray | kKeyable, "output"),
    attrRow("current", "c", AttrType::Long, 0.0, 0),
    outputRow("output", "o", AttrType::Double),
};

// An input without a weight of its own counts in full.
void blendWeighted(Evaluation& e) {
    static const AttrPositions<3> at("blendWeighted", {"input", "weight", "output"});
    QuickNode node(e);
    double total = 0.0;
    for (std::size_t i = 0; i < node.count(at[0]); ++i)
        total += node.element(at[0], i, at[0]) *
                 node.elementOr(at[1], node.logicalAt(at[0], i), at[1], 1.0);
    node.set(at[2], total);
}

// --- pairBlend
// -----------------------------------------------------------------------------------------------

constexpr const char* kModeNames = "Blend inputs:In1 only:In2 only";

constexpr AttrRow half(const char* parent, const char* longName, const char* shortName,
                       AttrType type, std::uint32_t flags = kKeyable) {
    return under(parent, attrRow(longName, shortName, type, 0.0, flags));
}

constexpr AttrRow kPairAttrs[] = {
    compoundRow("inTranslate1", "it1", AttrType::Double3, kKeyable, "outTranslate"),
    half("inTranslate1", "inTranslateX1", "itx1", AttrType::Distance),
    half("inTranslate1", "inTranslateY1", "ity1", AttrType::Distance),
    half("inTranslate1", "inTranslateZ1", "itz1", AttrType::Distance),
    compoundRow("inTranslate2", "it2", AttrType::Double3, kKeyable, "outTranslate"),
    half("inTranslate2", "inTranslateX2", "itx2", AttrType::Distance),
    half("inTranslate2", "inTranslateY2", "ity2", AttrType::Distance),
    half("inTranslate2", "inTranslateZ2", "itz2", AttrType::Distance),
    compoundRow("inRotate1", "ir1", AttrType::Double3, kKeyable, "outRotate"),
    half("inRotate1", "inRotateX1", "irx1", AttrType::Angle),
    half("inRotate1", "inRotateY1", "iry1", AttrType::Angle),
    half("inRotate1", "inRotateZ1", "irz1", AttrType::Angle),
    compoundRow("inRotate2", "ir2", AttrType::Double3, kKeyable, "outRotate"),
    half("inRotate2", "inRotateX2", "irx2", AttrType::Angle),
    half("inRotate2", "inRotateY2", "iry2", AttrType::Angle),
    half("inRotate2", "inRotateZ2", "irz2", AttrType::Angle),
    within(inputRow("weight", "w", "outTranslate outRotate", 1.0, AttrType::Double), 0.0, 1.0),
    attrRow("currentDriver", "c", AttrType::Long),
    enumRow("translateXMode", "txm", kModeNames, 0.0, 0, "outTranslate"),
    enumRow("translateYMode", "tym", kModeNames, 0.0, 0, "outTranslate"),
    enumRow("translateZMode", "tzm", kModeNames, 0.0, 0, "outTranslate"),
    enumRow("rotateMode", "rm", kModeNames, 0.0, 0, "outRotate"),
    enumRow("rotInterpolation", "ri", "Euler:Quaternion", 0.0, 0, "outRotate"),
    enumRow("rotateOrder", "ro", kRotateOrderNames, 0.0, 0, "outRotate"),
    compoundRow("outTranslate", "ot", AttrType::Double3, kComputedOutput),
    half("outTranslate", "outTranslateX", "otx", AttrType::Distance, kComputedOutput),
    half("outTranslate", "outTranslateY", "oty", AttrType::Distance, kComputedOutput),
    half("outTranslate", "outTranslateZ", "otz", AttrType::Distance, kComputedOutput),
    compoundRow("outRotate", "or", AttrType::Double3, kComputedOutput),
    half("outRotate", "outRotateX", "orx", AttrType::Angle, kComputedOutput),
    half("outRotate", "outRotateY", "ory", AttrType::Angle, kComputedOutput),
    half("outRotate", "outRotateZ", "orz", AttrType::Angle, kComputedOutput),
};

double shareOf(int mode, double weight) {
    return mode == 1 ? 0.0 : mode == 2 ? 1.0 : weight;
}

V3d blendedRotation(const QuickNode& node, const V3d& a, const V3d& b, double share,
                    AttrIndex order) {
    if (share <= 0.0 || share >= 1.0)
        return share <= 0.0 ? a : b;
    const int rotateOrder = node.whole(order);
    const Quatd from = Imath::extractQuat(eulerMatrix(a, rotateOrder)),
                to = Imath::extractQuat(eulerMatrix(b, rotateOrder));
    return eulerFromMatrix(Imath::slerpShortestArc(from, to, share).toMatrix44(), rotateOrder, &a);
}

void pairBlend(Evaluation& e) {
    static const AttrPositions<13> at(
        "pairBlend", {"inTranslate1", "inTranslate2", "inRotate1", "inRotate2", "weight",
                      "translateXMode", "translateYMode", "translateZMode", "rotateMode",
                      "rotInterpolation", "rotateOrder", "outTranslate", "outRotate"});
    QuickNode node(e);
    const double weight = node.number(at[4]);
    if (e.output() == at[11]) {
        const V3d a = node.vec3(at[0]), b = node.vec3(at[1]);
        V3d out;
        for (int i = 0; i < 3; ++i)
            out[i] = a[i] + (b[i] - a[i]) *
                                shareOf(node.whole(at[static_cast<std::size_t>(5 + i)]), weight);
        node.set(at[11], out);
        return;
    }
    const V3d a = node.vec3(at[2]), b = node.vec3(at[3]);
    const double share = shareOf(node.whole(at[8]), weight);
    node.set(at[12], node.whole(at[9]) == 1 ? blendedRotation(node, a, b, share, at[10])
                                            : a + (b - a) * share);
}

// --- choice
// --------------------------------------------------------------------------------------------------

// Input and output take every kind of value; their nameless children let three numbers through as
// one.
constexpr std::uint32_t kInner = kOpaque | kNotStored;
constexpr AttrRow kChoiceAttrs[] = {
    attrRow("selector", "s", AttrType::Long, 0.0, kKeyable, "output"),
    compoundRow("input", "i", AttrType::Any, kArray | kNotStored, "output"),
    under("input", attrRow("input0", "i_0", AttrType::Double, 0.0, kInner)),
    under("input", attrRow("input1", "i_1", AttrType::Double, 0.0, kInner)),
    under("input", attrRow("input2", "i_2", AttrType::Double, 0.0, kInner)),
    compoundRow("output", "o", AttrType::Any, kComputedOutput),
    under("output", attrRow("output0", "o_0", AttrType::Double, 0.0, kInner | kOutput)),
    under("output", attrRow("output1", "o_1", AttrType::Double, 0.0, kInner | kOutput)),
    under("output", attrRow("output2", "o_2", AttrType::Double, 0.0, kInner | kOutput)),
};

// A selector beyond the inputs takes the last one.
void choice(Evaluation& e) {
    static const AttrPositions<3> at("choice", {"selector", "input", "output"});
    QuickNode node(e);
    const std::size_t count = node.count(at[1]);
    if (count == 0)
        return;
    std::int32_t wanted = std::max(node.whole(at[0]), 0);
    wanted = std::min(wanted, node.logicalAt(at[1], count - 1));
    const Plug source = node.elementSource(at[1], wanted);
    const AttrInfo* info = source.isNull() ? nullptr : &e.scene().info(source);
    if (info && isNumeric(info->type) && info->children.empty())
        return node.set(at[2], node.numberFrom(source));
    const Plug input = e.plug(at[1], wanted);
    e.set(at[2], e.data(input));
    if (info && info->children.size() == 3)
        node.set(at[2], e.vec3(input));
    else
        node.set(at[2], e.number(input));
}

constexpr NodeTypeRow kBlendColorsRow =
    utilityRow("blendColors", fn::kBlendColors, "kBlendColors", kBlendColorsAttrs, blendColors);
constexpr NodeTypeRow kTwoRow =
    utilityRow("blendTwoAttr", fn::kBlendNodeBase, "kBlendTwoAttr", kTwoAttrs, blendTwoAttr);
constexpr NodeTypeRow kWeightedRow = utilityRow("blendWeighted", fn::kBlendNodeBase,
                                                "kBlendWeighted", kWeightedAttrs, blendWeighted);
constexpr NodeTypeRow kPairRow =
    utilityRow("pairBlend", fn::kDependencyNode, "kPairBlend", kPairAttrs, pairBlend);
constexpr NodeTypeRow kChoiceRow =
    utilityRow("choice", fn::kDependencyNode, "kChoice", kChoiceAttrs, choice);

const NodeTypeRow* const kRows[] = {&kBlendColorsRow, &kTwoRow, &kWeightedRow, &kPairRow,
                                    &kChoiceRow};

}  // namespace

TypeRows blendTypes() {
    return {kRows, std::size(kRows)};
}

}  // namespace torvel
