#include <algorithm>

#include "commands/skin/binding.h"
#include "commands/skin/distance.h"
#include "commands/skin/pose.h"
#include "nodes/shape/mesh.h"
#include "nodes/shape/nurbs_curve.h"
#include "nodes/transform/rotation.h"
#include "nodes/deform/skin_weights.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

constexpr const char* kLockAttr = "lockInfluenceWeights";

Plug lockPlug(Scene& scene, NodeHandle node) {
    Plug plug = scene.findPlug(node, kLockAttr);
    if (!plug.isNull())
        return plug;
    AttrInfo info;
    info.longName = kLockAttr;
    info.shortName = "liw";
    info.type = AttrType::Bool;
    info.flags = kDynamic;
    info.minimum = 0.0;
    info.maximum = 1.0;
    AttrIndex made = kNoAttr;
    if (!scene.addAttribute(node, info, kNoAttr, made))
        return {};
    return Plug(node, made);
}

Plug elementOf(const Scene& scene, NodeHandle cluster, const char* attr, std::int32_t logical) {
    return scene.element(scene.findPlug(cluster, attr), logical);
}

void replaceInput(Scene& scene, const Plug& source, const Plug& target) {
    if (source.isNull() || scene.source(target) == source)
        return;
    if (const Plug old = scene.source(target); !old.isNull())
        ignore(scene.disconnect(old, target));
    ignore(scene.connect(source, target));
}

std::vector<V3d> boundPoints(const Scene& scene, NodeHandle cluster) {
    const std::vector<NodeHandle> shapes = outputShapes(scene, cluster);
    if (shapes.empty())
        return {};
    if (scene.isType(shapes.front(), "mesh"))
        return meshWorldPoints(scene, shapes.front());
    const auto curve = curveOf(scene, shapes.front());
    std::vector<V3d> points;
    for (std::size_t i = 0; curve && i < curve->cvs.size(); ++i)
        points.push_back(curve->cvs[i] * worldMatrix(scene, shapes.front()));
    return points;
}

double storedDropoff(const Scene& scene, NodeHandle cluster, std::int32_t logical) {
    return scene.number(elementOf(scene, cluster, "dropoff", logical));
}

// Where the new influence belongs to the nearest ones it takes the share that its distance gives
// it; what was there before keeps its proportions.
void weighNewInfluence(Scene& scene, NodeHandle cluster, std::int32_t logical,
                       const std::vector<V3d>& points) {
    const std::vector<Influence> influences = influencesOf(scene, cluster);
    std::vector<InfluenceShape> shapes;
    std::size_t own = 0;
    for (std::size_t i = 0; i < influences.size(); ++i) {
        shapes.push_back(influenceShape(scene, influences[i].node,
                                        storedDropoff(scene, cluster, influences[i].logical)));
        own = influences[i].logical == logical ? i : own;
    }
    const int most = static_cast<int>(scene.number(scene.findPlug(cluster, "maxInfluences")));
    std::vector<bool> locks = influenceLocks(scene, cluster);
    locks.resize(std::max(locks.size(), static_cast<std::size_t>(logical) + 1), false);
    locks[static_cast<std::size_t>(logical)] = true;  // the others make room for it
    changeWeights(scene, cluster, [&](WeightList& weights) {
        for (std::size_t v = 0; v < std::min(points.size(), weights.size()); ++v)
            for (const SkinWeight& w : distanceWeights(shapes, points[v], most))
                if (static_cast<std::size_t>(w.influence) == own && w.weight > 0.0) {
                    double free = 0.0;
                    for (std::size_t i = 0; i < weights.count(v); ++i)
                        if (!locks[static_cast<std::size_t>(weights.begin(v)[i].influence)])
                            free += weights.begin(v)[i].weight;
                    weights.set(v, logical, std::min(w.weight, free));
                    normalizeVertex(weights, v, locks);
                }
    });
}

