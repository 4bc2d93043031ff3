#pragma once

#include <string>

#include "base/status.h"

namespace torvel {

class Session;

/// What the tools of the skeleton window would lose, refuse or change on the scene.
struct RigReport {
    int findings = 0;
    std::string text;  ///< a block of lines for each, then how many there are
    std::string json;
};

/// Asks the plug-in's own script, torvel_check.py in `folder`, which edits nothing. A failure is
/// Python's, whose error line stands in the log already.
Status checkRigs(Session& session, const std::string& folder, RigReport& report);

/// A text as a Python literal: quotes, backslashes and control characters escaped.
std::string pythonLiteral(const std::string& text);

}  // namespace torvel
