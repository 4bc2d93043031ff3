#pragma once

#include <string>

namespace torvel {

/// Files of older programs come in code page 1252. A text that is no valid UTF-8 is taken for such
/// and converted; any other text stays as it is.
void toUtf8(std::string& text);

}  // namespace torvel
