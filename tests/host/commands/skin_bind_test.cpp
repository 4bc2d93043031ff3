#include <gtest/gtest.h>

#include "script/session.h"
#include "commands/skin/binding.h"
#include "commands/tables.h"
#include "commands/skin/distance.h"
#include "edit/bounds.h"
#include "nodes/shape/mesh.h"
#include "nodes/deform/skin_weights.h"
#include "nodes/transform/transform.h"
#include "support/test_scene.h"

namespace torvel {
namespace {

using test::flag;

// Joints and shapes of one session, by name.
class Skin : public ::testing::Test {
  protected:
    Skin() { addSceneCommands(session); }
    NodeHandle joint(const std::string& name, const V3d& at, NodeHandle parent = {}) {
        NodeHandle made;
        EXPECT_TRUE(scene.createNode("joint", name, parent, made).isOk());
        scene.setVec3(scene.findPlug(made, "translate"),
                      at - (parent.isNull() ? V3d(0.0) : worldPosition(scene, parent)));
        return made;
    }
    NodeHandle node(const std::string& name) { return scene.names().lookUp(name); }
    Plug plug(const std::string& owner, const std::string& attr) {
        return scene.findPlug(node(owner), attr);
    }
    Value call(const std::string& command, std::vector<Value> args,
               std::vector<RawFlag> flags = {}) {
        Value result;
        const Status status = session.call(command, flags, std::move(args), result);
        EXPECT_TRUE(status.isOk()) << status.text();
        return result;
    }
    std::string refusal(const std::string& command, std::vector<Value> args,
                        std::vector<RawFlag> flags = {}) {
        Value result;
        return session.call(command, flags, std::move(args), result).text();
    }
    /// Two joints one above the other in a box of 1 x 4 x 1, bound with two influences.
    void bindBox() {
        const NodeHandle low = joint("low", V3d(0, -2, 0));
        joint("high", V3d(0, 0.5, 0), low);
        call("polyCube", {},
             {flag("name", {"box"}), flag("height", {4.0}), flag("subdivisionsY", {4})});
        call("skinCluster", {"low", "box"}, {flag("maximumInfluences", {2})});
    }
    std::vector<V3f> boxPoints() { return meshPoints(scene, node("boxShape"))->points; }
    const WeightList& weights() { return *weightsOf(scene, node("skinCluster1")); }

