#include "host/files/statement_facts.h"

#include <charconv>
#include <functional>

#include "base/number_source.h"
#include "files/ma/attr_path.h"
#include "files/ma/statement.h"
#include "files/ma/units.h"

namespace torvel::test {
namespace {

// Numbers by their value, texts by their characters, words as they are.
std::string normal(const Token& token, AttrType type) {
    if (token.kind == Token::Kind::Quoted)
        return inQuotes(unescaped(token.text));
    for (const char* word : {"yes", "on", "true"})
        if (token.text == word)
            return "1";
    for (const char* word : {"no", "off", "false"})
        if (token.text == word)
            return "0";
    NumberSource source(token.text, NumberSource::NonFinite::Counted);
    double value = 0.0;
    if (!source.number(value) || !source.atEnd())
        return std::string(token.text);
    if (type == AttrType::Angle)
        value *= FileUnits::kDegreeFactor;
    if (type == AttrType::Float)
        value = static_cast<double>(static_cast<float>(value));
    char out[40];
    return std::string(out, std::to_chars(out, out + sizeof out, value + 0.0).ptr);
}

class Facts {
  public:
    Facts(const Scene& scene) : m_scene(scene) {}

    std::map<std::string, std::string> run(const std::string& text) {
        StatementScanner scanner(text);
        std::string_view statement;
        while (scanner.next(statement) == StatementScanner::Found::Statement)
            take(statement);
        return std::move(m_facts);
    }

  private:
    void take(std::string_view statement) {
        TokenCursor cursor(statement);
        const std::string_view word = cursor.next().text;
        if (word == "createNode")
            createNode(cursor);
        else if (word == "select")
            select(cursor);
        else if (word == "setAttr")
            setAttr(cursor, statement);
        else if (word == "connectAttr")
            connect(cursor);
        else if (word == "rename")
            m_facts["uid " + m_node] = unescaped(cursor.rest());
        else if (word == "addAttr" || word == "lockNode")
            m_facts["text " + m_node + " " + onOneLine(statement)];
        else if (word != "currentUnit")
            m_facts["text " + onOneLine(statement)];
    }

    std::string path(std::string_view name) const {
        const NodeHandle found = m_scene.names().lookUp(name);
        return found.isNull() ? std::string(name) : m_scene.names().fullPath(found);
    }

    void enter(const std::string& name) {
        m_node = name;
        m_handle = m_scene.names().lookUp(name);
    }

    void createNode(TokenCursor& cursor) {
        std::string type(cursor.next().text), name, parent, shared;
        for (Token token = cursor.next(); !token.isEnd(); token = cursor.next()) {
            if (token.text == "-n")
                cursor.text(name);
            else if (token.text == "-p")
                cursor.text(parent);
            else if (token.text == "-s")
                shared = " -s";
        }
        enter(parent.empty() ? path("|" + name) == "|" + name ? path(name) : "|" + name
                             : path(parent) + "|" + name);
        m_facts["node " + m_node] = type + shared;
    }

    void select(TokenCursor& cursor) {
        Token token = cursor.next();
        while (token.isFlag())
            token = cursor.next();
        enter(path(token.text));
    }

    std::string end(std::string_view text, bool next) const {
        const std::size_t dot = text.find('.');
        const NodeHandle node = m_scene.names().lookUp(text.substr(0, dot));
        const Plug plug = m_scene.findPlug(node, text.substr(dot + 1));
        if (plug.isNull() || m_scene.info(plug).is(kOpaque))
            return path(text.substr(0, dot)) + std::string(text.substr(dot));
        const bool first = !next && m_scene.isArrayPlug(plug) && m_scene.info(plug).is(kOutput);
        return m_scene.plugName(first ? m_scene.element(plug, 0) : plug);
    }

    void connect(TokenCursor& cursor) {
        std::string ends[2];
        int count = 0;
        bool next = false, lock = false;
        for (Token token = cursor.next(); !token.isEnd(); token = cursor.next()) {
            if (token.kind == Token::Kind::Quoted && count < 2)
                ends[count++] = unescaped(token.text);
            next = next || token.text == "-na";
            lock = lock || token.text == "-l";
        }
        m_facts["connect " + end(ends[0], false) + " " + end(ends[1], next) + (next ? " -na" : "")];
        if (lock)
            m_facts["flag " + end(ends[1], next) + " -l"] = "on";
    }

