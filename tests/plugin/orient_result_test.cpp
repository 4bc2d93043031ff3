// What Orient Joints leaves in the scene: the same rig with other axes.

#include "plugin/fixtures/joint_frames.h"
#include "plugin/fixtures/rig_state.h"
#include "plugin/fixtures/rigs.h"
#include "plugin/fixtures/tool_clicks.h"

namespace torvel::test {

namespace {

const Lines kChain{"hip", "knee", "ankle", "toe"};
const std::string kHip = "|hip";
const std::string kKnee = "|hip|knee";
const std::string kAnkle = "|hip|knee|ankle";
const std::string kToe = "|hip|knee|ankle|toe";

std::string firstChildOf(const std::string& path) {
    return path == kHip ? kKnee : path == kKnee ? kAnkle : kToe;
}

}  // namespace

class OrientResultTest : public PluginScene, public ::testing::WithParamInterface<AxisRow> {
  public:
    void click(const Lines& selection, bool children) {
        orient(*this, selection, GetParam(), children);
    }

    /// The named joints point as asked, all others as before.
    void expectOriented(const Lines& oriented, const Frames& before) {
        const Places places = placesOf(*this);
        for (const auto& [path, frame] : framesOf(*this)) {
            SCOPED_TRACE(path);
            if (std::find(oriented.begin(), oriented.end(), path) == oriented.end())
                expectSameFrame(frame, before.at(path), path);
            else
                expectAimed(frame, GetParam().order, GetParam().up,
                            places.at(firstChildOf(path)) - places.at(path));
        }
    }

