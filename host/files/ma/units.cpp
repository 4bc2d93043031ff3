#include "files/ma/units.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "base/units.h"
#include "files/ma/statement.h"

namespace torvel {
namespace {

template <class T>
void appendShortest(std::string& out, T value) {
    char text[64];
    const double size = std::fabs(static_cast<double>(value));
    const bool usual = size == 0.0 || (size >= 1e-4 && size < 1e16);
    const auto format = usual ? std::chars_format::fixed : std::chars_format::scientific;
    out.append(text, std::to_chars(text, text + sizeof text, value, format).ptr);
}

constexpr std::size_t kDigitsOfDouble = 17;

// Significant digits of a number's text.
std::size_t digitsOf(std::string_view text) {
    if (text.size() <= kDigitsOfDouble)
        return text.size();
    text = text.substr(0, text.find_first_of("eE"));
    const std::size_t first = text.find_first_of("123456789");
    if (first == text.npos)
        return 0;
    text.remove_prefix(first);
    return text.size() - (text.find('.') == text.npos ? 0 : 1);
}

void appendExactly(std::string& out, double internal, double factor) {
    char text[64];
    const long double exact = static_cast<long double>(internal) / static_cast<long double>(factor);
    const auto r = std::to_chars(text, text + sizeof text, exact, std::chars_format::general, 21);
    out.append(text, r.ptr);
}

double lengthFactor(std::string_view name) {
    const LengthUnit* unit = findLengthUnit(name);
    return unit ? unit->centimetres : 1.0;
}

double angleFactor(std::string_view name) {
    const AngleUnit* unit = findAngleUnit(name);
    return unit ? unit->radians : FileUnits::kDegreeFactor;
}

double parsed(const char* begin, const char* end) {
    double value = 0.0;
    std::from_chars(begin, end, value);
    return value;
}

}  // namespace

FileUnits FileUnits::of(std::string_view statement) {
    FileUnits units;
    TokenCursor cursor(statement);
    for (Token token = cursor.next(); !token.isEnd(); token = cursor.next()) {
        if (token.text == "-l" || token.text == "-linear")
            units.length = lengthFactor(cursor.next().text);
        else if (token.text == "-a" || token.text == "-angle")
            units.angle = angleFactor(cursor.next().text);
    }
    return units;
}

void appendDouble(std::string& out, double value) {
    appendShortest(out, value);
}

void appendFloat(std::string& out, double value) {
    appendShortest(out, static_cast<float>(value));
}

void appendInUnits(std::string& out, double internal, double factor) {
    const double near = internal / factor;
    if (factor == 1.0 || !std::isfinite(near))
        return appendDouble(out, internal);
    char text[64];
    for (int digits = 15; digits <= 17; ++digits) {
        const auto r =
            std::to_chars(text, text + sizeof text, near, std::chars_format::general, digits);
        const double value = parsed(text, r.ptr);
        if (value * factor == internal)
            return appendDouble(out, value);
    }
    double below = near, above = near;
    for (int step = 0; step < 4; ++step) {
        below = std::nextafter(below, -HUGE_VAL);
        above = std::nextafter(above, HUGE_VAL);
        if (below * factor == internal)
            return appendDouble(out, below);
        if (above * factor == internal)
            return appendDouble(out, above);
    }
    appendExactly(out, internal, factor);
}

double fromUnits(std::string_view text, double value, double factor) {
    if (factor == 1.0 || digitsOf(text) <= kDigitsOfDouble)
        return value * factor;
    long double exact = value;
    std::from_chars(text.data(), text.data() + text.size(), exact);
    return static_cast<double>(exact * static_cast<long double>(factor));
}

void appendNumber(std::string& out, AttrType type, double value, const FileUnits& units) {
    switch (type) {
        case AttrType::Bool: out += value != 0.0 ? "yes" : "no"; break;
        case AttrType::Byte:
        case AttrType::Short:
        case AttrType::Long:
        case AttrType::Enum:
            if (std::fabs(value) < 9e18)
                out += std::to_string(static_cast<long long>(value));
            else
                appendDouble(out, std::isnan(value) ? 0.0 : value);
            break;
        case AttrType::Float: appendFloat(out, value); break;
        default: appendInUnits(out, value, units.factor(type)); break;
    }
}

}  // namespace torvel
