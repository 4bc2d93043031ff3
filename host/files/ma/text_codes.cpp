#include "files/ma/text_codes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include <QTextCodec>

namespace torvel {
namespace {

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

// "932" of the line "//Codeset: 932" among the first ones; empty without it.
std::string declaredCodes(std::string_view text) {
    constexpr std::string_view kWord = "//Codeset:";
    const std::size_t at = text.substr(0, 1024).find(kWord);
    if (at == text.npos || (at != 0 && text[at - 1] != '\n'))
        return {};
    const std::size_t start = text.find_first_not_of(" \t", at + kWord.size());
    const std::size_t end = text.find_first_of(" \t\r\n", std::min(start, text.size()));
    return start == text.npos ? std::string() : std::string(text.substr(start, end - start));
}

// Numbers are those of Windows.
QTextCodec* codecOf(const std::string& codes) {
    for (const char* prefix : {"windows-", "CP", "IBM", ""})
        if (QTextCodec* codec = QTextCodec::codecForName((prefix + codes).c_str()))
            return codec;
    if (codes == "932")
        return QTextCodec::codecForName("Shift_JIS");
    return codes == "950" ? QTextCodec::codecForName("Big5") : nullptr;
}

// Bytes that the code page does not have; they become U+FFFD.
int convert(QTextCodec& codec, std::string& text) {
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString wide = codec.toUnicode(text.data(), static_cast<int>(text.size()), &state);
    text = wide.toUtf8().toStdString();
    return state.invalidChars + (state.remainingChars > 0 ? 1 : 0);
}

bool isUtf8(const std::string& text) {
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QTextCodec::codecForName("UTF-8")->toUnicode(text.data(), static_cast<int>(text.size()),
                                                 &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

}  // namespace

std::string toUtf8(std::string& text) {
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()) || isAscii(text))
        return {};
    const std::string codes = declaredCodes(text);
    QTextCodec* codec = codes.empty() ? nullptr : codecOf(codes);
    const bool unknown = !codes.empty() && !codec;
    const bool declaredUtf8 = codec && codec->mibEnum() == 106;
    if (!codec || codes == "1252" || declaredUtf8) {
        if (declaredUtf8 || isUtf8(text))
            return {};
        codec = QTextCodec::codecForName("windows-1252");
    }
    const int strange = convert(*codec, text);
    if (unknown)
        return "the code page '" + codes + "' is not known; the text was read as 1252";
    return strange ? std::to_string(strange) + " bytes of the text are none of its code page '" +
                         codes + "'"
                   : std::string();
}

}  // namespace torvel
