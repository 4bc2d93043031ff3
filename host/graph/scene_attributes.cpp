#include <algorithm>
#include <charconv>
#include <limits>

#include "graph/scene.h"
#include "graph/slot_walk.h"

namespace torvel {
namespace {

const AttrInfo kNoInfo;

// Compounds stand in one another no deeper; what walks them may recurse.
constexpr int kMostAttrLevels = 64;

// One step of an attribute path: "inputTarget[0]".
struct Step {
    std::string_view name;
    std::int32_t index = -1;
    bool good = false;
};

Step nextStep(std::string_view& rest) {
    Step step;
    const std::size_t end = rest.find_first_of(".[");
    step.name = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end);
    if (!rest.empty() && rest.front() == '[') {
        const std::size_t close = rest.find(']');
        if (close == std::string_view::npos)
            return step;
        const std::string_view number = rest.substr(1, close - 1);
        const auto r = std::from_chars(number.data(), number.data() + number.size(), step.index);
        if (number != "*" &&
            (r.ec != std::errc() || r.ptr != number.data() + number.size() || step.index < 0))
            return step;
        rest = rest.substr(close + 1);
    }
    if (!rest.empty()) {
        if (rest.front() != '.')
            return step;
        rest.remove_prefix(1);
    }
    step.good = !step.name.empty();
    return step;
}

// Copies an outer plug's indices to an attribute below it.
Plug below(const Plug& plug, AttrIndex attr) {
    Plug out = plug;
    out.attr = attr;
    return out;
}

// Makes room for one more attribute in the elements that an array has already.
void growElements(Node& node, AttrIndex parent) {
    const AttrIndex owner = parent == kNoAttr ? kNoAttr : node.attr(parent).arrayOwner;
    if (owner == kNoAttr)
        return;
    const std::uint32_t size = node.attr(owner).elementSize;
    walkNode(node, [&](const Plug& plug, Slot& slot) {
        if (plug.attr != owner || !slot.array)
            return;
        for (std::unique_ptr<Slot[]>& block : slot.array->elements) {
            auto larger = std::make_unique<Slot[]>(size + 1);
            std::move(block.get(), block.get() + size, larger.get());
            block = std::move(larger);
        }
    });
}

}  // namespace

const AttrInfo& Scene::info(const Plug& plug) const {
    const Node* n = node(plug.node);
    return n && plug.attr < n->attrCount() ? n->attr(plug.attr) : kNoInfo;
}

Status Scene::addAttribute(NodeHandle handle, const AttrInfo& wanted, AttrIndex parent,
                           AttrIndex& made) {
    made = kNoAttr;
    Node* n = node(handle);
    if (!n)
        return Status::failure("addAttr: the node does not exist");
    AttrInfo info = wanted;
    if (info.shortName.empty())
        info.shortName = info.longName;
    for (const std::string& name : {info.longName, info.shortName})
        if (name.empty() || Names::legal(name) != name || name.find(':') != name.npos)
            return Status::failure("addAttr: '" + name + "' is no legal attribute name");
    for (const std::string& name : {info.longName, info.shortName})
        if (const AttrIndex old = n->findAttr(name); old != kNoAttr && !n->attr(old).is(kOpaque))
            return Status::failure("addAttr: '" + n->name + "' has an attribute named '" + name +
                                   "' already");
    if (!n->dynamic) {
        n->dynamic = std::make_unique<AttrTable>();
        n->dynamic->slotCount = n->type->slotCount;
    }
    const AttrIndex first = static_cast<AttrIndex>(n->type->attrs.size());
    if (parent != kNoAttr && parent < first)
        return Status::failure("addAttr: the parent of '" + info.longName +
                               "' is no dynamic attribute");
    int level = 1;
    for (AttrIndex above = parent; above != kNoAttr; above = n->attr(above).parent)
        ++level;
    if (level > kMostAttrLevels)
        return Status::failure("addAttr: '" + info.longName + "' is nested in more than " +
                               std::to_string(kMostAttrLevels - 1) + " attributes");
    info.flags |= kDynamic;
    growElements(*n, parent);
    ++m_structure;
    made =
        layOutAttribute(n->dynamic->attrs, n->dynamic->slotCount, std::move(info), parent, first);
    const AttrInfo& stored = n->attr(made);
    n->dynamic->byName[stored.longName] = made;
    n->dynamic->byName[stored.shortName] = made;
    modified = true;
    return Status::ok();
}

