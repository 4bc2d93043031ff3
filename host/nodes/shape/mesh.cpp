#include "nodes/shape/mesh.h"

#include <map>
#include <utility>

#include "graph/evaluation.h"
#include "nodes/shape/mesh_blocks.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

const std::shared_ptr<const MeshData>& emptyMesh() {
    static const std::shared_ptr<const MeshData> mesh = [] {
        auto made = std::make_shared<MeshData>();
        made->topology = std::make_shared<MeshTopology>();
        return made;
    }();
    return mesh;
}

template <class Block>
const Block* blockOf(const Scene& scene, NodeHandle shape, const char* attr) {
    const Plug plug = scene.findPlug(shape, attr);
    return plug.isNull() ? nullptr : dynamic_cast<const Block*>(scene.bulk(plug));
}

template <class Block, class F>
void changeBlock(Scene& scene, NodeHandle shape, const char* attr, F&& change) {
    const Plug plug = scene.findPlug(shape, attr);
    if (plug.isNull())
        return;
    scene.changeBulk(plug, [&](BulkArray& values) {
        if (auto* block = dynamic_cast<Block*>(&values))
            change(*block);
    });
}

// Tweaks are offsets on top of whatever the points come from.
void addTweaks(MeshData& mesh, const PointBlock& tweaks) {
    for (std::size_t i = 0; i < tweaks.size(); ++i) {
        const auto at = static_cast<std::size_t>(tweaks.logicalAt(i));
        if (at < mesh.points.size())
            mesh.points[at] += tweaks.items()[i];
    }
}

bool hasEffect(const PointBlock* tweaks) {
    if (!tweaks)
        return false;
    for (const V3f& offset : tweaks->items())
        if (offset != V3f(0.0f))
            return true;
    return false;
}

std::shared_ptr<MeshData> ownMesh(const Scene& scene, NodeHandle shape) {
    auto mesh = std::make_shared<MeshData>();
    const auto* points = blockOf<PointBlock>(scene, shape, "vrts");
    const auto* edges = blockOf<EdgeBlock>(scene, shape, "edge");
    const auto* faces = blockOf<FaceBlock>(scene, shape, "face");
    if (points)
        mesh->points = points->items();
    mesh->topology =
        faces && edges ? faces->topology(*edges) : std::make_shared<const MeshTopology>();
    return mesh;
}

std::shared_ptr<const MeshData> outMesh(Evaluation& evaluation) {
    const Scene& scene = evaluation.scene();
    const NodeHandle shape = evaluation.handle();
    auto input = evaluation.dataAs<MeshData>(evaluation.plug(evaluation.node().findAttr("inMesh")));
    const auto* tweaks = blockOf<PointBlock>(scene, shape, "pnts");
    if (input && !hasEffect(tweaks))
        return input;
    auto mesh = input ? std::make_shared<MeshData>(*input) : ownMesh(scene, shape);
    if (hasEffect(tweaks))
        addTweaks(*mesh, *tweaks);
    return mesh;
}

}  // namespace

void createdMesh(Scene&, Node& node) {
    node.slot(node.findAttr("vrts")).data = std::make_shared<PointBlock>();
    node.slot(node.findAttr("edge")).data = std::make_shared<EdgeBlock>();
    node.slot(node.findAttr("face")).data = std::make_shared<FaceBlock>();
    node.slot(node.findAttr("pnts")).data = std::make_shared<PointBlock>("float3");
}

void evaluateMesh(Evaluation& evaluation) {
    const AttrIndex out = evaluation.node().findAttr("outMesh");
    const AttrIndex world = evaluation.node().findAttr("worldMesh");
    if (evaluation.output() == out) {
        evaluation.set(out, outMesh(evaluation));
    } else if (evaluation.output() == world) {
        const PayloadPtr mesh = evaluation.data(evaluation.plug(out));
        evaluation.set(world, mesh);
        const int count = std::max(1, evaluation.scene().instanceCount(evaluation.handle()));
        for (int i = 0; i < count; ++i)
            evaluation.set(evaluation.plug(world, i), mesh);
    } else {
        evaluateDagNode(evaluation);
    }
}

std::shared_ptr<const MeshData> meshPoints(const Scene& scene, NodeHandle shape) {
    const Plug out = scene.findPlug(shape, "outMesh");
    auto mesh = out.isNull() ? nullptr : scene.dataAs<MeshData>(out);
    return mesh ? mesh : emptyMesh();
}

