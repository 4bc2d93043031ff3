#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "graph/data.h"

namespace torvel {

struct CompiledWeights;

/// One influence of a vertex.
struct SkinWeight {
    std::int32_t influence;  ///< logical index in skinCluster.matrix
    double weight;
};

/// The weights of a skin: for each vertex a short list by ascending influence, zeros left out. All
/// lists lie in one block; a list that outgrows its place moves to the end, and the block is packed
/// when half of it is waste.
class WeightList : public BulkArray {
  public:
    std::size_t size() const override { return m_rows.size(); }
    std::int32_t logicalAt(std::size_t physical) const override {
        return static_cast<std::int32_t>(physical);
    }
    std::size_t innerSize(std::int32_t vertex) const override;
    std::int32_t innerLogicalAt(std::int32_t vertex, std::size_t physical) const override;
    double number(const std::int32_t* path, int component) const override;
    void setNumber(const std::int32_t* path, int component, double value) override;
    std::shared_ptr<BulkArray> clone() const override {
        return std::make_shared<WeightList>(*this);
    }
    bool read(const std::int32_t* path, int level, bool inner, std::int64_t first,
              std::int64_t last, NumberSource& source, std::string& error) override;
    void write(const std::string& attrName, std::string& out) const override;

    /// Vertices 0..count-1 exist; further ones go.
    void resize(std::size_t count);
    /// Weights of a vertex, ascending influence; null and 0 when it has none. Valid until the next
    /// edit.
    const SkinWeight* begin(std::size_t vertex) const;
    std::size_t count(std::size_t vertex) const {
        return vertex < m_rows.size() ? m_rows[vertex].count : 0;
    }
    double weight(std::size_t vertex, std::int32_t influence) const;
    double sum(std::size_t vertex) const;
    /// Zero takes the entry away.
    void set(std::size_t vertex, std::int32_t influence, double weight);
    /// Takes over a whole list; need not be sorted, zeros are dropped.
    void assign(std::size_t vertex, std::vector<SkinWeight> weights);
    /// Changes every time the weights do.
    std::uint64_t revision() const { return m_revision; }

    /// The table the deformation works from, kept until the weights change. `normalized` divides
    /// each list by its sum.
    const CompiledWeights& compiled(bool normalized) const;

  private:
    struct Row {
        std::uint64_t start = 0;
        std::uint32_t count = 0;
        std::uint32_t room = 0;
    };
    void touch();
    void grow(Row& row);
    void pack();
    bool readPairs(std::size_t vertex, NumberSource& source, std::string& error);

    std::vector<Row> m_rows;
    std::vector<SkinWeight> m_entries;
    std::size_t m_waste = 0;
    std::uint64_t m_revision = 0;
    mutable std::shared_ptr<const CompiledWeights> m_compiled[2];
};

}  // namespace torvel
