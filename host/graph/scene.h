#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/log.h"
#include "base/status.h"
#include "graph/names.h"
#include "graph/node.h"
#include "graph/selection.h"

namespace torvel {

struct WriterDeclaration;
struct WriterTable;

/// Told after each change. All members do nothing by default.
class SceneListener {
  public:
    virtual ~SceneListener() = default;
    virtual void nodeCreated(NodeHandle) {}
    virtual void nodeDeleted(NodeHandle) {}  ///< just before it goes
    virtual void nodeRenamed(NodeHandle, const std::string& /*oldName*/) {}
    virtual void nodeReparented(NodeHandle) {}
    virtual void valueChanged(const Plug&) {}
    virtual void connectionChanged(const Plug& /*source*/, const Plug& /*target*/, bool /*made*/) {}
    virtual void selectionChanged() {}
    virtual void sceneCleared() {}
};

/// The dependency graph with its DAG, names, selection and time: the one place where a scene
/// changes. Every edit goes through a member of this class, keeps dirty states right and tells the
/// listeners. Values in internal units (radians, centimetres, seconds*6000 ticks never: time in
/// frames).
class Scene {
  public:
    explicit Scene(const TypeRegistry& types, Log& log);
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    const TypeRegistry& types() const { return m_types; }
    Log& log() const { return m_log; }
    Names& names() { return m_names; }
    const Names& names() const { return m_names; }
    Selection& selection() { return m_selection; }
    const Selection& selection() const { return m_selection; }

    /// Back to the state after construction: world and default nodes only.
    void clear();
    /// Empties this scene and makes it follow another one: handles of that scene never become valid
    /// here.
    void succeed(const Scene& former);
    /// Exchanges everything but the listeners with a scene over the same types. Selections end; the
    /// listeners of this scene are told sceneCleared. The other one is good for deletion only.
    void takeContents(Scene& other);

    // --- nodes
    // -----------------------------------------------------------------------------------------------
    /// Null for a null, stale or foreign handle.
    Node* node(NodeHandle handle) {
        const bool alive =
            handle.index < m_generations.size() && m_generations[handle.index] == handle.generation;
        return alive ? m_nodes[handle.index].get() : nullptr;
    }
    const Node* node(NodeHandle handle) const { return const_cast<Scene*>(this)->node(handle); }
    bool isValid(NodeHandle handle) const { return node(handle) != nullptr; }
    NodeHandle world() const { return m_world; }
    /// Makes a node of a known, not abstract type. `wantedName` is made legal and unique; empty:
    /// type + number (shapes: parent's name + "Shape"). DAG nodes go under `parent` (null: the
    /// world), last among its children. A shape with no parent is refused here (the commands make
    /// its transform). Selects nothing.
    Status createNode(std::string_view typeName, std::string_view wantedName, NodeHandle parent,
                      NodeHandle& made);
    /// Deletes exactly these nodes and everything below them in the DAG, with their connections.
    void deleteNodes(const std::vector<NodeHandle>& nodes);
    /// Gives a node a name made legal and unique; returns the name given.
    std::string rename(NodeHandle handle, std::string_view wantedName);
    std::size_t nodeCount() const { return m_alive; }
    /// All nodes by creation; the world first.
    std::vector<NodeHandle> allNodes() const;
    template <class F>
    void forEachNode(F&& f) const {
        for (const auto& n : m_nodes)
            if (n)
                f(*n);
    }
    bool hasFn(NodeHandle handle, int fn) const;
    bool isType(NodeHandle handle, std::string_view typeName) const;  ///< derived types included
    std::string typeName(NodeHandle handle) const;  ///< real name, of unknown nodes too

    // --- DAG
    // -------------------------------------------------------------------------------------------------
    /// Moves `child` (all its paths collapse to this one parent) last under `newParent`, local
    /// values kept. The name is made unique. Refuses cycles, the world, shapes under
    /// non-transforms.
    Status reparent(NodeHandle child, NodeHandle newParent);
    Status addParent(NodeHandle child, NodeHandle newParent);  ///< instance
    Status removeParent(NodeHandle child, NodeHandle oldParent);
    bool isAncestor(NodeHandle ancestor, NodeHandle node) const;  ///< itself included
    int instanceCount(NodeHandle node) const;
    /// Nodes from just below the world down to `node` along instance number `instance`; empty when
    /// not DAG.
    std::vector<NodeHandle> path(NodeHandle node, int instance = 0) const;
    int instanceNumber(const std::vector<NodeHandle>& path) const;