    Session session;
    Scene& scene = session.scene();
};

InfluenceShape segment(const V3d& from, std::vector<V3d> to, double dropoff = 4.0) {
    return {from, std::move(to), dropoff};
}

// Weights stored by the program that this one stands in for.
TEST_F(Skin, CubeWeightsOfThreeJointsAgreeToAllDigits) {
    const V3d a(-1.0074561718837285, 1.1005195249890261, 0),
        b(0.29197270694295163, -0.41911363799627854, 0),
        c(1.9540376719102268, 2.471393319311959, 0);
    const std::vector<InfluenceShape> chain{segment(a, {b}), segment(b, {c}), segment(c, {})};
    const auto low = distanceWeights(chain, V3d(-0.5, -0.5, 0.5), 5);
    const auto high = distanceWeights(chain, V3d(0.5, 0.5, 0.5), 5);
    const double expectedLow[] = {0.62846176957444488, 0.37027013566986899, 0.0012680947556861352};
    const double expectedHigh[] = {0.13681954496550433, 0.86082189484155602, 0.0023585601929397293};
    for (const SkinWeight& w : low)
        EXPECT_NEAR(w.weight, expectedLow[w.influence], 1e-12);
    for (const SkinWeight& w : high)
        EXPECT_NEAR(w.weight, expectedHigh[w.influence], 1e-12);
}

TEST_F(Skin, CoatWeightsKeepTheTwoNearest) {
    const V3d thigh(-9, 95, 0), calf(-9, 53, 0), foot(-9, 11, 2), clavicle(-3, 144, 0),
        upper(-18, 144, 0), lower(-45, 144, 0);
    const std::vector<InfluenceShape> body{segment(thigh, {calf}), segment(calf, {foot}),
                                           segment(clavicle, {upper}), segment(upper, {lower})};
    struct Row {
        V3d point;
        int first, second;
        double one, two;
    };
    const Row rows[] = {{V3d(-26, 48, 16), 0, 1, 0.4701007080, 0.5298992920},
                        {V3d(-26, 140, 16), 2, 3, 0.3958904110, 0.6041095890},
                        {V3d(-26, 48, -16), 0, 1, 0.4840329945, 0.5159670055},
                        {V3d(-14, 141, 11), 2, 3, 0.5577768474, 0.4422231526},
                        {V3d(-14, 151, -13), 2, 3, 0.5353539304, 0.4646460696}};
    for (const Row& row : rows) {
        const auto weights = distanceWeights(body, row.point, 2);
        ASSERT_EQ(weights.size(), 2u);
        for (const SkinWeight& w : weights) {
            EXPECT_TRUE(w.influence == row.first || w.influence == row.second);
            EXPECT_NEAR(w.weight, w.influence == row.first ? row.one : row.two, 1e-10);
        }
    }
}

TEST_F(Skin, APointOnAJointBelongsToIt) {
    const std::vector<InfluenceShape> chain{segment(V3d(0, 0, 0), {V3d(1, 0, 0)}),
                                            segment(V3d(1, 0, 0), {}), segment(V3d(5, 0, 0), {})};
    const auto shared = distanceWeights(chain, V3d(1, 0, 0), 3);
    for (const SkinWeight& w : shared)
        EXPECT_EQ(w.weight, w.influence == 2 ? 0.0 : 0.5);
    for (const SkinWeight& w : distanceWeights(chain, V3d(0.5, 0, 0), 3))
        EXPECT_EQ(w.weight, w.influence == 0 ? 1.0 : 0.0);
}

TEST_F(Skin, EqualDistancesPreferTheLowerIndex) {
    const std::vector<InfluenceShape> points{segment(V3d(3, 0, 0), {}), segment(V3d(1, 0, 0), {}),
                                             segment(V3d(-1, 0, 0), {})};
    const auto kept = distanceWeights(points, V3d(0.0), 1);
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].influence, 1);
}

TEST_F(Skin, BindMakesTheKnownGraph) {
    bindBox();
    EXPECT_EQ(scene.source(plug("skinCluster1", "ip[0].ig")).node, node("boxShapeOrig"));
    EXPECT_EQ(scene.source(plug("skinCluster1", "orggeom[0]")).node, node("boxShapeOrig"));
    EXPECT_EQ(scene.source(plug("boxShape", "inMesh")).node, node("skinCluster1"));
    EXPECT_EQ(scene.source(plug("boxShapeOrig", "inMesh")).node, node("polyCube1"));
    EXPECT_EQ(scene.source(plug("skinCluster1", "bindPose")).node, node("bindPose1"));
    EXPECT_EQ(scene.source(plug("skinCluster1", "ma[1]")).node, node("high"));
    EXPECT_EQ(scene.source(plug("skinCluster1", "lw[0]")), plug("low", "liw"));
    EXPECT_EQ(scene.source(plug("bindPose1", "p[1]")), plug("bindPose1", "m[0]"));
    EXPECT_EQ(scene.source(plug("bindPose1", "wm[0]")), plug("low", "bps"));
    EXPECT_EQ(scene.number(plug("boxShapeOrig", "io")), 1.0);
    EXPECT_EQ(scene.matrix(plug("skinCluster1", "pm[0]"))[3][1], 2.0);
    for (const char* attr : {"tx", "ry", "sz"})
        EXPECT_TRUE(scene.isLocked(plug("box", attr))) << attr;
}

