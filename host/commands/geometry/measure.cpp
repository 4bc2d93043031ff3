// Commands that measure shapes: boxes, lengths, positions of points, counts.
#include <algorithm>
#include <cstdint>

#include "edit/bounds.h"
#include "edit/components.h"
#include "edit/curves.h"
#include "script/session.h"
#include "commands/selection/targets.h"
#include "nodes/shape/mesh.h"
#include "nodes/shape/nurbs_curve.h"
#include "nodes/shape/nurbs_curve_math.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

Value listOf(const V3d& v) {
    return Value::doubles({v.x, v.y, v.z});
}

Value listOf(const Box3d& box) {
    return Value::doubles({box.min.x, box.min.y, box.min.z, box.max.x, box.max.y, box.max.z});
}

// --- exactWorldBoundingBox -----------------------------------------------------------

const FlagRow kBoxFlags[] = {{"calculateExactly", "ce"}, {"ignoreInvisible", "ii"}};

Status exactWorldBoundingBox(const CommandCall& call, Value& result) {
    std::vector<NodeHandle> nodes;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    BoxOptions options;
    options.curvesExactly = call.has("calculateExactly");
    options.visibleOnly = call.has("ignoreInvisible");
    Box3d box;
    for (NodeHandle node : nodes) {
        if (!call.scene().node(node)->isDag())
            return call.fail("'" + call.scene().node(node)->name +
                             "' is no object of the hierarchy.");
        box.extendBy(worldBounds(call.scene(), node, options));
    }
    if (box.isEmpty())
        return call.fail("No objects were named and nothing is selected.");
    result = listOf(box);
    return Status::ok();
}

// --- curves --------------------------------------------------------------------------

// The named or selected curve in the world.
Status worldCurve(const CommandCall& call, std::shared_ptr<const NurbsCurveData>& out) {
    const Scene& scene = call.scene();
    std::vector<NodeHandle> nodes;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    const NodeHandle shape = nodes.size() == 1 ? curveShapeOf(scene, nodes.front()) : NodeHandle();
    const auto curve = curveOf(scene, shape);
    if (!curve || !curveFault(*curve).empty())
        return call.fail("Needs one curve.");
    out = transformed(*curve, worldMatrix(scene, shape));
    return Status::ok();
}

Status arclen(const CommandCall& call, Value& result) {
    std::shared_ptr<const NurbsCurveData> curve;
    if (Status found = worldCurve(call, curve); !found)
        return found;
    result = Value(curveLength(*curve));
    return Status::ok();
}

const FlagRow kPointOnCurveFlags[] = {
    {"normalizedTangent", "nt"},      {"parameter", "pr", "d"}, {"position", "p"}, {"tangent", "t"},
    {"turnOnPercentage", "top", "b"},
};

Status pointOnCurve(const CommandCall& call, Value& result) {
    std::shared_ptr<const NurbsCurveData> curve;
    if (Status found = worldCurve(call, curve); !found)
        return found;
    const double first = firstParameter(*curve), last = lastParameter(*curve);
    double parameter = call.number("parameter", 0.0);
    if (call.flag("turnOnPercentage"))
        parameter = first + parameter * (last - first);
    const CurvePoint point = curveAt(*curve, parameter);
    result = listOf(call.has("normalizedTangent") ? point.tangent.normalized()
                    : call.has("tangent")         ? point.tangent
                                                  : point.position);
    return Status::ok();
}

// --- points --------------------------------------------------------------------------

const FlagRow kPositionFlags[] = {{"local", "l"}, {"world", "w"}};

Status pointPosition(const CommandCall& call, Value& result) {
    std::vector<Target> targets;
    if (Status found = targetsOf(call, targets); !found)
        return found;
    const Target& target = targets.front();
    if (!target.isPoints || target.points.points.empty())
        return call.fail("Needs a point (vtx or cv).");
    const std::vector<V3d> points = shapePoints(call.scene(), target.points.shape);
    const V3d point = points[static_cast<std::size_t>(target.points.points.front())];
    result =
        listOf(call.has("local") ? point : point * worldMatrix(call.scene(), target.points.shape));
    return Status::ok();
}

// --- polyEvaluate --------------------------------------------------------------------

