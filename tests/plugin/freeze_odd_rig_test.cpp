// Freeze Rotations in scenes that hold more than one clean skeleton.

#include "plugin/fixtures/expected_scripts.h"
#include "plugin/fixtures/rig_state.h"
#include "plugin/fixtures/rigs.h"

namespace torvel::test {

namespace {

/// Where the parking group came to stand, by what was moved below it.
class ParkingWatch : public SceneListener {
  public:
    explicit ParkingWatch(Scene& scene) : m_scene(scene) { m_scene.addListener(this); }
    ~ParkingWatch() override { m_scene.removeListener(this); }
    void nodeReparented(NodeHandle node) override {
        paths.push_back(m_scene.names().fullPath(node));
    }

    Lines paths;

  private:
    Scene& m_scene;
};

bool contains(const Lines& lines, const std::string& line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

}  // namespace

class FreezeSpecialTest : public PluginScene {
  public:
    double nodeState(const std::string& cluster) {
        return scene().number(plug(cluster, "nodeState"));
    }
    std::string closing() {
        return "info: Freeze Rotations completado. El skinning se ha conservado.";
    }
};

TEST_F(FreezeSpecialTest, ABareSkeletonKeepsItsNodes) {
    const Lines joints = makeChain(*this, {"hip", "knee", "ankle"});
    makeChain(*this, {"arm", "hand"});
    const RigState before = stateOf(*this);
    const MObject hip = object("|hip");
    freeze({"|hip|knee", "|arm"}, true);
    expectFrozen(*this, joints);
    EXPECT_NE(rotationOf(*this, "|arm"), V3d(0, 0, 0));
    EXPECT_EQ(hip, object("|hip")) << "no copy was made";
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.nodes, before.nodes);
    for (const auto& [path, matrix] : before.joints)
        EXPECT_TRUE(after.joints.at(path).equalWithAbsError(matrix, 1e-9)) << path;
}

TEST_F(FreezeSpecialTest, RotationGoesIntoJointOrientation) {
    python(
        "cmds.select(clear=True); cmds.joint(name='a'); cmds.joint(name='b', position=(1, 0, 0))\n"
        "cmds.setAttr('a.jointOrient', 0, 0, 15); cmds.setAttr('a.rotate', 0, 0, 30)\n");
    freeze({"|a"}, false);
    expectFrozen(*this, {"|a"});
    EXPECT_NEAR(scene().vec3(plug("|a", "jointOrient")).z, 0.785398163397448, 1e-12);
}

TEST_F(FreezeSpecialTest, TwoClustersOfOneSkeleton) {
    makeLeg(*this);
    bindTube(*this, "|hip", "sock");
    const RigState before = stateOf(*this);
    freeze({"|hip"}, true);
    expectSameRig(stateOf(*this), before);
    EXPECT_EQ(nodeState("skinCluster1"), 0.0);
    EXPECT_EQ(nodeState("skinCluster2"), 0.0);
}

TEST_F(FreezeSpecialTest, OnlyTheFirstOfTwoRoots) {
    makeLeg(*this);
    makeChain(*this, {"arm", "hand"});
    bindTube(*this, "|arm", "sleeve");
    const RigState before = stateOf(*this);
    freeze({"|arm|hand", "|hip"}, true);
    expectSameRig(stateOf(*this), before);
    expectFrozen(*this, {"|arm", "|arm|hand"});
    EXPECT_NE(rotationOf(*this, "|hip"), V3d(0, 0, 0));
    EXPECT_EQ(nodeState("skinCluster1"), 0.0) << "the other skin is bound again, too";
    EXPECT_EQ(nodeState("skinCluster2"), 0.0);
    EXPECT_EQ(messages().back(), closing());
}

TEST_F(FreezeSpecialTest, TheParkingGroupStandsBesideTheRoot) {
    makeGroup(*this, "chr");
    python("cmds.setAttr('chr.translate', 1, 2, 3); cmds.setAttr('chr.rotateY', 35)");
    makeChain(*this, {"hip", "knee"}, "|chr");
    bindTube(*this, "|chr|hip", "leg");
    const RigState before = stateOf(*this);
    Lines parked;
    {
        ParkingWatch watch(scene());
        freeze({"|chr|hip"}, true);
        parked = watch.paths;
    }
    EXPECT_TRUE(contains(parked, "|chr|tempOldSkeletonGroup|hip"));
    expectSameRig(stateOf(*this), before);
    expectFrozen(*this, {"|chr|hip", "|chr|hip|knee"});
}

TEST_F(FreezeSpecialTest, ALeftoverParkingGroupCostsOneMoreClick) {
    makeLeg(*this);
    const RigState before = stateOf(*this);
    makeGroup(*this, "tempOldSkeletonGroup");
    freeze({"|hip"}, true);
    EXPECT_TRUE(exists("|tempOldSkeletonGroup1|hip|knee|ankle"));
    EXPECT_FALSE(exists("|tempOldSkeletonGroup"));
    EXPECT_TRUE(contains(scripts(), bindLine("hip", "|leg|legShape") + " (failed)"));
    EXPECT_EQ(nodeState("skinCluster1"), 1.0);
    EXPECT_EQ(stateOf(*this).weights, before.weights) << "nothing is lost";
    EXPECT_EQ(messages().back(), closing());

    python("cmds.delete('tempOldSkeletonGroup1')");
    freeze({"|hip"}, true);
    expectSameRig(stateOf(*this), before);
    EXPECT_EQ(nodeState("skinCluster1"), 0.0);
}

// The bind pose goes with the old joints; only the bind would make the next one.
TEST_F(FreezeSpecialTest, ANamesakeOfTheRootKeepsTheBindAway) {
    makeLeg(*this);
    makeGroup(*this, "other");
    makeGroup(*this, "hip", "|other");
    RigState before = stateOf(*this);
    before.nodes.erase(std::find(before.nodes.begin(), before.nodes.end(), "dagPose bindPose1"));
    freeze({"|hip"}, true);
    EXPECT_TRUE(contains(scripts(), bindLine("hip", "|leg|legShape") + " (failed)"));
    EXPECT_EQ(nodeState("skinCluster1"), 1.0);
    expectSameRig(stateOf(*this), before);
    EXPECT_EQ(messages().back(), closing());
}

TEST_F(FreezeSpecialTest, AConstrainedTopIsLeftToItsDriver) {
    makeLeg(*this);
    makeGroup(*this, "ctrl");
    const std::string constraint = addConstraint(*this, "parentConstraint", "|hip", {"|ctrl"});
    python("cmds.connectAttr('" + constraint + ".constraintTranslateX', '|hip.translateX')");
    const RigState before = stateOf(*this);
    freeze({"|hip|knee"}, true);
    EXPECT_TRUE(contains(messages(),
                         "info: Procesando constraint: hip_parentConstraint1 tipo: "
                         "kParentConstraint"));
    EXPECT_TRUE(
        contains(messages(), "info: Ejecutando comando: parentConstraint -mo \"|ctrl\" \"|hip1\""));
    EXPECT_FALSE(exists("tempOldSkeletonGroup"));
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.weights, before.weights);
    EXPECT_EQ(after.influences, before.influences);
    expectSamePoints(after, before);
    expectFrozen(*this, {"|hip|knee", "|hip|knee|ankle"});
}

