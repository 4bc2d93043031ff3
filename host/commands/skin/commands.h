#pragma once

#include "script/command.h"

namespace torvel {

// The skin commands; table.cpp holds their rows.
Status runSkinCluster(const CommandCall& call, Value& result);
Status runSkinPercent(const CommandCall& call, Value& result);
Status runCopySkinWeights(const CommandCall& call, Value& result);
Status runCopyDeformerWeights(const CommandCall& call, Value& result);
Status runDagPose(const CommandCall& call, Value& result);

}  // namespace torvel
