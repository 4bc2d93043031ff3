#include "graph/payload.h"

#include "graph/node.h"

namespace torvel {
namespace {

template <class... T>
bool isOneOf(const Payload& payload) {
    return (... || (payloadAs<T>(&payload) != nullptr));
}

bool isTuples(const Payload& payload, std::size_t width) {
    const auto* numbers = payloadAs<DoubleArrayData>(&payload);
    return numbers && numbers->items.size() % width == 0;
}

}  // namespace

bool payloadFits(const AttrInfo& attr, const Payload& payload) {
    const bool isBlock = isOneOf<BulkArray>(payload);
    if (isBlock || attr.is(kBulk))
        return isBlock && attr.is(kBulk);
    switch (attr.type) {
        case AttrType::String: return isOneOf<StringData>(payload);
        case AttrType::Matrix: return isOneOf<MatrixData>(payload);
        case AttrType::Mesh:
        case AttrType::NurbsCurve:
        case AttrType::NurbsSurface: return isOneOf<MeshData, NurbsCurveData, TextData>(payload);
        case AttrType::ComponentList: return isOneOf<ComponentListData>(payload);
        case AttrType::IntArray: return isOneOf<IntArrayData>(payload);
        case AttrType::DoubleArray: return isTuples(payload, 1);
        case AttrType::VectorArray: return isTuples(payload, 3);
        case AttrType::PointArray: return isTuples(payload, 4);
        case AttrType::StringArray: return isOneOf<StringArrayData>(payload);
        case AttrType::Text:
        case AttrType::Any: return true;
        default: return false;
    }
}

bool putPayload(const AttrInfo& attr, Slot& slot, PayloadPtr payload) {
    if (payload && !payloadFits(attr, *payload))
        return false;
    if (attr.is(kBulk) && slot.data) {
        const Payload& now = *slot.data;
        if (const Payload* given = payload.get(); !given || typeid(*given) != typeid(now))
            return false;
    }
    slot.data = std::move(payload);
    return true;
}

void putBlock(Node& node, AttrIndex attr, PayloadPtr block) {
    putPayload(node.attr(attr), node.slot(attr), std::move(block));
}

}  // namespace torvel
