#include <maya/MDGModifier.h>
#include <maya/MDagModifier.h>
#include <maya/MFnDagNode.h>
#include <maya/MPlugArray.h>

#include "host/api/api_scene.h"

namespace torvel::test {
namespace {

class PlugTest : public ApiTest {
  protected:
    void SetUp() override {
        scene.make("transform", "a");
        scene.make("transform", "b");
        scene.make("parentConstraint", "hold", "b");
    }
};

TEST_F(PlugTest, nullPlugAnswersEverything) {
    MPlug null;
    MStatus status;
    MPlugArray found;
    EXPECT_TRUE(null.isNull());
    EXPECT_EQ(null.numElements(&status), 0u);
    EXPECT_FALSE(status);
    EXPECT_TRUE(null.elementByPhysicalIndex(0).isNull());
    EXPECT_TRUE(null.child(0).isNull());
    EXPECT_FALSE(null.connectedTo(found, true, true, &status));
    EXPECT_FALSE(status);
    EXPECT_EQ(text(null.name()), "");
}

TEST_F(PlugTest, namesAreLongAndElementsShowTheirIndex) {
    EXPECT_EQ(text(plug("a", "tx").name()), "a.translateX");
    EXPECT_EQ(text(plug("a", "worldMatrix").elementByLogicalIndex(0).name()), "a.worldMatrix[0]");
    EXPECT_TRUE(plug("a", "noSuchThing").isNull());
}

TEST_F(PlugTest, compoundsHaveTheirChildrenInOrder) {
    const MPlug translate = plug("a", "translate");
    EXPECT_TRUE(translate.isCompound());
    ASSERT_EQ(translate.numChildren(), 3u);
    EXPECT_EQ(text(translate.child(2).name()), "a.translateZ");
    EXPECT_TRUE(translate.child(3).isNull());
    EXPECT_TRUE(translate.child(plug("b", "translateY").attribute()) == plug("a", "translateY"));
}

TEST_F(PlugTest, dynamicAttributesAreFoundByBothNames) {
    scene.call(
        "addAttr", {"a"},
        {flag("longName", {"bend"}), flag("shortName", {"bn"}), flag("attributeType", {"double"})});
    EXPECT_EQ(text(plug("a", "bn").name()), "a.bend");
    EXPECT_TRUE(MFnDependencyNode(find("a")).hasAttribute("bend"));
    EXPECT_FALSE(MFnDependencyNode(find("b")).hasAttribute("bend"));
}

TEST_F(PlugTest, physicalIndexFindsTheElementsOfASparseArray) {
    connect("a.translate", "hold.target[5].targetTranslate");
    connect("b.translate", "hold.target[0].targetTranslate");
    const MPlug target = plug("hold", "target");
    ASSERT_EQ(target.numElements(), 2u);
    EXPECT_EQ(target.elementByPhysicalIndex(0).logicalIndex(), 0u);
    EXPECT_EQ(target.elementByPhysicalIndex(1).logicalIndex(), 5u);
    EXPECT_TRUE(target.elementByPhysicalIndex(2).isNull());
}

TEST_F(PlugTest, connectionsOfThisVeryPlugAreGiven) {
    connect("a.translateX", "b.translateX");
    connect("a.translateX", "b.translateY");
    MPlugArray found(3, plug("a", "visibility"));
    EXPECT_TRUE(plug("b", "translateX").connectedTo(found, true, false));
    ASSERT_EQ(found.length(), 1u);
    EXPECT_EQ(text(found[0].name()), "a.translateX");
    EXPECT_TRUE(plug("a", "translateX").connectedTo(found, false, true));
    ASSERT_EQ(found.length(), 2u);
    EXPECT_EQ(text(found[1].name()), "b.translateY");
    EXPECT_FALSE(plug("a", "translate").connectedTo(found, true, true)) << "children do not count";
    EXPECT_EQ(found.length(), 0u);
}

TEST_F(PlugTest, plugOfADeletedNodeIsNull) {
    const MPlug gone = plug("a", "translateX");
    scene.call("delete", {"a"});
    MPlugArray found;
    EXPECT_TRUE(gone.isNull());
    EXPECT_FALSE(gone.connectedTo(found, true, true));
    EXPECT_FALSE(MDGModifier().connect(gone, plug("b", "translateX")));
}

// --- modifiers ----------------------------------------------------------------------------------

TEST_F(PlugTest, nothingHappensBeforeDoIt) {
    MDGModifier modifier;
    EXPECT_TRUE(modifier.connect(plug("a", "translateX"), plug("b", "translateX")));
    EXPECT_FALSE(plug("b", "translateX").isConnected());
    EXPECT_TRUE(modifier.doIt());
    EXPECT_TRUE(plug("b", "translateX").isConnected());
    EXPECT_TRUE(modifier.doIt()) << "what was done is not done again";
    EXPECT_TRUE(modifier.undoIt());
    EXPECT_FALSE(plug("b", "translateX").isConnected());
}

TEST_F(PlugTest, rewiringKeepsTheOrderOfTheCalls) {
    connect("a.translateX", "hold.target[2].targetWeight");
    const MPlug element = plug("hold", "target").elementByPhysicalIndex(0);
    const MPlug weight = plug("hold", "target[2].targetWeight");
    ASSERT_FALSE(element.isNull());
    MDGModifier modifier;
    modifier.disconnect(plug("a", "translateX"), weight);
    modifier.connect(plug("b", "translateX"), weight);
    EXPECT_TRUE(modifier.doIt());
    MPlugArray found;
    ASSERT_TRUE(weight.connectedTo(found, true, false));
    EXPECT_EQ(text(found[0].name()), "b.translateX");
}

TEST_F(PlugTest, badConnectionsAreRefusedAtOnce) {
    MDGModifier modifier;
    EXPECT_FALSE(modifier.connect(MPlug(), plug("b", "translateX")));
    EXPECT_FALSE(modifier.connect(plug("a", "message"), plug("b", "translateX")));
    EXPECT_FALSE(modifier.connect(plug("a", "translate"), plug("b", "translateX")));
    EXPECT_FALSE(modifier.connect(plug("a", "translateX"),
                                  plug("b", "worldMatrix").elementByLogicalIndex(0)));
    EXPECT_TRUE(modifier.doIt()) << "nothing was queued";
}

TEST_F(PlugTest, reparentKeepsTheLocalTransformAndRefusesCycles) {
    scene.set("a.translate", 0, 5, 0);
    scene.set("b.translate", 1, 0, 0);
    MDagModifier modifier;
    EXPECT_TRUE(modifier.reparentNode(find("b"), find("a")));
    EXPECT_TRUE(modifier.doIt());
    expectNear(scene.numbers("b.translate"), {1, 0, 0});
    expectNear(scene.worldPosition("b"), {1, 5, 0});
    EXPECT_FALSE(modifier.reparentNode(find("a"), find("b")));
    EXPECT_FALSE(modifier.reparentNode(MObject::kNullObj, find("b")));
    EXPECT_TRUE(modifier.reparentNode(find("b"), MObject::kNullObj));
    EXPECT_TRUE(modifier.doIt());
    EXPECT_EQ(text(path("b").fullPathName()), "|b");
}

TEST_F(PlugTest, aDeletedParentIsNotTakenForTheWorld) {
    const MObject gone = find("a");
    scene.call("delete", {"a"});
    MDagModifier modifier;
    EXPECT_FALSE(modifier.reparentNode(find("b"), gone));
    MStatus status;
    EXPECT_TRUE(modifier.createNode("transform", gone, &status).isNull());
    EXPECT_FALSE(status);
}

TEST_F(PlugTest, createdNodesAreThereAfterDoIt) {
    MDagModifier modifier;
    MObject made = modifier.createNode("transform", MObject::kNullObj);
    EXPECT_TRUE(modifier.doIt());
    EXPECT_EQ(text(MFnDependencyNode(made).setName("fresh")), "fresh");
    EXPECT_TRUE(scene.exists("|fresh"));
    EXPECT_TRUE(modifier.createNode("noSuchType").isNull());
}

}  // namespace
}  // namespace torvel::test
