#pragma once

#include <string>
#include <string_view>

namespace torvel::api {

/// Characters of a text: bytes that do not continue another.
int characterCount(std::string_view text);
/// Byte at which character number `character` begins; the text's size at or past its end.
std::size_t byteOfCharacter(std::string_view text, int character);
/// The other way round, for the byte at which a character begins.
int characterOfByte(std::string_view text, std::size_t byte);

/// Damaged bytes become U+FFFD.
std::wstring wideFromUtf8(std::string_view text);
std::string utf8FromWide(std::wstring_view text);

}  // namespace torvel::api
