#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/status.h"

namespace torvel {

class Session;

/// One plug-in library known to the running session.
struct PluginRecord {
    unsigned int number = 0;  ///< names it in an MObject; ascends with the first load
    std::string name;         ///< the file's name without its suffix
    std::string path;         ///< full path of the library
    std::string vendor = "Unknown";
    std::string version = "Unknown";
    std::string apiVersion;             ///< what the library's MApiVersion holds
    std::vector<std::string> commands;  ///< that it registered and did not take back, in order
    bool loaded = false;
    void* library = nullptr;
};

/// The plug-ins of one session. Libraries stay mapped after unloading, so that commands that a
/// plug-in left registered, its windows and its resources stay usable.
class Plugins {
  public:
    /// Those of the current session; empty ones while there is none.
    static Plugins& current();

    /// Accepts a full path, or a name with or without suffix that is looked for along the search
    /// path. Fails in words that say what is wrong: not found, no library, a missing symbol (which
    /// is named), refused to initialise. Loading what is loaded already is a success without effect
    /// and sets `already`.
    Status load(const std::string& nameOrPath, PluginRecord*& record, bool& already);
    /// By name or path. Fails when it is not loaded or refuses.
    Status unload(const std::string& nameOrPath);

    /// By name (with or without suffix) or full path; null when it is unknown.
    PluginRecord* find(const std::string& nameOrPath) const;
    /// Null unless the number names a plug-in of this session.
    PluginRecord* record(unsigned int number) const;
    /// In the order of their first load, unloaded ones too.
    const std::vector<std::unique_ptr<PluginRecord>>& all() const { return m_records; }

    /// Folders that plug-ins given by name are looked for in: MAYA_PLUG_IN_PATH, then the
    /// folder of the program and its sub-folder plug-ins.
    std::vector<std::string> searchPath() const;

  private:
    std::string locate(const std::string& nameOrPath) const;
    Status open(PluginRecord& record) const;
    Status initialise(PluginRecord& record);

    std::vector<std::unique_ptr<PluginRecord>> m_records;
};

}  // namespace torvel
