#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/status.h"
#include "graph/plug.h"

namespace torvel {

class Scene;

/// Everything about names: legality, uniqueness, numbering, paths and look-up. One index from leaf
/// name to nodes.
class Names {
  public:
    explicit Names(Scene& scene) : m_scene(scene) {}

    /// Leading illegal characters dropped, each other illegal one becomes '_'; ':' parts are
    /// namespaces. May be empty.
    static std::string legal(std::string_view wanted);
    /// The same for names of scene files, where letters beyond ASCII (UTF-8) are legal, too.
    static std::string legalInFile(std::string_view wanted);
    /// Blanks trimmed, empty leading path components dropped.
    static std::string_view trimmed(std::string_view text);

    /// The wanted legal name if free for `self` under `parent` (DAG: among its siblings and against
    /// DG nodes; DG: against all), else numbered: trailing digits counted up, padding kept, tested
    /// scene-wide.
    std::string unique(const std::string& legalName, NodeHandle parent, bool isDag,
                       NodeHandle self) const;
    /// First free type-style name: stem + number from 1.
    std::string numbered(const std::string& stem) const;

    /// Nodes that a text names: short name, path suffix, full path, or pattern with * and ?. Fewest
    /// path components first, ties in DAG pre-order, DG nodes after by creation. Empty when nothing
    /// matches.
    std::vector<NodeHandle> find(std::string_view text) const;
    /// The one node of a name; "No object matches name: x" / "More than one object matches name: x"
    /// otherwise.
    Status findOne(std::string_view text, NodeHandle& found) const;
    /// Like findOne without building texts: null when none or several.
    NodeHandle lookUp(std::string_view text) const;
    bool isPattern(std::string_view text) const {
        return text.find_first_of("*?") != std::string_view::npos;
    }
    static bool matches(std::string_view pattern, std::string_view name);

    std::string fullPath(NodeHandle node,
                         int instance = 0) const;  ///< "|a|b"; "" for the world; name for DG nodes
    /// Shortest text that names only this node; a top-level node with namesakes gets a leading bar.
    std::string shortest(NodeHandle node) const;

    void added(NodeHandle node, const std::string& name);
    void removed(NodeHandle node, const std::string& name);
    void clear() {
        m_byLeaf.clear();
        m_lowestFree.clear();
    }

  private:
    void sortMatches(std::vector<NodeHandle>& nodes) const;
    void preOrderPlaces(const std::vector<NodeHandle>& nodes,
                        std::unordered_map<std::uint32_t, std::uint64_t>& place) const;
    bool taken(const std::string& name, NodeHandle parent, bool isDag, NodeHandle self) const;
    bool anywhere(const std::string& name, NodeHandle self) const;
    bool endsWithPath(NodeHandle node, const std::vector<std::string_view>& parts,
                      bool fromWorld) const;

    Scene& m_scene;
    std::unordered_map<std::string, std::vector<NodeHandle>> m_byLeaf;
    mutable std::unordered_map<std::string, unsigned long long>
        m_lowestFree;  ///< every lower number is taken
};

}  // namespace torvel
