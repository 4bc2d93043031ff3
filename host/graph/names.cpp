#include "graph/names.h"

#include <algorithm>

#include "graph/scene.h"

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

std::string_view leafOf(std::string_view text) {
    const std::size_t bar = text.rfind('|');
    return bar == std::string_view::npos ? text : text.substr(bar + 1);
}

// A leading colon names the root namespace.
std::string_view withoutRootColon(std::string_view name) {
    return !name.empty() && name.front() == ':' ? name.substr(1) : name;
}

// "arm_01" gives stem "arm_", 1 and width 2; no digits: number 0, width 0.
struct Numbered {
    std::string stem;
    unsigned long long number = 0;
    std::size_t width = 0;
};

Numbered splitNumber(const std::string& name) {
    std::size_t at = name.size();
    while (at > 1 && isDigit(name[at - 1]) && name.size() - at < 18)
        --at;
    Numbered out{name.substr(0, at), 0, name.size() - at};
    if (out.width)
        out.number = std::stoull(name.substr(at));
    return out;
}

std::string join(const Numbered& base, unsigned long long number) {
    std::string digits = std::to_string(number);
    if (digits.size() < base.width)
        digits.insert(0, base.width - digits.size(), '0');
    return base.stem + digits;
}

}  // namespace

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

bool Names::anywhere(const std::string& name, NodeHandle self) const {
    const auto it = m_byLeaf.find(name);
    if (it == m_byLeaf.end())
        return false;
    return std::any_of(it->second.begin(), it->second.end(),
                       [self](NodeHandle n) { return n != self; });
}

bool Names::taken(const std::string& name, NodeHandle parent, bool isDag, NodeHandle self) const {
    const auto it = m_byLeaf.find(name);
    if (it == m_byLeaf.end())
        return false;
    for (NodeHandle other : it->second) {
        const Node* node = m_scene.node(other);
        if (!node || other == self)
            continue;
        if (!isDag || !node->isDag())
            return true;
        if (std::find(node->parents.begin(), node->parents.end(), parent) != node->parents.end())
            return true;
    }
    return false;
}

std::string Names::unique(const std::string& legalName, NodeHandle parent, bool isDag,
                          NodeHandle self) const {
    if (!taken(legalName, parent, isDag, self))
        return legalName;
    const Numbered base = splitNumber(legalName);
    for (unsigned long long number = base.number + 1;; ++number) {
        std::string candidate = join(base, number);
        if (!anywhere(candidate, self))
            return candidate;
    }
}

std::string Names::numbered(const std::string& stem) const {
    unsigned long long& lowest = m_lowestFree[stem];
    for (lowest = std::max(lowest, 1ull);; ++lowest) {
        std::string candidate = stem + std::to_string(lowest);
        if (!anywhere(candidate, {}))
            return candidate;
    }
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

NodeHandle Names::lookUp(std::string_view text) const {
    text = trimmed(text);
    const std::string_view leaf = withoutRootColon(leafOf(text));
    thread_local std::string key;  // reused: look-ups allocate nothing
    key.assign(leaf);
    const auto it = m_byLeaf.find(key);
    if (it == m_byLeaf.end())
        return {};
    if (leaf.size() == text.size())
        return it->second.size() == 1 ? it->second.front() : NodeHandle();
    const std::vector<NodeHandle> found = find(text);
    return found.size() == 1 ? found.front() : NodeHandle();
}

std::vector<NodeHandle> Names::find(std::string_view text) const {
    text = trimmed(text);
    std::vector<std::string_view> parts = splitPath(text);
    std::vector<NodeHandle> out;
    if (parts.empty())
        return out;
    const bool fromWorld = text.front() == '|';
    for (std::string_view& part : parts)
        part = withoutRootColon(part);
    const auto consider = [&](NodeHandle handle) {
        const Node* node = m_scene.node(handle);
        if (!node || handle == m_scene.world())
            return;
        const bool simple = parts.size() == 1 && !fromWorld;
        if (simple ? matches(parts[0], node->name)
                   : node->isDag() && endsWithPath(handle, parts, fromWorld))
            out.push_back(handle);
    };
    if (isPattern(parts.back())) {
        m_scene.forEachNode([&](const Node& node) { consider(node.self); });
    } else {
        const auto it = m_byLeaf.find(std::string(parts.back()));
        if (it != m_byLeaf.end())
            for (NodeHandle handle : it->second)
                consider(handle);
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
    const auto it = m_byLeaf.find(node->name);
    if (!node->isDag() || it == m_byLeaf.end() || it->second.size() < 2)
        return node->name;
    const std::vector<NodeHandle> path = m_scene.path(handle);
    std::string text;
    for (std::size_t i = path.size(); i-- > 0;) {
        text = m_scene.node(path[i])->name + (text.empty() ? "" : "|" + text);
        if (i + 1 != path.size() && find(text).size() == 1)
            return text;
    }
    return "|" + text;
}

void Names::added(NodeHandle node, const std::string& name) {
    m_byLeaf[name].push_back(node);
}

void Names::removed(NodeHandle node, const std::string& name) {
    const auto it = m_byLeaf.find(name);
    if (it == m_byLeaf.end())
        return;
    std::vector<NodeHandle>& nodes = it->second;
    nodes.erase(std::remove(nodes.begin(), nodes.end(), node), nodes.end());
    if (nodes.empty())
        m_byLeaf.erase(it);
    const Numbered parts = splitNumber(name);
    const auto hint = parts.width ? m_lowestFree.find(parts.stem) : m_lowestFree.end();
    if (hint != m_lowestFree.end())
        hint->second = std::min(hint->second, parts.number);
}

}  // namespace torvel
