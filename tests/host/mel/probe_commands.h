#pragma once

#include <string>

#include "script/session.h"

namespace torvel::test {

/// A command that tells how it was called: "q name=a,b on | x 2".
inline std::string describeValue(const Value& value) {
    if (value.isString())
        return value.string();
    return value.isDouble() ? textOfDouble(value.number()) : std::to_string(value.integer());
}

inline Status runProbe(const CommandCall& call, Value& result) {
    std::string text = call.isQuery() ? "query" : call.isEdit() ? "edit" : "create";
    for (const FlagUse& use : call.m_flags) {
        text += std::string(" ") + use.row->longName;
        for (std::size_t i = 0; i < use.values.size(); ++i)
            text += (i ? "," : "=") + describeValue(use.values[i]);
    }
    text += " |";
    for (const Value& value : call.args())
        text += " " + describeValue(value);
    result = Value(text);
    return Status::ok();
}

inline Status runList(const CommandCall& call, Value& result) {
    result = Value::strings(call.texts());
    return Status::ok();
}

inline Status runFails(const CommandCall& call, Value&) {
    const std::string kind = call.texts().empty() ? "" : call.texts()[0];
    if (kind == "value")
        return Status::notFound("No object matches name: x");
    return kind == "type" ? Status::usage("Invalid flag 'x'") : call.fail("it went wrong");
}

inline constexpr FlagRow kProbeFlags[] = {{"name", "n", "s"},
                                          {"noWarn", "nw"},
                                          {"size", "s", "ii"},
                                          {"point", "p", "ddd", kAllModes, true},
                                          {"skip", "sk", "s", kAllModes, true},
                                          {"angle", "an", "a"},
                                          {"length", "le", "l"},
                                          {"visible", "vis", "b"},
                                          {"many", "m", "s*"},
                                          {"isType", "it", "s", kQuery, false, true},
                                          {"endEffector", "ee", "s"},
                                          {"create", "cr", "s", kCreate}};
inline constexpr Command kProbeCommands[] = {{"probe", kProbeFlags, countOf(kProbeFlags), runProbe},
                                             {"list", nullptr, 0, runList},
                                             {"fails", nullptr, 0, runFails}};

}  // namespace torvel::test
