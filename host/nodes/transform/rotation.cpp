#include "nodes/transform/rotation.h"

#include <algorithm>
#include <cmath>

namespace torvel {
namespace {

constexpr AxisOrder kOrders[] = {{0, 1, 2, true},  {1, 2, 0, true},  {2, 0, 1, true},
                                 {0, 2, 1, false}, {1, 0, 2, false}, {2, 1, 0, false}};

constexpr double kGimbal = 1e-11;  // below this length the outer axes count as parallel
constexpr double kNoLength = 1e-100;

double nearTurn(double angle, double hint) {
    return angle + 2.0 * kPi * std::round((hint - angle) / (2.0 * kPi));
}

V3d nearTurns(const V3d& angles, const V3d& hint) {
    return {nearTurn(angles.x, hint.x), nearTurn(angles.y, hint.y), nearTurn(angles.z, hint.z)};
}

V3d closest(const V3d& angles, const AxisOrder& order, const V3d& hint) {
    V3d other = angles;
    other[order.first] += kPi;
    other[order.second] = kPi - other[order.second];
    other[order.third] += kPi;
    const V3d a = nearTurns(angles, hint), b = nearTurns(other, hint);
    return (b - hint).length2() < (a - hint).length2() ? b : a;
}

V3d rowOf(const M44d& m, int row) {
    return {m[row][0], m[row][1], m[row][2]};
}

void setRow(M44d& m, int row, const V3d& value) {
    for (int i = 0; i < 3; ++i)
        m[row][i] = value[i];
}

// Some unit vector square to the given ones; `b` may be null.
V3d squareTo(const V3d& a, const V3d* b) {
    if (b)
        return a.cross(*b);
    const V3d helper = std::fabs(a.x) < 0.9 ? V3d(1, 0, 0) : V3d(0, 1, 0);
    return a.cross(helper).normalized();
}

struct Signs {
    double s[3] = {1.0, 1.0, 1.0};
};

Signs signsOf(bool mirrored, const V3d* hint) {
    Signs out;
    const double sign = mirrored ? -1.0 : 1.0;
    if (hint && hint->x * hint->y * hint->z * sign > 0.0)
        for (int i = 0; i < 3; ++i)
            out.s[i] = (*hint)[i] < 0.0 ? -1.0 : 1.0;
    else if (mirrored)
        out.s[0] = out.s[1] = out.s[2] = -1.0;
    return out;
}

}  // namespace

AxisOrder axisOrder(int rotateOrder) {
    return kOrders[rotateOrder >= 0 && rotateOrder <= kZYX ? rotateOrder : kXYZ];
}

// Axis orders and their parity as in K. Shoemake, "Euler Angle Conversion", Graphics Gems IV
// (1994), for rotating axes; the matrix is written for row vectors.
M44d eulerMatrix(const V3d& angles, int rotateOrder) {
    const AxisOrder order = axisOrder(rotateOrder);
    const int i = order.first, j = order.second, k = order.third;
    const double p = order.cyclic ? 1.0 : -1.0;
    const double ci = std::cos(angles[i]), si = p * std::sin(angles[i]);
    const double cj = std::cos(angles[j]), sj = p * std::sin(angles[j]);
    const double ck = std::cos(angles[k]), sk = p * std::sin(angles[k]);
    M44d m;
    m[i][i] = cj * ck;
    m[i][j] = cj * sk;
    m[i][k] = -sj;
    m[j][i] = si * sj * ck - ci * sk;
    m[j][j] = si * sj * sk + ci * ck;
    m[j][k] = si * cj;
    m[k][i] = ci * sj * ck + si * sk;
    m[k][j] = ci * sj * sk - si * ck;
    m[k][k] = ci * cj;
    return m;
}

// M. Day, "Extracting Euler Angles from a Rotation Matrix": one outer angle first, the other from
// what it leaves, so that rounding close to gimbal lock moves from one to the other and is not
// lost.
V3d eulerFromMatrix(const M44d& m, int rotateOrder, const V3d* hint) {
    const AxisOrder order = axisOrder(rotateOrder);
    const int i = order.first, j = order.second, k = order.third;
    const double p = order.cyclic ? 1.0 : -1.0;
    const double across = std::hypot(m[i][i], m[i][j]);
    V3d angles;
    angles[j] = p * std::atan2(-m[i][k], across);
    // Where the first axis stands along the third only the sum or difference of the outer angles is
    // known.
    const double outer = across > kGimbal ? std::atan2(m[i][j], m[i][i])
                         : hint           ? p * (*hint)[k]
                                          : 0.0;
    angles[k] = p * outer;
    const double c = std::cos(outer), s = std::sin(outer);
    angles[i] = p * std::atan2(s * m[k][i] - c * m[k][j], c * m[j][j] - s * m[j][i]);
    return hint ? closest(angles, order, *hint) : angles;
}

// Gram-Schmidt over the rows: S. W. Thomas, "Decomposing a Matrix into Simple Transformations",
// Graphics Gems II (1991).
MatrixParts decompose(const M44d& m, const V3d* scaleHint) {
    MatrixParts out;
    out.translate = translationOf(m);
    const V3d rows[3] = {rowOf(m, 0), rowOf(m, 1), rowOf(m, 2)};
    V3d u[3];
    double xy = 0.0, xz = 0.0, yz = 0.0;
    out.scale.x = rows[0].length();
    u[0] = out.scale.x > kNoLength ? rows[0] / out.scale.x : V3d(1, 0, 0);
    xy = rows[1].dot(u[0]);
    const V3d second = rows[1] - u[0] * xy;
    out.scale.y = second.length();
    u[1] = out.scale.y > kNoLength ? second / out.scale.y : squareTo(u[0], nullptr);
    xz = rows[2].dot(u[0]);
    yz = rows[2].dot(u[1]);
    const V3d third = rows[2] - u[0] * xz - u[1] * yz;
    out.scale.z = third.length();
    u[2] = out.scale.z > kNoLength ? third / out.scale.z : squareTo(u[0], &u[1]);
    out.regular = out.scale.x > kNoLength && out.scale.y > kNoLength && out.scale.z > kNoLength;
    const Signs signs = signsOf(u[0].cross(u[1]).dot(u[2]) < 0.0, scaleHint);
    const double* s = signs.s;
    out.shear = {out.scale.y > kNoLength ? s[0] * s[1] * xy / out.scale.y : 0.0,
                 out.scale.z > kNoLength ? s[0] * s[2] * xz / out.scale.z : 0.0,
                 out.scale.z > kNoLength ? s[1] * s[2] * yz / out.scale.z : 0.0};
    for (int i = 0; i < 3; ++i) {
        out.scale[i] *= s[i];
        setRow(out.rotation, i, u[i] * s[i]);
    }
    return out;
}

M44d rotationPart(const M44d& m) {
    return decompose(m).rotation;
}

M44d translationMatrix(const V3d& offset) {
    M44d m;
    setRow(m, 3, offset);
    return m;
}

M44d scaleMatrix(const V3d& scale) {
    M44d m;
    for (int i = 0; i < 3; ++i)
        m[i][i] = scale[i];
    return m;
}

M44d shearMatrix(const V3d& shear) {
    M44d m;
    m[1][0] = shear.x;
    m[2][0] = shear.y;
    m[2][1] = shear.z;
    return m;
}

M44d linearPart(const M44d& m) {
    M44d out = m;
    setRow(out, 3, V3d(0.0));
    for (int i = 0; i < 3; ++i)
        out[i][3] = 0.0;
    out[3][3] = 1.0;
    return out;
}

M44d inverseOf(const M44d& m) {
    return m.inverse(false);
}

bool nearlyEqual(const M44d& a, const M44d& b, double tolerance) {
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) {
            const double size = std::max({1.0, std::fabs(a[i][j]), std::fabs(b[i][j])});
            if (!(std::fabs(a[i][j] - b[i][j]) <= tolerance * size))
                return false;
        }
    return true;
}

}  // namespace torvel
