#include "edit/placing.h"
#include "edit/copy.h"
#include "script/session.h"

namespace torvel {
namespace {

const FlagRow kDuplicateFlags[] = {
    {"fullPath", "f"},        {"inputConnections", "ic"}, {"name", "n", "s"},
    {"parentOnly", "po"},     {"renameChildren", "rc"},   {"returnRootsOnly", "rr"},
    {"transformsOnly", "to"},
};

void addNames(const CommandCall& call, const CopiedNodes& copies, std::vector<std::string>& names) {
    const Scene& scene = call.scene();
    for (std::size_t i = 0; i < copies.size(); ++i) {
        const NodeHandle copy = copies[i].second;
        if (i > 0 && (call.has("returnRootsOnly") || scene.node(copy)->type->is(kShapeType)))
            continue;
        names.push_back(call.has("fullPath") ? scene.names().fullPath(copy)
                                             : scene.node(copy)->name);
    }
}

Status duplicate(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    std::vector<NodeHandle> nodes, roots;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    if (nodes.empty())
        return call.fail("Nothing to duplicate.");
    CopyOptions options;
    options.withChildren = !call.has("parentOnly");
    options.withShapes = !call.has("transformsOnly");
    options.renameChildren = call.has("renameChildren");
    options.inputConnections = call.has("inputConnections");
    std::vector<std::string> names;
    for (NodeHandle node : nodes) {
        CopiedNodes copies;
        if (Status done =
                copyTree(scene, node, parentOf(scene, node), call.text("name"), options, copies);
            !done)
            return call.fail(done.text());
        addNames(call, copies, names);
        roots.push_back(copies.front().second);
    }
    scene.selection().replaceNodes(roots);
    result = Value::strings(names);
    return Status::ok();
}

const Command kDuplicateCommands[] = {{"duplicate", kDuplicateFlags, countOf(kDuplicateFlags),
                                       duplicate, "Copies nodes with all below them."}};

}  // namespace

CommandTable duplicateCommands() {
    return {kDuplicateCommands, std::size(kDuplicateCommands)};
}

}  // namespace torvel
