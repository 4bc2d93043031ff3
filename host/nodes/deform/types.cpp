#include "nodes/deform/types.h"

#include "graph/evaluation.h"
#include "nodes/core/fn_numbers.h"

namespace torvel {
namespace {

constexpr AttrRow kTweakAttrs[] = {
    attrRow("relativeTweak", "rtw", AttrType::Bool, 1.0, 0, kFilterOutput),
    compoundRow("vlist", "vl", AttrType::Compound, kArray, kFilterOutput),
    under("vlist", compoundRow("vertex", "vt", AttrType::Float3, kArray)),
    under("vertex", attrRow("xVertex", "vx", AttrType::Float)),
    under("vertex", attrRow("yVertex", "vy", AttrType::Float)),
    under("vertex", attrRow("zVertex", "vz", AttrType::Float)),
};

constexpr AttrRow kGroupPartsAttrs[] = {
    attrRow("outputGeometry", "og", AttrType::Mesh, 0.0, kGeometryOutput),
    attrRow("inputGeometry", "ig", AttrType::Mesh, 0.0, kNotStored | kGeometryIn, kFilterOutput),
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

constexpr TypeAttrs kTweak("tweak", kGeometryFilter, kTweakAttrs);
constexpr TypeAttrs kGroupParts("groupParts", kDependNode, kGroupPartsAttrs);
constexpr TypeAttrs kGroupId("groupId", kDependNode, kGroupIdAttrs);
constexpr TypeAttrs kObjectSet("objectSet", kEntity, kSetAttrs);
constexpr TypeAttrs kShadingEngine("shadingEngine", kObjectSet, kShadingEngineAttrs);

// Offsets of vlist[element].vertex by point.
PayloadPtr addTweaks(Evaluation& evaluation, std::int32_t element, const PayloadPtr& geometry) {
    const Scene& scene = evaluation.scene();
    Plug offsets = evaluation.plug(kTweak["vertex"], element);
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
    constexpr AttrIndex kIn = kGroupParts["inputGeometry"], kOut = kGroupParts["outputGeometry"];
    evaluation.set(kOut, evaluation.data(evaluation.plug(kIn)));
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kGeometryFilter, fn::kGeometryFilt, "kGeometryFilt", kAbstractType | kDeformerType,
            evaluateUnchanged),
    typeRow(kTweak, fn::kTweak, "kTweak", kDeformerType, evaluateTweak),
    typeRow(kGroupParts, fn::kGroupParts, "kGroupParts", 0, evaluateGroupParts),
    typeRow(kGroupId, fn::kGroupId, "kGroupId"),
    typeRow(kObjectSet, fn::kSet, "kSet"),
    typeRow(kShadingEngine, fn::kShadingEngine, "kShadingEngine"),
};

}  // namespace

void evaluateFilter(Evaluation& evaluation, DeformFunction deform) {
    constexpr const TypeAttrs& at = kGeometryFilter;
    constexpr AttrIndex input = at["input"], geometryAttr = at["inputGeometry"],
                        out = at["outputGeometry"], nodeState = at["nodeState"],
                        envelope = at["envelope"];
    const int state = static_cast<int>(evaluation.number(nodeState));
    const bool unchanged = state == 1 || evaluation.number(envelope) == 0.0;
    for (std::size_t i = 0; i < evaluation.elementCount(input); ++i) {
        const std::int32_t element = evaluation.logicalAt(input, i);
        PayloadPtr geometry = evaluation.data(evaluation.plug(geometryAttr, element));
        if (geometry && !unchanged && state != 2)
            geometry = deform(evaluation, element, geometry);
        evaluation.set(evaluation.plug(out, element), state == 2 ? nullptr : std::move(geometry));
    }
}

TypeRows filterTypes() {
    return family(kTypes);
}

}  // namespace torvel
