#pragma once

#include "graph/node.h"

namespace torvel {

template <class F>
void walkElement(Node& node, const Plug& plug, Slot* block, F&& f);

/// Visits the slot of `plug` and every existing slot below it (children, elements): f(plug, slot).
/// `block` is the array element that holds it, null for attributes that stand in the node itself.
template <class F>
void walkSlot(Node& node, const Plug& plug, Slot* block, F&& f) {
    const AttrInfo& info = node.attr(plug.attr);
    Slot* slot = block ? block + info.slot : const_cast<Slot*>(node.peek(plug.attr));
    if (slot)
        f(plug, *slot);
    if (info.isArray()) {
        if (!slot || !slot->array)
            return;
        for (std::size_t i = 0; i < slot->array->logical.size(); ++i) {
            Plug element = plug;
            element.index[info.arrayDepth - 1] = slot->array->logical[i];
            walkElement(node, element, slot->array->elements[i].get(), f);
        }
        return;
    }
    for (AttrIndex child : info.children) {
        Plug below = plug;
        below.attr = child;
        walkSlot(node, below, block, f);
    }
}

template <class F>
void walkElement(Node& node, const Plug& plug, Slot* block, F&& f) {
    f(plug, block[0]);
    for (AttrIndex child : node.attr(plug.attr).children) {
        Plug below = plug;
        below.attr = child;
        walkSlot(node, below, block, f);
    }
}

/// All existing slots of a node, by attribute.
template <class F>
void walkNode(Node& node, F&& f) {
    const std::size_t count = node.attrCount();
    for (AttrIndex a = 0; a < count; ++a)
        if (node.attr(a).parent == kNoAttr)
            walkSlot(node, Plug(node.self, a), nullptr, f);
}

}  // namespace torvel
