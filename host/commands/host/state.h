#pragma once

#include <cstddef>

#include "script/command.h"

namespace torvel {

/// hostState: `hostState(remember="a")` keeps what --verify compares (points, weights, joint
/// matrices, nodes, connections) under a name; `hostState(compare="a")` gives the comparison with
/// now as JSON text; `hostState(forget="a")` drops it. "hostState: nothing remembered as 'a'".
extern const Command kMeasureCommands[];
extern const std::size_t kMeasureCommandCount;

}  // namespace torvel
