#include "graph/plug_store.h"

#include <algorithm>
#include <limits>

#include "graph/attr_path.h"

namespace torvel {
namespace {

const AttrInfo kNoInfo;

// Copies an outer plug's indices to an attribute below it.
Plug below(const Plug& plug, AttrIndex attr) {
    Plug out = plug;
    out.attr = attr;
    return out;
}

}  // namespace

const AttrInfo& PlugStore::info(const Plug& plug) const {
    const Node* n = node(plug.node);
    return n && plug.attr < n->attrCount() ? n->attr(plug.attr) : kNoInfo;
}

Plug PlugStore::findPlug(NodeHandle handle, std::string_view attrPath) const {
    const Node* n = node(handle);
    Plug plug(handle, kNoAttr);
    if (!n)
        return {};
    if (attrPath.find_first_of(".[") == std::string_view::npos) {  // the hot case
        plug.attr = n->findAttr(attrPath);
        return plug.attr == kNoAttr ||
                       n->attr(plug.attr).arrayDepth > (n->attr(plug.attr).isArray() ? 1 : 0)
                   ? Plug()
                   : plug;
    }
    while (!attrPath.empty()) {
        const AttrStep step = nextStep(attrPath);
        const AttrIndex found = step.good ? n->findAttr(step.name) : kNoAttr;
        if (found == kNoAttr)
            return {};
        const AttrInfo& info = n->attr(found);
        if (plug.attr != kNoAttr) {
            AttrIndex above = info.parent;
            while (above != kNoAttr && above != plug.attr)
                above = n->attr(above).parent;
            if (above == kNoAttr)
                return {};
        }
        plug.attr = found;
        if (step.index >= 0) {
            if (!info.isArray())
                return {};
            plug.index[info.arrayDepth - 1] = step.index;
        } else if (info.isArray() && !attrPath.empty()) {
            plug.index[info.arrayDepth - 1] = 0;  // "iog.og[1].gid" as files write it
        }
    }
    if (plug.attr == kNoAttr)
        return {};
    // Arrays on the way need an index each; only the last one may name the whole array.
    const AttrInfo& last = n->attr(plug.attr);
    for (int depth = 0; depth < last.arrayDepth - (last.isArray() ? 1 : 0); ++depth)
        if (plug.index[depth] < 0)
            return {};
    return plug;
}

std::string PlugStore::attrPath(const Plug& plug, bool longNames) const {
    const Node* n = node(plug.node);
    if (!n || plug.attr >= n->attrCount())
        return {};
    // Children made for double3 and its like stand for themselves ("translateX"); so do children of
    // plain compounds.
    std::string text;
    for (AttrIndex a = plug.attr; a != kNoAttr; a = n->attr(a).parent) {
        const AttrInfo& info = n->attr(a);
        std::string part = longNames ? info.longName : info.shortName;
        if (info.isArray() && plug.index[info.arrayDepth - 1] >= 0)
            part += "[" + std::to_string(plug.index[info.arrayDepth - 1]) + "]";
        text = text.empty() ? part : part + "." + text;
        if (info.arrayDepth == 0 && !info.is(kOpaque))
            break;
    }
    return text;
}

std::string PlugStore::plugName(const Plug& plug, bool longNames) const {
    return isValid(plug.node) ? m_names.shortest(plug.node) + "." + attrPath(plug, longNames)
                              : std::string();
}

Plug PlugStore::child(const Plug& plug, int number) const {
    const AttrInfo& compound = info(plug);
    if (number < 0 || static_cast<std::size_t>(number) >= compound.children.size())
        return {};
    return below(plug, compound.children[static_cast<std::size_t>(number)]);
}

Plug PlugStore::parentPlug(const Plug& plug) const {
    const AttrInfo& self = info(plug);
    if (isElement(plug)) {
        Plug array = plug;
        array.index[self.arrayDepth - 1] = -1;
        return array;
    }
    return self.parent == kNoAttr ? Plug() : below(plug, self.parent);
}

Plug PlugStore::element(const Plug& arrayPlug, std::int32_t logical) const {
    const AttrInfo& array = info(arrayPlug);
    if (!array.isArray() || logical < 0)
        return {};
    Plug out = arrayPlug;
    out.index[array.arrayDepth - 1] = logical;
    return out;
}

bool PlugStore::isElement(const Plug& plug) const {
    const AttrInfo& self = info(plug);
    return self.isArray() && plug.index[self.arrayDepth - 1] >= 0;
}

bool PlugStore::isArrayPlug(const Plug& plug) const {
    const AttrInfo& self = info(plug);
    return self.isArray() && plug.index[self.arrayDepth - 1] < 0;
}

std::int32_t PlugStore::logicalIndex(const Plug& plug) const {
    const AttrInfo& self = info(plug);
    return self.isArray() ? plug.index[self.arrayDepth - 1] : -1;
}

namespace {

const BulkArray* bulkOf(const Slot* slot) {
    return slot ? dynamic_cast<const BulkArray*>(slot->data.get()) : nullptr;
}

}  // namespace

std::size_t PlugStore::elementCount(const Plug& arrayPlug) const {
    const AttrInfo& array = info(arrayPlug);
    if (array.bulkOwner != kNoAttr) {
        const BulkArray* values = bulk(arrayPlug);
        if (!values)
            return 0;
        return arrayPlug.attr == array.bulkOwner ? values->size()
                                                 : values->innerSize(arrayPlug.index[0]);
    }
    if (array.is(kPerInstance))
        return static_cast<std::size_t>(instanceCount(arrayPlug.node));
    const Slot* slot = peekSlot(arrayPlug);
    return slot && slot->array ? slot->array->logical.size() : 0;
}

Plug PlugStore::elementAt(const Plug& arrayPlug, std::size_t physical) const {
    const AttrInfo& array = info(arrayPlug);
    if (array.bulkOwner != kNoAttr) {
        const BulkArray* values = bulk(arrayPlug);
        if (!values || physical >= elementCount(arrayPlug))
            return {};
        return element(arrayPlug, arrayPlug.attr == array.bulkOwner
                                      ? values->logicalAt(physical)
                                      : values->innerLogicalAt(arrayPlug.index[0], physical));
    }
    const Slot* slot = peekSlot(arrayPlug);
    if (!array.isArray())
        return {};
    if (!slot || !slot->array || physical >= slot->array->logical.size())
        return physical < elementCount(arrayPlug)
                   ? element(arrayPlug, static_cast<std::int32_t>(physical))
                   : Plug();
    Plug out = arrayPlug;
    out.index[array.arrayDepth - 1] = slot->array->logical[physical];
    return out;
}

std::vector<std::int32_t> PlugStore::elementIndices(const Plug& arrayPlug) const {
    std::vector<std::int32_t> out(elementCount(arrayPlug));
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = logicalIndex(elementAt(arrayPlug, i));
    return out;
}

std::int32_t PlugStore::nextAvailable(const Plug& arrayPlug) const {
    const std::size_t count = elementCount(arrayPlug);
    const std::int32_t last = count == 0 ? -1 : logicalIndex(elementAt(arrayPlug, count - 1));
    if (last < std::numeric_limits<std::int32_t>::max())
        return last + 1;
    std::int32_t gap = 0;  // no index stands behind the highest one
    while (static_cast<std::size_t>(gap) < count &&
           logicalIndex(elementAt(arrayPlug, static_cast<std::size_t>(gap))) == gap)
        ++gap;
    return gap;
}

// --- slots --------------------------------------------------------------------------------------

namespace {

Slot* elementBlock(Node& n, const Plug& plug, AttrIndex array, bool make);

// Slot of the array or of a plain attribute `attr` at the plug's outer indices.
Slot* slotAt(Node& n, const Plug& plug, AttrIndex attr, bool make) {
    const AttrInfo& info = n.attr(attr);
    const AttrIndex outer =
        info.isArray() ? (info.parent == kNoAttr ? kNoAttr : n.attr(info.parent).arrayOwner)
                       : info.arrayOwner;
    if (outer == kNoAttr)
        return make ? &n.slot(attr) : const_cast<Slot*>(n.peek(attr));
    Slot* block = elementBlock(n, plug, outer, make);
    return block ? block + info.slot : nullptr;
}

Slot* elementBlock(Node& n, const Plug& plug, AttrIndex array, bool make) {
    Slot* slot = slotAt(n, plug, array, make);
    const AttrInfo& info = n.attr(array);
    const std::int32_t logical = plug.index[info.arrayDepth - 1];
    if (!slot || logical < 0)
        return nullptr;
    if (!slot->array) {
        if (!make)
            return nullptr;
        slot->array = std::make_unique<ArrayStore>();
    }
    ArrayStore& store = *slot->array;
    const int at = store.find(logical);
    if (at >= 0)
        return store.elements[static_cast<std::size_t>(at)].get();
    if (!make)
        return nullptr;
    const auto place = std::lower_bound(store.logical.begin(), store.logical.end(), logical);
    const auto offset = place - store.logical.begin();
    store.logical.insert(place, logical);
    store.elements.insert(store.elements.begin() + offset,
                          std::make_unique<Slot[]>(info.elementSize));
    return store.elements[static_cast<std::size_t>(offset)].get();
}

}  // namespace

Slot* PlugStore::slotFor(const Plug& plug) {
    Node* n = node(plug.node);
    if (!n || plug.attr >= n->attrCount())
        return nullptr;
    const AttrInfo& self = n->attr(plug.attr);
    if (self.bulkOwner != kNoAttr && !(self.bulkOwner == plug.attr && isArrayPlug(plug)))
        return nullptr;
    if (self.isArray() && plug.index[self.arrayDepth - 1] >= 0)
        return elementBlock(*n, plug, plug.attr, true);
    return slotAt(*n, plug, plug.attr, true);
}

const Slot* PlugStore::peekSlot(const Plug& plug) const {
    Node* n = const_cast<PlugStore*>(this)->node(plug.node);
    if (!n || plug.attr >= n->attrCount())
        return nullptr;
    const AttrInfo& attr = n->attr(plug.attr);
    if (attr.arrayDepth == 0)
        return n->peek(plug.attr);
    if (attr.bulkOwner != kNoAttr && !(attr.bulkOwner == plug.attr && isArrayPlug(plug)))
        return nullptr;
    if (attr.isArray() && plug.index[attr.arrayDepth - 1] >= 0)
        return elementBlock(*n, plug, plug.attr, false);
    return slotAt(*n, plug, plug.attr, false);
}

const BulkArray* PlugStore::bulk(const Plug& plug) const {
    const AttrInfo& attr = info(plug);
    return attr.bulkOwner == kNoAttr ? nullptr : bulkOf(peekSlot(Plug(plug.node, attr.bulkOwner)));
}

}  // namespace torvel
