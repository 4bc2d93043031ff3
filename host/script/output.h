#pragma once

#include <functional>
#include <string>

namespace torvel {

/// Where everything goes that scripts print (MEL `print`, Python's sys.stdout and sys.stderr).
class ScriptOutput {
  public:
    using Listener = std::function<void(const std::string& text, bool isError)>;

    /// One listener besides the real streams; an empty one ends the listening.
    void listen(Listener listener);
    /// Writes to standard output (or standard error) at once and tells the listener.
    void write(const std::string& text, bool isError = false);

  private:
    Listener m_listener;
};

}  // namespace torvel
