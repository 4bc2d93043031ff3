#pragma once

#include <memory>

#include "script/session.h"
#include "script/command.h"

namespace torvel {

/// Python of a session: starts the interpreter at the first time, binds `maya.cmds` to the session
/// and sets `session.python`. All text runs in `__main__`.
///
/// `run` gives the value of the last statement when it is an expression: none for None, bool, int,
/// double, text, or a List for a list or tuple. A value that cannot be told so (a dict, an object)
/// comes as an empty Tuple. A failed text prints "# Error: RuntimeError: file <maya console> line
/// 1: text" through the log; its status has that line without "# Error: ". `runFile` leaves
/// sys.argv alone and puts the script's folder on sys.path.
std::unique_ptr<Language> makePythonLanguage(Session& session);

/// The same, kept by the session as long as it lives.
void setUpPython(Session& session);

/// python, error, warning, evalDeferred.
CommandTable pythonCommands();

}  // namespace torvel
