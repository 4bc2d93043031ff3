#pragma once

#include "script/command.h"

/// The flags of the constraint commands, and those among them that set attributes of the
/// constraint.
namespace torvel {

extern const FlagRow kParentFlags[];
extern const std::size_t kParentFlagCount;
extern const FlagRow kPointFlags[];
extern const std::size_t kPointFlagCount;
extern const FlagRow kOrientFlags[];
extern const std::size_t kOrientFlagCount;
extern const FlagRow kScaleFlags[];
extern const std::size_t kScaleFlagCount;
extern const FlagRow kAimFlags[];
extern const std::size_t kAimFlagCount;
extern const FlagRow kPoleFlags[];
extern const std::size_t kPoleFlagCount;

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
