// Where the pole control of a three-joint chain is put.

#include "plugin/fixtures/system_scene.h"
#include "toolkit/pole_vector.h"

namespace torvel::test {

class PoleVectorTest : public SystemScene {
  public:
    void chain(const V3d& start, const V3d& middle, const V3d& end) {
        makeJoints({{"a", start}, {"b", middle}, {"c", end}});
        python("cmds.spaceLocator(name='pole')");
        forget();
    }
    void place() { computePoleVectorPosition("a", "b", "c", "pole"); }
};

TEST_F(PoleVectorTest, ThirtyUnitsFromTheMiddleOnTheSideOfTheBend) {
    chain({0, 0, 0}, {5, 0, -1}, {10, 0, 0});
    place();
    expectAt("pole", {5, 0, -31});
    EXPECT_EQ(record(), Lines());
}

TEST_F(PoleVectorTest, ALongerChainHasItsPoleNoFartherAway) {
    chain({0, 0, 0}, {50, 0, -10}, {100, 0, 0});
    place();
    expectAt("pole", {50, 0, -40});
}

TEST_F(PoleVectorTest, AChainAnywhereWithBonesOfTwoLengths) {
    // From (1, 2, 3) along y, bent by 4 toward (3, 0, 4) / 5 after 2 of its 12 units.
    chain({1, 2, 3}, {3.4, 4, 6.2}, {1, 14, 3});
    place();
    expectAt("pole", {3.4 + 18, 4, 6.2 + 24});
}

TEST_F(PoleVectorTest, TheMiddleMayStandBehindTheStart) {
    chain({0, 0, 0}, {-3, 2, 0}, {10, 0, 0});
    place();
    expectAt("pole", {-3, 32, 0});
}

TEST_F(PoleVectorTest, AStraightChainPutsTheControlOnTheMiddle) {
    chain({0, 0, 0}, {5, 0, 0}, {10, 0, 0});
    place();
    expectAt("pole", {5, 0, 0});
    EXPECT_EQ(record(), Lines());
}

TEST_F(PoleVectorTest, TheControlKeepsItsRotationAndItsGroup) {
    chain({0, 0, 0}, {5, 0, -1}, {10, 0, 0});
    python("cmds.group('pole', name='above')");
    set("above.translate", {7, -2, 4});
    set("above.rotate", {20, 50, -35});
    set("pole.rotate", {11, 12, 13});
    const M44d group = worldOf("above");
    place();
    expectAt("pole", {5, 0, -31}, 1e-8);
    EXPECT_EQ(worldOf("above"), group);
    EXPECT_NEAR(numberOf("pole.rotateX"), 11, 1e-9);
    EXPECT_NEAR(numberOf("pole.rotateY"), 12, 1e-9);
    EXPECT_NEAR(numberOf("pole.rotateZ"), 13, 1e-9);
}

TEST_F(PoleVectorTest, TheTranslationsCountAndNotThePivots) {
    chain({0, 0, 0}, {5, 0, -1}, {10, 0, 0});
    python(
        "for name in ('s', 'm', 'e'):\n"
        "    cmds.createNode('transform', name=name)\n"
        "    cmds.setAttr(name + '.rotatePivot', 1, 2, 3)\n");
    set("m.translate", {5, 0, -1});
    set("e.translate", {10, 0, 0});
    computePoleVectorPosition("s", "m", "e", "pole");
    expectAt("pole", {5, 0, -31});
}

TEST_F(PoleVectorTest, UnknownNamesAreHarmlessAndNotReported) {
    chain({0, 0, 0}, {5, 0, -1}, {10, 0, 0});
    computePoleVectorPosition("a", "b", "c", "nobody");
    computePoleVectorPosition("", "", "", "");
    computePoleVectorPosition("nobody", "b", "c", "pole");
    EXPECT_EQ(record(), Lines());
    place();
    expectAt("pole", {5, 0, -31});
}

}  // namespace torvel::test
