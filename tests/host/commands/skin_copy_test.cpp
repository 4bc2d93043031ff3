// Copying, mirroring and painting weights, against values by hand.
#include <cmath>

#include <gtest/gtest.h>

#include "commands/geometry/box_tree.h"
#include "commands/skin/binding.h"
#include "commands/skin/copy.h"
#include "commands/skin/paint.h"
#include "nodes/deform/skin_weights.h"
#include "nodes/shape/mesh.h"
#include "script/session.h"
#include "support/test_scene.h"

namespace torvel {
namespace {

using test::flag;
using test::TestScene;

// A strip in x from -2 to 2 (two rows of points at z = 1 and z = -1) over three joints: spine in
// the middle, L_arm at x = 2, R_arm at x = -2. Influences 0, 1, 2 in that order.
class SkinCopy : public ::testing::Test {
  protected:
    SkinCopy() {
        joint("spine", 0.0, "");
        joint("L_arm", 2.0, "spine");
        joint("R_arm", -2.0, "spine");
    }
    void joint(const std::string& name, double x, const std::string& parent) {
        const std::string made = host.make("joint", name, parent);
        host.set(made + ".tx", x);
    }
    std::string strip(const std::string& name, int columns,
                      std::vector<Value> joints = {"spine", "L_arm", "R_arm"}) {
        host.call("polyPlane", {},
                  {flag("name", {name}), flag("width", {4.0}), flag("height", {2.0}),
                   flag("subdivisionsX", {columns}), flag("subdivisionsY", {1})});
        joints.push_back(name);
        return host.text("skinCluster", joints,
                         {flag("toSelectedBones"), flag("name", {name + "Skin"})});
    }
    void setAll(const std::string& skin, const std::function<std::vector<SkinWeight>(double)>& at) {
        const std::vector<V3d> points =
            meshWorldPoints(host.scene(), outputShapes(host.scene(), host.node(skin)).front());
        changeWeights(host.scene(), host.node(skin), [&](WeightList& list) {
            for (std::size_t v = 0; v < points.size(); ++v)
                list.assign(v, at(points[v].x));
        });
    }
    // The weight of an influence at the points of that x, which have to agree.
    double weight(const std::string& skin, std::int32_t influence, double x) {
        const std::vector<V3d> points =
            meshWorldPoints(host.scene(), outputShapes(host.scene(), host.node(skin)).front());
        double found = -1.0;
        for (std::size_t v = 0; v < points.size(); ++v)
            if (std::abs(points[v].x - x) < 1e-6) {
                const double one = weightsOf(host.scene(), host.node(skin))->weight(v, influence);
                EXPECT_TRUE(found < 0.0 || std::abs(found - one) < 1e-9);
                found = one;
            }
        return found;
    }
    static std::vector<SkinWeight> armOnly(double x) {
        // L_arm from 0 in the middle to 1 at x = 2; R_arm is not in use.
        return x > 0.0 ? std::vector<SkinWeight>{{0, 1.0 - x / 2.0}, {1, x / 2.0}}
                       : std::vector<SkinWeight>{{0, 1.0}};
    }
    Status copy(const std::string& from, const std::string& to, TestScene::Flags more) {
        more.push_back(flag("sourceSkin", {from}));
        more.push_back(flag("destinationSkin", {to}));
        return host.run("copySkinWeights", {}, more);
    }

