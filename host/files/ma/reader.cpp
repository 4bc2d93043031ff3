#include "files/ma/reader.h"

#include <algorithm>
#include <new>
#include <unordered_map>
#include <unordered_set>

#include "files/ma/add_attr.h"
#include "files/ma/attr_path.h"
#include "files/ma/set_attr.h"
#include "files/ma/statement.h"

namespace torvel {
namespace {

constexpr std::string_view kFirstLine = "//Maya ASCII";

std::string_view leafOf(std::string_view path) {
    const std::size_t bar = path.rfind('|');
    return bar == std::string_view::npos ? path : path.substr(bar + 1);
}

bool endsWith(std::string_view text, std::string_view tail) {
    return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

// Flags of createNode, parent, connectAttr and their like.
bool isOneOf(const Token& token, std::string_view shortName, std::string_view longName) {
    return token.isFlag() &&
           (token.text.substr(1) == shortName || token.text.substr(1) == longName);
}

// Whether a program saved this text: it writes such lines at the start, and an end line at the end.
bool hasSavedHead(std::string_view text) {
    const std::string_view head = text.substr(0, 1024);
    return head.find("\n//Codeset:") != head.npos || head.find("\n//Name:") != head.npos;
}

// A quoted text without its escapes; `room` holds it where there were any.
std::string_view plain(const Token& token, std::string& room) {
    if (token.text.find('\\') == std::string_view::npos)
        return token.text;
    room = unescaped(token.text);
    return room;
}

bool isTypeName(std::string_view text) {
    const auto fits = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_' || c == ':' || c == '.' || c == '-';
    };
    return !text.empty() && std::all_of(text.begin(), text.end(), fits);
}

bool hasHugeIndex(std::string_view plug) {
    const std::size_t dot = plug.find('.');
    AttrPath path;
    return dot != plug.npos && path.cut(plug.substr(dot + 1)) == AttrPath::Cut::HugeIndex;
}

class SceneReader {
  public:
    SceneReader(Scene& scene, std::string_view text, OpenReport& report)
        : m_scene(scene), m_report(report), m_text(text), m_scanner(text), m_setter(scene) {}

    Status run();
    std::size_t line() { return m_scanner.lineOf(m_place); }

  private:
    Status readAll();
    using Handler = Status (SceneReader::*)(std::string_view statement);
    struct Row {
        std::string_view word;
        Handler handler;
    };
    static const Row kRows[];

    Status statement(std::string_view text);
    static const Row* rowOf(std::string_view text);
    const char* swallowed(std::string_view text) const;
    Status createNode(std::string_view text);
    Status rename(std::string_view text);
    Status addAttr(std::string_view text);
    Status setAttr(std::string_view text);
    Status connectAttr(std::string_view text);
    Status disconnectAttr(std::string_view text);
    Status select(std::string_view text);
    Status lockNode(std::string_view text);
    Status parent(std::string_view text);
    Status fileReference(std::string_view text);
    Status requiresPlugin(std::string_view text) { return keep(&Document::requiresText, text); }
    Status fileInfo(std::string_view text) { return keep(&Document::fileInfoText, text); }
    Status trailing(std::string_view text) { return keep(&Document::trailingText, text); }
    Status currentUnit(std::string_view text);
    Status skipped(std::string_view text);

    struct Creation {
        std::string_view type;
        std::string name, parent;
        bool shared = false;
    };
    Status readCreation(std::string_view text, Creation& wanted);
    NodeHandle existing(const Creation& wanted, NodeHandle parent) const;
    Status make(const Creation& wanted, NodeHandle parent);
    const char* standIn(const Creation& wanted, NodeHandle parent);
    bool isParentLater(std::string_view name);

    Status keep(std::vector<std::string> Document::*list, std::string_view text);
    void skip(const std::string& why) { m_report.skip(line(), why); }
    NodeHandle find(std::string_view name);
    NodeHandle defaultNode(std::string_view name);
    Plug findPlug(std::string_view text, bool nextAvailable);
    Plug opaque(NodeHandle node, std::string_view path, bool nextAvailable);

