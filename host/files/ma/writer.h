#pragma once

#include <functional>
#include <string>

#include "base/status.h"
#include "graph/scene.h"

namespace torvel {

/// The scene as the text of a Maya ASCII file. The same scene gives the same text: no name of the
/// file, no time, no order of memory is in it. What was read and is not known to the host comes out
/// as it was read.
std::string sceneToText(const Scene& scene);

/// The nodes that `wanted` takes, with the connections among them and between them and nodes that
/// every scene has, as a text of the same kind. Nodes are named by their full paths, so that other
/// nodes of the scene that reads it are not meant; settings of default nodes are left out.
std::string nodesToText(const Scene& scene, const std::function<bool(const Node&)>& wanted);

}  // namespace torvel
