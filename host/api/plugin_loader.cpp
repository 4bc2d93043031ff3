#include "api/plugin_loader.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>

#include <dlfcn.h>

#include <maya/MObject.h>
#include <maya/MStatus.h>

#include "api/bridge.h"

namespace torvel {

namespace {

namespace fs = std::filesystem;
using EntryFunction = MStatus (*)(MObject);

#if defined(__APPLE__)
const char* const kSuffix = ".bundle";
#else
const char* const kSuffix = ".so";
#endif

/// Releases of one major number share the layout of the API.
constexpr std::string_view kMajor = "2024";
constexpr std::size_t kVersionLength = 16;

std::string withoutSuffix(const std::string& file) {
    const bool suffixed =
        file.size() > std::strlen(kSuffix) &&
        file.compare(file.size() - std::strlen(kSuffix), std::string::npos, kSuffix) == 0;
    return suffixed ? file.substr(0, file.size() - std::strlen(kSuffix)) : file;
}

std::string programFolder() {
    std::error_code fault;
    const fs::path program = fs::read_symlink("/proc/self/exe", fault);
    return fault ? std::string() : program.parent_path().string();
}

/// The file itself, or the one with the platform's suffix; empty when neither exists.
std::string existing(const fs::path& wanted) {
    std::error_code fault;
    for (const fs::path& candidate : {wanted, fs::path(wanted.string() + kSuffix)})
        if (fs::is_regular_file(candidate, fault)) {
            const fs::path whole = fs::canonical(candidate, fault);
            return fault ? candidate.string() : whole.string();
        }
    return {};
}

std::string lastFault() {
    const char* text = dlerror();
    return text ? text : "unknown fault";
}

/// Calls an entry function of a plug-in; what it throws counts as a refusal.
bool enter(void* library, const char* function, unsigned int number) {
    const auto entry = reinterpret_cast<EntryFunction>(dlsym(library, function));
    try {
        return entry(MApiBridge::plugin(number)) == MStatus::kSuccess;
    } catch (...) {
        return false;
    }
}

}  // namespace

Plugins& Plugins::current() {
    struct Slot {
        Session* session = nullptr;
        std::weak_ptr<int> alive;
        std::unique_ptr<Plugins> plugins = std::make_unique<Plugins>();
    };
    // Never destroyed: libraries may ask for it while the process ends.
    static Slot& slot = *new Slot;
    Session* session = Session::current();
    if (session == slot.session && (!session || !slot.alive.expired()))
        return *slot.plugins;
    slot.plugins = std::make_unique<Plugins>();
    slot.session = session;
    if (session) {
        // The session holds the mark as long as it lives, so that a later one at the same address
        // is told apart.
        auto mark = std::make_shared<int>(0);
        slot.alive = mark;
        session->onCommandChange([mark](const std::string&, bool) {});
    }
    return *slot.plugins;
}

std::vector<std::string> Plugins::searchPath() const {
    std::vector<std::string> folders;
    const char* variable = std::getenv("MAYA_PLUG_IN_PATH");
    const std::string text = variable ? variable : "";
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(':', at), text.size());
        if (end > at)
            folders.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    if (const std::string program = programFolder(); !program.empty()) {
        folders.push_back(program);
        folders.push_back(program + "/plug-ins");
    }
    return folders;
}

std::string Plugins::locate(const std::string& nameOrPath) const {
    if (nameOrPath.find('/') != std::string::npos)
        return existing(nameOrPath);
    for (const std::string& folder : searchPath())
        if (const std::string found = existing(fs::path(folder) / nameOrPath); !found.empty())
            return found;
    return {};
}

PluginRecord* Plugins::find(const std::string& nameOrPath) const {
    const std::string path =
        nameOrPath.find('/') != std::string::npos ? existing(nameOrPath) : std::string();
    for (const auto& record : m_records)
        if (record->name == withoutSuffix(nameOrPath) || (!path.empty() && record->path == path))
            return record.get();
    return nullptr;
}

PluginRecord* Plugins::record(unsigned int number) const {
    return number > 0 && number <= m_records.size() ? m_records[number - 1].get() : nullptr;
}

Status Plugins::open(PluginRecord& record) const {
    // RTLD_NODELETE: commands, windows and resources of a plug-in outlive its unloading.
    record.library = dlopen(record.path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!record.library)
        return Status::failure(record.path + " is not a loadable library: " + lastFault());
    for (const char* symbol :
         {"MApiVersion", "ADSK_PLUGIN_SIGNATURE", "initializePlugin", "uninitializePlugin"})
        if (!dlsym(record.library, symbol))
            return Status::failure(record.path + " is no plug-in: it lacks the symbol " + symbol);
    const char* version = static_cast<const char*>(dlsym(record.library, "MApiVersion"));
    record.apiVersion.assign(version, strnlen(version, kVersionLength));
    if (record.apiVersion.compare(0, kMajor.size(), kMajor) != 0)
        return Status::failure(record.path + " was built for API version " + record.apiVersion +
                               ", not for " + std::string(kMajor));
    return Status::ok();
}

Status Plugins::load(const std::string& nameOrPath, PluginRecord*& record, bool& already) {
    record = find(nameOrPath);
    already = record && record->loaded;
    if (already)
        return Status::ok();
    const std::string path = locate(nameOrPath);
    if (path.empty())
        return Status::failure("Plug-in, \"" + nameOrPath +
                               "\", was not found on MAYA_PLUG_IN_PATH.");
    const std::string name = withoutSuffix(fs::path(path).filename().string());
    if (!record)
        record = find(name);
    if (record && record->loaded) {
        already = true;
        return Status::ok();
    }
    PluginRecord fresh;
    fresh.name = name;
    fresh.path = path;
    if (Status status = open(fresh); !status)
        return status;
    if (!record) {
        m_records.push_back(std::make_unique<PluginRecord>());
        record = m_records.back().get();
    }
    // Commands that an earlier unloading left registered stay this plug-in's own.
    fresh.commands = record->commands;
    fresh.number = record->number ? record->number : static_cast<unsigned int>(m_records.size());
    *record = std::move(fresh);
    return initialise(*record);
}

Status Plugins::initialise(PluginRecord& record) {
    const std::vector<std::string> before = record.commands;
    record.loaded = true;  // the plug-in may ask about itself
    if (enter(record.library, "initializePlugin", record.number))
        return Status::ok();
    record.loaded = false;
    for (const std::string& command : record.commands)
        if (std::find(before.begin(), before.end(), command) == before.end())
            Session::current()->removePluginCommand(command);
    record.commands = before;
    return Status::failure("Plug-in, \"" + record.name +
                           "\", refused to initialise (initializePlugin failed).");
}

Status Plugins::unload(const std::string& nameOrPath) {
    PluginRecord* record = find(nameOrPath);
    if (!record || !record->loaded)
        return Status::failure("Plug-in, \"" + nameOrPath + "\", is not loaded.");
    if (!enter(record->library, "uninitializePlugin", record->number))
        return Status::failure("Plug-in, \"" + record->name +
                               "\", refused to unload (uninitializePlugin failed).");
    record->loaded = false;
    return Status::ok();
}

}  // namespace torvel
