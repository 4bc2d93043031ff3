// Nodes that take matrices apart, put them together and mix them.
#include <Imath/ImathMatrixAlgo.h>

#include "nodes/core/fn_numbers.h"
#include "nodes/core/quick_node.h"
#include "nodes/transform/rotation.h"
#include "nodes/utility/rows.h"

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

// --- composeMatrix, decomposeMatrix ---

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
constexpr TypeAttrs kComposeMatrixType("composeMatrix", kDependNode, kComposeAttrs);

M44d quatMatrix(const QuickNode& node, AttrIndex w, const V3d& axis) {
    const Quatd q(node.number(w), axis);
    return q.length() > 0.0 ? q.normalized().toMatrix44() : M44d();
}

void composeMatrix(Evaluation& e) {
    constexpr const TypeAttrs& at = kComposeMatrixType;
    constexpr AttrIndex kInputTranslate = at["inputTranslate"], kInputRotate = at["inputRotate"],
                        kInputScale = at["inputScale"], kInputShear = at["inputShear"],
                        kInputQuat = at["inputQuat"], kInputQuatW = at["inputQuatW"],
                        kInputRotateOrder = at["inputRotateOrder"],
                        kUseEulerRotation = at["useEulerRotation"],
                        kOutputMatrix = at["outputMatrix"];
    QuickNode node(e);
    MatrixParts parts;
    parts.translate = node.vec3(kInputTranslate);
    parts.scale = node.vec3(kInputScale);
    parts.shear = node.vec3(kInputShear);
    parts.rotation = node.flag(kUseEulerRotation)
                         ? eulerMatrix(node.vec3(kInputRotate), node.whole(kInputRotateOrder))
                         : quatMatrix(node, kInputQuatW, node.vec3(kInputQuat));
    node.set(kOutputMatrix, matrixOf(parts));
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
constexpr TypeAttrs kDecomposeMatrixType("decomposeMatrix", kDependNode, kDecomposeAttrs);

void decomposeMatrix(Evaluation& e) {
    constexpr const TypeAttrs& at = kDecomposeMatrixType;
    constexpr AttrIndex kInputMatrix = at["inputMatrix"],
                        kInputRotateOrder = at["inputRotateOrder"],
                        kOutputTranslate = at["outputTranslate"],
                        kOutputRotate = at["outputRotate"], kOutputScale = at["outputScale"],
                        kOutputShear = at["outputShear"], kOutputQuat = at["outputQuat"],
                        kOutputQuatW = at["outputQuatW"];
    QuickNode node(e);
    const M44d& matrix = node.matrix(kInputMatrix);
    if (e.output() == kOutputTranslate) {
        node.set(kOutputTranslate, translationOf(matrix));
        return;
    }
    const MatrixParts parts = decompose(matrix);
    if (e.output() == kOutputRotate)
        node.set(kOutputRotate, eulerFromMatrix(parts.rotation, node.whole(kInputRotateOrder)));
    else if (e.output() == kOutputScale)
        node.set(kOutputScale, parts.scale);
    else if (e.output() == kOutputShear)
        node.set(kOutputShear, parts.shear);
    else {
        const Quatd q = Imath::extractQuat(parts.rotation);
        node.set(kOutputQuat, q.v);
        node.set(kOutputQuatW, q.r);
    }
}

// --- products, sums, inverses ---

constexpr AttrRow kMultAttrs[] = {matrixRow("matrixIn", "i", kArray, "matrixSum"),
                                  matrixRow("matrixSum", "o", kComputedOutput)};
constexpr TypeAttrs kMultMatrixType("multMatrix", kDependNode, kMultAttrs);

void multMatrix(Evaluation& e) {
    constexpr AttrIndex kMatrixIn = kMultMatrixType["matrixIn"],
                        kMatrixSum = kMultMatrixType["matrixSum"];
    QuickNode node(e);
    M44d product;
    for (std::size_t i = 0; i < node.count(kMatrixIn); ++i)
        product = i == 0 ? node.elementMatrix(kMatrixIn, i, kMatrixIn)
                         : product * node.elementMatrix(kMatrixIn, i, kMatrixIn);
    node.set(kMatrixSum, product);
}

constexpr AttrRow kWtAddAttrs[] = {
    compoundRow("wtMatrix", "i", AttrType::Compound, kArray, "matrixSum"),
    under("wtMatrix", attrRow("matrixIn", "m", AttrType::Matrix)),
    under("wtMatrix", attrRow("weightIn", "w", AttrType::Double, 0.0, kKeyable)),
    matrixRow("matrixSum", "o", kComputedOutput),
};
constexpr TypeAttrs kWtAddMatrixType("wtAddMatrix", kDependNode, kWtAddAttrs);

// No weights at all leave the matrix of zeros that such a sum is.
void wtAddMatrix(Evaluation& e) {
    constexpr const TypeAttrs& at = kWtAddMatrixType;
    constexpr AttrIndex kWtMatrix = at["wtMatrix"], kMatrixIn = at["matrixIn"],
                        kWeightIn = at["weightIn"], kMatrixSum = at["matrixSum"];
    QuickNode node(e);
    M44d total(0.0);
    for (std::size_t i = 0; i < node.count(kWtMatrix); ++i)
        total +=
            node.elementMatrix(kWtMatrix, i, kMatrixIn) * node.element(kWtMatrix, i, kWeightIn);
    node.set(kMatrixSum, total);
}

constexpr AttrRow kOneMatrix[] = {matrixRow("inputMatrix", "imat", 0, "outputMatrix"),
                                  matrixRow("outputMatrix", "omat", kComputedOutput)};
constexpr TypeAttrs kInverseMatrixType("inverseMatrix", kDependNode, kOneMatrix);
constexpr TypeAttrs kTransposeMatrixType("transposeMatrix", kDependNode, kOneMatrix);

void inverseMatrix(Evaluation& e) {
    constexpr AttrIndex kInputMatrix = kInverseMatrixType["inputMatrix"],
                        kOutputMatrix = kInverseMatrixType["outputMatrix"];
    QuickNode node(e);
    node.set(kOutputMatrix, inverseOf(node.matrix(kInputMatrix)));
}

void transposeMatrix(Evaluation& e) {
    constexpr AttrIndex kInputMatrix = kTransposeMatrixType["inputMatrix"],
                        kOutputMatrix = kTransposeMatrixType["outputMatrix"];
    QuickNode node(e);
    node.set(kOutputMatrix, node.matrix(kInputMatrix).transposed());
}

// --- pickMatrix, blendMatrix ---

constexpr AttrRow kPickAttrs[] = {
    matrixRow("inputMatrix", "imat", 0, "outputMatrix"),
    attrRow("useTranslate", "tra", AttrType::Bool, 1.0, kKeyable, "outputMatrix"),
    attrRow("useRotate", "rot", AttrType::Bool, 1.0, kKeyable, "outputMatrix"),
    attrRow("useScale", "sca", AttrType::Bool, 1.0, kKeyable, "outputMatrix"),
    attrRow("useShear", "shr", AttrType::Bool, 1.0, kKeyable, "outputMatrix"),
    matrixRow("outputMatrix", "omat", kComputedOutput),
};
constexpr TypeAttrs kPickMatrixType("pickMatrix", kDependNode, kPickAttrs);

void pickMatrix(Evaluation& e) {
    constexpr const TypeAttrs& at = kPickMatrixType;
    constexpr AttrIndex kInputMatrix = at["inputMatrix"], kUseTranslate = at["useTranslate"],
                        kUseRotate = at["useRotate"], kUseScale = at["useScale"],
                        kUseShear = at["useShear"], kOutputMatrix = at["outputMatrix"];
    QuickNode node(e);
    const MatrixParts all = decompose(node.matrix(kInputMatrix));
    MatrixParts picked;
    if (node.flag(kUseTranslate))
        picked.translate = all.translate;
    if (node.flag(kUseRotate))
        picked.rotation = all.rotation;
    if (node.flag(kUseScale))
        picked.scale = all.scale;
    if (node.flag(kUseShear))
        picked.shear = all.shear;
    node.set(kOutputMatrix, matrixOf(picked));
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
constexpr TypeAttrs kBlendMatrixType("blendMatrix", kDependNode, kBlendAttrs);

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
    constexpr const TypeAttrs& at = kBlendMatrixType;
    constexpr AttrIndex kInputMatrix = at["inputMatrix"], kEnvelope = at["envelope"],
                        kTarget = at["target"], kTargetMatrix = at["targetMatrix"],
                        kUseMatrix = at["useMatrix"], kWeight = at["weight"],
                        kTranslateWeight = at["translateWeight"],
                        kRotateWeight = at["rotateWeight"], kScaleWeight = at["scaleWeight"],
                        kShearWeight = at["shearWeight"], kOutputMatrix = at["outputMatrix"];
    QuickNode node(e);
    Mixture mixture(node.matrix(kInputMatrix));
    const double envelope = node.number(kEnvelope);
    for (std::size_t i = 0; i < node.count(kTarget); ++i) {
        const double weight = envelope * node.element(kTarget, i, kWeight);
        if (weight == 0.0 || node.element(kTarget, i, kUseMatrix) == 0.0)
            continue;
        mixture.take(node.elementMatrix(kTarget, i, kTargetMatrix),
                     {weight * node.element(kTarget, i, kTranslateWeight),
                      weight * node.element(kTarget, i, kRotateWeight),
                      weight * node.element(kTarget, i, kScaleWeight),
                      weight * node.element(kTarget, i, kShearWeight)});
    }
    node.set(kOutputMatrix, mixture.result());
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kComposeMatrixType, fn::kDependencyNode, "kComposeMatrix", 0, composeMatrix),
    typeRow(kDecomposeMatrixType, fn::kDecomposeMatrix, "kDecomposeMatrix", 0, decomposeMatrix),
    typeRow(kMultMatrixType, fn::kMultMatrix, "kMatrixMult", 0, multMatrix),
    typeRow(kWtAddMatrixType, fn::kDependencyNode, "kMatrixWtAdd", 0, wtAddMatrix),
    typeRow(kInverseMatrixType, fn::kDependencyNode, "kInverseMatrix", 0, inverseMatrix),
    typeRow(kTransposeMatrixType, fn::kDependencyNode, "kTransposeMatrix", 0, transposeMatrix),
    typeRow(kPickMatrixType, fn::kDependencyNode, "kPickMatrix", 0, pickMatrix),
    typeRow(kBlendMatrixType, fn::kDependencyNode, "kBlendMatrix", 0, blendMatrix),
};

}  // namespace

TypeRows matrixTypes() {
    return family(kTypes);
}

}  // namespace torvel
