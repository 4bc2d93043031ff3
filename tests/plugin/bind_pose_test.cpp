// Reset Bind Pose: the pose of a bound skeleton is taken anew.

#include "plugin/fixtures/rig_state.h"
#include "plugin/fixtures/rigs.h"
#include "plugin/fixtures/tool_clicks.h"

namespace torvel::test {

class BindPoseTest : public PluginScene {
  public:
    const std::string kReset = "mel plain: dagPose -bp -reset";

    M44d posed(const std::string& path) {
        python("cmds.dagPose('" + path + "', restore=True, bindPose=True, g=True)");
        return worldMatrixOf(*this, path);
    }
};

TEST_F(BindPoseTest, OneJointStandsForItsWholeSkeleton) {
    makeLeg(*this);
    clickOn(*this, {"|hip|knee"}, "btn_resetBndPose");
    EXPECT_EQ(transcript(), (Lines{"info: |hip", kReset}));
    EXPECT_EQ(selected(), (Lines{"|hip", "|hip|knee", "|hip|knee|ankle"}));
}

TEST_F(BindPoseTest, ThePresentPoseIsTheNewOne) {
    makeLeg(*this);
    turnInWorld(*this, "|hip|knee", 30.0);
    const M44d knee = worldMatrixOf(*this, "|hip|knee");
    const M44d ankle = worldMatrixOf(*this, "|hip|knee|ankle");
    clickOn(*this, {"|hip|knee|ankle"}, "btn_resetBndPose");
    EXPECT_EQ(pythonText("cmds.dagPose('hip', query=True, bindPose=True)"), "bindPose1");
    turnInWorld(*this, "|hip|knee", -70.0);
    turnInWorld(*this, "|hip", 15.0);
    EXPECT_TRUE(posed("|hip|knee").equalWithAbsError(knee, 1e-9));
    EXPECT_TRUE(worldMatrixOf(*this, "|hip|knee|ankle").equalWithAbsError(ankle, 1e-9));
}

// The cluster keeps its own matrices: the mesh stays as it is bent.
TEST_F(BindPoseTest, TheSkinIsNotTouched) {
    makeLeg(*this);
    turnInWorld(*this, "|hip|knee", 30.0);
    const RigState before = stateOf(*this);
    clickOn(*this, {"|hip"}, "btn_resetBndPose");
    expectSameRig(stateOf(*this), before);
}

TEST_F(BindPoseTest, WithoutLastJointsTheirPoseStays) {
    makeLeg(*this);
    const V3d before = rotationOf(*this, "|hip|knee|ankle");
    python("cmds.setAttr('|hip|knee.rotateZ', 50); cmds.setAttr('|hip|knee|ankle.rotateZ', 60)");
    QWidget* window = openTool();
    check(window, "cBox_ignoreLastChild", true);
    select({"|hip"});
    press(window, "btn_resetBndPose");
    EXPECT_EQ(selected(), (Lines{"|hip", "|hip|knee"}));
    posed("|hip");
    EXPECT_NEAR(rotationOf(*this, "|hip|knee").z, 50.0, 1e-9);
    EXPECT_TRUE(rotationOf(*this, "|hip|knee|ankle").equalWithAbsError(before, 1e-9));
}

TEST_F(BindPoseTest, ARefusalStillSendsTheCommand) {
    makeLeg(*this);
    clickOn(*this, {"|leg"}, "btn_resetBndPose");
    EXPECT_EQ(transcript(), (Lines{"info: Todos no son Joints", kReset + " (failed)"}));
    clickOn(*this, {}, "btn_resetBndPose");
    EXPECT_EQ(transcript(), (Lines{"info: Please, select any 'Joint'", "info: Todos no son Joints",
                                   kReset + " (failed)"}));
}

// A mixed selection is refused as a whole, but the command takes its joints as they are selected.
TEST_F(BindPoseTest, AMixedSelectionResetsItsOwnJoints) {
    makeLeg(*this);
    python("cmds.setAttr('|hip|knee.rotateZ', 50); cmds.setAttr('|hip|knee|ankle.rotateZ', 60)");
    clickOn(*this, {"|hip|knee", "|leg"}, "btn_resetBndPose");
    EXPECT_EQ(transcript(), (Lines{"info: Todos no son Joints", kReset}));
    posed("|hip");
    EXPECT_NEAR(rotationOf(*this, "|hip|knee").z, 50.0, 1e-9);
    EXPECT_GT(std::fabs(rotationOf(*this, "|hip|knee|ankle").z - 60.0), 1.0);
}

TEST_F(BindPoseTest, AnUnboundSkeletonHasNoPose) {
    makeChain(*this, {"hip", "knee"});
    clickOn(*this, {"|hip"}, "btn_resetBndPose");
    EXPECT_EQ(transcript(), (Lines{"info: |hip", kReset + " (failed)"}));
}

TEST_F(BindPoseTest, TheNextToolKeepsTheNewPose) {
    makeLeg(*this);
    const Points rest = pointsOf(*this, "|leg|legShape");
    turnInWorld(*this, "|hip|knee", 30.0);
    clickOn(*this, {"|hip"}, "btn_resetBndPose");
    const RigState before = stateOf(*this);
    orient(*this, {"|hip|knee"}, kAxisRows[0], true);
    // The joints stay in the new pose; the bind takes it for the one the mesh was made in.
    expectSameSkeletons(stateOf(*this), before);
    expectPoints(pointsOf(*this, "|leg|legShape"), rest, 1e-5);
}

}  // namespace torvel::test
