#include "graph/names.h"

#include <algorithm>

#include "graph/hierarchy.h"

namespace torvel {
namespace {

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isBeyondAscii(char c) {
    return static_cast<unsigned char>(c) >= 0x80;
}

std::string legalPart(std::string_view part, bool inFile) {
    const auto mayBegin = [inFile](char c) { return isLetter(c) || (inFile && isBeyondAscii(c)); };
    while (!part.empty() && !mayBegin(part.front()))
        part.remove_prefix(1);
    std::string out(part);
    for (char& c : out)
        if (!mayBegin(c) && !isDigit(c))
            c = '_';
    return out;
}

std::string legalName(std::string_view wanted, bool inFile) {
    std::string out;
    for (std::string_view rest = wanted;;) {
        const std::size_t colon = rest.find(':');
        const std::string part = legalPart(rest.substr(0, colon), inFile);
        if (!part.empty())
            out += (out.empty() ? "" : ":") + part;
        if (colon == std::string_view::npos)
            return out;
        rest.remove_prefix(colon + 1);
    }
}

std::vector<std::string_view> splitPath(std::string_view text) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t bar = text.find('|');
        const std::string_view part = text.substr(0, bar);
        if (!part.empty())
            parts.push_back(part);
        if (bar == std::string_view::npos)
            break;
        text.remove_prefix(bar + 1);
    }
    return parts;
}

// A leading colon names the root namespace.
std::string_view withoutRootColon(std::string_view name) {
    return !name.empty() && name.front() == ':' ? name.substr(1) : name;
}

std::uint64_t childKey(NodeHandle parent, std::string_view name) {
    return std::hash<std::string_view>()(name) ^ (parent.index + 1) * 0x9E3779B97F4A7C15ull;
}

}  // namespace

// "arm_01" gives stem "arm_", 1 and width 2; no digits: number 0, width 0.
struct Names::Numbered {
    std::string stem;
    unsigned long long number = 0;
    std::size_t width = 0;
};

Names::Numbered Names::splitNumber(const std::string& name) {
    std::size_t at = name.size();
    while (at > 1 && isDigit(name[at - 1]) && name.size() - at < 18)
        --at;
    Numbered out{name.substr(0, at), 0, name.size() - at};
    if (out.width)
        out.number = std::stoull(name.substr(at));
    return out;
}

std::string Names::join(const Numbered& base, unsigned long long number) {
    std::string digits = std::to_string(number);
    if (digits.size() < base.width)
        digits.insert(0, base.width - digits.size(), '0');
    return base.stem + digits;
}

// Names that are counted up together: those of one stem and one padding.
std::string Names::rowOf(const Numbered& base) {
    return base.width < 2 ? base.stem : base.stem + '#' + std::to_string(base.width);
}

std::string Names::legal(std::string_view wanted) {
    return legalName(wanted, false);
}

std::string Names::legalInFile(std::string_view wanted) {
    return legalName(wanted, true);
}

std::string_view Names::trimmed(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    while (text.size() > 1 && text[0] == '|' && text[1] == '|')
        text.remove_prefix(1);
    return text;
}

