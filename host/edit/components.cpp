#include "edit/components.h"

#include <algorithm>
#include <charconv>

#include "nodes/shape/mesh.h"
#include "nodes/shape/nurbs_curve.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

struct Kind {
    const char* name;
    const char* shortName;
};

// What scripts may write and the form that is kept.
constexpr Kind kKinds[] = {{"vtx", "vtx"}, {"vrts", "vtx"}, {"cv", "cv"},   {"controlPoints", "cv"},
                           {"cp", "cv"},   {"f", "f"},      {"faces", "f"}, {"e", "e"}};

struct Range {
    int first = 0, last = 0;
    bool all = false;
};

bool parseRange(std::string_view text, Range& range) {
    if (text == "*") {
        range.all = true;
        return true;
    }
    const char* end = text.data() + text.size();
    const auto a = std::from_chars(text.data(), end, range.first);
    range.last = range.first;
    if (a.ec != std::errc() || range.first < 0)
        return false;
    if (a.ptr == end)
        return true;
    const auto b = std::from_chars(a.ptr + 1, end, range.last);
    return *a.ptr == ':' && b.ec == std::errc() && b.ptr == end && range.last >= range.first;
}

// "vtx[0:3]" in its parts.
bool parseComponent(std::string_view text, std::string& kind, Range& range) {
    const std::size_t open = text.find('[');
    if (open == std::string_view::npos || text.back() != ']')
        return false;
    for (const Kind& known : kKinds)
        if (text.substr(0, open) == known.name)
            kind = known.shortName;
    return !kind.empty() && parseRange(text.substr(open + 1, text.size() - open - 2), range);
}

NodeHandle shapeWith(const Scene& scene, NodeHandle node, const std::string& kind) {
    std::vector<NodeHandle> candidates{node};
    if (!scene.node(node)->type->is(kShapeType))
        candidates = scene.node(node)->children;
    for (NodeHandle shape : candidates)
        if (componentCount(scene, shape, kind) > 0 &&
            (shape == node || scene.number(Plug(shape, dagAttrs().intermediateObject)) == 0.0))
            return shape;
    return {};
}

std::string rangeText(const std::string& kind, int first, int last) {
    const std::string end = last > first ? ":" + std::to_string(last) : std::string();
    return kind + "[" + std::to_string(first) + end + "]";
}

}  // namespace

std::vector<SelectionItem> singleComponents(const SelectionItem& item) {
    std::string kind;
    Range range;
    if (item.component.empty() || !parseComponent(item.component, kind, range) || range.all)
        return {item};
    std::vector<SelectionItem> singles;
    for (int i = range.first; i <= range.last; ++i) {
        singles.push_back(item);
        singles.back().component = rangeText(kind, i, i);
    }
    return singles;
}

NodeHandle componentOwner(const Scene& scene, const SelectionItem& item) {
    const Node* shape = scene.node(item.node);
    if (item.component.empty() || !shape || shape->parents.empty())
        return item.node;
    const NodeHandle parent = shape->parents.front();
    for (NodeHandle child : scene.node(parent)->children)
        if (child != item.node && scene.node(child)->type->is(kShapeType) &&
            scene.number(Plug(child, dagAttrs().intermediateObject)) == 0.0)
            return item.node;
    return parent;
}

int componentCount(const Scene& scene, NodeHandle shape, std::string_view kind) {
    if (kind == "cv") {
        const auto curve = curveOf(scene, shape);
        if (!curve)
            return 0;
        const int points = static_cast<int>(curve->cvs.size());
        return curve->form == 2 ? points - curve->degree : points;
    }
    if (!scene.isType(shape, "mesh"))
        return 0;
    const auto mesh = meshPoints(scene, shape);
    if (kind == "vtx")
        return static_cast<int>(mesh->points.size());
    return kind == "f" && mesh->topology ? static_cast<int>(mesh->topology->faceCounts.size()) : 0;
}

bool componentItems(const Scene& scene, const std::string& text, std::vector<SelectionItem>& out) {
    const std::size_t dot = text.find('.');
    std::string kind;
    Range range;
    if (dot == std::string::npos ||
        !parseComponent(std::string_view(text).substr(dot + 1), kind, range))
        return false;
    bool any = false;
    for (NodeHandle node : scene.names().find(text.substr(0, dot))) {
        const NodeHandle shape = shapeWith(scene, node, kind);
        const int count = shape.isNull() ? 0 : componentCount(scene, shape, kind);
        if (count == 0 || (!range.all && range.first >= count))
            continue;
        const int last = range.all ? count - 1 : std::min(range.last, count - 1);
        SelectionItem item;
        item.node = shape;
        item.component = rangeText(kind, range.all ? 0 : range.first, last);
        out.push_back(item);
        any = true;
    }
    // "joint.cp[2]" and the like may still be an attribute of a node without such points.
    return any || kind == "vtx" || kind == "f" || kind == "cv";
}

