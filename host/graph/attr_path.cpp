#include "graph/attr_path.h"

#include <charconv>

namespace torvel {

AttrStep nextStep(std::string_view& rest) {
    AttrStep step;
    const std::size_t end = rest.find_first_of(".[");
    step.name = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end);
    if (!rest.empty() && rest.front() == '[') {
        const std::size_t close = rest.find(']');
        if (close == std::string_view::npos)
            return step;
        const std::string_view number = rest.substr(1, close - 1);
        const auto r = std::from_chars(number.data(), number.data() + number.size(), step.index);
        if (number != "*" &&
            (r.ec != std::errc() || r.ptr != number.data() + number.size() || step.index < 0))
            return step;
        rest = rest.substr(close + 1);
    }
    if (!rest.empty()) {
        if (rest.front() != '.')
            return step;
        rest.remove_prefix(1);
    }
    step.good = !step.name.empty();
    return step;
}

}  // namespace torvel
