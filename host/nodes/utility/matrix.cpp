// Nodes that take matrices apart, put them together and mix them.
#include <Imath/ImathMatrixAlgo.h>

#include "nodes/core/fn_numbers.h"
#include "nodes/core/quick_node.h"
#include "nodes/transform/rotation.h"
#include "nodes/utility/rows.h"
#include "nodes/utility/types.h"

namespace torvel {
namespace {

constexpr AttrRow number(const char* parent, const char* longName, const char* shortName,
                         double value, std::uint32_t flags = kKeyable) {
    return under(parent, attrRow(longName, shortName, AttrType::Double, value, flags));
}

constexpr AttrRow matrixRow(const char* longName, const char* shortName, std::uint32_t flags,
                            const char* affects = "") {
    return attrRow(longName, shortName, AttrType::Matrix, 0.0, flags, affects);
}

M44d matrixOf(const MatrixParts& parts) {
    M44d m = parts.shear == V3d(0.0) ? parts.rotation : shearMatrix(parts.shear) * parts.rotation;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            m[row][column] *= parts.scale[row];
    for (int column = 0; column < 3; ++column)
        m[3][column] = parts.translate[column];
    return m;
}

// --- composeMatrix, decomposeMatrix
// --------------------------------------------------------------------------

constexpr AttrRow kComposeAttrs[] = {
    vectorRow("inputTranslate", "it", AttrType::Distance, 0.0, kKeyable, "outputMatrix"),
    vectorRow("inputRotate", "ir", AttrType::Angle, 0.0, kKeyable, "outputMatrix"),
    vectorRow("inputScale", "is", AttrType::Double, 1.0, kKeyable, "outputMatrix"),
    vectorRow("inputShear", "ish", AttrType::Double, 0.0, kKeyable, "outputMatrix"),
    compoundRow("inputQuat", "iq", AttrType::Double4, kKeyable, "outputMatrix"),
    number("inputQuat", "inputQuatX", "iqx", 0.0),
    number("inputQuat", "inputQuatY", "iqy", 0.0),
    number("inputQuat", "inputQuatZ", "iqz", 0.0),
    number("inputQuat", "inputQuatW", "iqw", 1.0),
    enumRow("inputRotateOrder", "iro", kRotateOrderNames, 0.0, 0, "outputMatrix"),
    attrRow("useEulerRotation", "uer", AttrType::Bool, 1.0, 0, "outputMatrix"),
    matrixRow("outputMatrix", "omat", kComputedOutput),
};

M44d quatMatrix(const QuickNode& node, AttrIndex w, const V3d& axis) {
    const Quatd q(node.number(w), axis);
    return q.length() > 0.0 ? q.normalized().toMatrix44() : M44d();
}

void composeMatrix(Evaluation& e) {
    static const AttrPositions<9> at(
        "composeMatrix", {"inputTranslate", "inputRotate", "inputScale", "inputShear", "inputQuat",
                          "inputQuatW", "inputRotateOrder", "useEulerRotation", "outputMatrix"});
    QuickNode node(e);
    MatrixParts parts;
    parts.translate = node.vec3(at[0]);
    parts.scale = node.vec3(at[2]);
    parts.shear = node.vec3(at[3]);
    parts.rotation = node.flag(at[7]) ? eulerMatrix(node.vec3(at[1]), node.whole(at[6]))
                                      : quatMatrix(node, at[5], node.vec3(at[4]));
    node.set(at[8], matrixOf(parts));
}

constexpr const char* kAllParts = "outputTranslate outputRotate outputScale outputShear outputQuat";

constexpr AttrRow kDecomposeAttrs[] = {
    matrixRow("inputMatrix", "imat", 0, kAllParts),
    enumRow("inputRotateOrder", "iro", kRotateOrderNames, 0.0, 0, "outputRotate"),
    vectorRow("outputTranslate", "ot", AttrType::Distance, 0.0, kComputedOutput),
    vectorRow("outputRotate", "or", AttrType::Angle, 0.0, kComputedOutput),
    vectorRow("outputScale", "os", AttrType::Double, 0.0, kComputedOutput),
    vectorRow("outputShear", "osh", AttrType::Double, 0.0, kComputedOutput),
    compoundRow("outputQuat", "oq", AttrType::Double4, kComputedOutput),
    number("outputQuat", "outputQuatX", "oqx", 0.0, kComputedOutput),
    number("outputQuat", "outputQuatY", "oqy", 0.0, kComputedOutput),
    number("outputQuat", "outputQuatZ", "oqz", 0.0, kComputedOutput),
    number("outputQuat", "outputQuatW", "oqw", 0.0, kComputedOutput),
};

void decomposeMatrix(Evaluation& e) {
    static const AttrPositions<8> at(
        "decomposeMatrix", {"inputMatrix", "inputRotateOrder", "outputTranslate", "outputRotate",
                            "outputScale", "outputShear", "outputQuat", "outputQuatW"});
    QuickNode node(e);
    const M44d& matrix = node.matrix(at[0]);
    if (e.output() == at[2]) {
        node.set(at[2], translationOf(matrix));
        return;
    }
    const MatrixParts parts = decompose(matrix);
    if (e.output() == at[3])
        node.set(at[3], eulerFromMatrix(parts.rotation, node.whole(at[1])));
    else if (e.output() == at[4])
        node.set(at[4], parts.scale);
    else if (e.output() == at[5])
        node.set(at[5], parts.shear);
    else {
        const Quatd q = Imath::extractQuat(parts.rotation);
        node.set(at[6], q.v);
        node.set(at[7], q.r);
    }
}

// --- products, sums, inverses
// --------------------------------------------------------------------------------

constexpr AttrRow kMultAttrs[] = {matrixRow("matrixIn", "i", kArray, "matrixSum"),
                                  matrixRow("matrixSum", "o", kComputedOutput)};

void multMatrix(Evaluation& e) {
    static const AttrPositions<2> at("multMatrix", {"matrixIn", "matrixSum"});
    QuickNode node(e);
    M44d product;
    for (std::size_t i = 0; i < node.count(at[0]); ++i)
        product = i == 0 ? node.elementMatrix(at[0], i, at[0])
                         : product * node.elementMatrix(at[0], i, at[0]);
    node.set(at[1], product);
}

constexpr AttrRow kWtAddAttrs[] = {
    compoundRow("wtMatrix", "i", AttrType::Compound, kArray, "matrixSum"),
    under("wtMatrix", attrRow("matrixIn", "m", AttrType::Matrix)),
    under("wtMatrix", attrRow("weightIn", "w", AttrType::Double, 0.0, kKeyable)),
    matrixRow("matrixSum", "o", kComputedOutput),
};

// No weights at all leave the matrix of zeros that such a sum is.
void wtAddMatrix(Evaluation& e) {
    static const AttrPositions<4> at("wtAddMatrix",
                                     {"wtMatrix", "matrixIn", "weightIn", "matrixSum"});
    QuickNode node(e);
    M44d total(0.0);
    for (std::size_t i = 0; i < node.count(at[0]); ++i)
        total += node.elementMatrix(at[0], i, at[1]) * node.element(at[0], i, at[2]);
    node.set(at[3], total);
}

constexpr AttrRow kOneMatrix[] = {matrixRow("inputMatrix", "imat", 0, "outputMatrix"),
                                  matrixRow("outputMatrix", "omat", kComputedOutput)};

void inverseMatrix(Evaluation& e) {
    static const AttrPositions<2> at("inverseMatrix", {"inputMatrix", "outputMatrix"});
    QuickNode node(e);
    node.set(at[1], inverseOf(node.matrix(at[0])));
}

void transposeMatrix(Evaluation& e) {
    static const AttrPositions<2> at("transposeMatrix", {"inputMatrix", "outputMatrix"});
    QuickNode node(e);
    node.set(at[1], node.matrix(at[0]).transposed());
}

// --- pickMatrix, blendMatrix
// ---------------------------------------------------------------------------------

constexpr AttrRow kPickAttrs[] = {
    matrixRow("inputMatrix", "imat", 0, "outputMatrix"),
    attrRow("useTranslate", "tra", AttrType::Bool, 1.0, kKeyable, "outputMatrix"),
    attrRow("useRotate", "rot", AttrType::Bool, 1.0, kKeyable, "outputMatrix"),
    attrRow("useScale", "sca", AttrType::Bool, 1.0, kKeyable, "outputMatrix"),
    attrRow("useShear", "shr", AttrType::Bool, 1.0, kKeyable, "outputMatrix"),
    matrixRow("outputMatrix", "omat", kComputedOutput),
};

void pickMatrix(Evaluation& e) {
    static const AttrPositions<6> at("pickMatrix", {"inputMatrix", "useTranslate", "useRotate",
                                                    "useScale", "useShear", "outputMatrix"});
    QuickNode node(e);
    const MatrixParts all = decompose(node.matrix(at[0]));
    MatrixParts picked;
    if (node.flag(at[1]))
        picked.translate = all.translate;
    if (node.flag(at[2]))
        picked.rotation = all.rotation;
    if (node.flag(at[3]))
        picked.scale = all.scale;
    if (node.flag(at[4]))
        picked.shear = all.shear;
    node.set(at[5], matrixOf(picked));
}

constexpr AttrRow share(const char* longName, const char* shortName) {
    return under("target",
                 within(attrRow(longName, shortName, AttrType::Float, 1.0, kKeyable), 0.0, 1.0));
}

constexpr AttrRow kBlendAttrs[] = {
    matrixRow("inputMatrix", "imat", 0, "outputMatrix"),
    within(inputRow("envelope", "env", "outputMatrix", 1.0), 0.0, 1.0),
    compoundRow("target", "tgt", AttrType::Compound, kArray, "outputMatrix"),
    under("target", attrRow("targetMatrix", "tmat", AttrType::Matrix)),
    under("target", attrRow("useMatrix", "umat", AttrType::Bool, 1.0, kKeyable)),
    share("weight", "wgt"),
    share("translateWeight", "trw"),
    share("rotateWeight", "row"),
    share("scaleWeight", "scw"),
    share("shearWeight", "shw"),
    matrixRow("outputMatrix", "omat", kComputedOutput),
};

struct Shares {
    double translate, rotate, scale, shear;
    bool isAll() const { return translate == 1.0 && rotate == 1.0 && scale == 1.0 && shear == 1.0; }
};

void mixIn(MatrixParts& parts, const MatrixParts& target, const Shares& shares) {
    parts.translate += (target.translate - parts.translate) * shares.translate;
    parts.scale += (target.scale - parts.scale) * shares.scale;
    parts.shear += (target.shear - parts.shear) * shares.shear;
    if (shares.rotate > 0.0)
        parts.rotation = Imath::slerpShortestArc(Imath::extractQuat(parts.rotation),
                                                 Imath::extractQuat(target.rotation), shares.rotate)
                             .normalized()
                             .toMatrix44();
}

// What has been mixed so far, taken apart only once something has to be mixed.
class Mixture {
  public:
    explicit Mixture(const M44d& start) : m_whole(start) {}
    void take(const M44d& target, const Shares& shares) {
        if (shares.isAll()) {
            m_whole = target;
            m_isApart = false;
            return;
        }
        if (!m_isApart)
            m_parts = decompose(m_whole);
        m_isApart = true;
        mixIn(m_parts, decompose(target), shares);
    }
    M44d result() const { return m_isApart ? matrixOf(m_parts) : m_whole; }

