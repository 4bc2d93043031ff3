// attributeQuery, listAttr.
#include "commands/attribute/info.h"

#include <algorithm>
#include <cctype>

#include "commands/attribute/value.h"
#include "script/session.h"

namespace torvel {
namespace {

// --- facts ---------------------------------------------------------------------------------------

std::string niceName(const AttrInfo& info) {
    if (!info.niceName.empty())
        return info.niceName;
    std::string text;
    for (char c : info.longName) {
        if (std::isupper(static_cast<unsigned char>(c)) && !text.empty() && text.back() != ' ')
            text += ' ';
        text += text.empty() ? static_cast<char>(std::toupper(static_cast<unsigned char>(c)))
                : c == '_'   ? ' '
                             : c;
    }
    return text;
}

Value joined(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : ":") + item;
    return Value(text);
}

bool hasMinimum(const AttrInfo& info) {
    return info.minimum > -1e299;
}
bool hasMaximum(const AttrInfo& info) {
    return info.maximum < 1e299;
}
bool hasSoftRange(const AttrInfo& info) {
    return info.softMinimum > -1e299 && info.softMaximum < 1e299;
}

Value list(const AttrInfo& info, std::initializer_list<double> numbers) {
    Value::List items;
    for (double number : numbers)
        items.emplace_back(number * uiScale(info));
    return Value(std::move(items));
}

struct Fact {
    const char* flag;
    Value (*of)(const AttrInfo&);
};

// Flags of attributeQuery and of addAttr -query in one table.
const Fact kFacts[] = {
    {"attributeType", [](const AttrInfo& i) { return Value(attrTypeName(i.type)); }},
    {"cachedInternally", [](const AttrInfo&) { return Value(true); }},
    {"channelBox", [](const AttrInfo& i) { return Value(i.is(kChannelBox)); }},
    {"connectable", [](const AttrInfo& i) { return Value(!i.is(kNotConnectable)); }},
    {"enum", [](const AttrInfo& i) { return Value(i.type == AttrType::Enum); }},
    {"hidden", [](const AttrInfo& i) { return Value(i.is(kHidden)); }},
    {"indexMatters", [](const AttrInfo& i) { return Value(!i.is(kNextAvailable)); }},
    {"internal", [](const AttrInfo&) { return Value(false); }},
    {"keyable", [](const AttrInfo& i) { return Value(i.is(kKeyable)); }},
    {"maxExists", [](const AttrInfo& i) { return Value(hasMaximum(i)); }},
    {"hasMaxValue", [](const AttrInfo& i) { return Value(hasMaximum(i)); }},
    {"minExists", [](const AttrInfo& i) { return Value(hasMinimum(i)); }},
    {"hasMinValue", [](const AttrInfo& i) { return Value(hasMinimum(i)); }},
    {"message", [](const AttrInfo& i) { return Value(i.type == AttrType::Message); }},
    {"multi", [](const AttrInfo& i) { return Value(i.isArray()); }},
    {"numberOfChildren",
     [](const AttrInfo& i) { return Value(static_cast<int>(i.children.size())); }},
    {"rangeExists", [](const AttrInfo& i) { return Value(hasMinimum(i) && hasMaximum(i)); }},
    {"readable", [](const AttrInfo& i) { return Value(!i.is(kNotReadable)); }},
    {"softRangeExists", [](const AttrInfo& i) { return Value(hasSoftRange(i)); }},
    {"storable", [](const AttrInfo& i) { return Value(!i.is(kNotStored) && !i.is(kOutput)); }},
    {"usedAsColor",
     [](const AttrInfo& i) {
         const std::string& name = i.longName;
         return Value(i.type == AttrType::Float3 && i.children.size() == 3 &&
                      (name.find("olor") != std::string::npos || name == "transparency"));
     }},
    {"usedAsFilename", [](const AttrInfo&) { return Value(false); }},
    {"worldSpace", [](const AttrInfo& i) { return Value(i.is(kPerInstance)); }},
    {"writable", [](const AttrInfo& i) { return Value(!i.is(kOutput)); }},
    {"longName", [](const AttrInfo& i) { return Value(i.longName); }},
    {"shortName", [](const AttrInfo& i) { return Value(i.shortName); }},
    {"niceName", [](const AttrInfo& i) { return Value(niceName(i)); }},
    {"listEnum",
     [](const AttrInfo& i) {
         return i.enumNames.empty() ? Value() : Value(Value::List{joined(i.enumNames)});
     }},
    {"enumName", [](const AttrInfo& i) { return joined(i.enumNames); }},
    {"defaultValue", [](const AttrInfo& i) { return Value(i.defaultValue * uiScale(i)); }},
    {"minimum", [](const AttrInfo& i) { return list(i, {i.minimum}); }},
    {"maximum", [](const AttrInfo& i) { return list(i, {i.maximum}); }},
    {"range",
     [](const AttrInfo& i) {
         return list(i, {i.minimum, i.maximum});
     }},
    {"minValue",
     [](const AttrInfo& i) { return hasMinimum(i) ? Value(i.minimum * uiScale(i)) : Value(); }},
    {"maxValue",
     [](const AttrInfo& i) { return hasMaximum(i) ? Value(i.maximum * uiScale(i)) : Value(); }},
    {"softMin", [](const AttrInfo& i) { return list(i, {i.softMinimum}); }},
    {"softMinValue", [](const AttrInfo& i) { return list(i, {i.softMinimum}); }},
    {"softMax", [](const AttrInfo& i) { return list(i, {i.softMaximum}); }},
    {"softMaxValue", [](const AttrInfo& i) { return list(i, {i.softMaximum}); }},
    {"softRange",
     [](const AttrInfo& i) {
         return list(i, {i.softMinimum, i.softMaximum});
     }},
};

}  // namespace

