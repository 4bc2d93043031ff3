#include "graph/journal.h"

#include <algorithm>

#include "graph/payload.h"
#include "graph/writers.h"

namespace torvel {
namespace {

constexpr std::uint32_t kUserStates =
    kLocked | kKeyableOn | kKeyableOff | kChannelBoxOn | kChannelBoxOff;

}  // namespace

void Journal::setOn(bool on) {
    if (on == isOn())
        return;
    clear();
    m_scene.m_recorder = on ? this : nullptr;
}

void Journal::clear() {
    m_done.clear();
    m_undone.clear();
    if (m_depth > 0)
        m_done.push_back({"", {}});
}

std::vector<std::string> Journal::undoNames() const {
    std::vector<std::string> names;
    for (const Chunk& chunk : m_done)
        names.push_back(chunk.name);
    return names;
}

std::vector<std::string> Journal::redoNames() const {
    std::vector<std::string> names;
    for (std::size_t i = m_undone.size(); i-- > 0;)
        names.push_back(m_undone[i].name);
    return names;
}

void Journal::open(const std::string& name) {
    if (++m_depth == 1 && isOn())
        m_done.push_back({name, {}});
}

void Journal::close() {
    if (--m_depth == 0 && isOn() && !m_done.empty() && m_done.back().edits.empty())
        m_done.pop_back();  // nothing was changed
}

// Brush strokes set one plug again and again: the state before the first is enough.
bool Journal::repeatsLast(const Edit& made) const {
    if (m_done.back().edits.empty())
        return false;
    const auto* value = std::get_if<edit::Value>(&made);
    const auto* last = std::get_if<edit::Value>(&m_done.back().edits.back());
    return value && last && value->plug == last->plug;
}

void Journal::add(Edit made) {
    m_undone.clear();
    if (m_depth == 0 || m_done.empty())
        m_done.push_back({"", {}});
    if (!repeatsLast(made))
        m_done.back().edits.push_back(std::move(made));
}

bool Journal::undo() {
    return move(m_done, m_undone);
}

bool Journal::redo() {
    return move(m_undone, m_done);
}

// Exchanging reverses the order of a chunk each time: what was done last is undone first.
bool Journal::move(std::vector<Chunk>& from, std::vector<Chunk>& to) {
    if (from.empty() || m_depth > 0)
        return false;
    Chunk chunk = std::move(from.back());
    from.pop_back();
    m_scene.m_recorder = nullptr;
    for (std::size_t i = chunk.edits.size(); i-- > 0;)
        std::visit([this](auto& e) { exchange(e); }, chunk.edits[i]);
    m_scene.m_recorder = this;
    std::reverse(chunk.edits.begin(), chunk.edits.end());
    to.push_back(std::move(chunk));
    m_scene.m_document.modified = true;
    return true;
}

void Journal::exchange(edit::Exists& e) {
    Scene& s = m_scene;
    if (e.body) {
        Node& node = *s.node(s.add(std::move(e.body)));
        s.m_names.added(node);
        ++s.m_structure;
        s.tell([&](SceneListener& l) { l.nodeCreated(e.node); });
        return;
    }
    s.tell([&](SceneListener& l) { l.nodeDeleted(e.node); });
    Node& node = *s.node(e.node);
    s.m_selection.forget(e.node);
    s.m_names.removed(node);
    s.m_writersStale = s.m_writersStale || node.writerLinks || node.type->declareWrites;
    e.body = s.takeOut(e.node);
}

void Journal::exchange(edit::Name& e) {
    e.other = m_scene.setName(*m_scene.node(e.node), e.other);
}

void Journal::exchange(edit::Facts& e) {
    std::swap<NodeFacts>(*m_scene.node(e.node), e.other);
    m_scene.tell([&](SceneListener& l) { l.nodeFactsChanged(e.node); });
}

void Journal::exchange(edit::Parents& e) {
    Node& node = *m_scene.node(e.node);
    e = m_scene.placeUnder(node, e.other);
    m_scene.parentsChanged(node);
}

void Journal::exchange(edit::Value& e) {
    Slot* slot = m_scene.slotFor(e.plug);
    if (!slot)
        return;
    Node& node = *m_scene.node(e.plug.node);
    double& number = slot->number;
    const double given = e.number;
    const WriterLinks::Written* written =
        node.writerLinks ? node.writerLinks->find(e.plug.attr) : nullptr;
    e.number = written ? written->own : number;
    if (written)
        m_scene.keepOwn(node, e.plug, given);
    else
        number = given;
    PayloadPtr data = slot->data;
    if (putPayload(m_scene.info(e.plug), *slot, e.data))
        e.data = std::move(data);
    const bool wasSet = (slot->state & kSet) != 0;
    slot->state = (slot->state & ~kSet) | (e.isSet ? kSet : 0u);
    e.isSet = wasSet;
    m_scene.valueChanged(e.plug);
}

void Journal::exchange(edit::State& e) {
    Slot* slot = m_scene.slotFor(e.plug);
    if (!slot)
        return;
    const std::uint32_t now = slot->state & kUserStates;
    slot->state = (slot->state & ~kUserStates) | e.other;
    e.other = now;
    m_scene.tell([&](SceneListener& l) { l.stateChanged(e.plug); });
}

void Journal::exchange(edit::Element& e) {
    if (!e.block) {
        e.block = m_scene.takeElement(e.plug);
        m_scene.changed(m_scene.parentPlug(e.plug));
        m_scene.tell([&](SceneListener& l) { l.elementRemoved(e.plug); });
        return;
    }
    m_scene.slotFor(e.plug);
    Slot& array = *m_scene.slotFor(m_scene.parentPlug(e.plug));
    const int at = array.array->find(m_scene.logicalIndex(e.plug));
    array.array->elements[static_cast<std::size_t>(at)] = std::move(e.block);
    ++m_scene.m_structure;
    m_scene.changed(e.plug);
    m_scene.tell([&](SceneListener& l) { l.elementAdded(e.plug); });
}

void Journal::exchange(edit::Attribute& e) {
    Node& node = *m_scene.node(e.plug.node);
    if (e.info) {
        const AttrIndex parent = e.info->parent;
        m_scene.putAttribute(node, std::move(*e.info), parent);
        e.info.reset();
        return;
    }
    m_scene.tell([&](SceneListener& l) { l.attributeRemoved(e.plug); });
    e.info = std::make_unique<AttrInfo>(m_scene.takeLastAttribute(node));
}

void Journal::exchange(edit::AttributeNames& e) {
    m_scene.exchangeNames(*m_scene.node(e.plug.node), e);
    if (e.longName.empty())
        m_scene.tell([&](SceneListener& l) { l.attributeAdded(e.plug); });
}

void Journal::exchange(edit::AttributeInfo& e) {
    Node& node = *m_scene.node(e.plug.node);
    std::swap(node.dynamic->attrs[e.plug.attr - node.type->attrs.size()], e.other);
    ++m_scene.m_structure;
    m_scene.tell([&](SceneListener& l) { l.stateChanged(e.plug); });
}

void Journal::exchange(edit::Link& e) {
    if (e.isMade) {
        e.order = m_scene.peekSlot(e.target)->links->order;
        e.place = m_scene.cut(e.source, e.target);
    } else {
        m_scene.link(e.source, e.target, e.order, e.place);
    }
    e.isMade = !e.isMade;
    m_scene.changed(e.target);
    m_scene.tell([&](SceneListener& l) { l.connectionChanged(e.source, e.target, e.isMade); });
}

void Journal::exchange(edit::Text& e) {
    std::swap(m_scene.m_document, e.other);
    m_scene.tell([](SceneListener& l) { l.documentChanged(); });
}

void Journal::exchange(edit::Chosen& e) {
    std::vector<SelectionItem> now = m_scene.m_selection.items();
    m_scene.m_selection.replace(std::move(e.other));
    e.other = std::move(now);
}

}  // namespace torvel
