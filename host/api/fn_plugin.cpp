#include <algorithm>
#include <filesystem>

#include "api/bridge.h"
#include "api/command.h"
#include "api/plugin_loader.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::PluginRecord;
using torvel::Plugins;
using torvel::Session;

namespace {

PluginRecord* recordOf(const MObject& object) {
    return Plugins::current().record(MApiBridge::pluginNumber(object));
}

bool isGiven(const char* text) {
    return text && std::string(text) != "Unknown";
}

MString fieldOf(const MObject& object, std::string PluginRecord::*field, MStatus* status) {
    const PluginRecord* record = recordOf(object);
    return check(status, record) ? MApiBridge::text(record->*field) : MString();
}

/// Letters, digits and underscores, no digit first: a name that both languages can call.
bool isCallable(const std::string& name) {
    const auto legal = [](char c) {
        return c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
               (c >= 'A' && c <= 'Z');
    };
    return !name.empty() && (name[0] < '0' || name[0] > '9') &&
           std::all_of(name.begin(), name.end(), legal);
}

}  // namespace

MFnPlugin::MFnPlugin() = default;

// Every release of the running API is taken, whatever the plug-in asks for: the loader has compared
// versions already.
MFnPlugin::MFnPlugin(MObject& object, const char* vendor, const char* version, const char*,
                     MStatus* ReturnStatus) {
    report(ReturnStatus, attach(object, MFn::kPlugin).statusCode());
    PluginRecord* record = recordOf(fObject);
    if (record && isGiven(vendor))
        record->vendor = vendor;
    if (record && isGiven(version))
        record->version = version;
}

MFnPlugin::~MFnPlugin() = default;

MFn::Type MFnPlugin::type() const {
    return MFn::kPlugin;
}

MString MFnPlugin::vendor(MStatus* ReturnStatus) const {
    return fieldOf(fObject, &PluginRecord::vendor, ReturnStatus);
}

MString MFnPlugin::version(MStatus* ReturnStatus) const {
    return fieldOf(fObject, &PluginRecord::version, ReturnStatus);
}

MString MFnPlugin::apiVersion(MStatus* ReturnStatus) const {
    return fieldOf(fObject, &PluginRecord::apiVersion, ReturnStatus);
}

MString MFnPlugin::name(MStatus* ReturnStatus) const {
    return fieldOf(fObject, &PluginRecord::name, ReturnStatus);
}

MString MFnPlugin::loadPath(MStatus* ReturnStatus) const {
    const PluginRecord* record = recordOf(fObject);
    if (!check(ReturnStatus, record))
        return MString();
    return MApiBridge::text(std::filesystem::path(record->path).parent_path().string());
}

MStatus MFnPlugin::registerCommand(const MString& name, MCreatorFunction creator,
                                   MCreateSyntaxFunction syntax) {
    PluginRecord* record = recordOf(fObject);
    const std::string command = MApiBridge::text(name);
    if (!record || !creator || !isCallable(command))
        return MStatus::kInvalidParameter;
    if (syntax)
        return MStatus::kNotImplemented;
    const auto run = [command, creator](const std::vector<torvel::Value>& args,
                                        torvel::Value& result) {
        return runPluginCommand(command, creator, args, result);
    };
    if (!Session::current()->addPluginCommand(command, run))
        return MStatus::kFailure;
    record->commands.push_back(command);
    return MStatus::kSuccess;
}

MStatus MFnPlugin::deregisterCommand(const MString& name) {
    PluginRecord* record = recordOf(fObject);
    if (!record)
        return MStatus::kInvalidParameter;
    const auto found =
        std::find(record->commands.begin(), record->commands.end(), MApiBridge::text(name));
    if (found == record->commands.end() || !Session::current()->removePluginCommand(*found))
        return MStatus::kInvalidParameter;
    record->commands.erase(found);
    return MStatus::kSuccess;
}

MAYA_API_NAMESPACE_CLOSE
