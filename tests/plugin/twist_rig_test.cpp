// Twist joints on whole rigs: our own arm and leg, the skeleton tools after Twist, and rigs that
// others made (TORVEL_RIGS names their folder; without it those cases are skipped).

#include <cstdlib>
#include <filesystem>

#include <fmt/format.h>

#include "plugin/fixtures/tool_clicks.h"
#include "plugin/fixtures/twist_scene.h"

namespace torvel::test {

class TwistRigTest : public TwistScene {
  public:
    void open(const std::string& path) {
        python("cmds.file('" + path + "', open=True, force=True)");
        forget();
    }
    void openOwn(const char* name) { open(std::string(TORVEL_SCENES_DIR "/") + name); }

    /// The mesh after a turn of the joint, which is taken back.
    Points bent(const std::string& joint, const std::string& mesh) {
        turnInWorld(*this, joint, 35.0);
        const Points points = pointsOf(*this, mesh);
        turnInWorld(*this, joint, -35.0);
        return points;
    }

    void giveWeight(const std::string& cluster, const std::string& mesh, const std::string& twist) {
        python(
            "for plug in cmds.ls('*.liw'): cmds.setAttr(plug, False)\n"
            "cmds.skinPercent('" +
            cluster + "', '" + mesh + ".vtx[1400:1600]', transformValue=[('" + twist +
            "', 0.6)])\n");
    }
};

TEST_F(TwistRigTest, TheArmGetsItsTwistJoint) {
    openOwn("arm.ma");
    const RigState before = stateOf(*this);
    twist({"hand"});
    EXPECT_EQ(messages(), Lines{"info: hand_twist añadido a skinCluster1"});
    EXPECT_EQ(languageErrors(), 0);
    expectFourFifths("hand_twist", "wrist", "hand");
    expectOneChannel("hand", "hand_twist", "X");
    EXPECT_EQ(influences("skinCluster1"),
              (Lines{"clavicle", "shoulder", "elbow", "wrist", "hand", "hand_twist"}));
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.weights, before.weights);
    expectSamePoints(after, before);
}

TEST_F(TwistRigTest, TheWristLeavesACopyOfTheHand) {
    openOwn("arm.ma");
    twist({"wrist"});
    expectFourFifths("wrist_twist", "elbow", "wrist");
    EXPECT_TRUE(exists("|hand"));
    EXPECT_EQ(influences("skinCluster1").size(), 6u) << "the copy is no influence";
}

TEST_F(TwistRigTest, WeightGivenToItFollowsTheTwist) {
    openOwn("arm.ma");
    twist({"hand"});
    giveWeight("skinCluster1", "arm", "hand_twist");
    const Points before = pointsOf(*this, "armShape");
    python("cmds.setAttr('hand.rotateX', 50)");
    EXPECT_GT(deviation(pointsOf(*this, "armShape"), before), 1e-3);
}

struct AfterTwist {
    const char* scene;
    const char* mesh;
    const char* root;   ///< the skeleton's top joint
    const char* upper;  ///< a joint above the twisted one
    const char* joint;  ///< the twisted one, a leaf
};

class AfterTwistTest : public TwistRigTest, public ::testing::WithParamInterface<AfterTwist> {
  public:
    AfterTwistTest() {
        const AfterTwist& rig = GetParam();
        openOwn(rig.scene);
        twist({rig.joint});
        leaf = rig.joint;
        twisted = leaf + "_twist";
        giveWeight("skinCluster1", rig.mesh, twisted);
        before = stateOf(*this);
        forget();
    }

    /// Same mesh, weights and influences, and the rotate link still there.
    void expectKept() {
        EXPECT_EQ(languageErrors(), 0);
        const RigState after = stateOf(*this);
        EXPECT_EQ(after.nodes, before.nodes);
        EXPECT_EQ(after.weights, before.weights);
        EXPECT_EQ(after.influences, before.influences);
        expectSamePoints(after, before);
        EXPECT_EQ(feeding(twisted + ".rotateX"), leaf + ".rotateX");
        EXPECT_EQ(influences("skinCluster1").back(), twisted);
    }

    std::string leaf, twisted;
    RigState before;
};

