#pragma once

#include <functional>

namespace torvel {

/// Runs a task once the program is idle: in the Qt loop when there is an application, otherwise
/// when the outermost script text has ended (runDeferred). Tasks run in the order given.
void runLater(std::function<void()> task);
/// Runs what waits for the end of a text; what such a task defers runs as well.
void runDeferred();

/// Counts nested script texts; the end of the outermost one runs what was deferred.
class ScriptDepth {
  public:
    ScriptDepth();
    ~ScriptDepth();
    ScriptDepth(const ScriptDepth&) = delete;
    ScriptDepth& operator=(const ScriptDepth&) = delete;
};

}  // namespace torvel
