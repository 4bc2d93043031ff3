#include <gtest/gtest.h>

#include "host/ui/desktop.h"

namespace torvel {
namespace {

UiElement element(const char* name, int parent, QObject* object) {
    UiElement one;
    one.name = name;
    one.kind = UiKind::Menu;
    one.parent = parent;
    one.object = object;
    return one;
}

TEST(UiTree, FindsByShortNameTailAndFullPath) {
    QObject a, b;
    UiTree tree;
    int window = 0, menu = 0;
    ASSERT_TRUE(tree.add(element("win", 0, &a), "window", window).isOk());
    ASSERT_TRUE(tree.add(element("tools", window, &b), "menu", menu).isOk());
    EXPECT_EQ(tree.fullPath(menu), "win|tools");
    EXPECT_EQ(tree.lookUp("tools"), menu);
    EXPECT_EQ(tree.lookUp("win|tools"), menu);
    EXPECT_EQ(tree.lookUp("ools"), UiTree::kNone);
    EXPECT_EQ(tree.lookUp("n|tools"), UiTree::kNone);
    EXPECT_EQ(tree.lookUp(""), UiTree::kNone);
}

TEST(UiTree, TwoOfOneNameAreAmbiguousUnlessThePathSaysWhich) {
    QObject a, b, c, d;
    UiTree tree;
    int one = 0, two = 0, id = 0, other = 0;
    ASSERT_TRUE(tree.add(element("one", 0, &a), "w", one).isOk());
    ASSERT_TRUE(tree.add(element("two", 0, &b), "w", two).isOk());
    ASSERT_TRUE(tree.add(element("m", one, &c), "m", id).isOk());
    ASSERT_TRUE(tree.add(element("m", two, &d), "m", other).isOk());
    int found = 0;
    EXPECT_EQ(tree.find("m", found).text(), "Object's name 'm' is not unique.");
    EXPECT_TRUE(tree.find("two|m", found).isOk());
    EXPECT_EQ(found, other);
    EXPECT_EQ(tree.find("x", found).text(), "Object 'x' not found.");
}

TEST(UiTree, AnElementWhoseWidgetWasDeletedIsGoneAndItsNameFree) {
    UiTree tree;
    auto* object = new QObject;
    int id = 0, again = 0;
    ASSERT_TRUE(tree.add(element("m", 0, object), "m", id).isOk());
    EXPECT_FALSE(tree.add(element("m", 0, object), "m", again).isOk());
    delete object;
    EXPECT_EQ(tree.lookUp("m"), UiTree::kNone);
    EXPECT_EQ(tree.element(id), nullptr);
    QObject next;
    EXPECT_TRUE(tree.add(element("m", 0, &next), "m", again).isOk());
}

TEST(UiTree, GeneratedNamesTakeTheFirstFreeNumber) {
    QObject a, b, c;
    UiTree tree;
    int id = 0;
    ASSERT_TRUE(tree.add(element("item2", 0, &a), "item", id).isOk());
    ASSERT_TRUE(tree.add(element("", 0, &b), "item", id).isOk());
    EXPECT_EQ(tree.fullPath(id), "item1");
    ASSERT_TRUE(tree.add(element("", 0, &c), "item", id).isOk());
    EXPECT_EQ(tree.fullPath(id), "item3");
    EXPECT_EQ(c.objectName(), "item3");
}

}  // namespace
}  // namespace torvel
