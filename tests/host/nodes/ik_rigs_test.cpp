// Handles of rigs that others made, against the rotations that stand in their files. TORVEL_RIGS
// names their folder.
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>

#include "files/ma/reader.h"
#include "ik_scene.h"
#include "nodes/core/default_nodes.h"

namespace torvel::test {
namespace {

/// What is known about a handle that does not answer to its file in every way.
struct Exception {
    const char* handle;
    enum Kind { OutOfReach, Different, NotEvaluated } kind;
    double degrees;  ///< how far the joints may stand off what is stored
    const char* reason;
};

struct Rig {
    const char* file;
    int rotatePlane, singleChain, others;
    std::vector<Exception> exceptions;
};

void PrintTo(const Rig& rig, std::ostream* out) {
    *out << rig.file;
}

class StoredChains : public IkScene, public ::testing::WithParamInterface<Rig> {
  protected:
    bool open(const char* name) {
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
    // As the file gives it: nothing has been evaluated yet.
    V3d storedRotate(NodeHandle joint) const {
        const Plug rotate = plug(joint, "rotate");
        return {scene.storedNumber(scene.child(rotate, 0)),
                scene.storedNumber(scene.child(rotate, 1)),
                scene.storedNumber(scene.child(rotate, 2))};
    }
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
    const Exception* exceptionOf(NodeHandle handle) const {
        for (const Exception& e : GetParam().exceptions)
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
    if (!open(rig.file))
        GTEST_SKIP() << rig.file << " is not at hand";
    std::map<std::uint32_t, std::vector<V3d>> stored;
    int methods[3] = {0, 0, 0};
    for (NodeHandle handle : allOf("ikHandle")) {
        const IkParts parts = ikPartsOf(scene, handle);
        ++methods[static_cast<int>(parts.method)];
        for (NodeHandle joint : parts.joints)
            stored[handle.index].push_back(storedRotate(joint));
    }
    EXPECT_EQ(methods[static_cast<int>(IkMethod::RotatePlane)], rig.rotatePlane);
    EXPECT_EQ(methods[static_cast<int>(IkMethod::SingleChain)], rig.singleChain);
    EXPECT_EQ(methods[static_cast<int>(IkMethod::None)], rig.others);
    for (NodeHandle handle : allOf("ikHandle")) {
        SCOPED_TRACE(scene.node(handle)->name);
        const IkParts parts = ikPartsOf(scene, handle);
        const Exception* exception = exceptionOf(handle);
        if (exception)
            std::cout << rig.file << ": " << exception->handle << ": " << exception->reason << '\n';
        EXPECT_EQ(parts.method == IkMethod::None,
                  exception && exception->kind == Exception::NotEvaluated);
        if (parts.method != IkMethod::None)
            checkPlace(handle, parts, exception && exception->kind == Exception::OutOfReach);
        checkRotates(handle, parts, stored[handle.index], exception ? exception->degrees : 1e-3);
    }
}

// Every handle that nothing holds is carried around; chain, pole and whatever drives them follow.
// Where two handles share a joint, only one of them can have its way.
TEST_P(StoredChains, FollowTheirHandles) {
    const Rig& rig = GetParam();
    if (!open(rig.file))
        GTEST_SKIP() << rig.file << " is not at hand";
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

const Rig kRigs[] = {
    {"IKFK.ma", 1, 0, 0, {}},
    {"stretchy_ik.ma", 1, 0, 0, {}},
    {"UsdExportEulerFilterTest.ma", 1, 0, 0, {}},
    {"MetaRig_baseTests_MetaWired.ma",
     4,
     2,
     0,
     {{"ikHandle1", Exception::OutOfReach, 0.004,
       "1.3 beyond reach; the stored elbow stops 0.0032 degrees short of straight, ours is "
       "straight"},
      {"ikHandle2", Exception::OutOfReach, 0.009,
       "2.3 beyond reach; the stored elbow stops 0.0079 degrees short of straight, ours is "
       "straight"},
      {"ikHandle3", Exception::OutOfReach, 1e-3, "0.35 beyond the only bone's end"}}},
    {"digitigrade_leg_mod_example.ma",
     2,
     3,
     1,
     {{"legikDrvrSpring_left_ikHandle", Exception::NotEvaluated, 1e-9,
       "three bones of a plug-in's solver: kept as data, the joints keep their rotations"}}},
    {"rig01.ma",
     8,
     4,
     1,
     {{"ikHandle1", Exception::NotEvaluated, 1e-9,
       "four bones of a spline solver: kept as data, the joints keep their rotations"}}},
};

INSTANTIATE_TEST_SUITE_P(Files, StoredChains, ::testing::ValuesIn(kRigs));

/// A rig in bind pose, everything in it evaluated: constraints, handles, utility nodes.
class BoundRig : public StoredChains {};

TEST_P(BoundRig, SkinJointsStandWhereTheyWereBound) {
    const Rig& rig = GetParam();
    if (!open(rig.file))
        GTEST_SKIP() << rig.file << " is not at hand";
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
    EXPECT_EQ(joints, rig.rotatePlane);  // here: the number of joints
    std::cout << rig.file << ": " << joints << " joints, largest difference " << worst << '\n';
}

const Rig kBound[] = {{"rig01.ma", 75, 0, 0, {}}, {"digitigrade_leg_mod_example.ma", 8, 0, 0, {}}};

INSTANTIATE_TEST_SUITE_P(Files, BoundRig, ::testing::ValuesIn(kBound));

}  // namespace
}  // namespace torvel::test
