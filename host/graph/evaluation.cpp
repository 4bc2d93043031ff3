#include "graph/evaluation.h"

#include "graph/evaluator.h"
#include "graph/payload.h"

namespace torvel {
namespace {

const M44d kIdentity;

}  // namespace

double Evaluation::number(const Plug& plug) const {
    const Plug from = Evaluator::resolve(m_scene, plug);
    return m_scene.storedNumber(from);
}

V3d Evaluation::vec3(const Plug& plug) const {
    const Plug from = Evaluator::resolve(m_scene, plug);
    const Node* node = m_scene.node(from.node);
    const bool isPlain =
        node && node->unknownType.empty() && !node->writerLinks && !node->mayBeLinked(from.attr);
    if (isPlain)  // nothing stands behind the children
        return {m_scene.storedNumber(m_scene.child(from, 0)),
                m_scene.storedNumber(m_scene.child(from, 1)),
                m_scene.storedNumber(m_scene.child(from, 2))};
    return {number(m_scene.child(plug, 0)), number(m_scene.child(plug, 1)),
            number(m_scene.child(plug, 2))};
}

const M44d& Evaluation::matrix(const Plug& plug) const {
    const Plug from = Evaluator::resolve(m_scene, plug);
    const Slot* slot = m_scene.peekSlot(from);
    const auto* held = slot ? payloadAs<MatrixData>(slot->data.get()) : nullptr;
    return held ? held->matrix : kIdentity;
}

PayloadPtr Evaluation::data(const Plug& plug) const {
    return m_scene.storedData(Evaluator::resolve(m_scene, plug));
}

std::size_t Evaluation::elementCount(AttrIndex arrayAttr) const {
    return m_scene.elementCount(plug(arrayAttr));
}

std::int32_t Evaluation::logicalAt(AttrIndex arrayAttr, std::size_t physical) const {
    return m_scene.logicalIndex(m_scene.elementAt(plug(arrayAttr), physical));
}

void Evaluation::set(const Plug& plug, double value) {
    if (Slot* slot = m_scene.slotFor(plug)) {
        slot->number = value;
        slot->state |= kSet;
    }
}

void Evaluation::set(const Plug& plug, const V3d& value) {
    for (int i = 0; i < 3; ++i)
        set(m_scene.child(plug, i), value[i]);
}

void Evaluation::set(const Plug& plug, const M44d& value) {
    Slot* slot = m_scene.slotFor(plug);
    if (!slot)
        return;
    // Nobody else holds it: no new block for each evaluation.
    const Payload* held = slot->data.use_count() == 1 ? slot->data.get() : nullptr;
    if (held && typeid(*held) == typeid(MatrixData))
        const_cast<MatrixData*>(static_cast<const MatrixData*>(held))->matrix = value;
    else if (!putPayload(m_scene.info(plug), *slot, std::make_shared<MatrixData>(value)))
        return;
    slot->state |= kSet;
}

void Evaluation::set(const Plug& plug, PayloadPtr value) {
    Slot* slot = m_scene.slotFor(plug);
    if (slot && putPayload(m_scene.info(plug), *slot, std::move(value)))
        slot->state |= kSet;
}

}  // namespace torvel
