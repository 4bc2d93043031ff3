#include <cmath>

#include <gtest/gtest.h>

#include "files/ma/reader.h"
#include "files/ma/writer.h"
#include "graph/math.h"
#include "nodes/core/default_nodes.h"
#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

// arm (0 0 0), elbow (2 0 0), hand: bones of length 2, bent by 60 degrees through joint orient.
class IkCommand : public testing::Test {
  protected:
    IkCommand() {
        createDefaultNodes(scene.scene());
        scene.call("joint", {}, {flag("n", {"arm"})});
        scene.call("joint", {}, {flag("n", {"elbow"}), flag("p", {2, 0, 0})});
        scene.call("joint", {}, {flag("n", {"hand"}), flag("p", {4, 0, 0})});
        scene.set("elbow.jo", 0, 0, 60);
    }
    std::string make(TestScene::Flags more = {}) {
        TestScene::Flags flags{flag("sj", {"arm"}), flag("ee", {"hand"}),
                               flag("sol", {"ikRPsolver"})};
        flags.insert(flags.end(), more.begin(), more.end());
        return scene.text("ikHandle", {}, flags);
    }
    std::string error(TestScene::Flags flags) { return scene.error("ikHandle", {}, flags); }
    bool connected(const char* from, const char* to) {
        return scene.call("isConnected", {from, to}).truth();
    }
    TestScene scene;
};

TEST_F(IkCommand, MakesHandleEffectorAndOneSharedSolver) {
    EXPECT_EQ(make({flag("n", {"reach"})}), "reach effector1");
    EXPECT_EQ(scene.text("ls", {}, {flag("sl")}), "reach");
    EXPECT_EQ(scene.text("listRelatives", {"effector1"}, {flag("p")}), "elbow");
    EXPECT_TRUE(scene.call("listRelatives", {"reach"}, {flag("p")}).isNone());
    for (const char* attr : {"translateX", "translateY", "translateZ", "offsetParentMatrix"})
        EXPECT_TRUE(connected((std::string("hand.") + attr).c_str(),
                              (std::string("effector1.") + attr).c_str()))
            << attr;
    EXPECT_TRUE(connected("arm.message", "reach.startJoint"));
    EXPECT_TRUE(connected("effector1.handlePath", "reach.endEffector"));
    EXPECT_TRUE(connected("ikRPsolver.message", "reach.ikSolver"));
    EXPECT_TRUE(connected("ikRPsolver.message", "ikSystem.ikSolver[0]"));
    EXPECT_EQ(scene.number("effector1.v"), 0);
    EXPECT_EQ(scene.number("effector1.hideDisplay"), 1);
    EXPECT_EQ(scene.number("reach.rootOnCurve"), 1);
    expectNear(scene.worldPosition("reach"), {3, std::sqrt(3.0), 0});
    scene.call("select", {"arm", "hand"});
    EXPECT_EQ(scene.text("ikHandle"), "ikHandle1 effector2");
    EXPECT_EQ(scene.text("ls", {}, {flag("type", {"ikSolver"})}), "ikRPsolver");
    EXPECT_TRUE(scene.call("listConnections", {"arm.rotate", "elbow.rotate"}).isNone());
}

TEST_F(IkCommand, KeepsThePoseAndPointsThePoleAtTheElbow) {
    const std::vector<double> hand = scene.worldMatrix("hand"), elbow = scene.worldMatrix("elbow");
    make({flag("n", {"reach"})});
    expectNear(scene.worldMatrix("hand"), hand);
    expectNear(scene.worldMatrix("elbow"), elbow);
    // Line 30 degrees above x, the elbow below it.
    const std::vector<double> pole = scene.numbers("reach.poleVector");
    EXPECT_NEAR(pole[0] * std::cos(M_PI / 6) + pole[1] * std::sin(M_PI / 6), 0, 1e-12);
    EXPECT_NEAR(pole[0], 2 * std::sin(M_PI / 6), 1e-12);
    EXPECT_NEAR(pole[1], -2 * std::cos(M_PI / 6), 1e-12);
}

TEST_F(IkCommand, AChainBentByItsRotatesLearnsThemAsPreferredAngles) {
    scene.set("elbow.jo", 0, 0, 0);
    scene.set("arm.r", 0, 10, 0);
    scene.set("elbow.r", 0, 40, 0);
    const std::vector<double> hand = scene.worldMatrix("hand");
    make();
    expectNear(scene.numbers("arm.pa"), {0, 10, 0});
    expectNear(scene.numbers("elbow.pa"), {0, 40, 0});
    expectNear(scene.worldMatrix("hand"), hand);
    expectNear(scene.numbers("elbow.r"), {0, 40, 0});
}

