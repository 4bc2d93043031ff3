#include <cmath>
#include <cstring>

#include "node_scene.h"
#include "nodes/deform/dag_pose.h"
#include "support/scene_script.h"

namespace torvel::test {

class JointTest : public NodeScene {
  protected:
    SceneScript script{scene};
};

TEST_F(JointTest, AChainDrawnInAPlaneMatchesItsStoredPositions) {
    script.run(R"(
        joint a; joint b a; joint c b; a.s -> b.is; b.s -> c.is
        a.t -1.0074561718837285 1.1005195249890261 0; a.jo 0 0 -49.466453277038752d
        b.t 1.9994500146724059 0 0; b.jo 0 0 109.56720189350501d
        c.t 3.3342900920614262 0 0; c.jo 0 0 -60.100748616466262d
        b == 0.29197270694295163 -0.41911363799627854 0
        c == 1.9540376719102268 2.471393319311959 0)");
    expectNear(rotationPart(worldMatrix(scene, script.node("c"))), M44d(), 1e-9);
    const auto pose = captureXform(scene, script.node("a"));
    EXPECT_NEAR(pose->jointOrient[2], -0.41839386033778669, 1e-14);
    EXPECT_NEAR(pose->jointOrient[3], 0.90826569770725385, 1e-14);
}

TEST_F(JointTest, TheStackIsScaleAxisRotateOrientCompensateTranslate) {
    script.run(R"(
        joint p; joint j p; p.s -> j.is; p.s 2 4 8; j.s 3 5 7; j.t 4 5 6
        j.ra 0.1 0.2 0.3; j.r 0.4 0.5 0.6; j.ro 5; j.jo 0.7 0.8 0.9
        j.rp 9 9 9; j.sh 1 1 1  # pivots and shear of a joint count for nothing)");
    const M44d inner = scaleMatrix({3, 5, 7}) * eulerMatrix({0.1, 0.2, 0.3}) *
                       eulerMatrix({0.4, 0.5, 0.6}, kZYX) * eulerMatrix({0.7, 0.8, 0.9});
    const M44d move = translationMatrix({4, 5, 6});
    const NodeHandle j = script.node("j");
    expectNear(localMatrix(scene, j), inner * scaleMatrix({0.5, 0.25, 0.125}) * move);
    script.run("j.ssc 0");
    expectNear(localMatrix(scene, j), inner * move);
}

TEST_F(JointTest, InverseScaleCountsOnlyWhileConnected) {
    script.run(R"(
        joint p; joint j p; p.s -> j.is; j.t 1 0 0; p.s 2 2 2
        # the way to the child is scaled all the same
        j.wm[0] == 1 0 0 0  0 1 0 0  0 0 1 0  2 0 0 1
        p.s -x j.is; j.wm[0] == 2 0 0 0  0 2 0 0  0 0 2 0  2 0 0 1
        p.s 0 0 0; p.s -> j.is)");
    EXPECT_TRUE(std::isfinite(worldMatrix(scene, script.node("j"))[0][0]));
}

TEST_F(JointTest, ALocalMatrixOfAJointKeepsItsOrient) {
    script.run("joint p; joint j p; p.s -> j.is; p.s 2 2 2; j.jo 10d 20d 30d; j.ra 0 0.3 0");
    const NodeHandle j = script.node("j");
    const M44d wanted =
        eulerMatrix({0.5, 0.6, 0.7}) * scaleMatrix({0.5, 0.5, 0.5}) * translationMatrix({1, 2, 3});
    ASSERT_TRUE(setLocalMatrix(j, wanted));
    expectNear(localMatrix(scene, j), wanted);
    script.run("j.jo == 10d 20d 30d; j.s == 1 1 1 ~ 1e-9");
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
    script.run("joint j; j.t 1 2 3; j.r 10d 20d 30d; j.jo -40d 50d 60d");
    const NodeHandle j = script.node("j");
    const auto pose = captureXform(scene, j);
    expectNear(pose->matrix, localMatrix(scene, j));
    const M44d before = localMatrix(scene, j);
    script.run("j.t 0 0 0; j.r 0 0 0; j.jo 0 0 0");
    ASSERT_TRUE(write(j, posedChannels(scene, j, *pose)));
    expectNear(localMatrix(scene, j), before);
    EXPECT_FALSE(captureXform(scene, scene.timeNode()));
}

}  // namespace torvel::test
