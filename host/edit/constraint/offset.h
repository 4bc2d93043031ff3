#pragma once

#include "edit/constraint/kinds.h"
#include "nodes/transform/transform.h"

/// Offsets that keep a constrained object where it is.
namespace torvel {

struct ParentOffset {
    V3d translate;
    V3d rotate;  ///< in the object's rotate order
};

/// Place and rotation of the object, as `present` has them under its parent, seen from the target
/// as it stands.
ParentOffset parentOffset(const Scene& scene, const Channels& present, NodeHandle object,
                          NodeHandle target);

/// Sets `offset` of a constraint that has one for the whole (any but OffsetOf::Target) so that it
/// puts out what `present` says. Axes of scale that come out as 0 keep the offset 1.
void bakeOffset(Scene& scene, const ConstraintKind& kind, NodeHandle constraint,
                const Channels& present);

}  // namespace torvel
