#include "ui/ui_lookup.h"

#include "commands/session.h"
#include "ui/main_window.h"

namespace torvel {

Status uiTree(const CommandCall& call, UiTree*& tree) {
    auto* window = qobject_cast<MainWindow*>(call.session().mainWindow);
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

Status newName(const CommandCall& call, std::string& name) {
    const std::vector<std::string> names = call.texts();
    if (names.size() > 1)
        return call.fail("more than one name given");
    name = names.empty() ? std::string() : names.front();
    return Status::ok();
}

}  // namespace torvel
