#include "graph/connections.h"

#include <algorithm>

#include "graph/slot_walk.h"

namespace torvel {
namespace {

bool isGeometry(AttrType type) {
    return type == AttrType::Mesh || type == AttrType::NurbsCurve || type == AttrType::NurbsSurface;
}

bool areCompatible(const Connections& scene, const Plug& source, const Plug& target) {
    const AttrInfo& from = scene.info(source);
    const AttrInfo& to = scene.info(target);
    if (from.type == AttrType::Any || to.type == AttrType::Any || from.type == to.type)
        return true;
    if (from.type == AttrType::Message || to.type == AttrType::Message)
        return false;
    if (isNumeric(from.type) && isNumeric(to.type))
        return true;
    const bool sameChildren = !from.children.empty() && from.children.size() == to.children.size();
    if (sameChildren && (isCompound(from.type) || isCompound(to.type)))
        return true;  // a conversion is a number with room for three at once
    if (isCompound(from.type) && isCompound(to.type))
        return false;
    if (isGeometry(from.type) && isGeometry(to.type))
        return true;  // deformers take every kind of shape through one attribute
    return from.type == AttrType::Text || to.type == AttrType::Text;
}

}  // namespace

Plug Connections::firstPath(const Plug& source) const {
    return info(source).is(kPerInstance) && isArrayPlug(source) ? element(source, 0) : source;
}

Status Connections::checkConnection(const Plug& source, const Plug& target) const {
    if (!node(source.node) || !node(target.node) || source.attr >= node(source.node)->attrCount() ||
        target.attr >= node(target.node)->attrCount())
        return Status::failure("connectAttr: one end of the connection does not exist");
    const auto pair = [&] { return "'" + plugName(source) + "' -> '" + plugName(target) + "'"; };
    if (info(target).is(kOutput))
        return Status::failure("Connection not made: " + pair() +
                               ".  Destination attribute must be writable.");
    if (info(source).is(kNotReadable))
        return Status::failure("Connection not made: " + pair() +
                               ".  Source attribute must be readable.");
    if (!areCompatible(*this, source, target))
        return Status::failure(
            "Connection not made: " + pair() +
            ".  Data types of source and destination are not compatible.\nThe attribute '" +
            plugName(source) + "' cannot be connected to '" + plugName(target) + "'.");
    return Status::ok();
}

bool Connections::isConnected(const Plug& source, const Plug& target) const {
    return this->source(target) == firstPath(source) && !source.isNull();
}

Plug Connections::source(const Plug& target) const {
    const Slot* slot = peekSlot(target);
    return slot && slot->links ? slot->links->source : Plug();
}

Plug Connections::effectiveSource(const Plug& target) const {
    const Plug direct = source(target);
    if (!direct.isNull())
        return direct;
    const Plug above = parentPlug(target);
    if (above.isNull())
        return {};
    const Plug from = effectiveSource(above);
    if (from.isNull())
        return {};
    if (isElement(target))
        return element(from, logicalIndex(target));
    return child(from, info(target).childNumber);
}

const std::vector<Plug>& Connections::targets(const Plug& source) const {
    static const std::vector<Plug> kNone;
    const Slot* slot = peekSlot(source);
    return slot && slot->links ? slot->links->targets : kNone;
}

std::vector<Connections::Connection> Connections::incoming(NodeHandle handle) const {
    std::vector<Connection> out;
    Node* self = const_cast<Connections*>(this)->node(handle);
    if (!self || self->linkedInputs == 0)
        return out;
    walkNode(*self, [&](const Plug& plug, Slot& slot) {
        if (slot.links && !slot.links->source.isNull())
            out.push_back({slot.links->source, plug, slot.links->order});
    });
    std::sort(out.begin(), out.end(),
              [](const Connection& a, const Connection& b) { return a.order < b.order; });
    return out;
}

std::vector<Connections::Connection> Connections::outgoing(NodeHandle handle) const {
    std::vector<Connection> out;
    const Node* self = node(handle);
    if (!self)
        return out;
    for (const Plug& plug : self->feeding) {
        for (const Plug& target : targets(plug)) {
            const Slot* to = peekSlot(target);
            out.push_back({plug, target, to && to->links ? to->links->order : 0});
        }
    }
    std::sort(out.begin(), out.end(),
              [](const Connection& a, const Connection& b) { return a.order < b.order; });
    return out;
}

std::vector<Connections::Connection> Connections::allConnections() const {
    std::vector<Connection> out;
    for (NodeHandle handle : allNodes()) {
        const std::vector<Connection> own = incoming(handle);
        out.insert(out.end(), own.begin(), own.end());
    }
    std::sort(out.begin(), out.end(),
              [](const Connection& a, const Connection& b) { return a.order < b.order; });
    return out;
}

}  // namespace torvel
