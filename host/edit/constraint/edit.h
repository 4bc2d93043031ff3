#pragma once

#include <string>
#include <vector>

#include "edit/constraint/kinds.h"
#include "nodes/transform/transform.h"

/// Building and changing constraints; the commands and deletion share it. Nothing here selects.
namespace torvel {

/// One target of a constraint.
struct ConstraintTarget {
    std::int32_t element;  ///< logical index in `target`
    NodeHandle node;       ///< the transform that feeds the element
    Plug weight;  ///< the constraint's own added attribute, or `targetWeight` when there is none
};

/// Targets by ascending index; elements that no transform feeds are left out.
std::vector<ConstraintTarget> constraintTargets(const Scene& scene, NodeHandle constraint);

/// The constraint of this kind below `object` that drives it; null when there is none.
NodeHandle findConstraint(const Scene& scene, const ConstraintKind& kind, NodeHandle object);

/// Something of `constraint` drives a plug of `object`, straight or through a pairBlend.
bool constraintFeeds(const Scene& scene, NodeHandle constraint, NodeHandle object);

/// The node that a constraint drives: its parent; null for a constraint without one.
NodeHandle constrainedObject(const Scene& scene, NodeHandle constraint);

/// Makes the node below `object` (name: "{object}_{type}{n}" unless one is wanted), linked to the
/// object's inputs but not driving it yet. The present values become its rest values.
Status makeConstraint(Scene& scene, const ConstraintKind& kind, NodeHandle object,
                      const std::string& wantedName, NodeHandle& made);

/// Adds a target after the highest index, with its weight attribute. For parent constraints an
/// offset that keeps the object where it is stands in the new element when `keepPlace` is on.
Status addConstraintTarget(Scene& scene, const ConstraintKind& kind, NodeHandle constraint,
                           NodeHandle target, double weight, bool keepPlace);

/// Makes the present outputs the rest values.
void storeRest(Scene& scene, const ConstraintKind& kind, NodeHandle constraint);

/// Lets the outputs drive the object's channels, except those whose bit is set in `skipped` (0-2:
/// the axes of the first output, 3-5: of the second); channels that they drive already stay. Keyed
/// channels are mixed through a pairBlend. A locked channel or one that something else drives is a
/// failure that names both ends: nothing is connected then.
Status driveObject(Scene& scene, const ConstraintKind& kind, NodeHandle constraint,
                   unsigned skipped);

/// Frees the channels that the outputs drive directly.
void releaseObject(Scene& scene, const ConstraintKind& kind, NodeHandle constraint);

/// Bakes the offset anew so that the object stays as `present` says (its channels before the
/// constraint drove it). Parent constraints: for each of `targets` in its own element; others: one
/// offset for the whole.
void maintainOffset(Scene& scene, const ConstraintKind& kind, NodeHandle constraint,
                    const Channels& present, const std::vector<ConstraintTarget>& targets);

/// Removes an element of `target` with the weight attribute that feeds it.
void removeConstraintTarget(Scene& scene, NodeHandle constraint, std::int32_t element);

}  // namespace torvel
