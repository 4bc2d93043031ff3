// What "Create Twist Joint" runs, makes and leaves behind.

#include <fmt/format.h>

#include "plugin/fixtures/expected_scripts.h"
#include "plugin/fixtures/rigs.h"
#include "plugin/fixtures/twist_scene.h"

namespace torvel::test {

namespace {

std::string placeLine(const std::string& parent, const std::string& joint, const std::string& twist,
                      const std::string& axis) {
    return "python plain: iPos = cmds.xform('" + parent +
           "', query = True, worldSpace = True, translation = True)\n"
           "iChildPos = cmds.xform('" +
           joint +
           "', query = True, worldSpace = True, translation = True)\n"
           "twistPos = [(a + 4 * b) / 5 for a, b in zip(iPos, iChildPos)]\n"
           "cmds.xform('" +
           twist +
           "', ws = True, t = twistPos)\n"
           "iOrient = cmds.xform('" +
           parent +
           "', query = True, worldSpace = True, rotation = True)\n"
           "cmds.joint('" +
           twist +
           "', edit=True, o=(0,0,0))\n"
           "iChildRot = '" +
           joint + "' + '.rotate' + '" + axis +
           "'\n"
           "twistRot = '" +
           twist + "' + '.rotate' + '" + axis +
           "'\n"
           "cmds.connectAttr(iChildRot,twistRot)\n";
}

const std::string kLockLine =
    "python plain: for attr in cmds.ls('*.liw'):\n   cmds.setAttr(attr, True)\n";

std::string offerLine(const std::string& twist, const std::string& skin) {
    return "python plain: try:\n   cmds.skinCluster('" + skin + "', edit = True, addInfluence = '" +
           twist + "', lw = True)\nexcept:\n   print('" + twist + "' + ' avoided!!')\n";
}

std::string addedLine(const std::string& twist, const std::string& skin) {
    return "info: " + twist + " añadido a " + skin;
}

Lines offer(const std::string& twist, const std::string& skin) {
    return {offerLine(twist, skin), addedLine(twist, skin)};
}

const std::string kFailed = " (failed)";
const std::string kNoSkin = "info: No hay Skins Cluster";

}  // namespace

class TwistJointTest : public TwistScene {
  public:
    /// a at the origin, b ten along x, below it c five along y and d two along z; no skin.
    void makeFork() {
        python(
            "cmds.joint(name='a', position=(0, 0, 0))\n"
            "cmds.joint(name='b', position=(10, 0, 0))\n"
            "cmds.joint(name='c', position=(10, 5, 0))\n"
            "cmds.select('b')\n"
            "cmds.joint(name='d', position=(10, 0, 2))\n"
            "cmds.select(clear=True)");
        forget();
    }
};

TEST_F(TwistJointTest, FourFifthsOfTheWayDrivenByOneChannel) {
    makeFork();
    twist({"c"});
    EXPECT_EQ(transcript(), (Lines{placeLine("b", "c", "c_twist", "X"), kNoSkin}));
    expectPlace("|a|b|c_twist", V3d(10, 4, 0));
    expectOneChannel("c", "c_twist", "X");
    EXPECT_EQ(pythonText("cmds.listRelatives('c_twist') or []"), "");
}

TEST_F(TwistJointTest, TheFirstOfAChainGoesBetweenItAndTheRoot) {
    python(
        "cmds.joint(name='root', position=(0, 0, 0)); cmds.joint(name='tip', position=(10, 0, 0))");
    twist({"tip"});
    expectPlace("|root|tip_twist", V3d(8, 0, 0));
}

TEST_F(TwistJointTest, TheRadioChoosesTheChannel) {
    for (const char* axis : {"X", "Y", "Z"}) {
        python("cmds.file(new=True, force=True)");
        makeFork();
        twist({"c"}, axis);
        EXPECT_EQ(transcript()[0], placeLine("b", "c", "c_twist", axis));
        expectOneChannel("c", "c_twist", axis);
        python(fmt::format("cmds.setAttr('c.rotate{}', 33)", axis));
        EXPECT_NEAR(python(fmt::format("cmds.getAttr('c_twist.rotate{}')", axis)).number(), 33,
                    1e-12);
    }
}

TEST_F(TwistJointTest, ThePlaceHoldsOnABentSkeletonAndTheOrientationIsZero) {
    const Lines chain = makeChain(*this, {"hip", "knee", "ankle"});
    python("cmds.joint('ankle', edit=True, orientation=(11, 22, 33))");
    twist({chain[2]});
    expectFourFifths("ankle_twist", "knee", "ankle");
    EXPECT_EQ(pythonText("[str(v) for v in cmds.getAttr('ankle_twist.jointOrient')[0]]"),
              "0.0 0.0 0.0");
}

TEST_F(TwistJointTest, ASkinTakesTheInfluenceLocked) {
    makeLeg(*this);
    const RigState before = stateOf(*this);
    twist({"ankle"});
    EXPECT_EQ(transcript(), (Lines{placeLine("knee", "ankle", "ankle_twist", "X"), kLockLine,
                                   offerLine("ankle_twist", "skinCluster1"),
                                   addedLine("ankle_twist", "skinCluster1")}));
    EXPECT_EQ(influences("skinCluster1"), (Lines{"hip", "knee", "ankle", "ankle_twist"}));
    for (const char* joint : {"hip", "knee", "ankle", "ankle_twist"})
        EXPECT_TRUE(python(fmt::format("cmds.getAttr('{}.liw')", joint)).truth()) << joint;
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.weights, before.weights) << "the new influence starts with nothing";
    expectSamePoints(after, before);
}