bool Names::matches(std::string_view pattern, std::string_view name) {
    std::size_t p = 0, n = 0, star = std::string_view::npos, mark = 0;
    while (n < name.size()) {
        if (p < pattern.size() &&
            (pattern[p] == name[n] || (pattern[p] == '?' && name[n] != ':'))) {
            ++p;
            ++n;
        } else if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            mark = n;
        } else if (star != std::string_view::npos && name[mark] != ':') {
            p = star + 1;
            n = ++mark;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

const Names::Leaf* Names::leaf(std::string_view name) const {
    thread_local std::string key;  // reused: look-ups allocate nothing
    key.assign(name);
    const auto it = m_byLeaf.find(key);
    return it == m_byLeaf.end() ? nullptr : &it->second;
}

bool Names::anywhere(const std::string& name, NodeHandle self) const {
    const Leaf* known = leaf(name);
    return known && std::any_of(known->nodes.begin(), known->nodes.end(),
                                [self](NodeHandle n) { return n != self; });
}

template <class F>
void Names::forEachChild(NodeHandle parent, std::string_view name, F&& f) const {
    const auto range = m_byParent.equal_range(childKey(parent, name));
    for (auto it = range.first; it != range.second; ++it) {
        const Node* node = m_scene.node(it->second);
        if (node && node->name == name &&
            std::find(node->parents.begin(), node->parents.end(), parent) != node->parents.end())
            f(it->second);
    }
}

NodeHandle Names::childNamed(NodeHandle parent, std::string_view name) const {
    NodeHandle found;
    forEachChild(parent, name, [&](NodeHandle child) { found = child; });
    return found;
}

bool Names::taken(const std::string& name, NodeHandle parent, bool isDag, NodeHandle self) const {
    const Leaf* known = isDag ? leaf(name) : nullptr;
    if (!isDag)
        return anywhere(name, self);
    if (!known)
        return false;
    bool found = known->notDag > 0;
    forEachChild(parent, name, [&](NodeHandle child) { found = found || child != self; });
    return found;
}

// The first number from `from` on whose name nobody bears. Runs of taken numbers are remembered, so
// that a thousand namesakes in a row ask a thousand questions, not half a million.
unsigned long long Names::firstFree(const Numbered& base, unsigned long long from) const {
    auto& runs = m_takenRuns[rowOf(base)];
    unsigned long long first = from, number = from;
    auto next = runs.upper_bound(from);
    if (next != runs.begin() && std::prev(next)->second >= from) {
        --next;
        first = next->first;
    }
    while (true) {
        if (next != runs.end() && next->first <= number) {
            number = std::max(number, next->second);
            next = runs.erase(next);
        } else if (anywhere(join(base, number), {})) {
            ++number;
        } else {
            break;
        }
    }
    if (number > first)
        runs[first] = number;
    return number;
}

std::string Names::unique(const std::string& legalName, NodeHandle parent, bool isDag,
                          NodeHandle self) const {
    if (!taken(legalName, parent, isDag, self))
        return legalName;
    const Numbered base = splitNumber(legalName);
    const unsigned long long number = firstFree(base, base.number + 1);
    if (const Node* node = m_scene.node(self)) {  // its own name is free for itself
        const Numbered own = splitNumber(node->name);
        if (own.number > base.number && own.number < number &&
            join(base, own.number) == node->name && !anywhere(node->name, self))
            return node->name;
    }
    return join(base, number);
}

std::string Names::numbered(const std::string& stem) const {
    if (!stem.empty() && isDigit(stem.back()))  // its numbers read as part of a longer one
        for (unsigned long long number = 1;; ++number)
            if (!anywhere(stem + std::to_string(number), {}))
                return stem + std::to_string(number);
    return stem + std::to_string(firstFree({stem, 0, 0}, 1));
}

bool Names::endsWithPath(NodeHandle node, const std::vector<std::string_view>& parts,
                         bool fromWorld) const {
    const int count = m_scene.instanceCount(node);
    for (int instance = 0; instance < count; ++instance) {
        const std::vector<NodeHandle> path = m_scene.path(node, instance);
        if (path.size() < parts.size() || (fromWorld && path.size() != parts.size()))
            continue;
        bool same = true;
        for (std::size_t i = 0; same && i < parts.size(); ++i)
            same =
                matches(parts[parts.size() - 1 - i], m_scene.node(path[path.size() - 1 - i])->name);
        if (same)
            return true;
    }
    return false;
}

// Whether parts[count - 1] .. parts[0] stand above the node, along any of its paths.
bool Names::leadsUp(NodeHandle handle, const Parts& parts, std::size_t count,
                    bool fromWorld) const {
    std::vector<NodeHandle> level{handle}, above;
    for (std::size_t i = count; i-- > 0 && !level.empty(); level.swap(above)) {
        above.clear();
        for (NodeHandle at : level)
            for (NodeHandle parent : m_scene.node(at)->parents)
                if (parent != m_scene.world() && m_scene.node(parent)->name == parts[i] &&
                    std::find(above.begin(), above.end(), parent) == above.end())
                    above.push_back(parent);
    }
    const auto isTop = [this](NodeHandle at) {
        const std::vector<NodeHandle>& parents = m_scene.node(at)->parents;
        return std::find(parents.begin(), parents.end(), m_scene.world()) != parents.end();
    };
    return fromWorld ? std::any_of(level.begin(), level.end(), isTop) : !level.empty();
}

// What parts[next] .. stand for below the node.
void Names::descend(NodeHandle from, const Parts& parts, std::size_t next,
                    std::vector<NodeHandle>& out) const {
    std::vector<NodeHandle> level{from}, below;
    for (; next < parts.size() && !level.empty(); ++next, level.swap(below)) {
        below.clear();
        for (NodeHandle at : level)
            forEachChild(at, parts[next], [&](NodeHandle child) { below.push_back(child); });
    }
    for (NodeHandle found : level)
        if (std::find(out.begin(), out.end(), found) == out.end())
            out.push_back(found);
}

// The path component that the fewest nodes bear; parts.size() when nobody bears one of them.
std::size_t Names::rarest(const Parts& parts) const {
    std::size_t best = 0, fewest = ~std::size_t(0);
    for (std::size_t i = parts.size(); i-- > 0 && fewest > 1;) {
        const Leaf* known = leaf(parts[i]);
        if (!known)
            return parts.size();
        if (known->nodes.size() < fewest) {
            fewest = known->nodes.size();
            best = i;
        }
    }
    return best;
}

// DAG nodes that a path without patterns names, in no order; stops at `limit` of them. The rarest
// part leads: from its nodes the others are looked up, not searched.
void Names::matching(const Parts& parts, bool fromWorld, std::size_t limit,
                     std::vector<NodeHandle>& out) const {
    if (fromWorld)
        return descend(m_scene.world(), parts, 0, out);
    const std::size_t lead = rarest(parts);
    if (lead == parts.size())
        return;
    const std::vector<NodeHandle>& nodes = leaf(parts[lead])->nodes;
    for (std::size_t i = nodes.size(); i-- > 0 && out.size() < limit;)  // the deepest come last
        if (m_scene.node(nodes[i])->isDag() && leadsUp(nodes[i], parts, lead, false))
            descend(nodes[i], parts, lead + 1, out);
}

NodeHandle Names::lookUp(std::string_view text) const {
    text = trimmed(text);
    if (text.find('|') == std::string_view::npos) {
        const Leaf* known = leaf(withoutRootColon(text));
        return known && known->nodes.size() == 1 ? known->nodes.front() : NodeHandle();
    }
    Parts parts = splitPath(text);
    for (std::string_view& part : parts)
        part = withoutRootColon(part);
    std::vector<NodeHandle> found;
    if (isPattern(text))
        found = find(text);
    else if (!parts.empty())
        matching(parts, text.front() == '|', 2, found);
    return found.size() == 1 ? found.front() : NodeHandle();
}

std::vector<NodeHandle> Names::find(std::string_view text) const {
    text = trimmed(text);
    Parts parts = splitPath(text);
    std::vector<NodeHandle> out;
    if (parts.empty())
        return out;
    const bool fromWorld = text.front() == '|';
    for (std::string_view& part : parts)
        part = withoutRootColon(part);
    const bool simple = parts.size() == 1 && !fromWorld;
    if (!isPattern(text)) {
        if (const Leaf* known = simple ? leaf(parts[0]) : nullptr)
            out = known->nodes;
        else if (!simple)
            matching(parts, fromWorld, ~std::size_t(0), out);
    } else {
        const auto consider = [&](const Node& node) {
            if (node.self != m_scene.world() &&
                (simple ? matches(parts[0], node.name)
                        : node.isDag() && endsWithPath(node.self, parts, fromWorld)))
                out.push_back(node.self);
        };
        if (isPattern(parts.back()))
            m_scene.forEachNode(consider);
        else if (const Leaf* known = leaf(parts.back()))
            for (NodeHandle handle : known->nodes)
                consider(*m_scene.node(handle));
    }
    if (out.size() > 1)
        sortMatches(out);
    return out;
}

// Fewest path components first, ties in DAG pre-order, DG nodes after by creation.
void Names::sortMatches(std::vector<NodeHandle>& nodes) const {
    struct Key {
        std::size_t depth;  // of DG nodes: beyond every path
        std::uint64_t place;
        NodeHandle node;
    };
    std::unordered_map<std::uint32_t, std::uint64_t> place;
    preOrderPlaces(nodes, place);
    std::vector<Key> keys;
    keys.reserve(nodes.size());
    for (NodeHandle handle : nodes) {
        const Node* node = m_scene.node(handle);
        const std::size_t depth = node->isDag() ? m_scene.path(handle).size() : ~std::size_t(0);
        keys.push_back({depth, node->isDag() ? place[handle.index] : node->created, handle});
    }
    std::stable_sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
        return a.depth != b.depth ? a.depth < b.depth : a.place < b.place;
    });
    for (std::size_t i = 0; i < keys.size(); ++i)
        nodes[i] = keys[i].node;
}

