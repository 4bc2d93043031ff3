#include "nodes/core/quick_node.h"

#include <cmath>

#include "graph/evaluator.h"
#include "graph/payload.h"

namespace torvel {
namespace {

inline bool isFed(const Slot* slot) {
    return slot && slot->links && !slot->links->source.isNull();
}

inline double storedIn(const Slot* slot, const AttrInfo& info) {
    return slot && (slot->state & kSet) ? slot->number : info.defaultValue;
}

}  // namespace

QuickNode::QuickNode(Evaluation& evaluation)
    : m_evaluation(evaluation), m_scene(evaluation.scene()), m_node(evaluation.node()) {}

namespace {

// Nothing can stand behind the attribute: an output, or any attribute of a node that nobody feeds
// or writes.
inline bool isLast(const Node& node, const AttrInfo& info) {
    return info.arrayDepth == 0 &&
           (info.is(kOutput) ||
            (node.linkedInputs == 0 && !node.writerLinks && node.unknownType.empty()));
}

const M44d kIdentity;

inline const M44d& matrixIn(const Slot* slot) {
    const auto* held = slot ? payloadAs<MatrixData>(slot->data.get()) : nullptr;
    return held ? held->matrix : kIdentity;
}

}  // namespace

double QuickNode::numberFrom(const Plug& source) const {
    if (const Node* from = m_scene.node(source.node); from && source.attr < from->attrCount()) {
        const AttrInfo& info = from->attr(source.attr);
        if (isLast(*from, info))
            return storedIn(from->peek(source.attr), info);
    }
    return m_scene.storedNumber(Evaluator::resolve(m_scene, source));
}

// Child `number` of the compound that feeds one here.
double QuickNode::linkedChild(const Slot& slot, int number) const {
    const Plug& source = slot.links->source;
    const Node* from = m_scene.node(source.node);
    if (from && source.attr < from->attrCount()) {
        const AttrInfo& info = from->attr(source.attr);
        const auto at = static_cast<std::size_t>(number);
        if (isLast(*from, info) && at < info.children.size())
            return storedIn(from->peek(info.children[at]), from->attr(info.children[at]));
    }
    return m_evaluation.number(m_scene.child(source, number));
}

V3d QuickNode::linkedVec3(const Slot& slot) const {
    const Plug& source = slot.links->source;
    const Node* from = m_scene.node(source.node);
    const AttrInfo* info =
        from && source.attr < from->attrCount() ? &from->attr(source.attr) : nullptr;
    if (!info || info->children.size() < 3 || !isLast(*from, *info))
        return {linkedChild(slot, 0), linkedChild(slot, 1), linkedChild(slot, 2)};
    V3d value;
    for (int i = 0; i < 3; ++i) {
        const AttrIndex child = info->children[static_cast<std::size_t>(i)];
        value[i] = storedIn(from->peek(child), from->attr(child));
    }
    return value;
}

double QuickNode::number(AttrIndex attr) const {
    const AttrInfo& info = m_node.attr(attr);
    const Slot* slot = m_node.peek(attr);
    if (m_node.linkedInputs != 0) {
        if (isFed(slot))
            return linked(*slot);
        if (const Slot* above = info.parent == kNoAttr ? nullptr : m_node.peek(info.parent);
            isFed(above))
            return linkedChild(*above, info.childNumber);
    }
    return storedIn(slot, info);
}

int QuickNode::whole(AttrIndex attr) const {
    return static_cast<int>(std::lround(number(attr)));
}

V3d QuickNode::vec3(AttrIndex compound) const {
    const std::vector<AttrIndex>& children = m_node.attr(compound).children;
    const Slot* whole = m_node.linkedInputs != 0 ? m_node.peek(compound) : nullptr;
    if (isFed(whole))
        return linkedVec3(*whole);
    V3d value;
    for (int i = 0; i < 3; ++i) {
        const AttrIndex child = children[static_cast<std::size_t>(i)];
        const Slot* slot = m_node.peek(child);
        value[i] = isFed(slot) ? linked(*slot) : storedIn(slot, m_node.attr(child));
    }
    return value;
}

const M44d& QuickNode::linkedMatrix(const Slot& slot) const {
    const Plug& source = slot.links->source;
    if (const Node* from = m_scene.node(source.node); from && source.attr < from->attrCount()) {
        const AttrInfo& info = from->attr(source.attr);
        if (isLast(*from, info))
            return matrixIn(from->peek(source.attr));
    }
    return m_evaluation.matrix(source);
}

const M44d& QuickNode::matrix(AttrIndex attr) const {
    const Slot* slot = m_node.peek(attr);
    return isFed(slot) ? linkedMatrix(*slot) : matrixIn(slot);
}

const ArrayStore* QuickNode::store(AttrIndex array) const {
    const Slot* slot = m_node.peek(array);
    return slot ? slot->array.get() : nullptr;
}

std::size_t QuickNode::count(AttrIndex array) const {
    const ArrayStore* elements = store(array);
    return elements ? elements->logical.size() : 0;
}

std::int32_t QuickNode::logicalAt(AttrIndex array, std::size_t position) const {
    return store(array)->logical[position];
}

double QuickNode::element(AttrIndex array, std::size_t position, AttrIndex leaf) const {
    const AttrInfo& info = m_node.attr(leaf);
    const ArrayStore& elements = *store(array);
    const Slot* block = elements.elements[position].get();
    const Slot& slot = block[leaf == array ? 0 : info.slot];
    if (isFed(&slot))
        return linked(slot);
    if (m_node.linkedInputs != 0) {
        const std::uint32_t parentSlot =
            leaf == array || info.parent == array ? 0 : m_node.attr(info.parent).slot;
        const Slot* above = leaf == array ? nullptr : block + parentSlot;
        if (isFed(above))
            return linkedChild(*above, info.childNumber);
        if (isFed(m_node.peek(array)) || (above && isFed(block)))
            return m_evaluation.number(m_evaluation.plug(leaf, elements.logical[position]));
    }
    return storedIn(&slot, info);
}

const M44d& QuickNode::elementMatrix(AttrIndex array, std::size_t position, AttrIndex leaf) const {
    const ArrayStore& elements = *store(array);
    const AttrInfo& info = m_node.attr(leaf);
    const Slot* block = elements.elements[position].get();
    const Slot& slot = block[leaf == array ? 0 : info.slot];
    if (isFed(&slot))
        return linkedMatrix(slot);
    if (isFed(m_node.peek(array)) || isFed(block))
        return m_evaluation.matrix(m_evaluation.plug(leaf, elements.logical[position]));
    return matrixIn(&slot);
}

double QuickNode::elementOr(AttrIndex array, std::int32_t logical, AttrIndex leaf,
                            double fallback) const {
    const ArrayStore* elements = store(array);
    const int position = elements ? elements->find(logical) : -1;
    return position < 0 ? fallback : element(array, static_cast<std::size_t>(position), leaf);
}

Plug QuickNode::elementSource(AttrIndex array, std::int32_t logical) const {
    const ArrayStore* elements = store(array);
    const int position = elements ? elements->find(logical) : -1;
    if (position < 0)
        return {};
    const Slot& slot = elements->elements[static_cast<std::size_t>(position)][0];
    return slot.links ? slot.links->source : Plug();
}

void QuickNode::set(AttrIndex attr, double value) {
    Slot& slot = m_node.slot(attr);
    const bool isFloat = m_node.attr(attr).type == AttrType::Float;
    slot.number = isFloat ? static_cast<double>(static_cast<float>(value)) : value;
    slot.state |= kSet;
}

void QuickNode::set(AttrIndex compound, const V3d& value) {
    const std::vector<AttrIndex>& children = m_node.attr(compound).children;
    for (std::size_t i = 0; i < 3; ++i)
        set(children[i], value[static_cast<int>(i)]);
}

}  // namespace torvel