    void setAttr(TokenCursor& cursor, std::string_view statement) {
        std::map<std::string, std::string> flags;
        std::string_view plugText;
        while (plugText.empty() || (cursor.peek().isFlag() && cursor.peek().text == "-type")) {
            const Token token = cursor.next();
            if (token.kind == Token::Kind::Quoted)
                plugText = token.text;
            else if (token.text == "-l" || token.text == "-k" || token.text == "-cb" ||
                     token.text == "-s" || token.text == "-ch" || token.text == "-type")
                flags[std::string(token.text)] = std::string(cursor.next().text);
        }
        AttrPath cut;
        PathTarget target;
        const Node* node = m_scene.node(m_handle);
        const bool known = node && cut.cut(plugText.substr(1)) == AttrPath::Cut::Good &&
                           resolvePath(*node, cut, target);
        if (!known) {
            m_facts["kept " + m_node + " " + onOneLine(statement)];
            return;
        }
        for (const char* flag : {"-l", "-k", "-cb"})
            if (flags.count(flag))
                m_facts["flag " + m_scene.plugName(target.plug) + " " + flag] = flags[flag];
        if (!cursor.peek().isEnd() || flags.count("-type"))
            values(*node, target, cursor, statement);
    }

    void values(const Node& node, const PathTarget& target, TokenCursor& cursor,
                std::string_view statement) {
        const AttrInfo& info = node.attr(target.plug.attr);
        if (info.bulkOwner != kNoAttr)
            return bulk(target, cursor);
        if (m_scene.isArrayPlug(target.plug) || info.type == AttrType::Message) {
            m_facts["kept " + m_node + " " + onOneLine(statement)];
            return;
        }
        if (!isNumeric(info.type) && !isCompound(info.type)) {
            std::string all, text;
            TokenCursor again = cursor;
            if (again.text(text))
                all = inQuotes(text);
            else
                for (Token token = cursor.next(); !token.isEnd(); token = cursor.next())
                    all += normal(token, info.type) + " ";
            m_facts["value " + m_scene.plugName(target.plug)] = all;
            return;
        }
        const std::function<void(const Plug&)> leaves = [&](const Plug& plug) {
            const AttrInfo& leaf = m_scene.info(plug);
            if (leaf.children.empty()) {
                const std::string number = normal(cursor.next(), leaf.type);
                if (!isComputed(plug))
                    m_facts["value " + m_scene.plugName(plug)] = number;
            }
            for (std::size_t i = 0; i < leaf.children.size(); ++i)
                leaves(m_scene.child(plug, static_cast<int>(i)));
        };
        Plug plug = target.plug;
        for (std::int64_t i = target.first; i <= std::max(target.first, target.last); ++i) {
            if (target.rangeDepth >= 0)
                plug.index[target.rangeDepth] = static_cast<std::int32_t>(i);
            leaves(plug);
        }
    }

    // Large arrays by element; a weight of zero says nothing.
    void bulk(const PathTarget& target, TokenCursor& cursor) {
        const std::string name = "value " + m_node + "." + m_scene.info(target.plug).shortName;
        const AttrInfo& info = m_scene.info(target.plug);
        const AttrType type =
            info.children.empty() ? info.type : m_scene.info(m_scene.child(target.plug, 0)).type;
        const auto number = [&] { return normal(cursor.next(), type); };
        const auto weight = [&](std::int64_t vertex, const std::string& influence) {
            if (const std::string value = number(); value != "0")
                m_facts[name + std::to_string(vertex) + "," + influence] = value;
        };
        if (m_scene.info(target.plug).arrayDepth == 1) {  // the rest of the text, split in any way
            std::string& all = m_facts[name];
            for (Token token = cursor.next(); !token.isEnd(); token = cursor.next())
                all += normal(token, type) + " ";
            return;
        }
        for (std::int64_t i = target.first; i <= target.last; ++i) {
            if (!target.bulkInner) {
                weight(target.plug.index[0], std::to_string(i));
                continue;
            }
            for (int pairs = std::stoi(number()); pairs > 0; --pairs)
                weight(i, number());
        }
    }

    // Joints of a handle and the last state of a constraint are saved as they are shown.
    bool isComputed(const Plug& plug) const {
        return !m_scene.writerOf(plug).isNull() ||
               m_scene.info(plug).longName.compare(0, 10, "lastTarget") == 0;
    }

    const Scene& m_scene;
    std::map<std::string, std::string> m_facts;
    std::string m_node;
    NodeHandle m_handle;
};

}  // namespace

std::map<std::string, std::string> statementFacts(const std::string& text, const Scene& scene) {
    return Facts(scene).run(text);
}

}  // namespace torvel::test
