#pragma once

#include <vector>

#include "graph/math.h"

/// The rotate-plane method on bare numbers. All of it happens in the root frame: the space that the
/// root joint's rotation turns in, its position the origin, no length of which changes while the
/// root turns.
namespace torvel {

/// One joint of a chain. Its matrix is scale * turn * after + offset, where the turn is what the
/// solver looks for: rotate axis, rotate and joint orient together.
struct IkLink {
    V3d scale{1.0};
    M33d rest;   ///< the turn at the preferred angles
    M33d after;  ///< from the turned frame to the frame of the link before; unused for the root
    V3d offset{0.0};  ///< position in the frame of the link before; unused for the root
};

struct IkChain {
    std::vector<IkLink> links;  ///< root first
    V3d end{0.0};               ///< position of the effector in the frame of the last link
};

struct IkGoal {
    V3d position{0.0};
    V3d pole{
        0.0, 0.0,
        1.0};  ///< the side that the middle of the chain bends to; no length: no side is wanted
    double twist = 0.0;  ///< turns that side about the line from root to goal; radians
    bool hasPole =
        true;  ///< false: the root takes the shortest way from its start (single-chain solver)
    M33d
        start;  ///< single-chain solver: turn of the root to start from, as a turn of the rest pose
};

/// Reused between calls, so that a solve allocates nothing.
struct IkScratch {
    std::vector<M33d> pre;     ///< scale * rest of each link
    std::vector<M33d> frames;  ///< of each link in the rest pose
    std::vector<V3d> points;   ///< of each link and of the effector
    std::vector<V3d>
        axes;  ///< bend axis of each link in its turned frame; no length: it does not bend
    std::vector<double> bends;  ///< rest bend of each link against the one before
    std::vector<double> turns;  ///< added to the rest bends
};

/// The turn of each link that brings the effector to the goal: out of reach the chain is straight
/// and points at it, too near it is folded as far as it goes. From the preferred angles alone,
/// never from an earlier solution. A chain that is straight at its preferred angles does not bend.
/// What has no direction (goal at the root, pole along the line) is left as the shortest turn gives
/// it; nothing is ever not a number.
void solveIkChain(const IkChain& chain, const IkGoal& goal, IkScratch& scratch,
                  std::vector<M33d>& turns);

/// Turn about a unit axis by an angle (radians), row vectors.
M33d turnAbout(const V3d& axis, double angle);
/// Shortest turn from one unit vector to another; for opposite ones about some axis square to them.
M33d shortestTurn(const V3d& from, const V3d& to);

}  // namespace torvel