Value attributeFact(const CommandCall& call, const AttrInfo& info) {
    for (const Fact& fact : kFacts)
        if (call.has(fact.flag))
            return fact.of(info);
    return Value();
}

namespace {

// --- attributeQuery ------------------------------------------------------------------------------

const FlagRow kQueryFlags[] = {
    {"attributeType", "at"},
    {"cachedInternally", "ci"},
    {"channelBox", "ch"},
    {"connectable", "c"},
    {"enum", "e"},
    {"exists", "ex"},
    {"hidden", "h"},
    {"indexMatters", "im"},
    {"internal", "i"},
    {"keyable", "k"},
    {"listChildren", "lc"},
    {"listDefault", "ld"},
    {"listEnum", "le"},
    {"listParent", "lp"},
    {"listSiblings", "ls"},
    {"longName", "ln"},
    {"maxExists", "mxe"},
    {"maximum", "max"},
    {"message", "msg"},
    {"minExists", "mne"},
    {"minimum", "min"},
    {"multi", "m"},
    {"niceName", "nn"},
    {"node", "n", "s", kAllModes, false, true},
    {"numberOfChildren", "nc"},
    {"range", "r"},
    {"rangeExists", "re"},
    {"readable", "rd"},
    {"shortName", "s"},
    {"softMax", "smx"},
    {"softMin", "smn"},
    {"softRange", "smr"},
    {"softRangeExists", "sre"},
    {"storable", "st"},
    {"type", "typ", "s", kAllModes, false, true},
    {"typeExact", "tex", "s", kAllModes, false, true},
    {"usedAsColor", "uac"},
    {"usedAsFilename", "uaf"},
    {"worldSpace", "ws"},
    {"writable", "w"},
};

/// An attribute of a node or of a node type, with its neighbours.
struct Subject {
    const Node* node = nullptr;
    const NodeType* type = nullptr;
    AttrIndex attr = kNoAttr;