TEST_F(IkCommand, PreferredAnglesThatAreThereStay) {
    scene.set("elbow.jo", 0, 0, 0);
    scene.set("elbow.pa", 0, 0, 25);
    scene.set("elbow.r", 0, 0, 40);
    make();
    expectNear(scene.numbers("elbow.pa"), {0, 0, 25});
    expectNear(scene.numbers("elbow.r"), {0, 0, 40});
}

TEST_F(IkCommand, MovingTheHandleMovesTheHand) {
    make({flag("n", {"reach"})});
    scene.call("move", {1, 1, 1, "reach"}, {flag("ws")});
    expectNear(scene.worldPosition("hand"), {1, 1, 1});
    expectNear(scene.numbers("hand.r"), {0, 0, 0});
}

TEST_F(IkCommand, ASingleChainKeepsThePoseAndFollowsTheHandlesTurn) {
    scene.set("arm.jo", 10, 20, 30);
    scene.set("arm.r", 5, -20, 15);
    const std::vector<double> hand = scene.worldMatrix("hand"), arm = scene.worldMatrix("arm");
    scene.call("ikHandle", {},
               {flag("sj", {"arm"}), flag("ee", {"hand"}), flag("sol", {"ikSCsolver"}),
                flag("n", {"reach"})});
    expectNear(scene.worldMatrix("hand"), hand);
    expectNear(scene.worldMatrix("arm"), arm);
    std::vector<double> turned = scene.worldMatrix("reach");
    for (int i = 0; i < 11; ++i)
        EXPECT_NEAR(turned[i], arm[i], 1e-9) << i;
    scene.call("rotate", {30, 0, 0, "reach"}, {flag("r"), flag("ws")});
    expectNear(scene.worldPosition("hand"), {hand[12], hand[13], hand[14]});
    EXPECT_GT(std::abs(scene.worldMatrix("arm")[5] - arm[5]), 0.01);
}

TEST_F(IkCommand, NamesWhatCannotBe) {
    const std::string start = "Could not create IK handle: ";
    EXPECT_EQ(error({flag("sj", {"arm"}), flag("ee", {"nobody"})}),
              "No object matches name: nobody");
    EXPECT_EQ(error({flag("sj", {"hand"}), flag("ee", {"arm"})}),
              start + "'hand' is not above 'arm'.");
    EXPECT_EQ(error({flag("sj", {"arm"}), flag("ee", {"arm"})}),
              start + "start and end are the same joint, 'arm'.");
    EXPECT_EQ(error({flag("sj", {"arm"}), flag("ee", {"hand"}), flag("sol", {"ikSplineSolver"})}),
              start + "the solver 'ikSplineSolver' is not evaluated here.");
    EXPECT_EQ(error({flag("sj", {"arm"}), flag("ee", {"hand"}), flag("sol", {"bogus"})}),
              start + "there is no solver 'bogus'.");
    EXPECT_EQ(
        error({flag("sj", {"arm"}), flag("ee", {"hand"}), flag("curve", {"c"})}),
        "ikHandle: The flag 'curve' belongs to the spline solver, which is not evaluated here.");
    EXPECT_EQ(error({flag("sj", {"arm"}), flag("ee", {"hand"}), flag("s", {"very"})}),
              "ikHandle: The flag 'sticky' takes off, sticky or superSticky, not 'very'.");
    scene.make("transform", "box", "arm");
    EXPECT_EQ(error({flag("sj", {"arm"}), flag("ee", {"box"})}),
              start + "the end 'box' is no joint and no effector.");
    scene.call("select", {}, {flag("cl")});
    EXPECT_EQ(error({}), start + "it needs a start joint and an end effector.");
    EXPECT_EQ(scene.text("ls", {}, {flag("type", {"ikHandle"})}), "");
    EXPECT_EQ(scene.text("ls", {}, {flag("type", {"ikEffector"})}), "");
}

TEST_F(IkCommand, QueriesAndEdits) {
    make({flag("n", {"reach"}), flag("p", {3}), flag("w", {0.5}), flag("pw", {0.25}),
          flag("s", {"sticky"})});
    const auto query = [&](const char* name) {
        return scene.call("ikHandle", {"reach"}, {flag("q"), flag(name)});
    };
    EXPECT_EQ(query("sj").string(), "arm");
    EXPECT_EQ(query("ee").string(), "effector1");
    EXPECT_EQ(query("sol").string(), "ikRPsolver");
    EXPECT_EQ(textsOf(query("jl")), (std::vector<std::string>{"arm", "elbow"}));
    EXPECT_EQ(query("p").number(), 3);
    EXPECT_EQ(query("w").number(), 0.5);
    EXPECT_EQ(query("pw").number(), 0.25);
    EXPECT_EQ(query("s").string(), "sticky");
    scene.call("ikHandle", {"reach"}, {flag("e"), flag("dh")});
    scene.set("elbow.r", 0, 0, -10);
    expectNear(scene.numbers("elbow.r"), {0, 0, -10});
    scene.call("ikHandle", {"reach"}, {flag("e"), flag("see")});
    scene.call("ikHandle", {"reach"}, {flag("e"), flag("eh"), flag("p", {1})});
    expectNear(scene.worldPosition("hand"),
               {2 + 2 * std::cos(50 * M_PI / 180), 2 * std::sin(50 * M_PI / 180), 0});
    scene.call("ikHandle", {"reach"},
               {flag("e"), flag("sj", {"elbow"}), flag("sol", {"ikSCsolver"})});
    EXPECT_EQ(query("sj").string(), "elbow");
    EXPECT_EQ(query("sol").string(), "ikSCsolver");
    EXPECT_TRUE(connected("ikSCsolver.message", "ikSystem.ikSolver[1]"));
    EXPECT_EQ(scene.error("ikHandle", {"arm"}, {flag("q"), flag("sj")}),
              "ikHandle: 'arm' is no IK handle.");
}

