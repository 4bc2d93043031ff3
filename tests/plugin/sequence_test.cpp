// Freeze, Orient and Flip after one another, with the scene saved and read again between clicks.

#include <cmath>

#include <QTemporaryDir>

#include "plugin/fixtures/joint_frames.h"
#include "plugin/fixtures/rig_state.h"
#include "plugin/fixtures/rigs.h"
#include "plugin/fixtures/tool_clicks.h"

namespace torvel::test {

class SequenceTest : public PluginScene, public ::testing::WithParamInterface<const char*> {
  public:
    /// 'z' freezes all, 'o' orients from the knee down, 'p' flips knee and ankle.
    void click(char tool) {
        const std::string knee = "|hip|knee";
        if (tool == 'z')
            freeze({knee}, true);
        else if (tool == 'o')
            orient(*this, {knee}, kAxisRows[m_clicks % std::size(kAxisRows)], true);
        else
            flip(*this, {knee + "|ankle", knee}, m_clicks % 2 ? 'y' : 'x', 'z');
        m_clicks += 1;
        EXPECT_EQ(languageErrors(), 0);
    }

    void saveAndReload() {
        const std::string path = m_folder.filePath("rig%1.ma").arg(m_clicks).toStdString();
        python("cmds.file(rename='" + path + "'); cmds.file(save=True, type='mayaAscii')");
        python("cmds.file(new=True, force=True)");
        python("cmds.file('" + path + "', open=True, force=True)");
    }

    /// Everything but the joints' axes.
    void expectKept(const RigState& before, const Places& places) {
        const RigState after = stateOf(*this);
        EXPECT_EQ(after.nodes, before.nodes);
        EXPECT_EQ(after.weights, before.weights);
        EXPECT_EQ(after.influences, before.influences);
        expectSamePoints(after, before);
        expectSamePlaces(placesOf(*this), places);
    }

    void expectPoseIsHeld() {
        const RigState before = stateOf(*this);
        python("cmds.dagPose('hip', restore=True, bindPose=True, g=True)");
        expectSameRig(stateOf(*this), before);
    }

    bool isLinked() {
        return python("cmds.isConnected('|hip|knee.rotateX', '|hip|knee|twist.rotateX')").truth();
    }

    /// The mesh with the hip turned by 30 degrees; the turn is taken back.
    Points bent(const std::string& mesh) {
        turnInWorld(*this, "|hip|knee", 30.0);
        const Points points = pointsOf(*this, mesh);
        turnInWorld(*this, "|hip|knee", -30.0);
        return points;
    }

    void run(const std::string& mesh, bool linked) {
        const RigState before = stateOf(*this);
        const Places places = placesOf(*this);
        const Points bentBefore = linked ? Points() : bent(mesh);
        for (char tool : std::string(GetParam())) {
            SCOPED_TRACE(std::string("click ") + std::to_string(m_clicks) + ", tool " + tool);
            click(tool);
            expectKept(before, places);
            expectPoseIsHeld();
            saveAndReload();
            expectKept(before, places);
            expectPoseIsHeld();
            EXPECT_EQ(linked, linked && isLinked());
            if (!linked)
                expectPoints(bent(mesh), bentBefore, 1e-4);
        }
    }

  private:
    QTemporaryDir m_folder;
    std::size_t m_clicks = 0;
};

TEST_P(SequenceTest, ALeg) {
    makeLeg(*this);
    run("|leg|legShape", false);
}

TEST_P(SequenceTest, ALegWithARotateLink) {
    makeChain(*this, {"hip", "knee", "ankle"});
    makeChain(*this, {"twist"}, "|hip|knee");
    python(
        "cmds.setAttr('|hip|knee.rotate', 0, 0, 0); "
        "cmds.setAttr('|hip|knee|twist.rotate', 0, 0, 0)\n"
        "cmds.connectAttr('|hip|knee.rotateX', '|hip|knee|twist.rotateX')");
    bindTube(*this, "|hip", "leg");
    run("|leg|legShape", true);
}

TEST_P(SequenceTest, TheLegOfTheSampleScene) {
    python("cmds.file('" TORVEL_SCENES_DIR "/leg.ma', open=True, force=True)");
    run("|leg|legShape", false);
}

INSTANTIATE_TEST_SUITE_P(Orders, SequenceTest,
                         ::testing::Values("zopzop", "zpozpo", "ozpozp", "opzopz", "pzopzo",
                                           "pozpoz", "zzoopp", "ppoozz"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                             return std::string(info.param);
                         });

class SequenceHazardTest : public PluginScene {};

// Freeze and Orient close with a bind by the top's short name. While two nodes bear it, the
// cluster stays detached; the next click, after one of them was renamed, heals it.
TEST_F(SequenceHazardTest, AnAmbiguousTopNameKeepsTheBindAway) {
    makeLeg(*this);
    makeGroup(*this, "other");
    makeGroup(*this, "hip", "|other");
    const RigState before = stateOf(*this);
    orient(*this, {"|hip|knee"}, kAxisRows[0], true);
    EXPECT_EQ(scene().number(plug("skinCluster1", "nodeState")), 1.0);
    EXPECT_EQ(stateOf(*this).weights, before.weights);
    flip(*this, {"|hip|knee"}, 'x', 'y');
    EXPECT_EQ(scene().number(plug("skinCluster1", "nodeState")), 1.0);
    EXPECT_EQ(stateOf(*this).weights, before.weights);

    python("cmds.rename('|other|hip', 'pelvis')");
    freeze({"|hip"}, true);
    EXPECT_EQ(scene().number(plug("skinCluster1", "nodeState")), 0.0);
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.weights, before.weights);
    EXPECT_EQ(after.influences, before.influences);
    expectSamePoints(after, before);
}

// A flip of two skeletons parks the second under a group that no later step names. The click is
// healed by hand: delete the copy, take the old skeleton out again.
TEST_F(SequenceHazardTest, ASecondSkeletonIsTakenOutByHand) {
    makeLeg(*this);
    makeChain(*this, {"arm", "hand"});
    bindTube(*this, "|arm", "sleeve");
    const RigState before = stateOf(*this);
    flip(*this, {"|arm|hand", "|hip|knee"}, 'x', 'y');
    python(
        "cmds.delete('|hip'); cmds.parent('|tempOldSkeletonGroup1|hip', w=True)\n"
        "cmds.delete('tempOldSkeletonGroup1')");
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.weights, before.weights);
    EXPECT_EQ(after.influences, before.influences);
    expectSamePoints(after, before);
}

}  // namespace torvel::test
