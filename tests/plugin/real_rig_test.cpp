// Freeze Rotations on rigs that others made. TORVEL_RIGS names the folder of the scenes; without
// it, or without the file, the case is skipped.

#include "plugin/fixtures/real_rig.h"

namespace torvel::test {

class RealRigTest : public RealRig, public ::testing::WithParamInterface<const char*> {
  public:
    void freezeAndCompare(const std::string& path, const Lines& selection, bool all) {
        open(path);
        const RigState before = stateOf(*this);
        const std::map<std::string, Points> rest = restShapes();
        freeze(selection, all);
        ASSERT_EQ(messages().back(),
                  "info: Freeze Rotations completado. El skinning se ha conservado.");
        const RigState after = stateOf(*this);
        expectSameSkeletons(after, before);
        for (const auto& [mesh, points] : after.meshes) {
            SCOPED_TRACE(mesh);
            const Points& expected = wasBound(mesh) ? rest.at(mesh) : before.meshes.at(mesh);
            expectPoints(points, expected, 1e-5);
        }
    }

    /// Turns `joint` before and after the click; the skins have to follow alike. Gives
    /// whether any mesh moved. Only for scenes in bind pose, since the click takes any other pose
    /// for the new one.
    bool poseAndCompare(const std::string& path, const std::string& joint) {
        open(path);
        if (!isAtRest() || isDriven(joint))
            return false;
        const RigState rest = stateOf(*this);
        turnInWorld(*this, joint, 25.0);
        const RigState posed = stateOf(*this);
        open(path);
        freeze({joint}, true);
        turnInWorld(*this, joint, 25.0);
        expectSamePoints(stateOf(*this), posed, 1e-4);
        return posed.meshes != rest.meshes;
    }

    /// Whether the last click bound this mesh again.
    bool wasBound(const std::string& mesh) {
        const Lines said = messages();
        return std::find(said.begin(), said.end(), "info: Binding skin to: " + mesh) != said.end();
    }
};

TEST_P(RealRigTest, EverySelectionKeepsTheSkin) {
    const std::string path = rigPath(GetParam());
    if (path.empty())
        GTEST_SKIP() << GetParam() << " is not at hand (TORVEL_RIGS)";
    open(path);
    const Lines joints = influences();
    ASSERT_FALSE(joints.empty());
    const Lines selections[] = {{joints.front()}, {joints.back()}, joints};
    for (const Lines& selection : selections) {
        for (bool all : {false, true}) {
            SCOPED_TRACE(selection.front() + (all ? " with" : " without") + " the box, " +
                         std::to_string(selection.size()) + " selected");
            freezeAndCompare(path, selection, all);
        }
    }
    bool moved = false;
    for (const std::string& joint : joints) {
        SCOPED_TRACE(joint);
        moved |= poseAndCompare(path, joint);
    }
    EXPECT_TRUE(moved) << "no pose bent a mesh";
}

// The only scene of them whose weights no one touched since the bind.
TEST_F(RealRig, ABindGivesTheStoredWeights) {
    const std::string path = rigPath("UsdExportSkeletonAtSceneRoot.ma");
    if (path.empty())
        GTEST_SKIP() << "UsdExportSkeletonAtSceneRoot.ma is not at hand (TORVEL_RIGS)";
    open(path);
    const std::vector<Weight> stored = stateOf(*this).weights.at("skinCluster1");
    const Lines joints = influences();
    ASSERT_EQ(joints.size(), 3u);
    python("cmds.skinCluster('skinCluster1', edit=True, unbind=True)");
    python("cmds.skinCluster('" + joints[0] + "', '" + joints[1] + "', '" + joints[2] +
           "', 'pCube1', toSelectedBones=True, maximumInfluences=5, name='again')");
    const std::vector<Weight> made = stateOf(*this).weights.at("again");
    ASSERT_EQ(made.size(), stored.size());
    for (std::size_t i = 0; i < made.size(); ++i) {
        EXPECT_EQ(std::get<0>(made[i]), std::get<0>(stored[i]));
        EXPECT_EQ(std::get<1>(made[i]), std::get<1>(stored[i]));
        EXPECT_NEAR(std::get<2>(made[i]), std::get<2>(stored[i]), 1e-12);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, RealRigTest,
                         ::testing::Values("UsdExportSkeletonAtSceneRoot.ma", "plane_skinned.ma",
                                           "bindTransformsExport.ma", "rig_rlessard_example01.ma"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                             std::string name = info.param;
                             name.resize(name.rfind('.'));
                             return name;
                         });

}  // namespace torvel::test
