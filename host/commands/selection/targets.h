#pragma once

#include <vector>

#include "script/command.h"
#include "edit/components.h"

namespace torvel {

/// One thing that a placement command works on: a transform, or points of a shape.
struct Target {
    NodeHandle node;  ///< the transform; for points the one above their shape
    bool isPoints = false;
    PointSet points;
};

/// Objects and components named in the call, or selected when it names none. Texts that start like
/// a number are no names. A shape stands for its transform. Failure for names that do not resolve.
Status targetsOf(const CommandCall& call, std::vector<Target>& out);

/// The numbers among the positional values in order; texts such as "45deg" give degrees, lengths
/// centimetres.
std::vector<double> numbersOfCall(const CommandCall& call);

}  // namespace torvel
