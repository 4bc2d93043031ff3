#include <algorithm>

#include "graph/instances.h"
#include "graph/journal.h"
#include "graph/scene.h"
#include "graph/writers.h"

namespace torvel {

void Scene::setParents(Node& self, const std::vector<NodeHandle>& parents) {
    std::vector<edit::Place> places;
    for (NodeHandle parent : parents)
        places.push_back({parent, edit::kLast});
    recordParents(placeUnder(self, places));
}

void Scene::recordParents(edit::Parents former) {
    if (m_recorder)
        m_recorder->add(std::move(former));
}

std::vector<edit::Place> Scene::placesOf(const Node& self) const {
    std::vector<edit::Place> places;
    for (NodeHandle parent : self.parents) {
        const std::vector<NodeHandle>& children = node(parent)->children;
        const auto at = std::find(children.rbegin(), children.rend(), self.self);
        places.push_back({parent, static_cast<std::size_t>(children.rend() - at) - 1});
    }
    return places;
}

// Hangs the node where it is told; the answer leads back.
edit::Parents Scene::placeUnder(Node& self, const std::vector<edit::Place>& places) {
    edit::Parents former{self.self, placesOf(self)};
    m_names.parentsLeft(self);
    for (const edit::Place& place : former.other) {
        std::vector<NodeHandle>& children = node(place.parent)->children;
        children.erase(children.begin() + static_cast<std::ptrdiff_t>(place.place));
    }
    self.parents.clear();
    for (const edit::Place& place : places) {
        self.parents.push_back(place.parent);
        std::vector<NodeHandle>& children = node(place.parent)->children;
        const std::size_t at = std::min(place.place, children.size());
        children.insert(children.begin() + static_cast<std::ptrdiff_t>(at), self.self);
    }
    m_names.parentsTaken(self);
    ++m_structure;
    return former;
}

void Scene::parentsChanged(Node& self) {
    m_writersStale = m_writersStale || !m_writers->writers.empty();
    setDirty(Plug(self.self, self.findAttr("parentMatrix")));
    m_document.modified = true;
    tell([&self](SceneListener& l) { l.nodeReparented(self.self); });
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
    setParents(*self, {newParent});
    rename(child, self->name);  // numbered when a sibling bears the name
    parentsChanged(*self);
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
    std::vector<edit::Place> places = placesOf(*self);
    places.push_back({newParent, edit::kLast});
    recordParents(placeUnder(*self, places));
    parentsChanged(*self);
    return Status::ok();
}

Status Scene::removeParent(NodeHandle child, NodeHandle oldParent) {
    Node* self = node(child);
    Node* above = node(oldParent);
    if (!self || !above || self->parents.size() < 2)
        return Status::failure("Only one of several parents can be taken away");
    std::vector<edit::Place> places = placesOf(*self);
    places.erase(std::remove_if(places.begin(), places.end(),
                                [&](const edit::Place& p) { return p.parent == oldParent; }),
                 places.end());
    recordParents(placeUnder(*self, places));
    parentsChanged(*self);
    return Status::ok();
}

}  // namespace torvel