TEST_F(FreezeSpecialTest, GeometryBelowAJointStaysInPlace) {
    makeLeg(*this);
    python(
        "cmds.polyCube(name='pad')\n"
        "cmds.parent('pad', '|hip|knee')\n"
        "cmds.setAttr('|hip|knee|pad.rotate', 10, 20, 30)\n");
    const std::string shape = "|hip|knee|pad|padShape";
    auto corners = [&] {
        Points points = pointsOf(*this, shape);
        for (V3f& p : points)
            p = V3f(V3d(p) * worldMatrixOf(*this, "|hip|knee|pad"));
        return points;
    };
    const Points before = corners();
    freeze({"|hip"}, true);
    expectPoints(corners(), before, 1e-5);
    expectFrozen(*this, {"|hip", "|hip|knee", "|hip|knee|ankle"});
    EXPECT_EQ(languageErrors(), 0);
    EXPECT_FALSE(exists("pad1"));
}

TEST_F(FreezeSpecialTest, RotateLinksLeadToTheCopies) {
    makeLeg(*this);
    makeChain(*this, {"twist"}, "|hip|knee");
    python("cmds.connectAttr('|hip|knee.rotateX', '|hip|knee|twist.rotateX')");
    freeze({"|hip"}, true);
    EXPECT_TRUE(python("cmds.isConnected('|hip|knee.rotateX', '|hip|knee|twist.rotateX')").truth());
    EXPECT_FALSE(exists("tempOldSkeletonGroup"));
    EXPECT_EQ(languageErrors(), 0);
}

// The link reads the frozen joint's zero; what it drives was not frozen and turns.
TEST_F(FreezeSpecialTest, ALinkTurnsTheJointThatWasNotFrozen) {
    makeChain(*this, {"hip", "knee", "ankle"});
    makeChain(*this, {"arm"}, "|hip");
    python("cmds.connectAttr('|hip|knee|ankle.rotateX', '|hip|arm.rotateX')");
    bindTube(*this, "|hip", "leg");
    const RigState before = stateOf(*this);
    const V3d turned = rotationOf(*this, "|hip|arm");
    ASSERT_NEAR(turned.x, 7.0, 1e-9);
    freeze({"|hip|knee|ankle"}, false);
    expectFrozen(*this, {"|hip|knee|ankle"});
    EXPECT_TRUE(rotationOf(*this, "|hip|arm").equalWithAbsError(V3d(0, turned.y, turned.z), 1e-9));
    const RigState after = stateOf(*this);
    for (const char* path : {"|hip", "|hip|knee", "|hip|knee|ankle"})
        EXPECT_TRUE(after.joints.at(path).equalWithAbsError(before.joints.at(path), 1e-9)) << path;
    EXPECT_FALSE(after.joints.at("|hip|arm").equalWithAbsError(before.joints.at("|hip|arm"), 1e-2));
    EXPECT_EQ(after.weights, before.weights);
}

