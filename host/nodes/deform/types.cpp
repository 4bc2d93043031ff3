#include "nodes/deform/types.h"

#include "graph/evaluation.h"
#include "nodes/core/rows.h"

namespace torvel {
namespace {

constexpr int kFnSet = 464;
constexpr int kFnGeometryFilter = 332;
constexpr int kFnTweak = 345;
constexpr int kFnGroupId = 351;
constexpr int kFnGroupParts = 352;
constexpr int kFnShadingEngine = 468;

constexpr const char* kOut = "outputGeometry";
constexpr std::uint32_t kGeometryOutput = kOutput | kNotStored | kGeometryOut;

constexpr AttrRow kFilterAttrs[] = {
    attrRow("outputGeometry", "og", AttrType::Mesh, 0.0, kGeometryOutput | kArray),
    compoundRow("input", "ip", AttrType::Compound, kArray, kOut),
    under("input", attrRow("inputGeometry", "ig", AttrType::Mesh, 0.0, kNotStored | kGeometryIn)),
    under("input", attrRow("groupId", "gi", AttrType::Long)),
    under("input", attrRow("componentTagExpression", "gtg", AttrType::String)),
    attrRow("originalGeometry", "orggeom", AttrType::Mesh, 0.0, kNotStored | kArray),
    attrRow("envelope", "en", AttrType::Float, 1.0, kKeyable, kOut),
    attrRow("function", "f", AttrType::Any, 0.0, kNotStored),
    attrRow("map64BitIndices", "mbi", AttrType::Bool),
};
constexpr AffectRow kFilterAffects[] = {{"nodeState", "outputGeometry"}};

constexpr AttrRow kTweakAttrs[] = {
    attrRow("relativeTweak", "rtw", AttrType::Bool, 1.0, 0, kOut),
    compoundRow("vlist", "vl", AttrType::Compound, kArray, kOut),
    under("vlist", compoundRow("vertex", "vt", AttrType::Float3, kArray)),
    under("vertex", attrRow("xVertex", "vx", AttrType::Float)),
    under("vertex", attrRow("yVertex", "vy", AttrType::Float)),
    under("vertex", attrRow("zVertex", "vz", AttrType::Float)),
};

constexpr AttrRow kGroupPartsAttrs[] = {
    attrRow("outputGeometry", "og", AttrType::Mesh, 0.0, kGeometryOutput),
    attrRow("inputGeometry", "ig", AttrType::Mesh, 0.0, kNotStored | kGeometryIn, kOut),
    attrRow("groupId", "gi", AttrType::Long, -1.0),
    attrRow("inputComponents", "ic", AttrType::ComponentList),
};

constexpr AttrRow kGroupIdAttrs[] = {attrRow("groupId", "id", AttrType::Long, 0.0)};

constexpr AttrRow kSetAttrs[] = {
    attrRow("dagSetMembers", "dsm", AttrType::Any, 0.0, kArray | kNextAvailable | kNotStored),
    attrRow("dnSetMembers", "dnsm", AttrType::Any, 0.0, kArray | kNextAvailable | kNotStored),
    attrRow("memberWireframeColor", "mwc", AttrType::Short, -1.0),
    attrRow("annotation", "an", AttrType::String),
    attrRow("isLayer", "il", AttrType::Bool),
    attrRow("verticesOnlySet", "vo", AttrType::Bool),
    attrRow("edgesOnlySet", "eo", AttrType::Bool),
    attrRow("facetsOnlySet", "fo", AttrType::Bool),
    attrRow("editPointsOnlySet", "epo", AttrType::Bool),
    attrRow("renderableOnlySet", "ro", AttrType::Bool),
    attrRow("partition", "pa", AttrType::Any, 0.0, kNotStored),
    attrRow("groupNodes", "gn", AttrType::Any, 0.0, kArray | kNextAvailable | kNotStored),
    attrRow("usedBy", "ub", AttrType::Any, 0.0, kArray | kNotStored),
    attrRow("hiddenInOutliner", "hio", AttrType::Bool),
};

constexpr AttrRow kShadingEngineAttrs[] = {
    attrRow("surfaceShader", "ss", AttrType::Any, 0.0, kNotStored),
    attrRow("volumeShader", "vs", AttrType::Any, 0.0, kNotStored),
    attrRow("displacementShader", "ds", AttrType::Any, 0.0, kNotStored),
};

double number(Evaluation& evaluation, const char* attr) {
    return evaluation.number(evaluation.node().findAttr(attr));
}

// Offsets of vlist[element].vertex by point.
PayloadPtr addTweaks(Evaluation& evaluation, std::int32_t element, const PayloadPtr& geometry) {
    const Scene& scene = evaluation.scene();
    Plug offsets = evaluation.plug(evaluation.node().findAttr("vertex"), element);
    const std::size_t count = scene.elementCount(offsets);
    const auto mesh = std::dynamic_pointer_cast<const MeshData>(geometry);
    if (!mesh || count == 0)
        return geometry;
    auto moved = std::make_shared<MeshData>(*mesh);
    for (std::size_t i = 0; i < count; ++i) {
        const Plug offset = scene.elementAt(offsets, i);
        const auto at = static_cast<std::size_t>(scene.logicalIndex(offset));
        if (at < moved->points.size())
            moved->points[at] += V3f(evaluation.vec3(offset));
    }
    return moved;
}

void evaluateTweak(Evaluation& evaluation) {
    evaluateFilter(evaluation, addTweaks);
}

// Deformers the host knows by name only.
void evaluateUnchanged(Evaluation& evaluation) {
    evaluateFilter(evaluation,
                   [](Evaluation&, std::int32_t, const PayloadPtr& geometry) { return geometry; });
}

void evaluateGroupParts(Evaluation& evaluation) {
    const AttrIndex in = evaluation.node().findAttr("inputGeometry");
    evaluation.set(evaluation.node().findAttr("outputGeometry"),
                   evaluation.data(evaluation.plug(in)));
}

}  // namespace

void evaluateFilter(Evaluation& evaluation, DeformFunction deform) {
    const AttrIndex input = evaluation.node().findAttr("input");
    const AttrIndex geometryAttr = evaluation.node().findAttr("inputGeometry");
    const AttrIndex out = evaluation.node().findAttr("outputGeometry");
    const int state = static_cast<int>(number(evaluation, "nodeState"));
    const bool unchanged = state == 1 || number(evaluation, "envelope") == 0.0;
    for (std::size_t i = 0; i < evaluation.elementCount(input); ++i) {
        const std::int32_t element = evaluation.logicalAt(input, i);
        PayloadPtr geometry = evaluation.data(evaluation.plug(geometryAttr, element));
        if (geometry && !unchanged && state != 2)
            geometry = deform(evaluation, element, geometry);
        evaluation.set(evaluation.plug(out, element), state == 2 ? nullptr : std::move(geometry));
    }
}

extern const NodeTypeRow kGeometryFilter;
extern const NodeTypeRow kTweakNode;
extern const NodeTypeRow kGroupPartsNode;
extern const NodeTypeRow kGroupIdNode;
extern const NodeTypeRow kObjectSetNode;
extern const NodeTypeRow kShadingEngineNode;

const NodeTypeRow kGeometryFilter =
    typeRow("geometryFilter", "dependNode", kFnGeometryFilter, "kGeometryFilt", kFilterAttrs,
            kFilterAffects, kAbstractType | kDeformerType, evaluateUnchanged);
const NodeTypeRow kTweakNode = typeRow("tweak", "geometryFilter", kFnTweak, "kTweak", kTweakAttrs,
                                       kDeformerType, evaluateTweak);
const NodeTypeRow kGroupPartsNode = typeRow("groupParts", "dependNode", kFnGroupParts,
                                            "kGroupParts", kGroupPartsAttrs, 0, evaluateGroupParts);
const NodeTypeRow kGroupIdNode =
    typeRow("groupId", "dependNode", kFnGroupId, "kGroupId", kGroupIdAttrs);
const NodeTypeRow kObjectSetNode = typeRow("objectSet", "entity", kFnSet, "kSet", kSetAttrs);
const NodeTypeRow kShadingEngineNode =
    typeRow("shadingEngine", "objectSet", kFnShadingEngine, "kShadingEngine", kShadingEngineAttrs);

}  // namespace torvel
