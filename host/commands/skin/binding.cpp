#include "commands/skin/binding.h"

#include <algorithm>

#include "edit/placing.h"
#include "nodes/shape/mesh.h"
#include "nodes/deform/skin_weights.h"

namespace torvel {
namespace {

bool isBindable(const Scene& scene, NodeHandle node) {
    return scene.isType(node, "mesh") || scene.isType(node, "nurbsCurve");
}

const char* geometryIn(const Scene& scene, NodeHandle shape) {
    return scene.isType(shape, "mesh") ? "inMesh" : "create";
}

// The plugs by which a node of a shape's history takes geometry, as far as they are connected.
std::vector<Plug> geometrySources(const Scene& scene, NodeHandle node) {
    std::vector<Plug> out;
    for (const Scene::Connection& c : scene.incoming(node)) {
        const AttrInfo& info = scene.info(c.target);
        const bool named = info.longName == "inMesh" || info.longName == "create" ||
                           info.longName == "inputPolymesh" || info.longName == "ip" ||
                           info.longName == "ig";
        if (info.is(kGeometryIn) || named)
            out.push_back(c.source);
    }
    return out;
}

}  // namespace

NodeHandle bindableShape(const Scene& scene, NodeHandle node) {
    if (isBindable(scene, node))
        return node;
    const Node* transform = scene.node(node);
    if (!transform || !transform->isDag())
        return {};
    for (NodeHandle child : transform->children)
        if (isBindable(scene, child) &&
            scene.number(scene.findPlug(child, "intermediateObject")) == 0.0)
            return child;
    return {};
}

std::vector<NodeHandle> findSkinClusters(const Scene& scene, NodeHandle shape) {
    std::vector<NodeHandle> found;
    std::vector<NodeHandle> queue{shape};
    const std::uint64_t visit = scene.nextVisit();
    for (std::size_t at = 0; at < queue.size(); ++at) {
        const Node* node = scene.node(queue[at]);
        if (!node || node->visit == visit)
            continue;
        node->visit = visit;
        if (node->type->derivesFrom("skinCluster"))
            found.push_back(node->self);
        for (const Plug& source : geometrySources(scene, node->self))
            queue.push_back(source.node);
    }
    return found;
}

std::vector<NodeHandle> outputShapes(const Scene& scene, NodeHandle cluster) {
    std::vector<NodeHandle> found;
    std::vector<NodeHandle> queue{cluster};
    const std::uint64_t visit = scene.nextVisit();
    for (std::size_t at = 0; at < queue.size(); ++at) {
        const Node* node = scene.node(queue[at]);
        if (!node || node->visit == visit)
            continue;
        node->visit = visit;
        if (at > 0 && node->type->is(kShapeType)) {
            found.push_back(node->self);
            continue;
        }
        for (const Scene::Connection& c : scene.outgoing(node->self)) {
            const AttrType type = scene.info(c.source).type;
            const bool geometry = type == AttrType::Mesh || type == AttrType::NurbsCurve ||
                                  type == AttrType::NurbsSurface;
            if (geometry || scene.info(c.source).is(kOpaque))
                queue.push_back(c.target.node);
        }
    }
    return found;
}

std::vector<Influence> influencesOf(const Scene& scene, NodeHandle cluster) {
    std::vector<Influence> out;
    const Plug matrix = scene.findPlug(cluster, "matrix");
    for (std::size_t i = 0; !matrix.isNull() && i < scene.elementCount(matrix); ++i) {
        const Plug element = scene.elementAt(matrix, i);
        if (const Plug from = scene.source(element); !from.isNull())
            out.push_back({scene.logicalIndex(element), from.node});
    }
    return out;
}

std::int32_t influenceIndex(const Scene& scene, NodeHandle cluster, NodeHandle node) {
    for (const Influence& influence : influencesOf(scene, cluster))
        if (influence.node == node)
            return influence.logical;
    return -1;
}

bool isInfluenceLocked(const Scene& scene, NodeHandle cluster, std::int32_t logical) {
    return scene.number(scene.element(scene.findPlug(cluster, "lockWeights"), logical)) != 0.0;
}

std::vector<bool> influenceLocks(const Scene& scene, NodeHandle cluster) {
    std::vector<bool> out;
    for (const Influence& influence : influencesOf(scene, cluster)) {
        out.resize(static_cast<std::size_t>(influence.logical) + 1, false);
        out.back() = isInfluenceLocked(scene, cluster, influence.logical);
    }
    return out;
}

const WeightList* weightsOf(const Scene& scene, NodeHandle cluster) {
    const Plug plug =
        scene.isType(cluster, "skinCluster") ? scene.findPlug(cluster, "weightList") : Plug();
    return plug.isNull() ? nullptr : dynamic_cast<const WeightList*>(scene.bulk(plug));
}

void changeWeights(Scene& scene, NodeHandle cluster,
                   const std::function<void(WeightList&)>& change) {
    if (weightsOf(scene, cluster))
        scene.changeBulk(scene.findPlug(cluster, "weightList"), [&](BulkArray& values) {
            if (auto* weights = dynamic_cast<WeightList*>(&values))
                change(*weights);
        });
}

bool normalizeVertex(WeightList& weights, std::size_t vertex, const std::vector<bool>& locked) {
    const auto isLocked = [&](std::int32_t i) {
        return static_cast<std::size_t>(i) < locked.size() && locked[static_cast<std::size_t>(i)];
    };
    std::vector<SkinWeight> list;
    double held = 0.0, free = 0.0;
    for (std::size_t i = 0; i < weights.count(vertex); ++i) {
        list.push_back(weights.begin(vertex)[i]);
        (isLocked(list.back().influence) ? held : free) += list.back().weight;
    }
    if (free <= 0.0)
        return false;
    const double factor = std::max(0.0, 1.0 - held) / free;
    if (factor == 1.0)
        return true;
    for (SkinWeight& w : list)
        if (!isLocked(w.influence))
            w.weight *= factor;
    weights.assign(vertex, std::move(list));
    return true;
}

void lockGeometryChannels(Scene& scene, NodeHandle shape, bool on) {
    const NodeHandle transform = parentOf(scene, shape);
    for (const char* attr : {"tx", "ty", "tz", "rx", "ry", "rz", "sx", "sy", "sz"})
        if (const Plug plug = scene.findPlug(transform, attr); !plug.isNull())
            scene.setLocked(plug, on);
}

void unbindKeepHistory(Scene& scene, NodeHandle cluster) {
    const Plug state = scene.findPlug(cluster, "nodeState");
    if (scene.number(state) != 0.0)
        return;
    scene.setNumber(state, 1.0);
    for (NodeHandle shape : outputShapes(scene, cluster))
        lockGeometryChannels(scene, shape, false);
}

namespace {

// The intermediate shape that holds a shape's original geometry, if this cluster is its only reader
// but for the shape.
NodeHandle originalShape(const Scene& scene, NodeHandle cluster) {
    const Plug input = scene.findPlug(cluster, "input[0].inputGeometry");
    const Plug from = scene.source(input);
    const Node* node = scene.node(from.node);
    if (!node || !isBindable(scene, from.node))
        return {};
    return scene.number(scene.findPlug(from.node, "intermediateObject")) != 0.0 ? from.node
                                                                                : NodeHandle();
}

bool feedsOthers(const Scene& scene, NodeHandle original, NodeHandle cluster) {
    for (const Scene::Connection& c : scene.outgoing(original))
        if (c.target.node != cluster && scene.info(c.source).is(kGeometryOut))
            return true;
    return false;
}

// What the cluster fed takes over what fed the cluster.
Status feedPast(Scene& scene, NodeHandle cluster) {
    const AttrIndex output = scene.findPlug(cluster, "outputGeometry").attr;
    for (const Scene::Connection& link : scene.outgoing(cluster)) {
        if (link.source.attr != output)
            continue;
        const std::string input =
            "input[" + std::to_string(link.source.index[0]) + "].inputGeometry";
        const Plug before = scene.source(scene.findPlug(cluster, input));
        Status status = scene.disconnect(link.source, link.target);
        if (status && !before.isNull())
            status = scene.connect(before, link.target);
        if (!status)
            return status;
    }
    return Status::ok();
}

// The shape takes over what fed the cluster.
Status bypass(Scene& scene, NodeHandle cluster, NodeHandle shape) {
    const Plug in = scene.findPlug(shape, geometryIn(scene, shape));
    const Plug from = scene.source(in);
    if (from.node != cluster)
        return feedPast(scene, cluster);  // deformers lie between: they stay
    if (const Status status = scene.disconnect(from, in); !status)
        return status;
    const NodeHandle original = originalShape(scene, cluster);
    if (original.isNull() || feedsOthers(scene, original, cluster)) {
        const Plug before = scene.source(scene.findPlug(cluster, "input[0].inputGeometry"));
        return before.isNull() ? Status::ok() : scene.connect(before, in);
    }
    const Plug history = scene.source(scene.findPlug(original, geometryIn(scene, original)));
    if (scene.isType(shape, "mesh"))
        copyOwnMesh(scene, original, shape);
    else
        scene.setData(scene.findPlug(shape, "cached"),
                      scene.storedData(scene.findPlug(original, "cached")));
    if (!history.isNull()) {
        ignore(scene.disconnect(history, scene.findPlug(original, geometryIn(scene, original))));
        if (const Status status = scene.connect(history, in); !status)
            return status;
    }
    scene.deleteNodes({original});
    return Status::ok();
}

}  // namespace

Status unbindSkin(Scene& scene, NodeHandle cluster) {
    for (NodeHandle shape : outputShapes(scene, cluster)) {
        if (!scene.isValid(shape))
            continue;
        lockGeometryChannels(scene, shape, false);
        if (const Status status = bypass(scene, cluster, shape); !status)
            return status;
    }
    scene.deleteNodes({cluster});
    return Status::ok();
}

}  // namespace torvel
