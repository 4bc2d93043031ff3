#pragma once

#include "graph/hierarchy.h"
#include "graph/names.h"

namespace torvel {

/// The third layer of a scene: names of nodes, attributes, plugs and where their values stand.
class PlugStore : public Hierarchy {
  public:
    Names& names() { return m_names; }
    const Names& names() const { return m_names; }

    const AttrInfo& info(const Plug& plug) const;
    /// Resolves "translateX", "matrix[3]", "input[0].inputGeometry", "t.tx"; null plug when it does
    /// not exist. An element need not exist yet. An array named on the way without an index means
    /// its element 0.
    Plug findPlug(NodeHandle handle, std::string_view attrPath) const;
    /// "node.attr[3].child" with long (or short) names and the node's shortest unique path.
    std::string plugName(const Plug& plug, bool longNames = true) const;
    std::string attrPath(const Plug& plug, bool longNames) const;  ///< without the node
    Plug child(const Plug& plug, int number) const;                ///< of a compound
    /// The compound above, or the array of an element; null at the root.
    Plug parentPlug(const Plug& plug) const;
    Plug element(const Plug& arrayPlug, std::int32_t logical) const;
    bool isElement(const Plug& plug) const;             ///< names one element of an array attribute
    bool isArrayPlug(const Plug& plug) const;           ///< the array itself
    std::int32_t logicalIndex(const Plug& plug) const;  ///< of an element; -1 otherwise
    std::size_t elementCount(const Plug& arrayPlug) const;
    Plug elementAt(const Plug& arrayPlug, std::size_t physical) const;
    std::vector<std::int32_t> elementIndices(const Plug& arrayPlug) const;
    /// One past the highest used; behind the last possible one the first gap.
    std::int32_t nextAvailable(const Plug& arrayPlug) const;

    const Slot* peekSlot(const Plug& plug) const;  ///< null while untouched or missing
    Slot* slotFor(const Plug& plug);  ///< makes elements on the way; null for a bulk or dead plug
    /// The block of a bulk array, for reading; null for other plugs.
    const BulkArray* bulk(const Plug& arrayPlug) const;

  protected:
    explicit PlugStore(const TypeRegistry& types) : Hierarchy(types), m_names(*this) {}

    Names m_names;
};

}  // namespace torvel
