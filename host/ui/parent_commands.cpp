// setParent and deleteUI.
#include <QWidget>

#include "commands/session.h"
#include "ui/main_window.h"
#include "ui/ui_commands.h"
#include "ui/ui_lookup.h"

namespace torvel {

namespace {

// Windows that plug-ins made by themselves are known by their object name.
QWidget* foreignWindow(const CommandCall& call, const std::string& name) {
    const auto wanted = QString::fromStdString(name);
    for (QObject* child : call.session().mainWindow->children()) {
        auto* widget = qobject_cast<QWidget*>(child);
        if (widget && widget->isWindow() && !wanted.isEmpty() && widget->objectName() == wanted)
            return widget;
    }
    return nullptr;
}

std::string currentPath(const UiTree& tree, bool menu) {
    if (!menu)
        return tree.fullPath(tree.currentParent());
    const std::string path = tree.fullPath(tree.currentMenu());
    return path.empty() ? "NONE" : path;
}

// ".." leaves a sub-menu for the menu around it, a menu for nothing, and stops at a window.
Status goUp(UiTree& tree, bool menu) {
    if (!menu)
        return Status::ok();
    const UiElement* one = tree.element(tree.currentMenu());
    if (!one)
        return Status::failure("setParent: there is no current menu");
    tree.setCurrentMenu(tree.menuOf(one->parent) ? one->parent : UiTree::kNone);
    return Status::ok();
}

Status goTo(UiTree& tree, const std::string& name, bool menu) {
    int id = UiTree::kNone;
    if (Status found = tree.find(name, id); !found)
        return found;
    const bool isWindow = tree.element(id)->kind == UiKind::Window;
    if (menu ? !tree.menuOf(id) : !isWindow)
        return Status::failure("setParent: '" + name + "' is no " + (menu ? "menu" : "window"));
    if (menu) {
        tree.setCurrentMenu(id);
    } else {
        tree.setCurrentParent(id);
        tree.setCurrentMenu(UiTree::kNone);
    }
    return Status::ok();
}

bool isAsked(const CommandCall& call, UiKind kind) {
    const bool any =
        call.has("menu") || call.has("menuItem") || call.has("window") || call.has("control");
    switch (kind) {
        case UiKind::Menu: return !any || call.flag("menu");
        case UiKind::MenuItem: return !any || call.flag("menuItem");
        case UiKind::Window: return !any || call.flag("window");
    }
    return false;
}

Status deleteOne(const CommandCall& call, UiTree& tree, const std::string& name) {
    int id = UiTree::kNone;
    if (Status found = tree.find(name, id); !found) {
        QWidget* window = isAsked(call, UiKind::Window) ? foreignWindow(call, name) : nullptr;
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
    if (one->object == call.session().mainWindow)
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
            tree->setCurrentMenu(UiTree::kNone);
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
