#include "rig_scene.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "nodes/core/default_nodes.h"

namespace torvel::test {
namespace {

Rig rig01() {
    Rig rig{"rig01.ma"};
    rig.inverseBinds = true;
    rig.bound = 75;
    rig.lastRotations = 138;
    rig.rests = {{"agrees", 198}, {"parented later", 88}, {"weighted later", 24}};
    rig.rotatePlane = 8;
    rig.singleChain = 4;
    rig.otherSolvers = 1;
    rig.exceptions = {{"ikHandle1", HandleException::NotEvaluated, 1e-9,
                       "four bones of a spline solver: the joints keep their rotations"}};
    return rig;
}

Rig digitigradeLeg() {
    Rig rig{"digitigrade_leg_mod_example.ma"};
    rig.bound = 8;
    rig.lastRotations = 21;
    rig.rests = {{"agrees", 76}, {"parented later", 1}};
    rig.rotatePlane = 2;
    rig.singleChain = 3;
    rig.otherSolvers = 1;
    rig.exceptions = {{"legikDrvrSpring_left_ikHandle", HandleException::NotEvaluated, 1e-9,
                       "three bones of a plug-in's solver: the joints keep their rotations"}};
    return rig;
}

// The hands hang below arms that an IK solver turned to its own tolerance. Posed since: poles and
// feet that were moved after they were bound to their controls.
Rig metaWired() {
    Rig rig{"MetaRig_baseTests_MetaWired.ma"};
    rig.lastRotations = 9;
    rig.lastMisses = {"Character1_LeftHand_orientConstraint1",
                      "Character1_RightHand_orientConstraint1"};
    rig.rests = {{"agrees", 9}, {"parented later", 1}, {"posed since", 4}};
    rig.posedSince = {"Character1_LeftFoot_orientConstraint1.restRotate",
                      "Character1_RightFoot_orientConstraint1.restRotate",
                      "ikHandle1_poleVectorConstraint1.restTranslate",
                      "ikHandle2_poleVectorConstraint1.restTranslate"};
    rig.rotatePlane = 4;
    rig.singleChain = 2;
    rig.exceptions = {
        {"ikHandle1", HandleException::OutOfReach, 0.004,
         "1.3 beyond reach; the stored elbow stops 0.0032 degrees short of straight"},
        {"ikHandle2", HandleException::OutOfReach, 0.009,
         "2.3 beyond reach; the stored elbow stops 0.0079 degrees short of straight"},
        {"ikHandle3", HandleException::OutOfReach, 1e-3, "0.35 beyond the only bone's end"}};
    return rig;
}

// An animated cube and an arm that one handle turns.
Rig eulerFilter() {
    Rig rig{"UsdExportEulerFilterTest.ma"};
    rig.lastRotations = 1;
    rig.rests = {{"agrees", 1}, {"posed since", 1}};
    rig.posedSince = {"pCube1_parentConstraint1.restRotate"};
    rig.rotatePlane = 1;
    return rig;
}

Rig ikFk() {
    Rig rig{"IKFK.ma"};
    rig.rests = {{"posed since", 1}};
    rig.posedSince = {"ikHandle1_poleVectorConstraint1.restTranslate"};
    rig.rotatePlane = 1;
    return rig;
}

Rig foreArm() {
    Rig rig{"ForeArmRollJoints.ma"};
    rig.lastRotations = 3;
    rig.rests = {{"agrees", 6}};
    return rig;
}

Rig stretchyIk() {
    Rig rig{"stretchy_ik.ma"};
    rig.rotatePlane = 1;
    return rig;
}

}  // namespace

const std::vector<Rig>& allRigs() {
    static const std::vector<Rig> rigs = {
        // file, joints at their bind pose, inverse binds, bound joints, members of poses
        {"skeleton.ma", 89},
        {"plane_skinned.ma", 6, true, 0, 6},
        {"UsdExportSkeletonAtSceneRoot.ma", 3, true, 0, 3},
        {"skel.ma", 0, false, 0, 201},
        {"bindTransformsExport.ma", 0, true},
        {"rig_rlessard_example01.ma", 0, true},
        rig01(),
        digitigradeLeg(),
        metaWired(),
        eulerFilter(),
        ikFk(),
        foreArm(),
        stretchyIk(),
    };
    return rigs;
}

void RigScene::open(const std::string& name) {
    const char* folder = std::getenv("TORVEL_RIGS");
    std::ifstream file(std::string(folder ? folder : "") + "/" + name, std::ios::binary);
    if (!folder || !file)
        GTEST_SKIP() << name << " is not at hand (TORVEL_RIGS)";
    std::ostringstream text;
    text << file.rdbuf();
    createDefaultNodes(scene);
    OpenReport report;
    const Status status = readSceneText(scene, text.str(), name, report);
    ASSERT_TRUE(status) << status.text();
}

std::vector<NodeHandle> RigScene::allOf(const char* type) const {
    std::vector<NodeHandle> out;
    for (NodeHandle node : scene.allNodes())
        if (scene.isType(node, type))
            out.push_back(node);
    return out;
}

V3d RigScene::stored(NodeHandle node, const char* attr) const {
    const Plug vector = plug(node, attr);
    return {scene.storedNumber(scene.child(vector, 0)), scene.storedNumber(scene.child(vector, 1)),
            scene.storedNumber(scene.child(vector, 2))};
}

}  // namespace torvel::test
