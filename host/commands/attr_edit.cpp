#include <algorithm>
#include <cctype>

#include "commands/attr_value.h"
#include "commands/session.h"
#include "commands/tables.h"

namespace torvel {
namespace {

const FlagRow kAddFlags[] = {
    {"attributeType", "at", "s"},     {"cachedInternally", "ci", "b"}, {"category", "ct", "s", kCreate | kEdit, true},
    {"dataType", "dt", "s"},          {"defaultValue", "dv", "d"},     {"disconnectBehaviour", "dcb", "i"},
    {"enumName", "en", "s"},          {"exists", "ex"},                {"hidden", "h", "b"},
    {"hasMaxValue", "hxv", "b"},      {"hasMinValue", "hnv", "b"},     {"indexMatters", "im", "b"},
    {"internalSet", "is", "b"},       {"keyable", "k", "b"},           {"longName", "ln", "s"},
    {"maxValue", "max", "d"},         {"minValue", "min", "d"},        {"multi", "m"},
    {"niceName", "nn", "s"},          {"numberOfChildren", "nc", "i"}, {"parent", "p", "s"},
    {"readable", "r", "b"},           {"shortName", "sn", "s"},        {"softMaxValue", "smx", "d"},
    {"softMinValue", "smn", "d"},     {"storable", "s", "b"},          {"usedAsColor", "uac"},
    {"usedAsFilename", "uaf"},        {"writable", "w", "b"},
};

void setFlag(std::uint32_t& flags, std::uint32_t flag, bool on)
{
    flags = on ? flags | flag : flags & ~flag;
}

// Numbers of the flags come in script units.
void readRange(const CommandCall& call, AttrInfo& info)
{
    const double unit = 1.0 / uiScale(info);
    if (call.has("minValue"))
        info.minimum = call.number("minValue") * unit;
    if (call.has("maxValue"))
        info.maximum = call.number("maxValue") * unit;
    if (call.has("softMinValue"))
        info.softMinimum = call.number("softMinValue") * unit;
    if (call.has("softMaxValue"))
        info.softMaximum = call.number("softMaxValue") * unit;
    if (call.has("defaultValue"))
        info.defaultValue = call.number("defaultValue") * unit;
    if (call.has("hasMinValue") && !call.flag("hasMinValue"))
        info.minimum = -1e300;
    if (call.has("hasMaxValue") && !call.flag("hasMaxValue"))
        info.maximum = 1e300;
}

std::vector<std::string> enumEntries(const std::string& text)
{
    std::vector<std::string> names;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t colon = std::min(text.find(':', at), text.size());
        if (colon > at)
            names.push_back(text.substr(at, colon - at));
        at = colon + 1;
    }
    return names;
}

Status infoFromFlags(const CommandCall& call, AttrInfo& info)
{
    info.longName = call.text("longName", call.text("shortName"));
    info.shortName = call.text("shortName", info.longName);
    if (info.longName.empty())
        return call.fail("New attribute needs either a long (-ln) or short (-sn) attribute name.");
    const std::string type = call.text("attributeType", call.text("dataType", "double"));
    if (!attrTypeFromName(type, info.type))
        return call.fail("Type specified for new attribute is unknown: " + type);
    setFlag(info.flags, kArray, call.has("multi"));
    setFlag(info.flags, kKeyable, call.flag("keyable"));
    setFlag(info.flags, kHidden, call.flag("hidden"));
    setFlag(info.flags, kNotStored, !call.flag("storable", true));
    setFlag(info.flags, kOutput, !call.flag("writable", true));
    setFlag(info.flags, kNotReadable, !call.flag("readable", true));
    setFlag(info.flags, kNextAvailable, !call.flag("indexMatters", true));
    setFlag(info.flags, kDeleteElement, call.has("multi") && call.integer("disconnectBehaviour", 2) == 0);
    info.niceName = call.text("niceName");
    info.enumNames = enumEntries(call.text("enumName"));
    readRange(call, info);
    return Status::ok();
}

// A text such as "node.foo" gives its node.
Status nodesOfCall(const CommandCall& call, std::vector<NodeHandle>& nodes, std::string& attr)
{
    if (call.args().empty())
        return call.objectsOrSelection(nodes);
    for (const std::string& text : call.texts()) {
        const std::size_t dot = text.find('.');
        if (dot != std::string::npos)
            attr = text.substr(dot + 1);
        NodeHandle node;
        if (Status found = call.resolve(text.substr(0, dot), node); !found)
            return found;
        nodes.push_back(node);
    }
    return Status::ok();
}

Status addToNode(const CommandCall& call, NodeHandle handle, const AttrInfo& info)
{
    Scene& scene = call.scene();
    Node& node = *scene.node(handle);
    if (node.locked)
        return call.fail("The node '" + node.name + "' is locked.");
    AttrIndex parent = kNoAttr, made = kNoAttr;
    if (call.has("parent") && (parent = node.findAttr(call.text("parent"))) == kNoAttr)
        return call.fail("Parent attribute '" + call.text("parent") + "' does not exist.");
    if (node.findAttr(info.longName) != kNoAttr || node.findAttr(info.shortName) != kNoAttr) {
        scene.log().write(Channel::Warning, "Name '" + info.longName + "' of new attribute clashes with an existing " +
                                                "attribute of node '" + node.name + "'.");
        return call.fail("Found no valid items to add the attribute to.");
    }
    return scene.addAttribute(handle, info, parent, made);
}

// Ranges and names of an attribute made earlier.
Status editAttribute(const CommandCall& call, NodeHandle handle, const std::string& attr)
{
    Node& node = *call.scene().node(handle);
    const AttrIndex index = node.findAttr(attr), first = static_cast<AttrIndex>(node.type->attrs.size());
    if (index == kNoAttr || index < first)
        return call.fail("'" + attr + "' is no attribute added to '" + node.name + "'.");
    AttrInfo& info = node.dynamic->attrs[index - first];
    readRange(call, info);
    if (call.has("enumName"))
        info.enumNames = enumEntries(call.text("enumName"));
    if (call.has("niceName"))
        info.niceName = call.text("niceName");
    if (call.has("keyable"))
        setFlag(info.flags, kKeyable, call.flag("keyable"));
    if (call.has("hidden"))
        setFlag(info.flags, kHidden, call.flag("hidden"));
    info.addAttrText.clear();
    call.scene().modified = true;
    return Status::ok();
}

Value attributeFact(const CommandCall& call, const AttrInfo& info);

Status addAttr(const CommandCall& call, Value& result)
{
    std::vector<NodeHandle> nodes;
    std::string attr;
    if (Status found = nodesOfCall(call, nodes, attr); !found)
        return found;
    if (attr.empty())
        attr = call.text("longName");
    if (call.isQuery()) {
        const Plug plug = nodes.empty() ? Plug() : call.scene().findPlug(nodes.front(), attr);
        if (call.has("exists")) {
            result = Value(!plug.isNull());
            return Status::ok();
        }
        if (plug.isNull())
            return call.fail("No object matches name: " + attr);
        result = attributeFact(call, call.scene().info(plug));
        return Status::ok();
    }
    AttrInfo info;
    if (call.isCreate())
        if (Status read = infoFromFlags(call, info); !read)
            return read;
    if (nodes.empty())
        return call.fail("Found no valid items to add the attribute to.");
    for (NodeHandle node : nodes)
        if (Status done = call.isEdit() ? editAttribute(call, node, attr) : addToNode(call, node, info); !done)
            return done;
    return Status::ok();
}

// --- deleteAttr ----------------------------------------------------------------------------------------------

const FlagRow kDeleteFlags[] = {{"attribute", "at", "s"}};

Status deleteAttr(const CommandCall& call, Value&)
{
    std::vector<NodeHandle> nodes;
    std::string attr;
    if (Status found = nodesOfCall(call, nodes, attr); !found)
        return found;
    attr = call.text("attribute", attr);
    for (NodeHandle handle : nodes) {
        const Plug plug = call.scene().findPlug(handle, attr);
        const Node& node = *call.scene().node(handle);
        if (plug.isNull())
            return call.fail("No object matches name: " + node.name + "." + attr);
        if (!call.scene().info(plug).is(kDynamic))
            return call.fail("'" + attr + "' is not a dynamic attribute of node '" + node.name + "'.");
        if (node.locked || call.scene().isLocked(plug))
            return call.fail("The attribute '" + call.scene().plugName(plug) + "' is locked.");
        call.scene().deleteAttribute(handle, plug.attr);
    }
    return Status::ok();
}

// --- attributeQuery, listAttr ----------------------------------------------------------------------------------

const FlagRow kQueryFlags[] = {
    {"attributeType", "at"}, {"connectable", "c"},   {"exists", "ex"},        {"hidden", "h"},
    {"keyable", "k"},        {"listChildren", "lc"}, {"listDefault", "ld"},   {"listEnum", "le"},
    {"listParent", "lp"},    {"longName", "ln"},     {"maxExists", "mxe"},    {"maximum", "max"},
    {"message", "msg"},      {"minExists", "mne"},   {"minimum", "min"},      {"multi", "m"},
    {"niceName", "nn"},      {"node", "n", "s", kAllModes, false, true},
    {"range", "r"},          {"readable", "rd"},     {"rangeExists", "re"},   {"shortName", "s"},
    {"softMax", "smx"},      {"softMin", "smn"},        {"storable", "st"},
    {"type", "typ", "s", kAllModes, false, true},    {"writable", "w"},
};

std::string niceName(const AttrInfo& info)
{
    if (!info.niceName.empty())
        return info.niceName;
    std::string text;
    for (char c : info.longName) {
        if (std::isupper(static_cast<unsigned char>(c)) && !text.empty() && text.back() != ' ')
            text += ' ';
        text += text.empty() ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c == '_' ? ' ' : c;
    }
    return text;
}

std::string joined(const std::vector<std::string>& items)
{
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : ":") + item;
    return text;
}

