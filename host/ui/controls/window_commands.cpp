// window and showWindow.
#include <QMenuBar>

#include "script/session.h"
#include "ui/controls/control_type.h"
#include "ui/desktop/main_window.h"
#include "ui/controls/script_window.h"
#include "ui/commands.h"
#include "ui/controls/lookup.h"

namespace torvel {

namespace {

constexpr const char* kEvents[] = {"closeCommand", "minimizeCommand", "restoreCommand"};

MainWindow& desktop(const CommandCall& call) {
    return *mainWindowOf(call.session());
}

void keepEvents(const CommandCall& call, const Part& part) {
    for (const char* name : kEvents)
        if (const FlagUse* use = call.use(name))
            ignore(setEvent(part, *use));
}

int second(const CommandCall& call, const char* flag) {
    return static_cast<int>(call.number(flag, 0.0, 1));
}

// Of a window that scripts or plug-ins made, and as far as it goes of the main window.
void applyWindow(const CommandCall& call, QWidget& window) {
    auto* own = qobject_cast<ScriptWindow*>(&window);
    if (call.has("title"))
        window.setWindowTitle(QString::fromStdString(call.text("title")));
    if (call.has("iconName"))
        window.setWindowIconText(QString::fromStdString(call.text("iconName")));
    if (call.has("widthHeight") || call.has("width") || call.has("height")) {
        const int width = call.integer("width", call.integer("widthHeight"));
        const int height = call.integer("height", second(call, "widthHeight"));
        if (own)
            own->setWantedSize(width, height);
        else
            window.resize(width > 0 ? width : window.width(),
                          height > 0 ? height : window.height());
    }
    if (call.has("topLeftCorner"))
        window.move(second(call, "topLeftCorner"), call.integer("topLeftCorner"));
    if (call.has("topEdge"))
        window.move(window.x(), call.integer("topEdge"));
    if (call.has("leftEdge"))
        window.move(call.integer("leftEdge"), window.y());
    if (own && call.has("sizeable"))
        own->setSizeable(call.flag("sizeable"));
    if (own && call.has("retain"))
        own->setRetained(call.flag("retain"));
    if (call.flag("resizeToFitChildren"))
        window.adjustSize();
    if (call.has("visible"))
        window.setVisible(call.flag("visible"));
}

Status makeWindow(const CommandCall& call, Value& result) {
    MainWindow& owner = desktop(call);
    UiTree& tree = owner.tree();
    UiElement one;
    one.kind = UiKind::Window;
    one.type = "window";
    if (Status named = newName(call, one.name); !named)
        return named;
    auto* window = new ScriptWindow(owner);
    one.object = window;
    int id = UiTree::kNone;
    if (Status added = tree.add(one, "window", id); !added) {
        delete window;
        return added;
    }
    window->setElement(id);
    window->setWindowTitle(QString::fromStdString(tree.element(id)->name));
    keepEvents(call, {owner, id});
    applyWindow(call, *window);
    tree.setCurrentParent(id);
    tree.setCurrentMenu(UiTree::kNone);
    tree.setCurrentCollection(UiTree::kNone);
    tree.setLastWindow(id);
    result = tree.fullPath(id);
    return Status::ok();
}

std::vector<std::string> menusOf(const UiTree& tree, int id) {
    std::vector<std::string> names;
    for (int child : tree.children(id))
        if (const UiElement* one = tree.element(child); one && one->kind == UiKind::Menu)
            names.push_back(one->name);
    return names;
}

Status askWindow(const CommandCall& call, const UiTree& tree, int id, QWidget& window,
                 Value& result) {
    const auto pair = [](int a, int b) { return Value(Value::List{Value(a), Value(b)}); };
    const auto* own = qobject_cast<ScriptWindow*>(&window);
    const std::vector<std::string> menus = menusOf(tree, id);
    if (call.has("title"))
        result = window.windowTitle().toStdString();
    else if (call.has("iconName"))
        result = window.windowIconText().toStdString();
    else if (call.has("widthHeight"))
        result = pair(window.width(), window.height());
    else if (call.has("width"))
        result = window.width();
    else if (call.has("height"))
        result = window.height();
    else if (call.has("topLeftCorner"))
        result = pair(window.y(), window.x());
    else if (call.has("topEdge"))
        result = window.y();
    else if (call.has("leftEdge"))
        result = window.x();
    else if (call.has("visible"))
        result = window.isVisible();
    else if (call.has("iconify"))
        result = window.isMinimized();
    else if (call.has("sizeable"))
        result = !own || own->isSizeable();
    else if (call.has("numberOfMenus"))
        result = static_cast<int>(menus.size());
    else if (call.has("menuArray"))
        result = menus.empty() ? Value() : Value::strings(menus);
    else
        return call.fail("no flag to query");
    return Status::ok();
}

// By name: one of the tree, or one that a plug-in made by itself (its id is kNone).
Status findWindow(const CommandCall& call, UiTree& tree, const std::string& name, int& id,
                  QWidget*& window) {
    const Status found = tree.find(name, id);
    const UiElement* one = found ? tree.element(id) : nullptr;
    if (one && one->kind == UiKind::Window) {
        window = qobject_cast<QWidget*>(one->object.data());
        return Status::ok();
    }
    id = UiTree::kNone;
    window = foreignWindow(call.session(), name);
    if (window)
        return Status::ok();
    return found ? Status::failure("Object '" + name + "' not found.") : found;
}

}  // namespace

Status runWindow(const CommandCall& call, Value& result) {
    UiTree* tree = nullptr;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    for (const FlagUse& use : call.m_flags)
        if (Status fits = checkPixels(call, use); !fits)
            return fits;
    if (call.isCreate() && !call.has("exists"))
        return makeWindow(call, result);
    const std::vector<std::string> names = call.texts();
    if (names.size() != 1)
        return call.fail("exactly one name is needed");
    int id = UiTree::kNone;
    QWidget* window = nullptr;
    const Status found = findWindow(call, *tree, names.front(), id, window);
    if (call.has("exists")) {
        result = found.isOk();
        return Status::ok();
    }
    if (!found)
        return found;
    if (call.isQuery())
        return askWindow(call, *tree, id, *window, result);
    if (id != UiTree::kNone)
        keepEvents(call, {desktop(call), id});
    if (call.has("iconify"))
        call.flag("iconify") ? window->showMinimized() : window->showNormal();
    applyWindow(call, *window);
    result = names.front();
    return Status::ok();
}

Status runShowWindow(const CommandCall& call, Value&) {
    UiTree* tree = nullptr;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    std::string name;
    if (Status one = newName(call, name); !one)
        return one;
    if (name.empty()) {
        const UiElement* last = tree->element(tree->lastWindow());
        if (!last)
            return call.fail("there is no window to show");
        name = last->name;
    }
    int id = UiTree::kNone;
    QWidget* window = nullptr;
    if (Status found = findWindow(call, *tree, name, id, window); !found)
        return found;
    if (auto* own = qobject_cast<ScriptWindow*>(window)) {
        own->present();
    } else {
        window->show();
        window->raise();
        window->activateWindow();
    }
    return Status::ok();
}

// The host keeps no places of windows from one time to the next.
Status runWindowPref(const CommandCall& call, Value& result) {
    const std::vector<std::string> names = call.texts();
    if (call.has("removeAll"))
        return Status::ok();
    if (names.size() != 1)
        return call.fail("exactly one name is needed");
    if (!call.has("exists"))
        return call.fail("no place is kept for the window '" + names.front() + "'");
    result = false;
    return Status::ok();
}

}  // namespace torvel
