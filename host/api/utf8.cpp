#include "api/utf8.h"

namespace torvel::api {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

/// Bytes that the lead byte announces, 0 when it leads nothing.
std::size_t announced(unsigned char lead) {
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead < 0xE0)
        return 2;
    if (lead >= 0xE0 && lead < 0xF0)
        return 3;
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

/// Reads one character at `at` and moves past it; damage takes one byte.
char32_t decode(std::string_view text, std::size_t& at) {
    const unsigned char lead = static_cast<unsigned char>(text[at]);
    const std::size_t count = announced(lead);
    if (count == 0 || at + count > text.size()) {
        ++at;
        return kReplacement;
    }
    char32_t value = count == 1 ? lead : lead & (0x7Fu >> count);
    for (std::size_t i = 1; i < count; ++i) {
        if (!continues(text[at + i])) {
            ++at;
            return kReplacement;
        }
        value = (value << 6) | (static_cast<unsigned char>(text[at + i]) & 0x3Fu);
    }
    at += count;
    return value;
}

void encode(char32_t value, std::string& out) {
    if (value < 0x80) {
        out += static_cast<char>(value);
        return;
    }
    const int more = value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
    const unsigned int marks[] = {0xC0, 0xE0, 0xF0};
    out += static_cast<char>(marks[more - 1] | (value >> (6 * more)));
    for (int i = more - 1; i >= 0; --i)
        out += static_cast<char>(0x80u | ((value >> (6 * i)) & 0x3Fu));
}

void appendWide(char32_t value, std::wstring& out) {
    if (sizeof(wchar_t) > 2 || value < 0x10000) {
        out += static_cast<wchar_t>(value);
        return;
    }
    out += static_cast<wchar_t>(0xD800 + ((value - 0x10000) >> 10));
    out += static_cast<wchar_t>(0xDC00 + ((value - 0x10000) & 0x3FF));
}

}  // namespace

int characterCount(std::string_view text) {
    return characterOfByte(text, text.size());
}

std::size_t byteOfCharacter(std::string_view text, int character) {
    int seen = -1;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (!continues(text[i]) && ++seen == character)
            return i;
    return text.size();
}

int characterOfByte(std::string_view text, std::size_t byte) {
    int count = 0;
    for (std::size_t i = 0; i < byte && i < text.size(); ++i)
        count += continues(text[i]) ? 0 : 1;
    return count;
}

std::wstring wideFromUtf8(std::string_view text) {
    std::wstring out;
    for (std::size_t at = 0; at < text.size();)
        appendWide(decode(text, at), out);
    return out;
}

std::string utf8FromWide(std::wstring_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t value = static_cast<char32_t>(text[i]);
        const bool pair =
            sizeof(wchar_t) == 2 && value >= 0xD800 && value < 0xDC00 && i + 1 < text.size();
        if (pair)
            value =
                0x10000 + ((value - 0xD800) << 10) + (static_cast<char32_t>(text[++i]) - 0xDC00);
        encode(value <= 0x10FFFF ? value : kReplacement, out);
    }
    return out;
}

}  // namespace torvel::api
