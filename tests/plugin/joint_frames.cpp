#include "plugin/joint_frames.h"

#include <algorithm>
#include <cmath>

#include "plugin/rig_state.h"

namespace torvel::test {

namespace {

constexpr double kNear = 1e-7;

M33d turn(int axis, double angle) {
    M33d m;
    const int u = (axis + 1) % 3;
    const int v = (axis + 2) % 3;
    m[u][u] = m[v][v] = std::cos(angle);
    m[u][v] = std::sin(angle);
    m[v][u] = -std::sin(angle);
    return m;
}

// Row vectors: the axis named first is turned about first.
M33d turned(const V3d& angles, int order) {
    static constexpr int kOrders[6][3] = {{0, 1, 2}, {1, 2, 0}, {2, 0, 1},
                                          {0, 2, 1}, {1, 0, 2}, {2, 1, 0}};
    M33d m;
    for (int axis : kOrders[order])
        m = m * turn(axis, angles[axis]);
    return m;
}

V3d rowOf(const M44d& m, int row) {
    return {m[row][0], m[row][1], m[row][2]};
}

M33d rotationOfParent(PluginScene& scene, const std::string& path) {
    const std::string parent = path.substr(0, path.rfind('|'));
    M33d m;
    if (parent.empty())
        return m;
    const M44d world = worldMatrixOf(scene, parent);
    for (int row = 0; row < 3; ++row) {
        const V3d axis = rowOf(world, row).normalized();
        for (int k = 0; k < 3; ++k)
            m[row][k] = axis[k];
    }
    return m;
}

void expectNear(const V3d& actual, const V3d& expected, const std::string& what) {
    EXPECT_LE((actual - expected).length(), kNear)
        << what << ": " << actual << " instead of " << expected;
}

std::vector<std::string> jointsOf(PluginScene& scene) {
    std::vector<std::string> paths;
    for (NodeHandle handle : scene.scene().allNodes()) {
        if (scene.scene().typeName(handle) == "joint")
            paths.push_back(scene.scene().names().fullPath(handle));
    }
    return paths;
}

}  // namespace

Frame rotationFrame(PluginScene& scene, const std::string& path) {
    Scene& graph = scene.scene();
    const int order = static_cast<int>(graph.number(scene.plug(path, "rotateOrder")));
    const M33d m = turned(graph.vec3(scene.plug(path, "rotate")), order) *
                   turned(graph.vec3(scene.plug(path, "jointOrient")), 0) *
                   rotationOfParent(scene, path);
    Frame frame;
    for (int row = 0; row < 3; ++row)
        frame.axes[row] = {m[row][0], m[row][1], m[row][2]};
    return frame;
}

Frames framesOf(PluginScene& scene) {
    Frames all;
    for (const std::string& path : jointsOf(scene))
        all[path] = rotationFrame(scene, path);
    return all;
}

Places placesOf(PluginScene& scene) {
    Places all;
    for (const std::string& path : jointsOf(scene))
        all[path] = rowOf(worldMatrixOf(scene, path), 3);
    return all;
}

void expectSameFrame(const Frame& actual, const Frame& expected, const std::string& path) {
    for (int k = 0; k < 3; ++k)
        expectNear(actual.axes[k], expected.axes[k], path + " axis " + std::to_string(k));
}

void expectSamePlaces(const Places& actual, const Places& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (const auto& [path, place] : expected) {
        ASSERT_EQ(actual.count(path), 1u) << path;
        EXPECT_LE((actual.at(path) - place).length(), 1e-9) << path;
    }
}

void expectAimed(const Frame& frame, const std::string& order, const std::string& up,
                 const V3d& bone) {
    const V3d aim = bone.normalized();
    V3d world(0, 0, 0);
    world[up[0] - 'x'] = up.substr(1) == "up" ? 1.0 : -1.0;
    const V3d second = (world - aim * world.dot(aim)).normalized();
    expectNear(frame.axes[order[0] - 'x'], aim, "along the bone, " + order + " " + up);
    expectNear(frame.axes[order[1] - 'x'], second, "toward the world axis, " + order + " " + up);
    expectNear(frame.axes[0].cross(frame.axes[1]), frame.axes[2], "right-handed");
}

void expectFlipped(const Frame& actual, const Frame& before, char primary, char secondary,
                   const std::string& path) {
    Frame expected = before;
    expected.axes[primary - 'x'] = -before.axes[primary - 'x'];
    expected.axes[secondary - 'x'] = -before.axes[secondary - 'x'];
    expectSameFrame(actual, expected, path);
}

}  // namespace torvel::test
