#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "graph/data.h"

/// Array attributes of many small numbers, kept in one block instead of one slot each.
namespace torvel {

/// A number that no block had before; tells whether cached results of a block are still good.
std::uint64_t nextBlockRevision();

// How the statements of a block look.
inline constexpr std::size_t kNumbersPerRange = 166;  ///< elements of one statement
inline constexpr std::size_t kFacesPerRange = 500;

/// Appends the shortest text that reads back as the same number.
void appendNumber(std::string& out, float value);
void appendNumber(std::string& out, double value);
void appendNumber(std::string& out, std::int32_t value);
/// "\tsetAttr [-s size ]".attr[first:last]"[ -type "type"]"; no range part for one element.
void appendStatementHead(std::string& out, const std::string& attrName, std::size_t size,
                         std::int32_t first, std::int32_t last, const char* typeName);

/// Items of N numbers by logical index. Dense blocks (0..n-1 all there) keep no indices.
template <class Item, class T, int N>
class NumberBlock : public BulkArray {
  public:
    explicit NumberBlock(const char* fileType = nullptr) : m_fileType(fileType) {}

    const std::vector<Item>& items() const { return m_items; }
    bool isDense() const { return m_logical.empty(); }
    std::uint64_t revision() const { return m_revision; }
    void assign(std::vector<Item> items);
    void clear() { assign({}); }
    /// Null when the element does not exist.
    const Item* find(std::int32_t logical) const;

    std::size_t size() const override { return m_items.size(); }
    std::int32_t logicalAt(std::size_t physical) const override {
        return isDense() ? static_cast<std::int32_t>(physical) : m_logical[physical];
    }
    double number(const std::int32_t* path, int component) const override;
    void setNumber(const std::int32_t* path, int component, double value) override;
    std::shared_ptr<BulkArray> clone() const override {
        return std::make_shared<NumberBlock>(*this);
    }
    bool read(const std::int32_t* path, int level, bool inner, std::int64_t first,
              std::int64_t last, NumberSource& source, std::string& error) override;
    void write(const std::string& attrName, std::string& out) const override;

  private:
    Item& make(std::int32_t logical);
    void writeRange(const std::string& attrName, std::size_t from, std::size_t to, bool first,
                    std::string& out) const;

    const char* m_fileType;
    std::vector<Item> m_items;
    std::vector<std::int32_t> m_logical;  // ascending; empty while dense
    std::uint64_t m_revision = nextBlockRevision();
};

using PointBlock = NumberBlock<V3f, float, 3>;  ///< mesh vrts and pnts
using EdgeBlock =
    NumberBlock<std::array<std::int32_t, 3>, std::int32_t, 3>;  ///< first, second vertex, smooth
using DoubleBlock = NumberBlock<std::array<double, 1>, double, 1>;

extern template class NumberBlock<V3f, float, 3>;
extern template class NumberBlock<std::array<std::int32_t, 3>, std::int32_t, 3>;
extern template class NumberBlock<std::array<double, 1>, double, 1>;

/// The faces of a mesh as files hold them: edges of each face, and what else the file says of it
/// (holes, UVs, colours), which is given back unchanged.
class FaceBlock : public BulkArray {
  public:
    std::size_t size() const override { return m_start.size() - 1; }
    std::int32_t logicalAt(std::size_t physical) const override {
        return static_cast<std::int32_t>(physical);
    }
    double number(const std::int32_t*, int) const override { return 0.0; }
    void setNumber(const std::int32_t*, int, double) override {}
    std::shared_ptr<BulkArray> clone() const override { return std::make_shared<FaceBlock>(*this); }
    bool read(const std::int32_t* path, int level, bool inner, std::int64_t first,
              std::int64_t last, NumberSource& source, std::string& error) override;
    void write(const std::string& attrName, std::string& out) const override;

    void clear();
    /// Adds a face from its edges: e for edge e along its direction, -e - 1 against it.
    void addFace(const std::int32_t* edges, std::size_t count, std::string_view extra = {});
    /// Edge numbers of a face, signed as in addFace.
    const std::int32_t* edgesOf(std::size_t face) const { return m_edges.data() + m_start[face]; }
    std::size_t edgeCountOf(std::size_t face) const { return m_start[face + 1] - m_start[face]; }
    /// Vertices of all faces, for a mesh of `pointCount` points. Kept until faces, edges or the
    /// count change. Without a face, and `fault` telling the first one that is broken, when an edge
    /// does not exist or its vertex is none of the points.
    std::shared_ptr<const MeshTopology> topology(const EdgeBlock& edges, std::size_t pointCount,
                                                 std::string& fault) const;

  private:
    bool readFace(NumberSource& source, std::string& error);
    bool addVertices(std::size_t face, const EdgeBlock& edges, std::size_t pointCount,
                     MeshTopology& made) const;

    std::vector<std::int32_t> m_edges;
    std::vector<std::size_t> m_start{0};  // of each face in m_edges, and the end
    std::string m_extra;                  // all faces' further words
    std::vector<std::size_t> m_extraStart{0};
    mutable std::shared_ptr<const MeshTopology> m_topology;
    mutable std::uint64_t m_topologyEdges = 0;
    mutable std::size_t m_topologyPoints = 0;
};

}  // namespace torvel
