#include <algorithm>

#include "edit/sets.h"
#include "script/session.h"

namespace torvel {
namespace {

const FlagRow kSetsFlags[] = {
    {"addElement", "add", "s"},  {"clear", "cl", "s"},   {"empty", "em"},
    {"forceElement", "fe", "s"}, {"include", "in", "s"}, {"isMember", "im", "s"},
    {"name", "n", "s"},          {"remove", "rm", "s"},  {"size", "s"},
};

Status namedSet(const CommandCall& call, const char* flag, NodeHandle& set) {
    if (Status found = call.resolve(call.text(flag), set); !found)
        return found;
    return call.scene().isType(set, "objectSet")
               ? Status::ok()
               : call.fail("'" + call.text(flag) + "' is not a set.");
}

Status querySet(const CommandCall& call, Value& result) {
    std::vector<NodeHandle> sets;
    if (Status found = call.objects(sets); !found)
        return found;
    std::vector<std::string> names;
    for (NodeHandle set : sets)
        for (const SelectionItem& item : setMembers(call.scene(), set))
            names.push_back(call.scene().names().shortest(item.node));
    if (call.has("size"))
        result = Value(static_cast<std::int64_t>(names.size()));
    else if (!names.empty())
        result = Value::strings(names);
    return Status::ok();
}

Status editSet(const CommandCall& call, const char* flag, Value& result) {
    Scene& scene = call.scene();
    NodeHandle set;
    if (Status found = namedSet(call, flag, set); !found)
        return found;
    std::vector<NodeHandle> members;
    if (Status found = call.objectsOrSelection(members); !found)
        return found;
    const std::string what = flag;
    if (what == "isMember") {
        bool all = !members.empty();
        const std::vector<SelectionItem> own = setMembers(scene, set);
        for (NodeHandle member : members)
            all = all && std::any_of(own.begin(), own.end(),
                                     [&](const SelectionItem& i) { return i.node == member; });
        result = Value(all);
        return Status::ok();
    }
    if (what == "clear")
        for (const SelectionItem& item : setMembers(scene, set))
            removeFromSet(scene, set, item.node);
    for (NodeHandle member : members) {
        if (what == "remove")
            removeFromSet(scene, set, member);
        else if (what != "clear")
            if (Status done = addToSet(scene, set, member); !done)
                return done;
    }
    result = Value(scene.names().shortest(set));
    return Status::ok();
}

Status sets(const CommandCall& call, Value& result) {
    if (call.isQuery())
        return querySet(call, result);
    for (const char* flag :
         {"isMember", "addElement", "include", "forceElement", "remove", "clear"})
        if (call.has(flag))
            return editSet(call, flag, result);
    Scene& scene = call.scene();
    std::vector<NodeHandle> members;
    if (!call.has("empty"))
        if (Status found = call.objectsOrSelection(members); !found)
            return found;
    NodeHandle set;
    if (Status made = scene.createNode("objectSet",
                                       call.text("name", scene.names().numbered("set")), {}, set);
        !made)
        return made;
    for (NodeHandle member : members)
        if (Status done = addToSet(scene, set, member); !done)
            return done;
    result = Value(scene.names().shortest(set));
    return Status::ok();
}

const Command kSetCommands[] = {
    {"sets", kSetsFlags, countOf(kSetsFlags), sets, "Makes and changes object sets."}};

}  // namespace

CommandTable setCommands() {
    return {kSetCommands, std::size(kSetCommands)};
}

}  // namespace torvel
