#include <algorithm>
#include <unordered_set>

#include "commands/attribute/value.h"
#include "edit/components.h"
#include "script/session.h"
#include "nodes/transform/visibility.h"

namespace torvel {
namespace {

const FlagRow kLsFlags[] = {
    {"allPaths", "ap"},
    {"assemblies", "as"},
    {"cameras", "ca"},
    {"dagObjects", "dag"},
    {"dependencyNodes", "dep"},
    {"exactType", "et", "s", kCreate | kEdit, true},
    {"flatten", "fl"},
    {"geometry", "g"},
    {"head", "hd", "i"},
    {"hilite", "hl"},
    {"intermediateObjects", "io"},
    {"invisible", "iv"},
    {"long", "l"},
    {"lockedNodes", "ln"},
    {"materials", "mat"},
    {"noIntermediate", "ni"},
    {"objectsOnly", "o"},
    {"recursive", "r"},
    {"selection", "sl"},
    {"sets", "set"},
    {"shapes", "s"},
    {"shortNames", "sn"},
    {"showType", "st"},
    {"tail", "tl", "i"},
    {"transforms", "tr"},
    {"type", "typ", "s", kCreate | kEdit, true},
    {"uuid", "uid"},
    {"visible", "v"},
};

using Items = std::vector<SelectionItem>;

bool isIntermediate(const Scene& scene, NodeHandle node) {
    return scene.number(scene.findPlug(node, "intermediateObject")) != 0.0;
}

void preOrder(const Scene& scene, NodeHandle top, std::vector<NodeHandle>& out) {
    std::vector<NodeHandle> stack{top};
    std::unordered_set<std::uint32_t> seen;
    while (!stack.empty()) {
        const NodeHandle at = stack.back();
        stack.pop_back();
        if (!seen.insert(at.index).second)
            continue;
        if (at != scene.world())
            out.push_back(at);
        const std::vector<NodeHandle>& children = scene.node(at)->children;
        stack.insert(stack.end(), children.rbegin(), children.rend());
    }
}

// DAG nodes in pre-order, then the others by creation.
std::vector<NodeHandle> everything(const Scene& scene) {
    std::vector<NodeHandle> nodes;
    preOrder(scene, scene.world(), nodes);
    for (NodeHandle node : scene.allNodes())
        if (!scene.node(node)->isDag())
            nodes.push_back(node);
    return nodes;
}

Items itemsOf(const std::vector<NodeHandle>& nodes) {
    Items items;
    for (NodeHandle node : nodes) {
        SelectionItem item;
        item.node = node;
        items.push_back(item);
    }
    return items;
}

// "*.liw": every node of the pattern that has the attribute. An attribute pattern ("hip.t*") is
// matched, too.
void addPlugs(const Scene& scene, const std::string& text, Items& out) {
    const std::size_t dot = text.find('.');
    const std::string attr = text.substr(dot + 1);
    for (NodeHandle handle : scene.names().find(text.substr(0, dot))) {
        SelectionItem item;
        item.node = handle;
        if (!scene.names().isPattern(attr)) {
            item.plug = scene.findPlug(handle, attr);
            if (!item.plug.isNull())
                out.push_back(item);
            continue;
        }
        const Node& node = *scene.node(handle);
        for (AttrIndex i = 0; i < node.attrCount(); ++i)
            if (node.attr(i).arrayDepth <= 1 && Names::matches(attr, node.attr(i).longName)) {
                item.plug = Plug(handle, i);
                out.push_back(item);
            }
    }
}

void addText(const Scene& scene, const std::string& text, Items& out) {
    if (componentItems(scene, text, out))
        return;
    if (text.find('.') != std::string::npos) {
        addPlugs(scene, text, out);
        return;
    }
    const Items found = itemsOf(scene.names().find(text));
    out.insert(out.end(), found.begin(), found.end());
}

void dropRepeats(Items& items) {
    Items kept;
    std::unordered_set<std::uint64_t> nodes;
    for (const SelectionItem& item : items) {
        const std::uint64_t key =
            (static_cast<std::uint64_t>(item.node.index) << 32) | item.node.generation;
        const bool whole = item.plug.isNull() && item.component.empty();
        if (whole ? nodes.insert(key).second
                  : std::find(kept.begin(), kept.end(), item) == kept.end())
            kept.push_back(item);
    }
    items = std::move(kept);
}

void flatten(Items& items) {
    Items single;
    for (const SelectionItem& item : items)
        for (const SelectionItem& one : singleComponents(item))
            single.push_back(one);
    items = std::move(single);
}

void addBelow(const Scene& scene, Items& items) {
    std::vector<NodeHandle> nodes;
    for (const SelectionItem& item : items)
        if (scene.node(item.node)->isDag())
            preOrder(scene, item.node, nodes);
    items = itemsOf(nodes);
}

bool matchesType(const CommandCall& call, NodeHandle node) {
    const Scene& scene = call.scene();
    const std::vector<const FlagUse*> types = call.uses("type"), exact = call.uses("exactType");
    const auto derives = [&](const FlagUse* use) {
        return scene.isType(node, use->values[0].string());
    };
    const auto equals = [&](const FlagUse* use) {
        return scene.typeName(node) == use->values[0].string();
    };
    return (types.empty() && exact.empty()) || std::any_of(types.begin(), types.end(), derives) ||
           std::any_of(exact.begin(), exact.end(), equals);
}

// What shades a surface, or stands in the list of shaders.
bool isMaterial(const Scene& scene, NodeHandle node) {
    for (const Scene::Connection& c : scene.outgoing(node)) {
        const std::string& type = scene.typeName(c.target.node);
        const std::string& attr = scene.info(c.target).shortName;
        if (type == "defaultShaderList" ||
            (type == "shadingEngine" && (attr == "ss" || attr == "vs" || attr == "ds")))
            return true;
    }
    return scene.isType(node, "lambert") || scene.isType(node, "standardSurface");
}

// Kinds of nodes add up: `-transforms -shapes` gives both.
bool matchesKind(const CommandCall& call, const Node& node) {
    const NodeType& type = *node.type;
    const bool atTop = !node.parents.empty() && node.parents.front() == call.scene().world();
    struct Kind {
        const char* flag;
        bool fits;
    };
    const Kind kinds[] = {
        {"transforms", type.is(kTransformType)},
        {"shapes", type.is(kShapeType)},
        {"assemblies", type.is(kTransformType) && atTop},
        {"cameras", type.derivesFrom("camera")},
        {"geometry", type.derivesFrom("geometryShape")},
        {"sets", type.derivesFrom("objectSet")},
        {"lockedNodes", node.locked},
        {"materials", call.has("materials") && isMaterial(call.scene(), node.self)},
    };
    bool asked = false;
    for (const Kind& kind : kinds) {
        if (call.has(kind.flag) && kind.fits)
            return true;
        asked = asked || call.has(kind.flag);
    }
    return !asked;
}

bool wanted(const CommandCall& call, const SelectionItem& item) {
    const Scene& scene = call.scene();
    const Node& node = *scene.node(item.node);
    if (item.node == scene.world() || !matchesType(call, item.node) || !matchesKind(call, node))
        return false;
    if ((call.has("dagObjects") || call.has("visible") || call.has("invisible")) && !node.isDag())
        return false;
    if (call.has("noIntermediate") && isIntermediate(scene, item.node))
        return false;
    if (call.has("intermediateObjects") && !isIntermediate(scene, item.node))
        return false;
    if (call.has("visible") && !isShown(scene, item.node))
        return false;
    return !call.has("invisible") || !isShown(scene, item.node);
}

void addNames(const CommandCall& call, const SelectionItem& item, std::vector<std::string>& names) {
    const Scene& scene = call.scene();
    const auto ending = [&]() -> std::string {
        if (call.has("objectsOnly"))
            return {};
        if (!item.component.empty())
            return "." + item.component;
        return item.plug.isNull() ? std::string()
                                  : "." + scene.attrPath(item.plug, !call.has("shortNames"));
    };
    const NodeHandle owner = call.has("objectsOnly") ? item.node : componentOwner(scene, item);
    if (call.has("uuid"))
        names.push_back(scene.node(item.node)->uuid);
    else if (call.has("allPaths"))
        for (int i = 0; i < std::max(1, scene.instanceCount(item.node)); ++i)
            names.push_back(scene.names().fullPath(owner, i) + ending());
    else if (call.has("long"))
        names.push_back(scene.names().fullPath(owner, item.instance) + ending());
    else
        names.push_back(scene.names().shortest(owner) + ending());
    if (call.has("showType"))
        names.push_back(scene.typeName(item.node));
}

void cutEnds(const CommandCall& call, Items& items) {
    if (call.has("head"))
        items.resize(
            std::min(items.size(), static_cast<std::size_t>(std::max(0, call.integer("head")))));
    const std::size_t tail = static_cast<std::size_t>(std::max(0, call.integer("tail")));
    if (call.has("tail") && items.size() > tail)
        items.erase(items.begin(), items.end() - static_cast<std::ptrdiff_t>(tail));
}

// A pattern searches every namespace when -recursive is given.
std::string searchText(const CommandCall& call, const std::string& text) {
    const bool widen = call.has("recursive") && text.find(':') == std::string::npos;
    return widen ? "*:" + text : text;
}

Status ls(const CommandCall& call, Value& result) {
    const Scene& scene = call.scene();
    Items items;
    for (const std::string& raw : call.texts()) {
        const std::string text(Names::trimmed(raw));
        addText(scene, text, items);
        if (searchText(call, text) != text)
            addText(scene, searchText(call, text), items);
    }
    if (call.has("selection")) {
        const Items named = items;
        items = scene.selection().items();
        if (!call.args().empty())
            items.erase(std::remove_if(items.begin(), items.end(),
                                       [&](const SelectionItem& item) {
                                           return std::find(named.begin(), named.end(), item) ==
                                                  named.end();
                                       }),
                        items.end());
    } else if (call.has("hilite")) {
        items = itemsOf(scene.selection().hilited);
    } else if (call.args().empty()) {
        items = itemsOf(everything(scene));
    }
    if (call.has("dagObjects") && (call.has("selection") || !call.args().empty()))
        addBelow(scene, items);
    if (call.has("flatten"))
        flatten(items);
    dropRepeats(items);
    items.erase(std::remove_if(items.begin(), items.end(),
                               [&](const SelectionItem& i) { return !wanted(call, i); }),
                items.end());
    cutEnds(call, items);
    std::vector<std::string> names;
    for (const SelectionItem& item : items)
        addNames(call, item, names);
    result = Value::strings(names);
    return Status::ok();
}

Status objExists(const CommandCall& call, Value& result) {
    const std::vector<std::string> texts = call.texts();
    if (texts.empty())
        return call.fail("Needs the name of an object.");
    Items items;
    const std::string text(Names::trimmed(texts.front()));
    if (!text.empty())
        addText(call.scene(), text, items);
    result = Value(!items.empty());
    return Status::ok();
}

const FlagRow kNodeTypeFlags[] = {
    {"apiType", "api"}, {"derived", "d"}, {"inherited", "i"}, {"isTypeName", "itn"}};

Status nodeType(const CommandCall& call, Value& result) {
    const Scene& scene = call.scene();
    const std::vector<std::string> texts = call.texts();
    if (texts.size() != 1)
        return call.fail("Needs one node.");
    const NodeType* type = call.has("isTypeName") ? scene.types().find(texts.front()) : nullptr;
    std::string name = texts.front();
    if (!call.has("isTypeName")) {
        NodeHandle node;
        if (Status found = call.resolve(name.substr(0, name.find('.')), node); !found)
            return found;
        type = scene.node(node)->type;
        name = scene.typeName(node);
    }
    if (!type)
        return call.fail("'" + name + "' is no type of node.");
    std::vector<std::string> chain;
    if (call.has("inherited")) {
        for (const NodeType* t = type; t; t = t->base)
            chain.insert(chain.begin(), t->name);
        result = Value::strings(chain);
    } else if (call.has("derived")) {
        for (const auto& t : scene.types().all())
            if (t->derivesFrom(type->name))
                chain.push_back(t->name);
        result = Value::strings(chain);
    } else {
        result = Value(call.has("apiType") ? type->apiTypeName : name);
    }
    return Status::ok();
}

const Command kListCommands[] = {
    {"ls", kLsFlags, countOf(kLsFlags), ls, "Names of nodes."},
    {"nodeType", kNodeTypeFlags, countOf(kNodeTypeFlags), nodeType, "Type of a node."},
    {"objExists", nullptr, 0, objExists, "Tells if something has the name."},
};

}  // namespace

CommandTable listCommands() {
    return {kListCommands, std::size(kListCommands)};
}

}  // namespace torvel
