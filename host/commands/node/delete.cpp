#include <algorithm>

#include "commands/attribute/value.h"
#include "edit/components.h"
#include "edit/deletion.h"
#include "script/session.h"

namespace torvel {
namespace {

const FlagRow kDeleteFlags[] = {
    {"all", "all"},
    {"attribute", "at", "s", kCreate | kEdit, true},
    {"channels", "c"},
    {"constraints", "cn"},
    {"constructionHistory", "ch"},
};

std::vector<NodeHandle> shapesOf(const Scene& scene, NodeHandle node) {
    std::vector<NodeHandle> shapes, open{node};
    while (!open.empty()) {
        const NodeHandle at = open.back();
        open.pop_back();
        const Node* self = scene.node(at);
        if (!self)
            continue;
        if (self->type->is(kShapeType) &&
            scene.number(scene.findPlug(at, "intermediateObject")) == 0.0)
            shapes.push_back(at);
        if (at == node)
            open.insert(open.end(), self->children.begin(), self->children.end());
    }
    return shapes;
}

// A node may go with the history of one before it.
Status deleteHistories(const CommandCall& call, const std::vector<NodeHandle>& nodes) {
    for (NodeHandle node : nodes)
        for (NodeHandle shape : shapesOf(call.scene(), node))
            if (Status done = deleteHistory(call.scene(), shape); !done)
                return done;
    return Status::ok();
}

bool isPartAsked(const CommandCall& call, const Scene& scene, const Plug& plug) {
    const std::vector<const FlagUse*> uses = call.uses("attribute");
    return uses.empty() || std::any_of(uses.begin(), uses.end(), [&](const FlagUse* use) {
               const AttrInfo& info = scene.info(plug);
               const std::string& name = use->values[0].string();
               const AttrInfo& above =
                   info.parent == kNoAttr ? info : scene.info(scene.parentPlug(plug));
               return info.longName == name || info.shortName == name || above.longName == name ||
                      above.shortName == name;
           });
}

// Curves that feed a node's channels; constraints below a node.
std::vector<NodeHandle> partsOf(const CommandCall& call, const std::vector<NodeHandle>& nodes) {
    const Scene& scene = call.scene();
    std::vector<NodeHandle> parts;
    for (NodeHandle node : nodes) {
        for (const Scene::Connection& c : scene.incoming(node))
            if (call.has("channels") && scene.isType(c.source.node, "animCurve") &&
                isPartAsked(call, scene, c.target))
                parts.push_back(c.source.node);
        for (NodeHandle child : scene.node(node)->children)
            if (call.has("constraints") && scene.node(child)->type->is(kConstraintType))
                parts.push_back(child);
    }
    return parts;
}

std::vector<NodeHandle> everyPart(const CommandCall& call) {
    const Scene& scene = call.scene();
    std::vector<NodeHandle> nodes;
    for (NodeHandle node : scene.allNodes()) {
        const NodeType& type = *scene.node(node)->type;
        if (!call.has("constraints") || type.is(kConstraintType))
            if (!call.has("channels") || type.derivesFrom("animCurve"))
                nodes.push_back(node);
    }
    return nodes;
}

// Components cannot go alone; the name of one is refused instead of taking its whole object along.
Status objectsToDelete(const CommandCall& call, std::vector<NodeHandle>& nodes) {
    std::vector<SelectionItem> items;
    for (const std::string& text : call.texts()) {
        if (componentItems(call.scene(), text, items))
            return call.fail("Components cannot be deleted: " + text);
        if (call.scene().names().isPattern(text)) {
            const std::vector<NodeHandle> found = call.scene().names().find(text);
            if (found.empty())
                return Status::notFound("No object matches name: " + text);
            nodes.insert(nodes.end(), found.begin(), found.end());
            continue;
        }
        NodeHandle node;
        if (Status found = call.resolve(text, node); !found)
            return found;
        nodes.push_back(node);
    }
    return call.args().empty() ? call.objectsOrSelection(nodes) : Status::ok();
}

Status deleteCommand(const CommandCall& call, Value&) {
    std::vector<NodeHandle> nodes;
    const bool parts = call.has("channels") || call.has("constraints"),
               history = call.has("constructionHistory");
    if (call.has("all")) {
        if (!parts && !history)
            return call.fail("The flag 'all' needs one that tells what to delete.");
        nodes = history ? call.scene().allNodes() : everyPart(call);
    } else if (Status found = objectsToDelete(call, nodes); !found) {
        return found;
    }
    if (history)
        return deleteHistories(call, nodes);
    if (parts && !call.has("all"))
        nodes = partsOf(call, nodes);
    Status done = deleteWithDependents(call.scene(), nodes);
    return done ? done : call.fail(done.text());
}

const Command kDeleteCommands[] = {{"delete", kDeleteFlags, countOf(kDeleteFlags), deleteCommand,
                                    "Deletes nodes, or parts of them."}};

}  // namespace

CommandTable deleteCommands() {
    return {kDeleteCommands, std::size(kDeleteCommands)};
}

}  // namespace torvel
