#include <algorithm>

#include "graph/evaluator.h"
#include "graph/journal.h"
#include "graph/plain_ring.h"
#include "graph/scene.h"
#include "graph/writers.h"

namespace torvel {
namespace {

Links& linksOf(Slot& slot) {
    if (!slot.links)
        slot.links = std::make_unique<Links>();
    return *slot.links;
}

}  // namespace

Status Scene::connect(const Plug& given, const Plug& target) {
    const Plug source = firstPath(given);
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
    Slot* to = slotToWrite(target);
    Slot* from = slotToWrite(source);
    if (!to || !from)
        return Status::failure("Connection not made: " + pair() +
                               ".  The attribute takes no connections.");
    link(source, target, ++m_connections, from->links ? from->links->targets.size() : 0);
    if (m_recorder)
        m_recorder->add(edit::Link{source, target, true, 0, 0});
    m_document.modified = true;
    if (ring)
        m_log.write(Channel::Warning,
                    "Cycle on '" + plugName(target) + "' may not evaluate as expected.");
    changed(target);
    tell([&](SceneListener& l) { l.connectionChanged(source, target, true); });
    return Status::ok();
}

Status Scene::disconnect(const Plug& given, const Plug& target) {
    const Plug source = firstPath(given);
    if (this->source(target).isNull() || this->source(target) != source)
        return Status::failure("There is no connection from '" + plugName(source) + "' to '" +
                               plugName(target) + "' to disconnect");
    unlink(source, target, true);
    return Status::ok();
}

// Both ends of a connection; `place` is its position among the targets of the source.
void Scene::link(const Plug& source, const Plug& target, std::uint64_t order, std::size_t place) {
    Links& incoming = linksOf(*slotFor(target));
    incoming.source = source;
    incoming.order = order;
    std::vector<Plug>& targets = linksOf(*slotFor(source)).targets;
    if (targets.empty())
        node(source.node)->feeding.push_back(source);
    targets.insert(targets.begin() + static_cast<std::ptrdiff_t>(std::min(place, targets.size())),
                   target);
    Node& fed = *node(target.node);
    ++fed.linkedInputs;
    if (!fed.mayBeLinked(target.attr))
        fed.linkedRoots.push_back(fed.rootOf(target.attr));
    m_writersStale = m_writersStale || fed.writerLinks || fed.type->declareWrites;
    ++m_structure;
}

// Takes a connection off both ends; answers its position among the targets of the source.
std::size_t Scene::cut(const Plug& source, const Plug& target) {
    Slot& to = *slotFor(target);
    to.links->source = Plug();
    std::size_t place = 0;
    if (Slot* from = slotFor(source); from && from->links) {
        std::vector<Plug>& targets = from->links->targets;
        const auto at = std::find(targets.begin(), targets.end(), target);
        place = static_cast<std::size_t>(at - targets.begin());
        if (at != targets.end())
            targets.erase(at);
        std::vector<Plug>& feeding = node(source.node)->feeding;
        if (targets.empty())
            feeding.erase(std::remove(feeding.begin(), feeding.end(), source), feeding.end());
    }
    Node& fed = *node(target.node);
    --fed.linkedInputs;
    ++m_structure;
    m_writersStale = m_writersStale || fed.writerLinks || fed.type->declareWrites;
    return place;
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
    const std::uint64_t order = to->links->order;
    const std::size_t place = cut(source, target);
    if (m_recorder)
        m_recorder->add(edit::Link{source, target, false, order, place});
    if (keepValue && isNumber) {
        recordValue(target, *to);
        to->number = last;
        to->state |= kSet;
    } else if (keepValue && info(target).children.size() == 3) {
        setVec3(target, lastVector);
    }
    m_document.modified = true;
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

}  // namespace torvel
