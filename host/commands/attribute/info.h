#pragma once

#include "base/value.h"
#include "script/command.h"
#include "graph/attribute.h"

namespace torvel {

/// What a flag of attributeQuery (or of addAttr in query mode) asks about an attribute, numbers in
/// script units; none when no such flag is given or the attribute has no such thing. Of several
/// flags the first in the order of the table is answered.
Value attributeFact(const CommandCall& call, const AttrInfo& info);

}  // namespace torvel
