// Handles of rigs that others made, against the rotations that stand in their files.
#include <iostream>

#include "ik_scene.h"
#include "rig_scene.h"

namespace torvel::test {
namespace {

class StoredChains : public EachRig {
  protected:
    V3d goalOf(NodeHandle handle) const {
        const V3d local = get(handle, "translate") + get(handle, "rotatePivot") +
                          get(handle, "rotatePivotTranslate");
        return local * parentWorldMatrix(scene, handle);
    }
    double turnBetween(NodeHandle joint, const V3d& stored) const {
        const int order = static_cast<int>(scene.number(plug(joint, "rotateOrder")));
        const M44d off =
            eulerMatrix(stored, order) * eulerMatrix(get(joint, "rotate"), order).transposed();
        const V3d axis(off[1][2] - off[2][1], off[2][0] - off[0][2], off[0][1] - off[1][0]);
        return std::atan2(0.5 * axis.length(), 0.5 * (off[0][0] + off[1][1] + off[2][2] - 1.0)) *
               kRadToDeg;
    }
    double chainLength(const IkParts& parts) const {
        double length = 0.0;
        V3d at = position(parts.start);
        for (NodeHandle joint : parts.joints) {
            length += (position(joint) - at).length();
            at = position(joint);
        }
        return length + (position(parts.effector) - at).length();
    }
    const HandleException* exceptionOf(NodeHandle handle) const {
        for (const HandleException& e : GetParam().exceptions)
            if (scene.node(handle)->name == e.handle)
                return &e;
        return nullptr;
    }
    void checkDirection(NodeHandle handle, const IkParts& parts) {
        const V3d root = position(parts.start), end = position(parts.effector);
        expectNear((end - root).normalized(), (goalOf(handle) - root).normalized(), 1e-9);
    }
    bool shares(NodeHandle handle, const IkParts& parts) const {
        position(parts.effector);  // ties are found by evaluating
        for (NodeHandle joint : parts.joints)
            for (int axis = 0; axis < 3; ++axis)
                if (scene.writerOf(scene.child(plug(joint, "rotate"), axis)).node != handle)
                    return true;
        return false;
    }
    void checkPlace(NodeHandle handle, const IkParts& parts, bool outOfReach) {
        const V3d root = position(parts.start), end = position(parts.effector),
                  goal = goalOf(handle);
        const NodeHandle endJoint = ikEndJoint(scene, parts.effector);
        ASSERT_FALSE(endJoint.isNull());
        expectNear(position(endJoint), end, 1e-9);
        if (outOfReach) {
            EXPECT_GT((goal - root).length(), chainLength(parts));
            checkDirection(handle, parts);
            return;
        }
        expectNear(end, goal, 1e-4);
        if (parts.method == IkMethod::RotatePlane && parts.joints.size() > 1) {
            const V3d pole =
                get(handle, "poleVector") * linearPart(parentWorldMatrix(scene, handle));
            EXPECT_LE(sideError(root, position(parts.joints[1]), end, pole), 1e-3);
        }
    }
    void checkRotates(NodeHandle handle, const IkParts& parts, const std::vector<V3d>& stored,
                      double tolerance) {
        for (std::size_t k = 0; k < parts.joints.size(); ++k)
            EXPECT_LE(turnBetween(parts.joints[k], stored[k]), tolerance)
                << scene.node(handle)->name << ": " << scene.node(parts.joints[k])->name
                << " stored " << stored[k] * kRadToDeg << " solved "
                << degrees(parts.joints[k], "rotate");
    }
};

TEST_P(StoredChains, AreSolvedAsTheFilesSay) {
    const Rig& rig = GetParam();
    std::map<std::uint32_t, std::vector<V3d>> before;
    int methods[3] = {0, 0, 0};
    for (NodeHandle handle : allOf("ikHandle")) {
        const IkParts parts = ikPartsOf(scene, handle);
        ++methods[static_cast<int>(parts.method)];
        for (NodeHandle joint : parts.joints)
            before[handle.index].push_back(stored(joint, "rotate"));
    }
    EXPECT_EQ(methods[static_cast<int>(IkMethod::RotatePlane)], rig.rotatePlane);
    EXPECT_EQ(methods[static_cast<int>(IkMethod::SingleChain)], rig.singleChain);
    EXPECT_EQ(methods[static_cast<int>(IkMethod::None)], rig.otherSolvers);
    for (NodeHandle handle : allOf("ikHandle")) {
        SCOPED_TRACE(scene.node(handle)->name);
        const IkParts parts = ikPartsOf(scene, handle);
        const HandleException* exception = exceptionOf(handle);
        if (exception)
            std::cout << rig.file << ": " << exception->handle << ": " << exception->reason << '\n';
        EXPECT_EQ(parts.method == IkMethod::None,
                  exception && exception->kind == HandleException::NotEvaluated);
        if (parts.method != IkMethod::None)
            checkPlace(handle, parts, exception && exception->kind == HandleException::OutOfReach);
        checkRotates(handle, parts, before[handle.index], exception ? exception->degrees : 1e-3);
    }
}

// Every handle that nothing holds is carried around; chain, pole and whatever drives them follow.
// Where two handles share a joint, only one of them can have its way.
TEST_P(StoredChains, FollowTheirHandles) {
    const V3d ways[] = {{0.3, 0, 0}, {-0.2, 0.2, 0.1}, {0, -0.3, 0.2}};
    for (NodeHandle handle : allOf("ikHandle")) {
        const IkParts parts = ikPartsOf(scene, handle);
        const Plug translate = plug(handle, "translate");
        if (parts.method == IkMethod::None || !scene.isSettable(translate) || shares(handle, parts))
            continue;
        SCOPED_TRACE(scene.node(handle)->name);
        const V3d start = scene.vec3(translate);
        const double length = chainLength(parts);
        for (const V3d& way : ways) {
            scene.setVec3(translate, start + way * length);
            const double far = (goalOf(handle) - position(parts.start)).length();
            const bool reachable = parts.joints.size() > 1 && far <= chainLength(parts) + 1e-9;
            if (reachable)
                checkPlace(handle, parts, false);
            else
                checkDirection(handle, parts);
        }
        scene.setVec3(translate, start);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, StoredChains, ::testing::ValuesIn(rigsWith([](const Rig& rig) {
                             return rig.hasHandles();
                         })));

/// A rig in bind pose, everything in it evaluated: constraints, handles, utility nodes.
class BoundRig : public EachRig {};

TEST_P(BoundRig, SkinJointsStandWhereTheyWereBound) {
    const Rig& rig = GetParam();
    int joints = 0;
    double worst = 0.0;
    for (NodeHandle cluster : allOf("skinCluster")) {
        const Plug matrices = plug(cluster, "matrix"), bound = plug(cluster, "bindPreMatrix");
        for (std::size_t i = 0; i < scene.elementCount(matrices); ++i) {
            const Plug element = scene.elementAt(matrices, i);
            const NodeHandle joint = scene.source(element).node;
            const M44d wanted =
                inverseOf(scene.matrix(scene.element(bound, scene.logicalIndex(element))));
            const M44d got = worldMatrix(scene, joint);
            EXPECT_TRUE(nearlyEqual(got, wanted, 1e-4)) << scene.node(joint)->name << got << wanted;
            for (int k = 0; k < 16; ++k)
                worst = std::max(worst, std::fabs(got[k / 4][k % 4] - wanted[k / 4][k % 4]));
            ++joints;
        }
    }
    EXPECT_EQ(joints, rig.bound);
    std::cout << rig.file << ": " << joints << " joints, largest difference " << worst << '\n';
}

INSTANTIATE_TEST_SUITE_P(Files, BoundRig, ::testing::ValuesIn(rigsWith([](const Rig& rig) {
                             return rig.bound > 0;
                         })));

}  // namespace
}  // namespace torvel::test
