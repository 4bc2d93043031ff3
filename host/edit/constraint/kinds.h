#pragma once

#include <vector>

#include "graph/scene.h"

namespace torvel {

/// A connection that a constraint gets from a target or from the object: own attribute and the
/// other node's.
struct ConstraintLink {
    const char* own;
    const char* other;
    bool jointsOnly = false;
};

/// What an offset that keeps the object in its place consists of.
enum class OffsetOf {
    Translate,  ///< added to the translation put out
    Rotate,     ///< turned in front of the rotation put out
    Scale,      ///< factors of the scale put out
    Target      ///< a placement in each target's own element
};

/// What the commands know of one constraint type: everything in which the kinds differ beyond their
/// node types and flags.
struct ConstraintKind {
    const char* type;                         ///< node type and command
    std::vector<ConstraintLink> targetLinks;  ///< own: child of `target`
    std::vector<ConstraintLink> objectLinks;
    std::vector<ConstraintLink>
        outputs;  ///< compounds: own output, channel of the object; child by child
    OffsetOf offset;
    bool keyableWeights = true;  ///< aim: the weight is added plain and made keyable afterwards
    const char* blendAttr = nullptr;  ///< attribute on keyed objects that mixes keys and constraint
    bool holdsPole = false;           ///< constrains ikHandles; measured from their start joint
};

/// Null for a type the commands do not make.
const ConstraintKind* constraintKind(std::string_view type);

}  // namespace torvel