    Scene& m_scene;
    OpenReport& m_report;
    std::string_view m_text;
    StatementScanner m_scanner;
    AttrSetter m_setter;
    const char* m_place = nullptr;  ///< start of the statement at work
    NodeHandle m_current;
    std::unordered_map<std::string, NodeHandle>
        m_renamed;  ///< names of the file that were taken in the scene
    std::unordered_set<std::string_view> m_parents;  ///< leaf names that stand behind -p
    bool m_parentsKnown = false;
};

const SceneReader::Row SceneReader::kRows[] = {
    {"setAttr", &SceneReader::setAttr},
    {"connectAttr", &SceneReader::connectAttr},
    {"createNode", &SceneReader::createNode},
    {"rename", &SceneReader::rename},
    {"addAttr", &SceneReader::addAttr},
    {"select", &SceneReader::select},
    {"relationship", &SceneReader::trailing},
    {"disconnectAttr", &SceneReader::disconnectAttr},
    {"lockNode", &SceneReader::lockNode},
    {"parent", &SceneReader::parent},
    {"requires", &SceneReader::requiresPlugin},
    {"currentUnit", &SceneReader::currentUnit},
    {"fileInfo", &SceneReader::fileInfo},
    {"file", &SceneReader::fileReference},
    {"dataStructure", &SceneReader::trailing},
    {"applyMetadata", &SceneReader::trailing},
    // Harmless without effect here; nothing of them is needed to use the file.
    {"namespace", &SceneReader::skipped},
    {"currentTime", &SceneReader::skipped},
    {"playbackOptions", &SceneReader::skipped},
    {"workspace", &SceneReader::skipped},
};

Status SceneReader::run() {
    m_scene.beginReading();
    const Status status = readAll();
    m_scene.endReading();
    m_report.nonFinite = m_setter.nonFinite;
    return status;
}

Status SceneReader::readAll() {
    std::string_view text;
    while (true) {
        const StatementScanner::Found found = m_scanner.next(text);
        m_place = text.data();
        if (found == StatementScanner::Found::End)
            break;
        if (found == StatementScanner::Found::Unfinished)
            return Status::failure(
                "the file ends inside a statement; it was cut off or a quote is missing");
        if (const Status status = statement(text); !status)
            return status;
    }
    m_report.noEndLine = !m_scanner.sawEndLine();
    if (m_report.noEndLine && hasSavedHead(m_text))
        return Status::failure("the file has no end line; it was cut off");
    m_report.countNodes(m_scene);
    return Status::ok();
}

const SceneReader::Row* SceneReader::rowOf(std::string_view text) {
    const std::string_view word = text.substr(0, text.find_first_of(" \t\r\n\"("));
    for (const Row& row : kRows)
        if (word == row.word)
            return &row;
    return nullptr;
}

// Where a statement ends that another one follows on its own line without a ';' between them; null
// where none does.
const char* SceneReader::swallowed(std::string_view text) const {
    for (std::size_t line = text.find('\n'); line != text.npos; line = text.find('\n', line + 1)) {
        const std::size_t start = text.find_first_not_of(" \t\r", line + 1);
        if (start == text.npos || text[start] < 'a' || text[start] > 'z' ||
            !rowOf(text.substr(start)))
            continue;
        TokenCursor cursor(text);  // a line inside quotes begins no statement
        while (cursor.rest().data() < text.data() + start)
            cursor.next();
        if (cursor.rest().data() == text.data() + start)
            return text.data() + text.find_last_not_of(" \t\r\n", start - 1);
    }
    return nullptr;
}

Status SceneReader::statement(std::string_view text) {
    const Row* row = rowOf(text);
    if (const char* end = row ? swallowed(text) : nullptr) {
        m_place = end;
        return Status::failure("a ';' is missing at the end of this line");
    }
    return row ? (this->*row->handler)(text)
               : Status::failure(
                     "'" +
                     std::string(text.substr(0, text.find_first_of(" \t\r\n\"(")).substr(0, 40)) +
                     "' is no statement of a scene file; nothing of it was run");
}

Status SceneReader::keep(std::vector<std::string> Document::*list, std::string_view text) {
    m_scene.changeDocument(
        [&](Document& document) { (document.*list).push_back(withoutReturns(text) + ";"); });
    return Status::ok();
}

Status SceneReader::skipped(std::string_view text) {
    skip("'" + std::string(text.substr(0, text.find_first_of(" \t\r\n"))) +
         "' has no effect in a scene file");
    return Status::ok();
}

// --- nodes --------------------------------------------------------------------------------------

Status SceneReader::readCreation(std::string_view text, Creation& wanted) {
    TokenCursor cursor(text);
    cursor.next();
    for (Token token = cursor.next(); !token.isEnd(); token = cursor.next()) {
        bool good = true;
        if (isOneOf(token, "n", "name"))
            good = cursor.text(wanted.name);
        else if (isOneOf(token, "p", "parent"))
            good = cursor.text(wanted.parent);
        else if (isOneOf(token, "s", "shared"))
            wanted.shared = true;
        else if (token.isFlag() && !isOneOf(token, "ss", "skipSelect"))
            skip("createNode: unknown flag " + std::string(token.text));
        else if (!token.isFlag() && wanted.type.empty() && token.kind != Token::Kind::Mark)
            wanted.type = token.text;
        else if (!token.isFlag())
            good = false;
        if (!good)
            return Status::failure("createNode: damaged at '" + std::string(token.text) + "'");
    }
    if (wanted.type.empty())
        return Status::failure("createNode: no node type is given");
    return isTypeName(wanted.type)
               ? Status::ok()
               : Status::failure("createNode: '" + std::string(wanted.type) + "' is no node type");
}

// The node that a statement means when the scene has it already: a shared one, or a default node.
NodeHandle SceneReader::existing(const Creation& wanted, NodeHandle parent) const {
    const std::string_view name = wanted.name;
    NodeHandle found = m_scene.names().childNamed(parent.isNull() ? m_scene.world() : parent, name);
    if (found.isNull() && parent.isNull())
        found = m_scene.names().lookUp(name);
    const Node* node = m_scene.node(found);
    if (!node || name.empty() || m_scene.typeName(found) != wanted.type)
        return {};
    if (parent.isNull() && node->isDag() && node->parents.front() != m_scene.world())
        return {};
    return wanted.shared || node->isDefault ? found : NodeHandle();
}

// Leaf names behind -p in the whole text; asked for only once a file has a node of an unknown type.
bool SceneReader::isParentLater(std::string_view name) {
    if (!m_parentsKnown) {
        m_parentsKnown = true;
        constexpr std::string_view kWord = "\ncreateNode ";
        for (std::size_t at = m_text.find(kWord); at != std::string_view::npos;
             at = m_text.find(kWord, at + 1)) {
            const std::string_view line = m_text.substr(at + 1, m_text.find(';', at) - at - 1);
            TokenCursor cursor(line);
            for (Token token = cursor.next(); !token.isEnd(); token = cursor.next())
                if (isOneOf(token, "p", "parent"))
                    m_parents.insert(leafOf(cursor.next().text));
        }
    }
    return m_parents.count(name) != 0;
}

const char* SceneReader::standIn(const Creation& wanted, NodeHandle parent) {
    if (wanted.type == "unknownTransform")
        return "unknownTransform";
    if (wanted.type == "unknown" && parent.isNull())
        return "unknown";
    const bool isParent = isParentLater(wanted.name);
    const bool isTransform = isParent || endsWith(wanted.type, "Constraint") ||
                             endsWith(wanted.type, "ffector") || endsWith(wanted.type, "Handle");
    const Node* above = m_scene.node(parent);
    if (!above)
        return isParent ? "unknownTransform" : "unknown";
    const bool shapeFits = above->type->is(kTransformType) && parent != m_scene.world();
    return shapeFits && !isTransform ? "unknownDag" : "unknownTransform";
}

Status SceneReader::make(const Creation& wanted, NodeHandle parent) {
    const NodeType* type = m_scene.types().find(wanted.type);
    const bool known = type && !type->is(kAbstractType) && wanted.type.substr(0, 7) != "unknown";
    if (known)
        return m_scene.createNode(wanted.type, wanted.name, parent, m_current);
    if (const Status status =
            m_scene.createNode(standIn(wanted, parent), wanted.name, parent, m_current);
        !status)
        return status;
    m_scene.changeFacts(m_current, [&](NodeFacts& facts) { facts.unknownType = wanted.type; });
    return Status::ok();
}

Status SceneReader::createNode(std::string_view text) {
    Creation wanted;
    if (const Status status = readCreation(text, wanted); !status)
        return status;
    NodeHandle parent;
    if (!wanted.parent.empty()) {
        parent = find(wanted.parent);
        if (parent.isNull() && m_report.references.empty())
            return Status::failure("createNode: the parent '" + wanted.parent + "' of '" +
                                   wanted.name + "' does not exist at this place");
        if (parent.isNull())
            skip("createNode: the parent '" + wanted.parent + "' lies in a reference; '" +
                 wanted.name + "' stands under the world");
    }
    m_current = existing(wanted, parent);
    if (!m_current.isNull()) {
        m_scene.changeFacts(m_current, [&](NodeFacts& facts) { facts.isShared |= wanted.shared; });
        return Status::ok();
    }
    if (const Status status = make(wanted, parent); !status)
        return Status::failure("createNode: " + status.text());
    m_scene.changeFacts(m_current, [&](NodeFacts& facts) { facts.isShared = wanted.shared; });
    const Node* made = m_scene.node(m_current);
    if (wanted.shared && wanted.type == "lightLinker")
        m_scene.changeFacts(m_current, [](NodeFacts& facts) { facts.isDefault = true; });
    if (made->name != wanted.name && !wanted.name.empty()) {
        m_renamed[wanted.name] = m_current;
        skip("createNode: the name '" + wanted.name +
             "' is taken or not legal; the node is named '" + made->name + "'");
    }
    return Status::ok();
}

Status SceneReader::rename(std::string_view text) {
    TokenCursor cursor(text);
    cursor.next();
    const Token flag = cursor.next();
    std::string id;
    const bool isUid = isOneOf(flag, "uid", "uuid");
    if (isUid && cursor.text(id) && cursor.next().isEnd()) {
        m_scene.changeFacts(m_current, [&](NodeFacts& facts) { facts.uuid = id; });
        return Status::ok();
    }
    return Status::failure("rename: only -uid with a text is read from files");
}

Status SceneReader::addAttr(std::string_view text) {
    std::string warning;
    const Status status = readAddAttr(m_scene, m_current, text, warning);
    if (!warning.empty())
        skip(warning);
    return status;
}

Status SceneReader::setAttr(std::string_view text) {
    std::string warning;
    const Status status = m_setter.read(text, m_current, warning);
    if (!warning.empty())
        skip(warning);
    return status;
}

NodeHandle SceneReader::defaultNode(std::string_view name) {
    NodeHandle made;
    if (m_scene.createNode("unknown", name, {}, made)) {
        m_scene.changeFacts(made, [](NodeFacts& facts) { facts.isDefault = true; });
        if (m_scene.node(made)->name != name)
            m_renamed[":" + std::string(name)] = made;
    }
    return made;
}

NodeHandle SceneReader::find(std::string_view name) {
    if (!m_renamed.empty())
        if (const auto it = m_renamed.find(std::string(name)); it != m_renamed.end())
            return it->second;
    const NodeHandle found = m_scene.names().lookUp(name);
    if (found.isNull() && !name.empty() && name.front() == ':' &&
        name.find('|') == std::string_view::npos && name.find(':', 1) == std::string_view::npos)
        return defaultNode(name.substr(1));
    return found;
}

Status SceneReader::select(std::string_view text) {
    TokenCursor cursor(text);
    cursor.next();
    Token token = cursor.next();
    while (token.isFlag())
        token = cursor.next();
    if (token.isEnd() || token.kind == Token::Kind::Mark)
        return Status::failure("select: a node name was expected");
    std::string room;
    m_current = find(plain(token, room));
    if (m_current.isNull())
        skip("select: no node named '" + std::string(token.text) + "'");
    return Status::ok();
}

Status SceneReader::lockNode(std::string_view text) {
    TokenCursor cursor(text);
    cursor.next();
    m_scene.changeFacts(m_current, [&](NodeFacts& facts) {
        for (Token token = cursor.next(); !token.isEnd(); token = cursor.next())
            if (isOneOf(token, "l", "lock"))
                wordToFlag(cursor.next().text, facts.locked);
        facts.keptHead.push_back(withoutReturns(text) + ";");
    });
    return Status::ok();
}

Status SceneReader::parent(std::string_view text) {
    TokenCursor cursor(text);
    cursor.next();
    bool adds = false;
    std::vector<std::string> names;
    for (Token token = cursor.next(); !token.isEnd(); token = cursor.next()) {
        adds = adds || isOneOf(token, "add", "addObject");
        if (token.kind == Token::Kind::Quoted)
            names.push_back(unescaped(token.text));
    }
    if (names.size() < 2)
        return Status::failure("parent: two node names were expected");
    const NodeHandle above = find(names.back());
    for (std::size_t i = 0; i + 1 < names.size(); ++i) {
        const NodeHandle child = find(names[i]);
        if (child.isNull() || above.isNull()) {
            skip("parent: no node named '" + (child.isNull() ? names[i] : names.back()) + "'");
            return trailing(text);
        }
        const Status status =
            adds ? m_scene.addParent(child, above) : m_scene.reparent(child, above);
        if (!status)
            return Status::failure("parent: " + status.text());
    }
    return Status::ok();
}

// --- what stands around the nodes ---------------------------------------------------------------

Status SceneReader::fileReference(std::string_view text) {
    TokenCursor cursor(text);
    std::string path;
    for (Token token = cursor.next(); !token.isEnd(); token = cursor.next())
        if (token.kind == Token::Kind::Quoted)
            path = unescaped(token.text);
    if (m_report.references.empty() || m_report.references.back() != path)
        m_report.references.push_back(path);
    return keep(&Document::referenceText, text);
}

Status SceneReader::currentUnit(std::string_view text) {
    m_scene.changeDocument([&](Document& document) { document.unitsText = onOneLine(text) + ";"; });
    m_setter.units = FileUnits::of(text);
    return Status::ok();
}

// --- connections --------------------------------------------------------------------------------

// An attribute known to files only. Without an index each further connection of -na takes the next
// element.
Plug SceneReader::opaque(NodeHandle handle, std::string_view path, bool nextAvailable) {
    if (!nextAvailable)
        return m_scene.opaquePlug(handle, path);
    std::int32_t next = 0;
    if (const AttrIndex known = m_scene.node(handle)->findAttr(path); known != kNoAttr)
        next = m_scene.nextAvailable(Plug(handle, known));
    const Plug plug =
        m_scene.opaquePlug(handle, std::string(path) + "[" + std::to_string(next) + "]");
    m_scene.changeAttribute(plug, [](AttrInfo& info) { info.flags |= kNextAvailable; });
    return plug;
}

Plug SceneReader::findPlug(std::string_view text, bool nextAvailable) {
    const std::size_t dot = text.find('.');
    const NodeHandle handle =
        dot == std::string_view::npos ? NodeHandle() : find(text.substr(0, dot));
    if (handle.isNull())
        return {};
    const std::string_view path = text.substr(dot + 1);
    const Plug plug = m_scene.findPlug(handle, path);
    if (plug.isNull() || m_scene.info(plug).is(kOpaque))
        return opaque(handle, path, nextAvailable);
    if (nextAvailable && m_scene.isArrayPlug(plug))
        return m_scene.element(plug, m_scene.nextAvailable(plug));
    if (m_scene.isArrayPlug(plug) && m_scene.info(plug).is(kOutput))
        return m_scene.element(plug, 0);  // files write "joint1.wm" for the first element
    return plug;
}

Status SceneReader::connectAttr(std::string_view text) {
    TokenCursor cursor(text);
    cursor.next();
    std::string_view ends[2];
    std::string room[2];
    int count = 0;
    bool next = false, lock = false;
    for (Token token = cursor.next(); !token.isEnd(); token = cursor.next()) {
        if (isOneOf(token, "na", "nextAvailable"))
            next = true;
        else if (isOneOf(token, "l", "lock"))
            wordToFlag(cursor.next().text, lock);
        else if (token.kind == Token::Kind::Quoted && count < 2) {
            ends[count] = plain(token, room[count]);
            ++count;
        } else if (!isOneOf(token, "f", "force"))
            return Status::failure("connectAttr: damaged at '" + std::string(token.text) + "'");
    }
    if (count < 2)
        return Status::failure("connectAttr: two attribute names were expected");
    for (const std::string_view end : ends)
        if (end.size() > 10 && hasHugeIndex(end))
            return Status::failure("connectAttr: index out of range in '" + std::string(end) + "'");
    const Plug source = findPlug(ends[0], false);
    const Plug target = source.isNull() ? Plug() : findPlug(ends[1], next);
    Status status =
        Status::failure("no attribute '" + std::string(ends[source.isNull() ? 0 : 1]) + "'");
    if (!target.isNull())
        status =
            m_scene.isConnected(source, target) ? Status::ok() : m_scene.connect(source, target);
    if (status && lock)
        m_scene.setLocked(target, true);
    if (status)
        return status;
    skip("connectAttr: " + status.text());
    return trailing(text);
}

Status SceneReader::disconnectAttr(std::string_view text) {
    TokenCursor cursor(text);
    cursor.next();
    const Token from = cursor.next(), to = cursor.next();
    if (from.kind != Token::Kind::Quoted || to.kind != Token::Kind::Quoted)
        return Status::failure("disconnectAttr: two attribute names were expected");
    std::string room[2];
    const Plug source = findPlug(plain(from, room[0]), false);
    const Plug target = findPlug(plain(to, room[1]), false);
    if (!m_scene.disconnect(source, target))
        skip("disconnectAttr: '" + std::string(from.text) + "' and '" + std::string(to.text) +
             "' are not connected");
    return Status::ok();
}

Status checkHead(std::string_view& text) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF")
        text.remove_prefix(3);
    const bool binary = text.substr(0, 3) == "FOR" || text.find('\0') != std::string_view::npos;
    if (binary)
        return Status::failure("this is a binary file; only Maya ASCII is read");
    if (text.substr(0, kFirstLine.size()) != kFirstLine)
        return Status::failure(
            "this is no Maya ASCII scene: its first line does not begin with //Maya ASCII");
    return Status::ok();
}

}  // namespace

Status readSceneText(Scene& scene, std::string_view text, const std::string& name,
                     OpenReport& report) {
    const auto at = [&name](std::size_t line, const std::string& what) {
        return Status::failure(name + " line " + std::to_string(line) + ": " + what);
    };
    if (const Status status = checkHead(text); !status)
        return at(1, status.text());
    SceneReader reader(scene, text, report);
    try {
        const Status status = reader.run();
        return status ? status : at(reader.line(), status.text());
    } catch (const std::bad_alloc&) {
        return at(reader.line(), "there is not enough memory for this file");
    }
}

}  // namespace torvel
