#include "files/ma/open_report.h"

namespace torvel {
namespace {

bool carriesShape(const Scene& scene, const Plug& plug) {
    const AttrInfo& info = scene.info(plug);
    switch (info.type) {
        case AttrType::Mesh:
        case AttrType::NurbsCurve:
        case AttrType::NurbsSurface: return true;
        case AttrType::Any: return info.shortName != "msg" && info.longName != "message";
        default: return info.is(kGeometryIn) || info.is(kGeometryOut);
    }
}

bool isKept(const Node& node) {
    return !node.unknownType.empty();
}

// Nodes that shapes reach from (forward) or on their way to (backward) the nodes of a type.
std::vector<bool> reached(const Scene& scene, const char* typeName, bool forward) {
    std::vector<bool> seen;
    std::vector<NodeHandle> stack;
    const auto enter = [&](NodeHandle handle) {
        if (handle.index >= seen.size())
            seen.resize(handle.index + 1);
        if (!seen[handle.index])
            stack.push_back(handle);
        seen[handle.index] = true;
    };
    scene.forEachNode([&](const Node& node) {
        if (node.type->derivesFrom(typeName))
            enter(node.self);
    });
    while (!stack.empty()) {
        const NodeHandle at = stack.back();
        stack.pop_back();
        for (const Scene::Connection& c : forward ? scene.outgoing(at) : scene.incoming(at))
            if (carriesShape(scene, c.source) && carriesShape(scene, c.target))
                enter(forward ? c.target.node : c.source.node);
    }
    return seen;
}

std::string counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

}  // namespace

void OpenReport::skip(std::size_t line, const std::string& why) {
    if (skipped.size() < kShownLines)
        skipped.push_back("line " + std::to_string(line) + ": " + why);
    ++skippedCount;
}

void OpenReport::countNodes(const Scene& scene) {
    scene.forEachNode([&](const Node& node) {
        const std::string type = scene.typeName(node.self);
        if (type == "script")
            ++scripts;
        else if (isKept(node))
            ++kept[type];
    });
    if (kept.empty())
        return;
    const std::vector<bool> behindSkin = reached(scene, "skinCluster", true);
    const std::vector<bool> beforeMesh = reached(scene, "mesh", false);
    scene.forEachNode([&](const Node& node) {
        const std::size_t at = node.self.index;
        if (isKept(node) && at < behindSkin.size() && at < beforeMesh.size() && behindSkin[at] &&
            beforeMesh[at])
            ++keptBetween;
    });
}

std::string OpenReport::text() const {
    std::string out;
    const auto line = [&out](const std::string& text) { out += (out.empty() ? "" : "\n") + text; };
    std::size_t count = 0;
    std::string types;
    for (const auto& [type, number] : kept) {
        count += number;
        types += (types.empty() ? "" : ", ") + type +
                 (number > 1 ? " (" + std::to_string(number) + ")" : "");
    }
    if (count) {
        line(counted(count, "node kept, not evaluated: ", "nodes kept, not evaluated: ") + types);
        if (keptBetween)
            out += "; " + std::to_string(keptBetween) +
                   " of them between skin and mesh, passed through";
    }
    if (scripts)
        line(counted(scripts, "script node kept, not run", "script nodes kept, not run"));
    for (const std::string& path : references)
        line("reference not read in: " + path);
    if (!codes.empty())
        line(codes);
    if (nonFinite)
        line(counted(nonFinite, "number is infinite or undefined (inf, nan)",
                     "numbers are infinite or undefined (inf, nan)"));
    if (noEndLine)
        line("the file has no end line; it may have been cut off");
    if (skippedCount)
        line(counted(skippedCount, "statement skipped", "statements skipped"));
    for (const std::string& text : skipped)
        line("  " + text);
    if (skippedCount > skipped.size())
        line("  ...");
    return out;
}

}  // namespace torvel
