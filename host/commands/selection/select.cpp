#include <algorithm>

#include "commands/attribute/value.h"
#include "edit/components.h"
#include "script/session.h"
#include "edit/sets.h"
#include "nodes/transform/visibility.h"

namespace torvel {
namespace {

using Items = std::vector<SelectionItem>;

const FlagRow kSelectFlags[] = {
    {"add", "add"},   {"addFirst", "af"}, {"all", "all"},      {"allDagObjects", "ado"},
    {"clear", "cl"},  {"deselect", "d"},  {"hierarchy", "hi"}, {"noExpand", "ne"},
    {"replace", "r"}, {"toggle", "tgl"},  {"visible", "vis"},
};

SelectionItem wholeNode(NodeHandle node) {
    SelectionItem item;
    item.node = node;
    return item;
}

Status addPlugItem(const CommandCall& call, const std::string& text, Items& out) {
    if (componentItems(call.scene(), text, out))
        return out.empty() ? Status::notFound("No object matches name: " + text) : Status::ok();
    SelectionItem item;
    if (Status found = call.resolvePlug(text, item.plug); !found)
        return found;
    item.node = item.plug.node;
    out.push_back(item);
    return Status::ok();
}

// Everything that one text names: a node, the matches of a pattern, a plug or components.
Status itemsOfText(const CommandCall& call, const std::string& raw, Items& out) {
    const std::string text(Names::trimmed(raw));
    const Scene& scene = call.scene();
    if (text.find('.') != std::string::npos)
        return addPlugItem(call, text, out);
    if (scene.names().isPattern(text)) {
        const std::vector<NodeHandle> nodes = scene.names().find(text);
        for (NodeHandle node : nodes)
            out.push_back(wholeNode(node));
        return nodes.empty() ? Status::notFound("No object matches name: " + text) : Status::ok();
    }
    NodeHandle node;
    if (Status found = call.resolve(text, node); !found)
        return found;
    if (scene.isType(node, "objectSet") && !call.has("noExpand"))
        for (const SelectionItem& member : setMembers(scene, node))
            out.push_back(member);
    else
        out.push_back(wholeNode(node));
    return Status::ok();
}

void withBelow(const Scene& scene, Items& items) {
    Items all;
    for (const SelectionItem& item : items) {
        std::vector<NodeHandle> stack{item.node};
        while (!stack.empty()) {
            const NodeHandle at = stack.back();
            stack.pop_back();
            all.push_back(wholeNode(at));
            const std::vector<NodeHandle>& children = scene.node(at)->children;
            for (std::size_t i = children.size(); i-- > 0;)
                if (!scene.node(children[i])->type->is(kShapeType))
                    stack.push_back(children[i]);
        }
    }
    items = all;
}

void withoutHidden(const Scene& scene, Items& items) {
    const auto hidden = [&](const SelectionItem& item) {
        return scene.node(item.node)->isDag() && !isShown(scene, item.node);
    };
    items.erase(std::remove_if(items.begin(), items.end(), hidden), items.end());
}

// Top-level DAG nodes; -all takes sets and the like as well.
void addAll(const CommandCall& call, Items& out) {
    const Scene& scene = call.scene();
    for (NodeHandle node : scene.node(scene.world())->children)
        out.push_back(wholeNode(node));
    for (NodeHandle node : scene.allNodes())
        if (call.has("all") && scene.isType(node, "objectSet") && !scene.node(node)->isDefault)
            out.push_back(wholeNode(node));
}

void applySelection(const CommandCall& call, const Items& items) {
    Selection& selection = call.scene().selection();
    const auto selected = [&](const SelectionItem& item) {
        return std::find(selection.items().begin(), selection.items().end(), item) !=
               selection.items().end();
    };
    if (call.has("addFirst")) {
        Items all = items;
        all.insert(all.end(), selection.items().begin(), selection.items().end());
        selection.replace(all);
        return;
    }
    if (!call.has("add") && !call.has("deselect") && !call.has("toggle")) {
        selection.replace(items);
        return;
    }
    for (const SelectionItem& item : items) {
        const bool out = call.has("deselect") || (call.has("toggle") && selected(item));
        if (out)
            selection.remove(item);
        else
            selection.add(item);
    }
}

Status select(const CommandCall& call, Value&) {
    Items items;
    for (const std::string& text : call.texts())
        if (Status found = itemsOfText(call, text, items); !found)
            return found;
    if (call.has("clear")) {
        call.scene().selection().clear();
        return Status::ok();
    }
    const bool all = call.has("all") || call.has("allDagObjects");
    if (all)
        addAll(call, items);
    else if (call.args().empty() && call.has("hierarchy"))
        items = call.scene().selection().items();
    else if (call.args().empty())
        return Status::ok();
    if (call.has("hierarchy"))
        withBelow(call.scene(), items);
    if (call.has("visible"))
        withoutHidden(call.scene(), items);
    applySelection(call, items);
    return Status::ok();
}

// --- selectMode, hilite --------------------------------------------------------------------------

const FlagRow kModeFlags[] = {{"component", "co"}, {"object", "o"}};

void toComponents(Selection& selection) {
    std::vector<NodeHandle> objects = selection.nodes();
    if (!objects.empty())
        selection.hilited = std::move(objects);
    Items kept;
    for (const SelectionItem& item : selection.items())
        if (!item.component.empty() || !item.plug.isNull())
            kept.push_back(item);
    selection.componentMode = true;
    selection.replace(kept);
}

void toObjects(const Scene& scene, Selection& selection) {
    Items kept;
    for (const SelectionItem& item : selection.items())
        if (item.component.empty())
            kept.push_back(item);
    for (NodeHandle node : selection.hilited)
        if (scene.isValid(node))
            kept.push_back(wholeNode(node));
    selection.hilited.clear();
    selection.componentMode = false;
    selection.replace(kept);
}

Status selectMode(const CommandCall& call, Value& result) {
    Selection& selection = call.scene().selection();
    if (call.isQuery()) {
        result = Value(call.has("component") == selection.componentMode);
        return Status::ok();
    }
    if (call.has("component") && !selection.componentMode)
        toComponents(selection);
    else if (call.has("object") && selection.componentMode)
        toObjects(call.scene(), selection);
    return Status::ok();
}

const FlagRow kHiliteFlags[] = {{"replace", "r"}, {"toggle", "tgl"}, {"unHilite", "u"}};

Status hilite(const CommandCall& call, Value&) {
    std::vector<NodeHandle> nodes;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    std::vector<NodeHandle>& hilited = call.scene().selection().hilited;
    if (call.has("replace"))
        hilited.clear();
    for (NodeHandle node : nodes) {
        const auto at = std::find(hilited.begin(), hilited.end(), node);
        const bool present = at != hilited.end();
        if (present && (call.has("unHilite") || call.has("toggle")))
            hilited.erase(at);
        else if (!present && !call.has("unHilite"))
            hilited.push_back(node);
    }
    return Status::ok();
}

const Command kSelectCommands[] = {
    {"hilite", kHiliteFlags, countOf(kHiliteFlags), hilite,
     "Objects whose components can be picked."},
    {"select", kSelectFlags, countOf(kSelectFlags), select, "Changes the selection."},
    {"selectMode", kModeFlags, countOf(kModeFlags), selectMode, "Object or component mode."},
};

}  // namespace

CommandTable selectCommands() {
    return {kSelectCommands, std::size(kSelectCommands)};
}

}  // namespace torvel
