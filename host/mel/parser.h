#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "mel/tree.h"

namespace torvel::mel {

/// Parses a whole text. Throws a Fault with line and column ("Syntax error", `Invalid use of Maya
/// object "x".`).
std::shared_ptr<Program> parse(std::string_view text, std::string file);

}  // namespace torvel::mel
