#pragma once

#include <string>

#include "base/status.h"

namespace torvel {

/// The folders whose scenes may run their own script nodes: an absolute path a line in
/// torvel/trusted_folders below $XDG_CONFIG_HOME (~/.config when that is not set).

/// True for a file below one of them, links followed on both sides; false when nothing is listed.
bool isTrustedPlace(const std::string& file);
/// Adds a folder; one that is there already stays. Fails, with a sentence, when it is no folder or
/// the list cannot be written.
Status trustFolder(const std::string& folder);

}  // namespace torvel
