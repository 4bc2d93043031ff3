#include <vector>

#include <maya/MDagPathArray.h>
#include <maya/MFnSkinCluster.h>
#include <maya/MObjectArray.h>

#include "host/api/api_scene.h"

namespace torvel::test {
namespace {

/// A body whose shape is fed by a skin, behind a tweak and before a group filter, as files hold it.
class SkinFunctionsTest : public ApiTest {
  protected:
    void SetUp() override {
        scene.make("transform", "body");
        scene.make("mesh", "bodyShape", "body");
        scene.make("mesh", "bodyOrig", "body");
        scene.make("skinCluster", "skin");
        scene.make("tweak", "points");
        scene.make("groupParts", "parts");
        for (const char* name : {"hip", "knee", "ankle"})
            scene.make("joint", name);
        connect("bodyOrig.worldMesh[0]", "points.input[0].inputGeometry");
        connect("points.outputGeometry[0]", "skin.input[0].inputGeometry");
        connect("skin.outputGeometry[0]", "parts.inputGeometry");
        connect("parts.outputGeometry", "bodyShape.inMesh");
        connect("ankle.worldMatrix[0]", "skin.matrix[7]");
        connect("hip.worldMatrix[0]", "skin.matrix[0]");
        connect("knee.worldMatrix[0]", "skin.matrix[2]");
    }
    std::string namesOf(const MObjectArray& objects) {
        std::string names;
        for (unsigned int i = 0; i < objects.length(); ++i)
            names += nameOf(objects[i]) + " ";
        return names;
    }
};

TEST_F(SkinFunctionsTest, influencesComeByTheirIndex) {
    MFnSkinCluster skin(find("skin"));
    MDagPathArray paths;
    MStatus status;
    ASSERT_EQ(skin.influenceObjects(paths, &status), 3u);
    EXPECT_TRUE(status);
    EXPECT_EQ(text(paths[0].fullPathName()), "|hip");
    EXPECT_EQ(text(paths[1].fullPathName()), "|knee");
    EXPECT_EQ(text(paths[2].fullPathName()), "|ankle");
}

TEST_F(SkinFunctionsTest, geometryIsFoundThroughOtherDeformers) {
    MFnSkinCluster skin(find("skin"));
    MObjectArray shapes(2, find("hip"));
    EXPECT_TRUE(skin.getOutputGeometry(shapes));
    EXPECT_EQ(namesOf(shapes), "bodyShape ");
    EXPECT_TRUE(skin.getInputGeometry(shapes));
    EXPECT_EQ(namesOf(shapes), "bodyOrig ");
}

TEST_F(SkinFunctionsTest, anUnboundSkinHasNoGeometry) {
    scene.make("skinCluster", "loose");
    MFnSkinCluster skin(find("loose"));
    MObjectArray shapes;
    MDagPathArray paths;
    EXPECT_TRUE(skin.getOutputGeometry(shapes));
    EXPECT_EQ(shapes.length(), 0u);
    EXPECT_EQ(skin.influenceObjects(paths), 0u);
    MStatus status;
    EXPECT_EQ(MFnSkinCluster().influenceObjects(paths, &status), 0u);
    EXPECT_FALSE(status);
}

TEST_F(SkinFunctionsTest, isASkinAndAGeometryFilter) {
    const MObject skin = find("skin");
    EXPECT_TRUE(skin.hasFn(MFn::kSkinClusterFilter));
    EXPECT_TRUE(skin.hasFn(MFn::kGeometryFilt));
    EXPECT_FALSE(skin.hasFn(MFn::kDagNode));
    EXPECT_STREQ(skin.apiTypeStr(), "kSkinClusterFilter");
    EXPECT_TRUE(MFnBase::isValid(skin.apiType()));
}

}  // namespace
}  // namespace torvel::test
