// Poses and binds stored in rigs that others made.
#include "nodes/deform/dag_pose.h"
#include "rig_scene.h"

namespace torvel::test {

class BindPoses : public EachRig {
  protected:
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

TEST_P(BindPoses, JointsStandWhereTheirBindPoseSays) {
    EXPECT_EQ(jointsAtTheirBindPose(), GetParam().atBindPose);
}

INSTANTIATE_TEST_SUITE_P(Stored, BindPoses, ::testing::ValuesIn(rigsWith([](const Rig& rig) {
                             return rig.atBindPose > 0;
                         })));

class InverseBinds : public BindPoses {};

TEST_P(InverseBinds, AreInversesOfBindPoses) {
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

INSTANTIATE_TEST_SUITE_P(Stored, InverseBinds, ::testing::ValuesIn(rigsWith([](const Rig& rig) {
                             return rig.inverseBinds;
                         })));

class PosesOfRigs : public BindPoses {
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
    for (NodeHandle pose : allOf("dagPose"))
        for (const std::int32_t at : scene.elementIndices(plug(pose, "xformMatrix")))
            compareMember(pose, at);
    EXPECT_EQ(members, GetParam().poseMembers);
    EXPECT_EQ(moved, 0);
    EXPECT_GT(worlds, 0);
}

INSTANTIATE_TEST_SUITE_P(Stored, PosesOfRigs, ::testing::ValuesIn(rigsWith([](const Rig& rig) {
                             return rig.poseMembers > 0;
                         })));

}  // namespace torvel::test
