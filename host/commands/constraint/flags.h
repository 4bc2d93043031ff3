#pragma once

#include "script/command.h"

/// The constraint commands with their flags, and those flags that set attributes of the
/// constraint.
namespace torvel {

/// What all constraint commands do; the kind is that of the call's name.
Status constrain(const CommandCall& call, Value& result);

/// Failure that names the flag for what the host does not do: caches and animation layers.
Status refuseUncovered(const CommandCall& call);

/// Bits of the axes that -skip, -skipTranslate and -skipRotate name, in the order of the kind's
/// outputs; "none" and other texts name none.
unsigned skippedAxes(const CommandCall& call);
bool givesSkips(const CommandCall& call);

/// Offset, aim vectors, world up settings, scale compensation. Failure for an up type or object
/// that does not exist.
Status applyConstraintFlags(const CommandCall& call, NodeHandle constraint);

/// The value of the one such flag that the query names; false when it names none of them.
bool queryConstraintFlags(const CommandCall& call, NodeHandle constraint, Value& result);

}  // namespace torvel
