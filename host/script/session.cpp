#include "script/session.h"

#include <utility>

#include "nodes/core/default_nodes.h"
#include "nodes/node_table.h"

namespace torvel {

namespace {

Session* g_current = nullptr;

// A plug-in command parses its own text: flags reach it as "-name" and their values, as in a MEL
// call.
std::vector<Value> argumentsOf(const std::vector<RawFlag>& flags, std::vector<Value> args) {
    for (const RawFlag& flag : flags) {
        args.emplace_back("-" + flag.name);
        args.insert(args.end(), flag.values.begin(), flag.values.end());
    }
    return args;
}

}  // namespace

Session::Session() {
    m_log.addSink([this](const LogLine& line) {
        RecordEntry entry;
        entry.text = line.text;
        entry.channel = line.channel;
        entry.fromScript = line.fromScript;
        m_record.add(std::move(entry));
    });
    m_scene = std::make_unique<Scene>(nodeTypes(), m_log);
    createDefaultNodes(*m_scene);
    g_current = this;
}

Session::~Session() {
    if (g_current == this)
        g_current = nullptr;
}

Session* Session::current() {
    return g_current;
}

void Session::addCommands(const Command* rows, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        m_commands[rows[i].name] = &rows[i];
        for (const CommandChange& change : m_changes)
            change(rows[i].name, true);
    }
}

const Command* Session::findCommand(const std::string& name) const {
    const auto found = m_commands.find(name);
    return found == m_commands.end() ? nullptr : found->second;
}

bool Session::addPluginCommand(const std::string& name, PluginCommand run) {
    if (findCommand(name) || !m_pluginCommands.emplace(name, std::move(run)).second)
        return false;
    for (const CommandChange& change : m_changes)
        change(name, true);
    return true;
}

bool Session::removePluginCommand(const std::string& name) {
    if (m_pluginCommands.erase(name) == 0)
        return false;
    for (const CommandChange& change : m_changes)
        change(name, false);
    return true;
}

const PluginCommand* Session::findPluginCommand(const std::string& name) const {
    const auto found = m_pluginCommands.find(name);
    return found == m_pluginCommands.end() ? nullptr : &found->second;
}

Status Session::call(const std::string& name, const std::vector<RawFlag>& flags,
                     std::vector<Value> args, Value& result) {
    if (const Command* command = findCommand(name)) {
        CommandCall call(*this, command->name);
        const Status parsed = parseCall(*command, flags, std::move(args), call);
        return parsed ? command->run(call, result) : parsed;
    }
    if (const PluginCommand* command = findPluginCommand(name)) {
        const PluginCommand run = *command;  // the command may deregister itself
        return run(argumentsOf(flags, std::move(args)), result);
    }
    return Status::failure("Cannot find procedure \"" + name + "\".");
}

}  // namespace torvel