Value numbersValue(const AttrInfo& info, std::initializer_list<double> numbers)
{
    Value::List items;
    for (double number : numbers)
        items.emplace_back(number * uiScale(info));
    return Value(std::move(items));
}

// What a flag of attributeQuery or of addAttr in query mode asks.
Value attributeFact(const CommandCall& call, const AttrInfo& info)
{
    struct Test
    {
        const char* flag;
        bool value;
    };
    const bool hasMin = info.minimum > -1e299, hasMax = info.maximum < 1e299;
    const Test tests[] = {
        {"connectable", !info.is(kNotConnectable)}, {"hidden", info.is(kHidden)},
        {"keyable", info.is(kKeyable)},             {"maxExists", hasMax},
        {"minExists", hasMin},                      {"message", info.type == AttrType::Message},
        {"multi", info.isArray()},                  {"readable", !info.is(kNotReadable)},
        {"rangeExists", hasMin && hasMax},          {"storable", !info.is(kNotStored) && !info.is(kOutput)},
        {"writable", !info.is(kOutput)},            {"hasMinValue", hasMin},
        {"hasMaxValue", hasMax},
    };
    for (const Test& test : tests)
        if (call.has(test.flag))
            return Value(test.value);
    const double scale = uiScale(info);
    if (call.has("attributeType"))
        return Value(attrTypeName(info.type));
    if (call.has("longName"))
        return Value(info.longName);
    if (call.has("shortName"))
        return Value(info.shortName);
    if (call.has("niceName"))
        return Value(niceName(info));
    if (call.has("listEnum"))
        return info.enumNames.empty() ? Value() : Value::strings({joined(info.enumNames)});
    if (call.has("enumName"))
        return Value(joined(info.enumNames));
    if (call.has("listDefault"))
        return numbersValue(info, {info.defaultValue});
    if (call.has("defaultValue"))
        return Value(info.defaultValue * scale);
    if (call.has("minimum"))
        return numbersValue(info, {info.minimum});
    if (call.has("maximum"))
        return numbersValue(info, {info.maximum});
    if (call.has("range"))
        return numbersValue(info, {info.minimum, info.maximum});
    if (call.has("minValue"))
        return hasMin ? Value(info.minimum * scale) : Value();
    if (call.has("maxValue"))
        return hasMax ? Value(info.maximum * scale) : Value();
    if (call.has("softMin") || call.has("softMinValue"))
        return numbersValue(info, {info.softMinimum});
    if (call.has("softMax") || call.has("softMaxValue"))
        return numbersValue(info, {info.softMaximum});
    return Value();
}

