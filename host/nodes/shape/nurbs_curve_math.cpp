#include "nodes/shape/nurbs_curve_math.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace torvel {
namespace {

constexpr int kHighestDegree = 7;

// Homogeneous point or derivative: x y z w.
struct Weighted {
    V3d point{0.0};
    double weight = 0.0;
};

std::size_t degreeOf(const NurbsCurveData& curve) {
    return static_cast<std::size_t>(curve.degree);
}

// The textbook behind this file: L. Piegl and W. Tiller, "The NURBS Book", 2nd ed. (1997).

// Number of the first of the degree + 1 control points that shape the span at `u`.
std::size_t spanAt(const NurbsCurveData& curve, double u) {
    const std::size_t degree = degreeOf(curve), last = curve.knots.size() - degree;
    const auto begin = curve.knots.begin() + static_cast<std::ptrdiff_t>(degree) - 1;
    const auto end = curve.knots.begin() + static_cast<std::ptrdiff_t>(last);
    auto at = std::upper_bound(begin, end, u);
    if (at == begin)
        ++at;
    // The end of the range belongs to the last span that is not empty.
    while (at != begin + 1 && *(at - 1) >= *end)
        --at;
    return static_cast<std::size_t>(at - begin) - 1;
}

// One round of de Boor's corner cutting, on homogeneous points: `count` points become count - 1.
// `level` counts from the degree down.
void cutCorners(const NurbsCurveData& curve, double u, std::size_t span, std::size_t level,
                std::array<Weighted, kHighestDegree + 1>& p) {
    const std::size_t degree = degreeOf(curve);
    for (std::size_t i = 0; i < level; ++i) {
        const double low = curve.knots[span + i + degree - level],
                     high = curve.knots[span + i + degree];
        const double t = high > low ? (u - low) / (high - low) : 0.0;
        p[i].point = p[i].point * (1.0 - t) + p[i + 1].point * t;
        p[i].weight = p[i].weight * (1.0 - t) + p[i + 1].weight * t;
    }
}

double within(const NurbsCurveData& curve, double u) {
    const double first = firstParameter(curve), last = lastParameter(curve);
    if (curve.form == 2 && last > first && (u < first || u > last))
        u = first + std::fmod(std::fmod(u - first, last - first) + (last - first), last - first);
    return std::clamp(u, first, last);
}

// Gauss-Legendre quadrature with eight nodes: Abramowitz and Stegun, table 25.4.
constexpr double kNodes[] = {0.1834346424956498, 0.5255324099163290, 0.7966664774136267,
                             0.9602898564975363};
constexpr double kWeights[] = {0.3626837833783620, 0.3137066458778873, 0.2223810344533745,
                               0.1012285362903763};

double lengthOfPiece(const NurbsCurveData& curve, double from, double to) {
    const double middle = (from + to) / 2.0, half = (to - from) / 2.0;
    double sum = 0.0;
    for (int i = 0; i < 4; ++i)
        sum += kWeights[i] * (curveAt(curve, middle - half * kNodes[i]).tangent.length() +
                              curveAt(curve, middle + half * kNodes[i]).tangent.length());
    return sum * half;
}

// Halved until the two halves agree with the whole.
double lengthOfSpan(const NurbsCurveData& curve, double from, double to, double coarse, int depth) {
    const double middle = (from + to) / 2.0;
    const double left = lengthOfPiece(curve, from, middle),
                 right = lengthOfPiece(curve, middle, to);
    if (depth == 0 || std::abs(left + right - coarse) <= 1e-10 * (1e-12 + left + right))
        return left + right;
    return lengthOfSpan(curve, from, middle, left, depth - 1) +
           lengthOfSpan(curve, middle, to, right, depth - 1);
}

// The knots between which the curve is smooth, both ends of the range included.
std::vector<double> breaksOf(const NurbsCurveData& curve) {
    std::vector<double> breaks;
    for (std::size_t i = degreeOf(curve) - 1; i + degreeOf(curve) <= curve.knots.size(); ++i)
        if (breaks.empty() || curve.knots[i] > breaks.back())
            breaks.push_back(curve.knots[i]);
    return breaks;
}

}  // namespace

