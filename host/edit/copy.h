#pragma once

#include <string>
#include <utility>
#include <vector>

#include "graph/scene.h"

namespace torvel {

struct CopyOptions {
    bool withChildren = true;
    bool withShapes = true;
    bool renameChildren = false;    ///< copies below the root get names that are new in the scene
    bool inputConnections = false;  ///< what feeds the originals feeds the copies, too
};

/// Originals and their copies, parents before children.
using CopiedNodes = std::vector<std::pair<NodeHandle, NodeHandle>>;

/// Copies a node, or a DAG node with all that lies below it, under `parent` (null: the world). The
/// root takes `wantedName` (empty: its own name) made unique, the others keep their leaf names and
/// namespaces. Values, added attributes, locks and channel states are copied, driven channels at
/// their current value; shapes keep the picture they show. No connections, except inverseScale
/// links inside the tree and from a joint `parent`, and membership in shading sets. Selects
/// nothing. On failure nothing is left behind.
Status copyTree(Scene& scene, NodeHandle root, NodeHandle parent, const std::string& wantedName,
                const CopyOptions& options, CopiedNodes& made);

/// Copies the values, added attributes and channel states of one node to a fresh node of the same
/// type.
void copyValues(Scene& scene, NodeHandle from, NodeHandle to);

}  // namespace torvel
