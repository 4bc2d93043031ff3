#include "graph/values.h"

#include "graph/evaluator.h"
#include "graph/writers.h"

namespace torvel {
Values::Values(const TypeRegistry& types, Log& log)
    : Connections(types), m_log(log), m_writers(std::make_unique<WriterTable>()) {}

Values::~Values() = default;

double Values::storedNumber(const Plug& plug) const {
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

PayloadPtr Values::storedData(const Plug& plug) const {
    const Slot* slot = peekSlot(plug);
    return slot ? slot->data : nullptr;
}

double Values::number(const Plug& plug) const {
    evaluate(plug);
    const Plug from = Evaluator::resolve(*this, plug);
    return from == plug ? storedNumber(plug) : asAttrType(info(plug).type, storedNumber(from));
}

V3d Values::vec3(const Plug& compound) const {
    return {number(child(compound, 0)), number(child(compound, 1)), number(child(compound, 2))};
}

PayloadPtr Values::data(const Plug& plug) const {
    evaluate(plug);
    return storedData(Evaluator::resolve(*this, plug));
}

M44d Values::matrix(const Plug& plug) const {
    const auto held = dataAs<MatrixData>(plug);
    return held ? held->matrix : M44d();
}

std::string Values::text(const Plug& plug) const {
    const auto held = dataAs<StringData>(plug);
    return held ? held->text : std::string();
}

namespace {

template <class F>
bool anyBelow(const Values& scene, const Plug& plug, F&& test) {
    if (test(plug))
        return true;
    if (scene.isArrayPlug(plug))
        return false;
    for (std::size_t i = 0; i < scene.info(plug).children.size(); ++i)
        if (anyBelow(scene, scene.child(plug, static_cast<int>(i)), test))
            return true;
    return false;
}

bool hasState(const Values& scene, const Plug& plug, std::uint32_t state) {
    const Slot* slot = scene.peekSlot(plug);
    return slot && (slot->state & state) != 0;
}

}  // namespace

bool Values::isLocked(const Plug& plug) const {
    for (Plug at = plug; !at.isNull(); at = parentPlug(at))
        if (hasState(*this, at, kLocked))
            return true;
    const Node* n = node(plug.node);
    return n && n->locked;
}

bool Values::isKeyable(const Plug& plug) const {
    return hasState(*this, plug, kKeyableOn) ||
           (info(plug).is(kKeyable) && !hasState(*this, plug, kKeyableOff));
}

bool Values::isChannelBox(const Plug& plug) const {
    return hasState(*this, plug, kChannelBoxOn) ||
           (info(plug).is(kChannelBox) && !hasState(*this, plug, kChannelBoxOff));
}

bool Values::isSettable(const Plug& plug) const {
    if (isLocked(plug) || info(plug).is(kOutput))
        return false;
    for (Plug at = parentPlug(plug); !at.isNull(); at = parentPlug(at))
        if (!source(at).isNull())
            return false;
    return !anyBelow(*this, plug, [this](const Plug& p) {
        return !source(p).isNull() || hasState(*this, p, kLocked);
    });
}

double Values::ownNumber(const Plug& plug) const {
    const Node* n = node(plug.node);
    const WriterLinks::Written* written =
        n && n->writerLinks ? n->writerLinks->find(plug.attr) : nullptr;
    if (!written)
        return storedNumber(plug);
    const Plug from = n->linkedInputs ? effectiveSource(plug) : Plug();
    return from.isNull() ? written->own : storedNumber(Evaluator::resolve(*this, from));
}

Plug Values::writerOf(const Plug& plug) const {
    const Node* n = node(plug.node);
    const WriterLinks::Written* written =
        n && n->writerLinks ? n->writerLinks->find(plug.attr) : nullptr;
    return written ? written->writer : Plug();
}

}  // namespace torvel
