#include <cmath>

#include "node_scene.h"

namespace torvel::test {
namespace {

// Single-axis rotations written out; the product of three of them is what an order means.
M44d aboutX(double a) {
    return {1, 0, 0, 0, 0, std::cos(a), std::sin(a), 0, 0, -std::sin(a), std::cos(a),
            0, 0, 0, 0, 1};
}
M44d aboutY(double a) {
    return {std::cos(a), 0, -std::sin(a), 0, 0, 1, 0, 0,
            std::sin(a), 0, std::cos(a),  0, 0, 0, 0, 1};
}
M44d aboutZ(double a) {
    return {std::cos(a), std::sin(a), 0, 0, -std::sin(a), std::cos(a), 0, 0, 0, 0, 1, 0,
            0,           0,           0, 1};
}

}  // namespace

TEST(Rotation, OrdersMultiplyFromLeftToRight) {
    const V3d r(0.3, -0.8, 1.9);
    const M44d x = aboutX(r.x), y = aboutY(r.y), z = aboutZ(r.z);
    expectNear(eulerMatrix(r, kXYZ), x * y * z);
    expectNear(eulerMatrix(r, kYZX), y * z * x);
    expectNear(eulerMatrix(r, kZXY), z * x * y);
    expectNear(eulerMatrix(r, kXZY), x * z * y);
    expectNear(eulerMatrix(r, kYXZ), y * x * z);
    expectNear(eulerMatrix(r, kZYX), z * y * x);
}

TEST(Rotation, AnglesComeBackInEveryOrderAndAtTheGimbal) {
    const double angles[] = {-3.0, -kPi / 2, -0.4, 0.0, 1.1, kPi / 2, 2.5};
    for (int order = kXYZ; order <= kZYX; ++order)
        for (double x : angles)
            for (double y : angles)
                for (double z : angles) {
                    const M44d m = eulerMatrix({x, y, z}, order);
                    expectNear(eulerMatrix(eulerFromMatrix(m, order), order), m);
                    const V3d hint(x, y, z);
                    expectNear(eulerFromMatrix(m, order, &hint), hint, 1e-7);
                }
}

TEST(Rotation, FullTurnsOfTheHintStay) {
    const V3d hint(7.0, 0.2, -9.0);
    expectNear(eulerFromMatrix(eulerMatrix(hint), kXYZ, &hint), hint);
}

TEST(Rotation, DecomposeFindsScaleShearAndMirror) {
    const V3d scale(2, 3, 0.5), shear(0.4, -0.2, 0.7), angles(0.3, 1.0, -2.0);
    const M44d m = scaleMatrix(scale) * shearMatrix(shear) * eulerMatrix(angles) *
                   translationMatrix({1, 2, 3});
    const MatrixParts parts = decompose(m);
    expectNear(parts.scale, scale);
    expectNear(parts.shear, shear);
    expectNear(parts.rotation, eulerMatrix(angles));
    expectNear(parts.translate, V3d(1, 2, 3));
    const V3d mirror(-2, 3, 0.5);
    const M44d mirrored = scaleMatrix(mirror) * shearMatrix(shear) * eulerMatrix(angles);
    expectNear(decompose(mirrored, &mirror).scale, mirror);
    expectNear(decompose(mirrored, &mirror).shear, shear);
    expectNear(decompose(mirrored).scale, V3d(-2, -3, -0.5));
    EXPECT_NEAR(decompose(mirrored).rotation.determinant(), 1.0, 1e-12);
    EXPECT_FALSE(decompose(scaleMatrix({1, 0, 1})).regular);
    EXPECT_NEAR(decompose(scaleMatrix({0, 0, 0})).rotation.determinant(), 1.0, 1e-12);
}

}  // namespace torvel::test
