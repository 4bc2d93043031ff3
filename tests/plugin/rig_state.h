#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "graph/math.h"
#include "plugin/plugin_scene.h"

namespace torvel::test {

/// Vertex, influence, weight.
using Weight = std::tuple<int, int, double>;
using Points = std::vector<V3f>;

/// What a skin-keeping edit must not change; everything by full path.
struct RigState {
    std::vector<std::string> nodes;                                ///< "type path", sorted
    std::map<std::string, M44d> joints;                            ///< world matrices
    std::map<std::string, Points> meshes;                          ///< visible ones, object space
    std::map<std::string, std::vector<Weight>> weights;            ///< of each cluster
    std::map<std::string, std::map<int, std::string>> influences;  ///< source of each `matrix[i]`
};

RigState stateOf(PluginScene& scene);

/// Names, joint placements (1e-9), weights (to the bit) and influences; meshes apart.
void expectSameSkeletons(const RigState& actual, const RigState& expected);
/// Every mesh within `tolerance` of the size of its box.
void expectSamePoints(const RigState& actual, const RigState& expected, double tolerance = 1e-5);
/// The two together.
void expectSameRig(const RigState& actual, const RigState& expected);

Points pointsOf(PluginScene& scene, const std::string& shape);
/// Largest distance between points of one number, as a share of the expected box's diagonal;
/// infinite when the counts differ.
double deviation(const Points& actual, const Points& expected);
void expectPoints(const Points& actual, const Points& expected, double tolerance);
M44d worldMatrixOf(PluginScene& scene, const std::string& path);
/// The three rotate channels in degrees.
V3d rotationOf(PluginScene& scene, const std::string& path);
void expectFrozen(PluginScene& scene, const std::vector<std::string>& paths);

/// Turns a node by `degrees` about the world's z axis, at its place.
void turnInWorld(PluginScene& scene, const std::string& path, double degrees);

}  // namespace torvel::test
