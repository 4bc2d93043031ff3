#pragma once

#include <memory>

#include "script/session.h"
#include "script/command.h"

namespace torvel {

/// The MEL interpreter of a session: adds the language's own commands (melCommands) and sets
/// `session.mel`. The result of a text is that of its last statement when it is an expression or a
/// command, none otherwise: int, double, text, Tuple of three (vector) or List. A failed text
/// prints "// Error: line 3: text" through the log; its status has that line without "// Error: ".
/// What stood before the fault has happened.
std::unique_ptr<Language> makeMelLanguage(Session& session);

/// The same, kept by the session as long as it lives.
void setUpMel(Session& session);

/// Commands of MEL that other languages may call as well: eval.
CommandTable melCommands();

}  // namespace torvel
