#include <algorithm>

#include "graph/attr_path.h"
#include "graph/journal.h"
#include "graph/scene.h"
#include "graph/slot_walk.h"

namespace torvel {
namespace {

constexpr int kMaxNesting = 64;  // compounds in compounds; walks below an attribute recurse

int depthOf(const Node& node, AttrIndex attr) {
    int depth = 0;
    for (; attr != kNoAttr; attr = node.attr(attr).parent)
        ++depth;
    return depth;
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

// Lays the attribute out behind those of the node; opaque ones below a compound are not listed by
// name.
AttrIndex Scene::putAttribute(Node& n, AttrInfo info, AttrIndex parent) {
    if (!n.dynamic) {
        n.dynamic = std::make_unique<AttrTable>();
        n.dynamic->slotCount = n.type->slotCount;
    }
    const AttrIndex first = static_cast<AttrIndex>(n.type->attrs.size());
    growElements(n, parent);
    ++m_structure;
    const bool isListed = !info.is(kOpaque) || parent == kNoAttr;
    const AttrIndex made =
        layOutAttribute(n.dynamic->attrs, n.dynamic->slotCount, std::move(info), parent, first);
    const AttrInfo& stored = n.attr(made);
    if (isListed) {
        n.dynamic->byName[stored.longName] = made;
        n.dynamic->byName[stored.shortName] = made;
    }
    if (m_recorder)
        m_recorder->add(edit::Attribute{Plug(n.self, made), nullptr});
    tell([&](SceneListener& l) { l.attributeAdded(Plug(n.self, made)); });
    return made;
}

// The last attribute of the node leaves; what putAttribute needs to bring it back.
AttrInfo Scene::takeLastAttribute(Node& n) {
    AttrTable& table = *n.dynamic;
    AttrInfo info = std::move(table.attrs.back());
    const AttrIndex index = static_cast<AttrIndex>(n.attrCount() - 1);
    for (const std::string& name : {info.longName, info.shortName})
        if (const auto it = table.byName.find(name);
            it != table.byName.end() && it->second == index)
            table.byName.erase(it);
    const AttrIndex first = static_cast<AttrIndex>(n.type->attrs.size());
    AttrIndex owner = kNoAttr;
    if (info.parent != kNoAttr) {
        AttrInfo& above = table.attrs[info.parent - first];
        above.children.pop_back();
        owner = above.arrayOwner;
    }
    if (owner == kNoAttr) {
        n.slot(index) = Slot();
        --table.slotCount;
    } else {
        --table.attrs[owner - first].elementSize;
    }
    table.attrs.pop_back();
    ++m_structure;
    info.children.clear();
    return info;
}

void Scene::exchangeNames(Node& n, edit::AttributeNames& other) {
    AttrInfo& info = n.dynamic->attrs[other.plug.attr - n.type->attrs.size()];
    n.dynamic->byName.erase(info.longName);
    n.dynamic->byName.erase(info.shortName);
    info.longName.swap(other.longName);
    info.shortName.swap(other.shortName);
    std::swap(info.flags, other.flags);
    for (const std::string& name : {info.longName, info.shortName})
        if (!name.empty() && (!info.is(kOpaque) || info.parent == kNoAttr))
            n.dynamic->byName[name] = other.plug.attr;
    ++m_structure;
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
    if (parent != kNoAttr && parent < n->type->attrs.size())
        return Status::failure("addAttr: the parent of '" + info.longName +
                               "' is no dynamic attribute");
    if (depthOf(*n, parent) >= kMaxNesting)
        return Status::failure("addAttr: '" + info.longName + "' is nested in more than " +
                               std::to_string(kMaxNesting - 1) + " attributes");
    info.flags |= kDynamic;
    made = putAttribute(*n, std::move(info), parent);
    m_document.modified = true;
    return Status::ok();
}

// Opaque attributes take indices as the file writes them: an array wherever the text has brackets.
Plug Scene::opaquePlug(NodeHandle handle, std::string_view attrPath) {
    Plug plug(handle, kNoAttr);
    AttrIndex parent = kNoAttr;
    int depth = 0, level = 0;
    while (!attrPath.empty() && node(handle)) {
        const AttrStep step = nextStep(attrPath);
        if (!step.good || depth >= kMaxArrayDepth || ++level > kMaxNesting)
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
            if (parent != kNoAttr &&
                (parent < n->type->attrs.size() || depthOf(*n, parent) >= kMaxNesting))
                return {};  // the host knows the compound but not this child
            found = putAttribute(*n, std::move(info), parent);
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
    tell([&](SceneListener& l) { l.attributeRemoved(Plug(handle, attr)); });
    ++m_structure;
    std::vector<AttrIndex> gone{attr};
    for (std::size_t i = 0; i < gone.size(); ++i)
        gone.insert(gone.end(), n->attr(gone[i]).children.begin(), n->attr(gone[i]).children.end());
    for (AttrIndex a : gone) {
        const AttrInfo& info = n->attr(a);
        edit::AttributeNames hidden{Plug(handle, a), "", "", info.flags | kOpaque};
        exchangeNames(*n, hidden);  // its place stays, nothing finds it any more
        if (m_recorder)
            m_recorder->add(std::move(hidden));
    }
    m_document.modified = true;
}

void Scene::changeAttribute(const Plug& plug, const std::function<void(AttrInfo&)>& change) {
    Node* n = node(plug.node);
    if (!n || !n->dynamic || plug.attr < n->type->attrs.size() || plug.attr >= n->attrCount())
        return;
    AttrInfo& info = n->dynamic->attrs[plug.attr - n->type->attrs.size()];
    if (m_recorder)
        m_recorder->add(edit::AttributeInfo{plug, info});
    change(info);
    ++m_structure;
    m_document.modified = true;
    tell([&](SceneListener& l) { l.stateChanged(plug); });
}

void Scene::removeElement(const Plug& elementPlug) {
    const Plug array = parentPlug(elementPlug);
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
    edit::Element gone{elementPlug, takeElement(elementPlug)};
    if (gone.block && m_recorder)  // unlinking may have taken it already
        m_recorder->add(std::move(gone));
    changed(array);
    m_document.modified = true;
    tell([&](SceneListener& l) { l.elementRemoved(elementPlug); });
}

std::unique_ptr<Slot[]> Scene::takeElement(const Plug& element) {
    Slot* slot = slotFor(parentPlug(element));
    const int at = slot && slot->array ? slot->array->find(logicalIndex(element)) : -1;
    if (at < 0)
        return nullptr;
    std::unique_ptr<Slot[]> block = std::move(slot->array->elements[static_cast<std::size_t>(at)]);
    slot->array->logical.erase(slot->array->logical.begin() + at);
    slot->array->elements.erase(slot->array->elements.begin() + at);
    ++m_structure;
    return block;
}

}  // namespace torvel
