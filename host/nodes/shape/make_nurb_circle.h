#pragma once

#include <memory>

#include "graph/data.h"

namespace torvel {

/// The most sections of one circle; a maker that is given more makes so many.
inline constexpr double kMostCircleSections = 1e5;

/// What a circle is made of. The plane's axes are those of the XY plane after the smallest turn
/// that brings +Z onto the normal; a normal without length leaves them where they are.
struct CircleForm {
    V3d center{0.0};
    V3d normal{0.0, 0.0, 1.0};
    double sweep = 6.283185307179586;  ///< radians; a full turn or more closes the curve
    double radius = 1.0;
    int degree = 3;    ///< 1: a polygon with its corners on the circle; else 3
    int sections = 8;  ///< at least 3 for a full turn, 1 otherwise
};

/// A full turn is a periodic curve with one span a section: of degree 3 its knots run through the
/// circle's points at the ends of the sections. The first section starts at the second axis of the
/// plane and turns to the first one's other side. An arc is an open curve that starts there.
std::shared_ptr<const NurbsCurveData> circleCurve(const CircleForm& form);

}  // namespace torvel
