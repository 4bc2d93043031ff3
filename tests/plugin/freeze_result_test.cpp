// What Freeze Rotations leaves in the scene: the same rig, but for rotations that moved into joint
// orientations.

#include "plugin/fixtures/rig_state.h"
#include "plugin/fixtures/rigs.h"

namespace torvel::test {

struct FreezeChoice {
    const char* name;
    Lines selection;
    bool allHierarchy;
    Lines frozen;     ///< joints without rotation afterwards
    Lines untouched;  ///< joints that keep theirs
};

void PrintTo(const FreezeChoice& choice, std::ostream* out) {
    *out << choice.name;
}

const Lines kLegJoints{"|hip", "|hip|knee", "|hip|knee|ankle"};

const FreezeChoice kChoices[] = {
    {"all_from_top", {"|hip"}, true, kLegJoints, {}},
    {"all_from_end", {"|hip|knee|ankle"}, true, kLegJoints, {}},
    {"end", {"|hip|knee|ankle"}, false, {"|hip|knee|ankle"}, {"|hip", "|hip|knee"}},
    {"middle_takes_what_is_below",
     {"|hip|knee"},
     false,
     {"|hip|knee", "|hip|knee|ankle"},
     {"|hip"}},
    {"every_joint",
     {"|hip|knee|ankle", "|hip|knee", "|hip"},
     false,
     {"|hip|knee", "|hip|knee|ankle"},
     {"|hip"}},
    {"top_without_namesake", {"|hip"}, false, {}, kLegJoints},
};

class FreezeResultTest : public PluginScene, public ::testing::WithParamInterface<FreezeChoice> {
  public:
    void press() { freeze(GetParam().selection, GetParam().allHierarchy); }
};

TEST_P(FreezeResultTest, TheRigIsTheSame) {
    makeLeg(*this);
    const RigState before = stateOf(*this);
    const V3d hipBefore = rotationOf(*this, "|hip");
    press();
    expectSameRig(stateOf(*this), before);
    expectFrozen(*this, GetParam().frozen);
    for (const std::string& path : GetParam().untouched)
        EXPECT_NE(rotationOf(*this, path), V3d(0, 0, 0)) << path;
    if (!GetParam().untouched.empty()) {
        EXPECT_TRUE(rotationOf(*this, "|hip").equalWithAbsError(hipBefore, 1e-12));
    }
    EXPECT_EQ(languageErrors(), 0);
}

TEST_P(FreezeResultTest, ASecondClickChangesNothing) {
    makeLeg(*this);
    press();
    const RigState once = stateOf(*this);
    press();
    expectSameRig(stateOf(*this), once);
    EXPECT_EQ(languageErrors(), 0);
}

TEST_P(FreezeResultTest, TheSkinFollowsAsBefore) {
    makeLeg(*this);
    const Points rest = pointsOf(*this, "|leg|legShape");
    const V3d rotation = rotationOf(*this, "|hip|knee");
    turnInWorld(*this, "|hip|knee", 40.0);
    const Points posed = pointsOf(*this, "|leg|legShape");
    ASSERT_GT((posed.front() - rest.front()).length() + (posed.back() - rest.back()).length(), 0.1)
        << "the pose has to bend the mesh";
    python("cmds.setAttr('|hip|knee.rotate', " + std::to_string(rotation.x) + ", " +
           std::to_string(rotation.y) + ", " + std::to_string(rotation.z) + ")");
    expectPoints(pointsOf(*this, "|leg|legShape"), rest, 1e-5);

    press();
    turnInWorld(*this, "|hip|knee", 40.0);
    expectPoints(pointsOf(*this, "|leg|legShape"), posed, 1e-4);
}

TEST_P(FreezeResultTest, AwayFromBindPoseTheMeshTakesItsRestShape) {
    makeLeg(*this);
    const Points rest = pointsOf(*this, "|leg|legShape");
    turnInWorld(*this, "|hip|knee", 40.0);
    const RigState posed = stateOf(*this);
    press();
    expectSameSkeletons(stateOf(*this), posed);
    expectPoints(pointsOf(*this, "|leg|legShape"), rest, 1e-5);
}

INSTANTIATE_TEST_SUITE_P(Choices, FreezeResultTest, ::testing::ValuesIn(kChoices),
                         [](const ::testing::TestParamInfo<FreezeChoice>& info) {
                             return std::string(info.param.name);
                         });

}  // namespace torvel::test
