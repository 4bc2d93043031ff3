#include "nodes/core/default_nodes.h"

#include "nodes/core/fn_numbers.h"

namespace torvel {
namespace {

constexpr std::uint32_t kMany = kArray | kNextAvailable;

constexpr AttrRow kPartitionAttrs[] = {attrRow("sets", "st", AttrType::Message, 0.0, kMany),
                                       attrRow("annotation", "an", AttrType::String),
                                       attrRow("partitionType", "pt", AttrType::Short)};
constexpr AttrRow kShaderListAttrs[] = {attrRow("shaders", "s", AttrType::Message, 0.0, kMany)};
constexpr AttrRow kPostProcessAttrs[] = {
    attrRow("postProcesses", "p", AttrType::Message, 0.0, kMany)};
constexpr AttrRow kUtilityAttrs[] = {attrRow("utilities", "u", AttrType::Message, 0.0, kMany)};
constexpr AttrRow kTextureListAttrs[] = {attrRow("textures", "tx", AttrType::Message, 0.0, kMany)};
constexpr AttrRow kRenderingListAttrs[] = {
    attrRow("rendering", "r", AttrType::Message, 0.0, kMany)};
constexpr AttrRow kLightListAttrs[] = {
    attrRow("lights", "l", AttrType::Message, 0.0, kMany),
    attrRow("lightsRelated", "ln", AttrType::Message, 0.0, kMany)};

constexpr AttrRow colorPart(const char* parent, const char* longName, const char* shortName,
                            double value) {
    return under(parent, attrRow(longName, shortName, AttrType::Float, value));
}

// Every surface material shares these; files set more, which is kept as it stands.
constexpr AttrRow kMaterialAttrs[] = {
    compoundRow("color", "c", AttrType::Float3),
    colorPart("color", "colorR", "cr", 0.5),
    colorPart("color", "colorG", "cg", 0.5),
    colorPart("color", "colorB", "cb", 0.5),
    compoundRow("transparency", "it", AttrType::Float3),
    colorPart("transparency", "transparencyR", "itr", 0.0),
    colorPart("transparency", "transparencyG", "itg", 0.0),
    colorPart("transparency", "transparencyB", "itb", 0.0),
    compoundRow("outColor", "oc", AttrType::Float3, kNotStored),
    colorPart("outColor", "outColorR", "ocr", 0.0),
    colorPart("outColor", "outColorG", "ocg", 0.0),
    colorPart("outColor", "outColorB", "ocb", 0.0),
    attrRow("diffuse", "dc", AttrType::Float, 0.8),
};

constexpr NodeTypeRow only(const char* name) {
    return typeRow(name, "dependNode", fn::kDependencyNode, "kDependencyNode", kUniqueType);
}
template <std::size_t N>
constexpr NodeTypeRow plain(const char* name, const AttrRow (&attrs)[N],
                            std::uint32_t flags = kUniqueType) {
    return typeRow(name, "dependNode", fn::kDependencyNode, "kDependencyNode", attrs, flags);
}

constexpr NodeTypeRow kPartition = plain("partition", kPartitionAttrs, 0);
constexpr NodeTypeRow kShaderList = plain("defaultShaderList", kShaderListAttrs);
constexpr NodeTypeRow kPostProcess = plain("postProcessList", kPostProcessAttrs);
constexpr NodeTypeRow kUtilityList = plain("defaultRenderUtilityList", kUtilityAttrs);
constexpr NodeTypeRow kTextureList = plain("defaultTextureList", kTextureListAttrs);
constexpr NodeTypeRow kRenderingList = plain("defaultRenderingList", kRenderingListAttrs);
constexpr NodeTypeRow kLightList = plain("lightList", kLightListAttrs);
constexpr NodeTypeRow kGlobalsList = only("renderGlobalsList");
constexpr NodeTypeRow kRenderGlobals = only("renderGlobals");
constexpr NodeTypeRow kRenderQuality = only("renderQuality");
constexpr NodeTypeRow kResolution = only("resolution");
constexpr NodeTypeRow kHardwareGlobals = only("hwRenderGlobals");
constexpr NodeTypeRow kHardwareGlobals2 = only("hardwareRenderGlobals");
constexpr NodeTypeRow kHardwareGlobals3 = only("hardwareRenderingGlobals");
constexpr NodeTypeRow kColorGlobals = only("colorManagementGlobals");
constexpr NodeTypeRow kLambert = plain("lambert", kMaterialAttrs, 0);
constexpr NodeTypeRow kStandardSurface =
    typeRow("standardSurface", "dependNode", fn::kDependencyNode, "kStandardSurface");

struct DefaultNode {
    const char* type;
    const char* name;
};

// Sets are declared by the deformer types; without them these rows are passed over.
const DefaultNode kDefaultNodes[] = {
    {"partition", "renderPartition"},
    {"partition", "characterPartition"},
    {"renderGlobalsList", "renderGlobalsList1"},
    {"defaultShaderList", "defaultShaderList1"},
    {"postProcessList", "postProcessList1"},
    {"defaultRenderUtilityList", "defaultRenderUtilityList1"},
    {"defaultRenderingList", "defaultRenderingList1"},
    {"defaultTextureList", "defaultTextureList1"},
    {"lightList", "lightList1"},
    {"lambert", "lambert1"},
    {"standardSurface", "standardSurface1"},
    {"shadingEngine", "initialShadingGroup"},
    {"shadingEngine", "initialParticleSE"},
    {"objectSet", "defaultLightSet"},
    {"objectSet", "defaultObjectSet"},
    {"renderGlobals", "defaultRenderGlobals"},
    {"renderQuality", "defaultRenderQuality"},
    {"resolution", "defaultResolution"},
    {"hwRenderGlobals", "defaultHardwareRenderGlobals"},
    {"hardwareRenderGlobals", "hardwareRenderGlobals"},
    {"hardwareRenderingGlobals", "hardwareRenderingGlobals"},
    {"colorManagementGlobals", "defaultColorMgtGlobals"},
    {"ikSystem", "ikSystem"},
};

}  // namespace

const NodeTypeRow* const kDefaultNodeTypes[] = {
    &kPartition,     &kShaderList,      &kPostProcess,      &kUtilityList,      &kTextureList,
    &kRenderingList, &kLightList,       &kGlobalsList,      &kRenderGlobals,    &kRenderQuality,
    &kResolution,    &kHardwareGlobals, &kHardwareGlobals2, &kHardwareGlobals3, &kColorGlobals,
    &kLambert,       &kStandardSurface};
const std::size_t kDefaultNodeTypeCount = sizeof kDefaultNodeTypes / sizeof *kDefaultNodeTypes;

void createDefaultNodes(Scene& scene) {
    const bool modified = scene.modified;
    for (const DefaultNode& row : kDefaultNodes) {
        if (!scene.types().find(row.type) || !scene.names().lookUp(row.name).isNull())
            continue;
        NodeHandle made;
        if (scene.createNode(row.type, row.name, {}, made))
            scene.node(made)->isDefault = true;
    }
    scene.modified = modified;
}

}  // namespace torvel
