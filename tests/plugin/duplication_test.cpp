#include "plugin/fixtures/expected_scripts.h"
#include "plugin/fixtures/rig_state.h"
#include "plugin/fixtures/rigs.h"
#include "toolkit/duplication.h"

namespace torvel::test {

class DuplicationTest : public PluginScene {};

TEST_F(DuplicationTest, TheWholeRoadOfOneSkeleton) {
    makeLeg(*this);
    const M44d ankle = worldMatrixOf(*this, "|hip|knee|ankle");
    const MObjectArray copies =
        duplicateSkeletonForEdit(objects({"|hip"}), objects({"skinCluster1"}));

    EXPECT_EQ(transcript(),
              (Lines{detachLine("skinCluster1"), duplicateLine("|hip"), stripLine("hip1"),
                     listLine("hip1"), freezeLine("|hip1|knee|ankle"), freezeLine("|hip1|knee"),
                     freezeLine("hip1"), groupLine("|hip"),
                     "python plain: cmds.rename('|hip1', 'hip')"}));
    EXPECT_EQ(pathsOf(copies), Lines{"|hip"});
    EXPECT_TRUE(exists("|tempOldSkeletonGroup|hip|knee|ankle"));
    expectFrozen(*this, {"|hip", "|hip|knee", "|hip|knee|ankle"});
    EXPECT_NE(rotationOf(*this, "|tempOldSkeletonGroup|hip"), V3d(0, 0, 0));
    EXPECT_TRUE(ankle.equalWithAbsError(worldMatrixOf(*this, "|hip|knee|ankle"), 1e-9));
    EXPECT_EQ(scene().number(plug("skinCluster1", "nodeState")), 1.0);
}

TEST_F(DuplicationTest, NoClusterNoDetach) {
    makeChain(*this, {"a", "b"});
    forget();
    duplicateSkeletonForEdit(objects({"|a"}), MObjectArray());
    EXPECT_EQ(transcript(),
              (Lines{duplicateLine("|a"), stripLine("a1"), listLine("a1"), freezeLine("|a1|b"),
                     freezeLine("a1"), groupLine("|a"), "python plain: cmds.rename('|a1', 'a')"}));
}

TEST_F(DuplicationTest, ALoneJointIsCopiedButNotFrozen) {
    makeChain(*this, {"solo"});
    forget();
    duplicateSkeletonForEdit(objects({"|solo"}), MObjectArray());
    EXPECT_EQ(transcript(), (Lines{duplicateLine("|solo"), stripLine("solo1") + " (failed)",
                                   listLine("solo1") + " (failed)", groupLine("|solo"),
                                   "python plain: cmds.rename('|solo1', 'solo')"}));
    EXPECT_EQ(languageErrors(), 2);
    EXPECT_NE(rotationOf(*this, "|solo"), V3d(0, 0, 0));
}

TEST_F(DuplicationTest, EachRootDetachesEveryCluster) {
    makeLeg(*this);
    makeChain(*this, {"arm", "hand"});
    forget();
    const MObjectArray copies =
        duplicateSkeletonForEdit(objects({"|hip", "|arm"}), objects({"skinCluster1"}));
    const Lines all = scripts();
    EXPECT_EQ(std::count(all.begin(), all.end(), detachLine("skinCluster1")), 2);
    EXPECT_EQ(pathsOf(copies), (Lines{"|hip", "|arm"}));
    EXPECT_TRUE(exists("|tempOldSkeletonGroup|hip"));
    EXPECT_TRUE(exists("|tempOldSkeletonGroup1|arm"));
}

TEST_F(DuplicationTest, TwoOutputsDetachTwice) {
    makeLeg(*this);
    addSecondOutput(*this, "skinCluster1");
    forget();
    duplicateSkeletonForEdit(objects({"|hip"}), objects({"skinCluster1"}));
    const Lines all = scripts();
    EXPECT_EQ(std::count(all.begin(), all.end(), detachLine("skinCluster1")), 2);
}

TEST_F(DuplicationTest, ConstraintsAreNotCopied) {
    makeChain(*this, {"a", "b"});
    makeGroup(*this, "driver");
    addConstraint(*this, "pointConstraint", "|a", {"|driver"});
    addConstraint(*this, "scaleConstraint", "|a|b", {"|driver"});
    duplicateSkeletonForEdit(objects({"|a"}), MObjectArray());
    EXPECT_FALSE(exists("|a|a_pointConstraint1"));
    EXPECT_FALSE(exists("|a|b|b_scaleConstraint1"));
    EXPECT_TRUE(exists("|tempOldSkeletonGroup|a|a_pointConstraint1"));
    EXPECT_TRUE(exists("|tempOldSkeletonGroup|a|b|b_scaleConstraint1"));
}

TEST_F(DuplicationTest, NamedTransformsStandAtTheTop) {
    makeChain(*this, {"a", "b"});
    select({"|a|b"});
    const MObject first = createNamedTransform("home");
    const MObject second = createNamedTransform("home");
    EXPECT_EQ(first, object("|home"));
    EXPECT_EQ(second, object("|home1"));
    EXPECT_EQ(selected(), Lines{"|a|b"});
}

TEST_F(DuplicationTest, ChildrenGoByShortName) {
    makeChain(*this, {"a", "b", "c"});
    makeGroup(*this, "pad", "|a");
    forget();
    deleteHierarchyChildren(object("|a"));
    EXPECT_EQ(transcript(), (Lines{"mel plain: delete b;", "mel plain: delete pad;"}));
    EXPECT_TRUE(exists("|a"));
    EXPECT_FALSE(exists("b"));
    EXPECT_FALSE(exists("c"));
    EXPECT_FALSE(exists("pad"));
    forget();
    deleteHierarchyChildren(object("|a"));
    EXPECT_EQ(transcript(), Lines{});
    deleteHierarchyChildren(MObject());
    EXPECT_EQ(transcript(), Lines{"error: No se pudo inicializar MFnDagNode para el nodo raíz."});
}

TEST_F(DuplicationTest, CharacterGroupIsParkedAndCopied) {
    makeLeg(*this);
    const CharacterDuplicate character =
        duplicateCharacterGroup(objects({"|hip"}), objects({"|leg|legShape"}));
    EXPECT_EQ(pathsOf(character.oldRoots), Lines{"|oldChr|hip"});
    EXPECT_EQ(pathsOf(character.oldMeshParents), Lines{"|oldChr|leg"});
    EXPECT_EQ(pathsOf(character.newRoots), Lines{"|newChr|hip"});
    EXPECT_EQ(pathsOf(character.newMeshParents), Lines{"|newChr|leg"});
    EXPECT_EQ(selected(), Lines{"|newChr"});
}

}  // namespace torvel::test
