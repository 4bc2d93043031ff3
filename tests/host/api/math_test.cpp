#include <cmath>

#include <gtest/gtest.h>
#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MVector.h>

namespace {

TEST(PointTest, scalingLeavesTheFourthCoordinate) {
    MPoint point(1, 2, 3);
    point *= 2.0;
    EXPECT_TRUE(point == MPoint(2, 4, 6, 1));
    EXPECT_TRUE(point * 3 == MPoint(6, 12, 18, 1));
}

TEST(VectorTest, productsAreDotAndCross) {
    EXPECT_DOUBLE_EQ(MVector(1, 2, 3) * MVector(4, 5, 6), 32.0);
    EXPECT_TRUE((MVector(1, 0, 0) ^ MVector(0, 1, 0)) == MVector(0, 0, 1));
}

TEST(VectorTest, aVectorWithoutLengthStaysAsItIs) {
    MVector zero;
    EXPECT_TRUE(zero.normal() == MVector(0, 0, 0));
    EXPECT_FALSE(zero.normalize());
    MVector vector(3, 0, 4);
    EXPECT_TRUE(vector.normalize());
    EXPECT_TRUE(vector.isEquivalent(MVector(0.6, 0, 0.8), 1e-15));
}

TEST(MatrixTest, rowVectorsAreMultipliedFromTheLeft) {
    MMatrix move;
    move(3, 0) = 5.0;
    EXPECT_TRUE(MPoint(1, 1, 1) * move == MPoint(6, 1, 1));
    EXPECT_TRUE(MVector(1, 1, 1) * move == MVector(1, 1, 1));
    MMatrix scale;
    scale(0, 0) = 2.0;
    // First the move, then the scale.
    EXPECT_TRUE(MPoint(1, 0, 0) * (move * scale) == MPoint(12, 0, 0));
    EXPECT_TRUE((move * scale * (move * scale).inverse()).isEquivalent(MMatrix(), 1e-12));
}

}  // namespace
