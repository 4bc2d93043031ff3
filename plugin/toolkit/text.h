#pragma once

#include <maya/MString.h>

/// The text that the UTF-8 bytes spell. A plain MString(const char*) reads its bytes in the
/// encoding of the locale, so every literal that is not pure ASCII goes through here.
inline MString utf8Text(const char* bytes) {
    MString text;
    text.setUTF8(bytes);
    return text;
}
