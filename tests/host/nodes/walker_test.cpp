#include <set>

#include "node_scene.h"
#include "nodes/animation/anim_curve.h"
#include "nodes/core/default_nodes.h"
#include "nodes/shape/nurbs_curve.h"

namespace torvel::test {

class Walker : public NodeScene {
  protected:
    NodeHandle makeAny(const NodeType& type) {
        NodeHandle parent;
        if (type.is(kShapeType))
            parent = make("transform", "holder");
        return make(type.name.c_str(), "", parent);
    }
    static std::vector<const NodeType*> makeable() {
        std::vector<const NodeType*> out;
        for (const auto& type : nodeTypes().all())
            if (!type->is(kAbstractType) && type->name != "world")
                out.push_back(type.get());
        return out;
    }
};

TEST_F(Walker, EveryTypeIsMadeWithItsDefaults) {
    for (const NodeType* type : makeable()) {
        SCOPED_TRACE(type->name);
        const NodeHandle node = makeAny(*type);
        for (AttrIndex i = 0; i < type->attrs.size(); ++i) {
            const AttrInfo& attr = type->attrs[i];
            EXPECT_EQ(type->byName.at(attr.longName), i) << attr.longName;
            if (isNumeric(attr.type) && !attr.is(kOutput) && attr.arrayOwner == kNoAttr) {
                EXPECT_EQ(scene.number(Plug(node, i)), attr.defaultValue) << attr.longName;
                EXPECT_GE(attr.defaultValue, attr.minimum) << attr.longName;
                EXPECT_LE(attr.defaultValue, attr.maximum) << attr.longName;
            }
        }
    }
}

TEST_F(Walker, NamesAreUniqueWithinAType) {
    for (const auto& type : nodeTypes().all()) {
        std::set<std::string> longNames, shortNames;
        for (const AttrInfo& attr : type->attrs) {
            EXPECT_TRUE(longNames.insert(attr.longName).second)
                << type->name << "." << attr.longName;
            EXPECT_TRUE(shortNames.insert(attr.shortName).second)
                << type->name << "." << attr.shortName;
        }
    }
}

TEST_F(Walker, EveryAffectedOutputGetsDirty) {
    for (const NodeType* type : makeable()) {
        const NodeHandle node = makeAny(*type);
        for (AttrIndex i = 0; i < type->attrs.size(); ++i)
            for (AttrIndex output : type->attrs[i].affects) {
                SCOPED_TRACE(type->name + "." + type->attrs[i].longName + " -> " +
                             type->attrs[output].longName);
                ASSERT_TRUE(type->attrs[output].is(kOutput));
                scene.evaluate(Plug(node, output));
                const Slot* slot = scene.node(node)->peek(output);
                ASSERT_TRUE(slot && (slot->state & kClean));
                scene.setDirty(Plug(node, i));
                EXPECT_FALSE(slot->state & kClean);
            }
    }
}

TEST_F(Walker, ComputedVectorsStandNextToTheirCompound) {
    for (const auto& type : nodeTypes().all())
        for (AttrIndex i = 0; i < type->attrs.size(); ++i)
            for (std::size_t c = 0; type->attrs[i].type == AttrType::Double3 && c < 3; ++c)
                EXPECT_EQ(type->attrs[i].children.at(c), i + 1 + c)
                    << type->name << "." << type->attrs[i].longName;
}

TEST_F(Walker, FunctionSets) {
    const auto has = [](const char* type, int fn) { return nodeTypes().find(type)->hasFn(fn); };
    for (const char* type :
         {"transform", "joint", "parentConstraint", "scaleConstraint", "ikHandle"})
        EXPECT_TRUE(has(type, 110) && has(type, 107)) << type;
    EXPECT_TRUE(has("joint", 121));
    EXPECT_TRUE(has("parentConstraint", 242) && has("orientConstraint", 239) &&
                has("pointConstraint", 240));
    EXPECT_TRUE(has("aimConstraint", 111) && has("poleVectorConstraint", 933));
    EXPECT_FALSE(has("poleVectorConstraint", 240));
    EXPECT_TRUE(has("nurbsCurve", 267) && has("mesh", 296) && has("mesh", 107));
    EXPECT_FALSE(has("mesh", 110) || has("nurbsCurve", 110) || has("world", 110));
    EXPECT_TRUE(has("dagPose", 4));
    EXPECT_FALSE(has("dagPose", 107));
}

TEST_F(Walker, TargetsNameTheirTransformsBeforeTheWeight) {
    for (const char* name : {"parentConstraint", "pointConstraint", "orientConstraint",
                             "aimConstraint", "scaleConstraint", "poleVectorConstraint"}) {
        const NodeType& type = *nodeTypes().find(name);
        const AttrInfo& target = type.attrs[type.byName.at("tg")];
        EXPECT_GT(type.attrs[type.byName.at("tw")].childNumber,
                  type.attrs[type.byName.at("tpm")].childNumber);
        EXPECT_NE(type.attrs[target.children.front()].shortName, "tw") << name;
    }
}

TEST_F(Walker, DefaultNodesAreMadeOnce) {
    createDefaultNodes(scene);
    const std::size_t count = scene.nodeCount();
    createDefaultNodes(scene);
    EXPECT_EQ(scene.nodeCount(), count);
    const NodeHandle group = scene.names().lookUp("initialShadingGroup");
    ASSERT_FALSE(group.isNull());
    EXPECT_TRUE(scene.node(group)->isDefault);
    EXPECT_FALSE(scene.names().lookUp("ikSystem").isNull());
    EXPECT_FALSE(scene.document().modified);
}

TEST_F(Walker, ConversionsMultiply) {
    const NodeHandle from = make("transform", "from"), to = make("transform", "to");
    const NodeHandle conversion = make("unitConversion", "");
    set(conversion, "cf", 0.017453292519943295);
    link(from, "tx", conversion, "input");
    link(conversion, "output", to, "rz");
    set(from, "tx", 90);
    EXPECT_NEAR(get(to, "r").z, kPi / 2, 1e-15);
}

TEST_F(Walker, LocatorsTellTheirWorldPosition) {
    const NodeHandle top = make("transform", "top"), shape = make("locator", "", top);
    set(top, "t", 1, 2, 3);
    set(shape, "lp", 0, 0, 5);
    expectNear(scene.vec3(plug(shape, "wp[0]")), V3d(1, 2, 8));
    set(top, "tx", 4);
    expectNear(scene.vec3(plug(shape, "wp[0]")), V3d(4, 2, 8));
}

TEST_F(Walker, CurvesKeepTheirPointsOrTheDifferenceToTheirHistory) {
    const NodeHandle top = make("transform", "top"), shape = make("nurbsCurve", "", top);
    const NodeHandle maker = make("nurbsCurve", "", make("transform", "maker"));
    auto line = std::make_shared<NurbsCurveData>();
    line->degree = 1;
    line->spans = 1;
    line->knots = {0, 1};
    line->cvs = {V3d(0, 0, 0), V3d(1, 0, 0)};
    EXPECT_FALSE(curveOf(scene, shape));
    setCurve(scene, shape, line);
    ASSERT_TRUE(setCurvePoints(scene, shape, {V3d(0, 1, 0), V3d(1, 1, 0)}));
    expectNear(curveOf(scene, shape)->cvs[1], V3d(1, 1, 0));
    expectNear(line->cvs[1], V3d(1, 0, 0));
    set(top, "t", 0, 0, 9);
    expectNear(scene.dataAs<NurbsCurveData>(plug(shape, "ws[0]"))->cvs[0], V3d(0, 1, 9));

    setCurve(scene, maker, line);
    link(maker, "local", shape, "create");
    expectNear(curveOf(scene, shape)->cvs[1], V3d(1, 0, 0));
    ASSERT_TRUE(setCurvePoints(scene, shape, {V3d(0, 0, 0), V3d(1, 0, 5)}));
    expectNear(curveOf(scene, shape)->cvs[1], V3d(1, 0, 5));
    ASSERT_TRUE(setCurvePoints(scene, maker, {V3d(0, 0, 0), V3d(3, 0, 0)}));
    expectNear(curveOf(scene, shape)->cvs[1], V3d(3, 0, 5));
}

TEST_F(Walker, AnimationRunsOverTheSceneTime) {
    const NodeHandle n = make("transform", "n"), curve = make("animCurveTA", "n_rotateX");
    setKeys(scene, curve, {{0, 0}, {15, 40}, {30, -40}, {45, 0}});
    link(curve, "output", n, "rx");
    const auto at = [&](double frame) {
        scene.setNumber(plug(scene.timeNode(), "outTime"), frame);
        dirtyTimeCurves(scene);
        return scene.number(plug(n, "rx"));
    };
    EXPECT_NEAR(at(15), 40, 1e-12);
    EXPECT_NEAR(at(7.5), 20, 1e-12);
    EXPECT_NEAR(at(5), 40 * (3.0 / 9 - 2.0 / 27), 1e-12);  // smoothstep between extremes
    EXPECT_NEAR(at(22.5), 0, 1e-12);
    EXPECT_NEAR(at(-3), 0, 1e-12);
    EXPECT_NEAR(at(99), 0, 1e-12);
}

TEST(AnimCurve, TangentKinds) {
    std::vector<CurveKey> keys{
        {0, 0, kLinearTangent, kLinearTangent}, {10, 5, kLinearTangent, kStepTangent}, {20, 9}};
    EXPECT_NEAR(curveValue(keys, 4), 2, 1e-12);
    EXPECT_EQ(curveValue(keys, 19.9), 5);
    keys[1].outKind = kStepNextTangent;
    EXPECT_EQ(curveValue(keys, 10.1), 9);
    EXPECT_EQ(curveValue({}, 3), 0);
    keys = {{0, 0, kFixedTangent, kFixedTangent, 0, 2}, {1, 0, kFixedTangent, kFixedTangent, 2, 0}};
    EXPECT_NEAR(curveValue(keys, 0.25), 2 * (0.140625 - 0.046875), 1e-12);
}

}  // namespace torvel::test
