#pragma once

#include <cstdint>
#include <string_view>

namespace torvel {

/// One step of an attribute path: "inputTarget[0]".
struct AttrStep {
    std::string_view name;
    std::int32_t index = -1;  ///< -1 without brackets
    bool good = false;
};

/// Takes the first step off `rest`; not good when the text is no path.
AttrStep nextStep(std::string_view& rest);

}  // namespace torvel
