#pragma once

#include <string>

namespace torvel {

/// Makes a scene's text UTF-8, from the code page that its head names ("//Codeset: 932"). A text
/// that names UTF-8 stays as it is. One that names none or 1252 stays when it is valid UTF-8, else
/// it is taken for code page 1252. Returns what the user is to be told: a code page that nobody
/// knows (read like 1252), or bytes that it does not have; empty when there is nothing.
std::string toUtf8(std::string& text);

}  // namespace torvel