TEST_F(IkCommand, DeletingEndsOfTheChainTakesTheHandleAlong) {
    make({flag("n", {"reach"})});
    scene.call("delete", {"reach"});
    EXPECT_FALSE(scene.exists("effector1"));
    EXPECT_TRUE(scene.exists("ikRPsolver"));
    make({flag("n", {"again"})});
    scene.call("delete", {"hand"});
    make({flag("ee", {"elbow"}), flag("n", {"short"})});
    scene.call("delete", {"arm"});
    EXPECT_FALSE(scene.exists("short"));
}

TEST_F(IkCommand, CopiesAndFilesHoldTheSolvedPose) {
    make({flag("n", {"reach"})});
    scene.set("reach.t", 2, 0,
              0);  // an equilateral triangle: the elbow turns from 60 to 120 degrees
    scene.call("duplicate", {"arm"}, {flag("n", {"copy"})});
    expectNear(scene.numbers("copy|elbow.r"), {0, 0, 60});
    scene.set("reach.t", 0, 2, 0);
    scene.set("reach.t", 2, 0, 0);
    const std::string text = sceneToText(scene.scene());
    Log log;
    Scene read(scene.scene().types(), log);
    createDefaultNodes(read);
    OpenReport report;
    ASSERT_TRUE(readSceneText(read, text, "again.ma", report));
    EXPECT_EQ(sceneToText(read), text);
    const NodeHandle elbow = read.names().lookUp("|arm|elbow");
    EXPECT_NEAR(read.storedNumber(read.findPlug(elbow, "rotateZ")), M_PI / 3, 1e-12);
}

TEST_F(IkCommand, TheBlendedPoseSurvivesAFile) {
    make({flag("n", {"reach"})});
    scene.set("reach.t", 2, 0, 0);
    scene.set("elbow.r", 0, 0, 20);
    scene.set("reach.ikBlend", 0.5);
    expectNear(scene.numbers("elbow.r"), {0, 0, 40});
    const std::string text = sceneToText(scene.scene());
    Log log;
    Scene read(scene.scene().types(), log);
    createDefaultNodes(read);
    OpenReport report;
    ASSERT_TRUE(readSceneText(read, text, "again.ma", report));
    EXPECT_NEAR(read.number(read.findPlug(read.names().lookUp("elbow"), "rotateZ")),
                40 * M_PI / 180, 1e-9);
    read.setNumber(read.findPlug(read.names().lookUp("reach"), "ikBlend"), 0.0);
    EXPECT_NEAR(read.number(read.findPlug(read.names().lookUp("elbow"), "rotateZ")),
                20 * M_PI / 180, 1e-9);
}

// --- with constraints ---------------------------------------------------------------------------

// How far the elbow stands off the side on which the pole control stands, seen along the line from
// arm to hand; degrees.
double sideError(TestScene& scene, const std::string& pole) {
    const auto at = [&](const std::string& name) {
        const std::vector<double> p = scene.worldPosition(name);
        return V3d(p[0], p[1], p[2]);
    };
    const V3d root = at("arm"), line = (at("hand") - root).normalized();
    const auto off = [&](const V3d& p) { return (p - root) - line * (p - root).dot(line); };
    const V3d a = off(at("elbow")), b = off(at(pole));
    return std::atan2(a.cross(b).length(), a.dot(b)) * 180 / M_PI;
}

