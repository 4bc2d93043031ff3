#pragma once

#include <string>
#include <string_view>

#include "base/status.h"
#include "files/ma/units.h"
#include "graph/data.h"

namespace torvel {

/// Reads what follows `-type "typeName"` of a setAttr into the payload that an attribute of type
/// `wanted` holds: texts, matrices, arrays, component lists, curves. A type that the host does not
/// read becomes TextData, verbatim. Fails on a text that is damaged for its type; the sentence says
/// what was expected. `nonFinite` grows by the infinities and NaNs that were read.
Status readDataValue(std::string_view typeName, AttrType wanted, std::string_view text,
                     PayloadPtr& value, std::size_t& nonFinite);

/// Appends ` -type "typeName" values`. Nothing, and false, for a payload that files do not hold.
bool appendDataValue(std::string& out, AttrType type, const Payload& value);

}  // namespace torvel