Value familyOf(const CommandCall& call, const Node& node, const AttrInfo& info)
{
    std::vector<std::string> names;
    if (call.has("listParent") && info.parent != kNoAttr)
        names.push_back(node.attr(info.parent).longName);
    for (std::size_t i = 0; call.has("listChildren") && i < info.children.size(); ++i)
        names.push_back(node.attr(info.children[i]).longName);
    return names.empty() ? Value() : Value::strings(names);
}

const AttrInfo* attributeOfType(const Scene& scene, const std::string& typeName, const std::string& attr)
{
    const NodeType* type = scene.types().find(typeName);
    const auto it = type ? type->byName.find(attr) : decltype(type->byName.end()){};
    return type && it != type->byName.end() ? &type->attrs[it->second] : nullptr;
}

Status attributeQuery(const CommandCall& call, Value& result)
{
    const std::vector<std::string> texts = call.texts();
    if (texts.empty())
        return call.fail("Needs the name of an attribute.");
    const AttrInfo* info = nullptr;
    NodeHandle handle;
    if (call.has("type")) {
        info = attributeOfType(call.scene(), call.text("type"), texts.front());
    } else {
        if (Status found = call.resolve(call.text("node"), handle); !found)
            return found;
        const Plug plug = call.scene().findPlug(handle, texts.front());
        const AttrIndex index = plug.isNull() ? call.scene().node(handle)->findAttr(texts.front()) : plug.attr;
        info = index == kNoAttr ? nullptr : &call.scene().node(handle)->attr(index);
    }
    if (call.has("exists")) {
        result = Value(info != nullptr);
        return Status::ok();
    }
    if (!info)
        return call.fail("'" + texts.front() + "' attribute does not exist.");
    const bool family = call.has("listParent") || call.has("listChildren");
    if (family && handle.isNull())
        return call.fail("Parents and children are listed for nodes only.");
    result = family ? familyOf(call, *call.scene().node(handle), *info) : attributeFact(call, *info);
    return Status::ok();
}

