#include <algorithm>

#include "graph/instances.h"
#include "graph/scene.h"
#include "graph/writers.h"

namespace torvel {

bool Scene::isAncestor(NodeHandle ancestor, NodeHandle handle) const {
    std::vector<NodeHandle> stack{handle};
    while (!stack.empty()) {
        const NodeHandle at = stack.back();
        stack.pop_back();
        if (at == ancestor)
            return true;
        if (const Node* n = node(at))
            stack.insert(stack.end(), n->parents.begin(), n->parents.end());
    }
    return false;
}

Status Scene::reparent(NodeHandle child, NodeHandle newParent) {
    newParent = commonWorld(newParent);
    Node* self = node(child);
    Node* above = node(newParent);
    if (!self || !above || !self->isDag() || !above->isDag() || child == m_world)
        return Status::failure("Only DAG nodes can be parented, and not the world");
    if (isAncestor(child, newParent))
        return Status::failure("Cannot parent an object to itself or one of its children");
    if (self->type->is(kShapeType) && (newParent == m_world || !above->type->is(kTransformType)))
        return Status::failure("A shape needs a transform as its parent: " + self->name);
    if (newParent != m_world && above->type->is(kShapeType))
        return Status::failure("A shape cannot be a parent: " + above->name);
    if (const Status few = checkPaths(*this, child, newParent, false); !few)
        return few;
    detachFromParents(*self);
    self->parents.push_back(newParent);
    above->children.push_back(child);
    rename(child, self->name);  // numbered when a sibling bears the name
    m_writersStale = m_writersStale || !m_writers->writers.empty();
    ++m_structure;
    setDirty(Plug(child, self->findAttr("parentMatrix")));
    modified = true;
    tell([child](SceneListener& l) { l.nodeReparented(child); });
    return Status::ok();
}

Status Scene::addParent(NodeHandle child, NodeHandle newParent) {
    Node* self = node(child);
    Node* above = node(newParent);
    if (!self || !above || !self->isDag() || !above->type->is(kTransformType))
        return Status::failure("An instance needs a DAG node and a transform");
    if (isAncestor(child, newParent))
        return Status::failure("Cannot parent an object to itself or one of its children");
    if (std::find(self->parents.begin(), self->parents.end(), newParent) != self->parents.end())
        return Status::ok();
    if (const Status few = checkPaths(*this, child, newParent, true); !few)
        return few;
    self->parents.push_back(newParent);
    above->children.push_back(child);
    m_writersStale = m_writersStale || !m_writers->writers.empty();
    ++m_structure;
    setDirty(Plug(child, self->findAttr("parentMatrix")));
    modified = true;
    tell([child](SceneListener& l) { l.nodeReparented(child); });
    return Status::ok();
}

Status Scene::removeParent(NodeHandle child, NodeHandle oldParent) {
    Node* self = node(child);
    Node* above = node(oldParent);
    if (!self || !above || self->parents.size() < 2)
        return Status::failure("Only one of several parents can be taken away");
    self->parents.erase(std::remove(self->parents.begin(), self->parents.end(), oldParent),
                        self->parents.end());
    above->children.erase(std::remove(above->children.begin(), above->children.end(), child),
                          above->children.end());
    m_writersStale = m_writersStale || !m_writers->writers.empty();
    ++m_structure;
    setDirty(Plug(child, self->findAttr("parentMatrix")));
    tell([child](SceneListener& l) { l.nodeReparented(child); });
    return Status::ok();
}

int Scene::instanceCount(NodeHandle handle) const {
    const Node* n = node(handle);
    int count = 1;
    while (n && n->parents.size() == 1)  // the usual case, however deep
        n = node(n->parents.front());
    if (!n || n->parents.empty())
        return count;
    count = 0;
    for (NodeHandle parent : n->parents)
        count += instanceCount(parent);
    return count;
}

std::vector<NodeHandle> Scene::path(NodeHandle handle, int instance) const {
    std::vector<NodeHandle> steps;
    const Node* n = node(handle);
    if (!n || !n->isDag())
        return steps;
    while (n && n->self != m_world) {
        steps.push_back(n->self);
        if (n->parents.size() == 1) {
            n = node(n->parents.front());
            continue;
        }
        const Node* above = nullptr;
        for (NodeHandle parent : n->parents) {
            const int count = instanceCount(parent);
            if (instance < count) {
                above = node(parent);
                break;
            }
            instance -= count;
        }
        n = above;
    }
    std::reverse(steps.begin(), steps.end());
    return steps;
}

int Scene::instanceNumber(const std::vector<NodeHandle>& steps) const {
    if (steps.empty())
        return 0;
    const int count = instanceCount(steps.back());
    for (int i = 0; i < count; ++i)
        if (path(steps.back(), i) == steps)
            return i;
    return 0;
}

}  // namespace torvel
