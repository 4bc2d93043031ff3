#include <gtest/gtest.h>

#include "host/ui/desktop.h"

namespace torvel {
namespace {

using test::Desktop;
using test::flag;

RawFlag py(const char* name, Value value) {
    RawFlag one = flag(name, {std::move(value)});
    one.fromPython = true;
    return one;
}

// The menu of a plug-in, made the way plug-ins do it.
void makeMenu(Desktop& desktop) {
    desktop.host.call("setParent", {"MayaWindow"});
    desktop.host.call("menu", {"Tools"}, {py("label", "My Tools"), py("tearOff", true)});
    desktop.host.call("menuItem", {},
                      {py("label", "Rename"), py("command", "go()"), py("sourceType", "python")});
    desktop.host.call("menuItem", {}, {py("dividerLabel", "Rigging"), py("divider", true)});
    desktop.host.call("menuItem", {},
                      {py("label", "Twist"), py("command", "twist()"), py("sourceType", "python")});
}

TEST(MenuCommands, AMenuStandsLastInTheMenuBarWithItsItemsInOrder) {
    Desktop desktop;
    makeMenu(desktop);
    QMenu* menu = desktop.menu("Tools");
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->title(), "My Tools");
    EXPECT_TRUE(menu->isTearOffEnabled());
    EXPECT_EQ(desktop.window->menuBar()->actions().last(), menu->menuAction());
    const QList<QAction*> items = menu->actions();
    ASSERT_EQ(items.size(), 3);
    EXPECT_EQ(items[0]->text(), "Rename");
    EXPECT_TRUE(items[1]->isSeparator());
    EXPECT_EQ(items[1]->text(), "Rigging");
    EXPECT_EQ(items[2]->text(), "Twist");
}

TEST(MenuCommands, FullPathsAreReturned) {
    Desktop desktop;
    EXPECT_EQ(desktop.host.text("setParent", {"MayaWindow"}), "MayaWindow");
    EXPECT_EQ(desktop.host.text("menu", {"Tools"}), "MayaWindow|Tools");
    EXPECT_EQ(desktop.host.text("menuItem", {"first"}), "MayaWindow|Tools|first");
    EXPECT_EQ(desktop.host.text("menuItem"), "MayaWindow|Tools|menuItem1");
    EXPECT_EQ(desktop.host.text("menu", {}, {flag("parent", {"MayaWindow"})}), "MayaWindow|menu1");
}

TEST(MenuCommands, ExistsAnswersForNamesAndPathsOfMenusOnly) {
    Desktop desktop;
    makeMenu(desktop);
    EXPECT_TRUE(desktop.host.call("menu", {"Tools"}, {py("exists", true)}).truth());
    EXPECT_TRUE(desktop.host.call("menu", {"MayaWindow|Tools"}, {py("exists", true)}).truth());
    EXPECT_FALSE(desktop.host.call("menu", {"menuItem1"}, {py("exists", true)}).truth());
    EXPECT_TRUE(desktop.host.call("menuItem", {"menuItem1"}, {py("exists", true)}).truth());
    EXPECT_FALSE(desktop.host.call("menu", {"Other"}, {py("exists", true)}).truth());
}

TEST(MenuCommands, ADeletedMenuIsGoneAtOnceWithItsItems) {
    Desktop desktop;
    makeMenu(desktop);
    desktop.host.call("deleteUI", {"Tools"}, {py("menu", true)});
    EXPECT_FALSE(desktop.host.call("menu", {"Tools"}, {py("exists", true)}).truth());
    EXPECT_FALSE(desktop.host.call("menuItem", {"menuItem1"}, {py("exists", true)}).truth());
    for (QAction* action : desktop.window->menuBar()->actions())
        EXPECT_NE(action->text(), "My Tools");
    // The name is free again before Qt has deleted anything.
    makeMenu(desktop);
    EXPECT_EQ(desktop.menu("Tools")->actions().size(), 3);
}

TEST(MenuCommands, DeleteUiNamesWhatItCannotFind) {
    Desktop desktop;
    makeMenu(desktop);
    EXPECT_EQ(desktop.host.error("deleteUI", {"nothing"}), "Object 'nothing' not found.");
    EXPECT_EQ(desktop.host.error("deleteUI", {"Tools"}, {py("window", true)}),
              "Object 'Tools' not found.");
    EXPECT_EQ(desktop.host.error("deleteUI", {"MayaWindow"}),
              "deleteUI: the main window cannot be deleted");
    EXPECT_TRUE(desktop.host.call("menu", {"Tools"}, {py("exists", true)}).truth());
}

TEST(MenuCommands, ANameIsTakenOnlyOnce) {
    Desktop desktop;
    makeMenu(desktop);
    EXPECT_EQ(desktop.host.error("menu", {"Tools"}, {flag("parent", {"MayaWindow"})}),
              "Object's name 'Tools' is not unique.");
    EXPECT_EQ(desktop.window->findChildren<QMenu*>("Tools").size(), 1);
}

TEST(MenuCommands, AnItemRunsItsTextAsPythonOrMel) {
    Desktop desktop;
    makeMenu(desktop);
    desktop.host.call("menuItem", {}, {py("label", "Mel"), py("command", "sphere")});
    const QList<QAction*> items = desktop.menu("Tools")->actions();
    items[0]->trigger();
    items[3]->trigger();
    EXPECT_EQ(desktop.python.texts, std::vector<std::string>{"go()"});
    EXPECT_EQ(desktop.mel.texts, std::vector<std::string>{"sphere"});
}

TEST(MenuCommands, AFailingCommandTextRaisesNothing) {
    Desktop desktop;
    makeMenu(desktop);
    desktop.python.answer = Status::failure("no");
    desktop.menu("Tools")->actions()[0]->trigger();
    desktop.menu("Tools")->actions()[0]->trigger();
    EXPECT_EQ(desktop.python.texts.size(), 2u);
}

TEST(MenuCommands, SubMenusTakeItemsUntilTheParentIsSetBack) {
    Desktop desktop;
    makeMenu(desktop);
    desktop.host.call("menuItem", {"more"}, {py("label", "More"), py("subMenu", true)});
    EXPECT_EQ(desktop.host.text("menuItem", {"inner"}), "MayaWindow|Tools|more|inner");
    EXPECT_EQ(desktop.host.text("setParent", {".."}, {py("menu", true)}), "MayaWindow|Tools");
    EXPECT_EQ(desktop.host.text("menuItem", {"outer"}), "MayaWindow|Tools|outer");
    EXPECT_EQ(desktop.menu("more")->actions().size(), 1);
    desktop.host.call("deleteUI", {"more"});
    EXPECT_FALSE(desktop.host.call("menuItem", {"inner"}, {py("exists", true)}).truth());
    EXPECT_EQ(desktop.menu("Tools")->actions().size(), 4);
}

TEST(MenuCommands, ItemsAreAskedAndEdited) {
    Desktop desktop;
    makeMenu(desktop);
    desktop.host.call("menuItem", {"box"},
                      {py("label", "Box"), py("checkBox", true), py("enable", false)});
    EXPECT_TRUE(
        desktop.host.call("menuItem", {"box"}, {py("query", true), py("checkBox", true)}).truth());
    EXPECT_FALSE(
        desktop.host.call("menuItem", {"box"}, {py("query", true), py("enable", true)}).truth());
    desktop.host.call("menuItem", {"box"},
                      {py("edit", true), py("label", "New"), py("checkBox", false)});
    EXPECT_EQ(desktop.host.text("menuItem", {"box"}, {py("query", true), py("label", true)}),
              "New");
    EXPECT_FALSE(
        desktop.host.call("menuItem", {"box"}, {py("query", true), py("checkBox", true)}).truth());
    EXPECT_EQ(desktop.host.text("menu", {"Tools"}, {py("query", true), py("label", true)}),
              "My Tools");
    EXPECT_EQ(desktop.host.text("menu", {"Tools"}, {py("query", true), py("itemArray", true)}),
              "menuItem1 menuItem2 menuItem3 box");
}

TEST(MenuCommands, AnItemWithoutAMenuIsRefused) {
    Desktop desktop;
    EXPECT_EQ(desktop.host.error("menuItem", {"lost"}),
              "menuItem: an item needs a menu to stand in");
    EXPECT_EQ(desktop.host.error("setParent", {"nowhere"}), "Object 'nowhere' not found.");
}

TEST(MenuCommands, WithoutAMainWindowEachCommandFailsByName) {
    Desktop desktop;
    desktop.window.reset();
    for (const char* name : {"setParent", "menu", "menuItem", "deleteUI"})
        EXPECT_EQ(desktop.host.error(name, {"x"}),
                  std::string(name) + ": there is no user interface (--no-ui)");
}

}  // namespace
}  // namespace torvel