TEST_F(FreezeSpecialTest, ADualQuaternionClusterEndsLinear) {
    makeLeg(*this);
    const V3d rest = rotationOf(*this, "|hip|knee");
    auto posed = [&](int method) {
        python("cmds.setAttr('skinCluster1.skinningMethod', " + std::to_string(method) + ")");
        turnInWorld(*this, "|hip|knee", 60.0);
        const Points points = pointsOf(*this, "|leg|legShape");
        python("cmds.setAttr('|hip|knee.rotate', " + std::to_string(rest.x) + ", " +
               std::to_string(rest.y) + ", " + std::to_string(rest.z) + ")");
        return points;
    };
    const Points linear = posed(0);
    const Points dual = posed(1);
    ASSERT_GT(deviation(dual, linear), 1e-3);
    python("cmds.setAttr('skinCluster1.normalizeWeights', 2)");
    freeze({"|hip"}, true);
    EXPECT_EQ(scene().number(plug("skinCluster1", "skinningMethod")), 0.0);
    EXPECT_EQ(scene().number(plug("skinCluster1", "normalizeWeights")), 1.0);
    turnInWorld(*this, "|hip|knee", 60.0);
    expectPoints(pointsOf(*this, "|leg|legShape"), linear, 1e-4);
}

// A colour for faces leads from the group back to each of its meshes, and the closing bind follows.
TEST_F(FreezeSpecialTest, AMeshOfTheSameShadingGroupIsBoundToo) {
    makeLeg(*this);
    python(
        "cmds.polyCube(name='boot')\n"
        "cmds.connectAttr('initialShadingGroup.memberWireframeColor', "
        "'bootShape.instObjGroups[0].objectGroups[0].objectGrpColor')");
    const RigState before = stateOf(*this);
    freeze({"|hip"}, true);
    EXPECT_TRUE(contains(scripts(), bindLine("hip", "|leg|legShape")));
    EXPECT_TRUE(contains(scripts(), bindLine("hip", "|boot|bootShape")));
    EXPECT_EQ(pythonText("cmds.skinCluster('boot', query=True, influence=True)"), "hip knee ankle");
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.weights.at("skinCluster1"), before.weights.at("skinCluster1"));
    EXPECT_EQ(after.weights.size(), 2u);
    expectSamePoints(after, before);
}

TEST_F(FreezeSpecialTest, ALoneJointIsNeverLeftHalfDone) {
    makeChain(*this, {"solo"});
    bindTube(*this, "|solo", "leg");
    const RigState before = stateOf(*this);
    for (bool all : {true, false}) {
        freeze({"|solo"}, all);
        expectSameRig(stateOf(*this), before);
        EXPECT_NE(rotationOf(*this, "|solo"), V3d(0, 0, 0));
        EXPECT_EQ(messages().back(), closing());
    }
}

TEST_F(FreezeSpecialTest, ALoneBareJointIsFrozenByTheSelectionOnly) {
    makeChain(*this, {"solo"});
    freeze({"|solo"}, true);
    EXPECT_NE(rotationOf(*this, "|solo"), V3d(0, 0, 0));
    EXPECT_EQ(languageErrors(), 1);
    freeze({"|solo"}, false);
    expectFrozen(*this, {"|solo"});
}

TEST_F(FreezeSpecialTest, AMismatchLosesNothing) {
    makeGroup(*this, "chr");
    makeChain(*this, {"hip", "knee", "ankle"}, "|chr");
    bindTube(*this, "|chr|hip", "leg");
    makeChain(*this, {"hip", "knee"});
    const RigState before = stateOf(*this);
    freeze({"|chr|hip"}, true);
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.weights, before.weights);
    EXPECT_EQ(after.influences.at("skinCluster1").at(2),
              "|chr|tempOldSkeletonGroup|hip|knee|ankle");
    expectSamePoints(after, before);
    EXPECT_TRUE(after.joints.at("|chr|hip|knee")
                    .equalWithAbsError(before.joints.at("|chr|hip|knee"), 1e-9));
}

TEST_F(FreezeSpecialTest, ARefusedClickChangesNothing) {
    makeLeg(*this);
    const RigState before = stateOf(*this);
    for (const Lines& selection : {Lines{}, Lines{"|leg"}, Lines{"|hip|knee", "skinCluster1"}}) {
        freeze(selection, true);
        expectSameRig(stateOf(*this), before);
        EXPECT_NE(rotationOf(*this, "|hip"), V3d(0, 0, 0));
    }
}

}  // namespace torvel::test
