#include "edit/bounds.h"
#include "edit/placing.h"
#include "script/session.h"

namespace torvel {
namespace {

const FlagRow kCreateFlags[] = {
    {"name", "n", "s"}, {"parent", "p", "s"}, {"shared", "s"}, {"skipSelect", "ss"}};

// A shape without a parent gets a transform; the name goes to the shape.
Status createShape(Scene& scene, const std::string& type, const std::string& name,
                   NodeHandle& made) {
    NodeHandle transform;
    if (Status done = scene.createNode("transform", scene.names().numbered(type), {}, transform);
        !done)
        return done;
    const Status done = scene.createNode(type, name, transform, made);
    if (!done)
        scene.deleteNodes({transform});
    return done;
}

bool findShared(const Scene& scene, const std::string& type, const std::string& name,
                NodeHandle& found) {
    found = scene.names().lookUp(name);
    return !found.isNull() && scene.isType(found, type);
}

Status createNode(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    const std::vector<std::string> texts = call.texts();
    if (texts.size() != 1)
        return call.fail("Needs one type of node.");
    const NodeType* type = scene.types().find(texts[0]);
    if (!type || type->is(kAbstractType))
        return call.fail("Unknown object type: " + texts[0]);
    NodeHandle parent, made;
    if (call.has("parent"))
        if (Status found = call.resolve(call.text("parent"), parent); !found)
            return found;
    const std::string name = call.text("name");
    if (call.has("shared") && findShared(scene, texts[0], name, made)) {
        result = Value(scene.names().shortest(made));
        return Status::ok();
    }
    if (call.has("name") && !name.empty() && Names::legal(name).empty())
        return Status::failure("New name has no legal characters.");
    const bool alone = type->is(kShapeType) && parent.isNull();
    const Status done =
        alone ? createShape(scene, texts[0], name, made)
              : scene.createNode(texts[0], name, type->is(kDagType) ? parent : NodeHandle(), made);
    if (!done)
        return done;
    if (!call.has("skipSelect"))
        scene.selection().replace(made);
    result = Value(scene.names().shortest(made));
    return Status::ok();
}

// --- group ---------------------------------------------------------------------------------------

const FlagRow kGroupFlags[] = {{"absolute", "a"},    {"empty", "em"},   {"name", "n", "s"},
                               {"parent", "p", "s"}, {"relative", "r"}, {"world", "w"}};

// The pivots of a new group stand in the middle of its members; they move nothing.
void centrePivots(Scene& scene, NodeHandle group) {
    Box3d box;
    for (NodeHandle child : scene.node(group)->children)
        box.extendBy(worldBounds(scene, child));
    if (box.isEmpty())
        return;
    const V3d centre = box.center() * inverseOf(worldMatrix(scene, group));
    scene.setVec3(Plug(group, transformAttrs().rotatePivot), centre);
    scene.setVec3(Plug(group, transformAttrs().scalePivot), centre);
}

Status groupParent(const CommandCall& call, const std::vector<NodeHandle>& nodes,
                   NodeHandle& parent) {
    parent = call.scene().world();
    if (call.has("parent"))
        return call.resolve(call.text("parent"), parent);
    if (!call.has("world") && !nodes.empty())
        parent = lowestCommonParent(call.scene(), nodes);
    return Status::ok();
}

Status group(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    std::vector<NodeHandle> nodes;
    const bool empty = call.has("empty");
    if (!empty || !call.args().empty())
        if (Status found = call.objectsOrSelection(nodes); !found)
            return found;
    if (nodes.empty() && !empty)
        return call.fail("Not enough objects or values.");
    if (empty)
        nodes.clear();
    for (NodeHandle node : nodes)
        if (!scene.node(node)->isDag() || scene.node(node)->type->is(kShapeType))
            return call.fail("Only transforms can be grouped: '" + scene.node(node)->name + "'.");
    NodeHandle parent, made;
    if (Status found = groupParent(call, nodes, parent); !found)
        return found;
    const std::string name = call.text("name", scene.names().numbered("group"));
    if (Status done = scene.createNode("transform", name, parent, made); !done)
        return done;
    MoveOptions options;
    options.keep = call.has("relative") ? Placement::Local : Placement::World;
    if (Status done = moveUnder(scene, nodes, made, options); !done) {
        scene.deleteNodes({made});
        return call.fail(done.text());
    }
    centrePivots(scene, made);
    scene.selection().replace(made);
    result = Value(scene.names().shortest(made));
    return Status::ok();
}

const Command kCreateCommands[] = {
    {"createNode", kCreateFlags, countOf(kCreateFlags), createNode, "Makes a node."},
    {"group", kGroupFlags, countOf(kGroupFlags), group, "Puts objects under a new transform."},
};

}  // namespace

CommandTable createCommands() {
    return {kCreateCommands, std::size(kCreateCommands)};
}

}  // namespace torvel
