#include <cmath>

#include "graph/evaluator.h"
#include "graph/payload.h"
#include "graph/scene.h"
#include "graph/writers.h"

namespace torvel {
namespace {

// Whole numbers have 32 bits; no number counts as 0.
double whole(double value) {
    if (std::isnan(value))
        return 0.0;
    const double rounded = value > 0 ? std::floor(value + 0.5) : std::ceil(value - 0.5);
    return std::fmin(std::fmax(rounded, -2147483648.0), 2147483647.0) + 0.0;  // no -0
}

// What a reader of this type gets from a stored number.
double asType(AttrType type, double value) {
    switch (type) {
        case AttrType::Bool: return value != 0.0 ? 1.0 : 0.0;
        case AttrType::Byte:
        case AttrType::Short:
        case AttrType::Long:
        case AttrType::Enum: return whole(value);
        case AttrType::Float: return static_cast<double>(static_cast<float>(value));
        default: return value;
    }
}

}  // namespace

double Scene::storedNumber(const Plug& plug) const {
    const Node* n = node(plug.node);
    if (!n || plug.attr >= n->attrCount())
        return 0.0;
    const AttrInfo& attr = n->attr(plug.attr);
    if (attr.bulkOwner != kNoAttr) {
        const BulkArray* values = bulk(plug);
        return values ? values->number(plug.index, attr.childNumber) : 0.0;
    }
    const Slot* slot = peekSlot(plug);
    return slot && (slot->state & kSet) ? slot->number : attr.defaultValue;
}

PayloadPtr Scene::storedData(const Plug& plug) const {
    const Slot* slot = peekSlot(plug);
    return slot ? slot->data : nullptr;
}

double Scene::number(const Plug& plug) const {
    evaluate(plug);
    const Plug from = Evaluator::resolve(*this, plug);
    return from == plug ? storedNumber(plug) : asType(info(plug).type, storedNumber(from));
}

V3d Scene::vec3(const Plug& compound) const {
    return {number(child(compound, 0)), number(child(compound, 1)), number(child(compound, 2))};
}

PayloadPtr Scene::data(const Plug& plug) const {
    evaluate(plug);
    return storedData(Evaluator::resolve(*this, plug));
}

M44d Scene::matrix(const Plug& plug) const {
    const auto held = dataAs<MatrixData>(plug);
    return held ? held->matrix : M44d();
}

std::string Scene::text(const Plug& plug) const {
    const auto held = dataAs<StringData>(plug);
    return held ? held->text : std::string();
}

void Scene::setNumber(const Plug& plug, double value) {
    const AttrInfo& attr = info(plug);
    if (attr.bulkOwner != kNoAttr) {
        changeBulk(plug, [&](BulkArray& values) {
            values.setNumber(plug.index, attr.childNumber, value);
        });
        return;
    }
    Slot* slot = slotFor(plug);
    if (!slot)
        return;
    slot->number = asType(attr.type, value);
    slot->state |= kSet;
    if (Node* n = node(plug.node); n->writerLinks)
        keepOwn(*n, plug, slot->number);
    modified = true;
    changed(plug);
    tell([&](SceneListener& l) { l.valueChanged(plug); });
}

void Scene::setVec3(const Plug& compound, const V3d& value) {
    for (int i = 0; i < 3; ++i)
        setNumber(child(compound, i), value[i]);
}

void Scene::setMatrix(const Plug& plug, const M44d& value) {
    setData(plug, std::make_shared<MatrixData>(value));
}

void Scene::setData(const Plug& plug, PayloadPtr value) {
    Slot* slot = slotFor(plug);
    if (!slot || !putPayload(info(plug), *slot, std::move(value)))
        return;
    slot->state |= kSet;
    modified = true;
    changed(plug);
    tell([&](SceneListener& l) { l.valueChanged(plug); });
}

void Scene::setText(const Plug& plug, std::string value) {
    setData(plug, std::make_shared<StringData>(std::move(value)));
}

namespace {

template <class F>
bool anyBelow(const Scene& scene, const Plug& plug, F&& test) {
    if (test(plug))
        return true;
    if (scene.isArrayPlug(plug))
        return false;
    for (std::size_t i = 0; i < scene.info(plug).children.size(); ++i)
        if (anyBelow(scene, scene.child(plug, static_cast<int>(i)), test))
            return true;
    return false;
}

bool hasState(const Scene& scene, const Plug& plug, std::uint32_t state) {
    const Slot* slot = scene.peekSlot(plug);
    return slot && (slot->state & state) != 0;
}

void setState(Slot* slot, std::uint32_t on, std::uint32_t off) {
    if (slot)
        slot->state = (slot->state | on) & ~off;
}

}  // namespace

bool Scene::isLocked(const Plug& plug) const {
    for (Plug at = plug; !at.isNull(); at = parentPlug(at))
        if (hasState(*this, at, kLocked))
            return true;
    const Node* n = node(plug.node);
    return n && n->locked;
}

void Scene::setLocked(const Plug& plug, bool on) {
    setState(slotFor(plug), on ? kLocked : 0u, on ? 0u : kLocked);
    for (std::size_t i = 0; !on && !isArrayPlug(plug) && i < info(plug).children.size(); ++i)
        if (peekSlot(child(plug, static_cast<int>(i))))
            setLocked(child(plug, static_cast<int>(i)), false);
}

bool Scene::isKeyable(const Plug& plug) const {
    return hasState(*this, plug, kKeyableOn) ||
           (info(plug).is(kKeyable) && !hasState(*this, plug, kKeyableOff));
}

void Scene::setKeyable(const Plug& plug, bool on) {
    setState(slotFor(plug), on ? kKeyableOn : kKeyableOff, on ? kKeyableOff : kKeyableOn);
}

bool Scene::isChannelBox(const Plug& plug) const {
    return hasState(*this, plug, kChannelBoxOn) ||
           (info(plug).is(kChannelBox) && !hasState(*this, plug, kChannelBoxOff));
}

void Scene::setChannelBox(const Plug& plug, bool on) {
    setState(slotFor(plug), on ? kChannelBoxOn : kChannelBoxOff,
             on ? kChannelBoxOff : kChannelBoxOn);
}

bool Scene::isSettable(const Plug& plug) const {
    if (isLocked(plug) || info(plug).is(kOutput))
        return false;
    for (Plug at = parentPlug(plug); !at.isNull(); at = parentPlug(at))
        if (!source(at).isNull())
            return false;
    return !anyBelow(*this, plug, [this](const Plug& p) {
        return !source(p).isNull() || hasState(*this, p, kLocked);
    });
}

}  // namespace torvel
