// What the button Flip runs and says, in order.

#include <QWidget>

#include "plugin/fixtures/expected_scripts.h"
#include "plugin/fixtures/rigs.h"
#include "plugin/fixtures/tool_clicks.h"

namespace torvel::test {

class FlipScriptTest : public PluginScene {
  public:
    const std::string kDone = "info: Orientación de joints invertida correctamente.";
    const std::string kReconnected = "info: Reconexión por nombre completada.";
    const std::string kFailed = " (failed)";

    /// Detaching to the first rename, for the chain hip, knee, ankle.
    Lines legStart(const std::string& first) {
        return {restoreLine(first),       detachLine("skinCluster1"),
                duplicateLine("|hip"),    stripLine("hip1"),
                listLine("hip1"),         freezeLine("|hip1|knee|ankle"),
                freezeLine("|hip1|knee"), freezeLine("hip1"),
                groupLine("|hip"),        "python plain: cmds.rename('|hip1', 'hip')"};
    }
    Lines legEnd() {
        return {renameLine("|hip", "hip"), kReconnected, deleteGroupLine(),
                bindLine("hip", "|leg|legShape")};
    }
    Lines flipKnee() {
        return {toWorldLine("|hip|knee|ankle"), toWorldLine("|hip|knee"),
                flipLine("|knee", 'X', 'Y'), parentLine("|knee", "|hip"),
                parentLine("|ankle", "|hip|knee")};
    }
};

TEST_F(FlipScriptTest, NothingSelected) {
    makeLeg(*this);
    flip(*this, {}, 'x', 'y');
    EXPECT_EQ(transcript(), (Lines{"info: Please, select any 'Joint'",
                                   "info: Por favor, selecciona solo joints."}));
}

TEST_F(FlipScriptTest, ForeignNodesSelected) {
    makeLeg(*this);
    for (const Lines& selection : {Lines{"|leg"}, Lines{"|hip", "|leg"}, Lines{"skinCluster1"}}) {
        flip(*this, selection, 'x', 'y');
        EXPECT_EQ(transcript(), Lines{"info: Por favor, selecciona solo joints."});
    }
}

TEST_F(FlipScriptTest, WithoutSkinAMiddleJoint) {
    makeChain(*this, {"hip", "knee", "ankle"});
    flip(*this, {"|hip|knee"}, 'x', 'y');
    EXPECT_EQ(transcript(), Lines{restoreLine("knee") + kFailed} + flipKnee() + Lines{kDone});
}

// A top at the world is sent where it stands, and then to a parent without a name.
TEST_F(FlipScriptTest, WithoutSkinATop) {
    makeChain(*this, {"hip", "knee", "ankle"});
    flip(*this, {"|hip"}, 'x', 'y');
    EXPECT_EQ(transcript(), (Lines{restoreLine("hip") + kFailed, toWorldLine("|hip|knee"),
                                   skippedLine("hip", "world"), toWorldLine("|hip") + kFailed,
                                   flipLine("|hip", 'X', 'Y'), parentLine("|hip", "") + kFailed,
                                   parentLine("|knee", "|hip"), kDone}));
}

TEST_F(FlipScriptTest, WithoutSkinInTheOrderOfSelection) {
    makeChain(*this, {"hip", "knee", "ankle"});
    flip(*this, {"|hip|knee|ankle", "|hip|knee"}, 'z', 'y');
    EXPECT_EQ(transcript(), (Lines{restoreLine("ankle") + kFailed, toWorldLine("|hip|knee|ankle"),
                                   flipLine("|ankle", 'Z', 'Y'), parentLine("|ankle", "|hip|knee"),
                                   toWorldLine("|hip|knee|ankle"), toWorldLine("|hip|knee"),
                                   flipLine("|knee", 'Z', 'Y'), parentLine("|knee", "|hip"),
                                   parentLine("|ankle", "|hip|knee"), kDone}));
}

TEST_F(FlipScriptTest, TheSignHasNoPart) {
    makeChain(*this, {"hip", "knee"});
    for (char sign : {'+', '-'}) {
        QWidget* window = openTool();
        chooseAxes(*this, window, {'y', 'z', sign, "", ""});
        select({"|hip|knee"});
        forget();
        press(window, "btn_flipOrient");
        EXPECT_EQ(transcript()[2], flipLine("|knee", 'Y', 'Z'));
    }
}

TEST_F(FlipScriptTest, ASkeletonUnderAGroup) {
    makeGroup(*this, "chr");
    makeChain(*this, {"hip", "knee", "ankle"}, "|chr");
    flip(*this, {"|chr|hip|knee", "|chr|hip"}, 'x', 'y');
    EXPECT_EQ(transcript(),
              (Lines{restoreLine("knee") + kFailed, parentLine("|chr|hip|knee|ankle", "|chr"),
                     parentLine("|chr|hip|knee", "|chr"), flipLine("|chr|knee", 'X', 'Y'),
                     parentLine("|chr|knee", "|chr|hip"), parentLine("|chr|ankle", "|chr|hip|knee"),
                     parentLine("|chr|hip|knee", "|chr"), skippedLine("hip", "chr"),
                     parentLine("|chr|hip", "|chr") + kFailed, flipLine("|chr|hip", 'X', 'Y'),
                     skippedLine("hip", "chr"), parentLine("|chr|hip", "|chr") + kFailed,
                     parentLine("|chr|knee", "|chr|hip"), kDone}));
}

TEST_F(FlipScriptTest, EveryKindOfChildGoesOutAndBack) {
    makeChain(*this, {"hip", "knee", "ankle"});
    python(
        "cmds.createNode('transform', name='mark', parent='|hip|knee')\n"
        "cmds.createNode('locator', name='markShape', parent='mark')\n");
    flip(*this, {"|hip|knee"}, 'x', 'y');
    EXPECT_EQ(transcript(),
              (Lines{restoreLine("knee") + kFailed, toWorldLine("|hip|knee|ankle"),
                     toWorldLine("|hip|knee|mark"), toWorldLine("|hip|knee"),
                     flipLine("|knee", 'X', 'Y'), parentLine("|knee", "|hip"),
                     parentLine("|ankle", "|hip|knee"), parentLine("|mark", "|hip|knee"), kDone}));
}

TEST_F(FlipScriptTest, WithSkinAMiddleJoint) {
    makeLeg(*this);
    flip(*this, {"|hip|knee"}, 'x', 'y');
    EXPECT_EQ(transcript(), legStart("knee") + flipKnee() + legEnd());
    EXPECT_EQ(languageErrors(), 0);
}

// The copy bears the old name already, so its top has a namesake here.
TEST_F(FlipScriptTest, WithSkinTheTop) {
    makeLeg(*this);
    flip(*this, {"|hip"}, 'x', 'y');
    const Lines turning{toWorldLine("|hip|knee"),         skippedLine("|hip", "world"),
                        toWorldLine("|hip") + kFailed,    flipLine("|hip", 'X', 'Y'),
                        parentLine("|hip", "") + kFailed, parentLine("|knee", "|hip")};
    EXPECT_EQ(transcript(), legStart("hip") + turning + legEnd());
}

TEST_F(FlipScriptTest, WithSkinInWalkOrder) {
    makeLeg(*this);
    flip(*this, {"|hip|knee|ankle", "|hip|knee"}, 'x', 'y');
    const Lines ankle{toWorldLine("|hip|knee|ankle"), flipLine("|ankle", 'X', 'Y'),
                      parentLine("|ankle", "|hip|knee")};
    EXPECT_EQ(transcript(), legStart("ankle") + flipKnee() + ankle + legEnd());
}

// The clusters that the selected joints reach are looked for, no others.
TEST_F(FlipScriptTest, ABoundSkeletonByAJointThatReachesNoSkin) {
    makeChain(*this, {"hip", "knee", "ankle"});
    makeTube(*this, "leg");
    python("cmds.skinCluster('hip', 'knee', 'leg', toSelectedBones=True)");
    flip(*this, {"|hip|knee|ankle"}, 'x', 'y');
    EXPECT_EQ(messages(), Lines{kDone});
}

TEST_F(FlipScriptTest, TwoSkeletonsShareOneGroupName) {
    makeLeg(*this);
    makeChain(*this, {"arm", "hand"});
    bindTube(*this, "|arm", "sleeve");
    flip(*this, {"|arm|hand", "|hip|knee"}, 'x', 'y');
    EXPECT_EQ(transcript(), (Lines{restoreLine("hand"),
                                   detachLine("skinCluster2"),
                                   detachLine("skinCluster1"),
                                   duplicateLine("|arm"),
                                   stripLine("arm1"),
                                   listLine("arm1"),
                                   freezeLine("|arm1|hand"),
                                   freezeLine("arm1"),
                                   groupLine("|arm"),
                                   "python plain: cmds.rename('|arm1', 'arm')",
                                   detachLine("skinCluster2"),
                                   detachLine("skinCluster1"),
                                   duplicateLine("|hip"),
                                   stripLine("hip1"),
                                   listLine("hip1"),
                                   freezeLine("|hip1|knee|ankle"),
                                   freezeLine("|hip1|knee"),
                                   freezeLine("hip1"),
                                   groupLine("|hip"),
                                   "python plain: cmds.rename('|hip1', 'hip')",
                                   toWorldLine("|arm|hand"),
                                   flipLine("|hand", 'X', 'Y'),
                                   parentLine("|hand", "|arm"),
                                   renameLine("|arm", "arm"),
                                   kReconnected,
                                   kReconnected,
                                   deleteGroupLine(),
                                   bindLine("arm", "|sleeve|sleeveShape"),
                                   bindLine("arm", "|leg|legShape")}));
    EXPECT_TRUE(exists("|tempOldSkeletonGroup1|hip")) << "the second parking group stays";
}

TEST_F(FlipScriptTest, ALoneSkinnedJoint) {
    makeChain(*this, {"solo"});
    bindTube(*this, "|solo", "leg");
    flip(*this, {"|solo"}, 'x', 'y');
    EXPECT_EQ(transcript(),
              (Lines{restoreLine("solo"), detachLine("skinCluster1"), duplicateLine("|solo"),
                     stripLine("solo1") + kFailed, listLine("solo1") + kFailed, groupLine("|solo"),
                     "python plain: cmds.rename('|solo1', 'solo')", skippedLine("|solo", "world"),
                     toWorldLine("|solo") + kFailed, flipLine("|solo", 'X', 'Y'),
                     parentLine("|solo", "") + kFailed, renameLine("|solo", "solo"), kReconnected,
                     deleteGroupLine(), bindLine("solo", "|leg|legShape")}));
}

TEST_F(FlipScriptTest, JointCountsThatDifferAreNotListed) {
    makeGroup(*this, "chr");
    makeChain(*this, {"hip", "knee", "ankle"}, "|chr");
    bindTube(*this, "|chr|hip", "leg");
    makeChain(*this, {"hip", "shin"});
    flip(*this, {"|chr|hip|knee|ankle"}, 'x', 'y');
    const Lines all = transcript();
    EXPECT_EQ(all.back(),
              "error: El número de joints no coincide: originalRoot (3), duplicateRoot (2)");
    EXPECT_EQ(messages(), Lines{all.back()});
    EXPECT_TRUE(exists("|chr|tempOldSkeletonGroup|hip|knee|ankle"));
}

TEST_F(FlipScriptTest, AnUnboundSkeletonWithAConstraint) {
    makeChain(*this, {"hip", "knee"});
    makeGroup(*this, "ctrl");
    python("cmds.orientConstraint('ctrl', '|hip|knee', mo=True)");
    flip(*this, {"|hip|knee"}, 'x', 'z');
    EXPECT_EQ(
        transcript(),
        (Lines{restoreLine("knee") + kFailed, duplicateLine("|hip"), stripLine("hip1"),
               listLine("hip1"), freezeLine("|hip1|knee"), freezeLine("hip1"), groupLine("|hip"),
               "python plain: cmds.rename('|hip1', 'hip')", toWorldLine("|hip|knee"),
               flipLine("|knee", 'X', 'Z'), parentLine("|knee", "|hip"),
               "info: Procesando constraint: knee_orientConstraint1 tipo: kOrientConstraint",
               "info: Ejecutando comando: orientConstraint -mo \"|ctrl\" \"|hip|knee\"",
               "mel stringArray: orientConstraint -mo \"|ctrl\" \"|hip|knee\"",
               renameLine("|hip", "hip"), deleteGroupLine()}));
}

TEST_F(FlipScriptTest, NothingEchoesAndNothingEntersUndo) {
    makeLeg(*this);
    flip(*this, {"|hip|knee"}, 'x', 'y');
    for (const RecordEntry& entry : session().record().entries()) {
        if (entry.isScript) {
            EXPECT_FALSE(entry.display) << entry.text;
            EXPECT_FALSE(entry.undo) << entry.text;
        }
    }
}

}  // namespace torvel::test
