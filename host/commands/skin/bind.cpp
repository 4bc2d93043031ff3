#include <tbb/parallel_for.h>

#include <algorithm>

#include "edit/placing.h"
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

// Attribute names of the two kinds of shapes.
struct GeometryPorts {
    const char* in;
    const char* world;  ///< array
    const char* local;
};

GeometryPorts portsOf(const Scene& scene, NodeHandle shape) {
    return scene.isType(shape, "mesh") ? GeometryPorts{"inMesh", "worldMesh", "outMesh"}
                                       : GeometryPorts{"create", "worldSpace", "local"};
}

std::vector<V3d> worldPointsOf(const Scene& scene, NodeHandle shape) {
    if (scene.isType(shape, "mesh"))
        return meshWorldPoints(scene, shape);
    const auto curve = curveOf(scene, shape);
    const M44d world = worldMatrix(scene, shape);
    std::vector<V3d> points;
    for (std::size_t i = 0; curve && i < curve->cvs.size(); ++i)
        points.push_back(curve->cvs[i] * world);
    return points;
}

NodeHandle lastUsedPose(const Scene& scene, const std::vector<NodeHandle>& nodes) {
    if (nodes.empty())
        return {};
    for (NodeHandle pose : posesOf(scene, nodes.front(), true))
        if (isAtPose(scene, pose))
            return pose;
    return {};
}

// The bind pose that the skeleton is at, with all members in it; a new one when there is none.
Status poseFor(Scene& scene, const std::vector<NodeHandle>& members, NodeHandle& pose) {
    pose = lastUsedPose(scene, members);
    if (pose.isNull())
        return createPose(scene, members, true, "", pose);
    addToPose(scene, pose, members);
    return Status::ok();
}

std::vector<NodeHandle> nodesOf(const std::vector<Influence>& influences) {
    std::vector<NodeHandle> out;
    for (const Influence& influence : influences)
        out.push_back(influence.node);
    return out;
}

// --- a new cluster -------------------------------------------------------------------------------

class Binder {
  public:
    Binder(Scene& scene, NodeHandle shape, const BindOptions& options)
        : m_scene(scene), m_shape(shape), m_ports(portsOf(scene, shape)), m_options(options) {}

    Status run(const std::vector<NodeHandle>& influences, NodeHandle& cluster) {
        const std::vector<V3d> points = worldPointsOf(m_scene, m_shape);
        if (points.empty())
            return Status::failure("skinCluster: '" + m_scene.names().shortest(m_shape) +
                                   "' has no points");
        if (const Status made = m_scene.createNode("skinCluster", m_options.name, {}, cluster);
            !made)
            return made;
        m_cluster = cluster;
        Status status = wireGeometry();
        for (std::size_t i = 0; status && i < influences.size(); ++i)
            status = connectInfluence(m_scene, cluster, influences[i], static_cast<std::int32_t>(i),
                                      m_options.dropoff);
        if (!status)
            return status;
        storeOptions();
        weigh(influences, points);
        return pose(influences);
    }

  private:
    Plug plug(const char* attr) const { return m_scene.findPlug(m_cluster, attr); }

    Status wireGeometry() {
        const Plug in = m_scene.findPlug(m_shape, m_ports.in);
        Plug source = m_scene.source(in);
        const Node* maker = m_scene.node(source.node);
        const bool isDeformer =
            maker && (maker->type->is(kDeformerType) || !maker->unknownType.empty());
        NodeHandle original;
        if (!isDeformer) {
            if (const Status status = makeOriginal(source, in, original); !status)
                return status;
            source = m_scene.element(m_scene.findPlug(original, m_ports.world), 0);
        } else if (const Status status = m_scene.disconnect(source, in); !status) {
            return status;
        }
        const Plug out = m_scene.element(plug("outputGeometry"), 0);
        if (const Status status = m_scene.connect(source, plug("input[0].inputGeometry")); !status)
            return status;
        if (!original.isNull())
            ignore(m_scene.connect(m_scene.findPlug(original, m_ports.local),
                                   plug("originalGeometry[0]")));
        return m_scene.connect(out, in);
    }

    // An intermediate sibling that takes over history and points of the shape.
    Status makeOriginal(const Plug& history, const Plug& in, NodeHandle& original) {
        const std::string name = m_scene.node(m_shape)->name + "Orig";
        const Status made = m_scene.createNode(m_scene.typeName(m_shape), name,
                                               parentOf(m_scene, m_shape), original);
        if (!made)
            return made;
        m_scene.setNumber(m_scene.findPlug(original, "intermediateObject"), 1.0);
        if (m_scene.isType(m_shape, "mesh")) {
            copyOwnMesh(m_scene, m_shape, original);
            clearOwnMesh(m_scene, m_shape, true);
        } else if (history.isNull()) {
            setCurve(m_scene, original, curveOf(m_scene, m_shape));
        }
        if (history.isNull())
            return Status::ok();
        if (const Status status = m_scene.disconnect(history, in); !status)
            return status;
        return m_scene.connect(history, m_scene.findPlug(original, m_ports.in));
    }

