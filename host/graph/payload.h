#pragma once

#include <typeinfo>

#include "graph/attribute.h"
#include "graph/data.h"

namespace torvel {

struct Node;
struct Slot;

/// The payload as a T or a type derived from it; null for null and for every other kind. The exact
/// type is asked first: hot paths hold nothing else.
template <class T>
const T* payloadAs(const Payload* payload) {
    if (!payload)
        return nullptr;
    return typeid(*payload) == typeid(T) ? static_cast<const T*>(payload)
                                         : dynamic_cast<const T*>(payload);
}

/// Whether an attribute may hold the payload: matrices in matrix attributes, any shape (or the text
/// of one) in geometry attributes, blocks in bulk arrays, everything in untyped ones, nothing in
/// numbers, compounds and messages.
bool payloadFits(const AttrInfo& attr, const Payload& payload);

/// Puts a payload (or none) into a slot of the attribute, the one way in. False when it does not
/// fit or is a block of another kind than the slot's: nothing has changed then.
bool putPayload(const AttrInfo& attr, Slot& slot, PayloadPtr payload);
/// The first block of a bulk array, for the hooks of new nodes.
void putBlock(Node& node, AttrIndex attr, PayloadPtr block);

}  // namespace torvel
