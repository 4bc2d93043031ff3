#include "graph/scene.h"

#include <algorithm>

#include "graph/journal.h"
#include "graph/writers.h"

namespace torvel {

Scene::Scene(const TypeRegistry& types, Log& log)
    : Values(types, log), m_selection(*this), m_journal(std::make_unique<Journal>(*this)) {
    clear();
}

Scene::~Scene() = default;

void Scene::clear() {
    m_journal->clear();
    m_names.clear();
    dropNodes();
    m_selection.clear();
    m_selection.hilited.clear();
    *m_writers = WriterTable();
    m_writersStale = m_everEvaluated = false;
    m_connections = 0;
    m_document = Document();
    auto world = std::make_unique<Node>();
    world->type = m_types.find("world") ? m_types.find("world") : m_types.all().front().get();
    world->name = "world";
    world->isDefault = true;
    m_world = add(std::move(world));  // not in the name index: the text "world" resolves to nothing
    if (m_types.find("time")) {
        ignore(createNode("time", "time1", {}, m_time));
        node(m_time)->isDefault = true;
    }
    m_journal->clear();
    m_document.modified = false;
    tell([](SceneListener& l) { l.sceneCleared(); });
}

NodeHandle Scene::add(std::unique_ptr<Node> made) {
    const bool writes = made->type->declareWrites != nullptr;
    const NodeHandle handle = put(std::move(made));
    if (writes) {
        std::vector<NodeHandle>& all = m_writers->writers;
        if (std::find(all.begin(), all.end(), handle) == all.end())  // one that comes back
            all.push_back(handle);
        m_writersStale = true;
    }
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
    made = add(std::move(fresh));
    Node& self = *node(made);
    m_names.added(self);
    if (m_recorder)
        m_recorder->add(edit::Exists{made, nullptr});
    if (isDag)
        setParents(self, {parent});
    for (const auto& hook : type->created)
        hook(*this, self);
    m_document.modified = true;
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
    m_document.modified = m_document.modified || !doomed.empty();
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

void Scene::removeOne(NodeHandle handle) {
    Node* doomed = node(handle);
    if (!doomed)
        return;
    breakLinks(*doomed);
    const std::vector<NodeHandle> instances = doomed->children;  // those that may live on elsewhere
    for (NodeHandle child : instances) {
        std::vector<edit::Place> places = placesOf(*node(child));
        places.erase(std::remove_if(places.begin(), places.end(),
                                    [&](const edit::Place& p) { return p.parent == handle; }),
                     places.end());
        recordParents(placeUnder(*node(child), places));
        if (places.empty())
            removeOne(child);
    }
    setParents(*doomed, {});
    m_selection.forget(handle);
    m_names.removed(*doomed);
    m_writersStale = m_writersStale || doomed->writerLinks || doomed->type->declareWrites;
    std::unique_ptr<Node> body = takeOut(handle);
    if (m_recorder)
        m_recorder->add(edit::Exists{handle, std::move(body)});
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
    setName(*self, name);
    if (m_recorder)
        m_recorder->add(edit::Name{handle, old});
    return name;
}

// Returns the former name.
std::string Scene::setName(Node& self, std::string name) {
    m_names.removed(self);
    self.name.swap(name);
    m_names.added(self);
    m_document.modified = true;
    tell([&](SceneListener& l) { l.nodeRenamed(self.self, name); });
    return name;
}

void Scene::changeFacts(NodeHandle handle, const std::function<void(NodeFacts&)>& change) {
    Node* self = node(handle);
    if (!self)
        return;
    if (m_recorder)
        m_recorder->add(edit::Facts{handle, *self});
    change(*self);
    m_document.modified = true;
    tell([handle](SceneListener& l) { l.nodeFactsChanged(handle); });
}

void Scene::changeDocument(const std::function<void(Document&)>& change) {
    if (m_recorder)
        m_recorder->add(edit::Text{m_document});
    change(m_document);
    tell([](SceneListener& l) { l.documentChanged(); });
}

void Scene::addListener(SceneListener* listener) {
    m_listeners.push_back(listener);
}

void Scene::removeListener(SceneListener* listener) {
    m_listeners.erase(std::remove(m_listeners.begin(), m_listeners.end(), listener),
                      m_listeners.end());
}

}  // namespace torvel
