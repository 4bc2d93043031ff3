#include <maya/MSelectionList.h>

#include "plugin/fixtures/rigs.h"
#include "shell/selection_checks.h"
#include "toolkit/nodes.h"

namespace torvel::test {

class SelectionChecksTest : public PluginScene {
  public:
    SelectionChecksTest() {
        makeChain(*this, {"hip", "knee"});
        makeGroup(*this, "ctrl");
        makeGroup(*this, "deep", "|ctrl");
        python(
            "cmds.createNode('nurbsCurve', name='curveShape', parent='|ctrl|deep', "
            "skipSelect=True)");
        forget();
    }

    MSelectionList listOf(const std::vector<std::string>& names) {
        return objectsToSelectionList(objects(names));
    }
};

TEST_F(SelectionChecksTest, JointsAloneMakeAJointSelection) {
    EXPECT_TRUE(isJointSelection(listOf({"|hip", "|hip|knee"})));
    EXPECT_TRUE(isJointArray(objects({"|hip", "|hip|knee"})));
    EXPECT_FALSE(isJointSelection(listOf({"|hip", "|ctrl"})));
    EXPECT_FALSE(isJointArray(objects({"time1", "|hip"})));
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(SelectionChecksTest, AnEmptySelectionIsTold) {
    EXPECT_FALSE(isJointSelection(MSelectionList()));
    EXPECT_FALSE(isJointArray(MObjectArray()));
    EXPECT_EQ(messages(), Lines(2, "info: Please, select any 'Joint'"));
    forget();
    EXPECT_FALSE(isNurbsControlSelection(MSelectionList()));
    EXPECT_EQ(messages(), Lines{"info: Por favor, selecciona algún control NURBS."});
}

TEST_F(SelectionChecksTest, ANullObjectIsNoJoint) {
    MObjectArray nodes;
    nodes.append(MObject());
    EXPECT_FALSE(isJointArray(nodes));
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(SelectionChecksTest, OnlyDirectCurvesMakeAControl) {
    EXPECT_TRUE(isNurbsControl(object("|ctrl|deep")));
    EXPECT_TRUE(isNurbsControl(object("|ctrl|deep|curveShape")));
    EXPECT_FALSE(isNurbsControl(object("|ctrl")));
    EXPECT_FALSE(isNurbsControl(object("|hip")));
    EXPECT_FALSE(isNurbsControl(object("time1")));
    EXPECT_FALSE(isNurbsControl(MObject()));
    EXPECT_TRUE(isNurbsControlSelection(listOf({"|ctrl|deep", "|ctrl|deep|curveShape"})));
    EXPECT_FALSE(isNurbsControlSelection(listOf({"|ctrl|deep", "|ctrl"})));
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(SelectionChecksTest, PathsArePrintedInOrder) {
    printObjectPaths(objects({"|hip|knee", "|hip"}));
    EXPECT_EQ(messages(), (Lines{"info: |hip|knee", "info: |hip"}));
}

}  // namespace torvel::test
