// Reading of what --verify compares.
#include <algorithm>

#include "commands/host/verify.h"
#include "graph/scene.h"

namespace torvel {

namespace {

M44d worldMatrix(const Scene& scene, NodeHandle handle) {
    const Plug plug = scene.findPlug(handle, "worldMatrix[0]");
    return plug.isNull() ? M44d() : scene.matrix(plug);
}

bool isVisibleMesh(const Scene& scene, NodeHandle handle) {
    return scene.isType(handle, "mesh") &&
           scene.number(scene.findPlug(handle, "intermediateObject")) == 0.0;
}

bool carriesGeometry(const AttrInfo& info) {
    return info.is(kGeometryIn) || info.type == AttrType::Mesh || info.type == AttrType::Any;
}

// Skin clusters upstream of a shape, nearest first.
std::vector<NodeHandle> clustersOf(const Scene& scene, NodeHandle shape) {
    std::vector<NodeHandle> queue{shape}, found;
    for (std::size_t at = 0; at < queue.size(); ++at) {
        if (scene.isType(queue[at], "skinCluster"))
            found.push_back(queue[at]);
        for (const Scene::Connection& link : scene.incoming(queue[at]))
            if (carriesGeometry(scene.info(link.target)) &&
                std::find(queue.begin(), queue.end(), link.source.node) == queue.end())
                queue.push_back(link.source.node);
    }
    return found;
}

std::map<std::string, std::map<int, double>> weightsOf(const Scene& scene, NodeHandle cluster) {
    std::map<std::string, std::map<int, double>> found;
    std::map<int, std::string> influences;
    const Plug matrices = scene.findPlug(cluster, "matrix");
    for (std::int32_t index : scene.elementIndices(matrices)) {
        const NodeHandle joint = scene.source(scene.element(matrices, index)).node;
        influences[index] = joint.isNull() ? "matrix[" + std::to_string(index) + "]"
                                           : scene.names().shortest(joint);
        found[influences[index]];
    }
    const BulkArray* list = scene.bulk(scene.findPlug(cluster, "weightList"));
    for (std::size_t i = 0; list && i < list->size(); ++i) {
        const std::int32_t vertex = list->logicalAt(i);
        for (std::size_t k = 0; k < list->innerSize(vertex); ++k) {
            const std::int32_t path[kMaxArrayDepth] = {vertex, list->innerLogicalAt(vertex, k), -1,
                                                       -1};
            const auto name = influences.find(path[1]);
            const double weight = list->number(path, 0);
            if (weight != 0.0)
                found[name == influences.end() ? "matrix[" + std::to_string(path[1]) + "]"
                                               : name->second][vertex] = weight;
        }
    }
    return found;
}

void readMesh(const Scene& scene, NodeHandle handle, SceneState& state) {
    const std::string path = scene.names().fullPath(handle);
    const M44d world = worldMatrix(scene, handle);
    std::vector<V3d>& points = state.points[path];
    if (const auto mesh = scene.dataAs<MeshData>(scene.findPlug(handle, "outMesh"))) {
        points.reserve(mesh->points.size());
        for (const V3f& point : mesh->points)
            points.push_back(V3d(point) * world);
    }
    int number = 0;
    for (NodeHandle cluster : clustersOf(scene, handle)) {
        const std::string key = ++number == 1 ? path : path + "#" + std::to_string(number);
        state.weights[key] = weightsOf(scene, cluster);
    }
}

}  // namespace

SceneState stateOf(const Scene& scene) {
    SceneState state;
    for (NodeHandle handle : scene.allNodes()) {
        const Node* node = scene.node(handle);
        if (node->isDefault || handle == scene.world())
            continue;
        state.nodes.insert(scene.typeName(handle) + " " +
                           (node->isDag() ? scene.names().fullPath(handle) : node->name));
        if (scene.isType(handle, "joint"))
            state.matrices[scene.names().shortest(handle)] = worldMatrix(scene, handle);
        if (isVisibleMesh(scene, handle))
            readMesh(scene, handle, state);
    }
    for (const Scene::Connection& link : scene.allConnections())
        state.connections.insert(scene.plugName(link.source) + " -> " +
                                 scene.plugName(link.target));
    return state;
}

}  // namespace torvel
