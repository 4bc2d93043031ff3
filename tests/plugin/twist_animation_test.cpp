// "Test Twist" on the arm of our own scenes: keys, playback, and what is left behind.

#include <fmt/format.h>

#include "plugin/fixtures/rigs.h"
#include "plugin/fixtures/twist_scene.h"

namespace torvel::test {

class TwistAnimationTest : public TwistScene {
  public:
    void openArm() {
        python("cmds.file('" TORVEL_SCENES_DIR "/arm.ma', open=True, force=True)");
        forget();
    }

    void test() {
        QWidget* window = openTwist();
        forget();
        press(window, "btn_animationTest");
    }

    /// The same, with a text run in place of the playback; the playback follows it.
    void testWith(const std::string& insteadOfPlay) {
        python(
            "real_play = cmds.play\n"
            "def spy(**flags):\n"
            "    played.append(sorted(flags.items()))\n"
            "    look()\n"
            "    return real_play(**flags)\n"
            "played = []\n"
            "cmds.play = spy\n");
        python("def look():\n" + insteadOfPlay);
        test();
        python("cmds.play = real_play");
    }

    double number(const std::string& expression) { return python(expression).number(); }

    std::string keyCount(const std::string& joint) {
        return pythonText(
            fmt::format("str(cmds.keyframe('{}', query=True, keyframeCount=True))", joint));
    }
};

TEST_F(TwistAnimationTest, WithoutTwistJointsOnlyAWarning) {
    openArm();
    test();
    ASSERT_EQ(scripts().size(), 1u);
    EXPECT_EQ(scripts()[0].find("(failed)"), std::string::npos);
    EXPECT_TRUE(printed("No hay huesos twist creados"));
    EXPECT_EQ(keyCount("hand"), "0");
}

TEST_F(TwistAnimationTest, TheWholeScript) {
    std::string keys;
    int start = 0;
    for (const char* axis : {"X", "Y", "Z"}) {
        int time = start;
        for (int value : {0, 40, -40, 0}) {
            keys +=
                fmt::format("      cmds.setKeyframe(iBrother, attribute='rotate{}', v={}, t={})\n",
                            axis, value, time);
            time += 15;
        }
        start += 45;
    }
    openArm();
    twist({"hand"});
    test();
    EXPECT_EQ(transcript(), Lines{"python plain: all_twist = cmds.ls('*_twist')\n"
                                  "if not all_twist:\n"
                                  "   cmds.warning('No hay huesos twist creados')\n"
                                  "else:\n"
                                  "   for i in all_twist:\n"
                                  "      iPadre = cmds.listRelatives(i,p=True)\n"
                                  "      iBrother = cmds.listRelatives(iPadre, c=True)[0]\n"
                                  "      cmds.playbackOptions(minTime=0, maxTime=135)\n"
                                  "      cmds.playbackOptions(e=True, maxPlaybackSpeed=1.0)\n"
                                  "      cmds.currentTime(0)\n" +
                                  keys +
                                  "   cmds.play(forward=True, wait=True)\n"
                                  "   for i in all_twist:\n"
                                  "      iPadre = cmds.listRelatives(i,p=True)\n"
                                  "      iBrother = cmds.listRelatives(iPadre, c=True)\n"
                                  "      cmds.cutKey(iBrother, attribute='rotate', clear=True)\n"
                                  "   cmds.currentTime(0)\n"});
}

TEST_F(TwistAnimationTest, TwelveKeysOnTheFirstChildBesideIt) {
    openArm();
    twist({"hand"});
    testWith(
        "    global keys\n"
        "    keys = {a: (cmds.keyframe('hand', at=a, q=True, timeChange=True),\n"
        "                cmds.keyframe('hand', at=a, q=True, valueChange=True))\n"
        "            for a in ('rotateX', 'rotateY', 'rotateZ')}\n"
        "    keys['all'] = cmds.keyframe('hand', q=True, keyframeCount=True)\n");
    EXPECT_EQ(languageErrors(), 0);
    const std::tuple<const char*, const char*> rows[] = {
        {"rotateX", "[0.0, 15.0, 30.0, 45.0]"},
        {"rotateY", "[45.0, 60.0, 75.0, 90.0]"},
        {"rotateZ", "[90.0, 105.0, 120.0, 135.0]"},
    };
    for (const auto& [attribute, times] : rows) {
        EXPECT_EQ(pythonText(fmt::format("str(list(keys['{}'][0]))", attribute)), times);
        EXPECT_EQ(
            pythonText(fmt::format("str([round(v, 9) + 0.0 for v in keys['{}'][1]])", attribute)),
            "[0.0, 40.0, -40.0, 0.0]");
    }
    EXPECT_EQ(number("keys['all']"), 12);
    EXPECT_EQ(pythonText("str(played)"), "[[('forward', True), ('wait', True)]]");
}

TEST_F(TwistAnimationTest, TheMeshMovesAndComesBack) {
    openArm();
    twist({"hand"});
    const Points rest = pointsOf(*this, "armShape");
    testWith(
        "    global turns, shapes\n"
        "    turns, shapes = [], []\n"
        "    for t in (0, 15, 30, 45, 60, 75, 105, 120, 135):\n"
        "        cmds.currentTime(t)\n"
        "        turns.append([round(cmds.getAttr(n + '.rotate' + a), 6) + 0.0\n"
        "                      for n in ('hand', 'hand_twist') for a in 'XYZ'])\n"
        "        shapes.append(cmds.xform('arm.vtx[*]', q=True, ws=True, t=True))\n"
        "    cmds.currentTime(0)\n");
    EXPECT_EQ(languageErrors(), 0);
    const char* const turns[] = {
        "[0.0, 0.0, 0.0, 0.0, 0.0, 0.0]",      // 0
        "[40.0, 0.0, 0.0, 40.0, 0.0, 0.0]",    // 15
        "[-40.0, 0.0, 0.0, -40.0, 0.0, 0.0]",  // 30
        "[0.0, 0.0, 0.0, 0.0, 0.0, 0.0]",      // 45
        "[0.0, 40.0, 0.0, 0.0, 0.0, 0.0]",     // 60: the twist follows about one axis alone
        "[0.0, -40.0, 0.0, 0.0, 0.0, 0.0]",    // 75
        "[0.0, 0.0, 40.0, 0.0, 0.0, 0.0]",     // 105
        "[0.0, 0.0, -40.0, 0.0, 0.0, 0.0]",    // 120
        "[0.0, 0.0, 0.0, 0.0, 0.0, 0.0]",      // 135
    };
    for (std::size_t i = 0; i < std::size(turns); ++i)
        EXPECT_EQ(pythonText(fmt::format("str(turns[{}])", i)), turns[i]) << i;
    const char* const farthest = "max(abs(p - q) for p, q in zip(shapes[{}], shapes[0]))";
    for (int moved : {1, 2, 4, 5, 6, 7})
        EXPECT_GT(number(fmt::format(farthest, moved)), 0.05) << moved;
    for (int still : {3, 8})
        EXPECT_LT(number(fmt::format(farthest, still)), 1e-5) << still;
    EXPECT_GT(number("max(abs(p - q) for p, q in zip(shapes[1], shapes[2]))"), 0.05);
    expectPoints(pointsOf(*this, "armShape"), rest, 1e-6);
}

TEST_F(TwistAnimationTest, WhatIsLeftBehind) {
    openArm();
    twist({"hand"});
    python("cmds.playbackOptions(minTime=7, maxTime=11); cmds.currentTime(9)");
    test();
    ASSERT_EQ(scripts().size(), 1u);
    EXPECT_EQ(scripts()[0].find("(failed)"), std::string::npos);
    EXPECT_EQ(number("cmds.currentTime(query=True)"), 0);
    EXPECT_EQ(keyCount("hand"), "0");
    EXPECT_EQ(keyCount("hand_twist"), "0");
    for (const char* channel : {"X", "Y", "Z"})
        EXPECT_EQ(feeding(std::string("hand.rotate") + channel), "");
    expectOneChannel("hand", "hand_twist", "X");
    EXPECT_EQ(number("cmds.playbackOptions(query=True, minTime=True)"), 0) << "not brought back";
    EXPECT_EQ(number("cmds.playbackOptions(query=True, maxTime=True)"), 135);
    EXPECT_EQ(number("cmds.playbackOptions(query=True, maxPlaybackSpeed=True)"), 1);
}

TEST_F(TwistAnimationTest, OtherKeysOfTheSiblingsGoToo) {
    openArm();
    python(
        "cmds.select('wrist'); cmds.joint(name='thumb')\n"
        "for n, a in (('hand', 'rotateY'), ('thumb', 'rotateZ'), ('thumb', 'translateX'),\n"
        "             ('elbow', 'rotateX')):\n"
        "    cmds.setKeyframe(n, attribute=a, v=1, t=3)\n"
        "    cmds.setKeyframe(n, attribute=a, v=2, t=8)\n");
    twist({"hand"});
    test();
    EXPECT_EQ(languageErrors(), 0);
    EXPECT_EQ(keyCount("hand"), "0");
    EXPECT_EQ(keyCount("thumb"), "2") << "translateX is kept";
    EXPECT_EQ(keyCount("elbow"), "2") << "no sibling";
}

// The first child of the parent is not the driving joint here.
TEST_F(TwistAnimationTest, TheFirstChildIsAnimatedWhoeverItIs) {
    openArm();
    python("cmds.select('wrist'); cmds.joint(name='thumb')");
    twist({"thumb"});
    testWith(
        "    global counts\n"
        "    counts = [cmds.keyframe(n, q=True, keyframeCount=True) for n in ('hand', 'thumb')]\n");
    EXPECT_EQ(pythonText("str(counts)"), "[12, 0]");
}

TEST_F(TwistAnimationTest, EveryTwistJointTakesPart) {
    openArm();
    twist({"hand"});
    makeChain(*this, {"hip", "knee", "ankle"});
    twist({"ankle"});
    testWith(
        "    global counts\n"
        "    counts = [cmds.keyframe(n, q=True, keyframeCount=True) for n in ('hand', 'ankle')]\n");
    EXPECT_EQ(pythonText("str(counts)"), "[12, 12]");
    EXPECT_EQ(keyCount("ankle"), "0");
    EXPECT_LT(rotationOf(*this, "ankle").length(), 1e-9) << "a turned joint ends without its turn";
}

}  // namespace torvel::test
