#include "node_scene.h"
#include "support/scene_script.h"

namespace torvel::test {

class TransformTest : public NodeScene {
  protected:
    SceneScript script{scene};
};

TEST_F(TransformTest, RotateTurnsAboutItsPivotAndScaleAboutItsOwn) {
    // The matrix is compared by where it takes a point.
    script.run("transform n; transform probe n; n.rp 1 0 0; n.r 0 0 90d");
    script.run("probe.t 2 0 0; probe == 1 1 0; probe.t 1 0 0; probe == 1 0 0");
    script.run("n.r 0 0 0; n.sp 0 4 0; n.s 1 2 1; probe.t 0 5 0; probe == 0 6 0");
    script.run("n.rpt 0 0 3; n.spt 0 1 0; n.t 10 0 0; probe.t 0 4 0; probe == 10 5 3");
}

TEST_F(TransformTest, WorldsFollowTheirParents) {
    script.run(R"(
        transform a; transform b a; transform c b
        a.t 5 0 0; c.t 0 0 1; c == 5 0 1
        b.r 0 90d 0; c == 6 0 0
        a.t 0 7 0; c == 1 7 0)");
    const NodeHandle c = script.node("c");
    expectNear(scene.matrix(plug(c, "parentInverseMatrix[0]")) * parentWorldMatrix(scene, c),
               M44d());
    expectNear(scene.matrix(plug(c, "worldInverseMatrix[0]")) * worldMatrix(scene, c), M44d());
    ASSERT_TRUE(scene.reparent(c, script.node("a")));
    script.run("c == 0 7 1");
    expectNear(position(c), V3d(0, 7, 1));
}

TEST_F(TransformTest, OffsetParentMatrixLiesBetweenNodeAndParent) {
    script.run(R"(
        transform a; transform b a; a.s 2 2 2; b.t 1 0 0
        b.opm 1 0 0 0  0 1 0 0  0 0 1 0  0 3 0 1
        b == 2 6 0; b.m == 1 0 0; b.parentMatrix[0] == 0 6 0)");
    expectNear(translationOf(parentWorldMatrix(scene, script.node("b"))), V3d(0, 6, 0));
    script.run("b.inheritsTransform 0; b == 1 3 0");
}

TEST_F(TransformTest, EachInstanceHasItsWorld) {
    script.run("transform a; transform b; transform c a; transform leaf c");
    script.run("a.tx 1; b.tx 2; leaf.ty 4; leaf == 1 4 0");
    const NodeHandle leaf = script.node("leaf"), c = script.node("c");
    ASSERT_TRUE(scene.addParent(c, script.node("b")));
    script.run("leaf == 1 4 0; leaf.wm[1] == 2 4 0; b.tx 9; leaf.wm[1] == 9 4 0");
    expectNear(worldPosition(scene, leaf, 1), V3d(9, 4, 0));
    ASSERT_TRUE(scene.removeParent(c, script.node("a")));
    expectNear(worldPosition(scene, leaf, 0), V3d(9, 4, 0));
}

TEST_F(TransformTest, ConnectedChannelsDriveTheMatrix) {
    script.run(R"(
        transform a; transform b; a.t -> b.t; a.rz -> b.rz; a.t 1 2 3; a.r 0 0 90d
        b.wm[0] == 0 1 0 0  -1 0 0 0  0 0 1 0  1 2 3 1
        a.ty 5; b == 1 5 3)");
}

TEST_F(TransformTest, TheWholeStackInItsOrder) {
    const NodeHandle n = make("transform", "n");
    set(n, "t", 1, 2, 3);
    set(n, "r", 0.1, 0.2, 0.3);
    set(n, "ro", kZXY);
    set(n, "s", 2, 3, 4);
    set(n, "sh", 0.1, 0.2, 0.3);
    set(n, "rp", 1, 0, 2);
    set(n, "rpt", 0, 1, 0);
    set(n, "sp", 0, 5, 1);
    set(n, "spt", 3, 0, 0);
    set(n, "ra", 0.4, 0.5, 0.6);
    const auto T = [](double x, double y, double z) { return translationMatrix({x, y, z}); };
    const M44d shear(1, 0, 0, 0, 0.1, 1, 0, 0, 0.2, 0.3, 1, 0, 0, 0, 0, 1);
    const M44d wanted = T(0, -5, -1) * scaleMatrix({2, 3, 4}) * shear * T(0, 5, 1) * T(3, 0, 0) *
                        T(-1, 0, -2) * eulerMatrix({0.4, 0.5, 0.6}) *
                        eulerMatrix({0.1, 0.2, 0.3}, kZXY) * T(1, 0, 2) * T(0, 1, 0) * T(1, 2, 3);
    expectNear(localMatrix(scene, n), wanted);
    expectNear(scene.matrix(plug(n, "xformMatrix")), wanted);
    expectNear(scene.matrix(plug(n, "inverseMatrix")) * wanted, M44d());
}

TEST_F(TransformTest, ALocalMatrixIsWrittenThroughPivotsAndAxis) {
    const NodeHandle n = make("transform", "n");
    set(n, "ro", kYXZ);
    set(n, "ra", 0.2, -0.3, 0.4);
    set(n, "rp", 1, 2, 3);
    set(n, "sp", -1, 0, 2);
    set(n, "spt", 0.5, 0, 0);
    const M44d wanted = scaleMatrix({1, 2, -3}) * shearMatrix({0.1, 0, 0.2}) *
                        eulerMatrix({2, 0.5, -1}) * translationMatrix({7, 8, 9});
    ASSERT_TRUE(setLocalMatrix(n, wanted));
    expectNear(localMatrix(scene, n), wanted);
    expectNear(get(n, "rp"), V3d(1, 2, 3));
    expectNear(get(n, "ra"), V3d(0.2, -0.3, 0.4));
}

TEST_F(TransformTest, OnlyChannelsThatChangeAreWritten) {
    const NodeHandle n = make("transform", "n");
    setDegrees(n, "r", 400, 90, 20);
    set(n, "s", -1, 1, 1);
    EXPECT_TRUE(changedChannels(scene, n, channelsFor(n, localMatrix(scene, n)), 1e-9).empty());
    scene.setLocked(plug(n, "rx"), true);
    scene.setLocked(plug(n, "tz"), true);
    const M44d moved = localMatrix(scene, n) * translationMatrix({0, 2, 0});
    ASSERT_TRUE(setLocalMatrix(n, moved));
    expectNear(get(n, "t"), V3d(0, 2, 0));
    const Status refused = setLocalMatrix(n, moved * translationMatrix({1, 0, 1}));
    EXPECT_EQ(refused.text(), "The attribute 'n.translateZ' is locked and cannot be changed.");
    expectNear(get(n, "t"), V3d(0, 2, 0));
}

TEST_F(TransformTest, DrivenChannelsAreLeftToTheirDrivers) {
    const NodeHandle driver = make("transform", "driver"), n = make("transform", "n");
    link(driver, "tx", n, "tx");
    ASSERT_TRUE(setLocalMatrix(n, translationMatrix({1, 2, 0})));
    expectNear(get(n, "t"), V3d(0, 2, 0));
}

TEST_F(TransformTest, TextAndNodesThatAreNoTransformsAreHarmless) {
    const NodeHandle pose = make("dagPose", "pose");
    expectNear(worldMatrix(scene, pose), M44d());
    expectNear(worldMatrix(scene, {}), M44d());
    expectNear(worldMatrix(scene, scene.world()), M44d());
    EXPECT_FALSE(channelsOf(scene, pose).isJoint);
    EXPECT_TRUE(changedChannels(scene, pose, Channels(), 0.0).empty());
    const NodeHandle n = make("transform", "n");
    scene.deleteNodes({n});
    expectNear(localMatrix(scene, n), M44d());
}

}  // namespace torvel::test
