#include "commands/host/coverage.h"

#include <algorithm>
#include <map>

#include "script/session.h"
#include "nodes/node_table.h"

namespace torvel {

namespace {

constexpr const char* kHead =
    "# What the host covers\n\n"
    "This page is made from the tables of the program, never by hand:\n\n"
    "```\npython3 tools/generate/coverage.py\n```\n\n"
    "A test fails when it is out of date.\n";

constexpr const char* kTypesHead =
    "\n## Node types\n\n"
    "*evaluated*: its outputs are computed from its inputs. *hands geometry on*: a deformer "
    "without an "
    "effect here. *data*: read, listed, connected and saved, nothing is computed (a place in the "
    "hierarchy always is). Types that stand in no row are kept as text and written back.\n\n"
    "| type | made from | works as | attributes |\n|---|---|---|---|\n";

constexpr const char* kCommandsHead =
    "\n## Commands\n\n"
    "Flags as long name (short name); what is not listed is refused by name.\n\n"
    "| command | what it does | flags |\n|---|---|---|\n";

using Evaluate = void (*)(Evaluation&);

Evaluate evaluateOf(const char* type) {
    const NodeType* found = nodeTypes().find(type);
    return found ? found->evaluate : nullptr;
}

// A function that a type only inherits from its place in the hierarchy computes nothing of its own.
const char* workOf(const NodeType& type) {
    const bool isTransform = type.name == "transform" || type.name == "joint";
    const bool placed =
        type.evaluate == evaluateOf("dagNode") || type.evaluate == evaluateOf("transform");
    if (type.declareWrites || isTransform ||
        (type.evaluate && !placed && type.evaluate != evaluateOf("geometryFilter")))
        return "evaluated";
    return type.evaluate && !placed ? "hands geometry on" : "data";
}

std::string typeRows() {
    std::map<std::string, const NodeType*> sorted;
    for (const auto& type : nodeTypes().all())
        if (!type->is(kAbstractType))
            sorted[type->name] = type.get();
    std::string text;
    for (const auto& [name, type] : sorted) {
        const auto named = std::count_if(type->attrs.begin(), type->attrs.end(),
                                         [](const AttrInfo& info) { return !info.is(kOpaque); });
        text += "| " + name + " | " + (type->base ? type->base->name : std::string()) + " | " +
                workOf(*type) + " | " + std::to_string(named) + " |\n";
    }
    return text;
}

std::string flagsOf(const Command& command) {
    std::vector<std::string> flags;
    for (std::size_t i = 0; i < command.flagCount; ++i)
        flags.push_back(std::string(command.flags[i].longName) + " (" + command.flags[i].shortName +
                        ")");
    std::sort(flags.begin(), flags.end());
    std::string text;
    for (const std::string& flag : flags)
        text += (text.empty() ? "" : ", ") + flag;
    return text;
}

Status runCoverage(const CommandCall& call, Value& result) {
    result = Value(coverageText(call.session()));
    return Status::ok();
}

constexpr Command kCommands[] = {
    {"hostCoverage", nullptr, 0, runCoverage, "The page on what the host covers, as text."},
};

}  // namespace

std::string coverageText(const Session& session) {
    std::string text = std::string(kHead) + kTypesHead + typeRows() + kCommandsHead;
    for (const auto& [name, command] : session.commands())
        text += "| " + name + " | " + command->help + " | " + flagsOf(*command) + " |\n";
    return text;
}

CommandTable coverageCommands() {
    return {kCommands, std::size(kCommands)};
}

}  // namespace torvel
