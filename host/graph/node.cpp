#include "graph/node.h"

#include <algorithm>

namespace torvel {

std::size_t BulkArray::innerSize(std::int32_t) const {
    return 0;
}

std::int32_t BulkArray::innerLogicalAt(std::int32_t, std::size_t physical) const {
    return static_cast<std::int32_t>(physical);
}

int ArrayStore::find(std::int32_t logicalIndex) const {
    const std::size_t guess = static_cast<std::size_t>(logicalIndex);
    if (logicalIndex >= 0 && guess < logical.size() && logical[guess] == logicalIndex)
        return logicalIndex;
    const auto it = std::lower_bound(logical.begin(), logical.end(), logicalIndex);
    return it != logical.end() && *it == logicalIndex ? static_cast<int>(it - logical.begin()) : -1;
}

Node::Node() = default;
Node::~Node() = default;

namespace {

AttrIndex findIn(const std::unordered_map<std::string, AttrIndex>& names, std::string_view name) {
    thread_local std::string key;  // reused: look-ups allocate nothing
    key.assign(name);
    const auto it = names.find(key);
    return it == names.end() ? kNoAttr : it->second;
}

}  // namespace

AttrIndex Node::findAttr(std::string_view attrName) const {
    const AttrIndex index = findIn(type->byName, attrName);
    return index == kNoAttr && dynamic ? findIn(dynamic->byName, attrName) : index;
}

Slot& Node::slot(AttrIndex index) {
    const std::uint32_t position = attr(index).slot;
    const std::size_t page = position / kPageSize;
    if (page >= pages.size())
        pages.resize(page + 1);
    if (!pages[page])
        pages[page] = std::make_unique<Slot[]>(kPageSize);
    return pages[page][position % kPageSize];
}

}  // namespace torvel