TEST_F(Skin, TheSkinFollowsItsJoints) {
    bindBox();
    const auto rest = boxPoints();
    scene.setNumber(plug("low", "tx"), 3.0);
    const auto moved = boxPoints();
    for (std::size_t v = 0; v < rest.size(); ++v)
        EXPECT_LT((moved[v] - rest[v] - V3f(3, 0, 0)).length(), 1e-5);
    scene.setNumber(plug("low", "tx"), 0.0);
    scene.setNumber(plug("high", "tx"), 2.0);
    for (std::size_t v = 0; v < rest.size(); ++v)
        EXPECT_NEAR(boxPoints()[v].x - rest[v].x, 2.0 * weights().weight(v, 1), 1e-5);
}

TEST_F(Skin, ALiveClusterRefusesASecondBind) {
    bindBox();
    const std::size_t nodes = scene.nodeCount();
    EXPECT_NE(refusal("skinCluster", {"low", "box"}).find("skinCluster1"), std::string::npos);
    EXPECT_EQ(scene.nodeCount(), nodes);
    EXPECT_NE(refusal("skinCluster", {"low"}).find("No geometry"), std::string::npos);
    EXPECT_NE(refusal("skinCluster", {"low", "box"}, {flag("bindMethod", {2})}).find("heat map"),
              std::string::npos);
}

TEST_F(Skin, DormantClusterIsTakenUpWithItsWeights) {
    bindBox();
    const auto rest = boxPoints();
    std::vector<double> before;
    for (std::size_t v = 0; v < rest.size(); ++v)
        before.push_back(weights().weight(v, 0));
    scene.setNumber(plug("high", "tx"), 1.0);
    EXPECT_NE(boxPoints(), rest);
    call("skinCluster", {"skinCluster1"}, {flag("edit"), flag("unbindKeepHistory")});
    EXPECT_EQ(boxPoints(), rest);
    EXPECT_EQ(scene.number(plug("skinCluster1", "nodeState")), 1.0);
    EXPECT_EQ(influencesOf(scene, node("skinCluster1")).size(), 2u);
    EXPECT_FALSE(scene.isLocked(plug("box", "tx")));
    call("skinCluster", {"box"},
         {flag("edit"), flag("unbindKeepHistory")});  // again: nothing happens

    const Value again = call("skinCluster", {"low", "box"},
                             {flag("maximumInfluences", {1}), flag("dropoffRate", {9.0})});
    EXPECT_EQ(test::textsOf(again), std::vector<std::string>{"skinCluster1"});
    EXPECT_EQ(scene.number(plug("skinCluster1", "nodeState")), 0.0);
    EXPECT_EQ(boxPoints(), rest);
    EXPECT_EQ(scene.number(plug("skinCluster1", "maxInfluences")), 2.0);
    EXPECT_EQ(scene.matrix(plug("skinCluster1", "pm[1]"))[3][0], -1.0);
    EXPECT_TRUE(scene.isLocked(plug("box", "tx")));
    for (std::size_t v = 0; v < rest.size(); ++v)
        EXPECT_EQ(weights().weight(v, 0), before[v]);
    scene.setNumber(plug("high", "tx"), 0.0);  // one back: the other way
    for (std::size_t v = 0; v < rest.size(); ++v)
        EXPECT_NEAR(boxPoints()[v].x - rest[v].x, -weights().weight(v, 1), 1e-5);
}

TEST_F(Skin, UnbindLeavesTheOriginalShape) {
    bindBox();
    const auto rest = boxPoints();
    scene.setNumber(plug("high", "tx"), 1.0);
    call("skinCluster", {"box"}, {flag("edit"), flag("unbind")});
    EXPECT_TRUE(node("skinCluster1").isNull());
    EXPECT_TRUE(node("boxShapeOrig").isNull());
    EXPECT_EQ(scene.source(plug("boxShape", "inMesh")).node, node("polyCube1"));
    EXPECT_EQ(boxPoints(), rest);
    EXPECT_FALSE(scene.isLocked(plug("box", "sx")));
}

