#include <cmath>
#include <cstring>

#include "node_scene.h"
#include "nodes/deform/dag_pose.h"

namespace torvel::test {

class JointTest : public NodeScene {
  protected:
    NodeHandle chainJoint(const char* name, NodeHandle parent, double x, double y, double z) {
        const NodeHandle made = make("joint", name, parent);
        set(made, "t", x, y, z);
        if (!parent.isNull())
            link(parent, "s", made, "is");
        return made;
    }
};

TEST_F(JointTest, AChainDrawnInAPlaneMatchesItsStoredPositions) {
    const NodeHandle a = chainJoint("a", {}, -1.0074561718837285, 1.1005195249890261, 0);
    const NodeHandle b = chainJoint("b", a, 1.9994500146724059, 0, 0);
    const NodeHandle c = chainJoint("c", b, 3.3342900920614262, 0, 0);
    setDegrees(a, "jo", 0, 0, -49.466453277038752);
    setDegrees(b, "jo", 0, 0, 109.56720189350501);
    setDegrees(c, "jo", 0, 0, -60.100748616466262);
    expectNear(position(b), V3d(0.29197270694295163, -0.41911363799627854, 0), 1e-12);
    expectNear(position(c), V3d(1.9540376719102268, 2.471393319311959, 0), 1e-12);
    expectNear(rotationPart(worldMatrix(scene, c)), M44d(), 1e-9);
    const auto pose = captureXform(scene, a);
    EXPECT_NEAR(pose->jointOrient[2], -0.41839386033778669, 1e-14);
    EXPECT_NEAR(pose->jointOrient[3], 0.90826569770725385, 1e-14);
}

TEST_F(JointTest, TheStackIsScaleAxisRotateOrientCompensateTranslate) {
    const NodeHandle p = chainJoint("p", {}, 0, 0, 0), j = chainJoint("j", p, 4, 5, 6);
    set(p, "s", 2, 4, 8);
    set(j, "s", 3, 5, 7);
    set(j, "ra", 0.1, 0.2, 0.3);
    set(j, "r", 0.4, 0.5, 0.6);
    set(j, "ro", kZYX);
    set(j, "jo", 0.7, 0.8, 0.9);
    set(j, "rp", 9, 9, 9);  // pivots and shear of a joint count for nothing
    set(j, "sh", 1, 1, 1);
    const M44d inner = scaleMatrix({3, 5, 7}) * eulerMatrix({0.1, 0.2, 0.3}) *
                       eulerMatrix({0.4, 0.5, 0.6}, kZYX) * eulerMatrix({0.7, 0.8, 0.9});
    const M44d move = translationMatrix({4, 5, 6});
    expectNear(localMatrix(scene, j), inner * scaleMatrix({0.5, 0.25, 0.125}) * move);
    set(j, "ssc", 0);
    expectNear(localMatrix(scene, j), inner * move);
}

TEST_F(JointTest, InverseScaleCountsOnlyWhileConnected) {
    const NodeHandle p = chainJoint("p", {}, 0, 0, 0), j = chainJoint("j", p, 1, 0, 0);
    set(p, "s", 2, 2, 2);
    EXPECT_NEAR(worldMatrix(scene, j)[0][0], 1.0, 1e-12);
    expectNear(position(j), V3d(2, 0, 0));  // the way to the child is scaled all the same
    ASSERT_TRUE(scene.disconnect(plug(p, "s"), plug(j, "is")));
    EXPECT_NEAR(worldMatrix(scene, j)[0][0], 2.0, 1e-12);
    set(p, "s", 0, 0, 0);
    ASSERT_TRUE(scene.connect(plug(p, "s"), plug(j, "is")));
    EXPECT_TRUE(std::isfinite(worldMatrix(scene, j)[0][0]));
}

TEST_F(JointTest, ALocalMatrixOfAJointKeepsItsOrient) {
    const NodeHandle p = chainJoint("p", {}, 0, 0, 0), j = chainJoint("j", p, 1, 0, 0);
    set(p, "s", 2, 2, 2);
    setDegrees(j, "jo", 10, 20, 30);
    set(j, "ra", 0, 0.3, 0);
    const M44d wanted =
        eulerMatrix({0.5, 0.6, 0.7}) * scaleMatrix({0.5, 0.5, 0.5}) * translationMatrix({1, 2, 3});
    ASSERT_TRUE(setLocalMatrix(j, wanted));
    expectNear(localMatrix(scene, j), wanted);
    expectNear(degrees(j, "jo"), V3d(10, 20, 30));
    expectNear(get(j, "s"), V3d(1, 1, 1));
}

TEST_F(JointTest, DeepChainsEvaluate) {
    NodeHandle top, at;
    for (int i = 0; i < 10000; ++i) {
        NodeHandle made;
        ASSERT_TRUE(scene.createNode("joint", "bone" + std::to_string(i), at, made));
        set(made, "tx", 1);
        at = made;
        top = i == 0 ? made : top;
    }
    expectNear(position(at), V3d(10000, 0, 0), 1e-6);
    setDegrees(top, "r", 0, 0, 90);
    expectNear(position(at), V3d(1, 9999, 0), 1e-6);
}

TEST_F(JointTest, PoseTextsAreKeptValueForValue) {
    const char* text =
        "1 2 3 0.10000000000000001 -0.20000000000000001 0.29999999999999999 5 7 8 9 0 0 0 0 0 0 0 "
        "0 0 "
        "0 0 0 0 0 0 0 0 0 1 0 0 -0.41839386033778669 0.90826569770725385 2 2 2 yes";
    NumberSource source(text);
    const auto pose = parseXform(source);
    ASSERT_TRUE(pose);
    EXPECT_EQ(formatXform(*pose), text);
    const M44d orient = eulerMatrix({0, 0, -49.466453277038752 * kDegToRad});
    expectNear(pose->matrix,
               scaleMatrix({1, 2, 3}) * eulerMatrix({0.1, -0.2, 0.3}, kZYX) * orient *
                   scaleMatrix({0.5, 0.5, 0.5}) * translationMatrix({7, 8, 9}),
               1e-12);
    NumberSource cut("1 1 1 0 0 0 0 0 0");
    EXPECT_FALSE(parseXform(cut));
    NumberSource noFlag(std::string_view(text, std::strlen(text) - 4));
    EXPECT_FALSE(parseXform(noFlag));
}

TEST_F(JointTest, APoseGivesItsChannelsBack) {
    const NodeHandle j = make("joint", "j");
    set(j, "t", 1, 2, 3);
    setDegrees(j, "r", 10, 20, 30);
    setDegrees(j, "jo", -40, 50, 60);
    const auto pose = captureXform(scene, j);
    expectNear(pose->matrix, localMatrix(scene, j));
    const M44d before = localMatrix(scene, j);
    set(j, "t", 0, 0, 0);
    setDegrees(j, "r", 0, 0, 0);
    setDegrees(j, "jo", 0, 0, 0);
    ASSERT_TRUE(write(j, posedChannels(scene, j, *pose)));
    expectNear(localMatrix(scene, j), before);
    EXPECT_FALSE(captureXform(scene, scene.timeNode()));
}

}  // namespace torvel::test
