#include "plugin/fixtures/expected_scripts.h"
#include "plugin/fixtures/rig_state.h"
#include "plugin/fixtures/rigs.h"
#include "toolkit/reconnection.h"

namespace torvel::test {

/// The leg, and a second skeleton of the same names under the group "new".
class ReconnectionTest : public PluginScene {
  public:
    ReconnectionTest() {
        makeLeg(*this);
        makeGroup(*this, "new");
    }

    void makeTwin(const std::vector<std::string>& names) {
        makeChain(*this, names, "|new");
        for (const std::string& name : names) {
            python("for j in cmds.ls('" + name +
                   "', long=True):\n"
                   "    if not cmds.attributeQuery('lockInfluenceWeights', node=j, exists=True):\n"
                   "        cmds.addAttr(j, longName='lockInfluenceWeights', shortName='liw', "
                   "attributeType='bool')\n");
        }
        forget();
    }

    void reconnect() {
        reconnectInfluencesByName(object("|hip"), object("|new|hip"), object("skinCluster1"));
    }

    std::string lockSource(int index) {
        const Plug lock = plug("skinCluster1", "lockWeights[" + std::to_string(index) + "]");
        return scene().plugName(scene().source(lock));
    }
    std::map<int, std::string> influences() { return stateOf(*this).influences["skinCluster1"]; }
};

TEST_F(ReconnectionTest, EachInfluenceKeepsItsIndexAndWeights) {
    makeTwin({"hip", "knee", "ankle"});
    const RigState before = stateOf(*this);
    reconnect();
    EXPECT_EQ(transcript(), Lines{"info: Reconexión por nombre completada."});
    EXPECT_EQ(influences(),
              (std::map<int, std::string>{
                  {0, "|new|hip"}, {1, "|new|hip|knee"}, {2, "|new|hip|knee|ankle"}}));
    EXPECT_EQ(lockSource(1), "new|hip|knee.lockInfluenceWeights");
    EXPECT_EQ(stateOf(*this).weights, before.weights);
}

TEST_F(ReconnectionTest, ColoursAreNotMoved) {
    makeTwin({"hip", "knee", "ankle"});
    const Plug colour = plug("skinCluster1", "influenceColor[0]");
    const Plug source = scene().source(colour);
    ASSERT_FALSE(source.isNull());
    reconnect();
    EXPECT_EQ(scene().source(colour), source);
}

TEST_F(ReconnectionTest, AMissingJointStaysWired) {
    makeTwin({"hip", "shin", "ankle"});
    reconnect();
    EXPECT_EQ(transcript(), (Lines{"warning: No se encontró duplicado para el joint: knee",
                                   "info: Reconexión por nombre completada."}));
    EXPECT_EQ(influences(), (std::map<int, std::string>{
                                {0, "|new|hip"}, {1, "|hip|knee"}, {2, "|new|hip|shin|ankle"}}));
}

TEST_F(ReconnectionTest, TheLaterNamesakeWins) {
    makeTwin({"hip", "knee"});
    makeChain(*this, {"knee"}, "|new|hip|knee");
    python(
        "cmds.addAttr('|new|hip|knee|knee', longName='lockInfluenceWeights', "
        "attributeType='bool')");
    reconnect();
    EXPECT_EQ(influences()[1], "|new|hip|knee|knee");
}

TEST_F(ReconnectionTest, SparseInfluencesAreFoundByPlace) {
    makeTwin({"hip", "knee", "ankle"});
    python(
        "cmds.disconnectAttr('|hip|knee.worldMatrix[0]', 'skinCluster1.matrix[1]')\n"
        "cmds.connectAttr('|hip|knee.worldMatrix[0]', 'skinCluster1.matrix[9]')\n");
    reconnect();
    std::map<int, std::string> found = influences();
    found.erase(1);
    EXPECT_EQ(found, (std::map<int, std::string>{
                         {0, "|new|hip"}, {2, "|new|hip|knee|ankle"}, {9, "|new|hip|knee"}}));
}

TEST_F(ReconnectionTest, ForeignInfluencesAreLeftAlone) {
    makeChain(*this, {"other"});
    python("cmds.connectAttr('|other.worldMatrix[0]', 'skinCluster1.matrix[3]')");
    makeTwin({"hip", "knee", "ankle"});
    reconnect();
    EXPECT_EQ(influences()[3], "|other");
    EXPECT_EQ(messages(), Lines{"info: Reconexión por nombre completada."});
}

TEST_F(ReconnectionTest, NullObjectsDoNoHarm) {
    const RigState before = stateOf(*this);
    reconnectInfluencesByName(MObject(), MObject(), MObject());
    reconnectInfluencesByName(object("|hip"), object("|hip"), MObject());
    reconnectSkinCluster(MObjectArray(), MObjectArray(), objects({"skinCluster1"}));
    expectSameRig(stateOf(*this), before);
}

TEST_F(ReconnectionTest, MismatchStopsTheWholeSecondHalf) {
    python("cmds.group('|hip', name='tempOldSkeletonGroup')");
    makeChain(*this, {"hip", "knee"});
    forget();
    reconnectSkinCluster(objects({"|tempOldSkeletonGroup|hip"}), MObjectArray(),
                         objects({"skinCluster1"}));
    EXPECT_EQ(
        transcript(),
        (Lines{"info: Reconnecting skinCluster: skinCluster1",
               "error: El número de joints no coincide: originalRoot (3), duplicateRoot (2)",
               "info: Joints en originalRoot:", "info:   hip", "info:   knee", "info:   ankle",
               "info: Joints en duplicateRoot:", "info:   hip", "info:   knee"}));
    EXPECT_TRUE(exists("|tempOldSkeletonGroup|hip"));
}

TEST_F(ReconnectionTest, TheWholeSecondHalf) {
    python(
        "cmds.skinCluster('skinCluster1', edit=True, unbindKeepHistory=True)\n"
        "cmds.group('|hip', name='tempOldSkeletonGroup')\n");
    makeChain(*this, {"hip", "knee", "ankle"});
    for (const char* joint : {"|hip", "|hip|knee", "|hip|knee|ankle"})
        python(std::string("cmds.addAttr('") + joint +
               "', longName='lockInfluenceWeights', attributeType='bool')");
    forget();
    reconnectSkinCluster(objects({"|tempOldSkeletonGroup|hip"}), MObjectArray(),
                         objects({"skinCluster1"}));
    EXPECT_EQ(transcript(), (Lines{"info: Reconnecting skinCluster: skinCluster1",
                                   "info: Reconexión por nombre completada.", deleteGroupLine(),
                                   "info: Binding skin to: |leg|legShape", "info: Root name: hip",
                                   bindLine("hip", "|leg|legShape")}));
    EXPECT_FALSE(exists("tempOldSkeletonGroup"));
    EXPECT_EQ(influences()[2], "|hip|knee|ankle");
    EXPECT_EQ(scene().number(plug("skinCluster1", "nodeState")), 0.0);
}

class WeightTransferTest : public PluginScene {
  public:
    WeightTransferTest() {
        makeLeg(*this);
        EXPECT_EQ(bindTube(*this, "|hip", "sock"), "skinCluster2");
        forget();
    }
};

TEST_F(WeightTransferTest, ListsAreCheckedFirst) {
    transferSkinWeights(MObjectArray(), objects({"|leg"}));
    transferSkinWeights(objects({"|leg"}), MObjectArray());
    transferSkinWeights(objects({"|leg", "|leg"}), objects({"|sock"}));
    EXPECT_EQ(transcript(),
              (Lines{"error: Las listas de skins fuente o destino están vacías.",
                     "error: Las listas de skins fuente o destino están vacías.",
                     "error: Las listas de skins fuente y destino deben tener el mismo tamaño."}));
}

TEST_F(WeightTransferTest, PairsWithoutClusterAreSkipped) {
    makeTube(*this, "bare");
    forget();
    transferSkinWeights(objects({"|leg"}), objects({"|bare"}));
    EXPECT_EQ(transcript(),
              Lines{"error: No se encontró un skin cluster para uno de los objetos."});
}

TEST_F(WeightTransferTest, EqualInfluencesOnlyCopy) {
    transferSkinWeights(objects({"|leg"}), objects({"|sock"}));
    const Lines all = scripts();
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0].rfind("python plain: cmds.copySkinWeights(ss=\"skinCluster1\", "
                           "ds=\"skinCluster2\", noMirror=True, "
                           "surfaceAssociation=\"closestPoint\", "
                           "influenceAssociation=\"oneToOne\")",
                           0),
              0u);
}

TEST_F(WeightTransferTest, ForeignInfluencesAreRemovedFirst) {
    makeChain(*this, {"arm", "elbow"});
    bindTube(*this, "|arm", "sleeve");
    forget();
    transferSkinWeights(objects({"|leg"}), objects({"|sleeve"}));
    const Lines all = scripts();
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[0].rfind("python plain: cmds.skinCluster('skinCluster3', e=True, ri='|arm')", 0),
              0u);
    EXPECT_EQ(all[1].rfind("python plain: cmds.skinCluster('skinCluster3', e=True, "
                           "ri='|arm|elbow')",
                           0),
              0u);
}

}  // namespace torvel::test
