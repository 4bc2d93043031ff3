#include "commands/host/state.h"

#include <map>

#include "commands/host/verify.h"
#include "script/session.h"

namespace torvel {

namespace {

constexpr FlagRow kStateFlags[] = {
    {"remember", "rem", "s", kCreate},
    {"compare", "cmp", "s", kCreate},
    {"forget", "fgt", "s", kCreate},
};

std::map<std::string, SceneState>& remembered() {
    static std::map<std::string, SceneState> states;
    return states;
}

Status runHostState(const CommandCall& call, Value& result) {
    if (call.has("remember")) {
        remembered()[call.text("remember")] = stateOf(call.scene());
        return Status::ok();
    }
    if (!call.has("compare") && !call.has("forget"))
        return call.fail("needs one of the flags remember, compare, forget");
    const bool forget = call.has("forget");
    const std::string name = call.text(forget ? "forget" : "compare");
    const auto it = remembered().find(name);
    if (it == remembered().end())
        return call.fail("nothing remembered as '" + name + "'");
    if (forget)
        remembered().erase(it);
    else
        result = verifyJson(compareStates(it->second, stateOf(call.scene()), VerifyLimits()));
    return Status::ok();
}

}  // namespace

const Command kMeasureCommands[] = {
    {"hostState", kStateFlags, countOf(kStateFlags), runHostState,
     "Remembers the scene and compares it with its later self"},
};
const std::size_t kMeasureCommandCount = sizeof(kMeasureCommands) / sizeof(kMeasureCommands[0]);

}  // namespace torvel