// Opaque attributes take indices as the file writes them: an array wherever the text has brackets.
Plug Scene::opaquePlug(NodeHandle handle, std::string_view attrPath) {
    Plug plug(handle, kNoAttr);
    AttrIndex parent = kNoAttr;
    int depth = 0, level = 0;
    while (!attrPath.empty() && node(handle)) {
        const Step step = nextStep(attrPath);
        if (!step.good || depth >= kMaxArrayDepth || ++level > kMostAttrLevels)
            return {};
        Node* n = node(handle);
        AttrIndex found = kNoAttr;
        if (parent == kNoAttr) {
            found = n->findAttr(step.name);
        } else {
            for (AttrIndex child : n->attr(parent).children)
                if (n->attr(child).longName == step.name || n->attr(child).shortName == step.name)
                    found = child;
        }
        if (found == kNoAttr) {
            AttrInfo info;
            info.longName = info.shortName = std::string(step.name);
            info.type = AttrType::Any;
            info.flags = kOpaque | kDynamic | (step.index >= 0 ? kArray : 0u);
            if (!n->dynamic) {
                n->dynamic = std::make_unique<AttrTable>();
                n->dynamic->slotCount = n->type->slotCount;
            }
            const AttrIndex first = static_cast<AttrIndex>(n->type->attrs.size());
            if (parent != kNoAttr && parent < first)
                return {};  // the host knows the compound but not this child
            growElements(*n, parent);
            ++m_structure;
            found = layOutAttribute(n->dynamic->attrs, n->dynamic->slotCount, std::move(info),
                                    parent, first);
            if (parent == kNoAttr)
                n->dynamic->byName.emplace(std::string(step.name), found);
        }
        plug.attr = found;
        if (step.index >= 0) {
            if (!node(handle)->attr(found).isArray())
                return {};
            plug.index[depth++] = step.index;
        } else if (node(handle)->attr(found).isArray()) {
            if (!attrPath.empty())
                return {};
        }
        parent = found;
    }
    return plug.attr == kNoAttr ? Plug() : plug;
}

void Scene::deleteAttribute(NodeHandle handle, AttrIndex attr) {
    Node* n = node(handle);
    if (!n || !n->dynamic || attr < n->type->attrs.size() || attr >= n->attrCount())
        return;
    for (const Connection& c : incoming(handle))
        for (AttrIndex a = c.target.attr; a != kNoAttr; a = n->attr(a).parent)
            if (a == attr)
                ignore(disconnect(c.source, c.target));
    for (const Connection& c : outgoing(handle))
        for (AttrIndex a = c.source.attr; a != kNoAttr; a = n->attr(a).parent)
            if (a == attr)
                ignore(disconnect(c.source, c.target));
    ++m_structure;
    std::vector<AttrIndex> gone{attr};
    for (std::size_t i = 0; i < gone.size(); ++i)
        gone.insert(gone.end(), n->attr(gone[i]).children.begin(), n->attr(gone[i]).children.end());
    for (AttrIndex a : gone) {
        AttrInfo& info = n->dynamic->attrs[a - n->type->attrs.size()];
        n->dynamic->byName.erase(info.longName);
        n->dynamic->byName.erase(info.shortName);
        info.flags |= kOpaque;  // its place stays, nothing finds it any more
        info.longName.clear();
        info.shortName.clear();
    }
    modified = true;
}

