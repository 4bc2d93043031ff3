#include "nodes/shape/mesh.h"

#include <map>
#include <utility>

#include "graph/evaluation.h"
#include "graph/payload.h"
#include "nodes/core/base_attrs.h"
#include "nodes/core/fn_numbers.h"
#include "nodes/shape/mesh_blocks.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

constexpr const char* kMeshOutputs = "outMesh worldMesh";
constexpr std::uint32_t kBlock = kArray | kBulk;

constexpr AttrRow kMeshAttrs[] = {
    attrRow("outMesh", "o", AttrType::Mesh, 0.0, kOutput | kNotStored | kGeometryOut),
    attrRow("worldMesh", "w", AttrType::Mesh, 0.0, kOutput | kNotStored | kGeometryOut | kArray),
    attrRow("inMesh", "i", AttrType::Mesh, 0.0, kNotStored | kGeometryIn, kMeshOutputs),
    compoundRow("pnts", "pt", AttrType::Float3, kBlock, kMeshOutputs),
    under("pnts", attrRow("pntx", "px", AttrType::Float)),
    under("pnts", attrRow("pnty", "py", AttrType::Float)),
    under("pnts", attrRow("pntz", "pz", AttrType::Float)),
    compoundRow("vrts", "vt", AttrType::Float3, kBlock, kMeshOutputs),
    under("vrts", attrRow("vrtx", "vx", AttrType::Float)),
    under("vrts", attrRow("vrty", "vy", AttrType::Float)),
    under("vrts", attrRow("vrtz", "vz", AttrType::Float)),
    compoundRow("edge", "ed", AttrType::Long3, kBlock, kMeshOutputs),
    under("edge", attrRow("edg1", "e1", AttrType::Long)),
    under("edge", attrRow("edg2", "e2", AttrType::Long)),
    under("edge", attrRow("edgh", "eh", AttrType::Long)),
    attrRow("face", "fc", AttrType::Text, 0.0, kBlock, kMeshOutputs),
    attrRow("tweakLocation", "twl", AttrType::Any, 0.0, kNotStored),
    attrRow("displaySmoothMesh", "dsm", AttrType::Byte),
    attrRow("smoothLevel", "lev", AttrType::Short),
    attrRow("visibleInReflections", "vir", AttrType::Bool),
    attrRow("visibleInRefractions", "vif", AttrType::Bool),
    attrRow("doubleSided", "ds", AttrType::Bool, 1.0),
    attrRow("opposite", "op", AttrType::Bool),
    attrRow("castsShadows", "csh", AttrType::Bool, 1.0),
    attrRow("receiveShadows", "rcsh", AttrType::Bool, 1.0),
    attrRow("motionBlur", "mb", AttrType::Bool, 1.0),
    attrRow("primaryVisibility", "vis", AttrType::Bool, 1.0),
    attrRow("displayColors", "dcol", AttrType::Bool),
    attrRow("vertexColorSource", "vcs", AttrType::Byte, 1.0),
};
constexpr AffectRow kMeshAffects[] = {{"outMesh", "worldMesh"}};
constexpr TypeAttrs kMesh("mesh", kDeformableShape, kMeshAttrs, kMeshAffects);
constexpr AttrIndex kPoints = kMesh["vrts"], kEdges = kMesh["edge"], kFaces = kMesh["face"],
                    kTweaks = kMesh["pnts"], kInMesh = kMesh["inMesh"], kOutMesh = kMesh["outMesh"],
                    kWorldMesh = kMesh["worldMesh"];

const std::shared_ptr<const MeshData>& emptyMesh() {
    static const std::shared_ptr<const MeshData> mesh = [] {
        auto made = std::make_shared<MeshData>();
        made->topology = std::make_shared<MeshTopology>();
        return made;
    }();
    return mesh;
}

bool isMesh(const Scene& scene, NodeHandle shape) {
    return scene.isType(shape, "mesh");
}

template <class Block>
const Block* blockOf(const Scene& scene, NodeHandle shape, AttrIndex attr) {
    return isMesh(scene, shape) ? dynamic_cast<const Block*>(scene.bulk(Plug(shape, attr)))
                                : nullptr;
}

