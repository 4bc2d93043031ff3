#include <algorithm>

#include "edit/placing.h"
#include "script/session.h"

namespace torvel {
namespace {

const FlagRow kParentFlags[] = {
    {"absolute", "a"}, {"addObject", "add"},   {"noConnections", "nc"}, {"noInvScale", "nis"},
    {"relative", "r"}, {"removeObject", "rm"}, {"shape", "s"},          {"world", "w"},
};

std::string parentName(const Scene& scene, NodeHandle parent) {
    return parent == scene.world() ? "world" : scene.names().shortest(parent);
}

// Takes out the nodes that are there already, telling so; the message and the failure are those of
// a no-op.
std::vector<NodeHandle> notYetThere(Scene& scene, const std::vector<NodeHandle>& nodes,
                                    NodeHandle parent) {
    std::vector<NodeHandle> moving;
    for (NodeHandle node : nodes) {
        const std::vector<NodeHandle>& parents = scene.node(node)->parents;
        if (parents.size() != 1 || parents.front() != parent)
            moving.push_back(node);
        else
            scene.log().write(Channel::Warning,
                              "Object, '" + scene.names().shortest(node) +
                                  "', skipped.  It is already a child of the parent, '" +
                                  parentName(scene, parent) + "'.");
    }
    return moving;
}

Status addInstances(const CommandCall& call, const std::vector<NodeHandle>& nodes,
                    NodeHandle parent) {
    for (NodeHandle node : nodes)
        if (Status done = call.scene().addParent(node, parent); !done)
            return call.fail(done.text());
    return Status::ok();
}

// The parent that a path text names ("|a|shape": a); the only one otherwise.
NodeHandle namedParent(const Scene& scene, NodeHandle node, const std::string& text) {
    const std::size_t bar = text.rfind('|');
    if (bar != std::string::npos && bar > 0) {
        const NodeHandle above = scene.names().lookUp(text.substr(0, bar));
        const std::vector<NodeHandle>& parents = scene.node(node)->parents;
        if (std::find(parents.begin(), parents.end(), above) != parents.end())
            return above;
    }
    return parentOf(scene, node);
}

Status removeInstances(const CommandCall& call) {
    for (const std::string& text : call.texts()) {
        NodeHandle node;
        if (Status found = call.resolve(text, node); !found)
            return found;
        if (Status done = call.scene().removeParent(node, namedParent(call.scene(), node, text));
            !done)
            return call.fail(done.text());
    }
    return Status::ok();
}

Status objectsAndParent(const CommandCall& call, std::vector<NodeHandle>& nodes,
                        NodeHandle& parent) {
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    if (call.has("world")) {
        parent = call.scene().world();
    } else if (!nodes.empty()) {
        parent = nodes.back();
        nodes.pop_back();
    }
    if (nodes.empty())
        return call.fail(call.has("world") ? "No objects were named to parent."
                                           : "Needs objects and their new parent.");
    for (NodeHandle node : nodes)
        if (!call.scene().node(node)->isDag())
            return call.fail("'" + call.scene().node(node)->name +
                             "' is no object of the hierarchy.");
    return Status::ok();
}

// Moving shapes needs -shape, so that nobody tears them off their transforms by accident.
Status refuseLooseShapes(const CommandCall& call, const std::vector<NodeHandle>& nodes) {
    for (NodeHandle node : nodes)
        if (call.scene().node(node)->type->is(kShapeType) && !call.has("shape"))
            return call.fail("The shape '" + call.scene().node(node)->name +
                             "' can be parented with -shape only.");
    return Status::ok();
}

Status parent(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    if (call.has("removeObject"))
        return removeInstances(call);
    std::vector<NodeHandle> nodes, moving;
    NodeHandle target;
    Status done = objectsAndParent(call, nodes, target);
    if (done)
        done = refuseLooseShapes(call, nodes);
    if (!done)
        return done;
    if (call.has("addObject")) {
        done = addInstances(call, nodes, target);
    } else {
        for (NodeHandle node : nodes)
            if (scene.isAncestor(node, target))
                return Status::failure("Cannot parent an object to itself or one of its children");
        moving = notYetThere(scene, nodes, target);
        if (moving.empty())
            return Status::failure("Maya command error");
        MoveOptions options;
        options.keep = call.has("relative") ? Placement::Local : Placement::World;
        options.linkScales = !call.has("noConnections") && !call.has("noInvScale");
        done = moveUnder(scene, moving, target, options);
    }
    if (!done)
        return done;
    std::vector<std::string> names;
    for (NodeHandle node : nodes)
        names.push_back(scene.names().shortest(node));
    scene.selection().replaceNodes(nodes);
    result = Value::strings(names);
    return Status::ok();
}

const Command kParentCommands[] = {
    {"parent", kParentFlags, countOf(kParentFlags), parent, "Moves objects under another one."}};

}  // namespace

CommandTable parentCommands() {
    return {kParentCommands, std::size(kParentCommands)};
}

}  // namespace torvel
