#pragma once

#include <memory>
#include <string>
#include <vector>

#include "graph/data.h"
#include "graph/evaluation_plan.h"
#include "graph/node_type.h"

namespace torvel {

enum SlotState : std::uint32_t {
    kClean = 1u << 0,  ///< of an output: up to date (an untouched output is not)
    kComputing = 1u << 1,
    kLocked = 1u << 2,
    kSet = 1u << 3,  ///< a value was given (even if equal to the default)
    kKeyableOn = 1u << 4,
    kKeyableOff = 1u << 5,
    kChannelBoxOn = 1u << 6,
    kChannelBoxOff = 1u << 7,
    kReported = 1u << 8  ///< cycle told once
};

struct Links {
    Plug source;                ///< null when nothing feeds the plug
    std::vector<Plug> targets;  ///< plugs it feeds, in connection order
    std::uint64_t order = 0;    ///< number of the incoming connection, ascending with creation
};

struct ArrayStore;

/// State of one attribute (or one array element's part). Numbers of every kind live in `number`
/// (angles in radians, lengths in centimetres, floats rounded to float); everything else in `data`.
struct Slot {
    double number = 0.0;
    PayloadPtr data;
    std::unique_ptr<Links> links;
    std::unique_ptr<ArrayStore> array;  ///< of an array attribute without bulk storage
    std::uint32_t state = 0;
};

/// Elements of an array in ascending logical order; physical index = position.
struct ArrayStore {
    std::vector<std::int32_t> logical;
    std::vector<std::unique_ptr<Slot[]>> elements;

    /// Position of a logical index, -1 when it does not exist. Constant time for dense arrays.
    int find(std::int32_t logicalIndex) const;
};

/// Dynamic attributes of one node.
struct AttrTable {
    std::vector<AttrInfo> attrs;  ///< the node's own; indices continue those of the type
    std::uint32_t slotCount = 0;  ///< including the type's
    std::unordered_map<std::string, AttrIndex> byName;
};

/// What a node carries for files and users beside its name, its place and its values.
struct NodeFacts {
    std::string uuid;
    std::string unknownType;  ///< real type name of an `unknown` node
    std::vector<std::string>
        keptText;  ///< file statements for attributes the host does not know, in order
    std::vector<std::string> keptHead;  ///< lockNode and other statements to write after the block
    bool locked = false;
    bool isDefault = false;  ///< made by the scene itself (time1, persp ...)
    bool isShared = false;   ///< files make it with -s: one that exists already is used instead
};

/// A node. Slots come in pages that are made on first use: untouched attributes cost nothing and
/// read as defaults.
struct Node : NodeFacts {
    static constexpr std::uint32_t kPageSize = 8;

    NodeHandle self;
    const NodeType* type = nullptr;
    std::string name;  ///< with namespace, without path
    std::vector<std::unique_ptr<Slot[]>> pages;
    std::unique_ptr<AttrTable> dynamic;
    std::uint64_t created = 0;        ///< ascends with creation
    mutable std::uint64_t visit = 0;  ///< generation stamp of the last walk that saw it
    std::uint32_t linkedInputs =
        0;  ///< incoming connections: nodes without any need no search for sources
    std::vector<Plug> feeding;  ///< plugs that feed others, in the order they began to
    std::vector<AttrIndex>
        linkedRoots;  ///< root attributes at or below which a connection came in at some time
    std::unique_ptr<WriterLinks> writerLinks;  ///< ties to writers; null for nearly every node
    std::unique_ptr<EvaluationPlan> plan;      ///< null before the first evaluation

    // DAG part; empty for other nodes. A top node has the world as its only parent.
    std::vector<NodeHandle> parents;
    std::vector<NodeHandle> children;

    // Inline: every plug question passes here.
    std::size_t attrCount() const {
        return type->attrs.size() + (dynamic ? dynamic->attrs.size() : 0);
    }
    const AttrInfo& attr(AttrIndex index) const {
        const std::size_t own = type->attrs.size();
        return index < own ? type->attrs[index] : dynamic->attrs[index - own];
    }
    /// By long or short name, dynamic ones included; kNoAttr when there is none.
    AttrIndex findAttr(std::string_view attrName) const;
    bool isDag() const { return type->is(kDagType); }
    AttrIndex rootOf(
        AttrIndex index) const;  ///< the attribute above it that has no parent, or itself
    /// False: nothing comes in at the attribute, above or below it.
    bool mayBeLinked(AttrIndex index) const;

    /// Slot of an attribute without an array above it (an array attribute's own slot holds its
    /// elements).
    Slot& slot(AttrIndex index);
    /// Null while untouched.
    const Slot* peek(AttrIndex index) const {
        const std::uint32_t position = attr(index).slot;
        const std::size_t page = position / kPageSize;
        return page < pages.size() && pages[page] ? &pages[page][position % kPageSize] : nullptr;
    }

    Node();
    ~Node();
};

inline AttrIndex Node::rootOf(AttrIndex index) const {
    while (attr(index).parent != kNoAttr)
        index = attr(index).parent;
    return index;
}

inline bool Node::mayBeLinked(AttrIndex index) const {
    if (linkedInputs == 0)
        return false;
    const AttrIndex root = rootOf(index);
    for (AttrIndex linked : linkedRoots)
        if (linked == root)
            return true;
    return false;
}

}  // namespace torvel
