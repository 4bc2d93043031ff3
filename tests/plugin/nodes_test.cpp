#include <maya/MSelectionList.h>

#include "plugin/fixtures/rigs.h"
#include "toolkit/nodes.h"

namespace torvel::test {

class NodesTest : public PluginScene {};

TEST_F(NodesTest, NamesOfDagNodes) {
    makeChain(*this, {"hip", "knee"});
    EXPECT_STREQ(getNodeName(object("|hip|knee"), false).asChar(), "knee");
    EXPECT_STREQ(getNodeName(object("|hip|knee"), true).asChar(), "|hip|knee");
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(NodesTest, NodesOutsideTheDagHaveNoName) {
    const Lines oneError{"error: No se pudo obtener el nombre del objeto."};
    for (const MObject& foreign : {MObject(), object("time1")}) {
        forget();
        EXPECT_EQ(getNodeName(foreign, false).length(), 0u);
        EXPECT_EQ(messages(), oneError);
    }
}

TEST_F(NodesTest, DeletedNodesHaveNoName) {
    makeGroup(*this, "gone");
    const MObject gone = object("gone");
    python("cmds.delete('gone')");
    forget();
    EXPECT_EQ(getNodeName(gone, true).length(), 0u);
    EXPECT_EQ(messages(), Lines{"error: No se pudo obtener el nombre del objeto."});
}

TEST_F(NodesTest, LookUpTakesTheShallowestNamesake) {
    makeChain(*this, {"hip", "knee"});
    makeGroup(*this, "late");
    makeGroup(*this, "knee", "|late");
    makeGroup(*this, "knee");
    EXPECT_EQ(getObjectByName("knee"), object("|knee"));
    EXPECT_EQ(getObjectByName("hip|knee"), object("|hip|knee"));
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(NodesTest, LookUpAmongEqualDepthsFollowsTheDag) {
    makeGroup(*this, "first");
    makeGroup(*this, "second");
    makeGroup(*this, "same", "|second");
    makeGroup(*this, "same", "|first");
    EXPECT_EQ(getObjectByName("same"), object("|first|same"));
}

TEST_F(NodesTest, UnknownNamesAreReported) {
    EXPECT_TRUE(getObjectByName("nobody").isNull());
    EXPECT_EQ(messages(), Lines{"error: No se encontró el objeto: nobody"});
}

TEST_F(NodesTest, ParentsEndAtTheWorld) {
    makeChain(*this, {"hip", "knee"});
    EXPECT_EQ(getParentNode(object("|hip|knee")), object("|hip"));
    const MObject world = getParentNode(object("|hip"));
    EXPECT_FALSE(world.isNull());
    EXPECT_FALSE(world.hasFn(MFn::kJoint));
    EXPECT_EQ(messages(), Lines{});

    EXPECT_TRUE(getParentNode(object("time1")).isNull());
    EXPECT_TRUE(getParentNode(MObject()).isNull());
    EXPECT_EQ(messages(), Lines(2, "error: El objeto no es un nodo DAG válido."));
}

TEST_F(NodesTest, MeshChildIsTheFirstOneIntermediateOrNot) {
    makeLeg(*this);
    EXPECT_EQ(getMeshChild(object("|leg")), object("|leg|legShape"));
    EXPECT_TRUE(getMeshChild(object("|hip")).isNull());
    EXPECT_TRUE(getMeshChild(object("|leg|legShape")).isNull());
    EXPECT_EQ(messages(), Lines{});

    EXPECT_TRUE(getMeshChild(object("skinCluster1")).isNull());
    EXPECT_TRUE(getMeshChild(MObject()).isNull());
    EXPECT_EQ(messages(), Lines(2, "error: El objeto no es un nodo DAG."));
}

TEST_F(NodesTest, SelectionListsKeepOrderAndRepeats) {
    makeChain(*this, {"hip", "knee"});
    MObjectArray nodes = objects({"|hip|knee", "|hip", "|hip|knee"});
    const MSelectionList list = objectsToSelectionList(nodes);
    EXPECT_EQ(list.length(), 3u);
    EXPECT_EQ(pathsOf(selectionToArray(list)), pathsOf(nodes));
}

TEST_F(NodesTest, ArrayContainsComparesObjects) {
    makeChain(*this, {"hip", "knee"});
    MObjectArray nodes = objects({"|hip"});
    EXPECT_TRUE(arrayContains(nodes, object("|hip")));
    EXPECT_FALSE(arrayContains(nodes, object("|hip|knee")));
    EXPECT_FALSE(arrayContains(nodes, MObject()));
    nodes.append(MObject());
    EXPECT_TRUE(arrayContains(nodes, MObject()));
    EXPECT_FALSE(arrayContains(MObjectArray(), MObject()));
}

TEST_F(NodesTest, SelectionIsPrintedWithTypes) {
    makeLeg(*this);
    select({"|hip|knee", "skinCluster1", "|leg"});
    printSelection();
    EXPECT_EQ(messages(), (Lines{"info: Objeto: knee | Tipo: joint",
                                 "info: Objeto: skinCluster1 | Tipo: skinCluster",
                                 "info: Objeto: leg | Tipo: transform"}));
}

TEST_F(NodesTest, Suffixes) {
    EXPECT_TRUE(endsWith("arm_FK", "_FK"));
    EXPECT_FALSE(endsWith("arm_fk", "_FK"));
    EXPECT_FALSE(endsWith("FK", "_FK"));
    EXPECT_TRUE(endsWith("_FK", "_FK"));
    EXPECT_TRUE(endsWith("arm", ""));
    EXPECT_TRUE(endsWith("", ""));
}

}  // namespace torvel::test