TEST_F(TwistJointTest, TheNewJointDeformsOnceItHasWeights) {
    makeLeg(*this);
    twist({"ankle"});
    python(
        "for j in ('hip', 'knee', 'ankle', 'ankle_twist'): cmds.setAttr(j + '.liw', False)\n"
        "cmds.skinPercent('skinCluster1', 'leg.vtx[0:7]', transformValue=[('ankle_twist', 1.0)])");
    const Points before = pointsOf(*this, "legShape");
    python("cmds.setAttr('ankle.rotateX', cmds.getAttr('ankle.rotateX') + 40)");
    EXPECT_GT(deviation(pointsOf(*this, "legShape"), before), 1e-3);
}

TEST_F(TwistJointTest, EveryClusterIsOfferedEveryJoint) {
    makeLeg(*this);
    makeChain(*this, {"shoulder", "elbow", "wrist"});
    bindTube(*this, "|shoulder", "arm");
    twist({"ankle", "wrist"});
    EXPECT_EQ(transcript(),
              Lines{placeLine("knee", "ankle", "ankle_twist", "X")} + Lines{kLockLine} +
                  offer("ankle_twist", "skinCluster1") + offer("ankle_twist", "skinCluster2") +
                  Lines{placeLine("elbow", "wrist", "wrist_twist", "X")} + Lines{kLockLine} +
                  offer("wrist_twist", "skinCluster1") + offer("wrist_twist", "skinCluster2"));
    const Lines both{"ankle_twist", "wrist_twist"};
    EXPECT_EQ(influences("skinCluster1"), (Lines{"hip", "knee", "ankle"} + both));
    EXPECT_EQ(influences("skinCluster2"), (Lines{"shoulder", "elbow", "wrist"} + both));
}

TEST_F(TwistJointTest, TwoClustersOnOneSkeleton) {
    makeLeg(*this);
    bindTube(*this, "|hip", "sock");
    twist({"ankle"});
    EXPECT_EQ(messages(), (Lines{addedLine("ankle_twist", "skinCluster1"),
                                 addedLine("ankle_twist", "skinCluster2")}));
}

TEST_F(TwistJointTest, EveryInfluenceOfTheSceneIsLocked) {
    makeLeg(*this);
    makeChain(*this, {"shoulder", "elbow"});
    bindTube(*this, "|shoulder", "arm");
    EXPECT_FALSE(python("cmds.getAttr('elbow.liw')").truth());
    twist({"ankle"});
    EXPECT_EQ(messages(), Lines{addedLine("ankle_twist", "skinCluster1")});
    EXPECT_TRUE(python("cmds.getAttr('elbow.liw')").truth());
}

TEST_F(TwistJointTest, ASecondClickIsNumbered) {
    makeLeg(*this);
    twist({"ankle"});
    twist({"ankle"});
    EXPECT_EQ(transcript(), (Lines{placeLine("knee", "ankle", "ankle_twist1", "X"), kLockLine} +
                             offer("ankle_twist1", "skinCluster1")));
    expectFourFifths("ankle_twist1", "knee", "ankle");
    EXPECT_EQ(influences("skinCluster1").size(), 5u);
}

