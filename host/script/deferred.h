#pragma once

#include <deque>
#include <functional>
#include <memory>

namespace torvel {

/// What a session runs once the program is idle: in the Qt loop when there is an application,
/// otherwise when the outermost script text has ended. Tasks run in the order given.
class DeferredTasks {
  public:
    void add(std::function<void()> task);
    /// Runs what waits for the end of a text; what such a task defers runs as well.
    void run();

  private:
    friend class ScriptDepth;
    std::deque<std::function<void()>> m_waiting;
    int m_depth = 0;
};

/// Counts nested script texts of a session; the end of the outermost one runs what was deferred.
/// The session may end inside.
class ScriptDepth {
  public:
    explicit ScriptDepth(std::shared_ptr<DeferredTasks> tasks);
    ~ScriptDepth();
    ScriptDepth(const ScriptDepth&) = delete;
    ScriptDepth& operator=(const ScriptDepth&) = delete;

  private:
    std::shared_ptr<DeferredTasks> m_tasks;
};

}  // namespace torvel