const FlagRow kListAttrFlags[] = {
    {"array", "a"},     {"channelBox", "cb"}, {"connectable", "c"}, {"keyable", "k"},
    {"locked", "l"},    {"multi", "m"},       {"output", "o"},      {"read", "r"},       {"scalar", "s"},
    {"settable", "se"}, {"shortNames", "sn"}, {"string", "st", "s", kCreate | kEdit, true},    {"unlocked", "u"},
    {"userDefined", "ud"}, {"visible", "v"},  {"write", "w"},
};

bool listed(const CommandCall& call, const AttrInfo& info, const Plug& plug)
{
    const Scene& scene = call.scene();
    if (info.longName.empty() || info.is(kOpaque))
        return false;
    const std::vector<const FlagUse*> patterns = call.uses("string");
    const bool matches = patterns.empty() || std::any_of(patterns.begin(), patterns.end(), [&](const FlagUse* use) {
                             return Names::matches(use->values[0].string(), info.longName);
                         });
    return matches && (!call.has("userDefined") || info.is(kDynamic)) &&
           (!call.has("keyable") || scene.isKeyable(plug)) && (!call.has("channelBox") || scene.isChannelBox(plug)) &&
           (!call.has("locked") || scene.isLocked(plug)) && (!call.has("unlocked") || !scene.isLocked(plug)) &&
           (!call.has("connectable") || !info.is(kNotConnectable)) && (!call.has("read") || !info.is(kNotReadable)) &&
           (!call.has("write") || !info.is(kOutput)) && (!call.has("output") || info.is(kOutput)) &&
           ((!call.has("multi") && !call.has("array")) || info.isArray()) && (!call.has("visible") || !info.is(kHidden)) &&
           (!call.has("scalar") || isNumeric(info.type)) &&
           (!call.has("settable") || (!info.is(kOutput) && scene.isSettable(plug)));
}

Status listAttr(const CommandCall& call, Value& result)
{
    std::vector<NodeHandle> nodes;
    std::string attr;
    if (Status found = nodesOfCall(call, nodes, attr); !found)
        return found;
    std::vector<std::string> names;
    for (NodeHandle handle : nodes) {
        const Node& node = *call.scene().node(handle);
        for (AttrIndex i = 0; i < node.attrCount(); ++i) {
            const AttrInfo& info = node.attr(i);
            if (!attr.empty() && info.longName != attr && info.shortName != attr)
                continue;
            const Plug plug(handle, i);
            if (listed(call, info, plug))
                names.push_back(call.has("shortNames") ? info.shortName : info.longName);
        }
    }
    result = names.empty() ? Value() : Value::strings(names);
    return Status::ok();
}

const Command kEditCommands[] = {
    {"addAttr", kAddFlags, countOf(kAddFlags), addAttr, "Adds an attribute to nodes."},
    {"attributeQuery", kQueryFlags, countOf(kQueryFlags), attributeQuery, "Facts about an attribute."},
    {"deleteAttr", kDeleteFlags, countOf(kDeleteFlags), deleteAttr, "Removes an added attribute."},
    {"listAttr", kListAttrFlags, countOf(kListAttrFlags), listAttr, "Names of a node's attributes."},
};

}  // namespace

CommandTable attributeEditCommands()
{
    return {kEditCommands, std::size(kEditCommands)};
}

}  // namespace torvel
