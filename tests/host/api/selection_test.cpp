#include <vector>

#include <maya/MGlobal.h>
#include <maya/MItSelectionList.h>
#include <maya/MStringArray.h>

#include "host/api/api_scene.h"

namespace torvel::test {
namespace {

class SelectionListTest : public ApiTest {
  protected:
    std::vector<std::string> names(const MSelectionList& list) {
        MStringArray strings;
        list.getSelectionStrings(strings);
        std::vector<std::string> found;
        for (unsigned int i = 0; i < strings.length(); ++i)
            found.push_back(text(strings[i]));
        return found;
    }
};

TEST_F(SelectionListTest, namesGiveAllMatchesFewestComponentsFirst) {
    scene.make("transform", "parked");
    scene.make("joint", "hip", "parked");
    scene.make("joint", "hip");
    scene.make("transform", "early");
    scene.make("joint", "hip", "early");
    MSelectionList list;
    EXPECT_TRUE(MGlobal::getSelectionListByName("hip", list));
    EXPECT_EQ(names(list), (std::vector<std::string>{"|hip", "parked|hip", "early|hip"}));
}

TEST_F(SelectionListTest, failedLookUpLeavesTheListEmptyOrAsItWas) {
    scene.make("transform", "a");
    MSelectionList list;
    list.add("a");
    EXPECT_FALSE(list.add("nothing"));
    EXPECT_FALSE(list.add(MObject::kNullObj));
    EXPECT_EQ(list.length(), 1u);
    EXPECT_FALSE(MGlobal::getSelectionListByName("nothing", list));
    EXPECT_EQ(list.length(), 0u);
    EXPECT_FALSE(list.add("world")) << "no node bears the name";
}

TEST_F(SelectionListTest, patternsAndPlugsAreTaken) {
    scene.make("transform", "armLeft");
    scene.make("transform", "armRight");
    MSelectionList list;
    EXPECT_TRUE(list.add("arm*"));
    EXPECT_EQ(list.length(), 2u);
    EXPECT_TRUE(list.add("armLeft.translateX"));
    MPlug plug;
    EXPECT_TRUE(list.getPlug(2, plug));
    EXPECT_EQ(text(plug.name()), "armLeft.translateX");
    EXPECT_FALSE(list.getPlug(0, plug));
}

TEST_F(SelectionListTest, repeatsStayUnlessMerged) {
    const MObject a = make("transform", "a");
    MSelectionList list;
    list.add(a);
    list.add(a, false);
    EXPECT_EQ(list.length(), 2u);
    list.add(a, true);
    EXPECT_EQ(list.length(), 2u);
}

TEST_F(SelectionListTest, onlyDagItemsHavePaths) {
    scene.make("transform", "a");
    scene.make("dagPose", "pose");
    MSelectionList list;
    list.add("a");
    list.add("pose");
    MDagPath path;
    EXPECT_TRUE(list.getDagPath(0, path));
    EXPECT_EQ(text(path.fullPathName()), "|a");
    EXPECT_FALSE(list.getDagPath(1, path));
    EXPECT_FALSE(path.isValid());
    EXPECT_FALSE(list.getDagPath(2, path));
    EXPECT_TRUE(MObject::kNullObj.isNull());
}

TEST_F(SelectionListTest, iteratorFiltersByFunctionSet) {
    scene.make("joint", "hip");
    scene.make("dagPose", "pose");
    scene.make("transform", "group");
    MSelectionList list;
    for (const char* name : {"hip", "pose", "group"})
        list.add(name);
    std::string found;
    for (MItSelectionList it(list, MFn::kTransform); !it.isDone(); it.next()) {
        MObject node;
        it.getDependNode(node);
        found += nameOf(node) + " ";
    }
    EXPECT_EQ(found, "hip group ");
}

TEST_F(SelectionListTest, activeSelectionKeepsItsOrder) {
    for (const char* name : {"a", "b", "c"})
        scene.make("transform", name);
    MSelectionList active;
    scene.call("select", {}, {flag("clear")});
    EXPECT_TRUE(MGlobal::getActiveSelectionList(active, false));
    EXPECT_TRUE(active.isEmpty());
    scene.call("select", {"c", "a"});
    MGlobal::getActiveSelectionList(active);
    EXPECT_EQ(names(active), (std::vector<std::string>{"c", "a"}));

    MSelectionList one;
    one.add("b");
    MGlobal::setActiveSelectionList(one, MGlobal::kAddToHeadOfList);
    EXPECT_EQ(scene.text("ls", {}, {flag("selection")}), "b c a");
    one.add("a");
    MGlobal::setActiveSelectionList(one, MGlobal::kXORWithList);
    EXPECT_EQ(scene.text("ls", {}, {flag("selection")}), "c");
    MGlobal::setActiveSelectionList(one);
    EXPECT_EQ(scene.text("ls", {}, {flag("selection")}), "b a");
    MGlobal::setActiveSelectionList(one, MGlobal::kRemoveFromList);
    EXPECT_EQ(scene.text("ls", {}, {flag("selection")}), "");
}

}  // namespace
}  // namespace torvel::test
