#include "plugin/rig_state.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "graph/data.h"

namespace torvel::test {

namespace {

constexpr double kDegrees = 57.295779513082323;

bool isVisibleMesh(Scene& scene, const Node& node) {
    return node.type->name == std::string("mesh") &&
           scene.number(scene.findPlug(node.self, "intermediateObject")) == 0.0;
}

std::vector<Weight> weightsOf(Scene& scene, NodeHandle cluster) {
    std::vector<Weight> all;
    const BulkArray* rows = scene.bulk(scene.findPlug(cluster, "weightList"));
    if (!rows)
        return all;
    for (std::size_t v = 0; v < rows->size(); ++v) {
        std::int32_t path[kMaxArrayDepth] = {rows->logicalAt(v), -1, -1, -1};
        for (std::size_t i = 0; i < rows->innerSize(path[0]); ++i) {
            path[1] = rows->innerLogicalAt(path[0], i);
            all.emplace_back(path[0], path[1], rows->number(path, 0));
        }
    }
    return all;
}

std::map<int, std::string> influencesOf(Scene& scene, NodeHandle cluster) {
    std::map<int, std::string> all;
    const Plug matrix = scene.findPlug(cluster, "matrix");
    for (std::int32_t i : scene.elementIndices(matrix)) {
        const Plug source = scene.source(scene.element(matrix, i));
        all[i] = source.isNull() ? "" : scene.names().fullPath(source.node);
    }
    return all;
}

double boxSize(const Points& points) {
    if (points.empty())
        return 0.0;
    V3f low = points[0];
    V3f high = points[0];
    for (const V3f& p : points) {
        for (int k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], p[k]);
            high[k] = std::max(high[k], p[k]);
        }
    }
    return (high - low).length();
}

}  // namespace

Points pointsOf(PluginScene& scene, const std::string& shape) {
    const auto mesh = scene.scene().dataAs<MeshData>(scene.plug(shape, "outMesh"));
    EXPECT_NE(mesh, nullptr) << shape;
    return mesh ? mesh->points : Points();
}

M44d worldMatrixOf(PluginScene& scene, const std::string& path) {
    return scene.scene().matrix(scene.plug(path, "worldMatrix[0]"));
}

V3d rotationOf(PluginScene& scene, const std::string& path) {
    return scene.scene().vec3(scene.plug(path, "rotate")) * kDegrees;
}

RigState stateOf(PluginScene& fixture) {
    RigState state;
    Scene& scene = fixture.scene();
    for (NodeHandle handle : scene.allNodes()) {
        const Node& node = *scene.node(handle);
        const std::string path = scene.names().fullPath(handle);
        state.nodes.push_back(scene.typeName(handle) + " " + path);
        if (scene.typeName(handle) == "joint")
            state.joints[path] = worldMatrixOf(fixture, path);
        if (isVisibleMesh(scene, node))
            state.meshes[path] = pointsOf(fixture, path);
        if (scene.typeName(handle) == "skinCluster") {
            state.weights[path] = weightsOf(scene, handle);
            state.influences[path] = influencesOf(scene, handle);
        }
    }
    std::sort(state.nodes.begin(), state.nodes.end());
    return state;
}

double deviation(const Points& actual, const Points& expected) {
    if (actual.size() != expected.size())
        return std::numeric_limits<double>::infinity();
    double worst = 0.0;
    for (std::size_t i = 0; i < expected.size(); ++i)
        worst = std::max<double>(worst, (actual[i] - expected[i]).length());
    return worst == 0.0 ? 0.0 : worst / boxSize(expected);
}

void expectPoints(const Points& actual, const Points& expected, double tolerance) {
    EXPECT_FALSE(expected.empty());
    EXPECT_LE(deviation(actual, expected), tolerance);
}

void expectSamePoints(const RigState& actual, const RigState& expected, double tolerance) {
    for (const auto& [path, points] : expected.meshes) {
        SCOPED_TRACE(path);
        ASSERT_EQ(actual.meshes.count(path), 1u);
        expectPoints(actual.meshes.at(path), points, tolerance);
    }
}

void expectSameSkeletons(const RigState& actual, const RigState& expected) {
    EXPECT_EQ(actual.nodes, expected.nodes);
    for (const auto& [path, matrix] : expected.joints) {
        ASSERT_EQ(actual.joints.count(path), 1u) << path;
        for (int k = 0; k < 16; ++k)
            EXPECT_NEAR(actual.joints.at(path)[k / 4][k % 4], matrix[k / 4][k % 4], 1e-9) << path;
    }
    ASSERT_FALSE(expected.weights.empty());
    EXPECT_EQ(actual.weights, expected.weights);
    EXPECT_EQ(actual.influences, expected.influences);
}

void expectSameRig(const RigState& actual, const RigState& expected) {
    expectSameSkeletons(actual, expected);
    expectSamePoints(actual, expected);
}

void expectFrozen(PluginScene& scene, const std::vector<std::string>& paths) {
    for (const std::string& path : paths)
        EXPECT_EQ(rotationOf(scene, path), V3d(0, 0, 0)) << path;
}

void turnInWorld(PluginScene& scene, const std::string& path, double degrees) {
    const M44d world = worldMatrixOf(scene, path);
    const double c = std::cos(degrees / kDegrees);
    const double s = std::sin(degrees / kDegrees);
    std::string numbers;
    for (int row = 0; row < 4; ++row) {
        const double x = row < 3 ? world[row][0] * c - world[row][1] * s : world[3][0];
        const double y = row < 3 ? world[row][0] * s + world[row][1] * c : world[3][1];
        numbers +=
            fmt::format("{:.17g}, {:.17g}, {:.17g}, {}, ", x, y, world[row][2], row == 3 ? 1 : 0);
    }
    scene.python(fmt::format("cmds.xform('{}', worldSpace=True, matrix=[{}])", path, numbers));
}

}  // namespace torvel::test
