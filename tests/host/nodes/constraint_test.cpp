#include "node_scene.h"
#include "nodes/constraint/math.h"

namespace torvel::test {

/// An object under a parent, and targets; constraints are wired by hand as the commands wire them.
class ConstraintNodes : public NodeScene {
  protected:
    NodeHandle transform(const char* name, NodeHandle parent = {}) {
        return make("transform", name, parent);
    }

    NodeHandle constraint(const char* type) {
        const NodeHandle made = make(type, "con", object);
        link(object, "parentInverseMatrix[0]", made, "constraintParentInverseMatrix");
        for (const auto& [own, other] :
             {std::pair("constraintRotatePivot", "rotatePivot"),
              std::pair("constraintRotateTranslate", "rotatePivotTranslate"),
              std::pair("constraintRotateOrder", "rotateOrder")})
            if (!scene.findPlug(made, own).isNull())
                link(object, other, made, own);
        if (scene.isType(made, "aimConstraint"))
            link(object, "translate", made, "constraintTranslate");
        return made;
    }

    /// Wires every input of the element that the type has.
    void target(NodeHandle con, NodeHandle node, int element, double weight = 1.0) {
        const std::string array = "target[" + std::to_string(element) + "].";
        const std::pair<const char*, const char*> inputs[] = {
            {"targetTranslate", "translate"},
            {"targetRotatePivot", "rotatePivot"},
            {"targetRotateTranslate", "rotatePivotTranslate"},
            {"targetRotate", "rotate"},
            {"targetRotateOrder", "rotateOrder"},
            {"targetScale", "scale"},
            {"targetParentMatrix", "parentMatrix[0]"},
            {"targetJointOrient", "jointOrient"}};
        for (const auto& [own, other] : inputs)
            if (!scene.findPlug(con, array + own).isNull() && !scene.findPlug(node, other).isNull())
                link(node, other, con, (array + own).c_str());
        set(con, (array + "targetWeight").c_str(), weight);
    }
    void drive(NodeHandle con, const char* output, const char* channel) {
        link(con, output, object, channel);
    }
    M44d world(NodeHandle node) const { return worldMatrix(scene, node); }

