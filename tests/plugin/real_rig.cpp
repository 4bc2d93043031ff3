#include "plugin/real_rig.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace torvel::test {

std::string rigPath(const std::string& file) {
    const char* folder = std::getenv("TORVEL_RIGS");
    if (!folder || !*folder)
        return {};
    const std::filesystem::path path = std::filesystem::path(folder) / file;
    return std::filesystem::exists(path) ? path.string() : std::string();
}

void RealRig::open(const std::string& path) {
    python("cmds.file('" + path + "', open=True, force=True)");
    forget();
}

Lines RealRig::influences() {
    Lines all;
    for (const auto& [cluster, sources] : stateOf(*this).influences) {
        for (const auto& [index, path] : sources) {
            if (!path.empty() && std::find(all.begin(), all.end(), path) == all.end())
                all.push_back(path);
        }
    }
    return all;
}

std::map<std::string, Points> RealRig::restShapes() {
    const RigState state = stateOf(*this);
    for (const auto& [cluster, weights] : state.weights)
        scene().setNumber(plug(cluster, "nodeState"), 1.0);
    const std::map<std::string, Points> rest = stateOf(*this).meshes;
    for (const auto& [cluster, weights] : state.weights)
        scene().setNumber(plug(cluster, "nodeState"), 0.0);
    return rest;
}

bool RealRig::isAtRest() {
    const std::map<std::string, Points> rest = restShapes();
    for (const auto& [mesh, points] : stateOf(*this).meshes) {
        if (deviation(points, rest.at(mesh)) > 1e-5)
            return false;
    }
    return true;
}

bool RealRig::isDriven(const std::string& joint) {
    for (const char* channel : {"rotate", "rotateX", "rotateY", "rotateZ"}) {
        if (!scene().source(plug(joint, channel)).isNull())
            return true;
    }
    return false;
}

}  // namespace torvel::test
