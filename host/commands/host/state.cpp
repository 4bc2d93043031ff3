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

// What a session's scripts remembered, by the names they gave.
struct RememberedStates {
    std::map<std::string, SceneState> byName;
};

// hostState(remember="a") keeps what --verify compares (points, weights, joint matrices, nodes,
// connections) under a name, compare="a" gives the comparison with now as JSON text, forget="a"
// drops it.
Status runHostState(const CommandCall& call, Value& result) {
    std::map<std::string, SceneState>& states = call.session().kept<RememberedStates>().byName;
    if (call.has("remember")) {
        states[call.text("remember")] = stateOf(call.scene());
        return Status::ok();
    }
    if (!call.has("compare") && !call.has("forget"))
        return call.fail("Needs one of the flags remember, compare and forget.");
    const bool forget = call.has("forget");
    const std::string name = call.text(forget ? "forget" : "compare");
    const auto it = states.find(name);
    if (it == states.end())
        return call.fail("Nothing is remembered as '" + name + "'.");
    if (forget)
        states.erase(it);
    else
        result = verifyJson(compareStates(it->second, stateOf(call.scene()), VerifyLimits()));
    return Status::ok();
}

const Command kStateCommands[] = {
    {"hostState", kStateFlags, countOf(kStateFlags), runHostState,
     "Remembers the scene and compares it with its later self"},
};

}  // namespace

CommandTable stateCommands() {
    return {kStateCommands, std::size(kStateCommands)};
}

}  // namespace torvel
