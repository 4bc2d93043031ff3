#pragma once

#include <Imath/ImathMatrix.h>
#include <Imath/ImathQuat.h>
#include <Imath/ImathVec.h>

/// Row vectors, double precision: p' = p * M, world = local * parentWorld. Angles in radians,
/// lengths in centimetres.
namespace torvel {

using V3d = Imath::V3d;
using V3f = Imath::V3f;
using M44d = Imath::M44d;
using M33d = Imath::M33d;
using Quatd = Imath::Quatd;

inline constexpr double kPi = 3.14159265358979323846;
inline constexpr double kDegToRad = kPi / 180.0;
inline constexpr double kRadToDeg = 180.0 / kPi;

}  // namespace torvel