    TestScene host;
};

TEST_F(SkinCopy, ClosestPointMixesAlongAnEdge) {
    strip("coarse", 2);
    strip("fine", 8);
    setAll("coarseSkin", armOnly);
    ASSERT_TRUE(copy("coarseSkin", "fineSkin",
                     {flag("noMirror"), flag("surfaceAssociation", {"closestPoint"}),
                      flag("influenceAssociation", {"oneToOne"})}));
    for (double x : {0.0, 0.5, 1.0, 1.5, 2.0}) {
        EXPECT_NEAR(weight("fineSkin", 1, x), x / 2.0, 1e-6) << x;
        EXPECT_NEAR(weight("fineSkin", 0, x), 1.0 - x / 2.0, 1e-6) << x;
    }
    EXPECT_EQ(weight("fineSkin", 0, -1.0), 1.0);
}

TEST_F(SkinCopy, ClosestComponentTakesAWholePoint) {
    strip("coarse", 2);
    strip("fine", 8);
    setAll("coarseSkin", armOnly);
    ASSERT_TRUE(copy("coarseSkin", "fineSkin",
                     {flag("noMirror"), flag("influenceAssociation", {"oneToOne"})}));
    EXPECT_EQ(weight("fineSkin", 1, 0.5), 0.0);
    EXPECT_EQ(weight("fineSkin", 1, 1.5), 1.0);
}

TEST_F(SkinCopy, OneToOneGoesByOrderAndNameByName) {
    strip("from", 2);
    strip("byOrder", 2, {"spine", "R_arm", "L_arm"});
    strip("byName", 2, {"spine", "R_arm", "L_arm"});
    setAll("fromSkin", armOnly);
    const auto surface = flag("surfaceAssociation", {"closestPoint"});
    ASSERT_TRUE(copy("fromSkin", "byOrderSkin",
                     {flag("noMirror"), surface, flag("influenceAssociation", {"oneToOne"})}));
    ASSERT_TRUE(copy("fromSkin", "byNameSkin",
                     {flag("noMirror"), surface, flag("influenceAssociation", {"name"})}));
    EXPECT_EQ(weight("byOrderSkin", 1, 2.0), 1.0);  // R_arm, which is second there
    EXPECT_EQ(weight("byNameSkin", 2, 2.0), 1.0);   // L_arm, wherever it stands
    EXPECT_EQ(weight("byNameSkin", 1, 2.0), 0.0);
}

TEST_F(SkinCopy, WeightsOfAnInfluenceWithoutPartnerAreSharedOut) {
    strip("from", 2);
    strip("to", 2, {"spine"});
    setAll("fromSkin", [](double) { return std::vector<SkinWeight>{{0, 0.25}, {1, 0.75}}; });
    ASSERT_TRUE(
        copy("fromSkin", "toSkin", {flag("noMirror"), flag("influenceAssociation", {"name"})}));
    EXPECT_NEAR(weight("toSkin", 0, 2.0), 1.0, 1e-12);
}

TEST_F(SkinCopy, MirroringWritesTheNegativeSideFromThePositiveOne) {
    strip("box", 4);
    setAll("boxSkin", armOnly);
    ASSERT_TRUE(copy("boxSkin", "boxSkin",
                     {flag("mirrorMode", {"YZ"}), flag("surfaceAssociation", {"closestPoint"}),
                      flag("influenceAssociation", {"closestJoint"})}));
    for (double x : {1.0, 2.0}) {
        EXPECT_NEAR(weight("boxSkin", 1, x), x / 2.0, 1e-9) << "the source side stays";
        EXPECT_NEAR(weight("boxSkin", 2, -x), x / 2.0, 1e-9);
        EXPECT_NEAR(weight("boxSkin", 0, -x), 1.0 - x / 2.0, 1e-9);
    }
    EXPECT_EQ(weight("boxSkin", 0, 0.0), 1.0);
}

TEST_F(SkinCopy, TheInverseMirrorGoesTheOtherWay) {
    strip("box", 4);
    setAll("boxSkin", armOnly);
    ASSERT_TRUE(copy("boxSkin", "boxSkin",
                     {flag("mirrorMode", {"YZ"}), flag("mirrorInverse"),
                      flag("influenceAssociation", {"name"})}));
    EXPECT_EQ(weight("boxSkin", 1, 2.0), 0.0);  // the negative side had no arm
    EXPECT_EQ(weight("boxSkin", 0, 2.0), 1.0);
}

TEST_F(SkinCopy, NamesPairTheSidesWhereverTheJointsStand) {
    host.set("R_arm.tx", 3.0);  // the spine is nearer to the mirrored L_arm
    strip("box", 4);
    setAll("boxSkin", armOnly);
    ASSERT_TRUE(copy("boxSkin", "boxSkin",
                     {flag("mirrorMode", {"YZ"}), flag("influenceAssociation", {"name"})}));
    EXPECT_EQ(weight("boxSkin", 2, -2.0), 1.0);
}

TEST_F(SkinCopy, MirrorCountsAndPairsAreTold) {
    strip("box", 4);
    CopyOptions options;
    options.plane = MirrorPlane::YZ;
    MirrorCount count;
    ASSERT_TRUE(countMirror(host.scene(), host.node("boxSkin"), options, count));
    EXPECT_EQ(count.written, 4u);
    EXPECT_EQ(count.kept, 4u);
    EXPECT_EQ(count.onPlane, 2u);
    const auto pairs =
        matchInfluences(host.scene(), host.node("boxSkin"), host.node("boxSkin"), options);
    ASSERT_EQ(pairs.size(), 3u);
    EXPECT_EQ(pairs[0].to, 0);
    EXPECT_EQ(pairs[1].to, 2);
    EXPECT_EQ(pairs[2].to, 1);
}

TEST_F(SkinCopy, WhatCannotBeDoneIsNamed) {
    strip("box", 2);
    EXPECT_NE(host.error("copySkinWeights", {},
                         {flag("sourceSkin", {"boxSkin"}), flag("destinationSkin", {"boxSkin"}),
                          flag("mirrorMode", {"ZZ"})})
                  .find("'ZZ' is no plane"),
              std::string::npos);
    EXPECT_NE(host.error("copySkinWeights", {},
                         {flag("sourceSkin", {"boxSkin"}), flag("destinationSkin", {"boxSkin"}),
                          flag("noMirror"), flag("influenceAssociation", {"label"})})
                  .find("'label'"),
              std::string::npos);
    EXPECT_NE(host.error("copySkinWeights", {},
                         {flag("sourceSkin", {"spine"}), flag("destinationSkin", {"boxSkin"})}),
              "ok");
    EXPECT_NE(host.error("copyDeformerWeights", {}, {flag("sourceDeformer", {"wire1"})})
                  .find("copyDeformerWeights:"),
              std::string::npos);
}

TEST(OtherSide, SwapsTheFirstMarkOfASide) {
    EXPECT_EQ(otherSideName("L_arm"), "R_arm");
    EXPECT_EQ(otherSideName("R_arm"), "L_arm");
    EXPECT_EQ(otherSideName("arm_l"), "arm_r");
    EXPECT_EQ(otherSideName("rig:arm_lf_01"), "rig:arm_rt_01");
    EXPECT_EQ(otherSideName("armLeft"), "armRight");
    EXPECT_EQ(otherSideName("leftArm"), "rightArm");
    EXPECT_EQ(otherSideName("upright"), "upright");
    EXPECT_EQ(otherSideName("Leg"), "Leg");
    EXPECT_EQ(otherSideName(""), "");
}

TEST(BoxTree, FindsWhatLookingAtAllFinds) {
    std::vector<V3d> points;
    unsigned seed = 7;
    const auto next = [&] {
        seed = seed * 1103515245u + 12345u;
        return static_cast<double>((seed >> 16) % 40) -
               20.0;  // whole numbers: many at the same place
    };
    std::vector<Imath::Box3d> boxes;
    for (int i = 0; i < 3000; ++i) {
        const double x = next(), y = next(), z = next();
        points.emplace_back(x, y, z);
        boxes.emplace_back(points.back());
    }
    const BoxTree tree(boxes);
    for (int i = 0; i < 200; ++i) {
        const double x = next() + 0.5, y = next(), z = next();
        const V3d at(x, y, z);
        std::size_t expected = 0;
        for (std::size_t k = 1; k < points.size(); ++k)
            if ((points[k] - at).length2() < (points[expected] - at).length2())
                expected = k;
        EXPECT_EQ(tree.nearest(at, [&](std::size_t k) { return (points[k] - at).length2(); }),
                  expected);
    }
    EXPECT_EQ(BoxTree().nearest(V3d(0.0), [](std::size_t) { return 0.0; }), BoxTree::kNone);
}

TEST_F(SkinCopy, PaintingReplacesAddsAndScales) {
    strip("box", 1);
    const NodeHandle skin = host.node("boxSkin");
    setAll("boxSkin", [](double) { return std::vector<SkinWeight>{{0, 0.5}, {1, 0.3}, {2, 0.2}}; });
    const WeightList& list = *weightsOf(host.scene(), skin);
    PaintResult result;
    ASSERT_TRUE(paintWeights(host.scene(), skin, 0, PaintMode::Replace, 0.75, {0, 99}, result));
    EXPECT_EQ(result.changed, 1u);
    EXPECT_NEAR(list.weight(0, 0), 0.75, 1e-12);
    EXPECT_NEAR(list.weight(0, 1), 0.15, 1e-12);  // 0.3 : 0.2 of the quarter left
    EXPECT_NEAR(list.weight(0, 2), 0.10, 1e-12);
    ASSERT_TRUE(paintWeights(host.scene(), skin, 1, PaintMode::Add, 0.2, {1}, result));
    EXPECT_NEAR(list.weight(1, 1), 0.5, 1e-12);
    ASSERT_TRUE(paintWeights(host.scene(), skin, 2, PaintMode::Scale, 0.5, {2}, result));
    EXPECT_NEAR(list.weight(2, 2), 0.1, 1e-12);
    EXPECT_NEAR(list.weight(3, 0), 0.5, 1e-12);
}

TEST_F(SkinCopy, PaintingKeepsHeldWeights) {
    strip("box", 1);
    const NodeHandle skin = host.node("boxSkin");
    setAll("boxSkin", [](double) { return std::vector<SkinWeight>{{0, 0.5}, {1, 0.3}, {2, 0.2}}; });
    host.set("spine.liw", 1);
    PaintResult result;
    ASSERT_TRUE(paintWeights(host.scene(), skin, 1, PaintMode::Replace, 1.0, {0}, result));
    const WeightList& list = *weightsOf(host.scene(), skin);
    EXPECT_NEAR(list.weight(0, 0), 0.5, 1e-12);
    EXPECT_NEAR(list.weight(0, 1), 0.5, 1e-12);
    EXPECT_EQ(list.weight(0, 2), 0.0);
    EXPECT_FALSE(paintWeights(host.scene(), skin, 0, PaintMode::Replace, 0.1, {0}, result));
    host.set("R_arm.liw", 1);
    ASSERT_TRUE(paintWeights(host.scene(), skin, 1, PaintMode::Replace, 0.0, {1}, result));
    EXPECT_EQ(result.refused, 1u);
    EXPECT_NEAR(list.weight(1, 1), 0.3, 1e-12);
}

TEST_F(SkinCopy, SmoothingGoesToTheMeanOfTheNeighbours) {
    // Points 0 1 2 at z = 1 and 3 4 5 at z = -1; the middle of a row has three neighbours.
    strip("box", 2);
    const NodeHandle skin = host.node("boxSkin");
    const auto around = neighbours(host.scene(), skin);
    ASSERT_EQ(around.size(), 6u);
    EXPECT_EQ(around[1], (std::vector<int>{0, 2, 4}));
    EXPECT_EQ(around[0], (std::vector<int>{1, 3}));
    setAll("boxSkin", [](double x) {
        return std::vector<SkinWeight>{{0, x > 1 ? 0.1 : 0.7}, {1, x > 1 ? 0.9 : 0.3}};
    });
    PaintResult result;
    ASSERT_TRUE(paintWeights(host.scene(), skin, 1, PaintMode::Smooth, 1.0, {1}, result));
    EXPECT_NEAR(weightsOf(host.scene(), skin)->weight(1, 1), (0.3 + 0.9 + 0.3) / 3.0, 1e-12);
    ASSERT_TRUE(paintWeights(host.scene(), skin, 1, PaintMode::Smooth, 0.5, {0}, result));
    EXPECT_NEAR(weightsOf(host.scene(), skin)->weight(0, 1), 0.3 + 0.5 * ((0.5 + 0.3) / 2.0 - 0.3),
                1e-12);
}

}  // namespace
}  // namespace torvel
