#pragma once

#include <string>

#include "base/status.h"

namespace torvel {

/// The whole file as it is. Fails with the reason when it is missing, a folder or unreadable.
Status loadFile(const std::string& path, std::string& text);

/// Puts the text in place of the file: written to a new file beside it, flushed to the disk, then
/// renamed over it, so that at every moment either the old file or the new one stands there whole.
/// A link is followed. Only regular files are replaced: folders, devices, pipes, sockets and links
/// that lead nowhere are refused. Mode and owner stay; where they cannot, and where other hard
/// links keep the old text, `loss` says so (empty otherwise). What a killed process left behind
/// while it saved the same file is removed. After a failure the old file is as it was and nothing
/// of this call is left; the sentence says why.
Status replaceFile(const std::string& path, const std::string& text, std::string& loss);

/// Absolute path without "." and ".." parts; the file need not exist.
std::string absolutePath(const std::string& path);

}  // namespace torvel
