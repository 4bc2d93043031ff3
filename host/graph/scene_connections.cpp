#include <algorithm>

#include "graph/evaluator.h"
#include "graph/plain_ring.h"
#include "graph/scene.h"
#include "graph/slot_walk.h"
#include "graph/writers.h"

namespace torvel {
namespace {

Links& linksOf(Slot& slot) {
    if (!slot.links)
        slot.links = std::make_unique<Links>();
    return *slot.links;
}

bool isGeometry(AttrType type) {
    return type == AttrType::Mesh || type == AttrType::NurbsCurve || type == AttrType::NurbsSurface;
}

bool areCompatible(const Scene& scene, const Plug& source, const Plug& target) {
    const AttrInfo& from = scene.info(source);
    const AttrInfo& to = scene.info(target);
    if (from.type == AttrType::Any || to.type == AttrType::Any || from.type == to.type)
        return true;
    if (from.type == AttrType::Message || to.type == AttrType::Message)
        return false;
    if (isNumeric(from.type) && isNumeric(to.type))
        return true;
    const bool sameChildren = !from.children.empty() && from.children.size() == to.children.size();
    if (sameChildren && (isCompound(from.type) || isCompound(to.type)))
        return true;  // a conversion is a number with room for three at once
    if (isCompound(from.type) && isCompound(to.type))
        return false;
    if (isGeometry(from.type) && isGeometry(to.type))
        return true;  // deformers take every kind of shape through one attribute
    return from.type == AttrType::Text || to.type == AttrType::Text;
}

// A world matrix named without an index means that of the first path.
Plug firstPath(const Scene& scene, const Plug& source) {
    return scene.info(source).is(kPerInstance) && scene.isArrayPlug(source)
               ? scene.element(source, 0)
               : source;
}

}  // namespace

Status Scene::checkConnection(const Plug& source, const Plug& target) const {
    if (!node(source.node) || !node(target.node) || source.attr >= node(source.node)->attrCount() ||
        target.attr >= node(target.node)->attrCount())
        return Status::failure("connectAttr: one end of the connection does not exist");
    const auto pair = [&] { return "'" + plugName(source) + "' -> '" + plugName(target) + "'"; };
    if (info(target).is(kOutput))
        return Status::failure("Connection not made: " + pair() +
                               ".  Destination attribute must be writable.");
    if (info(source).is(kNotReadable))
        return Status::failure("Connection not made: " + pair() +
                               ".  Source attribute must be readable.");
    if (!areCompatible(*this, source, target))
        return Status::failure(
            "Connection not made: " + pair() +
            ".  Data types of source and destination are not compatible.\nThe attribute '" +
            plugName(source) + "' cannot be connected to '" + plugName(target) + "'.");
    return Status::ok();
}

Status Scene::connect(const Plug& given, const Plug& target) {
    const Plug source = firstPath(*this, given);
    if (const Status refused = checkConnection(source, target); !refused)
        return refused;
    const Plug old = this->source(target);
    if (!old.isNull())
        return Status::failure("'" + plugName(target) +
                               "' already has an incoming connection from '" + plugName(old) +
                               "'.");
    const auto pair = [&] { return "'" + plugName(source) + "' -> '" + plugName(target) + "'"; };
    const bool ring = source == target || closesPlainRing(*this, source, target);
    if (ring && (source == target || Evaluator::resolve(*this, source) == target))
        return Status::failure("Connection not made: " + pair() +
                               ".  It would feed the attribute by itself.");
    Slot* to = slotFor(target);
    Slot* from = slotFor(source);
    if (!to || !from)
        return Status::failure("Connection not made: " + pair() +
                               ".  The attribute takes no connections.");
    to = slotFor(
        target);  // making the source's element may have moved nothing, but both must be current
    Links& incoming = linksOf(*to);
    incoming.source = source;
    incoming.order = ++m_connections;
    std::vector<Plug>& targets = linksOf(*from).targets;
    if (targets.empty())
        node(source.node)->feeding.push_back(source);
    targets.push_back(target);
    Node& fed = *node(target.node);
    ++fed.linkedInputs;
    if (!fed.mayBeLinked(target.attr))
        fed.linkedRoots.push_back(fed.rootOf(target.attr));
    m_writersStale = m_writersStale || fed.writerLinks || fed.type->declareWrites;
    modified = true;
    ++m_structure;
    if (ring)
        m_log.write(Channel::Warning,
                    "Cycle on '" + plugName(target) + "' may not evaluate as expected.");
    changed(target);
    tell([&](SceneListener& l) { l.connectionChanged(source, target, true); });
    return Status::ok();
}

bool Scene::isConnected(const Plug& source, const Plug& target) const {
    return this->source(target) == firstPath(*this, source) && !source.isNull();
}

Status Scene::disconnect(const Plug& given, const Plug& target) {
    const Plug source = firstPath(*this, given);
    if (this->source(target).isNull() || this->source(target) != source)
        return Status::failure("There is no connection from '" + plugName(source) + "' to '" +
                               plugName(target) + "' to disconnect");
    unlink(source, target, true);
    return Status::ok();
}

// A number keeps its last value; everything else falls back to the value stored before the
// connection.
void Scene::unlink(const Plug& source, const Plug& target, bool keepValue) {
    const bool isNumber = isNumeric(info(target).type);
    const double last = keepValue && isNumber && node(source.node) ? number(target) : 0.0;
    if (Node* fed = keepValue && isNumber ? node(target.node) : nullptr; fed && fed->writerLinks)
        keepOwn(*fed, target, ownNumber(target));
    const V3d lastVector = keepValue && info(target).children.size() == 3 ? vec3(target) : V3d(0.0);
    Slot* to = slotFor(target);
    if (!to || !to->links)
        return;
    to->links->source = Plug();
    if (Slot* from = slotFor(source); from && from->links) {
        std::vector<Plug>& targets = from->links->targets;
        targets.erase(std::remove(targets.begin(), targets.end(), target), targets.end());
        std::vector<Plug>& feeding = node(source.node)->feeding;
        if (targets.empty())
            feeding.erase(std::remove(feeding.begin(), feeding.end(), source), feeding.end());
    }
    Node& fed = *node(target.node);
    --fed.linkedInputs;
    ++m_structure;
    m_writersStale = m_writersStale || fed.writerLinks || fed.type->declareWrites;
    if (keepValue && isNumber) {
        to->number = last;
        to->state |= kSet;
    } else if (keepValue && info(target).children.size() == 3) {
        setVec3(target, lastVector);
    }
    modified = true;
    changed(target);
    if (keepValue && info(target).is(kDeleteElement) && isElement(target))
        removeElement(target);
    tell([&](SceneListener& l) { l.connectionChanged(source, target, false); });
}

void Scene::breakLinks(Node& self) {
    for (const Connection& c : incoming(self.self))
        unlink(c.source, c.target, false);
    for (const Connection& c : outgoing(self.self))
        unlink(c.source, c.target, true);
}

Plug Scene::source(const Plug& target) const {
    const Slot* slot = peekSlot(target);
    return slot && slot->links ? slot->links->source : Plug();
}

Plug Scene::effectiveSource(const Plug& target) const {
    const Plug direct = source(target);
    if (!direct.isNull())
        return direct;
    const Plug above = parentPlug(target);
    if (above.isNull())
        return {};
    const Plug from = effectiveSource(above);
    if (from.isNull())
        return {};
    if (isElement(target))
        return element(from, logicalIndex(target));
    return child(from, info(target).childNumber);
}

const std::vector<Plug>& Scene::targets(const Plug& source) const {
    static const std::vector<Plug> kNone;
    const Slot* slot = peekSlot(source);
    return slot && slot->links ? slot->links->targets : kNone;
}

std::vector<Scene::Connection> Scene::incoming(NodeHandle handle) const {
    std::vector<Connection> out;
    Node* self = const_cast<Scene*>(this)->node(handle);
    if (!self || self->linkedInputs == 0)
        return out;
    walkNode(*self, [&](const Plug& plug, Slot& slot) {
        if (slot.links && !slot.links->source.isNull())
            out.push_back({slot.links->source, plug, slot.links->order});
    });
    std::sort(out.begin(), out.end(),
              [](const Connection& a, const Connection& b) { return a.order < b.order; });
    return out;
}

std::vector<Scene::Connection> Scene::outgoing(NodeHandle handle) const {
    std::vector<Connection> out;
    const Node* self = node(handle);
    if (!self)
        return out;
    for (const Plug& plug : self->feeding) {
        for (const Plug& target : targets(plug)) {
            const Slot* to = peekSlot(target);
            out.push_back({plug, target, to && to->links ? to->links->order : 0});
        }
    }
    std::sort(out.begin(), out.end(),
              [](const Connection& a, const Connection& b) { return a.order < b.order; });
    return out;
}

std::vector<Scene::Connection> Scene::allConnections() const {
    std::vector<Connection> out;
    for (NodeHandle handle : allNodes()) {
        const std::vector<Connection> own = incoming(handle);
        out.insert(out.end(), own.begin(), own.end());
    }
    std::sort(out.begin(), out.end(),
              [](const Connection& a, const Connection& b) { return a.order < b.order; });
    return out;
}

}  // namespace torvel
