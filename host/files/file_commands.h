#pragma once

#include <cstddef>

#include "script/command.h"

namespace torvel {

/// The command `file`: new, open, save, rename, import, exportAll, exportSelected, type;
/// queries sceneName, modified, type, exists.
CommandTable fileCommands();

}  // namespace torvel
