// What the button Orient Joints runs and says, in order.

#include <QWidget>

#include "plugin/fixtures/expected_scripts.h"
#include "plugin/fixtures/rigs.h"
#include "plugin/fixtures/tool_clicks.h"

namespace torvel::test {

namespace {

constexpr AxisRow kDefault = {'x', 'y', '+', "xyz", "yup"};
constexpr AxisRow kReversed = {'y', 'z', '+', "yxz", "zdown"};

std::string byPath(const std::string& path, bool children = true) {
    return orientCopyLine(path, "xyz", "yup", children);
}

}  // namespace

class OrientScriptTest : public PluginScene {
  public:
    const std::string kReconnected = "info: Reconexión por nombre completada.";

    /// The whole road of "leg" on the chain hip, knee, ankle around the lines that orient.
    Lines legRoad(const std::string& first, const Lines& orienting) {
        return Lines{restoreLine(first),
                     detachLine("skinCluster1"),
                     duplicateLine("|hip"),
                     listLine("hip1"),
                     freezeLine("|hip1|knee|ankle"),
                     freezeLine("|hip1|knee"),
                     freezeLine("hip1"),
                     stripLine("hip1")} +
               orienting +
               Lines{groupLine("|hip"), renameLine("|hip1", "hip"), kReconnected, deleteGroupLine(),
                     bindLine("hip", "|leg|legShape")};
    }
};

TEST_F(OrientScriptTest, NothingSelected) {
    makeLeg(*this);
    orient(*this, {}, kDefault, true);
    EXPECT_EQ(transcript(), (Lines{"info: Please, select any 'Joint'",
                                   "info: Por favor, selecciona solo joints."}));
}

TEST_F(OrientScriptTest, ForeignNodesSelected) {
    makeLeg(*this);
    for (const Lines& selection : {Lines{"|leg"}, Lines{"|hip", "|leg"}, Lines{"skinCluster1"}}) {
        orient(*this, selection, kDefault, true);
        EXPECT_EQ(transcript(), Lines{"info: Por favor, selecciona solo joints."});
    }
}

TEST_F(OrientScriptTest, WithoutSkinByShortNameInTheOrderOfSelection) {
    makeChain(*this, {"hip", "knee", "ankle"});
    const Lines start{restoreLine("ankle") + " (failed)",
                      listLine("hip"),
                      freezeLine("|hip|knee|ankle"),
                      freezeLine("|hip|knee"),
                      freezeLine("hip"),
                      "info: Orient no Skinned joints"};
    for (bool children : {true, false}) {
        orient(*this, {"|hip|knee|ankle", "|hip"}, kReversed, children);
        const Lines orienting{orientBareLine("ankle", "yxz", "zdown", children),
                              orientBareLine("hip", "yxz", "zdown", children)};
        EXPECT_EQ(transcript(), start + orienting);
    }
}

TEST_F(OrientScriptTest, WithoutSkinTheFirstSkeletonIsFrozenAndEverySelectedJointOriented) {
    makeChain(*this, {"hip", "knee"});
    makeChain(*this, {"arm", "hand"});
    orient(*this, {"|hip|knee", "|arm"}, kDefault, true);
    EXPECT_EQ(transcript(),
              (Lines{restoreLine("knee") + " (failed)", listLine("hip"), freezeLine("|hip|knee"),
                     freezeLine("hip"), "info: Orient no Skinned joints",
                     orientBareLine("knee", "xyz", "yup", true),
                     orientBareLine("arm", "xyz", "yup", true)}));
}

TEST_F(OrientScriptTest, WithSkinTheNamesakesInWalkOrderByPath) {
    makeLeg(*this);
    for (bool children : {true, false}) {
        orient(*this, {"|hip|knee|ankle", "|hip|knee"}, kDefault, children);
        const Lines orienting{byPath("|hip1|knee", children), byPath("|hip1|knee|ankle", children)};
        EXPECT_EQ(transcript(), legRoad("ankle", orienting));
    }
    EXPECT_EQ(languageErrors(), 0);
}

// The copy of the top bears another name while the copies of the selection are looked for.
TEST_F(OrientScriptTest, WithSkinTheTopAloneHasNoNamesake) {
    makeLeg(*this);
    orient(*this, {"|hip"}, kDefault, true);
    EXPECT_EQ(transcript(), legRoad("hip", {}));
}

TEST_F(OrientScriptTest, TwoClustersTakeTurns) {
    makeLeg(*this);
    bindTube(*this, "|hip", "sock");
    orient(*this, {"|hip|knee"}, kDefault, false);
    EXPECT_EQ(transcript(),
              (Lines{restoreLine("knee"), detachLine("skinCluster1"), detachLine("skinCluster2"),
                     duplicateLine("|hip"), listLine("hip1"), freezeLine("|hip1|knee|ankle"),
                     freezeLine("|hip1|knee"), freezeLine("hip1"), stripLine("hip1"),
                     byPath("|hip1|knee", false), groupLine("|hip"), renameLine("|hip1", "hip"),
                     kReconnected, kReconnected, deleteGroupLine(),
                     bindLine("hip", "|leg|legShape"), bindLine("hip", "|sock|sockShape")}));
}

TEST_F(OrientScriptTest, AClusterWithTwoOutputsIsDetachedTwice) {
    makeLeg(*this);
    addSecondOutput(*this, "skinCluster1");
    orient(*this, {"|hip|knee"}, kDefault, true);
    const Lines all = scripts();
    EXPECT_EQ(std::count(all.begin(), all.end(), detachLine("skinCluster1")), 2);
    EXPECT_EQ(std::count(all.begin(), all.end(), bindLine("hip", "|leg|legShape")), 1);
    // The first bind woke the cluster for both.
    EXPECT_EQ(all.back(), bindLine("hip", "|leg2|leg2Shape") + " (failed)");
}

TEST_F(OrientScriptTest, AClusterWithoutMesh) {
    makeLeg(*this);
    python("cmds.disconnectAttr('skinCluster1.outputGeometry[0]', 'legShape.inMesh')");
    orient(*this, {"|hip|knee"}, kDefault, true);
    EXPECT_EQ(transcript().back(), deleteGroupLine());
    EXPECT_EQ(messages(), Lines{kReconnected});
}

TEST_F(OrientScriptTest, ARootUnderAGroup) {
    makeGroup(*this, "chr");
    makeChain(*this, {"hip", "knee"}, "|chr");
    bindTube(*this, "|chr|hip", "leg");
    orient(*this, {"|chr|hip|knee"}, kDefault, true);
    EXPECT_EQ(transcript(),
              (Lines{restoreLine("knee"), detachLine("skinCluster1"), duplicateLine("|chr|hip"),
                     listLine("hip1"), freezeLine("|chr|hip1|knee"), freezeLine("hip1"),
                     stripLine("hip1"), byPath("|chr|hip1|knee"), groupLine("|chr|hip"),
                     renameLine("|chr|hip1", "hip"), kReconnected, deleteGroupLine(),
                     bindLine("hip", "|leg|legShape")}));
}

TEST_F(OrientScriptTest, ALoneSkinnedJoint) {
    makeChain(*this, {"solo"});
    bindTube(*this, "|solo", "leg");
    orient(*this, {"|solo"}, kDefault, true);
    EXPECT_EQ(transcript(),
              (Lines{restoreLine("solo"), detachLine("skinCluster1"), duplicateLine("|solo"),
                     listLine("solo1") + " (failed)", stripLine("solo1") + " (failed)",
                     groupLine("|solo"), renameLine("|solo1", "solo"), kReconnected,
                     deleteGroupLine(), bindLine("solo", "|leg|legShape")}));
    EXPECT_EQ(languageErrors(), 2);
}

TEST_F(OrientScriptTest, TwoSkeletonsEachWithASkin) {
    makeLeg(*this);
    makeChain(*this, {"arm", "hand"});
    bindTube(*this, "|arm", "sleeve");
    orient(*this, {"|arm|hand", "|hip|knee"}, kDefault, true);
    EXPECT_EQ(transcript(),
              (Lines{restoreLine("hand"), detachLine("skinCluster2"), detachLine("skinCluster1"),
                     duplicateLine("|arm"), listLine("arm1"), freezeLine("|arm1|hand"),
                     freezeLine("arm1"), stripLine("arm1"), byPath("|arm1|hand"), groupLine("|arm"),
                     renameLine("|arm1", "arm"), kReconnected, kReconnected, deleteGroupLine(),
                     bindLine("arm", "|sleeve|sleeveShape"), bindLine("arm", "|leg|legShape")}));
}

TEST_F(OrientScriptTest, JointCountsThatDifferAreNotListed) {
    makeGroup(*this, "chr");
    makeChain(*this, {"hip", "knee", "ankle"}, "|chr");
    bindTube(*this, "|chr|hip", "leg");
    makeChain(*this, {"hip", "shin"});
    orient(*this, {"|chr|hip|knee|ankle"}, kDefault, false);
    EXPECT_EQ(
        transcript(),
        (Lines{restoreLine("ankle"), detachLine("skinCluster1"), duplicateLine("|chr|hip"),
               listLine("hip1"), freezeLine("|chr|hip1|knee|ankle"), freezeLine("|chr|hip1|knee"),
               freezeLine("hip1"), stripLine("hip1"), byPath("|chr|hip1|knee|ankle", false),
               groupLine("|chr|hip"), renameLine("|chr|hip1", "hip"),
               "error: El número de joints no coincide: originalRoot (3), duplicateRoot "
               "(2)"}));
    EXPECT_TRUE(exists("|chr|tempOldSkeletonGroup|hip|knee|ankle"));
    EXPECT_TRUE(exists("|chr|hip|knee|ankle"));
}

// No skin, but a constraint directly below a selected joint: the copy's road, without a bind.
TEST_F(OrientScriptTest, AnUnboundSkeletonWithAConstraint) {
    makeChain(*this, {"hip", "knee", "ankle"});
    makeGroup(*this, "ctrl");
    python("cmds.parentConstraint('ctrl', '|hip|knee', mo=True)");
    orient(*this, {"|hip|knee"}, kDefault, true);
    EXPECT_EQ(transcript(),
              (Lines{restoreLine("knee") + " (failed)", duplicateLine("|hip"), listLine("hip1"),
                     freezeLine("|hip1|knee|ankle"), freezeLine("|hip1|knee"), freezeLine("hip1"),
                     stripLine("hip1"), byPath("|hip1|knee"),
                     "info: Procesando constraint: knee_parentConstraint1 tipo: kParentConstraint",
                     "info: Ejecutando comando: parentConstraint -mo \"|ctrl\" \"|hip1|knee\"",
                     "mel stringArray: parentConstraint -mo \"|ctrl\" \"|hip1|knee\"",
                     groupLine("|hip"), renameLine("|hip1", "hip"), deleteGroupLine()}));
    EXPECT_TRUE(exists("|hip|knee|knee_parentConstraint2")) << "numbered anew";
    EXPECT_FALSE(exists("tempOldSkeletonGroup"));
}

// A constraint elsewhere in the skeleton is not looked for.
TEST_F(OrientScriptTest, AConstraintOnAnotherJointChangesNoRoad) {
    makeChain(*this, {"hip", "knee", "ankle"});
    makeGroup(*this, "ctrl");
    addConstraint(*this, "scaleConstraint", "|hip|knee", {"|ctrl"});
    orient(*this, {"|hip"}, kDefault, true);
    EXPECT_EQ(messages(), Lines{"info: Orient no Skinned joints"});
}

TEST_F(OrientScriptTest, NothingEchoesAndNothingEntersUndo) {
    makeLeg(*this);
    orient(*this, {"|hip|knee"}, kDefault, true);
    for (const RecordEntry& entry : session().record().entries()) {
        if (entry.isScript) {
            EXPECT_FALSE(entry.display) << entry.text;
            EXPECT_FALSE(entry.undo) << entry.text;
        }
    }
}

}  // namespace torvel::test
