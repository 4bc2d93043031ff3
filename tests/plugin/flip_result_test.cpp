// What Flip leaves in the scene: the same rig, two axes of the chosen joints reversed.

#include "plugin/fixtures/joint_frames.h"
#include "plugin/fixtures/rig_state.h"
#include "plugin/fixtures/rigs.h"
#include "plugin/fixtures/tool_clicks.h"

namespace torvel::test {

namespace {

const std::string kHip = "|hip";
const std::string kKnee = "|hip|knee";
const std::string kAnkle = "|hip|knee|ankle";
const std::string kToe = "|hip|knee|ankle|toe";

/// Where a rig must stand after a flip: everything but the joints' axes.
void expectKept(PluginScene& scene, const RigState& before, const Places& places) {
    const RigState after = stateOf(scene);
    EXPECT_EQ(after.nodes, before.nodes);
    EXPECT_EQ(after.weights, before.weights);
    EXPECT_EQ(after.influences, before.influences);
    expectSamePoints(after, before);
    expectSamePlaces(placesOf(scene), places);
}

}  // namespace

class FlipResultTest : public PluginScene, public ::testing::WithParamInterface<const char*> {
  public:
    char primary() { return GetParam()[0]; }
    char secondary() { return GetParam()[1]; }
    void click(const Lines& selection) { flip(*this, selection, primary(), secondary()); }

