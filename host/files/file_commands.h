#pragma once

#include <cstddef>

#include "commands/tables.h"

namespace torvel {

/// The command `file`: new, open, save, rename, type; queries sceneName, modified, type, exists.
CommandTable fileCommands();

}  // namespace torvel
