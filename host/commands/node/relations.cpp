#include <algorithm>
#include <unordered_set>

#include "commands/attribute/value.h"
#include "script/session.h"

namespace torvel {
namespace {

std::uint64_t keyOf(NodeHandle node) {
    return (static_cast<std::uint64_t>(node.index) << 32) | node.generation;
}

Value listOrNone(const std::vector<std::string>& names) {
    return names.empty() ? Value() : Value::strings(names);
}

// --- listRelatives -------------------------------------------------------------------------------

const FlagRow kRelativeFlags[] = {
    {"allDescendents", "ad"}, {"allParents", "ap"},     {"children", "c"},
    {"fullPath", "f"},        {"noIntermediate", "ni"}, {"parent", "p"},
    {"path", "pa"},           {"shapes", "s"},          {"type", "typ", "s", kCreate | kEdit, true},
};

void childrenFirst(const Scene& scene, NodeHandle top, std::vector<NodeHandle>& out) {
    std::vector<std::pair<NodeHandle, std::size_t>> stack{{top, 0}};
    std::unordered_set<std::uint64_t> seen;
    while (!stack.empty()) {
        const NodeHandle at = stack.back().first;
        const std::vector<NodeHandle>& children = scene.node(at)->children;
        if (stack.back().second < children.size()) {
            const NodeHandle child = children[stack.back().second++];
            if (seen.insert(keyOf(child)).second)
                stack.emplace_back(child, 0);
            continue;
        }
        stack.pop_back();
        if (at != top)
            out.push_back(at);
    }
}

std::vector<NodeHandle> relativesOf(const CommandCall& call, NodeHandle handle) {
    const Scene& scene = call.scene();
    std::vector<NodeHandle> found;
    if (call.has("allDescendents")) {
        childrenFirst(scene, handle, found);
    } else if (call.has("parent") || call.has("allParents")) {
        for (NodeHandle parent : scene.node(handle)->parents)
            if (parent != scene.world() && (found.empty() || call.has("allParents")))
                found.push_back(parent);
    } else {
        found = scene.node(handle)->children;
    }
    return found;
}

bool isIntermediate(const Scene& scene, NodeHandle handle) {
    return scene.number(scene.findPlug(handle, "intermediateObject")) != 0.0;
}

bool wantedRelative(const CommandCall& call, NodeHandle handle) {
    const Scene& scene = call.scene();
    if (call.has("shapes") && !scene.node(handle)->type->is(kShapeType))
        return false;
    if (call.has("noIntermediate") && isIntermediate(scene, handle))
        return false;
    const std::vector<const FlagUse*> types = call.uses("type");
    return types.empty() || std::any_of(types.begin(), types.end(), [&](const FlagUse* use) {
               return scene.isType(handle, use->values[0].string());
           });
}

Status listRelatives(const CommandCall& call, Value& result) {
    std::vector<NodeHandle> nodes;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    const Scene& scene = call.scene();
    std::vector<std::string> names;
    for (NodeHandle node : nodes) {
        if (!scene.node(node)->isDag())
            continue;
        for (NodeHandle relative : relativesOf(call, node)) {
            if (!wantedRelative(call, relative))
                continue;
            names.push_back(call.has("fullPath") ? scene.names().fullPath(relative)
                            : call.has("path")   ? scene.names().shortest(relative)
                                                 : scene.node(relative)->name);
        }
    }
    result = listOrNone(names);
    return Status::ok();
}

// --- listConnections -----------------------------------------------------------------------------

const FlagRow kConnectionFlags[] = {
    {"connections", "c", "b"}, {"destination", "d", "b"}, {"exactType", "et", "b"},
    {"plugs", "p", "b"},       {"shapes", "sh", "b"},     {"skipConversionNodes", "scn", "b"},
    {"source", "s", "b"},      {"type", "t", "s"},
};

struct Link {
    Plug own, other;
    std::uint64_t order = 0;
    bool feeds = false;  // the other plug is the source
};

bool isBelow(const Scene& scene, Plug plug, const Plug& top) {
    for (; !plug.isNull(); plug = scene.parentPlug(plug))
        if (plug == top)
            return true;
    return false;
}

// The far ends behind a unitConversion; the other plug itself when it is none.
void addBehindConversion(const CommandCall& call, const Link& link, std::vector<Link>& out) {
    const Scene& scene = call.scene();
    if (!call.flag("skipConversionNodes") || !scene.isType(link.other.node, "unitConversion")) {
        out.push_back(link);
        return;
    }
    for (const Scene::Connection& c :
         link.feeds ? scene.incoming(link.other.node) : scene.outgoing(link.other.node)) {
        Link far = link;
        far.other = link.feeds ? c.source : c.target;
        out.push_back(far);
    }
}

std::vector<Link> linksOf(const CommandCall& call, NodeHandle node, const Plug& only) {
    const Scene& scene = call.scene();
    std::vector<Link> links, all;
    if (call.flag("source", true))
        for (const Scene::Connection& c : scene.incoming(node))
            links.push_back({c.target, c.source, c.order, true});
    if (call.flag("destination", true))
        for (const Scene::Connection& c : scene.outgoing(node))
            links.push_back({c.source, c.target, c.order, false});
    std::stable_sort(links.begin(), links.end(),
                     [](const Link& a, const Link& b) { return a.order < b.order; });
    for (const Link& link : links)
        if (only.isNull() || isBelow(scene, link.own, only))
            addBehindConversion(call, link, all);
    return all;
}

bool wantedEnd(const CommandCall& call, const Link& link) {
    const std::string type = call.text("type");
    if (type.empty())
        return true;
    const Scene& scene = call.scene();
    return call.flag("exactType") ? scene.typeName(link.other.node) == type
                                  : scene.isType(link.other.node, type);
}

std::string endName(const CommandCall& call, const Link& link) {
    const Scene& scene = call.scene();
    if (call.flag("plugs"))
        return scene.plugName(link.other);
    const Node& node = *scene.node(link.other.node);
    const bool viaTransform =
        node.type->is(kShapeType) && !call.flag("shapes") && !node.parents.empty();
    return scene.names().shortest(viaTransform ? node.parents.front() : node.self);
}

// Nodes or plugs named in the call; the selection without arguments.
Status subjects(const CommandCall& call, std::vector<Plug>& out) {
    std::vector<NodeHandle> nodes;
    if (call.args().empty()) {
        const Status found = call.objectsOrSelection(nodes);
        for (NodeHandle node : nodes)
            out.push_back(Plug(node, kNoAttr));
        return found;
    }
    for (const std::string& text : call.texts()) {
        Plug plug(NodeHandle(), kNoAttr);
        const Status found = text.find('.') != std::string::npos ? call.resolvePlug(text, plug)
                                                                 : call.resolve(text, plug.node);
        if (!found)
            return found;
        out.push_back(plug);
    }
    return Status::ok();
}

Status listConnections(const CommandCall& call, Value& result) {
    std::vector<Plug> plugs;
    if (Status found = subjects(call, plugs); !found)
        return found;
    std::vector<std::string> names;
    for (const Plug& plug : plugs) {
        for (const Link& link : linksOf(call, plug.node, plug.attr == kNoAttr ? Plug() : plug)) {
            if (!wantedEnd(call, link))
                continue;
            if (call.flag("connections"))
                names.push_back(call.scene().plugName(link.own));
            names.push_back(endName(call, link));
        }
    }
    result = listOrNone(names);
    return Status::ok();
}

// --- listHistory ---------------------------------------------------------------------------------

const FlagRow kHistoryFlags[] = {
    {"allFuture", "af"},          {"breadthFirst", "bf"}, {"future", "f", "b"},
    {"interestLevel", "il", "i"}, {"levels", "lv", "i"},  {"pruneDagObjects", "pdo"},
};

std::vector<NodeHandle> historyStarts(const Scene& scene, NodeHandle handle) {
    std::vector<NodeHandle> shapes;
    for (NodeHandle child : scene.node(handle)->children)
        if (scene.node(child)->type->is(kShapeType) && !isIntermediate(scene, child))
            shapes.push_back(child);
    return shapes.empty() ? std::vector<NodeHandle>{handle} : shapes;
}

std::vector<NodeHandle> historySteps(const CommandCall& call, NodeHandle handle, bool future) {
    const Scene& scene = call.scene();
    std::vector<NodeHandle> steps;
    for (const Scene::Connection& c : future ? scene.outgoing(handle) : scene.incoming(handle))
        if (!future || scene.info(c.source).type != AttrType::Message)
            steps.push_back(future ? c.target.node : c.source.node);
    return steps;
}

void walkHistory(const CommandCall& call, NodeHandle start, std::vector<NodeHandle>& out,
                 std::unordered_set<std::uint64_t>& seen) {
    const bool future = call.flag("future") || call.has("allFuture"),
               breadth = call.has("breadthFirst");
    const int limit = call.integer("levels", 0);
    std::vector<std::pair<NodeHandle, int>> open{{start, 0}};
    while (!open.empty()) {
        const auto [at, depth] = breadth ? open.front() : open.back();
        open.erase(breadth ? open.begin() : open.end() - 1);
        if (!seen.insert(keyOf(at)).second)
            continue;
        out.push_back(at);
        if (limit > 0 && depth >= limit)
            continue;
        std::vector<NodeHandle> steps = historySteps(call, at, future);
        if (!breadth)
            std::reverse(steps.begin(), steps.end());
        for (NodeHandle step : steps)
            open.emplace_back(step, depth + 1);
    }
}

Status listHistory(const CommandCall& call, Value& result) {
    std::vector<Plug> plugs;
    if (Status found = subjects(call, plugs); !found)
        return found;
    const Scene& scene = call.scene();
    std::vector<NodeHandle> nodes;
    std::unordered_set<std::uint64_t> seen;
    for (const Plug& plug : plugs)
        for (NodeHandle start : historyStarts(scene, plug.node))
            walkHistory(call, start, nodes, seen);
    std::vector<std::string> names;
    for (NodeHandle node : nodes) {
        const bool dull = call.has("interestLevel") &&
                          scene.number(scene.findPlug(node, "ihi")) < call.integer("interestLevel");
        if (!dull && !(call.has("pruneDagObjects") && scene.node(node)->isDag()))
            names.push_back(scene.names().shortest(node));
    }
    result = listOrNone(names);
    return Status::ok();
}

const Command kRelationCommands[] = {
    {"listConnections", kConnectionFlags, countOf(kConnectionFlags), listConnections,
     "What is connected to nodes."},
    {"listHistory", kHistoryFlags, countOf(kHistoryFlags), listHistory,
     "Nodes upstream or downstream."},
    {"listRelatives", kRelativeFlags, countOf(kRelativeFlags), listRelatives,
     "Parents and children."},
};

}  // namespace

CommandTable relationCommands() {
    return {kRelationCommands, std::size(kRelationCommands)};
}

}  // namespace torvel