// Numbers the asked-for nodes by one pre-order walk that only enters what leads to them.
void Names::preOrderPlaces(const std::vector<NodeHandle>& nodes,
                           std::unordered_map<std::uint32_t, std::uint64_t>& place) const {
    const std::uint64_t wanted = m_scene.nextVisit();
    for (NodeHandle handle : nodes)
        for (NodeHandle step : m_scene.path(handle))
            m_scene.node(step)->visit = wanted;
    std::vector<NodeHandle> stack{m_scene.world()};
    for (std::uint64_t next = 0; !stack.empty(); ++next) {
        const Node* node = m_scene.node(stack.back());
        stack.pop_back();
        place.emplace(node->self.index, next);
        for (std::size_t i = node->children.size(); i-- > 0;)
            if (m_scene.node(node->children[i])->visit == wanted)
                stack.push_back(node->children[i]);
    }
}

Status Names::findOne(std::string_view text, NodeHandle& found) const {
    found = lookUp(text);
    if (!found.isNull())
        return Status::ok();
    const std::string name(trimmed(text));
    const std::vector<NodeHandle> all = find(text);
    if (all.size() > 1)
        return Status::notFound("More than one object matches name: " + name);
    if (all.empty())
        return Status::notFound("No object matches name: " + name);
    found = all.front();
    return Status::ok();
}

