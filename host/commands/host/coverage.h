#pragma once

#include <string>

#include "script/command.h"

namespace torvel {

/// What this host covers, as the page docs/coverage.md: every node type with the way it works,
/// every command with its flags. Made from the tables alone, so that it is the same on every
/// machine; commands of plug-ins are left out.
std::string coverageText(const Session& session);

/// hostCoverage: the text as a result.
CommandTable coverageCommands();

}  // namespace torvel