    NodeHandle parent = transform("parent"), object = transform("object", parent);
    NodeHandle one = transform("one"), two = transform("two");
};

TEST_F(ConstraintNodes, PointGoesToTheWeightedMean) {
    const NodeHandle con = constraint("pointConstraint");
    target(con, one, 0, 1.0);
    target(con, two, 1, 3.0);
    drive(con, "constraintTranslate", "translate");
    set(one, "translate", 4, 0, 0);
    set(two, "translate", 0, 8, 0);
    expectNear(position(object), {1, 6, 0});
    set(parent, "translate", 10, 20, 30);
    setDegrees(parent, "rotate", 0, 0, 90);
    expectNear(position(object), {1, 6, 0});
    set(con, "target[1].targetWeight", 0);
    expectNear(position(object), {4, 0, 0}, 1e-12);
}

TEST_F(ConstraintNodes, PointOffsetLiesInTheParentsSpace) {
    const NodeHandle con = constraint("pointConstraint");
    target(con, one, 0);
    drive(con, "constraintTranslate", "translate");
    setDegrees(parent, "rotate", 0, 0, 90);
    set(con, "offset", 2, 0, 0);
    expectNear(position(object), {0, 2, 0});
    set(con, "constraintOffsetPolarity", 1);
    expectNear(position(object), {0, -2, 0});
}

TEST_F(ConstraintNodes, PivotsMeet) {
    const NodeHandle con = constraint("pointConstraint");
    target(con, one, 0);
    drive(con, "constraintTranslate", "translate");
    set(one, "rotatePivot", 0, 3, 0);
    set(one, "translate", 1, 0, 0);
    set(object, "rotatePivot", 0, 0, 5);
    expectNear(get(object, "translate"), {1, 3, -5});
    setDegrees(one, "rotate", 40, 50, 60);  // turning about the pivot does not move it
    expectNear(get(object, "translate"), {1, 3, -5});
}

TEST_F(ConstraintNodes, OrientTurnsUnderATurnedParent) {
    const NodeHandle con = constraint("orientConstraint");
    target(con, one, 0);
    drive(con, "constraintRotate", "rotate");
    setDegrees(one, "rotate", 10, 20, 30);
    setDegrees(parent, "rotate", -35, 15, 70);
    set(parent, "scale", 2, 2, 2);
    expectNear(rotationPart(world(object)), eulerMatrix(V3d(10, 20, 30) * kDegToRad), 1e-12);
    set(object, "rotateOrder", kZXY);
    expectNear(rotationPart(world(object)), eulerMatrix(V3d(10, 20, 30) * kDegToRad), 1e-12);
}

TEST_F(ConstraintNodes, OrientOffsetStandsInFront) {
    const NodeHandle con = constraint("orientConstraint");
    target(con, one, 0);
    drive(con, "constraintRotate", "rotate");
    setDegrees(one, "rotate", 0, 0, 90);
    setDegrees(con, "offset", 90, 0, 0);
    // The offset's x turn happens about the object's own x, which then points along world y.
    const M44d m = world(object);
    expectNear({m[0][0], m[0][1], m[0][2]}, {0, 1, 0});
    expectNear({m[1][0], m[1][1], m[1][2]}, {0, 0, 1});
    expectNear(degrees(con, "lastTargetRotate"), {0, 0, 90});
}

TEST_F(ConstraintNodes, OffsetAngleBeyondAQuarterTurnIsKept) {
    const NodeHandle con = constraint("parentConstraint");
    target(con, one, 0);
    drive(con, "constraintTranslate", "translate");
    drive(con, "constraintRotate", "rotate");
    set(con, "target[0].targetOffsetTranslate", 0, 0, 6);
    setDegrees(con, "target[0].targetOffsetRotate", 0, 99.46, 0);
    setDegrees(con, "restRotate", 0, 99.46, 0);
    expectNear(degrees(object, "rotate"), {0, 99.46, 0});
    expectNear(get(object, "translate"), {0, 0, 6});
}

TEST_F(ConstraintNodes, ParentCarriesTheOffsetInTheTargetsSpace) {
    const NodeHandle con = constraint("parentConstraint");
    target(con, one, 0);
    drive(con, "constraintTranslate", "translate");
    drive(con, "constraintRotate", "rotate");
    set(con, "target[0].targetOffsetTranslate", 2, 0, 0);
    setDegrees(con, "target[0].targetOffsetRotate", 0, 0, 30);
    set(one, "translate", 5, 0, 0);
    setDegrees(one, "rotate", 0, 0, 90);
    set(one, "scale", 3, 1, 1);
    setDegrees(parent, "rotate", 0, 45, 0);
    set(parent, "translate", 0, 0, -7);
    expectNear(position(object), {5, 6, 0});
    expectNear(rotationPart(world(object)), eulerMatrix(V3d(0, 0, 120) * kDegToRad), 1e-12);
}

TEST_F(ConstraintNodes, JointOrientIsTakenOutAndPutIn) {
    object = make("joint", "bone", parent);
    const NodeHandle driver = make("joint", "driver");
    setDegrees(object, "jointOrient", 0, 0, 30);
    setDegrees(driver, "jointOrient", 0, 50, 0);
    setDegrees(driver, "rotate", 20, 0, 0);
    const NodeHandle con = constraint("orientConstraint");
    link(object, "jointOrient", con, "constraintJointOrient");
    target(con, driver, 0);
    drive(con, "constraintRotate", "rotate");
    expectNear(world(object),
               eulerMatrix(V3d(20, 0, 0) * kDegToRad) * eulerMatrix(V3d(0, 50, 0) * kDegToRad),
               1e-12);
}

// --- several rotations
// ------------------------------------------------------------------------------------------

class Interpolations : public ConstraintNodes {
  protected:
    /// Angle about z of the mean of two targets that are turned about z.
    double mean(int type, double first, double second, double weight = 1.0) {
        if (con.isNull()) {
            con = constraint("orientConstraint");
            target(con, one, 0);
            target(con, two, 1);
        }
        setDegrees(one, "rotate", 0, 0, first);
        setDegrees(two, "rotate", 0, 0, second);
        set(con, "target[1].targetWeight", weight);
        set(con, "interpType", type);
        const V3d angles = degrees(con, "constraintRotate");
        EXPECT_NEAR(angles.x, 0.0, 1e-9);
        EXPECT_NEAR(angles.y, 0.0, 1e-9);
        return std::remainder(angles.z, 360.0);
    }
    NodeHandle con;
};

TEST_F(Interpolations, HalfWayIsTheMiddle) {
    for (const int type : {kAverage, kShortest})
        EXPECT_NEAR(mean(type, 0, 80), 40.0, 1e-9);
}

TEST_F(Interpolations, ShortestGoesTheNearWayRound) {
    EXPECT_NEAR(std::fabs(mean(kShortest, 100, -100)), 180.0, 1e-9);
    EXPECT_NEAR(mean(kAverage, 100, -100), 0.0, 1e-9) << "the angles count as they are written";
    EXPECT_NEAR(mean(kLongest, 100, -100), 0.0, 1e-9);
    EXPECT_NEAR(std::fabs(mean(kLongest, 10, 50)), 150.0, 1e-9) << "30 degrees, the far side";
}

TEST_F(Interpolations, NoFlipStaysOnTheSideOfTheLastRotation) {
    mean(kNoFlip, 20, 20);
    EXPECT_NEAR(mean(kNoFlip, 0, 170), 85.0, 1e-9);
    EXPECT_NEAR(mean(kNoFlip, 0, 210), 105.0, 1e-9) << "past the half turn it goes on";
    EXPECT_NEAR(mean(kShortest, 0, 210), -75.0, 1e-9);
}

TEST_F(Interpolations, AWeightOfZeroDropsATargetExactly) {
    for (const int type : {kNoFlip, kAverage, kShortest, kLongest})
        EXPECT_NEAR(mean(type, 37, 150, 0.0), 37.0, 1e-12);
}

TEST_F(Interpolations, UnequalWeightsFollowTheQuaternionSum) {
    // q = (1, 0) + 3 (cos 30, sin 30): the angle is twice that of the sum.
    const double wanted =
        2.0 * std::atan2(3.0 * std::sin(kPi / 6), 1.0 + 3.0 * std::cos(kPi / 6)) * kRadToDeg;
    EXPECT_NEAR(mean(kShortest, 0, 60, 3.0), wanted, 1e-9);
}

TEST(RotationMeanTest, OppositesLeaveTheFirst) {
    RotationMean mean(kAverage, Quatd());
    mean.add(Quatd(0, V3d(1, 0, 0)), 1.0);
    mean.add(Quatd(0, V3d(-1, 0, 0)), 1.0);
    EXPECT_EQ(mean.result().v, V3d(1, 0, 0));
}

TEST(QuaternionTest, AgreesWithMatricesInEveryOrder) {
    const V3d angles(0.7, -1.9, 2.6);
    for (int order = kXYZ; order <= kZYX; ++order) {
        const M44d m = eulerMatrix(angles, order);
        expectNear(matrixOfQuaternion(quaternionOfAngles(angles, order)), m, 1e-14);
        expectNear(matrixOfQuaternion(quaternionOfMatrix(m)), m, 1e-14);
    }
    const V3d turned = angles + V3d(2 * kPi, 0, 0);
    EXPECT_NEAR(quaternionOfAngles(turned, kXYZ).r, -quaternionOfAngles(angles, kXYZ).r, 1e-12);
}

// --- aim
// ----------------------------------------------------------------------------------------------------------

class Aims : public ConstraintNodes {
  protected:
    Aims() {
        con = constraint("aimConstraint");
        target(con, one, 0);
        drive(con, "constraintRotate", "rotate");
        set(one, "translate", 0, 0, 10);
    }
    V3d axis(int row) const {
        const M44d m = rotationPart(world(object));
        return {m[row][0], m[row][1], m[row][2]};
    }
    NodeHandle con;
};

TEST_F(Aims, VectorUpIsTheDefault) {
    expectNear(axis(0), {0, 0, 1});
    expectNear(axis(1), {0, 1, 0});
    set(con, "worldUpVector", 1, 0, 0);
    expectNear(axis(1), {1, 0, 0});
    set(con, "aimVector", 0, -2, 0);
    set(con, "upVector", 0, 0, 1);
    expectNear(axis(1), {0, 0, -1});
    expectNear(axis(2), {1, 0, 0});
}

TEST_F(Aims, AimsFromUnderAMovedParent) {
    set(parent, "translate", 10, 0, 0);
    setDegrees(parent, "rotate", 20, 30, 40);
    set(parent, "scale", 2, 3, 4);
    set(object, "translate", 1, 1, 1);
    set(parent, "scale", 2, 2, 2);
    const V3d along = position(one) - position(object);
    expectNear(axis(0), along.normalized(), 1e-12);
    EXPECT_NEAR(axis(2).y, 0.0, 1e-12) << "square to the up direction";
}

TEST_F(Aims, UpTypes) {
    const NodeHandle up = transform("up");
    link(up, "worldMatrix[0]", con, "worldUpMatrix");
    set(up, "translate", 5, 0, 3);
    setDegrees(up, "rotate", 0, 0, 30);
    set(con, "worldUpVector", 1, 0, 0);
    set(con, "worldUpType", kSceneUp);
    expectNear(axis(1), {0, 1, 0});
    set(con, "worldUpType", kObjectUp);
    expectNear(axis(1), {1, 0, 0});
    set(up, "translate", 0, -4, 0);
    expectNear(axis(1), {0, -1, 0});
    set(con, "worldUpType", kObjectRotationUp);
    expectNear(axis(1), {std::cos(kPi / 6), std::sin(kPi / 6), 0});
    set(con, "worldUpType", kNoUp);
    expectNear(axis(1), {0, 1, 0}, 1e-12);
    expectNear(axis(0), {0, 0, 1}, 1e-12);
}

TEST_F(Aims, UpAlongTheAimKeepsTheFormerUp) {
    set(con, "worldUpVector", 1, 0, 0);
    expectNear(axis(1), {1, 0, 0});
    set(one, "translate", 0, 0.0, 10);
    set(con, "worldUpVector", 0, 0, 1);
    expectNear(axis(0), {0, 0, 1});
    expectNear(axis(1), {1, 0, 0});
}

TEST_F(Aims, ATargetOnTheObjectTurnsNothing) {
    expectNear(axis(0), {0, 0, 1});
    set(one, "translate", 0, 0, 0);
    expectNear(axis(0), {0, 0, 1});
}

// --- scale, pole vector, rest
// ---------------------------------------------------------------------------------------

TEST_F(ConstraintNodes, ScaleIsTheGeometricMeanOverTheParents) {
    const NodeHandle con = constraint("scaleConstraint");
    target(con, one, 0);
    target(con, two, 1);
    set(one, "scale", 4, 1, 2);
    set(two, "scale", 9, 1, 8);
    set(parent, "scale", 2, 2, 2);
    set(con, "offset", 1, 5, 1);
    expectNear(get(con, "constraintScale"), {3, 2.5, 2});
    set(con, "constraintScaleCompensate", 1);
    expectNear(get(con, "constraintScale"), {6, 5, 4});
}

TEST_F(ConstraintNodes, ScaleOfATargetInsideAScaledGroup) {
    set(parent, "scale", 3, 3, 3);
    const NodeHandle inner = transform("inner", parent);
    set(inner, "scale", -2, 1, 1);
    object = transform("free");
    const NodeHandle con = constraint("scaleConstraint");
    target(con, inner, 0);
    expectNear(get(con, "constraintScale"), {-6, 3, 3});
}

TEST_F(ConstraintNodes, PoleVectorIsMeasuredFromTheStartInTheHandlesParent) {
    const NodeHandle start = make("joint", "start", parent);
    set(parent, "translate", 100, 0, 0);
    setDegrees(parent, "rotate", 0, 0, 90);
    set(start, "translate", 1, 0, 0);  // stands at 100 1 0
    object = make("ikHandle", "handle", parent);
    const NodeHandle con = make("poleVectorConstraint", "con", object);
    link(object, "parentInverseMatrix[0]", con, "constraintParentInverseMatrix");
    link(start, "parentMatrix[0]", con, "pivotSpace");
    link(start, "translate", con, "constraintRotatePivot");
    target(con, one, 0);
    set(one, "translate", 100, 1, 5);
    expectNear(get(con, "constraintTranslate"), {0, 0, 5});
    set(one, "translate", 102, 1, 0);
    expectNear(get(con, "constraintTranslate"), {0, -2, 0});
}

TEST_F(ConstraintNodes, WithoutWeightsTheRestValuesOrTheLastOnes) {
    const NodeHandle con = constraint("pointConstraint");
    target(con, one, 0);
    set(con, "restTranslate", 7, 8, 9);
    set(one, "translate", 1, 2, 3);
    expectNear(get(con, "constraintTranslate"), {1, 2, 3});
    set(con, "target[0].targetWeight", 0);
    set(one, "translate", 5, 5, 5);
    expectNear(get(con, "constraintTranslate"), {1, 2, 3});
    set(con, "enableRestPosition", 1);
    expectNear(get(con, "constraintTranslate"), {7, 8, 9});
    set(con, "target[0].targetWeight", -1);
    expectNear(get(con, "constraintTranslate"), {7, 8, 9});
}

TEST_F(ConstraintNodes, OneEvaluationServesBothOutputs) {
    const NodeHandle con = constraint("parentConstraint");
    target(con, one, 0);
    set(one, "translate", 1, 2, 3);
    setDegrees(one, "rotate", 40, 0, 0);
    expectNear(degrees(con, "constraintRotate"), {40, 0, 0});
    expectNear(get(con, "constraintTranslate"), {1, 2, 3});
    setDegrees(one, "rotate", 0, 50, 0);
    expectNear(get(con, "constraintTranslate"), {1, 2, 3});
    expectNear(degrees(con, "constraintRotate"), {0, 50, 0});
}

TEST_F(ConstraintNodes, AnglesDoNotDependOnTheWay) {
    const NodeHandle con = constraint("orientConstraint");
    target(con, one, 0);
    setDegrees(con, "restRotate", 0, 80, 0);
    setDegrees(one, "rotate", 0, 100, 0);
    expectNear(degrees(con, "constraintRotate"), {0, 100, 0});
    for (const double way : {190.0, 260.0, 350.0, 460.0}) {
        setDegrees(one, "rotate", way, 0.2 * way, way);
        get(con, "constraintRotate");
    }
    setDegrees(one, "rotate", 0, 100, 0);
    expectNear(degrees(con, "constraintRotate"), {0, 100, 0});
    setDegrees(one, "rotate", 720, 0, 0);
    expectNear(degrees(con, "constraintRotate"), {0, 0, 0});
}

TEST_F(ConstraintNodes, NumbersThatAreNoneLeaveTheOutputAlone) {
    const NodeHandle con = constraint("parentConstraint");
    target(con, one, 0);
    set(one, "translate", 1, 2, 3);
    expectNear(get(con, "constraintTranslate"), {1, 2, 3});
    set(one, "translateX", std::nan(""));
    set(one, "rotateX", std::nan(""));
    expectNear(get(con, "constraintTranslate"), {1, 2, 3});
    set(one, "translate", 4, 5, 6);
    set(one, "rotateX", 0.5);
    expectNear(get(con, "constraintTranslate"), {4, 5, 6});
    expectNear(get(con, "constraintRotate"), {0.5, 0, 0});
}

// Where the inputs stand is kept between evaluations; whatever changes there has to be seen.
TEST_F(ConstraintNodes, RewiringIsSeenAfterAnEvaluation) {
    const NodeHandle con = constraint("pointConstraint");
    target(con, one, 0);
    drive(con, "constraintTranslate", "translate");
    set(one, "translate", 1, 0, 0);
    set(two, "translate", 0, 5, 0);
    expectNear(position(object), {1, 0, 0});

    const Plug input = plug(con, "target[0].targetTranslate");
    ASSERT_TRUE(scene.disconnect(plug(one, "translate"), input));
    set(one, "translate", 9, 9, 9);
    expectNear(position(object), {1, 0, 0});
    set(con, "target[0].targetTranslate", 2, 0, 0);
    expectNear(position(object), {2, 0, 0});
    ASSERT_TRUE(scene.connect(plug(two, "translate"), input));
    expectNear(position(object), {0, 5, 0});

    set(con, "target[3].targetTranslate", 0, 0,
        10);  // an element that nothing feeds; its weight is 1
    expectNear(position(object), {0, 2.5, 5});
    scene.removeElement(plug(con, "target[3]"));
    expectNear(position(object), {0, 5, 0});

    const NodeHandle above = transform("above");
    set(above, "translate", 100, 0, 0);
    ASSERT_TRUE(scene.reparent(parent, above));
    expectNear(position(object), {0, 5, 0});
    expectNear(get(object, "translate"), {-100, 5, 0});
    ASSERT_TRUE(scene.reparent(one, above));  // it still gives the parent matrix
    expectNear(position(object), {100, 5, 0});
    scene.deleteNodes({above});
    EXPECT_FALSE(scene.isValid(con));
}

}  // namespace torvel::test