Plug Scene::findPlug(NodeHandle handle, std::string_view attrPath) const {
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
        const Step step = nextStep(attrPath);
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

std::string Scene::attrPath(const Plug& plug, bool longNames) const {
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

std::string Scene::plugName(const Plug& plug, bool longNames) const {
    return isValid(plug.node) ? m_names.shortest(plug.node) + "." + attrPath(plug, longNames)
                              : std::string();
}

Plug Scene::child(const Plug& plug, int number) const {
    const AttrInfo& compound = info(plug);
    if (number < 0 || static_cast<std::size_t>(number) >= compound.children.size())
        return {};
    return below(plug, compound.children[static_cast<std::size_t>(number)]);
}

Plug Scene::parentPlug(const Plug& plug) const {
    const AttrInfo& self = info(plug);
    if (isElement(plug)) {
        Plug array = plug;
        array.index[self.arrayDepth - 1] = -1;
        return array;
    }
    return self.parent == kNoAttr ? Plug() : below(plug, self.parent);
}

Plug Scene::element(const Plug& arrayPlug, std::int32_t logical) const {
    const AttrInfo& array = info(arrayPlug);
    if (!array.isArray() || logical < 0)
        return {};
    Plug out = arrayPlug;
    out.index[array.arrayDepth - 1] = logical;
    return out;
}

bool Scene::isElement(const Plug& plug) const {
    const AttrInfo& self = info(plug);
    return self.isArray() && plug.index[self.arrayDepth - 1] >= 0;
}

bool Scene::isArrayPlug(const Plug& plug) const {
    const AttrInfo& self = info(plug);
    return self.isArray() && plug.index[self.arrayDepth - 1] < 0;
}

std::int32_t Scene::logicalIndex(const Plug& plug) const {
    const AttrInfo& self = info(plug);
    return self.isArray() ? plug.index[self.arrayDepth - 1] : -1;
}

namespace {

const BulkArray* bulkOf(const Slot* slot) {
    return slot ? dynamic_cast<const BulkArray*>(slot->data.get()) : nullptr;
}

}  // namespace

std::size_t Scene::elementCount(const Plug& arrayPlug) const {
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

Plug Scene::elementAt(const Plug& arrayPlug, std::size_t physical) const {
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

std::vector<std::int32_t> Scene::elementIndices(const Plug& arrayPlug) const {
    std::vector<std::int32_t> out(elementCount(arrayPlug));
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = logicalIndex(elementAt(arrayPlug, i));
    return out;
}

namespace {

// The links of an element and of all below it, in slot order.
struct ElementLinks {
    std::vector<std::pair<Plug, Plug>> in, out;  // source, target

    void collect(Node& owner, const Plug& element, Slot* block) {
        walkElement(owner, element, block, [this](const Plug& plug, Slot& slot) {
            if (!slot.links)
                return;
            if (!slot.links->source.isNull())
                in.emplace_back(slot.links->source, plug);
            for (const Plug& target : slot.links->targets)
                out.emplace_back(plug, target);
        });
    }
};

}  // namespace

void Scene::removeElement(const Plug& elementPlug) {
    Plug array = parentPlug(elementPlug);
    Slot* slot = isElement(elementPlug) && peekSlot(array) ? slotFor(array) : nullptr;
    const int at = slot && slot->array ? slot->array->find(logicalIndex(elementPlug)) : -1;
    if (at < 0)
        return;
    ElementLinks links;
    links.collect(*node(array.node), elementPlug,
                  slot->array->elements[static_cast<std::size_t>(at)].get());
    for (const auto& [source, target] : links.in)
        unlink(source, target, false);
    for (const auto& [source, target] : links.out)
        unlink(source, target, true);
    ++m_structure;
    const int again =
        slot->array->find(logicalIndex(elementPlug));  // unlinking may have taken it already
    if (again >= 0) {
        slot->array->logical.erase(slot->array->logical.begin() + again);
        slot->array->elements.erase(slot->array->elements.begin() + again);
    }
    changed(array);
}

std::int32_t Scene::nextAvailable(const Plug& arrayPlug) const {
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

// --- slots
// ---------------------------------------------------------------------------------------------------

namespace {

Slot* elementBlock(Scene& scene, Node& n, const Plug& plug, AttrIndex array, bool make);

// Slot of the array or of a plain attribute `attr` at the plug's outer indices.
Slot* slotAt(Scene& scene, Node& n, const Plug& plug, AttrIndex attr, bool make) {
    const AttrInfo& info = n.attr(attr);
    const AttrIndex outer =
        info.isArray() ? (info.parent == kNoAttr ? kNoAttr : n.attr(info.parent).arrayOwner)
                       : info.arrayOwner;
    if (outer == kNoAttr)
        return make ? &n.slot(attr) : const_cast<Slot*>(n.peek(attr));
    Slot* block = elementBlock(scene, n, plug, outer, make);
    return block ? block + info.slot : nullptr;
}

Slot* elementBlock(Scene& scene, Node& n, const Plug& plug, AttrIndex array, bool make) {
    Slot* slot = slotAt(scene, n, plug, array, make);
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

Slot* Scene::slotFor(const Plug& plug) {
    Node* n = node(plug.node);
    if (!n || plug.attr >= n->attrCount())
        return nullptr;
    const AttrInfo& self = n->attr(plug.attr);
    if (self.bulkOwner != kNoAttr && !(self.bulkOwner == plug.attr && isArrayPlug(plug)))
        return nullptr;
    if (self.isArray() && plug.index[self.arrayDepth - 1] >= 0)
        return elementBlock(*this, *n, plug, plug.attr, true);
    return slotAt(*this, *n, plug, plug.attr, true);
}

const Slot* Scene::peekSlot(const Plug& plug) const {
    Scene& self = const_cast<Scene&>(*this);
    Node* n = self.node(plug.node);
    if (!n || plug.attr >= n->attrCount())
        return nullptr;
    const AttrInfo& attr = n->attr(plug.attr);
    if (attr.arrayDepth == 0)
        return n->peek(plug.attr);
    if (attr.bulkOwner != kNoAttr && !(attr.bulkOwner == plug.attr && isArrayPlug(plug)))
        return nullptr;
    if (attr.isArray() && plug.index[attr.arrayDepth - 1] >= 0)
        return elementBlock(self, *n, plug, plug.attr, false);
    return slotAt(self, *n, plug, plug.attr, false);
}

const BulkArray* Scene::bulk(const Plug& plug) const {
    const AttrInfo& attr = info(plug);
    return attr.bulkOwner == kNoAttr ? nullptr : bulkOf(peekSlot(Plug(plug.node, attr.bulkOwner)));
}

void Scene::changeBulk(const Plug& plug, const std::function<void(BulkArray&)>& change) {
    const Plug root(plug.node, info(plug).bulkOwner);
    Slot* slot = root.attr == kNoAttr ? nullptr : slotFor(root);
    const BulkArray* values = bulkOf(slot);
    if (!values)
        return;
    if (slot->data.use_count() > 1)
        slot->data = values->clone();
    change(const_cast<BulkArray&>(*bulkOf(slot)));
    slot->state |= kSet;
    changed(root);
}

}  // namespace torvel