const FlagRow kEvaluateFlags[] = {
    {"edge", "e"}, {"face", "f"}, {"triangle", "t"}, {"vertex", "v"}, {"worldArea", "wa"}};

int edgesOf(const MeshTopology& topology) {
    std::vector<std::uint64_t> edges;
    std::size_t at = 0;
    for (const std::int32_t count : topology.faceCounts) {
        for (std::int32_t i = 0; i < count; ++i) {
            const auto a =
                static_cast<std::uint64_t>(topology.faceVertices[at + static_cast<std::size_t>(i)]);
            const auto b = static_cast<std::uint64_t>(
                topology.faceVertices[at + static_cast<std::size_t>((i + 1) % count)]);
            edges.push_back(std::min(a, b) << 32 | std::max(a, b));
        }
        at += static_cast<std::size_t>(count);
    }
    std::sort(edges.begin(), edges.end());
    return static_cast<int>(std::unique(edges.begin(), edges.end()) - edges.begin());
}

int trianglesOf(const MeshTopology& topology) {
    int sum = 0;
    for (const std::int32_t count : topology.faceCounts)
        sum += std::max(0, count - 2);
    return sum;
}

double areaOf(const Scene& scene, NodeHandle shape) {
    const std::vector<V3d> points = meshWorldPoints(scene, shape);
    const MeshTopology& topology = *meshPoints(scene, shape)->topology;
    double area = 0.0;
    std::size_t at = 0;
    for (const std::int32_t count : topology.faceCounts) {
        V3d normal(0.0);
        const auto corner = [&](std::int32_t i) {
            return points[static_cast<std::size_t>(
                topology.faceVertices[at + static_cast<std::size_t>(i)])];
        };
        for (std::int32_t i = 2; i < count; ++i)
            normal += (corner(i - 1) - corner(0)).cross(corner(i) - corner(0));
        area += normal.length() / 2.0;
        at += static_cast<std::size_t>(count);
    }
    return area;
}

Status polyEvaluate(const CommandCall& call, Value& result) {
    const Scene& scene = call.scene();
    std::vector<NodeHandle> nodes;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    std::vector<NodeHandle> meshes;
    for (NodeHandle node : nodes) {
        std::vector<NodeHandle> candidates = scene.node(node)->children;
        candidates.insert(candidates.begin(), node);
        for (NodeHandle shape : candidates)
            if (scene.isType(shape, "mesh") &&
                scene.number(Plug(shape, dagAttrs().intermediateObject)) == 0.0)
                meshes.push_back(shape);
    }
    if (meshes.empty())
        return call.fail("Needs a mesh.");
    if (call.m_flags.size() != 1)
        return call.fail("Needs one of the flags -vertex, -edge, -face, -triangle and -worldArea.");
    double sum = 0.0;
    for (NodeHandle shape : meshes) {
        const auto mesh = meshPoints(scene, shape);
        sum += call.has("vertex")     ? static_cast<double>(mesh->points.size())
               : call.has("face")     ? static_cast<double>(mesh->topology->faceCounts.size())
               : call.has("edge")     ? edgesOf(*mesh->topology)
               : call.has("triangle") ? trianglesOf(*mesh->topology)
                                      : areaOf(scene, shape);
    }
    result = call.has("worldArea") ? Value(sum) : Value(static_cast<int>(sum));
    return Status::ok();
}

const Command kMeasureCommands[] = {
    {"arclen", nullptr, 0, arclen, "The length of a curve in the world."},
    {"exactWorldBoundingBox", kBoxFlags, countOf(kBoxFlags), exactWorldBoundingBox,
     "The box around objects."},
    {"pointOnCurve", kPointOnCurveFlags, countOf(kPointOnCurveFlags), pointOnCurve,
     "A point on a curve."},
    {"pointPosition", kPositionFlags, countOf(kPositionFlags), pointPosition,
     "Where a vertex or CV is."},
    {"polyEvaluate", kEvaluateFlags, countOf(kEvaluateFlags), polyEvaluate, "Counts of a mesh."},
};

}  // namespace

CommandTable measureCommands() {
    return {kMeasureCommands, std::size(kMeasureCommands)};
}

}  // namespace torvel
