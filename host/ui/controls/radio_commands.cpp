// radioCollection.
#include <QButtonGroup>
#include <QRadioButton>

#include "script/session.h"
#include "ui/desktop/main_window.h"
#include "ui/commands.h"
#include "ui/controls/lookup.h"

namespace torvel {

namespace {

Status makeCollection(const CommandCall& call, UiTree& tree, Value& result) {
    UiElement one;
    one.kind = UiKind::Collection;
    one.type = "radioCollection";
    if (Status named = newName(call, one.name); !named)
        return named;
    one.parent = tree.currentParent();
    if (call.has("parent"))
        if (Status found = tree.find(call.text("parent"), one.parent); !found)
            return found;
    const UiElement* around = tree.element(one.parent);
    auto* group = new QButtonGroup(around ? around->object.data() : nullptr);
    one.object = group;
    int id = UiTree::kNone;
    if (Status added = tree.add(one, "radioCollection", id); !added) {
        delete group;
        return added;
    }
    tree.setCurrentCollection(id);
    result = tree.fullPath(id);
    return Status::ok();
}

std::vector<std::string> itemPaths(const UiTree& tree, const QButtonGroup& group) {
    std::vector<std::string> paths;
    for (const QAbstractButton* button : group.buttons())
        if (const int id = tree.idOf(button); id != UiTree::kNone)
            paths.push_back(tree.fullPath(id));
    return paths;
}

Status askCollection(const CommandCall& call, const UiTree& tree, const QButtonGroup& group,
                     Value& result) {
    const std::vector<std::string> paths = itemPaths(tree, group);
    if (call.has("select")) {
        const UiElement* one = tree.element(tree.idOf(group.checkedButton()));
        result = one ? one->name : std::string("NONE");
    } else if (call.has("collectionItemArray")) {
        result = paths.empty() ? Value() : Value::strings(paths);
    } else if (call.has("numberOfCollectionItems")) {
        result = static_cast<int>(paths.size());
    } else {
        return call.fail("no flag to query");
    }
    return Status::ok();
}

Status selectButton(const CommandCall& call, MainWindow& window, const QButtonGroup& group) {
    int id = UiTree::kNone;
    if (Status found = window.tree().find(call.text("select"), id); !found)
        return found;
    auto* button = qobject_cast<QAbstractButton*>(window.tree().element(id)->object.data());
    if (!button || button->group() != &group)
        return call.fail("'" + call.text("select") + "' is no button of the collection");
    const MainWindow::Scripted quiet(window);
    button->setChecked(true);
    return Status::ok();
}

}  // namespace

Status runRadioCollection(const CommandCall& call, Value& result) {
    UiTree* tree = nullptr;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    if (call.has("exists")) {
        result = namedElementExists(call, *tree, UiKind::Collection);
        return Status::ok();
    }
    if (call.isCreate())
        return makeCollection(call, *tree, result);
    int id = UiTree::kNone;
    if (Status found = namedElement(call, *tree, UiKind::Collection, id); !found)
        return found;
    const auto& group = *static_cast<QButtonGroup*>(tree->element(id)->object.data());
    if (call.isQuery())
        return askCollection(call, *tree, group, result);
    if (call.has("select"))
        if (Status done = selectButton(call, *mainWindowOf(call.session()), group); !done)
            return done;
    result = tree->fullPath(id);
    return Status::ok();
}

}  // namespace torvel