std::string Names::fullPath(NodeHandle handle, int instance) const {
    const Node* node = m_scene.node(handle);
    if (!node || handle == m_scene.world())
        return {};
    if (!node->isDag())
        return node->name;
    std::string out;
    for (NodeHandle step : m_scene.path(handle, instance))
        out += "|" + m_scene.node(step)->name;
    return out;
}

std::string Names::shortest(NodeHandle handle) const {
    const Node* node = m_scene.node(handle);
    if (!node)
        return {};
    const Leaf* known = leaf(node->name);
    if (!node->isDag() || !known || known->nodes.size() < 2)
        return node->name;
    const std::vector<NodeHandle> path = m_scene.path(handle);
    Parts parts;
    std::vector<NodeHandle> found;
    std::size_t first = path.size();
    while (first-- > 0) {
        parts.insert(parts.begin(), m_scene.node(path[first])->name);
        found.clear();
        if (parts.size() > 1)
            matching(parts, false, 2, found);
        if (found.size() == 1)
            break;
    }
    std::string text = found.size() == 1 ? "" : "|";
    for (std::size_t i = 0; i < parts.size(); ++i)
        text.append(i ? "|" : "").append(parts[i]);
    return text;
}

void Names::added(const Node& node) {
    Leaf& known = m_byLeaf[node.name];
    known.nodes.push_back(node.self);
    known.notDag += node.isDag() ? 0 : 1;
    parentsTaken(node);
}

void Names::removed(const Node& node) {
    const auto it = m_byLeaf.find(node.name);
    if (it == m_byLeaf.end())
        return;
    parentsLeft(node);
    std::vector<NodeHandle>& nodes = it->second.nodes;
    if (const auto at = std::find(nodes.rbegin(), nodes.rend(), node.self); at != nodes.rend())
        nodes.erase(at.base() - 1);  // what is deleted came late as a rule
    it->second.notDag -= node.isDag() ? 0 : 1;
    if (!nodes.empty())
        return;
    m_byLeaf.erase(it);
    becameFree(node.name);
}

// The name may stand in the runs of every padding that spells it so.
void Names::becameFree(const std::string& name) {
    Numbered parts = splitNumber(name);
    for (const std::size_t width = parts.width; parts.width > 0; --parts.width) {
        const auto runs = m_takenRuns.find(rowOf(parts));
        if (runs == m_takenRuns.end() || (parts.width < width && join(parts, parts.number) != name))
            continue;
        const auto after = runs->second.upper_bound(parts.number);
        if (after == runs->second.begin() || std::prev(after)->second <= parts.number)
            continue;
        const auto run = std::prev(after);
        if (run->first == parts.number)
            runs->second.erase(run);
        else
            run->second = parts.number;
    }
}

void Names::parentsTaken(const Node& node) {
    for (NodeHandle parent : node.parents)
        m_byParent.emplace(childKey(parent, node.name), node.self);
}

void Names::parentsLeft(const Node& node) {
    for (NodeHandle parent : node.parents) {
        const auto range = m_byParent.equal_range(childKey(parent, node.name));
        const auto at = std::find_if(range.first, range.second,
                                     [&](const auto& entry) { return entry.second == node.self; });
        if (at != range.second)
            m_byParent.erase(at);
    }
}

void Names::clear() {
    m_byLeaf.clear();
    m_byParent.clear();
    m_takenRuns.clear();
}

}  // namespace torvel
