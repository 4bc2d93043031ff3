#include "nodes/shape/mesh_blocks.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <limits>
#include <numeric>

namespace torvel {

std::uint64_t nextBlockRevision() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

namespace {

template <class T>
void appendShortest(std::string& out, T value) {
    char text[40];
    const std::to_chars_result end = std::to_chars(text, text + sizeof text, value);
    out.append(text, end.ptr);
}

}  // namespace

void appendNumber(std::string& out, float value) {
    appendShortest(out, value);
}

void appendNumber(std::string& out, double value) {
    appendShortest(out, value);
}

void appendNumber(std::string& out, std::int32_t value) {
    appendShortest(out, value);
}

void appendStatementHead(std::string& out, const std::string& attrName, std::size_t size,
                         std::int32_t first, std::int32_t last, const char* typeName) {
    out += "\tsetAttr ";
    if (size > 0)
        out += "-s " + std::to_string(size) + " ";
    out += attrName.empty() || attrName[0] != '.' ? "\"." : "\"";
    out += attrName + "[" + std::to_string(first);
    if (last > first)
        out += ":" + std::to_string(last);
    out += "]\"";
    if (typeName)
        out += std::string(" -type \"") + typeName + "\"";
}

// --- numbers ---

template <class Item, class T, int N>
void NumberBlock<Item, T, N>::assign(std::vector<Item> items) {
    m_items = std::move(items);
    m_logical.clear();
    m_revision = nextBlockRevision();
}

template <class Item, class T, int N>
const Item* NumberBlock<Item, T, N>::find(std::int32_t logical) const {
    if (logical < 0)
        return nullptr;
    if (isDense())
        return static_cast<std::size_t>(logical) < m_items.size()
                   ? &m_items[static_cast<std::size_t>(logical)]
                   : nullptr;
    const auto it = std::lower_bound(m_logical.begin(), m_logical.end(), logical);
    return it != m_logical.end() && *it == logical
               ? &m_items[static_cast<std::size_t>(it - m_logical.begin())]
               : nullptr;
}

template <class Item, class T, int N>
Item& NumberBlock<Item, T, N>::make(std::int32_t logical) {
    m_revision = nextBlockRevision();
    if (const Item* there = find(logical))
        return const_cast<Item&>(*there);
    Item zero;
    for (int i = 0; i < N; ++i)
        zero[static_cast<unsigned char>(i)] = T(0);
    if (isDense() && static_cast<std::size_t>(logical) == m_items.size()) {
        m_items.push_back(zero);
        return m_items.back();
    }
    if (isDense()) {
        m_logical.resize(m_items.size());
        std::iota(m_logical.begin(), m_logical.end(), 0);
    }
    const auto place = std::lower_bound(m_logical.begin(), m_logical.end(), logical);
    const auto offset = place - m_logical.begin();
    m_logical.insert(place, logical);
    return *m_items.insert(m_items.begin() + offset, zero);
}

template <class Item, class T, int N>
double NumberBlock<Item, T, N>::number(const std::int32_t* path, int component) const {
    const Item* item = component >= 0 && component < N ? find(path[0]) : nullptr;
    return item ? static_cast<double>((*item)[static_cast<unsigned char>(component)]) : 0.0;
}

template <class Item, class T, int N>
void NumberBlock<Item, T, N>::setNumber(const std::int32_t* path, int component, double value) {
    if (path[0] >= 0 && component >= 0 && component < N)
        make(path[0])[static_cast<unsigned char>(component)] = static_cast<T>(value);
}

template <class Item, class T, int N>
bool NumberBlock<Item, T, N>::read(const std::int32_t*, int, bool, std::int64_t first,
                                   std::int64_t last, NumberSource& source, std::string& error) {
    if (first < 0 || last < first || last > INT32_MAX) {
        error = "bad range of elements";
        return false;
    }
    for (std::int64_t at = first; at <= last; ++at) {
        double values[N];
        for (double& value : values) {
            value =
                std::numeric_limits<double>::quiet_NaN();  // left by numbers too large for a double
            if (source.number(value))
                continue;
            error = "a number is missing at element " + std::to_string(at);
            return false;
        }
        Item& item = make(static_cast<std::int32_t>(at));
        for (int i = 0; i < N; ++i)
            item[static_cast<unsigned char>(i)] = static_cast<T>(values[i]);
    }
    return true;
}

template <class Item, class T, int N>
void NumberBlock<Item, T, N>::writeRange(const std::string& attrName, std::size_t from,
                                         std::size_t to, bool first, std::string& out) const {
    appendStatementHead(out, attrName, first ? size() : 0, logicalAt(from), logicalAt(to - 1),
                        m_fileType);
    out += ' ';
    for (std::size_t i = from; i < to; ++i) {
        if (i > from && (i - from) % 4 == 0)
            out += "\n\t\t";
        for (int c = 0; c < N; ++c) {
            out += ' ';
            appendNumber(out, static_cast<T>(m_items[i][static_cast<unsigned char>(c)]));
        }
    }
    out += ";\n";
}

template <class Item, class T, int N>
void NumberBlock<Item, T, N>::write(const std::string& attrName, std::string& out) const {
    for (std::size_t from = 0; from < size();) {
        std::size_t to = from + 1;
        while (to < size() && to - from < kNumbersPerRange &&
               logicalAt(to) == logicalAt(to - 1) + 1)
            ++to;
        writeRange(attrName, from, to, from == 0, out);
        from = to;
    }
}

template class NumberBlock<V3f, float, 3>;
template class NumberBlock<std::array<std::int32_t, 3>, std::int32_t, 3>;
template class NumberBlock<std::array<double, 1>, double, 1>;

// --- faces ---

void FaceBlock::clear() {
    *this = FaceBlock();
}

void FaceBlock::addFace(const std::int32_t* edges, std::size_t count, std::string_view extra) {
    m_edges.insert(m_edges.end(), edges, edges + count);
    m_start.push_back(m_edges.size());
    m_extra += extra;
    m_extraStart.push_back(m_extra.size());
    m_topology.reset();
}

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Integers up to the next word are copied as they stand, single blanks between them.
void copyIntegers(NumberSource& source, std::string& out) {
    for (long long value = 0; source.integer(value);)
        out += " " + std::to_string(value);
}

}  // namespace

