#pragma once

#include "python/ref.h"

#include <string>

#include "base/status.h"

namespace torvel {
class Session;
}

namespace torvel::py {

/// The session that `maya.cmds` works on; null when there is none.
Session* currentSession();
/// Fills `maya.cmds` with the commands of a session (null: empties it) and follows its changes.
void bindSession(Session* session);
/// One command comes or goes. Call with the lock held.
void bindCommand(const std::string& name, bool present);

/// Says for its lifetime who calls the commands (Session::calledFromPython).
class CallerMark {
  public:
    explicit CallerMark(bool python);
    ~CallerMark();
    CallerMark(const CallerMark&) = delete;
    CallerMark& operator=(const CallerMark&) = delete;

  private:
    Session* m_session;
    bool m_before;
};

/// Sets the exception of a failed status: ValueError, TypeError or RuntimeError.
void raise(const Status& status);

}  // namespace torvel::py
