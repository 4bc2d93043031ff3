#include "nodes/constraint/math.h"

#include <cmath>

namespace torvel {
namespace {

constexpr double kNothing = 1e-12;

double dot(const Quatd& a, const Quatd& b) {
    return a.r * b.r + a.v.dot(b.v);
}

Quatd axisTurn(int axis, double angle) {
    V3d v(0.0);
    v[axis] = std::sin(0.5 * angle);
    return Quatd(std::cos(0.5 * angle), v);
}

M44d rowsOf(const V3d& x, const V3d& y, const V3d& z) {
    return {x.x, x.y, x.z, 0, y.x, y.y, y.z, 0, z.x, z.y, z.z, 0, 0, 0, 0, 1};
}

}  // namespace

Quatd inTurn(const Quatd& first, const Quatd& second) {
    return {second.r * first.r - second.v.dot(first.v),
            first.v * second.r + second.v * first.r + second.v.cross(first.v)};
}

Quatd quaternionOfAngles(const V3d& angles, int rotateOrder) {
    const AxisOrder order = axisOrder(rotateOrder);
    const Quatd inner = inTurn(axisTurn(order.first, angles[order.first]),
                               axisTurn(order.second, angles[order.second]));
    return inTurn(inner, axisTurn(order.third, angles[order.third]));
}

// The largest of the four parts is taken by its root: dividing by a small one would lose digits.
// S. W. Shepperd, "Quaternion from Rotation Matrix", J. Guidance and Control 1(3) (1978).
Quatd quaternionOfMatrix(const M44d& m) {
    const double trace = m[0][0] + m[1][1] + m[2][2];
    if (trace > 0.0) {
        const double r = 0.5 * std::sqrt(1.0 + trace), f = 0.25 / r;
        return {r, V3d(m[1][2] - m[2][1], m[2][0] - m[0][2], m[0][1] - m[1][0]) * f};
    }
    int i = m[1][1] > m[0][0] ? 1 : 0;
    if (m[2][2] > m[i][i])
        i = 2;
    const int j = (i + 1) % 3, k = (i + 2) % 3;
    Quatd q;
    q.v[i] = 0.5 * std::sqrt(1.0 + m[i][i] - m[j][j] - m[k][k]);
    const double f = 0.25 / q.v[i];
    q.v[j] = (m[i][j] + m[j][i]) * f;
    q.v[k] = (m[i][k] + m[k][i]) * f;
    q.r = (m[j][k] - m[k][j]) * f;
    return q.r < 0.0 ? Quatd(-q.r, -q.v) : q;
}

M44d matrixOfQuaternion(const Quatd& q) {
    const double x = q.v.x, y = q.v.y, z = q.v.z, r = q.r;
    return rowsOf({1 - 2 * (y * y + z * z), 2 * (x * y + z * r), 2 * (z * x - y * r)},
                  {2 * (x * y - z * r), 1 - 2 * (z * z + x * x), 2 * (y * z + x * r)},
                  {2 * (z * x + y * r), 2 * (y * z - x * r), 1 - 2 * (y * y + x * x)});
}

// The normalised weighted sum of quaternions on one side, the linear blend of L. Kavan and J. Zara,
// "Spherical Blend Skinning" (I3D 2005); which side is what the kinds of interpolation differ in.
void RotationMean::add(const Quatd& rotation, double weight) {
    Quatd q = rotation;
    const double side = dot(q, m_interpolation == kNoFlip ? m_last : m_sum);
    const bool flip = (m_interpolation == kNoFlip || m_interpolation == kShortest)
                          ? side < 0.0
                          : m_interpolation == kLongest && side > 0.0;
    if (flip)
        q = Quatd(-q.r, -q.v);
    if (!m_any)
        m_first = q;
    m_any = true;
    m_sum = Quatd(m_sum.r + q.r * weight, m_sum.v + q.v * weight);
}

Quatd RotationMean::result() const {
    const double length = std::sqrt(dot(m_sum, m_sum));
    return length > kNothing ? Quatd(m_sum.r / length, m_sum.v / length) : m_first;
}

V3d anySquareTo(const V3d& v) {
    const V3d helper = std::fabs(v.x) < 0.9 * v.length() ? V3d(1, 0, 0) : V3d(0, 1, 0);
    return v.cross(helper).normalized();
}

bool aimRotation(const AimFrame& frame, const V3d& direction, const V3d& worldUp, M44d& rotation) {
    const V3d a = direction.normalized();
    V3d z = a.cross(worldUp);
    const double length = z.length();
    if (!(length > kNothing * worldUp.length()) || length == 0.0)
        return false;
    z /= length;
    const V3d aim = frame.aimVector.normalized();
    V3d side = aim.cross(frame.upVector);
    const double sideLength = side.length();
    side = sideLength > kNothing ? side / sideLength : anySquareTo(aim);
    const M44d from = rowsOf(aim, side.cross(aim), side), to = rowsOf(a, z.cross(a), z);
    rotation = from.transposed() * to;
    return true;
}

// By the quaternion (1 + a.b, a x b): S. Melax, "The Shortest Arc Quaternion", Game Programming
// Gems (2000).
M44d smallestRotation(const V3d& from, const V3d& to) {
    const V3d a = from.normalized(), b = to.normalized();
    const double real = 1.0 + a.dot(b);
    if (real < kNothing)
        return matrixOfQuaternion(Quatd(0.0, anySquareTo(a)));
    return matrixOfQuaternion(Quatd(real, a.cross(b)).normalized());
}

M44d timesInverse(const M44d& a, const M44d& rotation) {
    M44d out;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            out[i][j] =
                a[i][0] * rotation[j][0] + a[i][1] * rotation[j][1] + a[i][2] * rotation[j][2];
    return out;
}

}  // namespace torvel
