#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "graph/scene.h"

namespace torvel {

/// The closed list of primitive changes. Each holds the other state of what it names; applying one
/// exchanges the two, so the same data leads back and forth. Payloads are shared, never copied.
namespace edit {

inline constexpr std::size_t kLast = ~std::size_t(0);

/// A node that came or went; `body` while it is out of the scene. Its links and parents are
/// changes of their own.
struct Exists {
    NodeHandle node;
    std::unique_ptr<Node> body;
};
struct Name {
    NodeHandle node;
    std::string other;
};
struct Facts {
    NodeHandle node;
    NodeFacts other;
};
/// A parent and the position among its children.
struct Place {
    NodeHandle parent;
    std::size_t place = kLast;
};
struct Parents {
    NodeHandle node;
    std::vector<Place> other;
};
/// A number, a payload or the block of a bulk array. `isSet` off: the plug reads as its default.
struct Value {
    Plug plug;
    double number;
    PayloadPtr data;
    bool isSet;
};
/// Locked, keyable, in the channel box (SlotState).
struct State {
    Plug plug;
    std::uint32_t other;
};
/// An array element that came or went; `block` while it is out of the array.
struct Element {
    Plug plug;
    std::unique_ptr<Slot[]> block;
};
/// The last attribute of a node, added; `info` while it is out of the node.
struct Attribute {
    Plug plug;
    std::unique_ptr<AttrInfo> info;
};
/// Names and flags of an attribute: deleting hides it under no name.
struct AttributeNames {
    Plug plug;
    std::string longName, shortName;
    std::uint32_t flags;
};
/// Limits, flags and texts of an added attribute.
struct AttributeInfo {
    Plug plug;
    AttrInfo other;
};
struct Link {
    Plug source, target;
    bool isMade;
    std::uint64_t order;  ///< these two while it is not made
    std::size_t place;    ///< among the targets of the source
};
struct Text {
    Document other;
};
struct Chosen {
    std::vector<SelectionItem> other;
};

}  // namespace edit

using Edit = std::variant<edit::Exists, edit::Name, edit::Facts, edit::Parents, edit::Value,
                          edit::State, edit::Element, edit::Attribute, edit::AttributeNames,
                          edit::AttributeInfo, edit::Link, edit::Text, edit::Chosen>;

/// What undo and redo need. Off at first, then nothing is kept and nothing costs time. Changes are
/// grouped in named chunks; one made outside of every EditScope is a chunk of its own.
class Journal {
  public:
    explicit Journal(Scene& scene) : m_scene(scene) {}

    bool isOn() const { return m_scene.m_recorder != nullptr; }
    void setOn(bool on);  ///< off forgets everything
    void clear();
    /// Names of what can be undone and redone, oldest first.
    std::vector<std::string> undoNames() const;
    std::vector<std::string> redoNames() const;
    /// Lead one chunk back or forth; false when there is none or a chunk is open.
    bool undo();
    bool redo();

    /// Opens and closes a chunk; the outermost pair counts and gives the name.
    void open(const std::string& name);
    void close();
    /// For Scene: a change just made, holding the state before. Ends the way forth.
    void add(Edit edit);

  private:
    struct Chunk {
        std::string name;
        std::vector<Edit> edits;
    };
    bool move(std::vector<Chunk>& from, std::vector<Chunk>& to);
    bool repeatsLast(const Edit& edit) const;
    void exchange(edit::Exists& e);
    void exchange(edit::Name& e);
    void exchange(edit::Facts& e);
    void exchange(edit::Parents& e);
    void exchange(edit::Value& e);
    void exchange(edit::State& e);
    void exchange(edit::Element& e);
    void exchange(edit::Attribute& e);
    void exchange(edit::AttributeNames& e);
    void exchange(edit::AttributeInfo& e);
    void exchange(edit::Link& e);
    void exchange(edit::Text& e);
    void exchange(edit::Chosen& e);

    Scene& m_scene;
    std::vector<Chunk> m_done, m_undone;
    int m_depth = 0;
};

/// Names the changes made while it lives: one step for undo.
class EditScope {
  public:
    EditScope(Scene& scene, const std::string& name) : m_journal(scene.journal()) {
        m_journal.open(name);
    }
    ~EditScope() { m_journal.close(); }
    EditScope(const EditScope&) = delete;
    EditScope& operator=(const EditScope&) = delete;

  private:
    Journal& m_journal;
};

}  // namespace torvel
