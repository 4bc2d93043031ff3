#pragma once

#include <string>
#include <vector>

#include "base/status.h"
#include "graph/plug.h"

namespace torvel {

class Session;

/// What becomes of the names of imported nodes. Without a namespace only those that are taken in
/// the scene change: the prefix and "_" come before them.
struct ImportNames {
    std::string nameSpace;        ///< for all of them; empty: none
    std::string prefix;           ///< empty: the file's name without its suffix
    bool all = false;             ///< the prefix comes before every name
    bool mergeNamespace = false;  ///< a namespace that the scene has is used, not numbered
};

/// Adds the nodes of a Maya ASCII file to the scene; nodes that every scene has and shared ones
/// that this scene has stay as they are here. `made` gets the new nodes in the file's order. Tells
/// in the log what openScene would tell. After a failure the scene is as it was.
Status importScene(Session& session, const std::string& path, const ImportNames& names,
                   std::vector<NodeHandle>& made);

/// Writes the whole scene to another file; its own name and state stay.
Status exportAll(Session& session, const std::string& path);
/// The same for the selected nodes, all below them, what feeds those, their shading groups, and the
/// transforms above. Fails when no node is selected.
Status exportSelected(Session& session, const std::string& path);

}  // namespace torvel
