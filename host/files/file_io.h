#pragma once

#include <string>

#include "base/status.h"

namespace torvel {

/// The whole file as it is. Fails with the reason when it is missing, a folder or unreadable.
Status loadFile(const std::string& path, std::string& text);

/// Puts the text in place of the file: written to a new file beside it, flushed to the disk, then
/// renamed over it. After a failure the old file is as it was and nothing is left behind; the
/// sentence says why.
Status replaceFile(const std::string& path, const std::string& text);

/// Absolute path without "." and ".." parts; the file need not exist.
std::string absolutePath(const std::string& path);

}  // namespace torvel
