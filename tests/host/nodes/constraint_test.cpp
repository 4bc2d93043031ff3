#include "node_scene.h"
#include "nodes/constraint/math.h"
#include "support/scene_script.h"

namespace torvel::test {

/// An object under a parent, and targets; constraints are wired by hand as the commands wire them.
class ConstraintNodes : public NodeScene {
  protected:
    ConstraintNodes() {
        script.run("transform parent; transform object parent; transform one; transform two");
        object = script.node("object");
    }

    void constraint(const std::string& type) {
        script.run(type + " con " + scene.node(object)->name);
        con = script.node("con");
        const std::pair<const char*, const char*> inputs[] = {
            {"constraintParentInverseMatrix", "parentInverseMatrix[0]"},
            {"constraintRotatePivot", "rotatePivot"},
            {"constraintRotateTranslate", "rotatePivotTranslate"},
            {"constraintRotateOrder", "rotateOrder"},
            {"constraintJointOrient", "jointOrient"}};
        for (const auto& [own, other] : inputs)
            linkIfBoth(object, other, own);
        if (type == "aimConstraint")
            link(object, "translate", con, "constraintTranslate");
    }

    /// Wires every input of the element that the type has.
    void target(const char* name, int element, double weight = 1.0) {
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
            linkIfBoth(script.node(name), other, array + own);
        set(con, (array + "targetWeight").c_str(), weight);
    }
    void linkIfBoth(NodeHandle from, const char* source, const std::string& own) {
        if (!scene.findPlug(con, own).isNull() && !scene.findPlug(from, source).isNull())
            link(from, source, con, own.c_str());
    }

