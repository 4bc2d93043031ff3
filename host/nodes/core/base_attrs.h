#pragma once

#include "nodes/core/rows.h"

/// The types that all others stand on. They are in a header, since every derived type counts its
/// positions on from them.
namespace torvel {

inline constexpr std::uint32_t kComputedOutput = kOutput | kNotStored;
inline constexpr std::uint32_t kPerPath = kComputedOutput | kArray | kPerInstance;

inline constexpr AttrRow kDependNodeRows[] = {
    attrRow("message", "msg", AttrType::Message, 0.0, kNotStored),
    attrRow("caching", "cch", AttrType::Bool),
    attrRow("frozen", "fzn", AttrType::Bool),
    attrRow("isHistoricallyInteresting", "ihi", AttrType::Byte, 2.0),
    enumRow("nodeState", "nds",
            "Normal=0:HasNoEffect=1:Blocking=2:Waiting-Normal=3:Waiting-HasNoEffect=4:Waiting-"
            "Blocking=5"),
    attrRow("binMembership", "bnm", AttrType::String),
};

inline constexpr const char* kOffsetOutputs =
    "parentMatrix parentInverseMatrix worldMatrix worldInverseMatrix";

// The core itself ties these outputs to the parent's world matrix.
inline constexpr AttrRow kDagNodeRows[] = {
    attrRow("visibility", "v", AttrType::Bool, 1.0, kKeyable),
    attrRow("intermediateObject", "io", AttrType::Bool),
    attrRow("template", "tmp", AttrType::Bool),
    attrRow("ghosting", "gh", AttrType::Bool),
    attrRow("hiddenInOutliner", "hio", AttrType::Bool),
    attrRow("useOutlinerColor", "uocol", AttrType::Bool),
    compoundRow("outlinerColor", "oclr", AttrType::Float3),
    under("outlinerColor", attrRow("outlinerColorR", "oclrr", AttrType::Float)),
    under("outlinerColor", attrRow("outlinerColorG", "oclrg", AttrType::Float)),
    under("outlinerColor", attrRow("outlinerColorB", "oclrb", AttrType::Float)),
    enumRow("useObjectColor", "uoc", "Default:Index:RGB"),
    within(attrRow("objectColor", "oc", AttrType::Short), 0.0, 7.0),
    compoundRow("objectColorRGB", "obcc", AttrType::Float3),
    under("objectColorRGB", attrRow("objectColorR", "obcr", AttrType::Float)),
    under("objectColorRGB", attrRow("objectColorG", "obcg", AttrType::Float)),
    under("objectColorRGB", attrRow("objectColorB", "obcb", AttrType::Float)),
    compoundRow("wireColorRGB", "wfcc", AttrType::Float3),
    under("wireColorRGB", attrRow("wireColorR", "wfcr", AttrType::Float)),
    under("wireColorRGB", attrRow("wireColorG", "wfcg", AttrType::Float)),
    under("wireColorRGB", attrRow("wireColorB", "wfcb", AttrType::Float)),
    attrRow("selectionChildHighlighting", "sech", AttrType::Bool, 1.0),
    attrRow("lodVisibility", "lodv", AttrType::Bool, 1.0),

    compoundRow("drawOverride", "do"),
    under("drawOverride", enumRow("overrideDisplayType", "ovdt", "Normal:Template:Reference")),
    under("drawOverride", enumRow("overrideLevelOfDetail", "ovlod", "Full:Bounding Box")),
    under("drawOverride", attrRow("overrideShading", "ovs", AttrType::Bool, 1.0)),
    under("drawOverride", attrRow("overrideTexturing", "ovt", AttrType::Bool, 1.0)),
    under("drawOverride", attrRow("overridePlayback", "ovp", AttrType::Bool, 1.0)),
    under("drawOverride", attrRow("overrideEnabled", "ove", AttrType::Bool)),
    under("drawOverride", attrRow("overrideVisibility", "ovv", AttrType::Bool, 1.0)),
    under("drawOverride", attrRow("hideOnPlayback", "hpb", AttrType::Bool)),
    under("drawOverride", attrRow("overrideRGBColors", "ovrgbf", AttrType::Bool)),
    under("drawOverride", within(attrRow("overrideColor", "ovc", AttrType::Byte), 0.0, 31.0)),
    under("drawOverride", compoundRow("overrideColorRGB", "ovrgb", AttrType::Float3)),
    under("overrideColorRGB", attrRow("overrideColorR", "ovcr", AttrType::Float)),
    under("overrideColorRGB", attrRow("overrideColorG", "ovcg", AttrType::Float)),
    under("overrideColorRGB", attrRow("overrideColorB", "ovcb", AttrType::Float)),
    under("drawOverride", attrRow("overrideColorA", "ovca", AttrType::Float, 1.0)),

    compoundRow("instObjGroups", "iog", AttrType::Compound, kArray),
    under("instObjGroups", compoundRow("objectGroups", "og", AttrType::Compound, kArray)),
    under("objectGroups", attrRow("objectGrpCompList", "gcl", AttrType::ComponentList)),
    under("objectGroups", attrRow("objectGroupId", "gid", AttrType::Long)),
    under("objectGroups", attrRow("objectGrpColor", "gco", AttrType::Short)),

    attrRow("matrix", "m", AttrType::Matrix, 0.0, kComputedOutput),
    attrRow("inverseMatrix", "im", AttrType::Matrix, 0.0, kComputedOutput),
    attrRow("worldMatrix", "wm", AttrType::Matrix, 0.0, kPerPath),
    attrRow("worldInverseMatrix", "wim", AttrType::Matrix, 0.0, kPerPath),
    attrRow("parentMatrix", "pm", AttrType::Matrix, 0.0, kPerPath),
    attrRow("parentInverseMatrix", "pim", AttrType::Matrix, 0.0, kPerPath),
    attrRow("offsetParentMatrix", "opm", AttrType::Matrix, 0.0, 0, kOffsetOutputs),
};

inline constexpr TypeAttrs kDependNode("dependNode", kDependNodeRows);
inline constexpr TypeAttrs kEntity("entity", kDependNode);
inline constexpr TypeAttrs kDagNode("dagNode", kEntity, kDagNodeRows);
inline constexpr TypeAttrs kShape("shape", kDagNode);
inline constexpr TypeAttrs kGeometryShape("geometryShape", kShape);
inline constexpr TypeAttrs kDeformableShape("deformableShape", kGeometryShape);

}  // namespace torvel