TEST_F(Skin, UnbindGivesBackPointsOfAShapeWithoutHistory) {
    joint("only", V3d(0.0));
    call("polyCube", {}, {flag("name", {"box"}), flag("constructionHistory", {false})});
    const auto rest = boxPoints();
    call("skinCluster", {"only", "box"});
    EXPECT_EQ(boxPoints(), rest);
    call("skinCluster", {"box"}, {flag("edit"), flag("unbind")});
    EXPECT_EQ(boxPoints(), rest);
    EXPECT_EQ(meshPoints(scene, node("boxShape"))->topology->faceCounts.size(), 6u);
}

TEST_F(Skin, UnbindLeavesNodesBetweenClusterAndShapeFed) {
    bindBox();
    const auto rest = boxPoints();
    NodeHandle between;
    ASSERT_TRUE(scene.createNode("groupParts", "between", {}, between));
    const Plug output = plug("skinCluster1", "outputGeometry[0]"), in = plug("boxShape", "inMesh");
    ASSERT_TRUE(scene.disconnect(output, in));
    ASSERT_TRUE(scene.connect(output, plug("between", "inputGeometry")));
    ASSERT_TRUE(scene.connect(plug("between", "outputGeometry"), in));
    EXPECT_EQ(boxPoints(), rest);
    call("skinCluster", {"skinCluster1"}, {flag("edit"), flag("unbind")});
    EXPECT_TRUE(node("skinCluster1").isNull());
    EXPECT_EQ(boxPoints(), rest);
}

TEST_F(Skin, InfluencesComeFromTheWholeSkeletonOrTheListedJoints) {
    const NodeHandle root = joint("root", V3d(0, -1, 0));
    const NodeHandle arm = joint("arm", V3d(1, 0, 0), root);
    joint("hand", V3d(2, 0, 0), arm);
    joint("leg", V3d(-1, 0, 0), root);
    call("polyCube", {}, {flag("name", {"a"})});
    call("polyCube", {}, {flag("name", {"b"})});
    call("skinCluster", {"arm", "a"}, {flag("name", {"whole"})});
    call("skinCluster", {"leg", "arm", "b"}, {flag("name", {"listed"}), flag("toSelectedBones")});
    EXPECT_EQ(test::textsOf(call("skinCluster", {"whole"}, {flag("query"), flag("influence")})),
              (std::vector<std::string>{"root", "arm", "hand", "leg"}));
    EXPECT_EQ(test::textsOf(call("skinCluster", {"b"}, {flag("query"), flag("influence")})),
              (std::vector<std::string>{"leg", "arm"}));
    EXPECT_EQ(test::textsOf(call("skinCluster", {"listed"}, {flag("query"), flag("geometry")})),
              (std::vector<std::string>{"bShape"}));
    EXPECT_EQ(scene.source(plug("listed", "bindPose")).node,
              node("bindPose1"));  // the same pose: one node
}

TEST_F(Skin, AddedInfluenceWithoutWeightChangesNothing) {
    bindBox();
    const auto rest = boxPoints();
    joint("extra", V3d(0, 1, 0));
    call("skinCluster", {"skinCluster1"},
         {flag("edit"), flag("addInfluence", {"extra"}), flag("weight", {0.0}),
          flag("lockWeights", {true})});
    EXPECT_EQ(influenceIndex(scene, node("skinCluster1"), node("extra")), 2);
    EXPECT_TRUE(isInfluenceLocked(scene, node("skinCluster1"), 2));
    EXPECT_EQ(boxPoints(), rest);
    EXPECT_EQ(scene.source(plug("bindPose1", "m[2]")).node, node("extra"));
    EXPECT_NE(
        refusal("skinCluster", {"skinCluster1"}, {flag("edit"), flag("addInfluence", {"extra"})}),
        "");
}

