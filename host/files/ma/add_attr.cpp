#include "files/ma/add_attr.h"

#include "base/number_source.h"
#include "files/ma/set_attr.h"
#include "files/ma/statement.h"
#include "files/ma/units.h"

namespace torvel {
namespace {

// What the flags of one statement say.
struct Wanted {
    AttrInfo info;
    std::string parent;
    bool hasType = false;
};

struct Flag {
    const char* shortName;
    const char* longName;
    enum class Kind { Text, Number, Truth, Switch, Ignored } kind;
    bool (*take)(Wanted& wanted, const std::string& text, double number);
};

void mark(AttrInfo& info, std::uint32_t flag, bool on) {
    info.flags = on ? info.flags | flag : info.flags & ~flag;
}

void splitEnum(const std::string& text, std::vector<std::string>& names) {
    std::size_t at = 0;
    for (std::size_t colon = text.find(':'); colon != std::string::npos;
         colon = text.find(':', at)) {
        names.push_back(text.substr(at, colon - at));
        at = colon + 1;
    }
    names.push_back(text.substr(at));
}

bool takeType(Wanted& w, const std::string& name) {
    w.hasType = true;
    if (!attrTypeFromName(name, w.info.type))
        w.info.type = AttrType::Text;
    return true;
}

using Kind = Flag::Kind;
const Flag kFlags[] = {{"sn", "shortName", Kind::Text,
                        [](Wanted& w, const std::string& t, double) {
                            w.info.shortName = t;
                            return true;
                        }},
                       {"ln", "longName", Kind::Text,
                        [](Wanted& w, const std::string& t, double) {
                            w.info.longName = t;
                            return true;
                        }},
                       {"nn", "niceName", Kind::Text,
                        [](Wanted& w, const std::string& t, double) {
                            w.info.niceName = t;
                            return true;
                        }},
                       {"p", "parent", Kind::Text,
                        [](Wanted& w, const std::string& t, double) {
                            w.parent = t;
                            return true;
                        }},
                       {"en", "enumName", Kind::Text,
                        [](Wanted& w, const std::string& t, double) {
                            splitEnum(t, w.info.enumNames);
                            return true;
                        }},
                       {"at", "attributeType", Kind::Text,
                        [](Wanted& w, const std::string& t, double) { return takeType(w, t); }},
                       {"dt", "dataType", Kind::Text,
                        [](Wanted& w, const std::string& t, double) { return takeType(w, t); }},
                       {"dv", "defaultValue", Kind::Number,
                        [](Wanted& w, const std::string&, double n) {
                            w.info.defaultValue = n;
                            return true;
                        }},
                       {"min", "minValue", Kind::Number,
                        [](Wanted& w, const std::string&, double n) {
                            w.info.minimum = n;
                            return true;
                        }},
                       {"max", "maxValue", Kind::Number,
                        [](Wanted& w, const std::string&, double n) {
                            w.info.maximum = n;
                            return true;
                        }},
                       {"smn", "softMinValue", Kind::Number,
                        [](Wanted& w, const std::string&, double n) {
                            w.info.softMinimum = n;
                            return true;
                        }},
                       {"smx", "softMaxValue", Kind::Number,
                        [](Wanted& w, const std::string&, double n) {
                            w.info.softMaximum = n;
                            return true;
                        }},
                       {"dcb", "disconnectBehaviour", Kind::Number,
                        [](Wanted& w, const std::string&, double n) {
                            mark(w.info, kDeleteElement, n == 0.0);
                            return true;
                        }},
                       {"k", "keyable", Kind::Truth,
                        [](Wanted& w, const std::string&, double on) {
                            mark(w.info, kKeyable, on != 0.0);
                            return true;
                        }},
                       {"h", "hidden", Kind::Truth,
                        [](Wanted& w, const std::string&, double on) {
                            mark(w.info, kHidden, on != 0.0);
                            return true;
                        }},
                       {"im", "indexMatters", Kind::Truth,
                        [](Wanted& w, const std::string&, double on) {
                            mark(w.info, kNextAvailable, on == 0.0);
                            return true;
                        }},
                       {"r", "readable", Kind::Truth,
                        [](Wanted& w, const std::string&, double on) {
                            mark(w.info, kNotReadable, on == 0.0);
                            return true;
                        }},
                       {"s", "storable", Kind::Truth,
                        [](Wanted& w, const std::string&, double on) {
                            mark(w.info, kNotStored, on == 0.0);
                            return true;
                        }},
                       {"m", "multi", Kind::Switch,
                        [](Wanted& w, const std::string&, double) {
                            mark(w.info, kArray, true);
                            return true;
                        }},
                       {"nc", "numberOfChildren", Kind::Number, nullptr},
                       {"ct", "category", Kind::Text, nullptr},
                       {"bt", "binaryTag", Kind::Text, nullptr},
                       {"ci", "cachedInternally", Kind::Truth, nullptr},
                       {"is", "internalSet", Kind::Truth, nullptr},
                       {"w", "writable", Kind::Truth, nullptr},
                       {"hnv", "hasMinValue", Kind::Truth, nullptr},
                       {"hxv", "hasMaxValue", Kind::Truth, nullptr},
                       {"hsn", "hasSoftMinValue", Kind::Truth, nullptr},
                       {"hsx", "hasSoftMaxValue", Kind::Truth, nullptr},
                       {"uac", "usedAsColor", Kind::Switch, nullptr},
                       {"uap", "usedAsProxy", Kind::Switch, nullptr},
                       {"uaf", "usedAsFilename", Kind::Switch, nullptr},
                       {"pxy", "proxy", Kind::Text, nullptr}};

const Flag* findFlag(std::string_view name) {
    name.remove_prefix(1);
    for (const Flag& flag : kFlags)
        if (name == flag.shortName || name == flag.longName)
            return &flag;
    return nullptr;
}

bool readTruth(TokenCursor& cursor, double& number) {
    bool on = true;
    if (wordToFlag(cursor.peek().text, on))
        cursor.next();
    number = on ? 1.0 : 0.0;
    return true;
}

// The value of a flag; false when it is missing or of the wrong kind.
bool readFlagValue(TokenCursor& cursor, const Flag& flag, std::string& text, double& number) {
    switch (flag.kind) {
        case Kind::Text: return cursor.text(text);
        case Kind::Number: {
            NumberSource source(cursor.next().text, NumberSource::NonFinite::Counted);
            bool on = false;
            if (source.number(number)) {
                if (cursor.peek().isMark('('))  // "-nan(ind)"
                    while (!cursor.peek().isEnd() && !cursor.next().isMark(')')) {
                    }
                return source.atEnd();
            }
            const bool good = wordToFlag(source.word(), on);
            number = on ? 1.0 : 0.0;
            return good;
        }
        default: return readTruth(cursor, number);
    }
}

Status readFlags(std::string_view statement, Wanted& wanted, std::string& warning) {
    TokenCursor cursor(statement);
    cursor.next();
    while (true) {
        const Token token = cursor.next();
        if (token.isEnd())
            return Status::ok();
        if (!token.isFlag())
            return Status::failure("addAttr: unexpected '" + std::string(token.text) + "'");
        const Flag* flag = findFlag(token.text);
        if (!flag) {
            warning = "addAttr: unknown flag " + std::string(token.text);
            while (!cursor.peek().isEnd() && !cursor.peek().isFlag())
                cursor.next();
            continue;
        }
        std::string text;
        double number = 0.0;
        if (!readFlagValue(cursor, *flag, text, number))
            return Status::failure("addAttr: flag " + std::string(token.text) +
                                   " without its value");
        if (flag->take)
            flag->take(wanted, text, number);
    }
}

AttrIndex findParent(const Node& node, const std::string& name) {
    const AttrIndex found = node.findAttr(name);
    return found != kNoAttr && found >= node.type->attrs.size() && !node.attr(found).is(kOpaque)
               ? found
               : kNoAttr;
}

void appendLimit(std::string& out, const char* flag, double value, double none) {
    if (value == none)
        return;
    out += std::string(" ") + flag + ' ';
    appendDouble(out, value);
}

std::string typeText(const AttrInfo& info) {
    const bool isData = !isNumeric(info.type) && !isCompound(info.type) &&
                        info.type != AttrType::Message && info.type != AttrType::Matrix;
    return std::string(isData ? " -dt " : " -at ") + inQuotes(attrTypeName(info.type));
}

std::string enumText(const std::vector<std::string>& names) {
    std::string joined;
    for (const std::string& name : names)
        joined += (joined.empty() ? "" : ":") + name;
    return " -en " + inQuotes(joined);
}

}  // namespace

Status readAddAttr(Scene& scene, NodeHandle current, std::string_view statement,
                   std::string& warning) {
    Node* node = scene.node(current);
    if (!node) {
        warning = "addAttr: no node to add to";
        return Status::ok();
    }
    Wanted wanted;
    if (const Status status = readFlags(statement, wanted, warning); !status)
        return status;
    if (wanted.info.longName.empty())
        wanted.info.longName = wanted.info.shortName;
    if (wanted.info.longName.empty())
        return Status::failure("addAttr: no name is given");
    const std::size_t head = statement.find_first_of(" \t\r\n");
    wanted.info.addAttrText = onOneLine(statement.substr(head));
    const AttrIndex parent = wanted.parent.empty() ? kNoAttr : findParent(*node, wanted.parent);
    const bool hasPlace = wanted.parent.empty() || parent != kNoAttr;
    AttrIndex made = kNoAttr;
    if (!hasPlace || !scene.addAttribute(current, wanted.info, parent, made))
        scene.changeFacts(current, [&](NodeFacts& facts) {
            facts.keptText.push_back("addAttr " + wanted.info.addAttrText + ";");
        });
    return Status::ok();
}

std::string addAttrText(const Node& node, AttrIndex index) {
    const AttrInfo& info = node.attr(index);
    if (!info.addAttrText.empty())
        return info.addAttrText;
    std::string out = "-ci true";
    out += info.is(kKeyable) ? " -k true" : "";
    out += info.is(kHidden) ? " -h true" : "";
    out += info.is(kArray) ? " -m" : "";
    out += info.is(kNextAvailable) ? " -im false" : "";
    out += info.is(kNotStored) ? " -s false" : "";
    out += info.is(kNotReadable) ? " -r false" : "";
    out += info.is(kDeleteElement) ? " -dcb 0" : "";
    out += " -sn " + inQuotes(info.shortName) + " -ln " + inQuotes(info.longName);
    out += info.niceName.empty() ? "" : " -nn " + inQuotes(info.niceName);
    appendLimit(out, "-dv", info.defaultValue, 0.0);
    appendLimit(out, "-min", info.minimum, -1e300);
    appendLimit(out, "-max", info.maximum, 1e300);
    appendLimit(out, "-smn", info.softMinimum, -1e300);
    appendLimit(out, "-smx", info.softMaximum, 1e300);
    out += info.enumNames.empty() ? "" : enumText(info.enumNames);
    out += typeText(info);
    out += info.parent == kNoAttr ? "" : " -p " + inQuotes(node.attr(info.parent).longName);
    out += info.children.empty() ? "" : " -nc " + std::to_string(info.children.size());
    return out;
}

}  // namespace torvel
