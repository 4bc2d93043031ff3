#pragma once

#include <functional>
#include <string>
#include <vector>

namespace torvel {

enum class Channel { Info, Warning, Error, Result };

/// One line of the Script Editor.
struct LogLine {
    Channel channel = Channel::Info;
    std::string text;  ///< without decoration ("# Error: " is added by the language that prints it)
    bool fromScript = false;  ///< printed by a language itself (failed script, cmds.warning)
};

/// The one sink of everything that users read. Sinks are called in the order they were added.
class Log {
  public:
    using Sink = std::function<void(const LogLine&)>;

    /// Returns an id for removeSink.
    int addSink(Sink sink);
    void removeSink(int id);
    void write(Channel channel, std::string text, bool fromScript = false);

  private:
    struct Entry {
        int id;
        Sink sink;
    };
    std::vector<Entry> m_sinks;
    int m_next = 1;
};

}  // namespace torvel
