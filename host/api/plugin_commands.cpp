#include "api/plugin_commands.h"

#include "api/plugin_loader.h"
#include "script/session.h"

namespace torvel {

namespace {

const FlagRow kLoadFlags[] = {
    {"quiet", "qt", "", kCreate},
};

const FlagRow kUnloadFlags[] = {
    {"force", "f", "", kCreate},
};

const FlagRow kInfoFlags[] = {
    {"apiVersion", "av", "", kQuery},  {"command", "c", "", kQuery},
    {"listPlugins", "ls", "", kQuery}, {"loaded", "l", "", kQuery},
    {"name", "n", "", kQuery},         {"path", "p", "", kQuery},
    {"registered", "r", "", kQuery},   {"vendor", "vd", "", kQuery},
    {"version", "v", "", kQuery},
};

Status loadPlugin(const CommandCall& call, Value& result) {
    const std::vector<std::string> names = call.texts();
    if (names.empty())
        return call.fail("a plug-in's name or path is needed");
    std::vector<std::string> loaded;
    for (const std::string& name : names) {
        PluginRecord* record = nullptr;
        bool already = false;
        if (Status status = Plugins::current().load(name, record, already); !status)
            return status;
        if (!already)
            loaded.push_back(record->name);
        else if (!call.has("quiet"))
            call.session().log().write(Channel::Warning,
                                       "Plugin, " + record->name + ", is already loaded.", true);
    }
    if (!loaded.empty())
        result = Value::strings(loaded);
    return Status::ok();
}

Status unloadPlugin(const CommandCall& call, Value& result) {
    const std::vector<std::string> names = call.texts();
    if (names.empty())
        return call.fail("a plug-in's name is needed");
    std::vector<std::string> unloaded;
    for (const std::string& name : names) {
        if (Status status = Plugins::current().unload(name); !status)
            return status;
        unloaded.push_back(Plugins::current().find(name)->name);
    }
    result = Value::strings(unloaded);
    return Status::ok();
}

std::vector<std::string> loadedNames() {
    std::vector<std::string> names;
    for (const auto& record : Plugins::current().all())
        if (record->loaded)
            names.push_back(record->name);
    return names;
}

Status infoOf(const CommandCall& call, const PluginRecord& record, Value& result) {
    if (call.has("name"))
        result = record.name;
    else if (call.has("path"))
        result = record.path;
    else if (call.has("vendor"))
        result = record.vendor;
    else if (call.has("version"))
        result = record.version;
    else if (call.has("apiVersion"))
        result = record.apiVersion;
    else if (call.has("command"))
        result = Value::strings(record.commands);
    else
        return call.fail("a flag has to say what is asked");
    return Status::ok();
}

Status pluginInfo(const CommandCall& call, Value& result) {
    if (!call.isQuery())
        return call.fail("only the query mode is supported");
    if (call.has("listPlugins")) {
        result = Value::strings(loadedNames());
        return Status::ok();
    }
    const std::vector<std::string> names = call.texts();
    if (names.size() != 1)
        return call.fail("one plug-in's name is needed");
    const PluginRecord* record = Plugins::current().find(names.front());
    if (call.has("loaded") || call.has("registered")) {
        result = record && (record->loaded || call.has("registered"));
        return Status::ok();
    }
    if (!record)
        return call.fail("Plug-in, \"" + names.front() + "\", is not registered.");
    return infoOf(call, *record, result);
}

}  // namespace

const Command kPluginCommands[] = {
    {"loadPlugin", kLoadFlags, countOf(kLoadFlags), loadPlugin, "Loads plug-ins by name or path."},
    {"unloadPlugin", kUnloadFlags, countOf(kUnloadFlags), unloadPlugin,
     "Unloads plug-ins by name."},
    {"pluginInfo", kInfoFlags, countOf(kInfoFlags), pluginInfo, "Tells about a plug-in."},
};

const std::size_t kPluginCommandCount = sizeof(kPluginCommands) / sizeof(kPluginCommands[0]);

}  // namespace torvel
