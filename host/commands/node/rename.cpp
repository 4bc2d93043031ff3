#include <algorithm>

#include "script/session.h"

namespace torvel {
namespace {

const FlagRow kRenameFlags[] = {{"ignoreShape", "is"}};

// "arm#": the mark becomes the first number that makes a free name.
std::string withNumber(const Scene& scene, const std::string& wanted) {
    const std::size_t mark = wanted.find('#');
    if (mark == std::string::npos)
        return wanted;
    for (int number = 1;; ++number) {
        const std::string name =
            wanted.substr(0, mark) + std::to_string(number) + wanted.substr(mark + 1);
        if (scene.names().find(name).empty())
            return name;
    }
}

std::size_t stemLength(const std::string& name) {
    return name.find_last_not_of("0123456789") + 1;
}

// The shape's name after its transform's: "armShape" follows "arm", "armShape2" follows "arm2" as
// well. Other names stay.
std::string shapeNameAfter(const std::string& shape, const std::string& oldName,
                           const std::string& newName) {
    if (shape.rfind(oldName + "Shape", 0) == 0)
        return newName + shape.substr(oldName.size());
    const std::size_t oldStem = stemLength(oldName), newStem = stemLength(newName);
    if (shape != oldName.substr(0, oldStem) + "Shape" + oldName.substr(oldStem))
        return shape;
    return newName.substr(0, newStem) + "Shape" + newName.substr(newStem);
}

void renameShapes(Scene& scene, NodeHandle transform, const std::string& oldName,
                  const std::string& newName) {
    const std::vector<NodeHandle> children = scene.node(transform)->children;
    for (NodeHandle child : children) {
        const std::string now = scene.node(child)->name,
                          wanted = shapeNameAfter(now, oldName, newName);
        if (scene.node(child)->type->is(kShapeType) && wanted != now)
            scene.rename(child, wanted);
    }
}

// A leading bar is a path to the world level, not an illegal character.
bool needsRepair(std::string wanted, const std::string& legal) {
    while (!wanted.empty() && (wanted.front() == '|' || wanted.front() == ':'))
        wanted.erase(0, 1);
    return wanted != legal;
}

Status rename(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    const std::vector<std::string> texts = call.texts();
    NodeHandle node;
    if (texts.empty() || texts.size() > 2)
        return call.fail("Needs an object and its new name.");
    if (texts.size() == 2) {
        if (Status found = call.resolve(texts[0], node); !found)
            return found;
    } else {
        const std::vector<NodeHandle> nodes = scene.selection().nodes();
        if (nodes.empty())
            return call.fail("No object was named and nothing is selected.");
        node = nodes.front();
    }
    const std::string wanted = withNumber(scene, texts.back()), legal = Names::legal(wanted);
    if (legal.empty())
        return Status::failure("New name has no legal characters.");
    if (scene.node(node)->locked)
        return Status::failure("Cannot rename a locked node.");
    if (scene.node(node)->isDefault)
        return Status::failure("Cannot rename a read only node.");
    if (needsRepair(wanted, legal))
        scene.log().write(Channel::Warning, "The name '" + wanted + "' has illegal characters; '" +
                                                legal + "' is used instead.");
    const std::string oldName = scene.node(node)->name;
    const std::string newName = scene.rename(node, legal);
    if (!call.has("ignoreShape") && newName != oldName)
        renameShapes(scene, node, oldName, newName);
    result = Value(scene.names().shortest(node));
    return Status::ok();
}

// --- lockNode ------------------------------------------------------------------------------------

const FlagRow kLockFlags[] = {{"ignoreComponents", "ic"}, {"lock", "l", "b"}};

Status lockNode(const CommandCall& call, Value& result) {
    std::vector<NodeHandle> nodes;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    Value::List states;
    for (NodeHandle node : nodes) {
        if (!call.isQuery())
            call.scene().changeFacts(
                node, [&](NodeFacts& facts) { facts.locked = call.flag("lock", true); });
        states.emplace_back(call.scene().node(node)->locked);
    }
    if (call.isQuery())
        result = Value(std::move(states));
    return Status::ok();
}

// --- namespaces ----------------------------------------------------------------------------------

std::string bare(std::string name) {
    while (!name.empty() && name.front() == ':')
        name.erase(0, 1);
    return name;
}

bool namespaceExists(const Scene& scene, const std::string& name) {
    bool found = name.empty() || name == "UI" || name == "shared";
    scene.forEachNode(
        [&](const Node& node) { found = found || node.name.rfind(name + ":", 0) == 0; });
    return found;
}

const FlagRow kNamespaceFlags[] = {{"exists", "ex", "s", kAllModes, false, true},
                                   {"setNamespace", "set", "s"}};

Status namespaceCommand(const CommandCall& call, Value& result) {
    if (call.has("exists")) {
        result = Value(namespaceExists(call.scene(), bare(call.text("exists"))));
        return Status::ok();
    }
    if (call.has("setNamespace") && bare(call.text("setNamespace")).empty())
        return Status::ok();
    return call.fail(
        "Only the root namespace can be current; namespaces come with the names of their nodes.");
}

const FlagRow kNamespaceInfoFlags[] = {{"currentNamespace", "cur"}, {"listOnlyNamespaces", "lon"}};

Status namespaceInfo(const CommandCall& call, Value& result) {
    if (!call.has("listOnlyNamespaces")) {
        result = Value(":");
        return Status::ok();
    }
    std::vector<std::string> names{"UI", "shared"};
    for (NodeHandle handle : call.scene().allNodes()) {
        const std::string& name = call.scene().node(handle)->name;
        const std::size_t colon = name.find(':');
        if (colon != std::string::npos &&
            std::find(names.begin(), names.end(), name.substr(0, colon)) == names.end())
            names.push_back(name.substr(0, colon));
    }
    result = Value::strings(names);
    return Status::ok();
}

const Command kRenameCommands[] = {
    {"lockNode", kLockFlags, countOf(kLockFlags), lockNode,
     "Locks nodes against deletion and renaming."},
    {"namespace", kNamespaceFlags, countOf(kNamespaceFlags), namespaceCommand,
     "Asks for namespaces."},
    {"namespaceInfo", kNamespaceInfoFlags, countOf(kNamespaceInfoFlags), namespaceInfo,
     "Lists namespaces."},
    {"rename", kRenameFlags, countOf(kRenameFlags), rename, "Gives a node another name."},
};

}  // namespace

CommandTable renameCommands() {
    return {kRenameCommands, std::size(kRenameCommands)};
}

}  // namespace torvel
