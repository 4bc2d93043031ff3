#include "script/session.h"
#include "script/command.h"

namespace torvel {
namespace {

const FlagRow kAboutFlags[] = {
    {"apiVersion", "api"},   {"application", "a"},       {"batch", "b"},
    {"cutIdentifier", "c"},  {"installedVersion", "iv"}, {"is64", "x64"},
    {"linux", "li"},         {"linux64", "l64"},         {"macOS", "mac"},
    {"majorVersion", "mjv"}, {"minorVersion", "mnv"},    {"operatingSystem", "os"},
    {"product", "p"},        {"qtVersion", "qt"},        {"version", "v"},
    {"windows", "win"},
};

constexpr bool onLinux() {
#ifdef __linux__
    return true;
#else
    return false;
#endif
}

constexpr bool onWindows() {
#ifdef _WIN32
    return true;
#else
    return false;
#endif
}

constexpr bool onMac() {
#ifdef __APPLE__
    return true;
#else
    return false;
#endif
}

Status about(const CommandCall& call, Value& result) {
    struct Fact {
        const char* flag;
        Value value;
    };
    const Fact facts[] = {
        {"apiVersion", Value(20240000)},
        {"application", Value("maya")},
        {"batch", Value(call.session().batch)},
        {"cutIdentifier", Value(TORVEL_VERSION)},
        {"installedVersion", Value("Maya 2024")},
        {"is64", Value(sizeof(void*) == 8)},
        {"linux", Value(onLinux())},
        {"linux64", Value(onLinux() && sizeof(void*) == 8)},
        {"macOS", Value(onMac())},
        {"majorVersion", Value("2024")},
        {"minorVersion", Value("0")},
        {"operatingSystem", Value(onWindows() ? "win64"
                                  : onMac()   ? "mac"
                                              : "linux64")},
        {"product", Value("Maya 2024")},
        {"qtVersion", Value("5.15.2")},
        {"version", Value("2024")},
        {"windows", Value(onWindows())},
    };
    for (const Fact& fact : facts)
        if (call.has(fact.flag)) {
            result = fact.value;
            return Status::ok();
        }
    return call.fail("Needs a flag that tells what to look for.");
}

const FlagRow kUndoInfoFlags[] = {
    {"chunkName", "cn", "s"},
    {"closeChunk", "cck"},
    {"infinity", "in", "b"},
    {"length", "l", "i"},
    {"openChunk", "ock"},
    {"state", "st", "b"},
    {"stateWithoutFlush", "swf", "b"},
    {"undoQueueEmpty", "uqe"},
};

// There is no undo: chunks and switches are taken and change nothing, questions are answered so.
Status undoInfo(const CommandCall& call, Value& result) {
    if (!call.isQuery())
        return Status::ok();
    if (call.has("chunkName"))
        result = Value("");
    else if (call.has("length"))
        result = Value(0);
    else
        result = Value(call.has("undoQueueEmpty"));
    return Status::ok();
}

Status undo(const CommandCall& call, Value&) {
    return call.fail("There is nothing to undo: this host keeps no undo queue.");
}

const FlagRow kUpAxisFlags[] = {{"axis", "ax", "s"}, {"rotateView", "rv"}};

Status upAxis(const CommandCall& call, Value& result) {
    if (call.isQuery())
        result = Value("y");
    else if (call.text("axis", "y") != "y")
        return call.fail("The up axis is always y.");
    return Status::ok();
}

const Command kAboutCommands[] = {
    {"about", kAboutFlags, countOf(kAboutFlags), about, "Facts about the program."},
    {"redo", nullptr, 0, undo, "Refused: there is no undo."},
    {"undo", nullptr, 0, undo, "Refused: there is no undo."},
    {"undoInfo", kUndoInfoFlags, countOf(kUndoInfoFlags), undoInfo, "Takes undo chunks."},
    {"upAxis", kUpAxisFlags, countOf(kUpAxisFlags), upAxis, "The up axis."},
};

}  // namespace

CommandTable aboutCommands() {
    return {kAboutCommands, std::size(kAboutCommands)};
}

}  // namespace torvel