void setNewWeight(Scene& scene, NodeHandle cluster, std::int32_t logical, double weight,
                  std::size_t vertices) {
    std::vector<bool> locks = influenceLocks(scene, cluster);
    locks.resize(std::max(locks.size(), static_cast<std::size_t>(logical) + 1), false);
    locks[static_cast<std::size_t>(logical)] = true;
    const bool normalize = scene.number(scene.findPlug(cluster, "normalizeWeights")) == 1.0;
    changeWeights(scene, cluster, [&](WeightList& weights) {
        for (std::size_t v = 0; v < std::max(vertices, weights.size()); ++v) {
            weights.set(v, logical, weight);
            if (normalize && weight != 0.0)
                normalizeVertex(weights, v, locks);
        }
    });
}

}  // namespace

Status connectInfluence(Scene& scene, NodeHandle cluster, NodeHandle node, std::int32_t logical,
                        double dropoff) {
    const M44d world = worldMatrix(scene, node);
    if (isJoint(scene, node))
        scene.setMatrix(scene.findPlug(node, "bindPose"), world);
    scene.setMatrix(elementOf(scene, cluster, "bindPreMatrix", logical), inverseOf(world));
    scene.setNumber(elementOf(scene, cluster, "dropoff", logical), dropoff);
    replaceInput(scene, lockPlug(scene, node), elementOf(scene, cluster, "lockWeights", logical));
    replaceInput(scene, scene.findPlug(node, "objectColorRGB"),
                 elementOf(scene, cluster, "influenceColor", logical));
    return scene.connect(Plug(node, dagAttrs().worldMatrix, 0),
                         elementOf(scene, cluster, "matrix", logical));
}

Status addInfluence(Scene& scene, NodeHandle cluster, NodeHandle node,
                    const AddInfluenceOptions& options) {
    const std::string name = scene.names().shortest(node);
    if (!isTransform(scene, node))
        return Status::failure("'" + name + "' is no transform and cannot be an influence.");
    if (influenceIndex(scene, cluster, node) >= 0)
        return Status::failure("The influence object '" + name + "' is already attached.");
    const std::vector<V3d> points = boundPoints(scene, cluster);
    std::int32_t logical = scene.nextAvailable(scene.findPlug(cluster, "matrix"));
    logical = std::max(logical, scene.nextAvailable(scene.findPlug(cluster, "bindPreMatrix")));
    if (const Status status = connectInfluence(scene, cluster, node, logical, options.dropoff);
        !status)
        return status;
    if (options.hasWeight || options.lock)
        setNewWeight(scene, cluster, logical, options.hasWeight ? options.weight : 0.0,
                     points.size());
    else
        weighNewInfluence(scene, cluster, logical, points);
    scene.setNumber(lockPlug(scene, node), options.lock ? 1.0 : 0.0);
    if (const Plug pose = scene.source(scene.findPlug(cluster, "bindPose")); !pose.isNull())
        for (NodeHandle member : withJointParents(scene, {node}))
            if (member == node || !resetMember(scene, pose.node, member))
                addToPose(scene, pose.node, {member});
    return Status::ok();
}

Status removeInfluence(Scene& scene, NodeHandle cluster, NodeHandle node) {
    const std::int32_t logical = influenceIndex(scene, cluster, node);
    if (logical < 0)
        return Status::failure("'" + scene.names().shortest(node) + "' is not an influence of '" +
                               scene.names().shortest(cluster) + "'.");
    const bool normalize = scene.number(scene.findPlug(cluster, "normalizeWeights")) != 0.0;
    for (const char* attr : {"lockWeights", "influenceColor", "matrix", "bindPreMatrix", "dropoff"})
        scene.removeElement(elementOf(scene, cluster, attr, logical));
    const std::vector<bool> locks = influenceLocks(scene, cluster);
    changeWeights(scene, cluster, [&](WeightList& weights) {
        for (std::size_t v = 0; v < weights.size(); ++v) {
            if (weights.weight(v, logical) == 0.0)
                continue;
            weights.set(v, logical, 0.0);
            if (normalize && !normalizeVertex(weights, v, locks))
                normalizeVertex(weights, v, {});
        }
    });
    return Status::ok();
}

}  // namespace torvel