    void expectFlips(const Lines& flipped, const Frames& before) {
        for (const auto& [path, frame] : framesOf(*this)) {
            if (std::find(flipped.begin(), flipped.end(), path) == flipped.end())
                expectSameFrame(frame, before.at(path), path);
            else
                expectFlipped(frame, before.at(path), primary(), secondary(), path);
        }
    }
};

TEST_P(FlipResultTest, SkinnedJoints) {
    for (const Lines& selection : {Lines{kHip}, Lines{kKnee}, Lines{kToe}, Lines{kAnkle, kKnee},
                                   Lines{kHip, kKnee, kAnkle, kToe}}) {
        SCOPED_TRACE(selection.front() + " and " + std::to_string(selection.size() - 1));
        python("cmds.file(new=True, force=True)");
        makeChain(*this, {"hip", "knee", "ankle", "toe"});
        bindTube(*this, kHip, "leg");
        const RigState before = stateOf(*this);
        const Places places = placesOf(*this);
        const Frames frames = framesOf(*this);
        click(selection);
        expectKept(*this, before, places);
        expectFlips(selection, frames);
        expectFrozen(*this, {kHip, kKnee, kAnkle, kToe});
    }
}

TEST_P(FlipResultTest, BareJointsKeepTheRotationsOfOthers) {
    makeChain(*this, {"hip", "knee", "ankle", "toe"});
    const RigState before = stateOf(*this);
    const Places places = placesOf(*this);
    const Frames frames = framesOf(*this);
    const V3d hip = rotationOf(*this, kHip);
    const V3d ankle = rotationOf(*this, kAnkle);
    click({kKnee});
    EXPECT_EQ(stateOf(*this).nodes, before.nodes);
    expectSamePlaces(placesOf(*this), places);
    expectFlips({kKnee}, frames);
    expectFrozen(*this, {kKnee});
    EXPECT_TRUE(rotationOf(*this, kHip).equalWithAbsError(hip, 1e-9));
    EXPECT_TRUE(rotationOf(*this, kAnkle).equalWithAbsError(ankle, 1e-9));
    EXPECT_EQ(selected(), Lines{kKnee});
}

TEST_P(FlipResultTest, TwiceIsNothing) {
    makeLeg(*this);
    const RigState before = stateOf(*this);
    const Frames frames = framesOf(*this);
    click({kKnee});
    click({kKnee});
    expectSameRig(stateOf(*this), before);
    expectFlips({}, frames);
}

TEST_P(FlipResultTest, TheSkinFollowsAsBefore) {
    makeLeg(*this);
    const Points rest = pointsOf(*this, "|leg|legShape");
    turnInWorld(*this, kKnee, 40.0);
    const Points posed = pointsOf(*this, "|leg|legShape");
    click({kKnee});
    expectPoints(pointsOf(*this, "|leg|legShape"), rest, 1e-5);
    turnInWorld(*this, kKnee, 40.0);
    expectPoints(pointsOf(*this, "|leg|legShape"), posed, 1e-4);
}

INSTANTIATE_TEST_SUITE_P(Pairs, FlipResultTest,
                         ::testing::Values("xy", "xz", "yx", "yz", "zx", "zy"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                             return std::string(info.param);
                         });

class FlipSpecialTest : public PluginScene {};

TEST_F(FlipSpecialTest, TheHalfTurnGoesIntoJointOrientation) {
    python(
        "cmds.select(clear=True); cmds.joint(name='a'); cmds.joint(name='b', p=(1, 0, 0))\n"
        "cmds.setAttr('a.jointOrient', 0, 0, 25)\n");
    flip(*this, {"|a"}, 'x', 'y');
    const V3d turned = scene().vec3(plug("|a", "jointOrient")) * 57.295779513082323;
    EXPECT_NEAR(std::fabs(turned.z - 25.0), 180.0, 1e-9) << turned;
    expectFrozen(*this, {"|a", "|a|b"});
}

TEST_F(FlipSpecialTest, AGroupedSkeletonStaysBelowItsGroup) {
    makeGroup(*this, "chr");
    python("cmds.setAttr('chr.translate', 1, 2, 3); cmds.setAttr('chr.rotate', 15, 35, -20)");
    makeChain(*this, {"hip", "knee", "ankle"}, "|chr");
    bindTube(*this, "|chr|hip", "leg");
    const RigState before = stateOf(*this);
    const Places places = placesOf(*this);
    const Frames frames = framesOf(*this);
    flip(*this, {"|chr|hip", "|chr|hip|knee"}, 'y', 'z');
    expectKept(*this, before, places);
    for (const char* path : {"|chr|hip", "|chr|hip|knee"})
        expectFlipped(rotationFrame(*this, path), frames.at(path), 'y', 'z', path);
}

TEST_F(FlipSpecialTest, ALocatorBelowAJointStaysInPlace) {
    makeChain(*this, {"hip", "knee", "ankle"});
    python(
        "cmds.createNode('transform', name='mark', parent='|hip|knee')\n"
        "cmds.createNode('locator', name='markShape', parent='mark')\n"
        "cmds.setAttr('mark.translate', 1, 2, 3); cmds.setAttr('mark.rotate', 10, 20, 30)\n");
    const M44d before = worldMatrixOf(*this, "|hip|knee|mark");
    flip(*this, {"|hip|knee"}, 'x', 'y');
    EXPECT_TRUE(worldMatrixOf(*this, "|hip|knee|mark").equalWithAbsError(before, 1e-9));
}

TEST_F(FlipSpecialTest, ADrivenRotationOfABareJointKeepsItsAxes) {
    makeChain(*this, {"hip", "knee", "ankle"});
    makeGroup(*this, "ctrl");
    python(
        "cmds.setAttr('ctrl.rotateX', 25); cmds.connectAttr('ctrl.rotateX', '|hip|knee.rotateX')");
    const RigState before = stateOf(*this);
    const Frames frames = framesOf(*this);
    const Places places = placesOf(*this);
    flip(*this, {kKnee}, 'x', 'y');
    EXPECT_EQ(languageErrors(), 1 + 1) << "no pose to restore, and no freeze";
    EXPECT_EQ(stateOf(*this).nodes, before.nodes);
    expectSamePlaces(placesOf(*this), places);
    for (const auto& [path, frame] : framesOf(*this))
        expectSameFrame(frame, frames.at(path), path);
}

// A node of the child's name at the top of the scene: the child is numbered on its way out and
// keeps the number.
TEST_F(FlipSpecialTest, ATopLevelNamesakeOfAChildRenamesTheChild) {
    makeChain(*this, {"hip", "knee", "ankle"});
    makeGroup(*this, "ankle");
    flip(*this, {"|hip|knee"}, 'x', 'y');
    EXPECT_TRUE(exists("|hip|knee|ankle1"));
    EXPECT_FALSE(exists("|hip|knee|ankle"));
    EXPECT_TRUE(exists("|ankle"));
}

// With a skin the numbered joint is not found by its name: its influence is told and lost.
TEST_F(FlipSpecialTest, ATopLevelNamesakeCostsTheInfluenceOfASkinnedChild) {
    makeLeg(*this);
    makeGroup(*this, "ankle");
    const RigState before = stateOf(*this);
    flip(*this, {"|hip|knee"}, 'x', 'y');
    const Lines said = messages();
    EXPECT_EQ(std::count(said.begin(), said.end(),
                         "warning: No se encontró duplicado para el joint: ankle"),
              1);
    const RigState after = stateOf(*this);
    EXPECT_TRUE(exists("|hip|knee|ankle1"));
    EXPECT_EQ(after.weights, before.weights) << "the weights stay in the cluster";
    const auto sources = after.influences.at("skinCluster1");
    EXPECT_TRUE(sources.count(2) == 0 || sources.at(2).empty());
    EXPECT_EQ(after.influences.at("skinCluster1").at(1), "|hip|knee");
}

TEST_F(FlipSpecialTest, AJointInTheMiddleWithSiblingsMovesToTheirEnd) {
    makeChain(*this, {"hip", "knee", "ankle"});
    python("cmds.select('|hip'); cmds.joint(name='tail', p=(2, 5, 0))");
    flip(*this, {"|hip|knee"}, 'x', 'y');
    EXPECT_EQ(pythonText("cmds.listRelatives('hip')"), "tail knee");
}

// The order of siblings is that of the pairing, which went on the copy's side only.
TEST_F(FlipSpecialTest, SkinnedSiblingsKeepTheirInfluences) {
    makeChain(*this, {"hip", "knee", "ankle"});
    python("cmds.select('|hip'); cmds.joint(name='tail', p=(2, 5, 0))");
    bindTube(*this, kHip, "leg");
    const RigState before = stateOf(*this);
    const Places places = placesOf(*this);
    flip(*this, {"|hip|knee"}, 'x', 'y');
    expectKept(*this, before, places);
}

TEST_F(FlipSpecialTest, TwoSkeletonsLeaveTheSecondParked) {
    makeLeg(*this);
    makeChain(*this, {"arm", "hand"});
    bindTube(*this, "|arm", "sleeve");
    const RigState before = stateOf(*this);
    flip(*this, {"|arm|hand", kKnee}, 'x', 'y');
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.weights, before.weights);
    EXPECT_EQ(after.influences.at("skinCluster2"), before.influences.at("skinCluster2"));
    EXPECT_EQ(after.influences.at("skinCluster1").at(1), "|tempOldSkeletonGroup1|hip|knee");
    EXPECT_TRUE(exists("|hip|knee|ankle")) << "a copy that nothing hangs on";
    expectSamePoints(after, before);
}

TEST_F(FlipSpecialTest, ARefusedClickChangesNothing) {
    makeLeg(*this);
    const RigState before = stateOf(*this);
    for (const Lines& selection : {Lines{}, Lines{"|leg"}, Lines{kKnee, "skinCluster1"}}) {
        flip(*this, selection, 'x', 'y');
        expectSameRig(stateOf(*this), before);
        EXPECT_NE(rotationOf(*this, kHip), V3d(0, 0, 0));
    }
}

}  // namespace torvel::test
