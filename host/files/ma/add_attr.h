#pragma once

#include <string>
#include <string_view>

#include "graph/scene.h"

namespace torvel {

/// Reads one addAttr statement of a file. An attribute that the node cannot take (its name is
/// taken, its parent is unknown) is kept as text. A failure means damage; `warning` tells what was
/// left out.
Status readAddAttr(Scene& scene, NodeHandle current, std::string_view statement,
                   std::string& warning);

/// What stands behind "addAttr " for a dynamic attribute: as it was read, or made from its
/// properties.
std::string addAttrText(const Node& node, AttrIndex attr);

}  // namespace torvel
