#include "app/rig_check.h"

#include <gmock/gmock.h>

#include <sstream>

#include "support/test_scene.h"

namespace torvel::test {
namespace {

using ::testing::ElementsAre;

// A bound chain hip > knee > ankle with nothing to find.
class RigCheck : public ::testing::Test {
  protected:
    TestScene scene;

    void SetUp() override {
        scene.make("joint", "hip");
        scene.make("joint", "knee", "hip");
        scene.make("joint", "ankle", "knee");
        scene.set("knee.translate", 0, -2, 0);
        scene.set("ankle.translate", 0, -2, 0);
        scene.call("polyPlane", {}, {flag("name", {"leg"})});
        scene.call("skinCluster", {"hip", "leg"});
    }
    /// The nodes of the only finding of a rule; empty when it found nothing.
    std::vector<std::string> nodes(const std::string& rule) {
        std::vector<std::string> out;
        for (const Finding& finding : checkRig(scene.scene()))
            if (finding.rule == rule)
                out.insert(out.end(), finding.nodes.begin(), finding.nodes.end());
        return out;
    }
};

TEST_F(RigCheck, ACleanRigHasNothingToReport) {
    std::ostringstream out;
    const auto findings = checkRig(scene.scene());
    printFindings(findings, out);
    EXPECT_EQ(out.str(), "nothing to report\n");
}

TEST_F(RigCheck, JointsAwayFromTheirBindPoseAreNamed) {
    scene.set("knee.rotateZ", 30);
    EXPECT_THAT(nodes("posed-away"), ElementsAre("knee", "ankle"));
}

TEST_F(RigCheck, ConstraintsAreSortedByWhatBecomesOfThem) {
    scene.make("transform", "control");
    scene.make("transform", "hand");
    scene.call("parentConstraint", {"control", "hip"});
    scene.call("scaleConstraint", {"control", "knee"});
    scene.call("orientConstraint", {"hip", "ankle"});
    scene.call("pointConstraint", {"ankle", "hand"});
    EXPECT_THAT(nodes("lost-constraint"), ElementsAre("knee_scaleConstraint1"));
    EXPECT_THAT(nodes("driver-within"), ElementsAre("ankle_orientConstraint1"));
    EXPECT_THAT(nodes("outside-constraint"), ElementsAre("hand_pointConstraint1"));
}

TEST_F(RigCheck, IkAndGeometryOnTheSkeletonAreFound) {
    scene.call(
        "ikHandle", {},
        {flag("startJoint", {"hip"}), flag("endEffector", {"ankle"}), flag("name", {"reach"})});
    scene.make("transform", "shoe", "ankle");
    EXPECT_THAT(nodes("ik"), ElementsAre("reach"));
    EXPECT_THAT(nodes("geometry-below"), ElementsAre("shoe"));
}

TEST_F(RigCheck, NamesThatGetInTheWayAreFound) {
    scene.make("transform", "chr");
    scene.make("transform", "hip", "chr");
    scene.make("transform", "tempOldSkeletonGroup");
    EXPECT_THAT(nodes("namesake"), ElementsAre("chr|hip"));
    EXPECT_THAT(nodes("parking-group"), ElementsAre("tempOldSkeletonGroup"));
}

TEST_F(RigCheck, LockedRotationsCountWithoutASkinToo) {
    scene.make("joint", "tail");
    for (const char* plug : {"tail.rotateY", "knee.rotate"})
        scene.call("setAttr", {plug}, {flag("lock", {true})});
    std::vector<std::string> skeletons;
    for (const Finding& finding : checkRig(scene.scene()))
        if (finding.rule == "locked-rotation")
            skeletons.push_back(finding.skeleton);
    EXPECT_THAT(skeletons, ElementsAre("hip", "tail"));
    EXPECT_THAT(nodes("locked-rotation"), ElementsAre("knee", "tail"));
}

TEST_F(RigCheck, NodesOnTheWayAndMeshesBesideItAreFound) {
    scene.call("polyCube", {}, {flag("name", {"boot"})});
    EXPECT_THAT(nodes("through-shading"), ElementsAre());
    scene.call("connectAttr", {"initialShadingGroup.memberWireframeColor",
                               "bootShape.instObjGroups[0].objectGroups[0].objectGrpColor"});
    EXPECT_THAT(nodes("through-shading"), ElementsAre("bootShape"));

    Scene& graph = scene.scene();
    NodeHandle wobble;
    ASSERT_TRUE(graph.createNode("unknown", "wobble1", {}, wobble));
    graph.node(wobble)->unknownType = "wobble";
    const Plug shape = scene.plug("legShape.inMesh"), output = graph.source(shape);
    ASSERT_TRUE(graph.disconnect(output, shape));
    ASSERT_TRUE(graph.connect(output, graph.opaquePlug(wobble, "ig")));
    ASSERT_TRUE(graph.connect(graph.opaquePlug(wobble, "og"), shape));
    EXPECT_THAT(nodes("not-evaluated"), ElementsAre("wobble1"));
}

TEST_F(RigCheck, PoleVectorConstraintsOnTheSkeletonAreLost) {
    scene.make("poleVectorConstraint", "knee_poleVectorConstraint1", "knee");
    EXPECT_THAT(nodes("lost-constraint"), ElementsAre("knee_poleVectorConstraint1"));
}

TEST_F(RigCheck, JsonHoldsEveryFinding) {
    scene.make("transform", "tempOldSkeletonGroup");
    const std::string json = findingsJson(checkRig(scene.scene()));
    EXPECT_NE(json.find("\"rule\": \"parking-group\""), std::string::npos);
    EXPECT_NE(json.find("\"skeleton\": \"hip\""), std::string::npos);
}

}  // namespace
}  // namespace torvel::test
