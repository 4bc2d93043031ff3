// Rigs that others made, at other times than they were saved at.
#include "nodes/animation/anim_curve.h"
#include "nodes/shape/mesh.h"
#include "rig_scene.h"

namespace torvel::test {
namespace {

class BlendedCubes : public RigScene {
  protected:
    void SetUp() override { open("blendShapesExport.ma"); }
    V3d point(const char* shape, std::size_t i) {
        const NodeHandle node = scene.names().lookUp(shape);
        EXPECT_FALSE(node.isNull()) << shape;
        return V3d(meshPoints(scene, node)->points.at(i));
    }
};

TEST_F(BlendedCubes, ATargetMovesItsPointAsTheKeysSay) {
    const char* const shape = "|basic_cube_3_blendshape_anim|base|baseShape";
    const V3d rest(-0.5, 0.5, 0.5), offset(-0.52979666, 0.25919548, 0.79796624);
    const double first = 1.0, last = 14.988698979591836;
    for (const double u : {0.0, 0.25, 0.5, 0.75, 1.0}) {
        setSceneTime(scene, first + u * (last - first));
        const double weight = u * u * (3 - 2 * u);  // two keys with flat ends
        expectNear(point(shape, 2), rest + offset * weight, 1e-6);
        expectNear(point(shape, 3), V3d(0.5, 0.5, 0.5), 1e-6);
    }
    setSceneTime(scene, 500);
    expectNear(point(shape, 2), rest + offset, 1e-6);
}

TEST_F(BlendedCubes, InBetweensFollowOneAnother) {
    const char* const shape = "|basic_cube_4_blendshape_inbetween_anim|base|baseShape";
    const double first = 1.0, last = 13.966225510204081;
    setSceneTime(scene,
                 (first + last) / 2);  // weight 0.5: half way between the shapes at 0.333 and 0.667
    expectNear(point(shape, 0), V3d(-0.5 - 0.78172261 / 2, -0.5, 0.5), 1e-6);
    expectNear(point(shape, 1), V3d(0.5 + 0.85104573 / 2, -0.5, 0.5), 1e-6);
    expectNear(point(shape, 7), V3d(0.5 + (0.85104573 - 0.78172261) / 2, -0.5, -0.5), 1e-6);
    expectNear(point(shape, 2), V3d(-0.5, 0.5, 0.5), 1e-6);
    setSceneTime(scene, last);
    expectNear(point(shape, 0), V3d(-0.5, -0.5, 0.5), 1e-6);
    expectNear(point(shape, 2), V3d(-0.5, 0.5, 0.5 + 0.47292137), 1e-6);
}

class ConvertedLeg : public RigScene {
  protected:
    void SetUp() override { open("digitigrade_leg_mod_example.ma"); }
};

TEST_F(ConvertedLeg, EveryConversionIsWiredAtBothEnds) {
    int count = 0;
    for (const NodeHandle node : allOf("unitConversion")) {
        EXPECT_FALSE(scene.source(plug(node, "input")).isNull()) << scene.node(node)->name;
        EXPECT_FALSE(scene.targets(plug(node, "output")).empty()) << scene.node(node)->name;
        ++count;
    }
    EXPECT_EQ(count, 24);
    // the joint follows the blend of the two chains: all FK, then all IK
    const auto named = [&](const char* name) { return scene.names().lookUp(name); };
    const NodeHandle joint = named("hip_left_jnt"), blend = named("upperLegRot_left_blendColors");
    const NodeHandle one = named("fkUpperLeg_left_jnt"), two = named("ikUpperLeg_left_jnt");
    ASSERT_FALSE(joint.isNull() || blend.isNull() || one.isNull() || two.isNull());
    ASSERT_TRUE(scene.disconnect(scene.source(plug(blend, "b")), plug(blend, "b")));
    set(blend, "b", 1);
    expectNear(get(joint, "r"), get(one, "r"), 1e-6);
    set(blend, "b", 0);
    expectNear(get(joint, "r"), get(two, "r"), 1e-6);
}

}  // namespace
}  // namespace torvel::test
