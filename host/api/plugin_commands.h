#pragma once

#include <cstddef>

#include "script/command.h"

namespace torvel {

/// loadPlugin, unloadPlugin and pluginInfo.
extern const Command kPluginCommands[];
extern const std::size_t kPluginCommandCount;

}  // namespace torvel
