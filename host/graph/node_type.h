#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/status.h"
#include "graph/attribute.h"
#include "graph/writers.h"

namespace torvel {

class Evaluation;
class Scene;
struct Node;

enum TypeFlag : std::uint32_t {
    kDagType = 1u << 0,
    kTransformType = 1u << 1,
    kShapeType = 1u << 2,
    kAbstractType = 1u << 3,
    kDeformerType = 1u << 4,
    kUniqueType =
        1u << 5,  ///< a default node of the scene (time1, ikSystem); not written as createNode
    kConstraintType = 1u << 6,
    kHistoryMaker = 1u << 7  ///< poly*, makeNurb*: deleted with the shape it makes
};

struct AffectRow {
    const char* from;  ///< long name
    const char* to;    ///< blank-separated long names of outputs
};

/// One node type as data. Derived types inherit attributes, affects and flags of `base`.
struct NodeTypeRow {
    const char* name;
    const char* base;         ///< "" for a root type
    int apiType;              ///< MFn number
    const char* apiTypeName;  ///< "kTransform"
    const AttrRow* attrs;
    std::size_t attrCount;
    const AffectRow* affects;
    std::size_t affectCount;
    /// Computes the output `evaluation.output()` (it may set further outputs at once). Null:
    /// inherited, then none.
    void (*evaluate)(Evaluation& evaluation);
    std::uint32_t flags;
    /// Called once after creation (defaults that are no plain numbers); may be null; the base's
    /// runs first.
    void (*created)(Scene& scene, Node& node);
    /// Of a type whose nodes write plugs of other nodes; null: inherited, then none.
    DeclareWrites declareWrites = nullptr;
};

/// DAG attributes that the core ties to the parent's world matrix; all kNoAttr on other nodes.
struct WorldAttrs {
    AttrIndex world = kNoAttr, worldInverse = kNoAttr, parent = kNoAttr, parentInverse = kNoAttr;
};

struct NodeType {
    std::string name;
    const NodeType* base = nullptr;
    int apiType = 0;
    std::string apiTypeName;
    std::uint32_t flags = 0;
    std::vector<AttrInfo> attrs;
    std::uint32_t slotCount = 0;
    std::unordered_map<std::string, AttrIndex> byName;  ///< long and short names
    void (*evaluate)(Evaluation&) = nullptr;
    std::vector<void (*)(Scene&, Node&)> created;
    DeclareWrites declareWrites = nullptr;
    WorldAttrs world;

    bool is(std::uint32_t flag) const { return (flags & flag) != 0; }
    AttrIndex find(const std::string& attrName) const;  ///< kNoAttr when there is none
    /// This type or one of its bases bears the name.
    bool derivesFrom(std::string_view typeName) const;
    /// This type or one of its bases has the MFn number.
    bool hasFn(int fn) const;
};

/// All node types, in table order (bases before derived types).
class TypeRegistry {
  public:
    /// Adds the rows in order. A base that is missing or a name taken twice is a fault of the
    /// tables: asserts.
    void add(const NodeTypeRow* const* rows, std::size_t count);
    const NodeType* find(std::string_view name) const;  ///< null when unknown
    const std::vector<std::unique_ptr<NodeType>>& all() const { return m_types; }

  private:
    std::vector<std::unique_ptr<NodeType>> m_types;
    std::unordered_map<std::string, NodeType*> m_byName;
};

/// Lays out one attribute after those already in `attrs`: index, array depth, slot. Used for tables
/// and addAttr. `first` is the index of attrs[0] (dynamic attributes follow those of the type);
/// `parent` stands in `attrs`, too.
AttrIndex layOutAttribute(std::vector<AttrInfo>& attrs, std::uint32_t& slotCount, AttrInfo info,
                          AttrIndex parent, AttrIndex first = 0);

}  // namespace torvel