namespace {

std::vector<int> verticesOfFaces(const MeshTopology& topology, int first, int last) {
    std::vector<int> vertices;
    std::size_t at = 0;
    for (int face = 0; face <= last && face < static_cast<int>(topology.faceCounts.size());
         ++face) {
        const std::size_t count =
            static_cast<std::size_t>(topology.faceCounts[static_cast<std::size_t>(face)]);
        for (std::size_t i = 0; i < count && face >= first; ++i)
            vertices.push_back(topology.faceVertices[at + i]);
        at += count;
    }
    std::sort(vertices.begin(), vertices.end());
    vertices.erase(std::unique(vertices.begin(), vertices.end()), vertices.end());
    return vertices;
}

}  // namespace

bool pointsOfItem(const Scene& scene, const SelectionItem& item, PointSet& out) {
    std::string kind;
    Range range;
    if (item.component.empty() || !parseComponent(item.component, kind, range))
        return false;
    const int count = componentCount(scene, item.node, kind);
    const int first = range.all ? 0 : range.first,
              last = range.all ? count - 1 : std::min(range.last, count - 1);
    out.shape = item.node;
    out.points.clear();
    if (kind == "f" && count > 0) {
        out.points = verticesOfFaces(*meshPoints(scene, item.node)->topology, first, last);
        return true;
    }
    for (int i = first; i <= last; ++i)
        out.points.push_back(i);
    return kind == "vtx" || kind == "cv";
}

PointSet allPoints(const Scene& scene, NodeHandle shape) {
    PointSet set;
    set.shape = shape;
    const int count = static_cast<int>(shapePoints(scene, shape).size());
    for (int i = 0; i < count; ++i)
        set.points.push_back(i);
    return set;
}

std::vector<V3d> shapePoints(const Scene& scene, NodeHandle shape) {
    if (const auto curve = curveOf(scene, shape))
        return curve->cvs;
    std::vector<V3d> points;
    if (scene.isType(shape, "mesh"))
        for (const V3f& point : meshPoints(scene, shape)->points)
            points.emplace_back(point.x, point.y, point.z);
    return points;
}

namespace {

void moveCurvePoints(Scene& scene, const PointSet& set, const std::vector<V3d>& points) {
    const auto curve = curveOf(scene, set.shape);
    std::vector<V3d> all = curve->cvs;
    for (std::size_t i = 0; i < set.points.size(); ++i)
        all[static_cast<std::size_t>(set.points[i])] = points[i];
    const std::size_t repeats = curve->form == 2 ? static_cast<std::size_t>(curve->degree) : 0;
    for (std::size_t i = 0; i < repeats; ++i)  // a periodic curve ends with its first points
        all[all.size() - repeats + i] = all[i];
    setCurvePoints(scene, set.shape, all);
}

void moveMeshPoints(Scene& scene, const PointSet& set, const std::vector<V3d>& points) {
    const auto mesh = meshPoints(scene, set.shape);
    if (scene.source(scene.findPlug(set.shape, "inMesh")).isNull()) {
        MeshData own = *mesh;
        for (std::size_t i = 0; i < set.points.size(); ++i)
            own.points[static_cast<std::size_t>(set.points[i])] = V3f(points[i]);
        setOwnMesh(scene, set.shape, own);
        return;
    }
    const Plug tweaks = scene.findPlug(set.shape, "pnts");
    for (std::size_t i = 0; i < set.points.size(); ++i) {
        const V3f& now = mesh->points[static_cast<std::size_t>(set.points[i])];
        const Plug tweak = scene.element(tweaks, set.points[i]);
        scene.setVec3(tweak, scene.vec3(tweak) + points[i] - V3d(now.x, now.y, now.z));
    }
}

}  // namespace

Status movePoints(Scene& scene, const PointSet& set, const std::vector<V3d>& points) {
    const std::size_t count = shapePoints(scene, set.shape).size();
    if (count == 0 || set.points.size() != points.size())
        return Status::failure("The shape has no points that could be moved.");
    for (int index : set.points)
        if (index < 0 || static_cast<std::size_t>(index) >= count)
            return Status::failure("The shape has no point " + std::to_string(index) + ".");
    if (curveOf(scene, set.shape))
        moveCurvePoints(scene, set, points);
    else
        moveMeshPoints(scene, set, points);
    return Status::ok();
}

}  // namespace torvel
