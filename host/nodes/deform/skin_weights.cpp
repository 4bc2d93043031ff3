#include "nodes/deform/skin_weights.h"

#include <algorithm>
#include <limits>

#include "nodes/deform/skin_deform.h"
#include "nodes/shape/mesh_blocks.h"

namespace torvel {
namespace {

// A list costs memory up to its highest vertex: nothing may claim more than this at once beyond
// what is there.
constexpr std::int64_t kMostNewVertices = 1 << 24;
constexpr std::size_t kVerticesPerRange = 500;
constexpr std::size_t kLeastWaste = 4096;
// What a number too large for a double leaves untouched.
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

}  // namespace

std::size_t WeightList::innerSize(std::int32_t vertex) const {
    return vertex < 0 ? 0 : count(static_cast<std::size_t>(vertex));
}

std::int32_t WeightList::innerLogicalAt(std::int32_t vertex, std::size_t physical) const {
    return physical < innerSize(vertex)
               ? begin(static_cast<std::size_t>(vertex))[physical].influence
               : -1;
}

double WeightList::number(const std::int32_t* path, int) const {
    return path[0] < 0 || path[1] < 0 ? 0.0 : weight(static_cast<std::size_t>(path[0]), path[1]);
}

void WeightList::setNumber(const std::int32_t* path, int, double value) {
    if (path[0] >= 0 && path[1] >= 0)
        set(static_cast<std::size_t>(path[0]), path[1], value);
}

void WeightList::resize(std::size_t count) {
    for (std::size_t v = count; v < m_rows.size(); ++v)
        m_waste += m_rows[v].room;
    m_rows.resize(count);
    touch();
}

const SkinWeight* WeightList::begin(std::size_t vertex) const {
    return count(vertex) > 0 ? m_entries.data() + m_rows[vertex].start : nullptr;
}

double WeightList::weight(std::size_t vertex, std::int32_t influence) const {
    const SkinWeight* at = begin(vertex);
    for (std::size_t i = 0; i < count(vertex); ++i)
        if (at[i].influence == influence)
            return at[i].weight;
    return 0.0;
}

double WeightList::sum(std::size_t vertex) const {
    double total = 0.0;
    const SkinWeight* at = begin(vertex);
    for (std::size_t i = 0; i < count(vertex); ++i)
        total += at[i].weight;
    return total;
}

void WeightList::touch() {
    m_revision = nextBlockRevision();
    m_compiled[0].reset();
    m_compiled[1].reset();
}

// Moves a full list to the end of the block, with room for more.
void WeightList::grow(Row& row) {
    const std::uint64_t start = m_entries.size();
    m_entries.resize(m_entries.size() + row.room + 4);
    std::copy_n(m_entries.begin() + static_cast<std::ptrdiff_t>(row.start), row.count,
                m_entries.begin() + static_cast<std::ptrdiff_t>(start));
    m_waste += row.room;
    row.start = start;
    row.room += 4;
}

void WeightList::pack() {
    if (m_waste < kLeastWaste || m_waste * 2 < m_entries.size())
        return;
    std::vector<SkinWeight> packed;
    packed.reserve(m_entries.size() - m_waste);
    for (Row& row : m_rows) {
        const auto from = m_entries.begin() + static_cast<std::ptrdiff_t>(row.start);
        row.start = packed.size();
        packed.insert(packed.end(), from, from + row.count);
        row.room = row.count;
    }
    m_entries = std::move(packed);
    m_waste = 0;
}

void WeightList::set(std::size_t vertex, std::int32_t influence, double weight) {
    if (influence < 0 || vertex >= m_rows.size() + static_cast<std::size_t>(kMostNewVertices))
        return;
    if (vertex >= m_rows.size())
        m_rows.resize(vertex + 1);
    touch();
    Row& row = m_rows[vertex];
    std::uint32_t at = 0;
    while (at < row.count && m_entries[row.start + at].influence < influence)
        ++at;
    const bool there = at < row.count && m_entries[row.start + at].influence == influence;
    if (weight == 0.0) {
        if (there) {
            std::copy(m_entries.begin() + static_cast<std::ptrdiff_t>(row.start + at + 1),
                      m_entries.begin() + static_cast<std::ptrdiff_t>(row.start + row.count),
                      m_entries.begin() + static_cast<std::ptrdiff_t>(row.start + at));
            --row.count;
        }
        return;
    }
    if (!there) {
        if (row.count == row.room)
            grow(row);
        const auto first = m_entries.begin() + static_cast<std::ptrdiff_t>(row.start);
        std::copy_backward(first + at, first + row.count, first + row.count + 1);
        ++row.count;
    }
    m_entries[row.start + at] = {influence, weight};
    pack();
}

void WeightList::assign(std::size_t vertex, std::vector<SkinWeight> weights) {
    weights.erase(
        std::remove_if(weights.begin(), weights.end(),
                       [](const SkinWeight& w) { return w.weight == 0.0 || w.influence < 0; }),
        weights.end());
    std::sort(weights.begin(), weights.end(),
              [](const SkinWeight& a, const SkinWeight& b) { return a.influence < b.influence; });
    if (vertex >= m_rows.size())
        m_rows.resize(vertex + 1);
    touch();
    Row& row = m_rows[vertex];
    if (weights.size() > row.room) {
        m_waste += row.room;
        row.start = m_entries.size();
        row.room = static_cast<std::uint32_t>(weights.size());
        m_entries.resize(m_entries.size() + weights.size());
    }
    std::copy(weights.begin(), weights.end(),
              m_entries.begin() + static_cast<std::ptrdiff_t>(row.start));
    row.count = static_cast<std::uint32_t>(weights.size());
    pack();
}

// "count influence weight ..." of one vertex. A list may be split over two statements: entries are
// added.
bool WeightList::readPairs(std::size_t vertex, NumberSource& source, std::string& error) {
    long long pairs = 0;
    bool good = source.integer(pairs) && pairs >= 0;
    for (long long i = 0; good && i < pairs; ++i) {
        long long influence = 0;
        double weight = kNoNumber;
        good = source.integer(influence) && influence >= 0 && influence <= INT32_MAX &&
               source.number(weight);
        if (good)
            set(vertex, static_cast<std::int32_t>(influence), weight);
    }
    if (!good)
        error = "the weights of vertex " + std::to_string(vertex) + " are damaged";
    return good;
}

bool WeightList::read(const std::int32_t* path, int level, bool inner, std::int64_t first,
                      std::int64_t last, NumberSource& source, std::string& error) {
    const bool outer = level == 0;
    const std::int64_t lastVertex = outer ? last : path[0];
    if (first < 0 || last < first || last > INT32_MAX || lastVertex < 0 ||
        (outer ? first : lastVertex) >=
            static_cast<std::int64_t>(m_rows.size()) + kMostNewVertices) {
        error = "the vertex of a weight is out of range";
        return false;
    }
    if (outer && !inner) {
        error = "weights need the attribute inside their list";
        return false;
    }
    for (std::int64_t at = first; at <= last; ++at) {
        if (outer) {
            if (static_cast<std::size_t>(at) >= m_rows.size())
                m_rows.resize(static_cast<std::size_t>(at) + 1);
            if (!readPairs(static_cast<std::size_t>(at), source, error))
                return false;
            continue;
        }
        double weight = kNoNumber;
        if (!source.number(weight)) {
            error = "a weight of vertex " + std::to_string(path[0]) + " is missing";
            return false;
        }
        set(static_cast<std::size_t>(path[0]), static_cast<std::int32_t>(at), weight);
    }
    return true;
}

void WeightList::write(const std::string& attrName, std::string& out) const {
    if (m_rows.empty())
        return;
    const std::string name = attrName[0] == '.' ? attrName : "." + attrName;
    out += "\tsetAttr -s " + std::to_string(size()) + " \"" + name + "\";\n";
    for (std::size_t from = 0; from < size(); from += kVerticesPerRange) {
        const std::size_t to = std::min(size(), from + kVerticesPerRange);
        out += "\tsetAttr \"" + name + "[" + std::to_string(from) + ":" + std::to_string(to - 1) +
               "].w\"";
        for (std::size_t v = from; v < to; ++v) {
            out += "\n\t\t" + std::to_string(count(v));
            for (std::size_t i = 0; i < count(v); ++i) {
                out += ' ';
                appendNumber(out, begin(v)[i].influence);
                out += ' ';
                appendNumber(out, begin(v)[i].weight);
            }
        }
        out += ";\n";
    }
}

const CompiledWeights& WeightList::compiled(bool normalized) const {
    std::shared_ptr<const CompiledWeights>& kept = m_compiled[normalized ? 1 : 0];
    if (!kept)
        kept = compileWeights(*this, normalized);
    return *kept;
}

}  // namespace torvel
