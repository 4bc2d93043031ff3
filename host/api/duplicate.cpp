#include "api/duplicate.h"

#include "api/bridge.h"

namespace torvel::api {

Status duplicateSubtree(NodeHandle top, NodeHandle& copy)
{
    Session* session = Session::current();
    if (!session)
        return Status::failure("no scene");
    Scene& graph = session->scene();
    const std::vector<SelectionItem> selected = graph.selection().items();
    RawFlag rootsOnly;
    rootsOnly.name = "returnRootsOnly";
    rootsOnly.values.emplace_back(true);
    rootsOnly.fromPython = true;
    const std::size_t before = sceneNode(graph.node(top)->parents.front())->children.size();

    Value result;
    const Status status = session->call("duplicate", {rootsOnly}, {Value(graph.names().fullPath(top))}, result);
    graph.selection().replace(selected);
    if (!status)
        return status;
    // The copy is the last child of the parent that both share.
    const Node* parent = sceneNode(graph.node(top)->parents.front());
    if (parent->children.size() <= before)
        return Status::failure("duplicate made nothing");
    copy = parent->children.back();
    return Status::ok();
}

}  // namespace torvel::api
