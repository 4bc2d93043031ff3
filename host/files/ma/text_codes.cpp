#include "files/ma/text_codes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace torvel {
namespace {

// Code points of the bytes 0x80 to 0x9f in code page 1252; the rest of the upper half stands for
// itself.
const std::uint16_t kUpper[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                  0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

bool isAscii(const std::string& text) {
    const char* at = text.data();
    const char* end = at + text.size();
    for (; end - at >= 8; at += 8) {
        std::uint64_t eight;
        std::memcpy(&eight, at, 8);
        if (eight & 0x8080808080808080ull)
            return false;
    }
    return std::all_of(at, end, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isUtf8(const std::string& text) {
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80                   ? 1
                                   : lead >= 0xF0 && lead < 0xF5 ? 4
                                   : lead >= 0xE0 && lead < 0xF0 ? 3
                                   : lead >= 0xC2 && lead < 0xE0 ? 2
                                                                 : 0;
        if (length == 0 || i + length > text.size())
            return false;
        for (std::size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
                return false;
        i += length;
    }
    return true;
}

void appendCode(std::string& out, std::uint32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

}  // namespace

void toUtf8(std::string& text) {
    if (isAscii(text) || isUtf8(text))
        return;
    std::string out;
    out.reserve(text.size() + text.size() / 64);
    for (char c : text) {
        const unsigned char byte = static_cast<unsigned char>(c);
        appendCode(out, byte >= 0x80 && byte < 0xA0 ? kUpper[byte - 0x80] : byte);
    }
    text = std::move(out);
}

}  // namespace torvel
