// skinCluster as the graph sees it; the skinning itself is in skin_deform.cpp.
#include "graph/payload.h"
#include "graph/evaluation.h"
#include "nodes/deform/types.h"
#include "nodes/shape/mesh_blocks.h"
#include "nodes/core/fn_numbers.h"
#include "nodes/deform/skin_deform.h"
#include "nodes/deform/skin_weights.h"

namespace torvel {

namespace {

constexpr AttrRow kSkinAttrs[] = {
    attrRow("weightList", "wl", AttrType::Compound, 0.0, kArray | kBulk, kFilterOutput),
    under("weightList", attrRow("weights", "w", AttrType::Double, 0.0, kArray)),
    attrRow("blendWeights", "bw", AttrType::Double, 0.0, kArray | kBulk, kFilterOutput),
    attrRow("bindPreMatrix", "pm", AttrType::Matrix, 0.0, kArray, kFilterOutput),
    attrRow("geomMatrix", "gm", AttrType::Matrix, 0.0, 0, kFilterOutput),
    attrRow("matrix", "ma", AttrType::Matrix, 0.0, kArray | kNotStored | kDeleteElement,
            kFilterOutput),
    attrRow("dropoff", "dpf", AttrType::Double, 0.0, kArray),
    attrRow("smoothness", "smt", AttrType::Double, 0.0, kArray),
    attrRow("lockWeights", "lw", AttrType::Bool, 0.0, kArray),
    attrRow("maintainMaxInfluences", "mmi", AttrType::Bool),
    within(attrRow("maxInfluences", "mi", AttrType::Long, 2.0), 1.0),
    enumRow("bindMethod", "bm",
            "Closest Distance=0:Closest In Hierarchy=1:Heat Map=2:Geodesic Voxel=3"),
    attrRow("driverPoints", "drp", AttrType::Any, 0.0, kArray | kNotStored),
    attrRow("basePoints", "bps", AttrType::Any, 0.0, kArray | kNotStored),
    attrRow("baseDirty", "bd", AttrType::Any, 0.0, kNotStored),
    attrRow("paintWeights", "ptw", AttrType::DoubleArray),
    attrRow("paintTrans", "ptt", AttrType::Message, 0.0, kNotStored),
    attrRow("paintArrDirty", "pad", AttrType::Any, 0.0, kNotStored),
    attrRow("useComponents", "uc", AttrType::Bool),
    attrRow("useComponentsMatrix", "ucm", AttrType::Bool),
    enumRow("skinningMethod", "skm", "Classic Linear=0:Dual Quaternion=1:Weight Blended=2", 0.0, 0,
            kFilterOutput),
    enumRow("normalizeWeights", "nw", "None=0:Interactive=1:Post=2", 1.0, 0, kFilterOutput),
    enumRow("weightDistribution", "wd", "Distance=0:Neighbors=1"),
    attrRow("deformUserNormals", "dun", AttrType::Bool, 1.0),
    attrRow("dqsSupportNonRigid", "dqsnr", AttrType::Bool, 0.0, 0, kFilterOutput),
    vectorRow("dqsScale", "dqss", AttrType::Double, 1.0),
    attrRow("bindPose", "bp", AttrType::Message, 0.0, kNotStored),
    attrRow("bindVolume", "bvl", AttrType::Any, 0.0, kNotStored),
    attrRow("geomBind", "gb", AttrType::Message, 0.0, kNotStored),
    compoundRow("influenceColor", "ifcl", AttrType::Float3, kArray | kNotStored),
    under("influenceColor", attrRow("influenceColorR", "ifcr", AttrType::Float)),
    under("influenceColor", attrRow("influenceColorG", "ifcg", AttrType::Float)),
    under("influenceColor", attrRow("influenceColorB", "ifcb", AttrType::Float)),
    attrRow("wtDrty", "wtd", AttrType::Any, 0.0, kNotStored),
    attrRow("cacheSetup", "cs", AttrType::Bool),
};

constexpr TypeAttrs kSkin("skinCluster", kGeometryFilter, kSkinAttrs);
constexpr AttrIndex kWeightList = kSkin["weightList"], kBlendWeights = kSkin["blendWeights"];

void createdSkin(Scene&, Node& node) {
    putBlock(node, kWeightList, std::make_shared<WeightList>());
    putBlock(node, kBlendWeights, std::make_shared<DoubleBlock>());
}

// Influences by logical index. An element without a connection and without a matrix of its own
// counts as absent.
std::vector<SkinInfluence> influencesOf(Evaluation& evaluation, std::size_t count) {
    constexpr AttrIndex matrix = kSkin["matrix"], pre = kSkin["bindPreMatrix"];
    std::vector<SkinInfluence> out(count);
    for (std::size_t i = 0; i < evaluation.elementCount(matrix); ++i) {
        const std::int32_t logical = evaluation.logicalAt(matrix, i);
        if (logical < 0 || static_cast<std::size_t>(logical) >= count)
            continue;
        const Plug plug = evaluation.plug(matrix, logical);
        const bool present =
            !evaluation.scene().effectiveSource(plug).isNull() || evaluation.data(plug);
        if (present)
            out[static_cast<std::size_t>(logical)] = {
                true, evaluation.matrix(evaluation.plug(pre, logical)) * evaluation.matrix(plug)};
    }
    return out;
}

std::vector<double> blendByVertex(Evaluation& evaluation, std::size_t count) {
    const auto* block =
        dynamic_cast<const DoubleBlock*>(evaluation.scene().bulk(evaluation.plug(kBlendWeights)));
    std::vector<double> out(count, 0.0);
    for (std::size_t i = 0; block && i < block->size(); ++i)
        if (const auto at = static_cast<std::size_t>(block->logicalAt(i)); at < count)
            out[at] = block->items()[i][0];
    return out;
}

template <class Points>
void deformAll(Evaluation& evaluation, SkinSetup& setup, const Points& in, Points& out) {
    std::vector<double> blend;
    if (setup.method == 2) {
        blend = blendByVertex(evaluation, in.size());
        setup.blend = &blend;
    }
    out.resize(in.size());
    deformPoints(setup, in.data(), out.data(), in.size());
}

PayloadPtr deformSkin(Evaluation& evaluation, std::int32_t, const PayloadPtr& geometry) {
    constexpr AttrIndex kNormalize = kSkin["normalizeWeights"], kGeomMatrix = kSkin["geomMatrix"],
                        kMethod = kSkin["skinningMethod"], kKeepScale = kSkin["dqsSupportNonRigid"],
                        kEnvelope = kSkin["envelope"];
    const auto* weights =
        dynamic_cast<const WeightList*>(evaluation.scene().bulk(evaluation.plug(kWeightList)));
    if (!weights || weights->size() == 0)
        return geometry;  // nothing was ever bound
    SkinSetup setup;
    setup.weights = &weights->compiled(evaluation.number(kNormalize) == 2.0);
    setup.influences = influencesOf(evaluation, setup.weights->missing);
    setup.geom = evaluation.matrix(kGeomMatrix);
    setup.method = static_cast<int>(evaluation.number(kMethod));
    setup.keepScale = evaluation.flag(kKeepScale);
    setup.envelope = evaluation.number(kEnvelope);
    if (const auto mesh = std::dynamic_pointer_cast<const MeshData>(geometry)) {
        auto out = std::make_shared<MeshData>();
        out->topology = mesh->topology;
        deformAll(evaluation, setup, mesh->points, out->points);
        return out;
    }
    if (const auto curve = std::dynamic_pointer_cast<const NurbsCurveData>(geometry)) {
        auto out = std::make_shared<NurbsCurveData>(*curve);
        deformAll(evaluation, setup, curve->cvs, out->cvs);
        return out;
    }
    return geometry;
}

void evaluateSkin(Evaluation& evaluation) {
    evaluateFilter(evaluation, deformSkin);
}

constexpr NodeTypeRow kTypes[] = {typeRow(kSkin, fn::kSkinClusterFilter, "kSkinClusterFilter",
                                          kDeformerType, evaluateSkin, createdSkin)};

}  // namespace

TypeRows skinTypes() {
    return family(kTypes);
}

}  // namespace torvel
