// What the button Freeze Rotations runs and says, in order.

#include <QWidget>

#include "plugin/fixtures/expected_scripts.h"
#include "plugin/fixtures/rigs.h"

namespace torvel::test {

class FreezeScriptTest : public PluginScene {
  public:
    /// From the stripping of the copy to the closing line, around the lines that freeze it.
    Lines roadOf(const std::string& root, const Lines& freezing, const std::string& mesh) {
        return Lines{detachLine("skinCluster1"), duplicateLine("|" + root), stripLine(root + "1")} +
               freezing +
               Lines{groupLine("|" + root),
                     "python string: cmds.rename('" + root + "1', '" + root + "')",
                     "info: Reconnecting skinCluster: skinCluster1",
                     "info: Reconexión por nombre completada.",
                     deleteGroupLine(),
                     "info: Binding skin to: " + mesh,
                     "info: Root name: " + root,
                     bindLine(root, mesh),
                     kClosing};
    }

    const std::string kClosing = "info: Freeze Rotations completado. El skinning se ha conservado.";
};

TEST_F(FreezeScriptTest, NothingSelected) {
    makeLeg(*this);
    for (bool all : {false, true}) {
        freeze({}, all);
        EXPECT_EQ(transcript(), (Lines{"info: Please, select any 'Joint'",
                                       "info: Por favor, selecciona solo joints."}));
    }
}

TEST_F(FreezeScriptTest, ForeignNodesSelected) {
    makeLeg(*this);
    for (const Lines& selection : {Lines{"|leg"}, Lines{"|hip", "|leg"}, Lines{"skinCluster1"}}) {
        freeze(selection, true);
        EXPECT_EQ(transcript(), Lines{"info: Por favor, selecciona solo joints."});
    }
}

TEST_F(FreezeScriptTest, WithoutSkinTheSelectionInItsOrder) {
    makeChain(*this, {"hip", "knee", "ankle"});
    freeze({"|hip|knee|ankle", "|hip"}, false);
    EXPECT_EQ(transcript(),
              (Lines{"info: Freezing rotations for: |hip|knee|ankle", freezeLine("|hip|knee|ankle"),
                     "info: Freezing rotations for: |hip", freezeLine("|hip")}));
}

TEST_F(FreezeScriptTest, WithoutSkinTheWholeFirstSkeleton) {
    makeChain(*this, {"hip", "knee", "ankle"});
    makeChain(*this, {"arm", "hand"});
    freeze({"|hip|knee", "|arm"}, true);
    EXPECT_EQ(transcript(), (Lines{listLine("hip"), freezeLine("|hip|knee|ankle"),
                                   freezeLine("|hip|knee"), freezeLine("hip")}));
}

TEST_F(FreezeScriptTest, WithSkinTheWholeSkeleton) {
    makeLeg(*this);
    freeze({"|hip|knee"}, true);
    EXPECT_EQ(transcript(), roadOf("hip",
                                   {listLine("hip1"), freezeLine("|hip1|knee|ankle"),
                                    freezeLine("|hip1|knee"), freezeLine("hip1")},
                                   "|leg|legShape"));
}

TEST_F(FreezeScriptTest, WithSkinTheNamesakesInWalkOrder) {
    makeLeg(*this);
    freeze({"|hip|knee|ankle", "|hip|knee"}, false);
    EXPECT_EQ(
        transcript(),
        roadOf("hip", {freezeLine("|hip1|knee"), freezeLine("|hip1|knee|ankle")}, "|leg|legShape"));
}

// The copy of the top bears another name while the copies of the selection are looked for.
TEST_F(FreezeScriptTest, WithSkinTheTopAloneHasNoNamesake) {
    makeLeg(*this);
    freeze({"|hip"}, false);
    EXPECT_EQ(transcript(), roadOf("hip", {}, "|leg|legShape"));
}

TEST_F(FreezeScriptTest, ALoneSkinnedJoint) {
    makeChain(*this, {"solo"});
    bindTube(*this, "|solo", "leg");
    Lines road = roadOf("solo", {listLine("solo1") + " (failed)"}, "|leg|legShape");
    road[2] += " (failed)";
    freeze({"|solo"}, true);
    EXPECT_EQ(transcript(), road);
    EXPECT_EQ(languageErrors(), 2);

    road.erase(road.begin() + 3);
    freeze({"|solo"}, false);
    EXPECT_EQ(transcript(), road);
    EXPECT_EQ(languageErrors(), 1);
}

TEST_F(FreezeScriptTest, ALoneBareJoint) {
    makeChain(*this, {"solo"});
    freeze({"|solo"}, true);
    EXPECT_EQ(transcript(), Lines{listLine("solo") + " (failed)"});
    freeze({"|solo"}, false);
    EXPECT_EQ(transcript(), (Lines{"info: Freezing rotations for: |solo", freezeLine("|solo")}));
}

TEST_F(FreezeScriptTest, TwoClustersTakeTurns) {
    makeLeg(*this);
    bindTube(*this, "|hip", "sock");
    freeze({"|hip|knee"}, false);
    EXPECT_EQ(transcript(),
              (Lines{detachLine("skinCluster1"), detachLine("skinCluster2"), duplicateLine("|hip"),
                     stripLine("hip1"), freezeLine("|hip1|knee"), groupLine("|hip"),
                     "python string: cmds.rename('hip1', 'hip')",
                     "info: Reconnecting skinCluster: skinCluster1",
                     "info: Reconexión por nombre completada.",
                     "info: Reconnecting skinCluster: skinCluster2",
                     "info: Reconexión por nombre completada.", deleteGroupLine(),
                     "info: Binding skin to: |leg|legShape", "info: Root name: hip",
                     bindLine("hip", "|leg|legShape"), "info: Binding skin to: |sock|sockShape",
                     "info: Root name: hip", bindLine("hip", "|sock|sockShape"), kClosing}));
}

TEST_F(FreezeScriptTest, AClusterWithTwoOutputsIsDetachedTwice) {
    makeLeg(*this);
    addSecondOutput(*this, "skinCluster1");
    freeze({"|hip|knee"}, false);
    const Lines all = scripts();
    EXPECT_EQ(std::count(all.begin(), all.end(), detachLine("skinCluster1")), 2);
    const Lines said = messages();
    EXPECT_EQ(std::count(said.begin(), said.end(), "info: Binding skin to: |leg|legShape"), 1);
    EXPECT_EQ(std::count(said.begin(), said.end(), "info: Binding skin to: |leg2|leg2Shape"), 1);
    const std::string first = bindLine("hip", "|leg|legShape");
    const std::string second = bindLine("hip", "|leg2|leg2Shape") + " (failed)";
    EXPECT_EQ(std::count(all.begin(), all.end(), first), 1) << "takes the cluster up again";
    EXPECT_EQ(std::count(all.begin(), all.end(), second), 1) << "the cluster is in use by then";
    EXPECT_EQ(said.back(), kClosing);
}

TEST_F(FreezeScriptTest, AClusterWithoutMesh) {
    makeLeg(*this);
    python("cmds.disconnectAttr('skinCluster1.outputGeometry[0]', 'legShape.inMesh')");
    freeze({"|hip|knee"}, false);
    EXPECT_EQ(messages(), (Lines{"info: Reconnecting skinCluster: skinCluster1",
                                 "info: Reconexión por nombre completada.", kClosing}));
}

TEST_F(FreezeScriptTest, ARootUnderAGroup) {
    makeGroup(*this, "chr");
    makeChain(*this, {"hip", "knee"}, "|chr");
    bindTube(*this, "|chr|hip", "leg");
    freeze({"|chr|hip|knee"}, true);
    EXPECT_EQ(transcript(),
              (Lines{detachLine("skinCluster1"), duplicateLine("|chr|hip"), stripLine("hip1"),
                     listLine("hip1"), freezeLine("|chr|hip1|knee"), freezeLine("hip1"),
                     groupLine("|chr|hip"), "python string: cmds.rename('hip1', 'hip')",
                     "info: Reconnecting skinCluster: skinCluster1",
                     "info: Reconexión por nombre completada.", deleteGroupLine(),
                     "info: Binding skin to: |leg|legShape", "info: Root name: hip",
                     bindLine("hip", "|leg|legShape"), kClosing}));
}

TEST_F(FreezeScriptTest, JointCountsThatDiffer) {
    makeGroup(*this, "chr");
    makeChain(*this, {"hip", "knee", "ankle"}, "|chr");
    bindTube(*this, "|chr|hip", "leg");
    makeChain(*this, {"hip", "knee"});
    freeze({"|chr|hip|knee|ankle"}, false);
    EXPECT_EQ(
        transcript(),
        (Lines{detachLine("skinCluster1"), duplicateLine("|chr|hip"), stripLine("hip1"),
               freezeLine("|chr|hip1|knee|ankle"), groupLine("|chr|hip"),
               "python string: cmds.rename('hip1', 'hip')",
               "info: Reconnecting skinCluster: skinCluster1",
               "error: El número de joints no coincide: originalRoot (3), duplicateRoot (2)",
               "info: Joints en originalRoot:", "info:   hip", "info:   knee", "info:   ankle",
               "info: Joints en duplicateRoot:", "info:   hip", "info:   knee"}));
    EXPECT_TRUE(exists("|chr|tempOldSkeletonGroup|hip|knee|ankle"));
    EXPECT_TRUE(exists("|chr|hip|knee|ankle"));
    EXPECT_EQ(scene().number(plug("skinCluster1", "nodeState")), 1.0) << "still detached";
}

TEST_F(FreezeScriptTest, RotateLinksAreRunBeforeTheSwap) {
    makeLeg(*this);
    makeChain(*this, {"twist"}, "|hip|knee");
    python("cmds.connectAttr('|hip|knee.rotateX', '|hip|knee|twist.rotateX')");
    freeze({"|hip|knee|ankle"}, false);
    const std::string ends = "\"|hip1|knee.rotateX\" \"|hip1|knee|twist.rotateX\"";
    const Lines all = transcript();
    ASSERT_GT(all.size(), 5u);
    EXPECT_EQ(all[3], freezeLine("|hip1|knee|ankle"));
    EXPECT_EQ(all[4],
              "mel plain: if (!`isConnected " + ends + "`) { connectAttr -f " + ends + "; }");
    EXPECT_EQ(all[5], groupLine("|hip"));
}

TEST_F(FreezeScriptTest, NothingEchoesAndNothingEntersUndo) {
    makeLeg(*this);
    freeze({"|hip"}, true);
    for (const RecordEntry& entry : session().record().entries()) {
        if (entry.isScript) {
            EXPECT_FALSE(entry.display) << entry.text;
            EXPECT_FALSE(entry.undo) << entry.text;
        }
    }
}

}  // namespace torvel::test
