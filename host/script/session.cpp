#include "script/session.h"

#include <exception>
#include <new>
#include <stdexcept>
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

template <class Run>
Status guarded(const std::string& name, Run&& run) {
    try {
        return run();
    } catch (const std::bad_alloc&) {
        return Status::failure(name + ": Out of memory.");
    } catch (const std::length_error&) {
        return Status::failure(name + ": Out of memory.");
    } catch (const std::exception& failure) {
        return Status::failure(name + ": " + failure.what());
    }
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

bool Session::addCommands(const CommandTable& table) {
    bool good = true;
    for (std::size_t i = 0; i < table.count; ++i) {
        const Command* row = &table.rows[i];
        const auto [place, fresh] = m_commands.emplace(row->name, row);
        if (!fresh && place->second != row) {
            good = false;
            m_log.write(Channel::Error, "The command '" + place->first +
                                            "' has a row already; another one is refused.");
        }
        for (const CommandChange& change : m_changes)
            if (fresh)
                change(place->first, true);
    }
    return good;
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

Status Session::run(const Command& command, const std::vector<RawFlag>& flags,
                    std::vector<Value> args, Value& result) {
    return guarded(command.name, [&] {
        CommandCall call(*this, command.name);
        const Status parsed = parseCall(command, flags, std::move(args), call);
        return parsed ? command.run(call, result) : parsed;
    });
}

Status Session::run(const std::string& name, const PluginCommand& command,
                    const std::vector<Value>& args, Value& result) {
    const PluginCommand own = command;  // the command may deregister itself
    return guarded(name, [&] { return own(args, result); });
}

Status Session::call(const std::string& name, const std::vector<RawFlag>& flags,
                     std::vector<Value> args, Value& result) {
    if (const Command* command = findCommand(name))
        return run(*command, flags, std::move(args), result);
    if (const PluginCommand* command = findPluginCommand(name))
        return run(name, *command, argumentsOf(flags, std::move(args)), result);
    return Status::failure("Cannot find procedure \"" + name + "\".");
}

}  // namespace torvel
