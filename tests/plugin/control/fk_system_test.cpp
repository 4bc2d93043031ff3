// What turning the controls of the FK system does to the bound arm and its skin.

#include <algorithm>

#include "plugin/fixtures/system_scene.h"

namespace torvel::test {

class FKArmTest : public SystemScene, public ::testing::WithParamInterface<const char*> {
  public:
    void SetUp() override {
        openArm();
        click(GetParam());
        clickOn(kJoints, "btn_FKsystem");
        rest = skinPoints();
    }

    /// Turning a joint turns all below it as one, so each vertex moves by its share on them.
    void expectTurned(std::size_t first, const V3d& pivot, const V3d& axis, double degrees) {
        const Lines below(kSkinJoints.begin() + first, kSkinJoints.end());
        const std::vector<double> shares = skinShares(below);
        const std::vector<V3d> now = skinPoints();
        double moved = 0.0, worst = 0.0;
        for (std::size_t i = 0; i < now.size(); ++i) {
            const V3d path = turnedAbout(rest[i], pivot, axis, degrees) - rest[i];
            worst = std::max(worst, (rest[i] + path * shares[i] - now[i]).length());
            moved = std::max(moved, (now[i] - rest[i]).length());
        }
        EXPECT_LE(worst, 1e-4);
        EXPECT_GT(moved, 0.5);
    }

    const Lines kJoints{"clavicle", "shoulder", "elbow", "wrist"};
    std::vector<V3d> rest;
};

TEST_P(FKArmTest, EachControlTurnsItsJointAndTheSkin) {
    for (std::size_t i = 0; i < kJoints.size(); ++i) {
        SCOPED_TRACE(kJoints[i]);
        const std::string control = kJoints[i] + "_FK_ctrl";
        const M44d before = worldOf(kJoints[i]);
        const V3d handBefore = at("hand"), pivot = placeIn(before);
        const V3d axis(before[2][0], before[2][1], before[2][2]);
        set(control + ".rotate", {0, 0, 40});
        expectSameFrame(worldOf(kJoints[i]), worldOf(control), 1e-8);
        expectAt(kJoints[i], pivot, 1e-8);
        expectAt("hand", turnedAbout(handBefore, pivot, axis, 40), 1e-8);
        expectTurned(i, pivot, axis, 40);
        set(control + ".rotate", {0, 0, 0});
    }
    expectSamePoints(skinPoints(), rest, 1e-5);
}

TEST_P(FKArmTest, MovingTheRootControlMovesEverything) {
    set("clavicle_FK_ctrl.translate", {0, 0, 3});
    std::vector<V3d> moved = rest;
    for (V3d& point : moved)
        point += V3d(0, 0, 3);
    expectSamePoints(skinPoints(), moved, 1e-4);
}

INSTANTIATE_TEST_SUITE_P(Modes, FKArmTest, ::testing::Values("rad_offset", "rad_offsetAuto"),
                         [](const auto& info) { return std::string(info.param).substr(4); });

}  // namespace torvel::test
