#include "commands/skin/commands.h"

namespace torvel {
namespace {

constexpr unsigned kCreateEdit = kCreate | kEdit;

constexpr FlagRow kSkinClusterFlags[] = {
    {"toSelectedBones", "tsb", "", kCreate},
    {"toSkeletonAndTransforms", "tst", "", kCreate},
    {"name", "n", "s", kCreate},
    {"maximumInfluences", "mi", "i"},
    {"obeyMaxInfluences", "omi", "b"},
    {"dropoffRate", "dr", "d"},
    {"bindMethod", "bm", "i", kCreate | kQuery},
    {"skinMethod", "sm", "i"},
    {"normalizeWeights", "nw", "i"},
    {"weightDistribution", "wd", "i"},
    {"removeUnusedInfluence", "rui", "b", kCreateEdit},
    {"multi", "mul", "", kCreate},
    {"unbind", "ub", "", kEdit},
    {"unbindKeepHistory", "ubk", "", kEdit},
    {"addInfluence", "ai", "s", kEdit, true},
    {"removeInfluence", "ri", "s", kEdit, true},
    {"weight", "wt", "d", kEdit},
    {"lockWeights", "lw", "b", kEdit},
    {"influence", "inf", "s", kQuery},
    {"weightedInfluence", "wi", "", kQuery},
    {"geometry", "g", "s", kQuery},
    {"recacheBindMatrices", "rbm", "", kEdit},
};

constexpr FlagRow kSkinPercentFlags[] = {
    {"transformValue", "tv", "sd", kCreateEdit, true},
    {"transform", "t", "s", kCreate | kQuery, false, true},
    {"value", "v", "", kCreate | kQuery},
    {"normalize", "nrm", "b", kCreateEdit},
    {"relative", "r", "b", kCreateEdit},
    {"zeroRemainingInfluences", "zri", "b", kCreateEdit},
    {"pruneWeights", "prw", "d", kCreateEdit},
    {"ignoreBelow", "ib", "d", kQuery, false, true},
};

constexpr FlagRow kCopySkinWeightsFlags[] = {
    {"sourceSkin", "ss", "s", kCreate},
    {"destinationSkin", "ds", "s", kCreate},
    {"noMirror", "nm", "", kCreate},
    {"mirrorMode", "mm", "s", kCreate},
    {"mirrorInverse", "mi", "", kCreate},
    {"surfaceAssociation", "sa", "s", kCreate},
    {"influenceAssociation", "ia", "s", kCreate, true},
    {"normalize", "nr", "", kCreate},
};

constexpr FlagRow kCopyDeformerWeightsFlags[] = {
    {"sourceDeformer", "sd", "s", kCreate}, {"destinationDeformer", "dd", "s", kCreate},
    {"sourceShape", "ss", "s", kCreate},    {"destinationShape", "ds", "s", kCreate},
    {"noMirror", "nm", "", kCreate},        {"mirrorMode", "mm", "s", kCreate},
    {"mirrorInverse", "mi", "", kCreate},   {"surfaceAssociation", "sa", "s", kCreate},
};

constexpr FlagRow kDagPoseFlags[] = {
    {"save", "s", "", kCreate},
    {"restore", "r", "", kCreate},
    {"reset", "rs", "", kCreate},
    {"addToPose", "a", "", kCreate},
    {"global", "g", "", kCreate},
    {"bindPose", "bp", "", kCreate | kQuery},
    {"name", "n", "s", kCreate | kQuery, false, true},
    {"selection", "sl", "", kCreate},
    {"members", "m", "", kQuery},
    {"atPose", "ap", "", kQuery},
};

const Command kSkinCommands[] = {
    {"skinCluster", kSkinClusterFlags, countOf(kSkinClusterFlags), runSkinCluster,
     "Binds a shape to joints, edits and asks a skin."},
    {"skinPercent", kSkinPercentFlags, countOf(kSkinPercentFlags), runSkinPercent,
     "Sets and asks the weights of points."},
    {"copySkinWeights", kCopySkinWeightsFlags, countOf(kCopySkinWeightsFlags), runCopySkinWeights,
     "Copies or mirrors the weights of one skin to another."},
    {"copyDeformerWeights", kCopyDeformerWeightsFlags, countOf(kCopyDeformerWeightsFlags),
     runCopyDeformerWeights, "Refused: weights of deformers other than skins are not worked on."},
    {"dagPose", kDagPoseFlags, countOf(kDagPoseFlags), runDagPose,
     "Saves, restores and asks poses of a skeleton."},
};

}  // namespace

CommandTable skinCommands() {
    return {kSkinCommands, std::size(kSkinCommands)};
}

}  // namespace torvel
