#pragma once

#include <string>

#include "graph/scene.h"

namespace torvel {

/// What a new handle hangs on.
struct IkWish {
    NodeHandle start;
    NodeHandle end;  ///< a joint below `start`, or an effector
    NodeHandle solver;
    std::string name;  ///< empty: ikHandle and a number
};

/// Node of the solver with this name, or a new one of that type, listed by the ikSystem. Failure
/// for unknown names and for solvers that are not evaluated.
Status ikSolverNamed(Scene& scene, const std::string& name, NodeHandle& solver);

/// Checks the ends, then makes effector and handle with all their connections: the handle at the
/// scene's top, where the end joint stands, its pole vector towards the middle of the chain. A
/// chain without preferred angles that is bent by its rotates takes these as preferred angles. On
/// failure nothing is made.
Status createIkHandle(Scene& scene, const IkWish& wish, NodeHandle& handle, NodeHandle& effector);

/// Effector for this end: `end` itself when it is one, else a new one beside the joint, following
/// its translate.
Status effectorFor(Scene& scene, NodeHandle end, NodeHandle& effector);

/// Gives the handle another solver, the pose kept: for a single chain the handle takes the start
/// joint's orientation.
void setSolver(Scene& scene, NodeHandle handle, NodeHandle solver);
/// Moves the handle to where its effector stands.
void snapToEffector(Scene& scene, NodeHandle handle);
/// Gives the pole vector of the handle the direction that keeps the present bend.
void setPoleToBend(Scene& scene, NodeHandle handle);

}  // namespace torvel
