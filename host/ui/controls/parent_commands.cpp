// setParent and deleteUI.
#include <QWidget>

#include "script/session.h"
#include "ui/desktop/main_window.h"
#include "ui/commands.h"
#include "ui/controls/lookup.h"

namespace torvel {

namespace {

std::string currentPath(const UiTree& tree, bool menu) {
    if (!menu)
        return tree.fullPath(tree.currentParent());
    const std::string path = tree.fullPath(tree.currentMenu());
    return path.empty() ? "NONE" : path;
}

// ".." leaves a layout for what is around it and stops at the window; among menus it leaves a
// sub-menu for the menu around it and a menu for nothing.
Status goUp(UiTree& tree, bool menu) {
    if (!menu) {
        const UiElement* one = tree.element(tree.currentParent());
        if (one && one->kind != UiKind::Window)
            tree.setCurrentParent(one->parent);
        return Status::ok();
    }
    const UiElement* one = tree.element(tree.currentMenu());
    if (!one)
        return Status::failure("setParent: there is no current menu");
    tree.setCurrentMenu(tree.menuOf(one->parent) ? one->parent : UiTree::kNone);
    return Status::ok();
}

void goToTop(UiTree& tree, bool menu) {
    if (!menu)
        tree.setCurrentParent(windowOf(tree, tree.currentParent()));
    tree.setCurrentMenu(UiTree::kNone);
}

Status goTo(UiTree& tree, const std::string& name, bool menu) {
    int id = UiTree::kNone;
    if (Status found = tree.find(name, id); !found)
        return found;
    const UiKind kind = tree.element(id)->kind;
    const bool fits = menu ? tree.menuOf(id) != nullptr || isOptionMenu(tree, id)
                           : kind == UiKind::Window || kind == UiKind::Layout;
    if (!fits)
        return Status::failure("setParent: '" + name + "' is no " +
                               (menu ? "menu" : "window or layout"));
    if (menu) {
        tree.setCurrentMenu(id);
    } else {
        if (kind == UiKind::Window)
            tree.setCurrentMenu(UiTree::kNone);
        tree.setCurrentParent(id);
    }
    return Status::ok();
}

bool isAsked(const CommandCall& call, UiKind kind) {
    const bool any = call.has("menu") || call.has("menuItem") || call.has("window") ||
                     call.has("control") || call.has("layout") || call.has("radioCollection");
    switch (kind) {
        case UiKind::Menu: return !any || call.flag("menu");
        case UiKind::MenuItem: return !any || call.flag("menuItem");
        case UiKind::Window: return !any || call.flag("window");
        case UiKind::Layout: return !any || call.flag("layout") || call.flag("control");
        case UiKind::Control: return !any || call.flag("control");
        case UiKind::Collection: return !any || call.flag("radioCollection");
    }
    return false;
}

Status deleteOne(const CommandCall& call, UiTree& tree, const std::string& name) {
    int id = UiTree::kNone;
    if (Status found = tree.find(name, id); !found) {
        QWidget* window =
            isAsked(call, UiKind::Window) ? foreignWindow(call.session(), name) : nullptr;
        if (!window)
            return found;
        window->setObjectName(QString());
        window->hide();
        window->deleteLater();
        return Status::ok();
    }
    const UiElement* one = tree.element(id);
    if (!isAsked(call, one->kind))
        return Status::failure("Object '" + name + "' not found.");
    if (one->object == mainWindowOf(call.session()))
        return call.fail("the main window cannot be deleted");
    tree.remove(id);
    return Status::ok();
}

}  // namespace

Status runSetParent(const CommandCall& call, Value& result) {
    UiTree* tree = nullptr;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    const bool menu = call.flag("menu");
    std::string name;
    if (Status one = newName(call, name); !one)
        return one;
    Status done;
    if (call.isCreate() || call.isEdit()) {
        if (name == ".." || call.flag("upLevel"))
            done = goUp(*tree, menu);
        else if (call.flag("topLevel"))
            goToTop(*tree, menu);
        else if (!name.empty())
            done = goTo(*tree, name, menu);
    }
    if (done)
        result = currentPath(*tree, menu);
    return done;
}

Status runDeleteUi(const CommandCall& call, Value&) {
    UiTree* tree = nullptr;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    const std::vector<std::string> names = call.texts();
    if (names.empty())
        return call.fail("no names given");
    for (const std::string& name : names)
        if (Status deleted = deleteOne(call, *tree, name); !deleted)
            return deleted;
    return Status::ok();
}

}  // namespace torvel
