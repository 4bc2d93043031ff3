#include "files/ma/set_attr.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "files/ma/data_values.h"
#include "graph/payload.h"

namespace torvel {
namespace {

struct FlagName {
    const char* shortName;
    const char* longName;
};

bool is(std::string_view word, const FlagName& flag) {
    word.remove_prefix(1);
    return word == flag.shortName || word == flag.longName;
}

constexpr FlagName kLock{"l", "lock"}, kKey{"k", "keyable"}, kBox{"cb", "channelBox"},
    kType{"typ", "type"};
constexpr FlagName kWithValue[] = {{"ca", "caching"}, {"s", "size"}, {"ch", "capacityHint"}};
constexpr FlagName kSwitches[] = {{"av", "alteredValue"}, {"c", "clamp"}};

// "-inf" and its like look like flags.
bool isNegativeWord(std::string_view word) {
    return word == "-inf" || word == "-nan" || word == "-INF" || word == "-NAN" || word == "-Inf" ||
           word == "-NaN" || word == "-infinity";
}

bool isWhole(AttrType type) {
    return type == AttrType::Byte || type == AttrType::Short || type == AttrType::Long ||
           type == AttrType::Enum || type == AttrType::Bool;
}

// A number, or a word for one: files write truth values as yes and no. One too large for a double
// is none.
bool readNumber(NumberSource& source, double& value) {
    source.skipBlanks();
    const char* start = source.position();
    value = std::numeric_limits<double>::quiet_NaN();  // what such a number leaves untouched
    if (source.number(value))
        return true;
    if (source.position() != start)
        return false;
    bool on = false;
    if (!wordToFlag(source.word(), on))
        return false;
    value = on ? 1.0 : 0.0;
    return true;
}

std::string shown(std::string_view text) {
    const std::string_view word =
        text.substr(0, std::min<std::size_t>(text.find_first_of(" \t\r\n"), 24));
    return word.empty() ? "the end of the statement" : "'" + std::string(word) + "'";
}

Status notNumber(std::string_view where) {
    return Status::failure("setAttr: a number was expected, not " + shown(where));
}

}  // namespace

bool wordToFlag(std::string_view word, bool& on) {
    on = word == "yes" || word == "on" || word == "true" || word == "1";
    return on || word == "no" || word == "off" || word == "false" || word == "0";
}

Status AttrSetter::readFlag(TokenCursor& cursor, const Token& name, Flags& flags,
                            std::string& warning) {
    const auto state = [&cursor](int& out) {
        bool on = true;
        if (wordToFlag(cursor.peek().text, on))
            cursor.next();
        out = on ? 1 : 0;
        return Status::ok();
    };
    if (is(name.text, kLock))
        return state(flags.lock);
    if (is(name.text, kKey))
        return state(flags.keyable);
    if (is(name.text, kBox))
        return state(flags.channelBox);
    if (is(name.text, kType)) {
        const Token type = cursor.next();
        flags.type = type.text;
        return type.isEnd() ? Status::failure("setAttr: -type without a type") : Status::ok();
    }
    for (const FlagName& flag : kWithValue)
        if (is(name.text, flag))
            return cursor.next().isEnd() ? Status::failure("setAttr: a flag without its value")
                                         : Status::ok();
    for (const FlagName& flag : kSwitches)
        if (is(name.text, flag))
            return Status::ok();
    warning = "setAttr: unknown flag " + std::string(name.text);
    return Status::ok();
}

// Flags stand before and behind the plug; what follows them are the values.
Status AttrSetter::readHead(TokenCursor& cursor, Flags& flags, std::string_view& plug,
                            std::string& warning) {
    for (Token token = cursor.peek(); token.isFlag() || plug.empty(); token = cursor.peek()) {
        if (!plug.empty() && isNegativeWord(token.text))
            break;
        cursor.next();
        if (token.isFlag()) {
            if (const Status status = readFlag(cursor, token, flags, warning); !status)
                return status;
        } else if (token.kind == Token::Kind::Quoted && !token.text.empty()) {
            plug = token.text;
        } else {
            return Status::failure("setAttr: an attribute name in quotes was expected, not " +
                                   shown(token.text));
        }
    }
    return Status::ok();
}

Status AttrSetter::read(std::string_view statement, NodeHandle current, std::string& warning) {
    TokenCursor cursor(statement);
    cursor.next();
    Flags flags;
    std::string_view plugText;
    if (const Status status = readHead(cursor, flags, plugText, warning); !status)
        return status;
    const std::size_t dot = plugText.find('.');
    if (dot == std::string_view::npos)
        return Status::failure("setAttr: '" + std::string(plugText) + "' names no attribute");
    Node* node = m_scene.node(dot == 0 ? current : m_scene.names().lookUp(plugText.substr(0, dot)));
    if (!node) {
        warning = "setAttr: no node for '" + std::string(plugText) + "'";
        return Status::ok();
    }
    AttrPath path;
    const AttrPath::Cut cut = path.cut(plugText.substr(dot + 1));
    if (cut == AttrPath::Cut::HugeIndex)
        return Status::failure("setAttr: index out of range in '" + std::string(plugText) + "'");
    if (cut == AttrPath::Cut::Malformed)
        return Status::failure("setAttr: malformed attribute name '" + std::string(plugText) + "'");
    PathTarget target;
    bool known = resolvePath(*node, path, target);
    if (known)
        if (const Status status = setValues(*node, target, flags, cursor.rest(), known, warning);
            !status)
            return status;
    if (known)
        setFlags(target, flags);
    else
        m_scene.changeFacts(node->self, [&](NodeFacts& facts) {
            facts.keptText.push_back(withoutReturns(statement) + ";");
        });
    return Status::ok();
}

void AttrSetter::setFlags(const PathTarget& target, const Flags& flags) {
    if (target.rangeDepth >= 0 || m_scene.info(target.plug).bulkOwner != kNoAttr)
        return;
    if (flags.lock >= 0)
        m_scene.setLocked(target.plug, flags.lock != 0);
    if (flags.keyable >= 0)
        m_scene.setKeyable(target.plug, flags.keyable != 0);
    if (flags.channelBox >= 0)
        m_scene.setChannelBox(target.plug, flags.channelBox != 0);
}

// Whether the values can belong to the attribute at all: the host's table may differ from the
// file's program.
bool AttrSetter::fits(const Plug& plug, std::string_view type, std::string_view values) const {
    const AttrInfo& info = m_scene.info(plug);
    AttrType named = info.type;
    const bool isNamed = type.empty() || attrTypeFromName(type, named);
    if (m_scene.isArrayPlug(plug) || info.type == AttrType::Message || info.type == AttrType::Any)
        return false;
    const bool hasText = values.front() == '"' || values.front() == '(';
    if (isNumeric(info.type))
        return isNamed && isNumeric(named) && !hasText;
    if (!isCompound(info.type))
        return !type.empty() || (info.type == AttrType::String && hasText);
    const auto isNumberChild = [&](AttrIndex child) {
        const AttrInfo& inner = m_scene.node(plug.node)->attr(child);
        return !inner.isArray() && (isNumeric(inner.type) || isCompound(inner.type));
    };
    return isNamed && isCompound(named) && !hasText && !info.children.empty() &&
           std::all_of(info.children.begin(), info.children.end(), isNumberChild);
}

Status AttrSetter::setNumbers(const Plug& plug, NumberSource& source) {
    const AttrInfo& info = m_scene.info(plug);
    if (info.children.empty()) {
        source.skipBlanks();
        const std::string_view here = source.rest();
        double value = 0.0;
        if (!readNumber(source, value) || (isWhole(info.type) && !std::isfinite(value)))
            return notNumber(here);
        const std::string_view read =
            here.substr(0, static_cast<std::size_t>(source.position() - here.data()));
        m_scene.setNumber(plug, fromUnits(read, value, units.factor(info.type)));
        return Status::ok();
    }
    for (std::size_t i = 0; i < info.children.size(); ++i)
        if (const Status status = setNumbers(m_scene.child(plug, static_cast<int>(i)), source);
            !status)
            return status;
    return Status::ok();
}

Status AttrSetter::setBulk(const PathTarget& target, std::string_view values, bool& known) {
    const AttrInfo& info = m_scene.info(target.plug);
    known = target.bulkLevel >= 0 && m_scene.bulk(target.plug) != nullptr;
    if (!known)
        return Status::ok();
    NumberSource source(values, NumberSource::NonFinite::Counted);
    Status status;
    m_scene.changeBulk(target.plug, [&](BulkArray& array) {
        std::string error;
        double value = 0.0;
        if (!info.isArray() && target.rangeDepth < 0) {  // one component of one element
            if (readNumber(source, value))
                array.setNumber(target.plug.index, info.childNumber, value);
            else
                status = notNumber(values);
        } else if (!array.read(target.plug.index, target.bulkLevel, target.bulkInner, target.first,
                               target.last, source, error)) {
            status = Status::failure("setAttr: " + error);
        }
    });
    nonFinite += source.nonFinite();
    if (status && !source.atEnd())
        return Status::failure("setAttr: more values than elements, from " + shown(source.rest()));
    return status;
}

Status AttrSetter::setValues(Node& node, const PathTarget& target, const Flags& flags,
                             std::string_view values, bool& known, std::string& warning) {
    const AttrInfo& info = node.attr(target.plug.attr);
    if (values.empty() && (flags.type.empty() || isNumeric(info.type) || isCompound(info.type)))
        return Status::ok();
    if (info.bulkOwner != kNoAttr)
        return setBulk(target, values, known);
    known = values.empty() ? !m_scene.isArrayPlug(target.plug) && info.type != AttrType::Message
                           : fits(target.plug, flags.type, values);
    if (!known)
        return Status::ok();
    if (!isNumeric(info.type) && !isCompound(info.type)) {
        PayloadPtr data;
        const std::string type = flags.type.empty() ? "string" : unescaped(flags.type);
        const Status status = readDataValue(type, info.type, values, data, nonFinite);
        known = !status || !data || payloadFits(info, *data);
        if (!known)
            warning = "setAttr: '" + m_scene.plugName(target.plug) + "' holds no " + type +
                      "; the value is kept as text";
        else if (status)
            m_scene.setData(target.plug, std::move(data));
        return status ? status : Status::failure("setAttr: " + status.text());
    }
    NumberSource source(values, NumberSource::NonFinite::Counted);
    Plug plug = target.plug;
    for (std::int64_t i = target.first; i <= target.last; ++i) {
        if (target.rangeDepth >= 0)
            plug.index[target.rangeDepth] = static_cast<std::int32_t>(i);
        if (const Status status = setNumbers(plug, source); !status)
            return status;
        if (target.rangeDepth < 0)
            break;
    }
    nonFinite += source.nonFinite();
    return source.atEnd() ? Status::ok()
                          : Status::failure("setAttr: more values than the attribute takes, from " +
                                            shown(source.rest()));
}

}  // namespace torvel
