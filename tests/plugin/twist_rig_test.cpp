// Twist joints on whole rigs: our own arm and leg, the skeleton tools after Twist, and rigs that
// others made (TORVEL_RIGS names their folder; without it those cases are skipped).

#include <cstdlib>
#include <filesystem>
#include <functional>

#include <fmt/format.h>

#include "plugin/fixtures/rig_state.h"
#include "plugin/fixtures/tool_clicks.h"
#include "support/test_scene.h"

namespace torvel::test {

class TwistRigTest : public PluginScene {
  public:
    void open(const std::string& path) {
        python("cmds.file('" + path + "', open=True, force=True)");
        forget();
    }
    void openOwn(const char* name) { open(std::string(TORVEL_SCENES_DIR "/") + name); }

    void twist(const std::string& joint) {
        QWidget* window = openTwist();
        select({joint});
        forget();
        press(window, "btn_createTwist");
    }

    /// Four fifths of the way from the parent, of all channels only rotateX driven, by the
    /// joint's; and the last influence of the cluster.
    void expectTwistOf(const std::string& joint, const std::string& cluster) {
        const std::string twisted = joint + "_twist";
        const auto place = [this](const std::string& path) {
            return worldMatrixOf(*this, path).translation();
        };
        const std::string parent = pythonText("cmds.listRelatives('" + joint + "', parent=True)");
        const V3d expected = (place(parent) + place(joint) * 4.0) / 5.0;
        EXPECT_LT((place(twisted) - expected).length(), 1e-9) << joint;
        for (const char* channel :
             {"rotateX", "rotateY", "rotateZ", "translate", "scale", "jointOrient"}) {
            const bool driven = std::string(channel) == "rotateX";
            EXPECT_EQ(feeding(twisted + "." + channel), driven ? joint + ".rotateX" : "");
        }
        EXPECT_EQ(influences(cluster).back(), twisted);
    }

    /// The plug that feeds the attribute; empty when none does.
    std::string feeding(const std::string& attribute) {
        return pythonText("cmds.listConnections('" + attribute +
                          "', source=True, destination=False, plugs=True) or []");
    }
    Lines influences(const std::string& cluster) {
        return textsOf(python("cmds.skinCluster('" + cluster + "', query=True, influence=True)"));
    }

    void giveWeight(const std::string& mesh, const std::string& twisted) {
        python(
            fmt::format("for plug in cmds.ls('*.liw'): cmds.setAttr(plug, False)\n"
                        "cmds.skinPercent('skinCluster1', '{}.vtx[1400:1600]', "
                        "transformValue=[('{}', 0.6)])\n",
                        mesh, twisted));
    }
};

TEST_F(TwistRigTest, TheArmGetsItsTwistJoint) {
    openOwn("arm.ma");
    const RigState before = stateOf(*this);
    twist("hand");
    EXPECT_EQ(messages(), Lines{"info: hand_twist añadido a skinCluster1"});
    EXPECT_EQ(languageErrors(), 0);
    expectTwistOf("hand", "skinCluster1");
    EXPECT_EQ(influences("skinCluster1"),
              (Lines{"clavicle", "shoulder", "elbow", "wrist", "hand", "hand_twist"}));
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.weights, before.weights);
    expectSamePoints(after, before);

    giveWeight("arm", "hand_twist");
    const Points weighted = pointsOf(*this, "armShape");
    python("cmds.setAttr('hand.rotateX', 50)");
    EXPECT_GT(deviation(pointsOf(*this, "armShape"), weighted), 1e-3) << "it follows the twist";
}

TEST_F(TwistRigTest, TheWristLeavesACopyOfTheHand) {
    openOwn("arm.ma");
    twist("wrist");
    expectTwistOf("wrist", "skinCluster1");
    EXPECT_TRUE(exists("|hand"));
    EXPECT_EQ(influences("skinCluster1").size(), 6u) << "the copy is no influence";
}

struct AfterTwist {
    const char* scene;
    const char* mesh;
    const char* root;   ///< the skeleton's top joint
    const char* upper;  ///< a joint above the twisted one
    const char* joint;  ///< the twisted one, a leaf
};

class AfterTwistTest : public TwistRigTest, public ::testing::WithParamInterface<AfterTwist> {};

// Each tool alone, then all of them in turn; mesh, weights, influences and the rotate link stay.
TEST_P(AfterTwistTest, TheSkeletonToolsKeepIt) {
    const AfterTwist& rig = GetParam();
    const std::string twisted = std::string(rig.joint) + "_twist";
    const std::string shape = std::string(rig.mesh) + "Shape";
    const std::function<void()> tools[] = {
        [&] {
            freeze({rig.root}, true);
            expectFrozen(*this, {rig.joint, twisted});
        },
        [&] { orient(*this, {rig.upper}, kAxisRows[0], true); },
        [&] {
            flip(*this, {rig.upper, rig.joint}, 'x', 'z');
        },
        [&] {
            freeze({rig.root}, true);
            orient(*this, {rig.upper}, kAxisRows[0], true);
            flip(*this, {rig.joint}, 'y', 'z');
        },
    };
    for (const auto& tool : tools) {
        SCOPED_TRACE(&tool - tools);
        openOwn(rig.scene);
        twist(rig.joint);
        giveWeight(rig.mesh, twisted);
        const RigState before = stateOf(*this);
        forget();
        tool();
        EXPECT_EQ(languageErrors(), 0);
        const RigState after = stateOf(*this);
        EXPECT_EQ(after.nodes, before.nodes);
        EXPECT_EQ(after.weights, before.weights);
        EXPECT_EQ(after.influences, before.influences);
        expectSamePoints(after, before);
        EXPECT_EQ(feeding(twisted + ".rotateX"), std::string(rig.joint) + ".rotateX");
        EXPECT_EQ(influences("skinCluster1").back(), twisted);
    }
    const Points rest = pointsOf(*this, shape);
    turnInWorld(*this, rig.upper, 35.0);
    EXPECT_GT(deviation(pointsOf(*this, shape), rest), 1e-2) << "the skin still bends";
}

INSTANTIATE_TEST_SUITE_P(OwnRigs, AfterTwistTest,
                         ::testing::Values(AfterTwist{"arm.ma", "arm", "clavicle", "elbow", "hand"},
                                           AfterTwist{"leg.ma", "leg", "hip", "knee", "toe"}),
                         [](const auto& rig) { return std::string(rig.param.mesh); });

class RealTwistTest : public TwistRigTest, public ::testing::WithParamInterface<const char*> {
  public:
    /// The first three influences of a unique name below a joint that have nothing but
    /// constraints below them.
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
        return textsOf(python("found[:3]"));
    }
};

TEST_P(RealTwistTest, TheFirstThreeLeaves) {
    const char* folder = std::getenv("TORVEL_RIGS");
    const std::string path = std::string(folder ? folder : "") + "/" + GetParam();
    if (!folder || !std::filesystem::exists(path))
        GTEST_SKIP() << GetParam() << " is not at hand (TORVEL_RIGS)";
    open(path);
    const Lines joints = candidates();
    ASSERT_FALSE(joints.empty());
    const RigState before = stateOf(*this);
    for (const std::string& joint : joints) {
        twist(joint);
        EXPECT_EQ(languageErrors(), 0) << joint;
        expectTwistOf(joint, pythonText("cmds.listConnections('" + joint +
                                        "_twist.worldMatrix[0]', type='skinCluster')[0]"));
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