TEST_F(Skin, RemovedInfluenceLeavesIndicesSparseAndSumsWhole) {
    bindBox();
    joint("extra", V3d(0, 1, 0));
    call("skinCluster", {"skinCluster1"},
         {flag("edit"), flag("addInfluence", {"extra"}), flag("weight", {0.5})});
    for (std::size_t v = 0; v < weights().size(); ++v)
        EXPECT_NEAR(weights().sum(v), 1.0, 1e-12);
    call("skinCluster", {"skinCluster1"}, {flag("edit"), flag("removeInfluence", {"low"})});
    const auto left = influencesOf(scene, node("skinCluster1"));
    ASSERT_EQ(left.size(), 2u);
    EXPECT_EQ(left[0].logical, 1);
    EXPECT_EQ(left[1].logical, 2);
    for (std::size_t v = 0; v < weights().size(); ++v) {
        EXPECT_EQ(weights().weight(v, 0), 0.0);
        EXPECT_NEAR(weights().sum(v), 1.0, 1e-12);
    }
    EXPECT_NE(
        refusal("skinCluster", {"skinCluster1"}, {flag("edit"), flag("removeInfluence", {"low"})}),
        "");
}

TEST_F(Skin, ADeletedJointKeepsItsColumnButPullsToTheOrigin) {
    bindBox();
    const auto rest = boxPoints();
    const double before = weights().weight(0, 1);
    scene.deleteNodes({node("high")});
    EXPECT_EQ(influencesOf(scene, node("skinCluster1")).size(), 1u);
    EXPECT_EQ(weights().weight(0, 1), before);
    EXPECT_LT((boxPoints()[0] - rest[0] * static_cast<float>(1.0 - before)).length(), 1e-5);
}

TEST_F(Skin, PercentSetsAndSharesTheRest) {
    bindBox();
    joint("extra", V3d(0, 1, 0));
    call("skinCluster", {"skinCluster1"},
         {flag("edit"), flag("addInfluence", {"extra"}), flag("weight", {0.0})});
    const double low = weights().weight(3, 0), high = weights().weight(3, 1);
    call("skinPercent", {"skinCluster1", "box.vtx[3]"}, {flag("transformValue", {"extra", 0.5})});
    EXPECT_NEAR(weights().weight(3, 0), low * 0.5, 1e-12);
    EXPECT_NEAR(weights().weight(3, 1), high * 0.5, 1e-12);
    const Value one = call("skinPercent", {"skinCluster1", "box.vtx[3]"},
                           {flag("query"), flag("transform", {"extra"}), flag("value")});
    EXPECT_NEAR(one.number(), 0.5, 1e-12);
    const Value all =
        call("skinPercent", {"skinCluster1", "box.vtx[2:3]"}, {flag("query"), flag("value")});
    EXPECT_EQ(test::numbersOf(all).size(), 6u);
}

TEST_F(Skin, LockedInfluencesKeepTheirWeight) {
    bindBox();
    joint("extra", V3d(0, 1, 0));
    call("skinCluster", {"skinCluster1"},
         {flag("edit"), flag("addInfluence", {"extra"}), flag("weight", {0.0})});
    scene.setNumber(plug("low", "liw"), 1.0);
    const double held = weights().weight(5, 0);
    call("skinPercent", {"skinCluster1", "box.vtx[5]"}, {flag("transformValue", {"extra", 1.0})});
    EXPECT_EQ(weights().weight(5, 0), held);
    EXPECT_NEAR(weights().weight(5, 2), 1.0 - held, 1e-12);
    EXPECT_NE(refusal("skinPercent", {"skinCluster1", "box.vtx[5]"},
                      {flag("transformValue", {"low", 0.2})})
                  .find("locked"),
              std::string::npos);
}

