#pragma once

#include "graph/math.h"

/// Rotations and the parts of a matrix. Row vectors, radians; no function here knows the scene.
namespace torvel {

/// Values of every rotateOrder attribute. The letters name the product from left to right: xyz is
/// RX * RY * RZ.
enum RotateOrder { kXYZ, kYZX, kZXY, kXZY, kYXZ, kZYX };

inline constexpr const char* kRotateOrderNames = "xyz:yzx:zxy:xzy:yxz:zyx";

/// Axes (0 to 2) of an order from left to right, and whether they run cyclically. Orders out of
/// range count as xyz.
struct AxisOrder {
    int first, second, third;
    bool cyclic;
};
AxisOrder axisOrder(int rotateOrder);

/// Rotation by the angles of the three axes (always given as x, y, z) multiplied in the order.
M44d eulerMatrix(const V3d& angles, int rotateOrder = kXYZ);

/// Angles of the rotation that the upper 3x3 of `m` holds; its rows must be orthonormal. With
/// `hint` the solution closest to it is taken, full turns included; without one the middle angle
/// lies within a quarter turn.
V3d eulerFromMatrix(const M44d& m, int rotateOrder = kXYZ, const V3d* hint = nullptr);

/// M = scale * shear * rotation * translation.
struct MatrixParts {
    V3d translate{0.0, 0.0, 0.0};
    M44d rotation;  ///< orthonormal, determinant +1, no translation
    V3d scale{1.0, 1.0, 1.0};
    V3d shear{0.0, 0.0, 0.0};  ///< xy, xz, yz
    bool regular = true;       ///< false when an axis has no length: its direction is then a guess
};
/// Splits a matrix. A mirroring one gets the signs of `scaleHint` when their product fits, else
/// three negative scales.
MatrixParts decompose(const M44d& m, const V3d* scaleHint = nullptr);

/// Rotation alone, without scale, shear and mirroring.
M44d rotationPart(const M44d& m);

M44d translationMatrix(const V3d& offset);
M44d scaleMatrix(const V3d& scale);
M44d shearMatrix(const V3d& shear);
/// Upper 3x3 of `m` with no translation.
M44d linearPart(const M44d& m);
inline V3d translationOf(const M44d& m) {
    return {m[3][0], m[3][1], m[3][2]};
}
/// Inverse; the identity for a matrix that has none.
M44d inverseOf(const M44d& m);

/// All 16 entries agree within `tolerance`, which grows with the larger entry above 1.
bool nearlyEqual(const M44d& a, const M44d& b, double tolerance);

}  // namespace torvel
