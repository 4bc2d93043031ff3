#include "node_scene.h"

namespace torvel::test {

using TransformTest = NodeScene;

TEST_F(TransformTest, RotateTurnsAboutItsPivotAndScaleAboutItsOwn) {
    const NodeHandle n = make("transform", "n");
    set(n, "rp", 1, 0, 0);
    setDegrees(n, "r", 0, 0, 90);
    expectNear(V3d(2, 0, 0) * localMatrix(scene, n), V3d(1, 1, 0));
    expectNear(V3d(1, 0, 0) * localMatrix(scene, n), V3d(1, 0, 0));
    setDegrees(n, "r", 0, 0, 0);
    set(n, "sp", 0, 4, 0);
    set(n, "s", 1, 2, 1);
    expectNear(V3d(0, 5, 0) * localMatrix(scene, n), V3d(0, 6, 0));
    set(n, "rpt", 0, 0, 3);
    set(n, "spt", 0, 1, 0);
    set(n, "t", 10, 0, 0);
    expectNear(V3d(0, 4, 0) * localMatrix(scene, n), V3d(10, 5, 3));
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

TEST_F(TransformTest, WorldsFollowTheirParents) {
    const NodeHandle a = make("transform", "a"), b = make("transform", "b", a),
                     c = make("transform", "c", b);
    set(a, "t", 5, 0, 0);
    set(c, "t", 0, 0, 1);
    expectNear(position(c), V3d(5, 0, 1));
    setDegrees(b, "r", 0, 90, 0);
    expectNear(position(c), V3d(6, 0, 0));
    set(a, "t", 0, 7, 0);
    expectNear(position(c), V3d(1, 7, 0));
    expectNear(scene.matrix(plug(c, "parentInverseMatrix[0]")) * parentWorldMatrix(scene, c),
               M44d());
    expectNear(scene.matrix(plug(c, "worldInverseMatrix[0]")) * worldMatrix(scene, c), M44d());
    ASSERT_TRUE(scene.reparent(c, a));
    expectNear(position(c), V3d(0, 7, 1));
}

TEST_F(TransformTest, OffsetParentMatrixLiesBetweenNodeAndParent) {
    const NodeHandle a = make("transform", "a"), b = make("transform", "b", a);
    set(a, "s", 2, 2, 2);
    set(b, "t", 1, 0, 0);
    scene.setMatrix(plug(b, "opm"), translationMatrix({0, 3, 0}));
    expectNear(position(b), V3d(2, 6, 0));
    expectNear(translationOf(localMatrix(scene, b)), V3d(1, 0, 0));
    expectNear(translationOf(parentWorldMatrix(scene, b)), V3d(0, 6, 0));
    set(b, "inheritsTransform", 0);
    expectNear(position(b), V3d(1, 3, 0));
}

TEST_F(TransformTest, EachInstanceHasItsWorld) {
    const NodeHandle a = make("transform", "a"), b = make("transform", "b"),
                     c = make("transform", "c", a);
    const NodeHandle leaf = make("transform", "leaf", c);
    set(a, "tx", 1);
    set(b, "tx", 2);
    set(leaf, "ty", 4);
    expectNear(position(leaf), V3d(1, 4, 0));
    ASSERT_TRUE(scene.addParent(c, b));
    expectNear(worldPosition(scene, leaf, 0), V3d(1, 4, 0));
    expectNear(worldPosition(scene, leaf, 1), V3d(2, 4, 0));
    set(b, "tx", 9);
    expectNear(worldPosition(scene, leaf, 1), V3d(9, 4, 0));
    ASSERT_TRUE(scene.removeParent(c, a));
    expectNear(worldPosition(scene, leaf, 0), V3d(9, 4, 0));
}

TEST_F(TransformTest, ConnectedChannelsDriveTheMatrix) {
    const NodeHandle a = make("transform", "a"), b = make("transform", "b");
    link(a, "t", b, "t");
    link(a, "rz", b, "rz");
    set(a, "t", 1, 2, 3);
    setDegrees(a, "r", 0, 0, 90);
    expectNear(position(b), V3d(1, 2, 3));
    expectNear(V3d(1, 0, 0) * worldMatrix(scene, b), V3d(1, 3, 3));
    set(a, "ty", 5);
    expectNear(position(b), V3d(1, 5, 3));
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