TEST_P(AfterTwistTest, Freeze) {
    freeze({GetParam().root}, true);
    expectKept();
    expectFrozen(*this, {leaf, twisted});
}

TEST_P(AfterTwistTest, Orient) {
    orient(*this, {GetParam().upper}, kAxisRows[0], true);
    expectKept();
}

TEST_P(AfterTwistTest, Flip) {
    flip(*this, {GetParam().upper, leaf}, 'x', 'z');
    expectKept();
}

TEST_P(AfterTwistTest, OneAfterTheOther) {
    freeze({GetParam().root}, true);
    orient(*this, {GetParam().upper}, kAxisRows[0], true);
    flip(*this, {leaf}, 'y', 'z');
    expectKept();
    const Points rest = pointsOf(*this, std::string(GetParam().mesh) + "Shape");
    EXPECT_GT(deviation(bent(GetParam().upper, std::string(GetParam().mesh) + "Shape"), rest),
              1e-2);
}

INSTANTIATE_TEST_SUITE_P(OwnRigs, AfterTwistTest,
                         ::testing::Values(AfterTwist{"arm.ma", "arm", "clavicle", "elbow", "hand"},
                                           AfterTwist{"leg.ma", "leg", "hip", "knee", "toe"}),
                         [](const auto& rig) { return std::string(rig.param.mesh); });

class RealTwistTest : public TwistRigTest, public ::testing::WithParamInterface<const char*> {
  public:
    /// Influences of a unique name below a joint that have nothing but constraints below them.
    Lines candidates() {
        python(
            "found = []\n"
            "for skin in cmds.ls(type='skinCluster'):\n"
            "    for j in cmds.skinCluster(skin, query=True, influence=True) or []:\n"
            "        up = cmds.listRelatives(j, parent=True, type='joint') or []\n"
            "        down = [c for c in cmds.listRelatives(j, children=True, fullPath=True) or []\n"
            "                if not cmds.nodeType(c).endswith('Constraint')]\n"
            "        plain = '|' not in j and up and '|' not in up[0] and j not in found\n"
            "        if plain and not down and cmds.nodeType(j) == 'joint' and \\\n"
            "                not cmds.ls(j + '_twist'):\n"
            "            found.append(j)\n");
        Lines names;
        const int count = static_cast<int>(python("len(found)").number());
        for (int i = 0; i < count; ++i)
            names.push_back(pythonText(fmt::format("found[{}]", i)));
        return names;
    }
};

TEST_P(RealTwistTest, TheFirstThreeLeaves) {
    const char* folder = std::getenv("TORVEL_RIGS");
    const std::string path = std::string(folder ? folder : "") + "/" + GetParam();
    if (!folder || !std::filesystem::exists(path))
        GTEST_SKIP() << GetParam() << " is not at hand (TORVEL_RIGS)";
    open(path);
    Lines joints = candidates();
    ASSERT_FALSE(joints.empty());
    joints.resize(std::min<std::size_t>(joints.size(), 3));
    const RigState before = stateOf(*this);
    for (const std::string& joint : joints) {
        const std::string parent = pythonText("cmds.listRelatives('" + joint + "', parent=True)");
        twist({joint});
        EXPECT_EQ(languageErrors(), 0) << joint;
        expectFourFifths(joint + "_twist", parent, joint);
        expectOneChannel(joint, joint + "_twist", "X");
        const std::string skin = pythonText("cmds.listConnections('" + joint +
                                            "_twist.worldMatrix[0]', type='skinCluster')[0]");
        EXPECT_EQ(influences(skin).back(), joint + "_twist");
    }
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.weights, before.weights);
    expectSamePoints(after, before);
}

INSTANTIATE_TEST_SUITE_P(RealRigs, RealTwistTest,
                         ::testing::Values("plane_skinned.ma", "bindTransformsExport.ma",
                                           "DoubleMeshSkinWeldTestAnim.ma",
                                           "UsdExportSkeletonAtSceneRoot.ma", "rig01.ma",
                                           "rig_rlessard_example01.ma"),
                         [](const auto& file) {
                             std::string name = file.param;
                             return name.substr(0, name.find('.'));
                         });

}  // namespace torvel::test
