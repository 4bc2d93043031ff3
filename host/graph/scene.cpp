#include "graph/scene.h"

#include <algorithm>

#include "graph/writers.h"

namespace torvel {

Scene::Scene(const TypeRegistry& types, Log& log)
    : m_types(types),
      m_log(log),
      m_names(*this),
      m_selection(*this),
      m_writers(std::make_unique<WriterTable>()) {
    clear();
}

Scene::~Scene() = default;

void Scene::clear() {
    m_names.clear();
    m_nodes.clear();
    ++m_structure;
    m_selection.clear();
    m_selection.hilited.clear();
    *m_writers = WriterTable();
    m_writersStale = false;
    for (std::uint32_t& generation : m_generations)
        ++generation;  // handles of the former scene stay invalid
    m_free.clear();
    for (std::size_t i = m_generations.size(); i-- > 0;)
        m_free.push_back(static_cast<std::uint32_t>(i));
    m_nodes.resize(m_generations.size());
    m_alive = 0;
    m_creations = 0;
    m_connections = 0;
    m_world = m_time = NodeHandle();
    fileName.clear();
    for (std::vector<std::string>* kept :
         {&requiresText, &fileInfoText, &referenceText, &trailingText})
        kept->clear();
    unitsText.clear();
    auto world = std::make_unique<Node>();
    world->type = m_types.find("world") ? m_types.find("world") : m_types.all().front().get();
    world->name = "world";
    world->isDefault = true;
    m_world = add(std::move(world));  // not in the name index: the text "world" resolves to nothing
    if (m_types.find("time")) {
        ignore(createNode("time", "time1", {}, m_time));
        node(m_time)->isDefault = true;
    }
    modified = false;
    tell([](SceneListener& l) { l.sceneCleared(); });
}

NodeHandle Scene::add(std::unique_ptr<Node> made) {
    std::uint32_t index;
    if (m_free.empty()) {
        index = static_cast<std::uint32_t>(m_nodes.size());
        m_nodes.emplace_back();
        m_generations.push_back(1);
    } else {
        index = m_free.back();
        m_free.pop_back();
    }
    made->self = {index, m_generations[index]};
    made->created = ++m_creations;
    ++m_alive;
    const NodeHandle handle = made->self;
    if (made->type->declareWrites) {
        m_writers->writers.push_back(handle);
        m_writersStale = true;
    }
    m_nodes[index] = std::move(made);
    return handle;
}

namespace {

std::string defaultStem(const NodeType& type, const Node* parent) {
    if (type.is(kShapeType) && parent && parent->type->is(kTransformType))
        return parent->name + "Shape";
    return type.name;
}

}  // namespace

Status Scene::createNode(std::string_view typeName, std::string_view wantedName, NodeHandle parent,
                         NodeHandle& made) {
    made = NodeHandle();
    const NodeType* type = m_types.find(typeName);
    if (!type || type->is(kAbstractType))
        return Status::failure("Unknown object type: " + std::string(typeName));
    const bool isDag = type->is(kDagType);
    if (isDag)
        parent = commonWorld(parent);
    const Node* above = isDag ? node(parent) : nullptr;
    if (isDag && !above)
        return Status::failure("createNode: the parent of a new " + std::string(typeName) +
                               " does not exist");
    if (type->is(kShapeType) && (parent == m_world || !above->type->is(kTransformType)))
        return Status::failure("createNode: a " + std::string(typeName) +
                               " needs a transform as its parent");
    auto fresh = std::make_unique<Node>();
    fresh->type = type;
    const std::string legal = m_reading ? Names::legalInFile(wantedName) : Names::legal(wantedName);
    if (!legal.empty())
        fresh->name = m_names.unique(legal, parent, isDag, {});
    else if (type->is(kShapeType))
        fresh->name = m_names.unique(defaultStem(*type, above), parent, isDag, {});
    else
        fresh->name = m_names.numbered(type->name);
    const std::string name = fresh->name;
    made = add(std::move(fresh));
    m_names.added(made, name);
    Node& self = *node(made);
    if (isDag) {
        self.parents.push_back(parent);
        node(parent)->children.push_back(made);
    }
    for (const auto& hook : type->created)
        hook(*this, self);
    modified = true;
    tell([made](SceneListener& l) { l.nodeCreated(made); });
    return Status::ok();
}

void Scene::collectBelow(NodeHandle top, std::vector<NodeHandle>& out) const {
    std::vector<NodeHandle> stack{top};
    while (!stack.empty()) {
        const Node* n = node(stack.back());
        stack.pop_back();
        if (!n || n->visit == m_visit)
            continue;
        n->visit = m_visit;
        out.push_back(n->self);
        for (std::size_t i = n->children.size(); i-- > 0;) {
            const Node* child = node(n->children[i]);
            const bool alsoElsewhere =
                std::any_of(child->parents.begin(), child->parents.end(),
                            [&](NodeHandle p) { return node(p)->visit != m_visit; });
            if (!alsoElsewhere)  // an instance lives on under its other parents
                stack.push_back(child->self);
        }
    }
}

void Scene::deleteNodes(const std::vector<NodeHandle>& nodes) {
    std::vector<NodeHandle> doomed;
    nextVisit();
    for (NodeHandle handle : nodes)
        if (isValid(handle) && handle != m_world)
            collectBelow(handle, doomed);
    const std::uint64_t stamp = m_visit;
    for (NodeHandle handle : doomed)
        tell([handle](SceneListener& l) { l.nodeDeleted(handle); });
    for (NodeHandle handle : doomed)
        leaveValues(handle, stamp);
    for (std::size_t i = doomed.size(); i-- > 0;)
        removeOne(doomed[i]);
    modified = modified || !doomed.empty();
}

// Numbers that nodes outside the walk `stamp` get from this one stay as they are: taken before any
// of its inputs goes.
void Scene::leaveValues(NodeHandle handle, std::uint64_t stamp) {
    if (!isValid(handle) || node(handle)->linkedInputs == 0)
        return;
    for (const Connection& c : outgoing(handle)) {
        const Node* fed = node(c.target.node);
        if (fed && fed->visit != stamp &&
            (isNumeric(info(c.target).type) || info(c.target).children.size() == 3))
            unlink(c.source, c.target, true);
    }
}

void Scene::detachFromParents(Node& self) {
    for (NodeHandle parent : self.parents) {
        Node* above = node(parent);
        if (above)
            above->children.erase(
                std::remove(above->children.begin(), above->children.end(), self.self),
                above->children.end());
    }
    self.parents.clear();
}

void Scene::removeOne(NodeHandle handle) {
    Node* doomed = node(handle);
    if (!doomed)
        return;
    breakLinks(*doomed);
    detachFromParents(*doomed);
    const std::vector<NodeHandle> instances = doomed->children;  // those that may live on elsewhere
    for (NodeHandle child : instances) {
        std::vector<NodeHandle>& parents = node(child)->parents;
        parents.erase(std::remove(parents.begin(), parents.end(), handle), parents.end());
        if (parents.empty())
            removeOne(child);
    }
    m_selection.forget(handle);
    m_names.removed(handle, doomed->name);
    m_writersStale = m_writersStale || doomed->writerLinks || doomed->type->declareWrites;
    ++m_structure;
    m_nodes[handle.index].reset();
    ++m_generations[handle.index];
    m_free.push_back(handle.index);
    --m_alive;
}

std::string Scene::rename(NodeHandle handle, std::string_view wantedName) {
    Node* self = node(handle);
    const std::string legal = Names::legal(wantedName);
    if (!self || legal.empty())
        return self ? self->name : std::string();
    const NodeHandle parent = self->parents.empty() ? NodeHandle() : self->parents.front();
    const std::string old = self->name;
    const std::string name = m_names.unique(legal, parent, self->isDag(), handle);
    if (name == old)
        return old;
    m_names.removed(handle, old);
    self->name = name;
    m_names.added(handle, name);
    modified = true;
    tell([&](SceneListener& l) { l.nodeRenamed(handle, old); });
    return name;
}

std::vector<NodeHandle> Scene::allNodes() const {
    std::vector<const Node*> nodes;
    nodes.reserve(m_alive);
    forEachNode([&](const Node& n) { nodes.push_back(&n); });
    std::sort(nodes.begin(), nodes.end(),
              [](const Node* a, const Node* b) { return a->created < b->created; });
    std::vector<NodeHandle> out;
    out.reserve(nodes.size());
    for (const Node* n : nodes)
        out.push_back(n->self);
    return out;
}

bool Scene::hasFn(NodeHandle handle, int fn) const {
    const Node* n = node(handle);
    return n && n->type->hasFn(fn);
}

bool Scene::isType(NodeHandle handle, std::string_view typeName) const {
    const Node* n = node(handle);
    return n && (n->type->derivesFrom(typeName) ||
                 (!n->unknownType.empty() && n->unknownType == typeName));
}

std::string Scene::typeName(NodeHandle handle) const {
    const Node* n = node(handle);
    if (!n)
        return {};
    return n->unknownType.empty() ? n->type->name : n->unknownType;
}

void Scene::addListener(SceneListener* listener) {
    m_listeners.push_back(listener);
}

void Scene::removeListener(SceneListener* listener) {
    m_listeners.erase(std::remove(m_listeners.begin(), m_listeners.end(), listener),
                      m_listeners.end());
}

}  // namespace torvel
