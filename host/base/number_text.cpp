#include "base/number_text.h"

#include <charconv>
#include <cstring>
#include <limits>

#include <fmt/format.h>

namespace torvel {

std::string numberText(double value, int digits) {
    return fmt::format("{:.{}g}", value, digits);
}

const char* readNumber(const char* text, double& value) {
    value = 0.0;
    const char* at = text + std::strspn(text, " \t\n\r\f\v");
    const bool plus = *at == '+';
    if (plus && (at[1] == '-' || at[1] == '+'))
        return text;
    const char* const start = plus ? at + 1 : at;
    const std::from_chars_result r = std::from_chars(start, start + std::strlen(start), value);
    if (r.ec == std::errc::invalid_argument)
        return text;
    if (r.ec == std::errc::result_out_of_range) {
        const bool tiny = std::memchr(start, '-', static_cast<std::size_t>(r.ptr - start)) > start;
        value = tiny ? 0.0 : std::numeric_limits<double>::infinity() * (*start == '-' ? -1 : 1);
    }
    return r.ptr;
}

}  // namespace torvel
