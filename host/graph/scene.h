#pragma once

#include <functional>

#include "graph/document.h"
#include "graph/scene_listener.h"
#include "graph/selection.h"
#include "graph/values.h"

namespace torvel {

class Journal;
struct WriterDeclaration;
namespace edit {
struct AttributeNames;
struct Parents;
struct Place;
}  // namespace edit

/// The dependency graph with its DAG, names, selection and document. The layers below answer
/// questions (NodeStore: nodes; Hierarchy: parents and paths; PlugStore: names, attributes, slots;
/// Connections; Values: numbers, payloads, evaluation). This class is the one door for changes:
/// each member below keeps dirty states right, tells the listeners and, while the journal records,
/// leaves what its inverse needs there. Evaluation writes outputs beside it.
class Scene final : public Values {
  public:
    explicit Scene(const TypeRegistry& types, Log& log);
    ~Scene();

    // --- the whole
    /// Back to the state after construction: world and default nodes only.
    void clear();
    /// Empties this scene and makes it follow another one: handles of that scene never become valid
    /// here.
    void succeed(const Scene& former);
    /// Exchanges everything but the listeners with a scene over the same types. Selections end; the
    /// listeners of this scene are told sceneCleared. The other one is good for deletion only.
    void takeContents(Scene& other);
    const Document& document() const { return m_document; }
    void changeDocument(const std::function<void(Document&)>& change);
    void setModified(bool on) { m_document.modified = on; }
    Selection& selection() { return m_selection; }
    const Selection& selection() const { return m_selection; }

    // --- nodes
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
    /// Lock, uuid, real type name and kept texts of a node. Nothing for a dead handle.
    void changeFacts(NodeHandle handle, const std::function<void(NodeFacts&)>& change);

    // --- hierarchy
    /// Moves `child` (all its paths collapse to this one parent) last under `newParent`, local
    /// values kept. The name is made unique. Refuses cycles, the world, shapes under
    /// non-transforms.
    Status reparent(NodeHandle child, NodeHandle newParent);
    Status addParent(NodeHandle child, NodeHandle newParent);  ///< instance
    Status removeParent(NodeHandle child, NodeHandle oldParent);

    // --- attributes
    /// Adds an attribute to one node. Refused when the name is taken or illegal.
    Status addAttribute(NodeHandle handle, const AttrInfo& info, AttrIndex parent, AttrIndex& made);
    /// Opaque attribute path for something a file names and the host does not know.
    Plug opaquePlug(NodeHandle handle, std::string_view attrPath);
    void deleteAttribute(NodeHandle handle, AttrIndex attr);
    /// Limits, flags and texts of an added attribute. Nothing for those of the node type.
    void changeAttribute(const Plug& plug, const std::function<void(AttrInfo&)>& change);
    void removeElement(const Plug& elementPlug);

    // --- values: written whatever locks or connections say (commands check with `isSettable`)
    void setNumber(const Plug& plug, double value);
    void setVec3(const Plug& compound, const V3d& value);
    void setMatrix(const Plug& plug, const M44d& value);
    /// False, and nothing changed, when the attribute holds no such payload (payloadFits).
    bool setData(const Plug& plug, PayloadPtr value);
    void setText(const Plug& plug, std::string value);
    /// Changes a bulk array in place; clones it only when shared.
    void changeBulk(const Plug& arrayPlug, const std::function<void(BulkArray&)>& change);
    /// Number, payload and user's states of another slot, of a plug of the same type.
    void takeValue(const Plug& plug, const Slot& from);
    void setLocked(const Plug& plug, bool on);
    void setKeyable(const Plug& plug, bool on);
    void setChannelBox(const Plug& plug, bool on);

    // --- connections
    /// Makes one connection; the target must be free. Inserts no conversion nodes. One that closes
    /// a ring of plain plugs is told with a warning.
    Status connect(const Plug& source, const Plug& target);
    Status disconnect(const Plug& source, const Plug& target);

    void setDirty(const Plug& plug);
    /// Between the two a file is read: values and connections dirty nothing one by one, at the end
    /// everything is dirty. Names keep their letters beyond ASCII (Names::legalInFile).
    void beginReading() { m_reading = true; }
    void endReading();

    // --- those who follow
    void addListener(SceneListener* listener);
    void removeListener(SceneListener* listener);
    template <class F>
    void tell(F&& f) const {
        const std::vector<SceneListener*> listeners = m_listeners;
        for (SceneListener* l : listeners)
            f(*l);
    }
    Journal& journal() { return *m_journal; }

  private:
    friend class Evaluator;
    friend class Journal;
    void bringUpToDate(const Plug& plug) const override;
    NodeHandle add(std::unique_ptr<Node> node);
    void removeOne(NodeHandle handle);
    void collectBelow(NodeHandle top, std::vector<NodeHandle>& out) const;
    void breakLinks(Node& node);
    void leaveValues(NodeHandle node, std::uint64_t stamp);
    void link(const Plug& source, const Plug& target, std::uint64_t order, std::size_t place);
    void unlink(const Plug& source, const Plug& target, bool keepValue);
    std::size_t cut(const Plug& source, const Plug& target);
    void changed(const Plug& plug);
    void valueChanged(const Plug& plug);
    void recordValue(const Plug& plug, const Slot& slot);
    Slot* slotToWrite(const Plug& plug);
    void setState(const Plug& plug, std::uint32_t on, std::uint32_t off);
    std::string setName(Node& node, std::string name);
    void setParents(Node& node, const std::vector<NodeHandle>& parents);
    std::vector<edit::Place> placesOf(const Node& node) const;
    edit::Parents placeUnder(Node& node, const std::vector<edit::Place>& places);
    void recordParents(edit::Parents former);
    void parentsChanged(Node& node);
    AttrIndex putAttribute(Node& node, AttrInfo info, AttrIndex parent);
    AttrInfo takeLastAttribute(Node& node);
    void exchangeNames(Node& node, edit::AttributeNames& other);
    std::unique_ptr<Slot[]> takeElement(const Plug& element);
    void outputChanged(const Plug& output);
    void refreshWriters();
    void linkWriters(std::vector<Plug>& changedPlugs);
    std::vector<Plug> gatherWritten(const WriterDeclaration& said) const;
    void keepOwn(Node& node, const Plug& plug, double value);
    NodeHandle commonWorld(NodeHandle parent) const { return parent.isNull() ? m_world : parent; }

    std::uint64_t m_connections = 0;
    Document m_document;
    Selection m_selection;
    std::vector<SceneListener*> m_listeners;
    std::unique_ptr<Journal> m_journal;
    Journal* m_recorder = nullptr;  ///< null while nothing is recorded
    bool m_reading = false;
};

}  // namespace torvel