    void storeOptions() {
        m_scene.setMatrix(plug("geomMatrix"), worldMatrix(m_scene, m_shape));
        m_scene.setNumber(plug("useComponentsMatrix"), 1.0);
        m_scene.setNumber(plug("maxInfluences"), m_options.maxInfluences);
        m_scene.setNumber(plug("maintainMaxInfluences"), m_options.obeyMax ? 1.0 : 0.0);
        m_scene.setNumber(plug("bindMethod"), m_options.bindMethod);
        m_scene.setNumber(plug("skinningMethod"), m_options.skinMethod);
        m_scene.setNumber(plug("normalizeWeights"), m_options.normalize);
    }

    void weigh(const std::vector<NodeHandle>& influences, const std::vector<V3d>& points) {
        std::vector<InfluenceShape> shapes;
        for (NodeHandle node : influences)
            shapes.push_back(influenceShape(m_scene, node, m_options.dropoff));
        std::vector<std::vector<SkinWeight>> lists(points.size());
        tbb::parallel_for(std::size_t(0), points.size(), [&](std::size_t v) {
            lists[v] = distanceWeights(shapes, points[v], m_options.maxInfluences);
        });
        changeWeights(m_scene, m_cluster, [&](WeightList& weights) {
            weights.resize(points.size());
            for (std::size_t v = 0; v < points.size(); ++v)
                weights.assign(v, std::move(lists[v]));
        });
    }

    Status pose(const std::vector<NodeHandle>& influences) {
        const std::vector<NodeHandle> members = withJointParents(m_scene, influences);
        NodeHandle pose;
        if (const Status found = poseFor(m_scene, members, pose); !found)
            return found;
        lockGeometryChannels(m_scene, m_shape, true);
        return m_scene.connect(m_scene.findPlug(pose, "message"), plug("bindPose"));
    }

    Scene& m_scene;
    NodeHandle m_shape;
    GeometryPorts m_ports;
    const BindOptions& m_options;
    NodeHandle m_cluster;
};

// --- a dormant cluster ---------------------------------------------------------------------------

void refreshBindMatrices(Scene& scene, NodeHandle cluster) {
    for (const Influence& influence : influencesOf(scene, cluster)) {
        const M44d world = worldMatrix(scene, influence.node);
        scene.setMatrix(scene.element(scene.findPlug(cluster, "bindPreMatrix"), influence.logical),
                        inverseOf(world));
        if (isJoint(scene, influence.node))
            scene.setMatrix(scene.findPlug(influence.node, "bindPose"), world);
    }
}

Status refreshBindPose(Scene& scene, NodeHandle cluster) {
    const std::vector<NodeHandle> members =
        withJointParents(scene, nodesOf(influencesOf(scene, cluster)));
    const Plug target = scene.findPlug(cluster, "bindPose");
    if (const Plug held = scene.source(target); !held.isNull()) {
        refreshPose(scene, held.node, members);
        return Status::ok();
    }
    NodeHandle pose;
    if (const Status found = poseFor(scene, members, pose); !found)
        return found;
    return scene.connect(scene.findPlug(pose, "message"), target);
}

Status takeUp(Scene& scene, NodeHandle shape, NodeHandle cluster, const BindOptions& options) {
    refreshBindMatrices(scene, cluster);
    scene.setMatrix(scene.findPlug(cluster, "geomMatrix"), worldMatrix(scene, shape));
    if (options.setsSkinMethod)
        scene.setNumber(scene.findPlug(cluster, "skinningMethod"), options.skinMethod);
    if (options.setsNormalize)
        scene.setNumber(scene.findPlug(cluster, "normalizeWeights"), options.normalize);
    scene.setNumber(scene.findPlug(cluster, "nodeState"), 0.0);
    lockGeometryChannels(scene, shape, true);
    return refreshBindPose(scene, cluster);
}

}  // namespace

Status bindSkin(Scene& scene, NodeHandle shape, const std::vector<NodeHandle>& influences,
                const BindOptions& options, NodeHandle& cluster) {
    const std::vector<NodeHandle> present = findSkinClusters(scene, shape);
    for (NodeHandle candidate : present)
        if (scene.number(scene.findPlug(candidate, "nodeState")) != 0.0) {
            cluster = candidate;
            return takeUp(scene, shape, candidate, options);
        }
    if (!present.empty() && !options.multi)
        return Status::failure("'" + scene.names().shortest(shape) +
                               "' is already connected to the skinCluster '" +
                               scene.names().shortest(present.front()) + "'.");
    if (influences.empty())
        return Status::failure("No influences were given to bind to.");
    return Binder(scene, shape, options).run(influences, cluster);
}

}  // namespace torvel
