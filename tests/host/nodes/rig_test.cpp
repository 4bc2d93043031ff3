// Numbers stored in rigs that others made. TORVEL_RIGS names their folder; without it nothing is
// compared.
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "files/ma/reader.h"
#include "node_scene.h"
#include "nodes/deform/dag_pose.h"
#include "nodes/core/default_nodes.h"

namespace torvel::test {

class RigTest : public NodeScene {
  protected:
    /// False when the file is not at hand.
    bool open(const std::string& name) {
        const char* folder = std::getenv("TORVEL_RIGS");
        std::ifstream file(std::string(folder ? folder : "") + "/" + name, std::ios::binary);
        if (!folder || !file)
            return false;
        std::ostringstream text;
        text << file.rdbuf();
        createDefaultNodes(scene);
        OpenReport report;
        const Status status = readSceneText(scene, text.str(), name, report);
        EXPECT_TRUE(status) << status.text();
        return true;
    }
    std::vector<NodeHandle> allOf(const char* type) const {
        std::vector<NodeHandle> out;
        for (NodeHandle node : scene.allNodes())
            if (scene.isType(node, type))
                out.push_back(node);
        return out;
    }
    bool hasBindPose(NodeHandle joint) const {
        return scene.storedData(Plug(joint, jointAttrs().bindPose)) != nullptr;
    }
    M44d bindPose(NodeHandle joint) const {
        return scene.matrix(Plug(joint, jointAttrs().bindPose));
    }
    int jointsAtTheirBindPose() const {
        int count = 0;
        for (NodeHandle joint : allOf("joint"))
            if (hasBindPose(joint) && nearlyEqual(worldMatrix(scene, joint), bindPose(joint), 1e-6))
                ++count;
        return count;
    }
};

struct PosedRig {
    const char* file;
    int joints;
};
void PrintTo(const PosedRig& rig, std::ostream* out) {
    *out << rig.file;
}

class PosedRigs : public RigTest, public ::testing::WithParamInterface<PosedRig> {};

TEST_P(PosedRigs, JointsStandWhereTheirBindPoseSays) {
    if (!open(GetParam().file))
        GTEST_SKIP() << GetParam().file << " is not at hand (TORVEL_RIGS)";
    EXPECT_EQ(jointsAtTheirBindPose(), GetParam().joints);
}

INSTANTIATE_TEST_SUITE_P(Stored, PosedRigs,
                         ::testing::Values(PosedRig{"skeleton.ma", 89},
                                           PosedRig{"plane_skinned.ma", 6},
                                           PosedRig{"UsdExportSkeletonAtSceneRoot.ma", 3}));

class SkinnedRigs : public RigTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(SkinnedRigs, BindMatricesAreInversesOfBindPoses) {
    if (!open(GetParam()))
        GTEST_SKIP() << GetParam() << " is not at hand (TORVEL_RIGS)";
    int compared = 0;
    for (NodeHandle skin : allOf("skinCluster")) {
        const Plug matrices = plug(skin, "matrix"), inverses = plug(skin, "bindPreMatrix");
        for (const std::int32_t i : scene.elementIndices(matrices)) {
            const NodeHandle joint = scene.source(scene.element(matrices, i)).node;
            if (!isJoint(scene, joint) || !hasBindPose(joint))
                continue;
            ++compared;
            const M44d inverse = scene.matrix(scene.element(inverses, i));
            EXPECT_TRUE(nearlyEqual(inverseOf(inverse), bindPose(joint), 1e-5))
                << scene.node(joint)->name;
        }
    }
    EXPECT_GT(compared, 0);
}

INSTANTIATE_TEST_SUITE_P(Stored, SkinnedRigs,
                         ::testing::Values("rig01.ma", "plane_skinned.ma",
                                           "bindTransformsExport.ma", "rig_rlessard_example01.ma",
                                           "UsdExportSkeletonAtSceneRoot.ma"));

struct StoredPoses {
    const char* file;
    int members;  ///< of all poses, with channels held
    int moved;    ///< of those, how many stand elsewhere today
};
void PrintTo(const StoredPoses& poses, std::ostream* out) {
    *out << poses.file;
}

class PosesOfRigs : public RigTest, public ::testing::WithParamInterface<StoredPoses> {
  protected:
    int members = 0, moved = 0, worlds = 0;

    void compareMember(NodeHandle pose, std::int32_t at) {
        const NodeHandle node = scene.source(scene.element(plug(pose, "members"), at)).node;
        const auto held = scene.dataAs<XformData>(scene.element(plug(pose, "xformMatrix"), at));
        const auto now = isTransform(scene, node) ? captureXform(scene, node) : nullptr;
        if (!held || !now)
            return;
        ++members;
        const bool there = held->translate.equalWithAbsError(now->translate, 1e-6);
        moved += there ? 0 : 1;
        // A joint's held world matrix is its bind pose, by connection.
        const Plug world = scene.element(plug(pose, "worldMatrix"), at);
        if (there && isJoint(scene, node) && !scene.source(world).isNull()) {
            ++worlds;
            EXPECT_TRUE(nearlyEqual(scene.matrix(world), bindPose(node), 1e-9))
                << scene.node(node)->name;
        }
    }
};

TEST_P(PosesOfRigs, MembersStandWhereThePoseHoldsThem) {
    if (!open(GetParam().file))
        GTEST_SKIP() << GetParam().file << " is not at hand (TORVEL_RIGS)";
    for (NodeHandle pose : allOf("dagPose"))
        for (const std::int32_t at : scene.elementIndices(plug(pose, "xformMatrix")))
            compareMember(pose, at);
    EXPECT_EQ(members, GetParam().members);
    EXPECT_EQ(moved, GetParam().moved);
    EXPECT_GT(worlds, 0);
}

INSTANTIATE_TEST_SUITE_P(Stored, PosesOfRigs,
                         ::testing::Values(StoredPoses{"skel.ma", 201, 0},
                                           StoredPoses{"plane_skinned.ma", 6, 0},
                                           StoredPoses{"UsdExportSkeletonAtSceneRoot.ma", 3, 0}));

}  // namespace torvel::test
