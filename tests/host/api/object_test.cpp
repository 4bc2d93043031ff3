#include <utility>

#include <maya/MFnDagNode.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MFnSkinCluster.h>
#include <maya/MFnTransform.h>
#include <maya/MVector.h>

#include "host/api/api_scene.h"
#include "nodes/core/fn_numbers.h"

namespace torvel::test {
namespace {

using ObjectTest = ApiTest;

TEST_F(ObjectTest, nullObjectAnswersEverything) {
    const MObject null;
    EXPECT_TRUE(null.isNull());
    EXPECT_TRUE(null == MObject::kNullObj);
    EXPECT_FALSE(null.hasFn(MFn::kDependencyNode));
    EXPECT_EQ(null.apiType(), MFn::kInvalid);
    EXPECT_STREQ(null.apiTypeStr(), "kInvalid");
    EXPECT_FALSE(MFnBase::isValid(null.apiType()));
}

TEST_F(ObjectTest, jointHasTheFunctionSetsOfItsBases) {
    const MObject joint = make("joint", "hip");
    EXPECT_TRUE(joint.hasFn(MFn::kDagNode));
    EXPECT_TRUE(joint.hasFn(MFn::kTransform));
    EXPECT_TRUE(joint.hasFn(MFn::kJoint));
    EXPECT_FALSE(joint.hasFn(MFn::kMesh));
    EXPECT_EQ(joint.apiType(), MFn::kJoint);
    EXPECT_STREQ(joint.apiTypeStr(), "kJoint");
}

TEST_F(ObjectTest, constraintsAreTransformsAndPoleVectorIsNoPointConstraint) {
    const MObject pole = make("poleVectorConstraint", "pole", scene.make("transform", "holder"));
    EXPECT_TRUE(pole.hasFn(MFn::kTransform));
    EXPECT_TRUE(pole.hasFn(MFn::kConstraint));
    EXPECT_FALSE(pole.hasFn(MFn::kPointConstraint));
}

TEST_F(ObjectTest, identitySurvivesRenameAndReparent) {
    MObject joint = make("joint", "hip");
    scene.make("transform", "group");
    scene.call("rename", {"hip", "pelvis"});
    scene.call("parent", {"pelvis", "group"});
    EXPECT_TRUE(joint == find("pelvis"));
    EXPECT_EQ(nameOf(joint), "pelvis");
}

TEST_F(ObjectTest, deletedNodeIsHarmlessAndItsPlaceIsNotTakenOver) {
    const MObject gone = make("joint", "hip");
    scene.call("delete", {"hip"});
    const MObject fresh = make("joint", "hip");
    EXPECT_TRUE(gone.isNull());
    EXPECT_FALSE(gone.hasFn(MFn::kJoint));
    EXPECT_EQ(gone.apiType(), MFn::kInvalid);
    EXPECT_FALSE(gone == fresh);
    MStatus status;
    MFnDagNode fn(gone, &status);
    EXPECT_EQ(status, MS::kInvalidParameter);
    EXPECT_EQ(text(fn.name(&status)), "");
    EXPECT_FALSE(status);
}

TEST_F(ObjectTest, functionSetOfADeletedNodeFailsQuietly) {
    MObject joint = make("joint", "hip");
    MFnTransform fn(joint);
    scene.call("delete", {"hip"});
    scene.clearLines();
    MStatus status;
    EXPECT_EQ(fn.childCount(&status), 0u);
    EXPECT_FALSE(status);
    EXPECT_TRUE(fn.parent(0).isNull());
    EXPECT_EQ(text(fn.setName("other")), "");
    EXPECT_FALSE(fn.setTranslation(MVector(1, 2, 3), MSpace::kTransform));
    EXPECT_TRUE(fn.getTranslation(MSpace::kTransform) == MVector());
    EXPECT_TRUE(fn.findPlug("translateX", true).isNull());
    EXPECT_TRUE(scene.lines().empty());
}

TEST_F(ObjectTest, functionSetsRefuseObjectsOfAnotherKind) {
    const MObject joint = make("joint", "hip");
    MStatus status;
    MFnSkinCluster skin(joint, &status);
    EXPECT_EQ(status, MS::kInvalidParameter);
    MFnNurbsCurve curve(joint, &status);
    EXPECT_EQ(status, MS::kInvalidParameter);
    EXPECT_EQ(curve.numCVs(), 0);
    MFnTransform transform(joint, &status);
    EXPECT_TRUE(status);
    EXPECT_EQ(transform.setObject(MObject::kNullObj), MS::kInvalidParameter);
    EXPECT_TRUE(transform.object().isNull());
}

TEST_F(ObjectTest, setNameMakesNamesLegalAndUnique) {
    MObject first = make("transform", "a");
    MObject second = make("transform", "b");
    EXPECT_EQ(text(MFnDependencyNode(first).setName("|shoulder|elbow_attr")),
              "shoulder_elbow_attr");
    EXPECT_EQ(text(MFnDependencyNode(second).setName("shoulder_elbow_attr")),
              "shoulder_elbow_attr1");
    MStatus status;
    EXPECT_EQ(text(MFnDependencyNode(second).setName("||", false, &status)),
              "shoulder_elbow_attr1");
    EXPECT_FALSE(status);
}

TEST_F(ObjectTest, numbersOfNodeTypesAreThoseOfTheApi) {
    EXPECT_EQ(static_cast<int>(fn::kTransform), MFn::kTransform);
    EXPECT_EQ(static_cast<int>(fn::kIkHandle), MFn::kIkHandle);
    EXPECT_EQ(static_cast<int>(fn::kConstraint), MFn::kConstraint);
    const std::pair<const char*, MFn::Type> rows[] = {
        {"transform", MFn::kTransform},
        {"joint", MFn::kJoint},
        {"mesh", MFn::kMesh},
        {"nurbsCurve", MFn::kNurbsCurve},
        {"skinCluster", MFn::kSkinClusterFilter},
        {"aimConstraint", MFn::kAimConstraint},
        {"orientConstraint", MFn::kOrientConstraint},
        {"pointConstraint", MFn::kPointConstraint},
        {"parentConstraint", MFn::kParentConstraint},
    };
    for (const auto& [name, number] : rows) {
        const NodeType* type = scene.scene().types().find(name);
        ASSERT_NE(type, nullptr) << name;
        EXPECT_EQ(type->apiType, static_cast<int>(number)) << name;
        EXPECT_EQ(type->apiTypeName, MFnBase::typeString(number)) << name;
    }
}

}  // namespace
}  // namespace torvel::test