template <class Block, class F>
void changeBlock(Scene& scene, NodeHandle shape, AttrIndex attr, F&& change) {
    if (!isMesh(scene, shape))
        return;
    scene.changeBulk(Plug(shape, attr), [&](BulkArray& values) {
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
    const auto* points = blockOf<PointBlock>(scene, shape, kPoints);
    const auto* edges = blockOf<EdgeBlock>(scene, shape, kEdges);
    const auto* faces = blockOf<FaceBlock>(scene, shape, kFaces);
    if (points)
        mesh->points = points->items();
    if (!faces || !edges) {
        mesh->topology = std::make_shared<const MeshTopology>();
        return mesh;
    }
    std::string fault;
    mesh->topology = faces->topology(*edges, mesh->points.size(), fault);
    if (!fault.empty())
        scene.log().write(Channel::Warning, "The mesh '" + scene.node(shape)->name +
                                                "' is kept and not drawn: " + fault + ".");
    return mesh;
}

std::shared_ptr<const MeshData> outMesh(Evaluation& evaluation) {
    const Scene& scene = evaluation.scene();
    const NodeHandle shape = evaluation.handle();
    auto input = evaluation.dataAs<MeshData>(evaluation.plug(kInMesh));
    const auto* tweaks = blockOf<PointBlock>(scene, shape, kTweaks);
    if (input && !hasEffect(tweaks))
        return input;
    auto mesh = input ? std::make_shared<MeshData>(*input) : ownMesh(scene, shape);
    if (hasEffect(tweaks))
        addTweaks(*mesh, *tweaks);
    return mesh;
}

void createdMesh(Scene&, Node& node) {
    putBlock(node, kPoints, std::make_shared<PointBlock>());
    putBlock(node, kEdges, std::make_shared<EdgeBlock>());
    putBlock(node, kFaces, std::make_shared<FaceBlock>());
    putBlock(node, kTweaks, std::make_shared<PointBlock>("float3"));
}

void evaluateMesh(Evaluation& evaluation) {
    if (evaluation.output() == kOutMesh) {
        evaluation.set(kOutMesh, outMesh(evaluation));
    } else if (evaluation.output() == kWorldMesh) {
        const PayloadPtr mesh = evaluation.data(evaluation.plug(kOutMesh));
        evaluation.set(kWorldMesh, mesh);
        const int count = std::max(1, evaluation.scene().instanceCount(evaluation.handle()));
        for (int i = 0; i < count; ++i)
            evaluation.set(evaluation.plug(kWorldMesh, i), mesh);
    } else {
        evaluateDagNode(evaluation);
    }
}

constexpr NodeTypeRow kTypes[] = {typeRow(kMesh, fn::kMesh, "kMesh", 0, evaluateMesh, createdMesh)};

}  // namespace

TypeRows meshTypes() {
    return family(kTypes);
}

std::shared_ptr<const MeshData> meshPoints(const Scene& scene, NodeHandle shape) {
    auto mesh = isMesh(scene, shape) ? scene.dataAs<MeshData>(Plug(shape, kOutMesh)) : nullptr;
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
    changeBlock<PointBlock>(scene, shape, kPoints, [&](PointBlock& b) { b.assign(mesh.points); });
    changeBlock<EdgeBlock>(scene, shape, kEdges, [&](EdgeBlock& b) { b.assign(numbers.take()); });
    changeBlock<FaceBlock>(scene, shape, kFaces, [&](FaceBlock& b) { b = std::move(faces); });
    changeBlock<PointBlock>(scene, shape, kTweaks, [](PointBlock& b) { b.clear(); });
}

void copyOwnMesh(Scene& scene, NodeHandle from, NodeHandle to) {
    if (!isMesh(scene, from) || !isMesh(scene, to))
        return;
    for (const AttrIndex attr : {kPoints, kEdges, kFaces, kTweaks})
        if (const Plug source(from, attr); scene.bulk(source))
            scene.setData(Plug(to, attr), scene.storedData(source));
    scene.changeFacts(to, [&](NodeFacts& facts) { facts.keptText = scene.node(from)->keptText; });
}

void clearOwnMesh(Scene& scene, NodeHandle shape, bool tweaksToo) {
    changeBlock<PointBlock>(scene, shape, kPoints, [](PointBlock& b) { b.clear(); });
    changeBlock<EdgeBlock>(scene, shape, kEdges, [](EdgeBlock& b) { b.clear(); });
    changeBlock<FaceBlock>(scene, shape, kFaces, [](FaceBlock& b) { b.clear(); });
    if (tweaksToo)
        changeBlock<PointBlock>(scene, shape, kTweaks, [](PointBlock& b) { b.clear(); });
}

}  // namespace torvel