TEST_F(TwistJointTest, TheCopiesOfTheChildrenGoUnderTheWorld) {
    makeFork();
    python("cmds.select('d'); cmds.joint(name='e', position=(10, 0, 3))");
    twist({"b"});
    EXPECT_EQ(transcript(), (Lines{placeLine("a", "b", "b_twist", "X"), kNoSkin}));
    expectPlace("|a|b_twist", V3d(8, 0, 0));
    EXPECT_EQ(pythonText("cmds.listRelatives('b_twist') or []"), "");
    EXPECT_EQ(pythonText("cmds.ls('c', 'd', 'e', long=True)"), "|c |a|b|c |d |a|b|d |d|e |a|b|d|e");
    EXPECT_EQ(pythonText("cmds.ls(type='joint', assemblies=True)"), "a |d |c")
        << "the last child leaves first";
}

// The copy of c under the world makes the short name c ambiguous, so its own script fails; the
// copy that was made for it stays where c stands.
TEST_F(TwistJointTest, AParentSpoilsTheNextJointOfTheSelection) {
    makeFork();
    twist({"|a|b", "|a|b|c"});
    EXPECT_EQ(transcript(), (Lines{placeLine("a", "b", "b_twist", "X"), kNoSkin,
                                   placeLine("b", "c", "c_twist", "X") + kFailed, kNoSkin}));
    EXPECT_TRUE(printed("More than one object matches name: c"));
    expectPlace("|a|b|c_twist", V3d(10, 5, 0));
    expectOneChannel("", "c_twist", "none");
}

TEST_F(TwistJointTest, ChildrenFirstWorks) {
    makeFork();
    twist({"|a|b|c", "|a|b"});
    EXPECT_EQ(languageErrors(), 0);
    expectPlace("|a|b|c_twist", V3d(10, 4, 0));
    expectPlace("|a|b_twist", V3d(8, 0, 0));
    EXPECT_TRUE(exists("|c_twist")) << "the copy of the first twist joint";
}

TEST_F(TwistJointTest, AJointAtTheTopStaysInPlaceUnconnected) {
    makeLeg(*this);
    const V3d hip = placeOf("|hip");
    twist({"|hip"});
    EXPECT_EQ(transcript(),
              (Lines{placeLine("world", "hip", "hip_twist", "X") + kFailed, kLockLine} +
               offer("hip_twist", "skinCluster1")));
    EXPECT_TRUE(printed("No object matches name: world"));
    expectPlace("|hip_twist", hip);
    expectOneChannel("", "hip_twist", "none");
    EXPECT_EQ(influences("skinCluster1").back(), "hip_twist") << "the skin steps run all the same";
}

TEST_F(TwistJointTest, ARefusedInfluenceIsToldAsAdded) {
    makeLeg(*this);
    makeGroup(*this, "other");
    makeGroup(*this, "ankle_twist", "|other");
    ::testing::internal::CaptureStdout();
    twist({"ankle"});
    const std::string shown = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(transcript(),
              (Lines{placeLine("knee", "ankle", "ankle_twist", "X") + kFailed, kLockLine} +
               offer("ankle_twist", "skinCluster1")));
    EXPECT_EQ(shown, "ankle_twist avoided!!\n");
    EXPECT_EQ(influences("skinCluster1").size(), 3u);
    EXPECT_TRUE(python("cmds.getAttr('hip.liw')").truth()) << "locked all the same";
}

TEST_F(TwistJointTest, RefusedSelectionsMakeNothing) {
    makeLeg(*this);
    twist({});
    EXPECT_EQ(transcript(),
              (Lines{"info: Please, select any 'Joint'", "warning: Please, select just joints"}));
    twist({"ankle", "leg"});
    EXPECT_EQ(transcript(), Lines{"warning: Please, select just joints"});
    EXPECT_EQ(pythonText("cmds.ls('*_twist')"), "");
}

TEST_F(TwistJointTest, WithoutASkinEachJointSaysSo) {
    makeChain(*this, {"hip", "knee", "ankle"});
    makeChain(*this, {"shoulder", "elbow", "wrist"});
    makeChain(*this, {"neck", "head"});
    twist({"ankle", "wrist", "head"});
    EXPECT_EQ(messages(), (Lines{kNoSkin, kNoSkin, kNoSkin}));
    EXPECT_EQ(pythonText("sorted(cmds.ls('*_twist'))"), "ankle_twist head_twist wrist_twist");
}

}  // namespace torvel::test
