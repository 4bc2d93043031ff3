#include "nodes/deform/skin_types.h"

#include "graph/evaluation.h"
#include "nodes/deform/types.h"
#include "nodes/shape/mesh_blocks.h"
#include "nodes/core/rows.h"
#include "nodes/deform/skin_deform.h"
#include "nodes/deform/skin_weights.h"

namespace torvel {

extern const NodeTypeRow kGeometryFilter;
extern const NodeTypeRow kTweakNode;
extern const NodeTypeRow kGroupPartsNode;
extern const NodeTypeRow kGroupIdNode;
extern const NodeTypeRow kObjectSetNode;
extern const NodeTypeRow kShadingEngineNode;

namespace {

constexpr int kFnSkinCluster = 687;
constexpr const char* kOut = "outputGeometry";

constexpr AttrRow kSkinAttrs[] = {
    attrRow("weightList", "wl", AttrType::Compound, 0.0, kArray | kBulk, kOut),
    under("weightList", attrRow("weights", "w", AttrType::Double, 0.0, kArray)),
    attrRow("blendWeights", "bw", AttrType::Double, 0.0, kArray | kBulk, kOut),
    attrRow("bindPreMatrix", "pm", AttrType::Matrix, 0.0, kArray, kOut),
    attrRow("geomMatrix", "gm", AttrType::Matrix, 0.0, 0, kOut),
    attrRow("matrix", "ma", AttrType::Matrix, 0.0, kArray | kNotStored | kDeleteElement, kOut),
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
            kOut),
    enumRow("normalizeWeights", "nw", "None=0:Interactive=1:Post=2", 1.0, 0, kOut),
    enumRow("weightDistribution", "wd", "Distance=0:Neighbors=1"),
    attrRow("deformUserNormals", "dun", AttrType::Bool, 1.0),
    attrRow("dqsSupportNonRigid", "dqsnr", AttrType::Bool, 0.0, 0, kOut),
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

void createdSkin(Scene&, Node& node) {
    node.slot(node.findAttr("weightList")).data = std::make_shared<WeightList>();
    node.slot(node.findAttr("blendWeights")).data = std::make_shared<DoubleBlock>();
}

// Influences by logical index. An element without a connection and without a matrix of its own
// counts as absent.
std::vector<SkinInfluence> influencesOf(Evaluation& evaluation, std::size_t count) {
    const AttrIndex matrix = evaluation.node().findAttr("matrix");
    const AttrIndex pre = evaluation.node().findAttr("bindPreMatrix");
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
    const auto* block = dynamic_cast<const DoubleBlock*>(
        evaluation.scene().bulk(evaluation.plug(evaluation.node().findAttr("blendWeights"))));
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
    const auto attr = [&](const char* name) { return evaluation.node().findAttr(name); };
    const auto* weights = dynamic_cast<const WeightList*>(
        evaluation.scene().bulk(evaluation.plug(attr("weightList"))));
    if (!weights || weights->size() == 0)
        return geometry;  // nothing was ever bound
    SkinSetup setup;
    setup.weights = &weights->compiled(evaluation.number(attr("normalizeWeights")) == 2.0);
    setup.influences = influencesOf(evaluation, setup.weights->missing);
    setup.geom = evaluation.matrix(attr("geomMatrix"));
    setup.method = static_cast<int>(evaluation.number(attr("skinningMethod")));
    setup.keepScale = evaluation.flag(attr("dqsSupportNonRigid"));
    setup.envelope = evaluation.number(attr("envelope"));
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

const NodeTypeRow kSkinCluster =
    typeRow("skinCluster", "geometryFilter", kFnSkinCluster, "kSkinClusterFilter", kSkinAttrs,
            kDeformerType, evaluateSkin, createdSkin);

}  // namespace

const NodeTypeRow* const kSkinTypes[] = {&kGeometryFilter, &kTweakNode,     &kGroupPartsNode,
                                         &kGroupIdNode,    &kObjectSetNode, &kShadingEngineNode,
                                         &kSkinCluster};
const std::size_t kSkinTypeCount = sizeof kSkinTypes / sizeof *kSkinTypes;

}  // namespace torvel
