#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/status.h"
#include "graph/plug.h"

namespace torvel {

class Hierarchy;
struct Node;

/// Everything about names: legality, uniqueness, numbering, paths and look-up. Two indices: leaf
/// name to nodes, and parent with name to child; no question walks through namesakes one by one.
class Names {
  public:
    explicit Names(const Hierarchy& scene) : m_scene(scene) {}

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
    /// The child of that name; null when there is none.
    NodeHandle childNamed(NodeHandle parent, std::string_view name) const;
    bool isPattern(std::string_view text) const {
        return text.find_first_of("*?") != std::string_view::npos;
    }
    static bool matches(std::string_view pattern, std::string_view name);

    std::string fullPath(NodeHandle node,
                         int instance = 0) const;  ///< "|a|b"; "" for the world; name for DG nodes
    /// Shortest text that names only this node; a top-level node with namesakes gets a leading bar.
    std::string shortest(NodeHandle node) const;

    void added(const Node& node);    ///< with its name and its parents
    void removed(const Node& node);  ///< while it has them still
    void parentsLeft(const Node& node);
    void parentsTaken(const Node& node);
    void clear();

  private:
    using Parts = std::vector<std::string_view>;
    struct Leaf {
        std::vector<NodeHandle> nodes;
        std::size_t notDag = 0;
    };
    struct Numbered;

    static Numbered splitNumber(const std::string& name);
    static std::string join(const Numbered& base, unsigned long long number);
    static std::string rowOf(const Numbered& base);
    const Leaf* leaf(std::string_view name) const;
    unsigned long long firstFree(const Numbered& base, unsigned long long from) const;
    void matching(const Parts& parts, bool fromWorld, std::size_t limit,
                  std::vector<NodeHandle>& out) const;
    void becameFree(const std::string& name);
    std::size_t rarest(const Parts& parts) const;
    bool leadsUp(NodeHandle node, const Parts& parts, std::size_t count, bool fromWorld) const;
    void descend(NodeHandle from, const Parts& parts, std::size_t next,
                 std::vector<NodeHandle>& out) const;
    template <class F>
    void forEachChild(NodeHandle parent, std::string_view name, F&& f) const;
    void sortMatches(std::vector<NodeHandle>& nodes) const;
    void preOrderPlaces(const std::vector<NodeHandle>& nodes,
                        std::unordered_map<std::uint32_t, std::uint64_t>& place) const;
    bool taken(const std::string& name, NodeHandle parent, bool isDag, NodeHandle self) const;
    bool anywhere(const std::string& name, NodeHandle self) const;
    bool endsWithPath(NodeHandle node, const Parts& parts, bool fromWorld) const;

    const Hierarchy& m_scene;
    std::unordered_map<std::string, Leaf> m_byLeaf;
    std::unordered_multimap<std::uint64_t, NodeHandle> m_byParent;  ///< hash of parent and name
    /// Of each stem and padding: runs of numbers that are all taken, first to one past the last.
    mutable std::unordered_map<std::string, std::map<unsigned long long, unsigned long long>>
        m_takenRuns;
};

}  // namespace torvel
