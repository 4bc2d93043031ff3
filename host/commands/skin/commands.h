#pragma once

#include <cstddef>

#include "script/command.h"

namespace torvel {

extern const Command
    kSkinCommands[];  ///< skinCluster skinPercent copySkinWeights copyDeformerWeights dagPose
extern const std::size_t kSkinCommandCount;
extern const Command kPolyCommands[];  ///< polyCube polyPlane polyCylinder
extern const std::size_t kPolyCommandCount;

// The commands themselves.
Status runSkinCluster(const CommandCall& call, Value& result);
Status runSkinPercent(const CommandCall& call, Value& result);
Status runCopySkinWeights(const CommandCall& call, Value& result);
Status runCopyDeformerWeights(const CommandCall& call, Value& result);
Status runDagPose(const CommandCall& call, Value& result);

}  // namespace torvel