TEST_F(IkCommand, ThePoleConstraintTurnsTheElbowWhereverTheHandleHangs) {
    make({flag("n", {"reach"})});
    scene.make("transform", "pole");
    scene.make("transform", "control");
    scene.set("control.r", 20, 50, -70);
    scene.set("control.t", 1, -2, 0.5);
    scene.call("parent", {"reach", "control"});
    scene.call("poleVectorConstraint", {"pole", "reach"});
    scene.set("reach.t", 0.5, 1, 0.5);
    const double places[4][3] = {{0, 5, 0}, {0, -3, 2}, {-4, 1, 1}, {0.5, 0, -6}};
    for (const auto& p : places) {
        scene.set("pole.t", p[0], p[1], p[2]);
        EXPECT_LE(sideError(scene, "pole"), 1e-6);
        expectNear(scene.worldPosition("hand"), scene.worldPosition("reach"));
    }
    scene.make("transform", "room");
    scene.call("parent", {"arm", "room"});
    scene.set("room.r", 0, 30, 10);
    EXPECT_LE(sideError(scene, "pole"), 1e-6);
    scene.set("arm.t", 0.5, 0.2, 0);
    EXPECT_LE(sideError(scene, "pole"), 1e-6);
    expectNear(scene.worldPosition("hand"), scene.worldPosition("reach"));
}

TEST_F(IkCommand, TheHandsOwnRotationBelongsToItsConstraint) {
    make({flag("n", {"reach"})});
    scene.make("transform", "control");
    scene.set("control.r", 10, 20, 30);
    scene.call("orientConstraint", {"control", "hand"});
    scene.set("reach.t", 1, 1, 1);
    std::vector<double> hand = scene.worldMatrix("hand"), control = scene.worldMatrix("control");
    hand.resize(11);
    control.resize(11);
    expectNear(hand, control);
    expectNear(scene.worldPosition("hand"), {1, 1, 1});
}

// Three chains and a switch: the middle one follows FK and IK with the weights 1-w and w.
TEST_F(IkCommand, AChainBetweenFkAndIk) {
    make({flag("n", {"reach"})});
    scene.call("duplicate", {"arm"}, {flag("n", {"armFK"})});
    scene.call("duplicate", {"arm"}, {flag("n", {"armMAIN"})});
    scene.set("reach.t", 0, 2, 0);
    scene.make("transform", "switch");
    scene.call("addAttr", {"switch"},
               {flag("ln", {"FKIK"}), flag("at", {"float"}), flag("min", {0}), flag("max", {1})});
    const std::string made =
        scene.text("parentConstraint", {"armFK", "arm", "armMAIN"}, {flag("n", {"blend"})});
    ASSERT_EQ(made, "blend");
    scene.call("shadingNode", {"reverse"}, {flag("asUtility")});
    scene.call("connectAttr", {"switch.FKIK", "reverse1.inputX"}, {flag("force")});
    scene.call("connectAttr", {"reverse1.outputX", "blend.armFKW0"}, {flag("force")});
    scene.call("connectAttr", {"switch.FKIK", "blend.armW1"}, {flag("force")});
    expectNear(scene.worldMatrix("armMAIN"), scene.worldMatrix("armFK"));
    scene.set("switch.FKIK", 1);
    expectNear(scene.worldMatrix("armMAIN"), scene.worldMatrix("arm"));
    scene.set("reach.t", 1, 2, 1);
    expectNear(scene.worldMatrix("armMAIN"), scene.worldMatrix("arm"));
    scene.set("switch.FKIK", 0.25);
    EXPECT_EQ(scene.number("blend.armFKW0"), 0.75);
    EXPECT_EQ(scene.number("blend.armW1"), 0.25);
}

// --- shadingNode --------------------------------------------------------------------------------

TEST_F(IkCommand, ShadingNodesStandInTheirList) {
    EXPECT_EQ(scene.text("shadingNode", {"reverse"}, {flag("asUtility")}), "reverse1");
    EXPECT_EQ(scene.text("shadingNode", {"reverse"}, {flag("au")}), "reverse2");
    EXPECT_TRUE(connected("reverse1.message", "defaultRenderUtilityList1.utilities[0]"));
    EXPECT_TRUE(connected("reverse2.message", "defaultRenderUtilityList1.utilities[1]"));
    EXPECT_EQ(scene.text("ls", {}, {flag("sl")}), "reverse2");
    EXPECT_EQ(
        scene.text("shadingNode", {"lambert"}, {flag("asShader"), flag("n", {"skin"}), flag("ss")}),
        "skin");
    EXPECT_TRUE(connected("skin.message", "defaultShaderList1.shaders[0]"));
    EXPECT_EQ(scene.error("shadingNode", {"bogus"}, {flag("au")}),
              "shadingNode: Unknown object type: bogus");
    EXPECT_EQ(scene.error("shadingNode", {"reverse"}),
              "shadingNode: Needs one of the flags asLight, asPostProcess, asRendering, asShader, "
              "asTexture, asUtility.");
    EXPECT_FALSE(scene.exists("reverse3"));
    scene.set("reverse1.inputX", 0.25);
    EXPECT_EQ(scene.number("reverse1.outputX"), 0.75);
}

}  // namespace
