#include "graph/evaluation.h"

#include "graph/evaluator.h"

namespace torvel {
namespace {

const M44d kIdentity;

// Null without a value. An attribute of the type matrix holds nothing else.
const MatrixData* heldMatrix(const AttrInfo& info, const Slot& slot) {
    return info.type == AttrType::Matrix ? static_cast<const MatrixData*>(slot.data.get())
                                         : dynamic_cast<const MatrixData*>(slot.data.get());
}

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
    const auto* held = slot ? heldMatrix(m_scene.info(from), *slot) : nullptr;
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
    const bool own = slot->data && slot->data.use_count() == 1;
    if (const auto* held = own ? heldMatrix(m_scene.info(plug), *slot) : nullptr)
        const_cast<MatrixData*>(held)->matrix = value;
    else
        slot->data = std::make_shared<MatrixData>(value);
    slot->state |= kSet;
}

void Evaluation::set(const Plug& plug, PayloadPtr value) {
    if (Slot* slot = m_scene.slotFor(plug)) {
        slot->data = std::move(value);
        slot->state |= kSet;
    }
}

}  // namespace torvel
