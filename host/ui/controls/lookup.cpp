#include "ui/controls/lookup.h"

#include <cmath>

#include "script/session.h"
#include "ui/desktop/main_window.h"
#include "ui/controls/option_menu.h"

namespace torvel {

Status uiTree(const CommandCall& call, UiTree*& tree) {
    auto* window = mainWindowOf(call.session());
    if (!window)
        return call.fail("there is no user interface (--no-ui)");
    tree = &window->tree();
    return Status::ok();
}

Status namedElement(const CommandCall& call, UiTree& tree, UiKind kind, int& id) {
    const std::vector<std::string> names = call.texts();
    if (names.size() != 1)
        return call.fail("exactly one name is needed");
    if (Status found = tree.find(names.front(), id); !found)
        return found;
    const UiElement* one = tree.element(id);
    if (!one || one->kind != kind)
        return Status::failure("Object '" + names.front() + "' not found.");
    return Status::ok();
}

bool namedElementExists(const CommandCall& call, UiTree& tree, UiKind kind) {
    const std::vector<std::string> names = call.texts();
    const UiElement* one = names.size() == 1 ? tree.element(tree.lookUp(names.front())) : nullptr;
    return one && one->kind == kind;
}

Status checkPixels(const CommandCall& call, const FlagUse& use) {
    constexpr int kMostPixels = 16384;
    for (const Value& value : use.values)
        if (value.isNumber() && !(std::abs(value.number()) <= kMostPixels))
            return call.fail(std::string("the flag '") + use.row->longName + "' takes at most " +
                             std::to_string(kMostPixels) + " pixels");
    return Status::ok();
}

Status newName(const CommandCall& call, std::string& name) {
    const std::vector<std::string> names = call.texts();
    if (names.size() > 1)
        return call.fail("more than one name given");
    name = names.empty() ? std::string() : names.front();
    return Status::ok();
}

QWidget* foreignWindow(const Session& session, const std::string& name) {
    const auto wanted = QString::fromStdString(name);
    for (QObject* child : mainWindowOf(session)->children()) {
        auto* widget = qobject_cast<QWidget*>(child);
        if (widget && widget->isWindow() && !wanted.isEmpty() && widget->objectName() == wanted)
            return widget;
    }
    return nullptr;
}

int windowOf(const UiTree& tree, int id) {
    for (const UiElement* one = tree.element(id); one; one = tree.element(id)) {
        if (one->kind == UiKind::Window)
            return id;
        id = one->parent;
    }
    return UiTree::kNone;
}

QWidget* optionMenu(const UiTree& tree, int id) {
    const UiElement* one = tree.element(id);
    auto* widget = one ? qobject_cast<QWidget*>(one->object.data()) : nullptr;
    auto* own = dynamic_cast<OptionMenu*>(widget);
    // With a label the field stands inside the control.
    return own || !widget || one->type != "optionMenu" ? own : widget->findChild<OptionMenu*>();
}

bool isOptionMenu(const UiTree& tree, int id) {
    return optionMenu(tree, id) != nullptr;
}

}  // namespace torvel
