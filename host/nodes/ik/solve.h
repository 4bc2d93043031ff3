#pragma once

#include "graph/plug.h"

namespace torvel {

/// Attribute positions of ikHandle (and fkRotate of joints), looked up once.
struct IkAttrs {
    AttrIndex solution, startJoint, endEffector, ikSolver, poleVector, twist, ikBlend, solverEnable;
    AttrIndex fkRotate;     ///< of joint: the pose by hand under a blended handle
    AttrIndex globalSolve;  ///< of ikSystem
};
const IkAttrs& ikAttrs();

}  // namespace torvel