    const AttrInfo& at(AttrIndex i) const { return node ? node->attr(i) : type->attrs[i]; }
    const AttrInfo& info() const { return at(attr); }
};

Status findSubject(const CommandCall& call, const std::string& name, Subject& out) {
    const Scene& scene = call.scene();
    const std::string typeName = call.text("type", call.text("typeExact"));
    if (!typeName.empty()) {
        out.type = scene.types().find(typeName);
        if (!out.type)
            return call.fail("Unknown node type: " + typeName);
        const auto found = out.type->byName.find(name);
        out.attr = found == out.type->byName.end() ? kNoAttr : found->second;
        return Status::ok();
    }
    if (!call.has("node"))
        return call.fail("Needs a node (-node) or a node type (-type).");
    NodeHandle handle;
    if (Status found = call.resolve(call.text("node"), handle); !found)
        return found;
    out.node = scene.node(handle);
    const Plug plug = scene.findPlug(handle, name);
    out.attr = plug.isNull() ? out.node->findAttr(name) : plug.attr;
    return Status::ok();
}

std::vector<AttrIndex> relativesOf(const CommandCall& call, const Subject& subject) {
    const AttrIndex parent = subject.info().parent;
    std::vector<AttrIndex> found;
    if (call.has("listChildren"))
        found = subject.info().children;
    else if (call.has("listParent") && parent != kNoAttr)
        found = {parent};
    else if (call.has("listSiblings") && parent != kNoAttr)
        for (const AttrIndex child : subject.at(parent).children)
            if (child != subject.attr)
                found.push_back(child);
    return found;
}

Value names(const Subject& subject, const std::vector<AttrIndex>& attrs) {
    std::vector<std::string> texts;
    for (const AttrIndex attr : attrs)
        texts.push_back(subject.at(attr).longName);
    return texts.empty() ? Value() : Value::strings(texts);
}

// Of a compound: those of its numbers.
void addDefaults(const Subject& subject, AttrIndex attr, Value::List& out) {
    const AttrInfo& info = subject.at(attr);
    if (isNumeric(info.type))
        out.emplace_back(info.defaultValue * uiScale(info));
    else
        for (const AttrIndex child : info.children)
            addDefaults(subject, child, out);
}

Status attributeQuery(const CommandCall& call, Value& result) {
    const std::vector<std::string> texts = call.texts();
    if (texts.empty())
        return call.fail("Needs the name of an attribute.");
    Subject subject;
    if (Status found = findSubject(call, texts.front(), subject); !found)
        return found;
    const bool exists =
        subject.attr != kNoAttr && !(subject.info().is(kOpaque) && !subject.info().is(kDynamic));
    if (call.has("exists")) {
        result = Value(exists);
        return Status::ok();
    }
    if (!exists)
        return call.fail("'" + texts.front() + "' attribute does not exist.");
    if (call.has("listParent") || call.has("listChildren") || call.has("listSiblings")) {
        result = names(subject, relativesOf(call, subject));
    } else if (call.has("listDefault")) {
        Value::List defaults;
        addDefaults(subject, subject.attr, defaults);
        result = defaults.empty() ? Value() : Value(std::move(defaults));
    } else {
        result = attributeFact(call, subject.info());
    }
    return Status::ok();
}

// --- listAttr ------------------------------------------------------------------------------------

const FlagRow kListAttrFlags[] = {
    {"array", "a"},
    {"channelBox", "cb"},
    {"category", "ct", "s", kCreate | kEdit, true},
    {"connectable", "c"},
    {"fromPlugin", "fp"},
    {"hasData", "hd"},
    {"inUse", "iu"},
    {"keyable", "k"},
    {"leaf", "lf"},
    {"locked", "l"},
    {"multi", "m"},
    {"output", "o"},
    {"read", "r"},
    {"readOnly", "ro"},
    {"scalar", "s"},
    {"scalarAndArray", "sa"},
    {"settable", "se"},
    {"shortNames", "sn"},
    {"string", "st", "s", kCreate | kEdit, true},
    {"unlocked", "u"},
    {"usedAsFilename", "uf"},
    {"userDefined", "ud"},
    {"visible", "v"},
    {"write", "w"},
};

bool isDataArray(AttrType type) {
    return type == AttrType::IntArray || type == AttrType::DoubleArray ||
           type == AttrType::VectorArray || type == AttrType::PointArray ||
           type == AttrType::StringArray;
}

bool isUsed(const Scene& scene, const Plug& plug) {
    const Slot* slot = scene.peekSlot(plug);
    return slot && ((slot->state & kSet) || slot->links || slot->array);
}

struct Filter {
    const char* flag;
    bool (*passes)(const Scene&, const Plug&, const AttrInfo&);
};

const Filter kFilters[] = {
    {"array", [](const Scene&, const Plug&, const AttrInfo& i) { return isDataArray(i.type); }},
    {"category", [](const Scene&, const Plug&, const AttrInfo&) { return false; }},
    {"channelBox",
     [](const Scene& s, const Plug& p, const AttrInfo&) { return s.isChannelBox(p); }},
    {"connectable",
     [](const Scene&, const Plug&, const AttrInfo& i) { return !i.is(kNotConnectable); }},
    {"fromPlugin", [](const Scene&, const Plug&, const AttrInfo&) { return false; }},
    {"hasData",
     [](const Scene& s, const Plug& p, const AttrInfo& i) {
         return isNumeric(i.type) || isCompound(i.type) || s.storedData(p) != nullptr;
     }},
    {"inUse", [](const Scene& s, const Plug& p, const AttrInfo&) { return isUsed(s, p); }},
    // the numbers of a compound are keyable, not the compound
    {"keyable", [](const Scene& s, const Plug& p,
                   const AttrInfo& i) { return s.isKeyable(p) && !isCompound(i.type); }},
    {"leaf", [](const Scene&, const Plug&, const AttrInfo& i) { return i.children.empty(); }},
    {"locked", [](const Scene& s, const Plug& p, const AttrInfo&) { return s.isLocked(p); }},
    {"output", [](const Scene&, const Plug&, const AttrInfo& i) { return i.is(kOutput); }},
    {"read", [](const Scene&, const Plug&, const AttrInfo& i) { return !i.is(kNotReadable); }},
    {"readOnly", [](const Scene&, const Plug&, const AttrInfo& i) { return i.is(kOutput); }},
    {"scalar", [](const Scene&, const Plug&, const AttrInfo& i) { return isNumeric(i.type); }},
    {"scalarAndArray", [](const Scene&, const Plug&,
                          const AttrInfo& i) { return isNumeric(i.type) || isDataArray(i.type); }},
    {"settable", [](const Scene& s, const Plug& p,
                    const AttrInfo& i) { return !i.is(kOutput) && s.isSettable(p); }},
    {"unlocked", [](const Scene& s, const Plug& p, const AttrInfo&) { return !s.isLocked(p); }},
    {"usedAsFilename", [](const Scene&, const Plug&, const AttrInfo&) { return false; }},
    {"userDefined", [](const Scene&, const Plug&, const AttrInfo& i) { return i.is(kDynamic); }},
    {"visible", [](const Scene&, const Plug&, const AttrInfo& i) { return !i.is(kHidden); }},
    {"write", [](const Scene&, const Plug&, const AttrInfo& i) { return !i.is(kOutput); }},
};

bool isListed(const CommandCall& call, const Plug& plug) {
    const Scene& scene = call.scene();
    const AttrInfo& info = scene.info(plug);
    if (info.longName.empty() || info.is(kOpaque))
        return false;
    const std::vector<const FlagUse*> patterns = call.uses("string");
    if (!patterns.empty() &&
        std::none_of(patterns.begin(), patterns.end(), [&](const FlagUse* use) {
            const std::string& pattern = use->values[0].string();
            return Names::matches(pattern, info.longName) || pattern == info.shortName;
        }))
        return false;
    return std::all_of(std::begin(kFilters), std::end(kFilters), [&](const Filter& filter) {
        return !call.has(filter.flag) || filter.passes(scene, plug, info);
    });
}

class AttrLister {
  public:
    AttrLister(const CommandCall& call, std::vector<std::string>& out)
        : m_call(call), m_scene(call.scene()), m_short(call.has("shortNames")), m_out(out) {}