bool FaceBlock::readFace(NumberSource& source, std::string& error) {
    const std::string face = std::to_string(size());
    long long count = 0;
    if (source.word() != "f" || !source.integer(count) || count < 0 || count > 1000000) {
        error = "polyFaces: face " + face + " does not begin with f and a count";
        return false;
    }
    for (long long i = 0; i < count; ++i) {
        long long edge = 0;
        if (!source.integer(edge) || edge < INT32_MIN || edge > INT32_MAX) {
            error = "polyFaces: an edge of face " + face + " is missing";
            return false;
        }
        m_edges.push_back(static_cast<std::int32_t>(edge));
    }
    for (;;) {
        source.skipBlanks();
        const std::string_view rest = source.rest();
        if (rest.empty() || !isLetter(rest[0]) ||
            (rest[0] == 'f' && (rest.size() < 2 || !isLetter(rest[1]))))
            break;
        m_extra += "\n\t\t" + std::string(source.word());
        copyIntegers(source, m_extra);
    }
    m_start.push_back(m_edges.size());
    m_extraStart.push_back(m_extra.size());
    return true;
}

bool FaceBlock::read(const std::int32_t*, int, bool, std::int64_t first, std::int64_t last,
                     NumberSource& source, std::string& error) {
    if (first == 0 && size() > 0)
        clear();  // given anew
    if (first != static_cast<std::int64_t>(size())) {
        error = "polyFaces: faces have to come in order";
        return false;
    }
    m_topology.reset();
    for (std::int64_t at = first; at <= last; ++at)
        if (!readFace(source, error))
            return false;
    return true;
}

void FaceBlock::write(const std::string& attrName, std::string& out) const {
    for (std::size_t from = 0; from < size(); from += kFacesPerRange) {
        const std::size_t to = std::min(size(), from + kFacesPerRange);
        const std::size_t head = out.size() + std::string_view("\tsetAttr ").size();
        appendStatementHead(out, attrName, 0, static_cast<std::int32_t>(from),
                            static_cast<std::int32_t>(to - 1), "polyFaces");
        if (from == 0)
            out.insert(head, "-s " + std::to_string(size()) + " -ch " +
                                 std::to_string(m_edges.size()) + " ");
        out += ' ';
        for (std::size_t face = from; face < to; ++face) {
            out += "\n\t\tf " + std::to_string(edgeCountOf(face));
            for (std::size_t e = 0; e < edgeCountOf(face); ++e) {
                out += ' ';
                appendNumber(out, edgesOf(face)[e]);
            }
            out.append(m_extra, m_extraStart[face], m_extraStart[face + 1] - m_extraStart[face]);
        }
        out += ";\n";
    }
}

bool FaceBlock::addVertices(std::size_t face, const EdgeBlock& edges, std::size_t pointCount,
                            MeshTopology& made) const {
    const auto isPoint = [&](std::int32_t vertex) {
        return vertex >= 0 && static_cast<std::size_t>(vertex) < pointCount;
    };
    for (std::size_t i = 0; i < edgeCountOf(face); ++i) {
        const std::int32_t signedEdge = edgesOf(face)[i];
        const bool along = signedEdge >= 0;
        const auto* edge = edges.find(along ? signedEdge : -(signedEdge + 1));
        if (!edge || !isPoint((*edge)[0]) || !isPoint((*edge)[1]))
            return false;
        made.faceVertices.push_back((*edge)[along ? 0u : 1u]);
    }
    made.faceCounts.push_back(static_cast<std::int32_t>(edgeCountOf(face)));
    return true;
}

std::shared_ptr<const MeshTopology> FaceBlock::topology(const EdgeBlock& edges,
                                                        std::size_t pointCount,
                                                        std::string& fault) const {
    if (m_topology && m_topologyEdges == edges.revision() && m_topologyPoints == pointCount)
        return m_topology;
    auto made = std::make_shared<MeshTopology>();
    made->faceCounts.reserve(size());
    made->faceVertices.reserve(m_edges.size());
    for (std::size_t face = 0; face < size(); ++face)
        if (!addVertices(face, edges, pointCount, *made)) {
            fault = "face " + std::to_string(face) + " has an edge or a vertex that does not exist";
            made = std::make_shared<MeshTopology>();
            break;
        }
    m_topology = std::move(made);
    m_topologyEdges = edges.revision();
    m_topologyPoints = pointCount;
    return m_topology;
}

}  // namespace torvel
