// Nodes that mix or choose between values.
#include <algorithm>

#include <Imath/ImathMatrixAlgo.h>

#include "nodes/core/fn_numbers.h"
#include "nodes/core/quick_node.h"
#include "nodes/transform/rotation.h"
#include "nodes/utility/rows.h"

namespace torvel {
namespace {

// --- blendColors ---

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
constexpr TypeAttrs kBlendColorsType("blendColors", kDependNode, kBlendColorsAttrs);

void blendColors(Evaluation& e) {
    constexpr const TypeAttrs& at = kBlendColorsType;
    constexpr AttrIndex kBlender = at["blender"], kColor1 = at["color1"], kColor2 = at["color2"],
                        kResult = at["output"];
    QuickNode node(e);
    const double share = node.number(kBlender);
    node.set(kResult, node.vec3(kColor1) * share + node.vec3(kColor2) * (1.0 - share));
}

// --- blendTwoAttr, blendWeighted ---

constexpr AttrRow kTwoAttrs[] = {
    attrRow("input", "i", AttrType::Double, 0.0, kArray | kKeyable, "output"),
    attrRow("current", "c", AttrType::Long, 0.0, 0),
    inputRow("attributesBlender", "ab", "output", 0.0, AttrType::Double),
    outputRow("output", "o", AttrType::Double),
};
constexpr TypeAttrs kBlendTwoAttrType("blendTwoAttr", kDependNode, kTwoAttrs);

void blendTwoAttr(Evaluation& e) {
    constexpr AttrIndex kInput = kBlendTwoAttrType["input"],
                        kAttributesBlender = kBlendTwoAttrType["attributesBlender"],
                        kResult = kBlendTwoAttrType["output"];
    QuickNode node(e);
    const double share = node.number(kAttributesBlender);
    const double a = node.elementOr(kInput, 0, kInput, 0.0),
                 b = node.elementOr(kInput, 1, kInput, 0.0);
    node.set(kResult, (1.0 - share) * a + share * b);
}

constexpr AttrRow kWeightedAttrs[] = {
    attrRow("input", "i", AttrType::Double, 0.0, kArray | kKeyable, "output"),
    attrRow("weight", "w", AttrType::Double, 1.0, kArray | kKeyable, "output"),
    attrRow("current", "c", AttrType::Long, 0.0, 0),
    outputRow("output", "o", AttrType::Double),
};
constexpr TypeAttrs kBlendWeightedType("blendWeighted", kDependNode, kWeightedAttrs);

// An input without a weight of its own counts in full.
void blendWeighted(Evaluation& e) {
    constexpr AttrIndex kInput = kBlendWeightedType["input"],
                        kWeight = kBlendWeightedType["weight"],
                        kResult = kBlendWeightedType["output"];
    QuickNode node(e);
    double total = 0.0;
    for (std::size_t i = 0; i < node.count(kInput); ++i)
        total += node.element(kInput, i, kInput) *
                 node.elementOr(kWeight, node.logicalAt(kInput, i), kWeight, 1.0);
    node.set(kResult, total);
}

// --- pairBlend ---

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
constexpr TypeAttrs kPairBlendType("pairBlend", kDependNode, kPairAttrs);

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
    constexpr const TypeAttrs& at = kPairBlendType;
    constexpr AttrIndex kInTranslate1 = at["inTranslate1"], kInTranslate2 = at["inTranslate2"],
                        kInRotate1 = at["inRotate1"], kInRotate2 = at["inRotate2"],
                        kWeight = at["weight"], kTranslateXMode = at["translateXMode"],
                        kRotateMode = at["rotateMode"], kRotInterpolation = at["rotInterpolation"],
                        kRotateOrder = at["rotateOrder"], kOutTranslate = at["outTranslate"],
                        kOutRotate = at["outRotate"];
    QuickNode node(e);
    const double weight = node.number(kWeight);
    if (e.output() == kOutTranslate) {
        const V3d a = node.vec3(kInTranslate1), b = node.vec3(kInTranslate2);
        V3d out;
        for (int i = 0; i < 3; ++i)
            out[i] =
                a[i] + (b[i] - a[i]) *
                           shareOf(node.whole(kTranslateXMode + static_cast<AttrIndex>(i)), weight);
        node.set(kOutTranslate, out);
        return;
    }
    const V3d a = node.vec3(kInRotate1), b = node.vec3(kInRotate2);
    const double share = shareOf(node.whole(kRotateMode), weight);
    node.set(kOutRotate, node.whole(kRotInterpolation) == 1
                             ? blendedRotation(node, a, b, share, kRotateOrder)
                             : a + (b - a) * share);
}

// --- choice ---

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
constexpr TypeAttrs kChoiceType("choice", kDependNode, kChoiceAttrs);

// A selector beyond the inputs takes the last one.
void choice(Evaluation& e) {
    constexpr AttrIndex kSelector = kChoiceType["selector"], kInput = kChoiceType["input"],
                        kResult = kChoiceType["output"];
    QuickNode node(e);
    const std::size_t count = node.count(kInput);
    if (count == 0)
        return;
    std::int32_t wanted = std::max(node.whole(kSelector), 0);
    wanted = std::min(wanted, node.logicalAt(kInput, count - 1));
    const Plug source = node.elementSource(kInput, wanted);
    const AttrInfo* info = source.isNull() ? nullptr : &e.scene().info(source);
    if (info && isNumeric(info->type) && info->children.empty())
        return node.set(kResult, node.numberFrom(source));
    const Plug input = e.plug(kInput, wanted);
    e.set(kResult, e.data(input));
    if (info && info->children.size() == 3)
        node.set(kResult, e.vec3(input));
    else
        node.set(kResult, e.number(input));
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kBlendColorsType, fn::kBlendColors, "kBlendColors", 0, blendColors),
    typeRow(kBlendTwoAttrType, fn::kBlendNodeBase, "kBlendTwoAttr", 0, blendTwoAttr),
    typeRow(kBlendWeightedType, fn::kBlendNodeBase, "kBlendWeighted", 0, blendWeighted),
    typeRow(kPairBlendType, fn::kDependencyNode, "kPairBlend", 0, pairBlend),
    typeRow(kChoiceType, fn::kDependencyNode, "kChoice", 0, choice),
};

}  // namespace

TypeRows blendTypes() {
    return family(kTypes);
}

}  // namespace torvel