    void addNode(NodeHandle handle) {
        const Node& node = *m_scene.node(handle);
        for (AttrIndex i = 0; i < node.attrCount(); ++i)
            if (node.attr(i).parent == kNoAttr)
                add(Plug(handle, i), {});
    }
    void addPlug(const Plug& plug) { add(plug, {}); }

  private:
    // `above`: path of the array compounds on the way; their children are named with it.
    void add(const Plug& plug, const std::string& above) {
        const AttrInfo& info = m_scene.info(plug);
        const std::string& own = m_short ? info.shortName : info.longName;
        const std::string name = above.empty() ? own : above + "." + own;
        const bool isArray = m_scene.isArrayPlug(plug);
        const std::string index = m_scene.isElement(plug) && !isArray
                                      ? "[" + std::to_string(m_scene.logicalIndex(plug)) + "]"
                                      : std::string();
        const bool asElements = isArray && m_call.has("multi") && m_scene.elementCount(plug) > 0;
        if (asElements) {
            for (std::size_t i = 0; i < m_scene.elementCount(plug); ++i)
                add(m_scene.elementAt(plug, i), above);
            return;
        }
        if (isListed(m_call, plug))
            m_out.push_back(name + index);
        for (const AttrIndex child : info.children) {
            Plug below = plug;
            below.attr = child;
            add(below, info.isArray() ? name + index : above);
        }
    }

    const CommandCall& m_call;
    const Scene& m_scene;
    bool m_short;
    std::vector<std::string>& m_out;
};

Status listAttr(const CommandCall& call, Value& result) {
    std::vector<std::string> names;
    AttrLister lister(call, names);
    std::vector<NodeHandle> selected;
    if (call.args().empty())
        if (Status found = call.objectsOrSelection(selected); !found)
            return found;
    for (const NodeHandle node : selected)
        lister.addNode(node);
    for (const std::string& text : call.texts()) {
        Plug plug;
        NodeHandle node;
        const bool isPlug = text.find('.') != std::string::npos;
        if (Status found = isPlug ? call.resolvePlug(text, plug) : call.resolve(text, node); !found)
            return found;
        if (isPlug)
            lister.addPlug(plug);
        else
            lister.addNode(node);
    }
    result = names.empty() ? Value() : Value::strings(names);
    return Status::ok();
}

const Command kInfoCommands[] = {
    {"attributeQuery", kQueryFlags, countOf(kQueryFlags), attributeQuery,
     "Facts about an attribute."},
    {"listAttr", kListAttrFlags, countOf(kListAttrFlags), listAttr,
     "Names of a node's attributes."},
};

}  // namespace

CommandTable attributeInfoCommands() {
    return {kInfoCommands, std::size(kInfoCommands)};
}

}  // namespace torvel
