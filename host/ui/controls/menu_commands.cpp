// menu and menuItem.
#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include "script/session.h"
#include "script/callbacks.h"
#include "ui/desktop/main_window.h"
#include "ui/commands.h"
#include "ui/controls/lookup.h"

namespace torvel {

namespace {

QString shown(const std::string& text) {
    return QString::fromStdString(text);
}

// The action that stands for a menu or an item in its menu.
QAction* actionOf(const UiElement& one) {
    if (auto* menu = qobject_cast<QMenu*>(one.object.data()))
        return menu->menuAction();
    return qobject_cast<QAction*>(one.object.data());
}

void setLabel(UiElement& one, const std::string& label) {
    one.label = label;
    if (QAction* action = actionOf(one))
        action->setText(shown(label));
}

Status menuWindow(const CommandCall& call, UiTree& tree, int& id) {
    id = tree.currentParent();
    if (call.has("parent"))
        if (Status found = tree.find(call.text("parent"), id); !found)
            return found;
    id = windowOf(tree, id);
    const UiElement* one = tree.element(id);
    if (!one || !qobject_cast<QMainWindow*>(one->object.data()))
        return call.fail("the parent of a menu must be a window with a menu bar");
    return Status::ok();
}

Status createMenu(const CommandCall& call, UiTree& tree, Value& result) {
    UiElement one;
    one.kind = UiKind::Menu;
    if (Status named = newName(call, one.name); !named)
        return named;
    if (Status found = menuWindow(call, tree, one.parent); !found)
        return found;
    auto* window = qobject_cast<QMainWindow*>(tree.element(one.parent)->object.data());
    auto* menu = new QMenu(window);
    one.object = menu;
    int id = UiTree::kNone;
    if (Status added = tree.add(one, "menu", id); !added) {
        delete menu;
        return added;
    }
    UiElement& made = *tree.element(id);
    setLabel(made, call.text("label", made.name));
    menu->setTearOffEnabled(call.flag("tearOff"));
    menu->setToolTipsVisible(true);
    menu->menuAction()->setEnabled(call.flag("enable", true));
    window->menuBar()->addMenu(menu);
    tree.setCurrentMenu(id);
    result = tree.fullPath(id);
    return Status::ok();
}

Status queryMenu(const CommandCall& call, UiTree& tree, int id, Value& result) {
    const UiElement& one = *tree.element(id);
    std::vector<std::string> names;
    for (int child : tree.children(id))
        names.push_back(tree.element(child) ? tree.element(child)->name : std::string());
    if (call.has("label"))
        result = one.label;
    else if (call.has("tearOff"))
        result = tree.menuOf(id)->isTearOffEnabled();
    else if (call.has("enable"))
        result = actionOf(one)->isEnabled();
    else if (call.has("numberOfItems"))
        result = static_cast<int>(names.size());
    else if (call.has("itemArray"))
        result = names.empty() ? Value() : Value::strings(names);
    else
        return call.fail("no flag to query");
    return Status::ok();
}

void editMenu(const CommandCall& call, UiTree& tree, int id) {
    UiElement& one = *tree.element(id);
    if (call.has("label"))
        setLabel(one, call.text("label"));
    if (call.has("enable"))
        actionOf(one)->setEnabled(call.flag("enable"));
    if (call.flag("deleteAllItems"))
        for (int child : tree.children(id))
            tree.remove(child);
}

Status checkSourceType(const CommandCall& call) {
    const std::string type = call.text("sourceType", "python");
    if (type == "python" || type == "mel")
        return Status::ok();
    return call.fail("sourceType must be \"python\" or \"mel\", not \"" + type + "\"");
}

void applyItemFlags(const CommandCall& call, UiElement& one) {
    QAction* action = actionOf(one);
    if (call.has("command"))
        one.command = call.text("command");
    if (call.has("sourceType"))
        one.sourceType = call.text("sourceType");
    if (call.has("enable"))
        action->setEnabled(call.flag("enable"));
    if (call.has("checkBox")) {
        action->setCheckable(true);
        action->setChecked(call.flag("checkBox"));
    }
    if (call.has("annotation")) {
        one.annotation = call.text("annotation");
        action->setToolTip(shown(one.annotation));
        action->setStatusTip(shown(one.annotation));
    }
    if (one.divider && call.has("dividerLabel"))
        setLabel(one, call.text("dividerLabel"));
    else if (!one.divider && call.has("label"))
        setLabel(one, call.text("label"));
}

// The entries of an option menu follow the actions added to it.
QObject* makeOption(UiTree& tree, int parent) {
    QWidget* menu = optionMenu(tree, parent);
    auto* action = new QAction(menu);
    menu->addAction(action);
    return action;
}

QObject* makeItem(const CommandCall& call, QMenu& menu, bool divider) {
    if (call.flag("subMenu")) {
        auto* below = menu.addMenu(QString());
        below->setTearOffEnabled(call.flag("tearOff"));
        below->setToolTipsVisible(true);
        return below;
    }
    return divider ? menu.addSection(QString()) : menu.addAction(QString());
}

// Items find their element again by id: the action may outlive it by one turn of the event loop.
void wire(MainWindow& window, int id) {
    auto* action = qobject_cast<QAction*>(window.tree().element(id)->object.data());
    if (action && !action->isSeparator())
        QObject::connect(action, &QAction::triggered, &window,
                         [&window, id] { window.runItem(id); });
}

Status itemParent(const CommandCall& call, UiTree& tree, int& id) {
    id = tree.currentMenu();
    if (call.has("parent"))
        if (Status found = tree.find(call.text("parent"), id); !found)
            return found;
    if (!tree.menuOf(id) && !isOptionMenu(tree, id))
        return call.fail("an item needs a menu to stand in");
    return Status::ok();
}

Status createItem(const CommandCall& call, UiTree& tree, Value& result) {
    UiElement one;
    one.kind = UiKind::MenuItem;
    // A text means what the caller's own language would make of it.
    one.sourceType = call.session().calledFromPython ? "python" : "mel";
    if (Status named = newName(call, one.name); !named)
        return named;
    if (Status found = itemParent(call, tree, one.parent); !found)
        return found;
    one.divider = call.flag("divider");
    QMenu* menu = tree.menuOf(one.parent);
    one.object = menu ? makeItem(call, *menu, one.divider) : makeOption(tree, one.parent);
    int id = UiTree::kNone;
    if (Status added = tree.add(one, "menuItem", id); !added) {
        delete one.object.data();
        return added;
    }
    UiElement& made = *tree.element(id);
    if (!made.divider)
        setLabel(made, made.name);
    applyItemFlags(call, made);
    wire(*mainWindowOf(call.session()), id);
    if (call.flag("subMenu"))
        tree.setCurrentMenu(id);
    result = tree.fullPath(id);
    return Status::ok();
}

Status queryItem(const CommandCall& call, UiTree& tree, int id, Value& result) {
    const UiElement& one = *tree.element(id);
    if (call.has("label"))
        result = one.divider ? std::string() : one.label;
    else if (call.has("dividerLabel"))
        result = one.divider ? one.label : std::string();
    else if (call.has("command"))
        result = one.command;
    else if (call.has("divider"))
        result = one.divider;
    else if (call.has("subMenu"))
        result = tree.menuOf(id) != nullptr;
    else if (call.has("enable"))
        result = actionOf(one)->isEnabled();
    else if (call.has("checkBox"))
        result = actionOf(one)->isChecked();
    else if (call.has("annotation"))
        result = one.annotation;
    else
        return call.fail("no flag to query");
    return Status::ok();
}

}  // namespace

Status runMenu(const CommandCall& call, Value& result) {
    UiTree* tree = nullptr;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    if (call.has("exists")) {
        result = namedElementExists(call, *tree, UiKind::Menu);
        return Status::ok();
    }
    if (call.isCreate())
        return createMenu(call, *tree, result);
    int id = UiTree::kNone;
    if (Status found = namedElement(call, *tree, UiKind::Menu, id); !found)
        return found;
    if (call.isQuery())
        return queryMenu(call, *tree, id, result);
    editMenu(call, *tree, id);
    result = tree->fullPath(id);
    return Status::ok();
}

Status runMenuItem(const CommandCall& call, Value& result) {
    UiTree* tree = nullptr;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    if (call.has("exists")) {
        result = namedElementExists(call, *tree, UiKind::MenuItem);
        return Status::ok();
    }
    if (Status known = checkSourceType(call); !known)
        return known;
    if (call.isCreate())
        return createItem(call, *tree, result);
    int id = UiTree::kNone;
    if (Status found = namedElement(call, *tree, UiKind::MenuItem, id); !found)
        return found;
    if (call.isQuery())
        return queryItem(call, *tree, id, result);
    applyItemFlags(call, *tree->element(id));
    result = tree->fullPath(id);
    return Status::ok();
}

}  // namespace torvel
