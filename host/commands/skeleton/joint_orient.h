#pragma once

#include <string>

#include "graph/scene.h"

namespace torvel {

/// Letters of an orientation such as "xyz" or "yzx": axes 0 to 2 of aim, second and third. False
/// for other texts.
bool parseOrient(const std::string& text, int (&letters)[3]);

/// "xup", "ydown": world axis and sign to which the second axis points. "none" gives axis -1. False
/// for other texts.
bool parseSecondary(const std::string& text, int& axis, double& sign);

struct OrientOptions {
    int letters[3] = {0, 1, 2};
    int worldAxis =
        -1;  ///< -1: the last letter stands perpendicular to the bone and the way to the parent
    double worldSign = 1.0;
    bool zeroScaleOrient =
        false;  ///< rotateAxis becomes 0 and the children are kept in place instead
};

/// Points the first axis of a joint at its first child joint. Nothing happens while it is rotated
/// or has no child joint at a distance. Without zeroScaleOrient rotateAxis takes up the change, so
/// that nothing moves.
Status orientJoint(Scene& scene, NodeHandle joint, const OrientOptions& options);

/// jointOrient 0, its effect held by rotateAxis (`-oj none`).
Status clearJointOrient(Scene& scene, NodeHandle joint);

/// rotateAxis 0, its effect held by jointOrient; nothing moves.
Status clearRotateAxis(Scene& scene, NodeHandle joint);

}  // namespace torvel
