#include <maya/MFnDependencyNode.h>
#include <maya/MString.h>

#include "plugin/fixtures/rigs.h"
#include "toolkit/skin_discovery.h"

namespace torvel::test {

class SkinDiscoveryTest : public PluginScene {
  public:
    Lines namesOf(const MObjectArray& nodes) {
        Lines names;
        for (unsigned int i = 0; i < nodes.length(); ++i)
            names.push_back(MFnDependencyNode(nodes[i]).name().asChar());
        return names;
    }
};

TEST_F(SkinDiscoveryTest, AJointWithoutSkinIsSilent) {
    makeChain(*this, {"hip", "knee"});
    EXPECT_EQ(collectSkinClusters(objects({"|hip", "|hip|knee"})).length(), 0u);
    EXPECT_EQ(collectSkinClusters(MObjectArray()).length(), 0u);
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(SkinDiscoveryTest, JointsOfOneClusterGiveItOnce) {
    makeLeg(*this);
    EXPECT_EQ(namesOf(collectSkinClusters(objects({"|hip|knee|ankle", "|hip", "|hip|knee"}))),
              Lines{"skinCluster1"});
    EXPECT_EQ(namesOf(findSkinClustersOfJoint(object("|hip|knee|ankle"))), Lines{"skinCluster1"});
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(SkinDiscoveryTest, TwoClustersOfOneJointAreBothFound) {
    makeLeg(*this);
    bindTube(*this, "|hip", "sock");
    EXPECT_EQ(namesOf(collectSkinClusters(objects({"|hip|knee|ankle"}))),
              (Lines{"skinCluster1", "skinCluster2"}));
}

TEST_F(SkinDiscoveryTest, ClusterOfAMeshTransform) {
    makeLeg(*this);
    EXPECT_EQ(findSkinClusterOfMesh(object("|leg")), object("skinCluster1"));
    makeTube(*this, "bare");
    EXPECT_TRUE(findSkinClusterOfMesh(object("|bare")).isNull());
    EXPECT_EQ(messages(), Lines{});

    EXPECT_TRUE(findSkinClusterOfMesh(object("|leg|legShape")).isNull());
    EXPECT_EQ(messages(), Lines{"error: No se encontró un nodo mesh asociado."});
}

TEST_F(SkinDiscoveryTest, ATransformLeadsToNoCluster) {
    makeLeg(*this);
    EXPECT_EQ(collectSkinClusters(objects({"|leg"})).length(), 0u);
    EXPECT_EQ(messages(), (Lines{"error: No se encontró un nodo mesh asociado.",
                                 "warning: No se encontró SkinCluster asociado al mesh."}));
    forget();
    makeGroup(*this, "pad");
    EXPECT_EQ(collectSkinClusters(objects({"|pad"})).length(), 0u);
    EXPECT_EQ(messages(), Lines{"warning: No se encontró Mesh asociado al transform."});
}

TEST_F(SkinDiscoveryTest, ForeignObjectsDoNoHarm) {
    MObjectArray nodes = objects({"time1"});
    nodes.append(MObject());
    EXPECT_EQ(collectSkinClusters(nodes).length(), 0u);
    EXPECT_EQ(findSkinClustersOfJoint(MObject()).length(), 0u);
    EXPECT_TRUE(findSkinClusterOfMesh(MObject()).isNull());
}

TEST_F(SkinDiscoveryTest, InfluencesByNameInSortedOrder) {
    makeLeg(*this);
    std::map<std::string, std::string> paths;
    const std::set<std::string> names = getSkinInfluences(object("skinCluster1"), paths);
    EXPECT_EQ(Lines(names.begin(), names.end()), (Lines{"ankle", "hip", "knee"}));
    EXPECT_EQ(paths, (std::map<std::string, std::string>{
                         {"ankle", "|hip|knee|ankle"}, {"hip", "|hip"}, {"knee", "|hip|knee"}}));
}

TEST_F(SkinDiscoveryTest, OtherNodesHaveNoInfluences) {
    std::map<std::string, std::string> paths{{"kept", "|kept"}};
    EXPECT_TRUE(getSkinInfluences(object("time1"), paths).empty());
    EXPECT_TRUE(getSkinInfluences(MObject(), paths).empty());
    EXPECT_EQ(paths.size(), 1u);
    EXPECT_EQ(messages(), Lines(2, "error: No se pudo inicializar MFnSkinCluster."));
}

}  // namespace torvel::test
