#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/log.h"
#include "base/value.h"

namespace torvel {

/// One entry of the script record: a text that a plug-in ran, or a line shown to the user.
struct RecordEntry {
    bool isScript = false;
    // script
    std::string language;  ///< "python", "mel"
    std::string form;      ///< "plain", "string", "stringArray", "stringResult"
    bool display = false, undo = false;
    std::string text;  ///< script or message text
    bool ok = true;
    Value result;       ///< none, text or list
    std::string error;  ///< empty: none
    // message
    Channel channel = Channel::Info;
    bool fromScript = false;
};

/// All texts run through the API and all lines shown, in order; `--trace` listens.
class ScriptRecord {
  public:
    using Listener = std::function<void(const RecordEntry&)>;

    void add(RecordEntry entry);
    void setListener(Listener listener) { m_listener = std::move(listener); }
    const std::vector<RecordEntry>& entries() const { return m_entries; }
    void clear() { m_entries.clear(); }
    /// Script texts alone, in order.
    std::vector<std::string> scripts() const;
    /// Message lines alone, in order, languages' own lines left out.
    std::vector<std::string> messages() const;

  private:
    std::vector<RecordEntry> m_entries;
    Listener m_listener;
};

/// The entry as one JSON line (no newline).
std::string recordToJson(const RecordEntry& entry);

}  // namespace torvel
