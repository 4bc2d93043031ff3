#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/value.h"
#include "script/command.h"
#include "edit/channels.h"
#include "graph/scene.h"

namespace torvel {

/// Internal units to those of scripts: degrees for angles, everything else as it is.
double uiScale(const AttrInfo& info);

/// A stored number as scripts see it: bool, int (enums, too) or float in script units.
Value numberValue(const AttrInfo& info, double internal);

/// The plug that "node.attr" names, the way loops over many nodes need it: no text is built. Null
/// when the node is missing or ambiguous or has no such attribute.
Plug fastPlug(const Scene& scene, std::string_view text);

/// Evaluates the plug and gives its value as getAttr returns it: scalar, text (none when unset),
/// [(x, y, z)] for a compound of numbers, 16 doubles for a matrix, a list for arrays. A failure
/// names what cannot be shown.
Status readValue(const CommandCall& call, const Plug& plug, bool enumAsText, Value& out);

struct WriteOptions {
    std::string type;    ///< as -type gives it; empty for plain numbers
    bool clamp = false;  ///< to the attribute's range instead of refusing
};

/// Writes script values to a settable plug. Numbers outside the attribute's range, a wrong count or
/// a type that does not fit are refused and nothing is written.
Status writeValue(const CommandCall& call, const Plug& plug, const Value* values, std::size_t count,
                  const WriteOptions& options);

}  // namespace torvel
