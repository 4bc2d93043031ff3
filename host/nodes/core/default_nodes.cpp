#include "nodes/core/default_nodes.h"

#include "nodes/core/base_attrs.h"
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

constexpr TypeAttrs kPartition("partition", kDependNode, kPartitionAttrs);
constexpr TypeAttrs kShaderList("defaultShaderList", kDependNode, kShaderListAttrs);
constexpr TypeAttrs kPostProcess("postProcessList", kDependNode, kPostProcessAttrs);
constexpr TypeAttrs kUtilityList("defaultRenderUtilityList", kDependNode, kUtilityAttrs);
constexpr TypeAttrs kTextureList("defaultTextureList", kDependNode, kTextureListAttrs);
constexpr TypeAttrs kRenderingList("defaultRenderingList", kDependNode, kRenderingListAttrs);
constexpr TypeAttrs kLightList("lightList", kDependNode, kLightListAttrs);
constexpr TypeAttrs kGlobalsList("renderGlobalsList", kDependNode);
constexpr TypeAttrs kRenderGlobals("renderGlobals", kDependNode);
constexpr TypeAttrs kRenderQuality("renderQuality", kDependNode);
constexpr TypeAttrs kResolution("resolution", kDependNode);
constexpr TypeAttrs kHardwareGlobals("hwRenderGlobals", kDependNode);
constexpr TypeAttrs kHardwareGlobals2("hardwareRenderGlobals", kDependNode);
constexpr TypeAttrs kHardwareGlobals3("hardwareRenderingGlobals", kDependNode);
constexpr TypeAttrs kColorGlobals("colorManagementGlobals", kDependNode);
constexpr TypeAttrs kLambert("lambert", kDependNode, kMaterialAttrs);
constexpr TypeAttrs kStandardSurface("standardSurface", kDependNode);

constexpr NodeTypeRow plain(const TypeAttrs& type, std::uint32_t flags = 0) {
    return typeRow(type, fn::kDependencyNode, "kDependencyNode", flags);
}

constexpr NodeTypeRow kTypes[] = {
    plain(kPartition),
    plain(kShaderList, kUniqueType),
    plain(kPostProcess, kUniqueType),
    plain(kUtilityList, kUniqueType),
    plain(kTextureList, kUniqueType),
    plain(kRenderingList, kUniqueType),
    plain(kLightList, kUniqueType),
    plain(kGlobalsList, kUniqueType),
    plain(kRenderGlobals, kUniqueType),
    plain(kRenderQuality, kUniqueType),
    plain(kResolution, kUniqueType),
    plain(kHardwareGlobals, kUniqueType),
    plain(kHardwareGlobals2, kUniqueType),
    plain(kHardwareGlobals3, kUniqueType),
    plain(kColorGlobals, kUniqueType),
    plain(kLambert),
    typeRow(kStandardSurface, fn::kDependencyNode, "kStandardSurface"),
};

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

TypeRows defaultTypes() {
    return family(kTypes);
}

void createDefaultNodes(Scene& scene) {
    const bool modified = scene.document().modified;
    for (const DefaultNode& row : kDefaultNodes) {
        if (!scene.types().find(row.type) || !scene.names().lookUp(row.name).isNull())
            continue;
        NodeHandle made;
        if (scene.createNode(row.type, row.name, {}, made))
            scene.changeFacts(made, [](NodeFacts& facts) { facts.isDefault = true; });
    }
    scene.setModified(modified);
}

}  // namespace torvel