std::vector<V3d> meshWorldPoints(const Scene& scene, NodeHandle shape) {
    const M44d world = worldMatrix(scene, shape);
    const auto mesh = meshPoints(scene, shape);
    std::vector<V3d> points;
    points.reserve(mesh->points.size());
    for (const V3f& p : mesh->points)
        points.push_back(V3d(p) * world);
    return points;
}

Imath::Box3d meshBoundingBox(const Scene& scene, NodeHandle shape) {
    Imath::Box3d box;
    for (const V3f& p : meshPoints(scene, shape)->points)
        box.extendBy(V3d(p));
    return box;
}

namespace {

// Edges in the order in which the faces first use them.
class EdgeNumbers {
  public:
    std::int32_t signedEdge(std::int32_t from, std::int32_t to) {
        const auto key = std::minmax(from, to);
        const auto [it, fresh] = m_numbers.emplace(key, static_cast<std::int32_t>(m_edges.size()));
        if (fresh)
            m_edges.push_back({from, to, 0});
        const bool along = m_edges[static_cast<std::size_t>(it->second)][0] == from;
        return along ? it->second : -it->second - 1;
    }
    std::vector<std::array<std::int32_t, 3>> take() { return std::move(m_edges); }

  private:
    std::map<std::pair<std::int32_t, std::int32_t>, std::int32_t> m_numbers;
    std::vector<std::array<std::int32_t, 3>> m_edges;
};

}  // namespace

void setOwnMesh(Scene& scene, NodeHandle shape, const MeshData& mesh) {
    EdgeNumbers numbers;
    FaceBlock faces;
    const MeshTopology none;
    const MeshTopology& topology = mesh.topology ? *mesh.topology : none;
    std::size_t at = 0;
    std::vector<std::int32_t> edges;
    for (std::int32_t count : topology.faceCounts) {
        edges.clear();
        for (std::int32_t i = 0; i < count; ++i)
            edges.push_back(numbers.signedEdge(
                topology.faceVertices[at + static_cast<std::size_t>(i)],
                topology.faceVertices[at + static_cast<std::size_t>((i + 1) % count)]));
        faces.addFace(edges.data(), edges.size());
        at += static_cast<std::size_t>(count);
    }
    changeBlock<PointBlock>(scene, shape, "vrts", [&](PointBlock& b) { b.assign(mesh.points); });
    changeBlock<EdgeBlock>(scene, shape, "edge", [&](EdgeBlock& b) { b.assign(numbers.take()); });
    changeBlock<FaceBlock>(scene, shape, "face", [&](FaceBlock& b) { b = std::move(faces); });
    changeBlock<PointBlock>(scene, shape, "pnts", [](PointBlock& b) { b.clear(); });
}

void copyOwnMesh(Scene& scene, NodeHandle from, NodeHandle to) {
    for (const char* attr : {"vrts", "edge", "face", "pnts"}) {
        const Plug source = scene.findPlug(from, attr);
        const Plug target = scene.findPlug(to, attr);
        if (!source.isNull() && !target.isNull() && scene.bulk(source))
            scene.setData(target, scene.storedData(source));
    }
    if (scene.node(from) && scene.node(to))
        scene.node(to)->keptText = scene.node(from)->keptText;
}

void clearOwnMesh(Scene& scene, NodeHandle shape, bool tweaksToo) {
    changeBlock<PointBlock>(scene, shape, "vrts", [](PointBlock& b) { b.clear(); });
    changeBlock<EdgeBlock>(scene, shape, "edge", [](EdgeBlock& b) { b.clear(); });
    changeBlock<FaceBlock>(scene, shape, "face", [](FaceBlock& b) { b.clear(); });
    if (tweaksToo)
        changeBlock<PointBlock>(scene, shape, "pnts", [](PointBlock& b) { b.clear(); });
}

NodeHandle meshShapeOf(const Scene& scene, NodeHandle node) {
    if (scene.isType(node, "mesh"))
        return node;
    const Node* transform = scene.node(node);
    if (!transform)
        return {};
    for (NodeHandle child : transform->children)
        if (scene.isType(child, "mesh") &&
            scene.number(scene.findPlug(child, "intermediateObject")) == 0.0)
            return child;
    return {};
}

}  // namespace torvel