TEST_F(Skin, PoseRestoresAndRefusesWhenDriven) {
    bindBox();
    scene.setNumber(plug("high", "ty"), 7.0);
    scene.setNumber(plug("low", "rz"), 0.5);
    call("dagPose", {"low"}, {flag("restore"), flag("global"), flag("bindPose")});
    EXPECT_EQ(scene.number(plug("high", "ty")), 2.5);
    EXPECT_EQ(scene.number(plug("low", "rz")), 0.0);
    scene.setNumber(plug("low", "tx"), 4.0);
    scene.setNumber(plug("high", "ty"), 7.0);
    scene.setLocked(plug("high", "ty"), true);
    EXPECT_NE(refusal("dagPose", {"low"}, {flag("restore"), flag("bindPose")}).find("cannot reach"),
              std::string::npos);
    EXPECT_EQ(scene.number(plug("low", "tx")), 4.0);  // nothing moved
    EXPECT_NE(refusal("dagPose", {"box"}, {flag("restore")}).find("No pose"), std::string::npos);
}

TEST_F(Skin, PoseResetTakesThePresentStateButNotTheSkin) {
    bindBox();
    scene.setNumber(plug("high", "ty"), 7.0);
    call("dagPose", {"high"}, {flag("reset"), flag("bindPose")});
    EXPECT_EQ(scene.matrix(plug("high", "bps"))[3][1], 5.0);
    EXPECT_EQ(scene.matrix(plug("skinCluster1", "pm[1]"))[3][1], -0.5);
    scene.setNumber(plug("high", "ty"), 1.0);
    call("dagPose", {"high"}, {flag("restore"), flag("bindPose")});
    EXPECT_EQ(scene.number(plug("high", "ty")), 7.0);
    EXPECT_EQ(test::textsOf(call("dagPose", {"low"}, {flag("query"), flag("bindPose")})),
              std::vector<std::string>{"bindPose1"});
    EXPECT_EQ(test::textsOf(call("dagPose", {"bindPose1"}, {flag("query"), flag("members")})),
              (std::vector<std::string>{"low", "high"}));
}

TEST_F(Skin, CopiedWeightsFollowThePlace) {
    bindBox();
    call("polyCube", {},
         {flag("name", {"copy"}), flag("height", {4.0}), flag("subdivisionsY", {4})});
    call("skinCluster", {"low", "copy"},
         {flag("maximumInfluences", {1}), flag("name", {"second"})});
    call("copySkinWeights", {},
         {flag("sourceSkin", {"skinCluster1"}), flag("destinationSkin", {"second"}),
          flag("noMirror"), flag("surfaceAssociation", {"closestPoint"}),
          flag("influenceAssociation", {"name"})});
    const WeightList& copied = *weightsOf(scene, node("second"));
    for (std::size_t v = 0; v < weights().size(); ++v)
        for (std::int32_t i = 0; i < 2; ++i)
            EXPECT_NEAR(copied.weight(v, i), weights().weight(v, i), 1e-6);
}

TEST_F(Skin, PolyCommandsNameAndMeasure) {
    EXPECT_EQ(
        test::textsOf(call("polyCylinder", {}, {flag("radius", {2.0}), flag("axis", {1, 0, 0})})),
        (std::vector<std::string>{"pCylinder1", "polyCylinder1"}));
    EXPECT_FALSE(node("pCylinderShape1").isNull());
    const Box3d box = worldBounds(scene, node("pCylinder1"));
    EXPECT_NEAR(box.max.x, 1.0, 1e-6);
    EXPECT_NEAR(box.max.y, 2.0, 1e-6);
    EXPECT_EQ(test::textsOf(call("polyPlane", {}, {flag("constructionHistory", {false})})),
              std::vector<std::string>{"pPlane1"});
    EXPECT_EQ(meshPoints(scene, node("pPlaneShape1"))->points.size(), 121u);
    EXPECT_NE(refusal("polyCube", {}, {flag("width", {-1.0})}), "");
}

}  // namespace
}  // namespace torvel