    // --- attributes
    // ------------------------------------------------------------------------------------------
    /// Adds an attribute to one node. Refused when the name is taken or illegal.
    Status addAttribute(NodeHandle handle, const AttrInfo& info, AttrIndex parent, AttrIndex& made);
    /// Opaque attribute path for something a file names and the host does not know.
    Plug opaquePlug(NodeHandle handle, std::string_view attrPath);
    void deleteAttribute(NodeHandle handle, AttrIndex attr);
    const AttrInfo& info(const Plug& plug) const;
    /// Resolves "translateX", "matrix[3]", "input[0].inputGeometry", "t.tx"; null plug when it does
    /// not exist. An element need not exist yet. An array named on the way without an index means
    /// its element 0.
    Plug findPlug(NodeHandle handle, std::string_view attrPath) const;
    /// "node.attr[3].child" with long (or short) names and the node's shortest unique path.
    std::string plugName(const Plug& plug, bool longNames = true) const;
    std::string attrPath(const Plug& plug, bool longNames) const;  ///< without the node
    Plug child(const Plug& plug, int number) const;                ///< of a compound
    Plug parentPlug(
        const Plug& plug) const;  ///< compound above, or the array of an element; null at the root
    Plug element(const Plug& arrayPlug, std::int32_t logical) const;
    bool isElement(
        const Plug& plug) const;  ///< a plug that names one element of an array attribute
    bool isArrayPlug(const Plug& plug) const;           ///< the array itself
    std::int32_t logicalIndex(const Plug& plug) const;  ///< of an element; -1 otherwise
    std::size_t elementCount(const Plug& arrayPlug) const;
    Plug elementAt(const Plug& arrayPlug, std::size_t physical) const;
    std::vector<std::int32_t> elementIndices(const Plug& arrayPlug) const;
    void removeElement(const Plug& elementPlug);
    std::int32_t nextAvailable(
        const Plug& arrayPlug) const;  ///< one past the highest used; behind the last the first gap

    // --- values
    // ----------------------------------------------------------------------------------------------
    // Getters evaluate what feeds the plug. A plug of another kind gives 0 / null / identity.
    double number(const Plug& plug) const;
    V3d vec3(const Plug& compound) const;
    M44d matrix(const Plug& plug) const;
    PayloadPtr data(const Plug& plug) const;
    std::string text(const Plug& plug) const;
    template <class T>
    std::shared_ptr<const T> dataAs(const Plug& plug) const {
        return std::dynamic_pointer_cast<const T>(data(plug));
    }
    // Setters write the stored value whatever locks or connections say (commands check with
    // `isSettable`).
    void setNumber(const Plug& plug, double value);
    void setVec3(const Plug& compound, const V3d& value);
    void setMatrix(const Plug& plug, const M44d& value);
    void setData(const Plug& plug, PayloadPtr value);
    void setText(const Plug& plug, std::string value);
    /// Direct access to a bulk array for reading and for changes in place; `change` clones it only
    /// when shared.
    const BulkArray* bulk(const Plug& arrayPlug) const;
    void changeBulk(const Plug& arrayPlug, const std::function<void(BulkArray&)>& change);
    /// The stored value, without evaluating or following connections.
    double storedNumber(const Plug& plug) const;
    PayloadPtr storedData(const Plug& plug) const;
    /// What the plug would show without its writer: the value of its source, or the number last set
    /// by hand. Sources are not evaluated. The stored number of a plug that nobody writes.
    double ownNumber(const Plug& plug) const;

    const Slot* peekSlot(const Plug& plug) const;  ///< null while untouched or missing
    Slot* slotFor(const Plug& plug);  ///< makes elements on the way; null for a bulk or dead plug
    bool isLocked(const Plug& plug) const;  ///< itself or a compound above
    void setLocked(const Plug& plug, bool on);
    bool isKeyable(const Plug& plug) const;
    void setKeyable(const Plug& plug, bool on);
    bool isChannelBox(const Plug& plug) const;
    void setChannelBox(const Plug& plug, bool on);
    /// No lock and no connection on it, on a compound above or on a child.
    bool isSettable(const Plug& plug) const;

