#pragma once

#include <string>

#include "base/log.h"

namespace torvel {

/// A line as the Script Editor shows it: warnings and errors get "# Warning: " and "# Error: " in
/// front unless the language that printed the line has put its own mark ("#" or "//") there.
std::string shownLine(const LogLine& line);

}  // namespace torvel