  private:
    M44d m_whole;
    MatrixParts m_parts;
    bool m_isApart = false;
};

// The targets are mixed in one after the other, as layers.
void blendMatrix(Evaluation& e) {
    static const AttrPositions<11> at(
        "blendMatrix",
        {"inputMatrix", "envelope", "target", "targetMatrix", "useMatrix", "weight",
         "translateWeight", "rotateWeight", "scaleWeight", "shearWeight", "outputMatrix"});
    QuickNode node(e);
    Mixture mixture(node.matrix(at[0]));
    const double envelope = node.number(at[1]);
    for (std::size_t i = 0; i < node.count(at[2]); ++i) {
        const double weight = envelope * node.element(at[2], i, at[5]);
        if (weight == 0.0 || node.element(at[2], i, at[4]) == 0.0)
            continue;
        mixture.take(
            node.elementMatrix(at[2], i, at[3]),
            {weight * node.element(at[2], i, at[6]), weight * node.element(at[2], i, at[7]),
             weight * node.element(at[2], i, at[8]), weight * node.element(at[2], i, at[9])});
    }
    node.set(at[10], mixture.result());
}

constexpr NodeTypeRow kComposeRow = utilityRow("composeMatrix", fn::kDependencyNode,
                                               "kComposeMatrix", kComposeAttrs, composeMatrix);
constexpr NodeTypeRow kDecomposeRow = utilityRow(
    "decomposeMatrix", fn::kDecomposeMatrix, "kDecomposeMatrix", kDecomposeAttrs, decomposeMatrix);
constexpr NodeTypeRow kMultRow =
    utilityRow("multMatrix", fn::kMultMatrix, "kMatrixMult", kMultAttrs, multMatrix);
constexpr NodeTypeRow kWtAddRow =
    utilityRow("wtAddMatrix", fn::kDependencyNode, "kMatrixWtAdd", kWtAddAttrs, wtAddMatrix);
constexpr NodeTypeRow kInverseRow =
    utilityRow("inverseMatrix", fn::kDependencyNode, "kInverseMatrix", kOneMatrix, inverseMatrix);
constexpr NodeTypeRow kTransposeRow = utilityRow("transposeMatrix", fn::kDependencyNode,
                                                 "kTransposeMatrix", kOneMatrix, transposeMatrix);
constexpr NodeTypeRow kPickRow =
    utilityRow("pickMatrix", fn::kDependencyNode, "kPickMatrix", kPickAttrs, pickMatrix);
constexpr NodeTypeRow kBlendRow =
    utilityRow("blendMatrix", fn::kDependencyNode, "kBlendMatrix", kBlendAttrs, blendMatrix);

const NodeTypeRow* const kRows[] = {&kComposeRow, &kDecomposeRow, &kMultRow, &kWtAddRow,
                                    &kInverseRow, &kTransposeRow, &kPickRow, &kBlendRow};

}  // namespace

TypeRows matrixTypes() {
    return {kRows, std::size(kRows)};
}

}  // namespace torvel