    // --- connections
    // -----------------------------------------------------------------------------------------
    /// Makes one connection; the target must be free. Inserts no conversion nodes. As a source,
    /// worldMatrix and its kin named without an index mean element 0 (here, in disconnect and in
    /// isConnected).
    Status connect(const Plug& source, const Plug& target);
    /// What connect refuses about the two plugs themselves: missing, not readable, not writable, of
    /// unlike types.
    Status checkConnection(const Plug& source, const Plug& target) const;
    Status disconnect(const Plug& source, const Plug& target);
    /// The plug that feeds exactly this one; null when none.
    Plug source(const Plug& target) const;
    /// Source on the plug or on a compound/array above it (then the matching child of that source).
    Plug effectiveSource(const Plug& target) const;
    const std::vector<Plug>& targets(const Plug& source) const;
    bool isConnected(const Plug& source, const Plug& target) const;
    struct Connection {
        Plug source, target;
        std::uint64_t order;
    };
    /// Of one node: what feeds it and what it feeds, ascending order of creation.
    std::vector<Connection> incoming(NodeHandle handle) const;
    std::vector<Connection> outgoing(NodeHandle handle) const;
    std::vector<Connection> allConnections() const;

    // --- evaluation
    // ------------------------------------------------------------------------------------------
    void setDirty(const Plug& plug);
    /// Brings the plug up to date (iteratively; depth of the graph does not matter).
    void evaluate(const Plug& plug) const;
    /// The writer's output that writes this number; null when there is none.
    Plug writerOf(const Plug& plug) const;
    std::uint64_t nextVisit() const { return ++m_visit; }
    /// Ascends with every change of connections, hierarchy or attributes.
    std::uint64_t structure() const { return m_structure; }

    /// Between the two a file is read: values and connections dirty nothing one by one, at the end
    /// everything is dirty. Names keep their letters beyond ASCII (Names::legalInFile).
    void beginReading() { m_reading = true; }
    void endReading();

    // --- time, files
    // -----------------------------------------------------------------------------------------
    NodeHandle timeNode() const { return m_time; }
    std::string fileName;  ///< full path; empty for an untitled scene
    bool modified = false;
    std::vector<std::string> requiresText;  ///< kept statements, in order
    std::vector<std::string> fileInfoText;
    std::vector<std::string> referenceText;
    std::string unitsText;
    std::vector<std::string>
        trailingText;  ///< relationship and other statements to write after connections

    void addListener(SceneListener* listener);
    void removeListener(SceneListener* listener);
    template <class F>
    void tell(F&& f) const {
        const std::vector<SceneListener*> listeners = m_listeners;
        for (SceneListener* l : listeners)
            f(*l);
    }

  private:
    friend class Evaluation;
    friend class Evaluator;
    NodeHandle add(std::unique_ptr<Node> node);
    void removeOne(NodeHandle handle);
    void collectBelow(NodeHandle top, std::vector<NodeHandle>& out) const;
    void breakLinks(Node& node);
    void leaveValues(NodeHandle node, std::uint64_t stamp);
    void unlink(const Plug& source, const Plug& target, bool keepValue);
    void changed(const Plug& plug);
    void detachFromParents(Node& node);
    void outputChanged(const Plug& output);
    void refreshWriters();
    void linkWriters(std::vector<Plug>& changedPlugs);
    std::vector<Plug> gatherWritten(const WriterDeclaration& said) const;
    void keepOwn(Node& node, const Plug& plug, double value);
    NodeHandle commonWorld(NodeHandle parent) const { return parent.isNull() ? m_world : parent; }

    const TypeRegistry& m_types;
    Log& m_log;
    std::vector<std::unique_ptr<Node>> m_nodes;
    std::vector<std::uint32_t> m_generations;
    std::vector<std::uint32_t> m_free;
    std::size_t m_alive = 0;
    std::uint64_t m_creations = 0;
    std::uint64_t m_connections = 0;
    std::uint64_t m_structure = 1;
    mutable std::uint64_t m_visit = 0;
    NodeHandle m_world;
    NodeHandle m_time;
    Names m_names;
    Selection m_selection;
    std::vector<SceneListener*> m_listeners;
    std::unique_ptr<WriterTable> m_writers;
    bool m_reading = false;
    bool m_writersStale = false;  ///< ties of writers must be found anew before the next evaluation
};

}  // namespace torvel
