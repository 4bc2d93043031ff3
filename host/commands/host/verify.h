#pragma once

#include <iosfwd>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "graph/math.h"

namespace torvel {

class Scene;

/// What --verify lets pass. A negative count of nodes or connections: told, not judged.
struct VerifyLimits {
    double points = 1e-3;    ///< largest move of a vertex, centimetres
    double weights = 1e-6;   ///< largest change of one influence's weight on a vertex
    double matrices = 1e-4;  ///< largest change of one number in a joint's world matrix
    int nodes = -1;          ///< nodes that came or went
    int connections = -1;    ///< connections that came or went
};

/// What --verify looks at, by name, so that a node that was replaced by one of the same name counts
/// as the same.
struct SceneState {
    std::map<std::string, std::vector<V3d>>
        points;  ///< world points of each visible mesh, by full path
    /// Mesh path (with "#2" for a second cluster) and influence name; pairs of vertex and weight,
    /// zeros left out.
    std::map<std::string, std::map<std::string, std::map<int, double>>> weights;
    std::map<std::string, M44d> matrices;  ///< world matrix of each joint, by short name or path
    std::set<std::string> nodes;           ///< "type name" of each, full path for DAG nodes
    std::set<std::string> connections;     ///< "source -> target"
};

/// Reads the scene; evaluates every mesh and joint.
SceneState stateOf(const Scene& scene);

/// One line of the comparison.
struct VerifyRow {
    std::string what;        ///< "points", "weights", "matrices", "nodes", "connections"
    std::size_t before = 0;  ///< things compared: vertices, weights, joints, nodes, connections
    std::size_t after = 0;
    double largest = 0.0;  ///< largest change; for nodes and connections: how many came or went
    double limit = 0.0;    ///< negative: not judged
    std::string where;     ///< where the largest change is
    std::vector<std::string> gone, come;
    double size = 0.0;  ///< points: diagonal of the box around them all, before
    bool ok = true;     ///< within the limit, and nothing that was compared by name is missing
};

std::vector<VerifyRow> compareStates(const SceneState& before, const SceneState& after,
                                     const VerifyLimits& limits);
bool allWithin(const std::vector<VerifyRow>& rows);
void printTable(const std::vector<VerifyRow>& rows, std::ostream& out);
std::string verifyJson(const std::vector<VerifyRow>& rows);

}  // namespace torvel