std::string curveFault(const NurbsCurveData& curve) {
    const std::size_t points = curve.cvs.size();
    if (curve.degree < 1 || curve.degree > kHighestDegree)
        return "A curve's degree is 1 to 7, not " + std::to_string(curve.degree) + ".";
    if (points < degreeOf(curve) + 1)
        return "A curve of degree " + std::to_string(curve.degree) + " needs at least " +
               std::to_string(curve.degree + 1) + " points, not " + std::to_string(points) + ".";
    const std::size_t wanted = points + degreeOf(curve) - 1;
    if (curve.knots.size() != wanted)
        return std::to_string(points) + " points of degree " + std::to_string(curve.degree) +
               " need " + std::to_string(wanted) + " knots, not " +
               std::to_string(curve.knots.size()) + ".";
    if (!std::is_sorted(curve.knots.begin(), curve.knots.end()))
        return "Knots must not descend.";
    return curve.rational && curve.weights.size() != points ? "Each point needs its weight." : "";
}

double firstParameter(const NurbsCurveData& curve) {
    return curve.knots[degreeOf(curve) - 1];
}

double lastParameter(const NurbsCurveData& curve) {
    return curve.knots[curve.knots.size() - degreeOf(curve)];
}

CurvePoint curveAt(const NurbsCurveData& curve, double parameter) {
    const double u = within(curve, parameter);
    const std::size_t degree = degreeOf(curve), span = spanAt(curve, u);
    std::array<Weighted, kHighestDegree + 1> p;
    for (std::size_t i = 0; i <= degree; ++i) {
        const double weight = curve.rational ? curve.weights[span + i] : 1.0;
        p[i] = {curve.cvs[span + i] * weight, weight};
    }
    for (std::size_t level = degree; level > 1; --level)
        cutCorners(curve, u, span, level, p);
    // Two points are left: their difference is the derivative, by the quotient rule for the
    // weights.
    const double low = curve.knots[span + degree - 1], high = curve.knots[span + degree];
    const double rate = high > low ? static_cast<double>(degree) / (high - low) : 0.0;
    const V3d slope = (p[1].point - p[0].point) * rate;
    const double weightSlope = (p[1].weight - p[0].weight) * rate;
    cutCorners(curve, u, span, 1, p);
    CurvePoint out;
    const double weight = p[0].weight != 0.0 ? p[0].weight : 1.0;
    out.position = p[0].point / weight;
    out.tangent = (slope - out.position * weightSlope) / weight;
    return out;
}

double curveLength(const NurbsCurveData& curve, double from, double to) {
    double length = 0.0;
    const std::vector<double> breaks = breaksOf(curve);
    for (std::size_t i = 1; i < breaks.size(); ++i) {
        const double a = std::max(from, breaks[i - 1]), b = std::min(to, breaks[i]);
        if (b > a)
            length +=
                lengthOfSpan(curve, a, b, lengthOfPiece(curve, a, b), curve.degree == 1 ? 0 : 12);
    }
    return length;
}

double curveLength(const NurbsCurveData& curve) {
    return curveLength(curve, firstParameter(curve), lastParameter(curve));
}

std::vector<V3d> curvePolyline(const NurbsCurveData& curve, int perSpan) {
    if (curve.degree == 1 || !curveFault(curve).empty())
        return curve.cvs;
    const std::vector<double> breaks = breaksOf(curve);
    std::vector<V3d> points{curveAt(curve, breaks.front()).position};
    for (std::size_t i = 1; i < breaks.size(); ++i)
        for (int step = 1; step <= perSpan; ++step) {
            const double t = static_cast<double>(step) / perSpan;
            points.push_back(curveAt(curve, breaks[i - 1] * (1.0 - t) + breaks[i] * t).position);
        }
    return points;
}

std::vector<double> clampedKnots(std::size_t points, int degree) {
    const int spans = static_cast<int>(points) - degree;
    std::vector<double> knots;
    for (int i = 1 - degree; i < spans + degree; ++i)
        knots.push_back(std::clamp(i, 0, std::max(spans, 0)));
    return knots;
}

}  // namespace torvel
