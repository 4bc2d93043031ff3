#include "base/log.h"

#include <algorithm>

namespace torvel {

int Log::addSink(Sink sink) {
    m_sinks.push_back({m_next, std::move(sink)});
    return m_next++;
}

void Log::removeSink(int id) {
    m_sinks.erase(
        std::remove_if(m_sinks.begin(), m_sinks.end(), [id](const Entry& e) { return e.id == id; }),
        m_sinks.end());
}

void Log::write(Channel channel, std::string text, bool fromScript) {
    const LogLine line{channel, std::move(text), fromScript};
    const std::vector<Entry> sinks = m_sinks;  // a sink may remove itself
    for (const Entry& entry : sinks)
        entry.sink(line);
}

}  // namespace torvel
