#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <typeindex>
#include <unordered_map>
#include <vector>

#include "base/log.h"
#include "script/command.h"
#include "script/deferred.h"
#include "script/output.h"
#include "script/record.h"
#include "graph/scene.h"

namespace torvel {

/// What MEL and Python offer the rest of the host; each language registers itself in the session.
/// A failed run has printed its error line already (through the log, fromScript) and gives a
/// failure status.
class Language {
  public:
    virtual ~Language() = default;
    /// Runs a text; `result` is the value of its last statement or expression, none otherwise.
    virtual Status run(const std::string& text, Value& result) = 0;
    virtual Status runFile(const std::string& path) = 0;
    /// True for a text that stands for a callable which this language keeps.
    virtual bool isCallback(const std::string&) const { return false; }
    /// Calls it. A failure is printed to the log and returned; nothing is thrown.
    virtual Status runCallback(const std::string&, const std::vector<Value>&) { return {}; }
    /// Lets it go; any other text is ignored.
    virtual void dropCallback(const std::string&) {}
};

/// A command that a plug-in registered; `run` may throw nothing.
using PluginCommand = std::function<Status(const std::vector<Value>& args, Value& result)>;

/// Listens to commands that come and go (the Python module binds them).
using CommandChange = std::function<void(const std::string& name, bool present)>;

/// The main window, as the rooms below the user interface see it.
class Desktop {
  public:
    virtual ~Desktop() = default;
};

/// Everything of one running host: scene, commands, languages, log, record, main window.
class Session {
  public:
    Session();
    ~Session();

    /// The session that the API classes work on; null outside its lifetime. The last made one.
    static Session* current();

    Log& log() { return m_log; }
    Scene& scene() { return *m_scene; }
    ScriptRecord& record() { return m_record; }
    ScriptOutput& output() { return m_output; }
    const std::shared_ptr<DeferredTasks>& deferred() const { return m_deferred; }
    /// What a command, a language or a window keeps in the session: one object of each type, made
    /// on first use.
    template <class T>
    T& kept() {
        std::shared_ptr<void>& place = m_kept[std::type_index(typeid(T))];
        if (!place)
            place = std::make_shared<T>();
        return *static_cast<T*>(place.get());
    }

    /// False when a name has another row already: that row stays, the table's own is refused and
    /// told in the log; the table's other rows are added.
    bool addCommands(const CommandTable& table);
    /// Null when there is none.
    const Command* findCommand(const std::string& name) const;
    const std::map<std::string, const Command*>& commands() const { return m_commands; }
    /// False when the name is taken.
    bool addPluginCommand(const std::string& name, PluginCommand run);
    bool removePluginCommand(const std::string& name);
    const PluginCommand* findPluginCommand(const std::string& name) const;
    const std::map<std::string, PluginCommand>& pluginCommands() const { return m_pluginCommands; }
    void onCommandChange(CommandChange change) { m_changes.push_back(std::move(change)); }

    /// Parses and runs one command: the door of every language. What runs out of memory or throws
    /// fails with the command's name; the scene stays as far as it had come.
    Status run(const Command& command, const std::vector<RawFlag>& flags, std::vector<Value> args,
               Value& result);
    Status run(const std::string& name, const PluginCommand& command,
               const std::vector<Value>& args, Value& result);
    /// Runs a command by name: table commands are parsed against their rows, plug-in commands take
    /// the arguments.
    Status call(const std::string& name, const std::vector<RawFlag>& flags, std::vector<Value> args,
                Value& result);

    Language* mel = nullptr;
    Language* python = nullptr;
    Desktop* mainWindow = nullptr;  ///< set by ui; null without one
    bool calledFromPython = false;  ///< a command that Python called directly is at work
    bool batch = false;
    bool trust = false;         ///< every scene that is opened may run its own script nodes
    bool sceneTrusted = false;  ///< the open one may

  private:
    Log m_log;
    ScriptRecord m_record;
    ScriptOutput m_output;
    std::shared_ptr<DeferredTasks> m_deferred = std::make_shared<DeferredTasks>();
    std::unique_ptr<Scene> m_scene;
    std::map<std::string, const Command*> m_commands;
    std::map<std::string, PluginCommand> m_pluginCommands;
    std::vector<CommandChange> m_changes;
    std::unordered_map<std::type_index, std::shared_ptr<void>> m_kept;  // goes first
};

}  // namespace torvel
