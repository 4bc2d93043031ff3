#include "graph/journal.h"
#include "graph/payload.h"
#include "graph/scene.h"
#include "graph/writers.h"

namespace torvel {
namespace {

constexpr std::uint32_t kUserStates =
    kLocked | kKeyableOn | kKeyableOff | kChannelBoxOn | kChannelBoxOff;

}  // namespace

// The slot of a plug that is about to change. Tells and records the element that comes to be with
// it; inner ones come along.
Slot* Scene::slotToWrite(const Plug& plug) {
    if (info(plug).arrayDepth == 0 || peekSlot(plug))
        return slotFor(plug);
    Plug outermost;
    for (Plug at = plug; !at.isNull(); at = parentPlug(at))
        if (isElement(at) && !peekSlot(at))
            outermost = at;
    Slot* slot = slotFor(plug);
    if (!slot || outermost.isNull())
        return slot;
    if (m_recorder)
        m_recorder->add(edit::Element{outermost, nullptr});
    tell([&](SceneListener& l) { l.elementAdded(outermost); });
    return slot;
}

void Scene::recordValue(const Plug& plug, const Slot& slot) {
    if (!m_recorder)
        return;
    const Node& n = *node(plug.node);
    const WriterLinks::Written* written = n.writerLinks ? n.writerLinks->find(plug.attr) : nullptr;
    m_recorder->add(edit::Value{plug, written ? written->own : slot.number, slot.data,
                                (slot.state & kSet) != 0});
}

void Scene::valueChanged(const Plug& plug) {
    m_document.modified = true;
    changed(plug);
    tell([&](SceneListener& l) { l.valueChanged(plug); });
}

void Scene::setNumber(const Plug& plug, double value) {
    const AttrInfo& attr = info(plug);
    if (attr.bulkOwner != kNoAttr) {
        changeBulk(plug, [&](BulkArray& values) {
            values.setNumber(plug.index, attr.childNumber, value);
        });
        return;
    }
    Slot* slot = slotToWrite(plug);
    if (!slot)
        return;
    recordValue(plug, *slot);
    slot->number = asAttrType(attr.type, value);
    slot->state |= kSet;
    if (Node* n = node(plug.node); n->writerLinks)
        keepOwn(*n, plug, slot->number);
    valueChanged(plug);
}

void Scene::setVec3(const Plug& compound, const V3d& value) {
    for (int i = 0; i < 3; ++i)
        setNumber(child(compound, i), value[i]);
}

void Scene::setMatrix(const Plug& plug, const M44d& value) {
    setData(plug, std::make_shared<MatrixData>(value));
}

bool Scene::setData(const Plug& plug, PayloadPtr value) {
    const AttrInfo& attr = info(plug);
    if (value && !payloadFits(attr, *value))
        return false;
    Slot* slot = slotToWrite(plug);
    if (!slot)
        return false;
    recordValue(plug, *slot);
    if (!putPayload(attr, *slot, std::move(value)))
        return false;
    slot->state |= kSet;
    valueChanged(plug);
    return true;
}

void Scene::setText(const Plug& plug, std::string value) {
    setData(plug, std::make_shared<StringData>(std::move(value)));
}

void Scene::changeBulk(const Plug& plug, const std::function<void(BulkArray&)>& change) {
    const Plug root(plug.node, info(plug).bulkOwner);
    Slot* slot = root.attr == kNoAttr ? nullptr : slotFor(root);
    const auto* values = slot ? payloadAs<BulkArray>(slot->data.get()) : nullptr;
    if (!values)
        return;
    recordValue(root, *slot);
    if (slot->data.use_count() > 1) {
        std::shared_ptr<BulkArray> own = values->clone();
        values = own.get();
        putPayload(info(root), *slot, std::move(own));
    }
    change(const_cast<BulkArray&>(*values));
    slot->state |= kSet;
    valueChanged(root);
}

void Scene::takeValue(const Plug& plug, const Slot& from) {
    Slot* slot = slotToWrite(plug);
    if (!slot)
        return;
    const bool differs = ((slot->state ^ from.state) & kSet) || slot->number != from.number ||
                         slot->data != from.data;
    if (differs) {
        recordValue(plug, *slot);
        if (putPayload(info(plug), *slot, from.data)) {
            slot->number = from.number;
            slot->state = (slot->state & ~kSet) | (from.state & kSet);
        }
        valueChanged(plug);
    }
    if ((slot->state ^ from.state) & kUserStates)
        setState(plug, from.state & kUserStates, ~from.state & kUserStates);
}

// --- what users may do with a plug

void Scene::setState(const Plug& plug, std::uint32_t on, std::uint32_t off) {
    Slot* slot = slotToWrite(plug);
    const std::uint32_t after = slot ? (slot->state | on) & ~off : 0;
    if (!slot || after == slot->state)
        return;
    if (m_recorder)
        m_recorder->add(edit::State{plug, slot->state & kUserStates});
    slot->state = after;
    m_document.modified = true;
    tell([&](SceneListener& l) { l.stateChanged(plug); });
}

void Scene::setLocked(const Plug& plug, bool on) {
    setState(plug, on ? kLocked : 0u, on ? 0u : kLocked);
    for (std::size_t i = 0; !on && !isArrayPlug(plug) && i < info(plug).children.size(); ++i)
        if (peekSlot(child(plug, static_cast<int>(i))))
            setLocked(child(plug, static_cast<int>(i)), false);
}

void Scene::setKeyable(const Plug& plug, bool on) {
    setState(plug, on ? kKeyableOn : kKeyableOff, on ? kKeyableOff : kKeyableOn);
}

void Scene::setChannelBox(const Plug& plug, bool on) {
    setState(plug, on ? kChannelBoxOn : kChannelBoxOff, on ? kChannelBoxOff : kChannelBoxOn);
}

}  // namespace torvel