    void makeBoundChain() {
        makeChain(*this, kChain);
        bindTube(*this, kHip, "leg");
    }
};

TEST_P(OrientResultTest, ASkinnedMiddleJoint) {
    makeBoundChain();
    const RigState before = stateOf(*this);
    const Frames frames = framesOf(*this);
    click({kKnee}, false);
    expectSameRig(stateOf(*this), before);
    expectOriented({kKnee}, frames);
    expectFrozen(*this, {kHip, kKnee, kAnkle, kToe});
    EXPECT_EQ(languageErrors(), 0);
}

TEST_P(OrientResultTest, ASkinnedMiddleJointAndItsChildren) {
    makeBoundChain();
    const RigState before = stateOf(*this);
    const Frames frames = framesOf(*this);
    click({kKnee}, true);
    expectSameRig(stateOf(*this), before);
    expectOriented({kKnee, kAnkle}, frames);
}

// The top of a skinned skeleton keeps its axes: its copy has no namesake.
TEST_P(OrientResultTest, EverySkinnedJointButTheTop) {
    makeBoundChain();
    const RigState before = stateOf(*this);
    const Frames frames = framesOf(*this);
    click({kHip, kKnee, kAnkle, kToe}, false);
    expectSameRig(stateOf(*this), before);
    expectOriented({kKnee, kAnkle}, frames);
}

TEST_P(OrientResultTest, AGroupedSkeleton) {
    makeGroup(*this, "chr");
    python("cmds.setAttr('chr.translate', 1, 2, 3); cmds.setAttr('chr.rotate', 15, 35, -20)");
    makeChain(*this, {"hip", "knee", "ankle"}, "|chr");
    bindTube(*this, "|chr|hip", "leg");
    const RigState before = stateOf(*this);
    click({"|chr|hip|knee"}, true);
    expectSameRig(stateOf(*this), before);
    const Places places = placesOf(*this);
    expectAimed(rotationFrame(*this, "|chr|hip|knee"), GetParam().order, GetParam().up,
                places.at("|chr|hip|knee|ankle") - places.at("|chr|hip|knee"));
}

TEST_P(OrientResultTest, ABareSkeletonIsOrientedInPlace) {
    for (bool children : {true, false}) {
        python("cmds.file(new=True, force=True)");
        makeChain(*this, kChain);
        const RigState before = stateOf(*this);
        const Frames frames = framesOf(*this);
        click({kHip}, children);
        const RigState after = stateOf(*this);
        EXPECT_EQ(after.nodes, before.nodes);
        for (const auto& [path, matrix] : before.joints)
            EXPECT_TRUE(after.joints.at(path).equalWithAbsError(matrix, 1e-9)) << path;
        expectOriented(children ? Lines{kHip, kKnee, kAnkle} : Lines{kHip}, frames);
        expectFrozen(*this, {kHip, kKnee, kAnkle, kToe});
    }
}

TEST_P(OrientResultTest, ASecondClickChangesNothing) {
    makeBoundChain();
    click({kKnee}, true);
    const RigState once = stateOf(*this);
    const Frames frames = framesOf(*this);
    click({kKnee}, true);
    expectSameRig(stateOf(*this), once);
    for (const auto& [path, frame] : framesOf(*this))
        expectSameFrame(frame, frames.at(path), path);
}

TEST_P(OrientResultTest, TheSkinFollowsAsBefore) {
    makeBoundChain();
    const Points rest = pointsOf(*this, "|leg|legShape");
    turnInWorld(*this, kKnee, 40.0);
    const Points posed = pointsOf(*this, "|leg|legShape");
    ASSERT_GT(deviation(posed, rest), 0.01) << "the pose has to bend the mesh";
    // The click goes back to the bind pose by itself.
    click({kKnee}, true);
    expectPoints(pointsOf(*this, "|leg|legShape"), rest, 1e-5);
    turnInWorld(*this, kKnee, 40.0);
    expectPoints(pointsOf(*this, "|leg|legShape"), posed, 1e-4);
}

INSTANTIATE_TEST_SUITE_P(Rows, OrientResultTest, ::testing::ValuesIn(kAxisRows),
                         [](const ::testing::TestParamInfo<AxisRow>& info) {
                             return nameOf(info.param);
                         });

class OrientSpecialTest : public PluginScene {
  public:
    const AxisRow kDefault{'x', 'y', '+', "xyz", "yup"};
};

TEST_F(OrientSpecialTest, ABoneOfNoLengthKeepsItsAxes) {
    makeChain(*this, kChain);
    python("cmds.setAttr('" + kAnkle + ".translate', 0, 0, 0)");
    bindTube(*this, kHip, "leg");
    const RigState before = stateOf(*this);
    const Frames frames = framesOf(*this);
    orient(*this, {kKnee}, kDefault, true);
    expectSameRig(stateOf(*this), before);
    expectSameFrame(rotationFrame(*this, kKnee), frames.at(kKnee), kKnee);
    expectSameFrame(rotationFrame(*this, kToe), frames.at(kToe), kToe);
    const Places places = placesOf(*this);
    expectAimed(rotationFrame(*this, kAnkle), "xyz", "yup", places.at(kToe) - places.at(kAnkle));
}

TEST_F(OrientSpecialTest, TheFirstOfTwoChildrenIsAimedAt) {
    makeChain(*this, {"hip", "knee", "ankle"});
    python("cmds.select('" + kKnee + "'); cmds.joint(name='calf', position=(3, 4, 1))");
    bindTube(*this, kHip, "leg");
    orient(*this, {kKnee}, kDefault, false);
    const Places places = placesOf(*this);
    expectAimed(rotationFrame(*this, kKnee), "xyz", "yup", places.at(kAnkle) - places.at(kKnee));
}

TEST_F(OrientSpecialTest, WorldAxisAlongTheBone) {
    python(
        "cmds.select(clear=True)\n"
        "cmds.joint(name='a', p=(0, 0, 0)); cmds.joint(name='b', p=(0, 3, 0))\n"
        "cmds.joint(name='c', p=(0, 3, 2))\n");
    orient(*this, {"|a"}, kDefault, true);
    const Frame frame = rotationFrame(*this, "|a");
    EXPECT_TRUE(frame.axes[0].equalWithAbsError({0, 1, 0}, 1e-9));
    EXPECT_NEAR(frame.axes[1].y, 0.0, 1e-9) << "any direction across the bone";
    expectAimed(rotationFrame(*this, "|a|b"), "xyz", "yup", {0, 0, 2});
}

// Both axes are those of the frame in which the rotate channels turn; the joint itself stays as
// it was, and rotateAxis holds what is between them.
TEST_F(OrientSpecialTest, WhatTheChannelsHold) {
    python("cmds.select(clear=True); cmds.joint(name='a'); cmds.joint(name='b', p=(0, 0, 5))\n");
    orient(*this, {"|a"}, kDefault, true);
    const V3d orientation = scene().vec3(plug("|a", "jointOrient")) * 57.295779513082323;
    EXPECT_TRUE(orientation.equalWithAbsError({0, -90, 0}, 1e-9)) << orientation;
    const V3d axis = scene().vec3(plug("|a", "rotateAxis")) * 57.295779513082323;
    EXPECT_TRUE(axis.equalWithAbsError({0, 90, 0}, 1e-9)) << axis;
    EXPECT_TRUE(scene().vec3(plug("|a|b", "translate")).equalWithAbsError({0, 0, 5}, 1e-12));
}

TEST_F(OrientSpecialTest, TheSelectionOfABareSkeletonStays) {
    makeChain(*this, kChain);
    orient(*this, {kAnkle, kKnee}, kDefault, true);
    EXPECT_EQ(selected(), (Lines{kAnkle, kKnee}));
}

TEST_F(OrientSpecialTest, ABareSkeletonIsBroughtToItsPose) {
    makeChain(*this, {"hip", "knee", "ankle"});
    python("cmds.dagPose('hip', save=True, bindPose=True)");
    const Places places = placesOf(*this);
    turnInWorld(*this, kKnee, 30.0);
    orient(*this, {kHip}, kDefault, true);
    expectSamePlaces(placesOf(*this), places);
}

// It cannot be frozen, and neither can what is above it in one sweep with it.
TEST_F(OrientSpecialTest, ADrivenRotationOfABareSkeletonKeepsItsJointAndThoseAbove) {
    makeChain(*this, kChain);
    makeGroup(*this, "ctrl");
    python(
        "cmds.setAttr('ctrl.rotateX', 25); cmds.connectAttr('ctrl.rotateX', '|hip|knee.rotateX')");
    const Places places = placesOf(*this);
    const Frames frames = framesOf(*this);
    orient(*this, {kHip}, kDefault, true);
    for (const std::string& path : {kHip, kKnee, kToe})
        expectSameFrame(rotationFrame(*this, path), frames.at(path), path);
    expectAimed(rotationFrame(*this, kAnkle), "xyz", "yup", places.at(kToe) - places.at(kAnkle));
    expectFrozen(*this, {kAnkle, kToe});
    expectSamePlaces(placesOf(*this), places);
}

// Two joints of one short name: the text of the bare road names neither.
TEST_F(OrientSpecialTest, AnAmbiguousNameIsNotOriented) {
    makeChain(*this, kChain);
    makeGroup(*this, "other");
    makeChain(*this, {"knee", "foot"}, "|other");
    const Frames frames = framesOf(*this);
    orient(*this, {kKnee}, kDefault, true);
    EXPECT_NE(scripts().back().find(" (failed)"), std::string::npos);
    for (const auto& [path, frame] : framesOf(*this))
        expectSameFrame(frame, frames.at(path), path);
}

TEST_F(OrientSpecialTest, OnlyTheFirstOfTwoSkinnedSkeletons) {
    makeLeg(*this);
    makeChain(*this, {"arm", "elbow", "hand"});
    bindTube(*this, "|arm", "sleeve");
    const RigState before = stateOf(*this);
    const Frames frames = framesOf(*this);
    orient(*this, {"|arm|elbow", kKnee}, kDefault, true);
    expectSameRig(stateOf(*this), before);
    expectSameFrame(rotationFrame(*this, kKnee), frames.at(kKnee), kKnee);
    const Places places = placesOf(*this);
    expectAimed(rotationFrame(*this, "|arm|elbow"), "xyz", "yup",
                places.at("|arm|elbow|hand") - places.at("|arm|elbow"));
}

TEST_F(OrientSpecialTest, AMismatchLosesNothing) {
    makeGroup(*this, "chr");
    makeChain(*this, {"hip", "knee", "ankle"}, "|chr");
    bindTube(*this, "|chr|hip", "leg");
    makeChain(*this, {"hip", "shin"});
    const RigState before = stateOf(*this);
    orient(*this, {"|chr|hip|knee"}, kDefault, true);
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.weights, before.weights);
    EXPECT_EQ(after.influences.at("skinCluster1").at(2),
              "|chr|tempOldSkeletonGroup|hip|knee|ankle");
    expectSamePoints(after, before);
}

TEST_F(OrientSpecialTest, ARefusedClickChangesNothing) {
    makeLeg(*this);
    const RigState before = stateOf(*this);
    const Frames frames = framesOf(*this);
    for (const Lines& selection : {Lines{}, Lines{"|leg"}, Lines{kKnee, "skinCluster1"}}) {
        orient(*this, selection, kDefault, true);
        expectSameRig(stateOf(*this), before);
        EXPECT_NE(rotationOf(*this, kHip), V3d(0, 0, 0));
    }
}

}  // namespace torvel::test
