#pragma once

#include <functional>
#include <string>

namespace torvel {

/// Told everything that scripts print (MEL `print`, Python's sys.stdout and sys.stderr), besides
/// the real stream.
using ScriptOutput = std::function<void(const std::string& text, bool isError)>;

/// One listener for the process; an empty one ends the listening.
void setScriptOutput(ScriptOutput output);
/// Writes to standard output (or standard error) at once and tells the listener.
void writeScriptOutput(const std::string& text, bool isError = false);

}  // namespace torvel
