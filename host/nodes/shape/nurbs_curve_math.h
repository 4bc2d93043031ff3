#pragma once

#include <string>
#include <vector>

#include "graph/data.h"

/// Points on NURBS curves. The knot lists are those of the curve data: points + degree - 1 values,
/// the first and the last of the textbook form left out. A curve runs from knot number degree - 1
/// to the one as far from the end.
namespace torvel {

struct CurvePoint {
    V3d position{0.0};
    V3d tangent{0.0};  ///< derivative by the parameter, not normalised
};

/// What is wrong with the counts and knots of a curve; empty for a sound one.
std::string curveFault(const NurbsCurveData& curve);

double firstParameter(const NurbsCurveData& curve);
double lastParameter(const NurbsCurveData& curve);

/// Position and derivative at a parameter; outside the range the nearer end counts, for periodic
/// curves the parameter wraps around. The curve has to be sound.
CurvePoint curveAt(const NurbsCurveData& curve, double parameter);

/// Length between two parameters, to about nine digits.
double curveLength(const NurbsCurveData& curve, double from, double to);
double curveLength(const NurbsCurveData& curve);

/// Points along the curve for drawing: the corners of a degree 1 curve, `perSpan` steps a span
/// otherwise. A curve that is not sound gives its control points.
std::vector<V3d> curvePolyline(const NurbsCurveData& curve, int perSpan = 8);

/// Whole-number knots with `degree` equal ones at each end: 0 0 0 1 2 2 2.
std::vector<double> clampedKnots(std::size_t points, int degree);

}  // namespace torvel