    SceneScript script{scene};
    NodeHandle object, con;
};

struct ConstraintCase {
    const char* name;
    const char* type;
    int targets;
    const char* script;
};

class ConstraintScripts : public ConstraintNodes,
                          public ::testing::WithParamInterface<ConstraintCase> {};

TEST_P(ConstraintScripts, Give) {
    const ConstraintCase& c = GetParam();
    constraint(c.type);
    target("one", 0);
    if (c.targets > 1)
        target("two", 1);
    script.run("decomposeMatrix world; object.wm[0] -> world.imat");
    for (const auto& [output, channel] :
         {std::pair("constraintTranslate", "t"), std::pair("constraintRotate", "r")}) {
        const Plug made = scene.findPlug(con, output);
        if (!made.isNull() && scene.source(made).isNull())
            link(con, output, object, channel);
    }
    script.run(c.script);
}

const ConstraintCase kConstraints[] = {
    {"PointGoesToTheWeightedMean", "pointConstraint", 2, R"(
        con.target[1].targetWeight 3; one.t 4 0 0; two.t 0 8 0; object == 1 6 0
        parent.t 10 20 30; parent.rz 90d; object == 1 6 0
        con.target[1].targetWeight 0; object == 4 0 0)"},
    {"PointOffsetLiesInTheParentsSpace", "pointConstraint", 1, R"(
        parent.rz 90d; con.offset 2 0 0; object == 0 2 0
        con.constraintOffsetPolarity 1; object == 0 -2 0)"},
    {"PivotsMeet", "pointConstraint", 1, R"(
        one.rotatePivot 0 3 0; one.t 1 0 0; object.rotatePivot 0 0 5; object.t == 1 3 -5
        one.r 40d 50d 60d; object.t == 1 3 -5  # turning about the pivot does not move it)"},
    {"OrientTurnsUnderATurnedParent", "orientConstraint", 1, R"(
        one.r 10d 20d 30d; parent.r -35d 15d 70d; parent.s 2 2 2; world.or == 10d 20d 30d
        object.rotateOrder 2; world.or == 10d 20d 30d)"},
    {"OrientOffsetStandsInFront", "orientConstraint", 1, R"(
        one.rz 90d; con.offset 90d 0 0
        # The offset's x turn happens about the object's own x, which then points along world y.
        object.wm[0] == 0 1 0 0  0 0 1 0  1 0 0 0  0 0 0 1
        con.lastTargetRotate == 0 0 90d)"},
    {"OffsetAngleBeyondAQuarterTurnIsKept", "parentConstraint", 1, R"(
        con.target[0].targetOffsetTranslate 0 0 6; con.target[0].targetOffsetRotate 0 99.46d 0
        con.restRotate 0 99.46d 0; object.r == 0 99.46d 0; object.t == 0 0 6)"},
    {"ParentCarriesTheOffsetInTheTargetsSpace", "parentConstraint", 1, R"(
        con.target[0].targetOffsetTranslate 2 0 0; con.target[0].targetOffsetRotate 0 0 30d
        one.t 5 0 0; one.rz 90d; one.s 3 1 1; parent.ry 45d; parent.t 0 0 -7
        object == 5 6 0; world.or == 0 0 120d)"},
    {"VectorUpIsTheDefault", "aimConstraint", 1, R"(
        one.t 0 0 10; object.wm[0] == 0 0 1 0  0 1 0 0  -1 0 0 0  0 0 0 1
        con.worldUpVector 1 0 0; object.wm[0] == 0 0 1 0  1 0 0 0  0 1 0 0  0 0 0 1
        con.aimVector 0 -2 0; con.upVector 0 0 1
        object.wm[0] == 0 -1 0 0  0 0 -1 0  1 0 0 0  0 0 0 1)"},
    {"UpTypes", "aimConstraint", 1, R"(
        one.t 0 0 10; transform up; up.wm[0] -> con.worldUpMatrix; up.t 5 0 3; up.rz 30d
        con.worldUpVector 1 0 0
        con.worldUpType 0; object.wm[0] == 0 0 1 0  0 1 0 0  -1 0 0 0  0 0 0 1  # the scene's
        con.worldUpType 1; object.wm[0] == 0 0 1 0  1 0 0 0  0 1 0 0  0 0 0 1  # at the object
        up.t 0 -4 0; object.wm[0] == 0 0 1 0  0 -1 0 0  1 0 0 0  0 0 0 1
        con.worldUpType 2  # as the object is turned
        object.wm[0] == 0 0 1 0  0.8660254037844386 0.5 0 0  -0.5 0.8660254037844386 0 0  0 0 0 1
        con.worldUpType 4; object.wm[0] == 0 0 1 0  0 1 0 0  -1 0 0 0  0 0 0 1  # none)"},
    {"UpAlongTheAimKeepsTheFormerUp", "aimConstraint", 1, R"(
        one.t 0 0 10; con.worldUpVector 1 0 0
        object.wm[0] == 0 0 1 0  1 0 0 0  0 1 0 0  0 0 0 1
        con.worldUpVector 0 0 1; object.wm[0] == 0 0 1 0  1 0 0 0  0 1 0 0  0 0 0 1)"},
    {"ATargetOnTheObjectTurnsNothing", "aimConstraint", 1, R"(
        one.t 0 0 10; object.wm[0] == 0 0 1 0  0 1 0 0  -1 0 0 0  0 0 0 1
        one.t 0 0 0; object.wm[0] == 0 0 1 0  0 1 0 0  -1 0 0 0  0 0 0 1)"},
    {"ScaleIsTheGeometricMeanOverTheParents", "scaleConstraint", 2, R"(
        one.s 4 1 2; two.s 9 1 8; parent.s 2 2 2; con.offset 1 5 1; con.constraintScale == 3 2.5 2
        con.constraintScaleCompensate 1; con.constraintScale == 6 5 4)"},
    {"WithoutWeightsTheRestValuesOrTheLastOnes", "pointConstraint", 1, R"(
        con.restTranslate 7 8 9; one.t 1 2 3; con.constraintTranslate == 1 2 3
        con.target[0].targetWeight 0; one.t 5 5 5; con.constraintTranslate == 1 2 3
        con.enableRestPosition 1; con.constraintTranslate == 7 8 9
        con.target[0].targetWeight -1; con.constraintTranslate == 7 8 9)"},
    {"OneEvaluationServesBothOutputs", "parentConstraint", 1, R"(
        one.t 1 2 3; one.rx 40d; con.constraintRotate == 40d 0 0; con.constraintTranslate == 1 2 3
        one.r 0 50d 0; con.constraintTranslate == 1 2 3; con.constraintRotate == 0 50d 0)"},
    {"NumbersThatAreNoneLeaveTheOutputAlone", "parentConstraint", 1, R"(
        one.t 1 2 3; con.constraintTranslate == 1 2 3
        one.tx nan; one.rx nan; con.constraintTranslate == 1 2 3
        one.t 4 5 6; one.rx 0.5; con.constraintTranslate == 4 5 6; con.constraintRotate == 0.5 0 0)"},
};

INSTANTIATE_TEST_SUITE_P(Nodes, ConstraintScripts, ::testing::ValuesIn(kConstraints),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_F(ConstraintNodes, JointOrientIsTakenOutAndPutIn) {
    script.run("joint bone parent; joint driver; bone.jo 0 0 30d; driver.jo 0 50d 0");
    object = script.node("bone");
    constraint("orientConstraint");
    target("driver", 0);
    script.run("con.constraintRotate -> bone.r; driver.rx 20d");
    expectNear(worldMatrix(scene, object),
               eulerMatrix(V3d(20, 0, 0) * kDegToRad) * eulerMatrix(V3d(0, 50, 0) * kDegToRad),
               1e-12);
}

TEST_F(ConstraintNodes, AimsFromUnderAMovedParent) {
    constraint("aimConstraint");
    target("one", 0);
    script.run("con.constraintRotate -> object.r; one.t 0 0 10; parent.t 10 0 0");
    script.run("parent.r 20d 30d 40d; parent.s 2 3 4; object.t 1 1 1; parent.s 2 2 2");
    const M44d turned = rotationPart(worldMatrix(scene, object));
    const V3d along = position(script.node("one")) - position(object);
    expectNear({turned[0][0], turned[0][1], turned[0][2]}, along.normalized(), 1e-12);
    EXPECT_NEAR(turned[2][1], 0.0, 1e-12) << "square to the up direction";
}

TEST_F(ConstraintNodes, ScaleOfATargetInsideAScaledGroup) {
    script.run("parent.s 3 3 3; transform inner parent; inner.s -2 1 1; transform free");
    object = script.node("free");
    constraint("scaleConstraint");
    target("inner", 0);
    script.run("con.constraintScale == -6 3 3");
}

TEST_F(ConstraintNodes, PoleVectorIsMeasuredFromTheStartInTheHandlesParent) {
    script.run("joint start parent; parent.t 100 0 0; parent.rz 90d; ikHandle handle parent");
    script.run("start.t 1 0 0; start == 100 1 0");
    object = script.node("handle");
    script.run("poleVectorConstraint con handle; start.t -> con.constraintRotatePivot");
    script.run("handle.parentInverseMatrix[0] -> con.constraintParentInverseMatrix");
    script.run("start.parentMatrix[0] -> con.pivotSpace");
    con = script.node("con");
    target("one", 0);
    script.run("one.t 100 1 5; con.constraintTranslate == 0 0 5");
    script.run("one.t 102 1 0; con.constraintTranslate == 0 -2 0");
}

struct MeanCase {
    int type;
    double first, second, weight, wanted;
};

/// Angles about z of the mean of two targets that are turned about z. The rows run on one node.
const MeanCase kMeans[] = {
    {kAverage, 0, 80, 1, 40},
    {kShortest, 0, 80, 1, 40},
    {kShortest, 100, -100, 1, 180},
    {kAverage, 100, -100, 1, 0},  // the angles count as they are written
    {kLongest, 100, -100, 1, 0},
    {kLongest, 10, 50, 1, -150},  // 30 degrees, the far side
    {kNoFlip, 20, 20, 1, 20},
    {kNoFlip, 0, 170, 1, 85},
    {kNoFlip, 0, 210, 1, 105},  // past the half turn it goes on
    {kShortest, 0, 210, 1, -75},
    {kNoFlip, 37, 150, 0, 37},
    {kAverage, 37, 150, 0, 37},
    {kShortest, 37, 150, 0, 37},
    {kLongest, 37, 150, 0, 37},
    // q = (1, 0) + 3 (cos 30, sin 30): the angle is twice that of the sum.
    {kShortest, 0, 60, 3, 2 * std::atan2(1.5, 1 + 1.5 * std::sqrt(3.0)) * kRadToDeg},
};

TEST_F(ConstraintNodes, InterpolationsOfTwoTurns) {
    constraint("orientConstraint");
    target("one", 0);
    target("two", 1);
    for (const MeanCase& c : kMeans) {
        setDegrees(script.node("one"), "rotate", 0, 0, c.first);
        setDegrees(script.node("two"), "rotate", 0, 0, c.second);
        set(con, "target[1].targetWeight", c.weight);
        set(con, "interpType", c.type);
        const V3d angles = degrees(con, "constraintRotate");
        expectNear({angles.x, angles.y, std::remainder(angles.z - c.wanted, 360.0)}, V3d(0, 0, 0),
                   c.weight == 0.0 ? 1e-12 : 1e-9);
    }
}

TEST_F(ConstraintNodes, AnglesDoNotDependOnTheWay) {
    constraint("orientConstraint");
    target("one", 0);
    script.run("con.restRotate 0 80d 0; one.r 0 100d 0; con.constraintRotate == 0 100d 0");
    for (const double way : {190.0, 260.0, 350.0, 460.0}) {
        setDegrees(script.node("one"), "rotate", way, 0.2 * way, way);
        get(con, "constraintRotate");
    }
    script.run("one.r 0 100d 0; con.constraintRotate == 0 100d 0");
    script.run("one.r 720d 0 0; con.constraintRotate == 0 0 0");
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

// Where the inputs stand is kept between evaluations; whatever changes there has to be seen.
TEST_F(ConstraintNodes, RewiringIsSeenAfterAnEvaluation) {
    constraint("pointConstraint");
    target("one", 0);
    script.run("con.constraintTranslate -> object.t");
    script.run("one.t 1 0 0; two.t 0 5 0; object == 1 0 0");
    script.run("one.t -x con.target[0].targetTranslate; one.t 9 9 9; object == 1 0 0");
    script.run("con.target[0].targetTranslate 2 0 0; object == 2 0 0");
    script.run("two.t -> con.target[0].targetTranslate; object == 0 5 0");

    // an element that nothing feeds; its weight is 1
    script.run("con.target[3].targetTranslate 0 0 10; object == 0 2.5 5");
    scene.removeElement(plug(con, "target[3]"));
    script.run("object == 0 5 0; transform above; above.t 100 0 0");

    const NodeHandle above = script.node("above");
    ASSERT_TRUE(scene.reparent(script.node("parent"), above));
    script.run("object == 0 5 0; object.t == -100 5 0");
    ASSERT_TRUE(scene.reparent(script.node("one"), above));  // it still gives the parent matrix
    script.run("object == 100 5 0");
    scene.deleteNodes({above});
    EXPECT_FALSE(scene.isValid(con));
}

}  // namespace torvel::test
