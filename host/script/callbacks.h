#pragma once

#include <string>
#include <vector>

#include "base/status.h"
#include "base/value.h"

namespace torvel {

class Session;

/// Controls and menus keep the commands they were given as texts; a callable is such a text, too,
/// and the language that keeps the callable knows it.
bool isCallback(const Session& session, const std::string& text);
/// Lets a callable go in the session that is current; any other text is ignored.
void dropCallback(const std::string& text);

/// Runs what a control was given: a callable with the control's values, or a text in the language
/// named. A failure is printed to the log and returned; nothing is thrown.
Status runControlCommand(Session& session, const std::string& command,
                         const std::vector<Value>& args, bool isPython);

}  // namespace torvel
