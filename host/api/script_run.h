#pragma once

#include <functional>
#include <string>

#include <maya/MStatus.h>
#include <maya/MString.h>

#include "api/script_result.h"

namespace torvel::api {

/// One text that the API is asked to run.
struct Script {
    ScriptLanguage language;
    const char*
        form;  ///< as the record names it: "plain", "string", "stringArray", "stringResult" ...
    const MString& text;
    bool display;
    bool undo;
};

/// Runs the text, hands its value to `take` (false: it does not fit) and records all of it.
/// `recorded` is what the record shows as the result. No exception leaves this function.
using Taker = std::function<bool(const Value& value, Value& recorded)>;
MStatus runScript(const Script& script, const Taker& take);

}  // namespace torvel::api
