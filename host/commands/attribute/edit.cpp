#include <algorithm>

#include "commands/attribute/info.h"
#include "commands/attribute/value.h"
#include "script/session.h"

namespace torvel {
namespace {

const FlagRow kAddFlags[] = {
    {"attributeType", "at", "s"},
    {"cachedInternally", "ci", "b"},
    {"category", "ct", "s", kCreate | kEdit, true},
    {"dataType", "dt", "s"},
    {"defaultValue", "dv", "d"},
    {"disconnectBehaviour", "dcb", "i"},
    {"enumName", "en", "s"},
    {"exists", "ex"},
    {"hidden", "h", "b"},
    {"hasMaxValue", "hxv", "b"},
    {"hasMinValue", "hnv", "b"},
    {"indexMatters", "im", "b"},
    {"internalSet", "is", "b"},
    {"keyable", "k", "b"},
    {"longName", "ln", "s"},
    {"maxValue", "max", "d"},
    {"minValue", "min", "d"},
    {"multi", "m"},
    {"niceName", "nn", "s"},
    {"numberOfChildren", "nc", "i"},
    {"parent", "p", "s"},
    {"readable", "r", "b"},
    {"shortName", "sn", "s"},
    {"softMaxValue", "smx", "d"},
    {"softMinValue", "smn", "d"},
    {"storable", "s", "b"},
    {"usedAsColor", "uac"},
    {"usedAsFilename", "uaf"},
    {"writable", "w", "b"},
};

void setFlag(std::uint32_t& flags, std::uint32_t flag, bool on) {
    flags = on ? flags | flag : flags & ~flag;
}

// Numbers of the flags come in script units.
void readRange(const CommandCall& call, AttrInfo& info) {
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

std::vector<std::string> enumEntries(const std::string& text) {
    std::vector<std::string> names;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t colon = std::min(text.find(':', at), text.size());
        if (colon > at)
            names.push_back(text.substr(at, colon - at));
        at = colon + 1;
    }
    return names;
}

Status infoFromFlags(const CommandCall& call, AttrInfo& info) {
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
    setFlag(info.flags, kDeleteElement,
            call.has("multi") && call.integer("disconnectBehaviour", 2) == 0);
    info.niceName = call.text("niceName");
    info.enumNames = enumEntries(call.text("enumName"));
    readRange(call, info);
    return Status::ok();
}

// A text such as "node.foo" gives its node.
Status nodesOfCall(const CommandCall& call, std::vector<NodeHandle>& nodes, std::string& attr) {
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

Status addToNode(const CommandCall& call, NodeHandle handle, const AttrInfo& info) {
    Scene& scene = call.scene();
    Node& node = *scene.node(handle);
    if (node.locked)
        return call.fail("The node '" + node.name + "' is locked.");
    AttrIndex parent = kNoAttr, made = kNoAttr;
    if (call.has("parent") && (parent = node.findAttr(call.text("parent"))) == kNoAttr)
        return call.fail("Parent attribute '" + call.text("parent") + "' does not exist.");
    if (node.findAttr(info.longName) != kNoAttr || node.findAttr(info.shortName) != kNoAttr) {
        scene.log().write(Channel::Warning, "Name '" + info.longName +
                                                "' of new attribute clashes with an existing " +
                                                "attribute of node '" + node.name + "'.");
        return call.fail("Found no valid items to add the attribute to.");
    }
    return scene.addAttribute(handle, info, parent, made);
}

// Ranges and names of an attribute made earlier.
Status editAttribute(const CommandCall& call, NodeHandle handle, const std::string& attr) {
    const Node& node = *call.scene().node(handle);
    const AttrIndex index = node.findAttr(attr),
                    first = static_cast<AttrIndex>(node.type->attrs.size());
    if (index == kNoAttr || index < first)
        return call.fail("'" + attr + "' is no attribute added to '" + node.name + "'.");
    call.scene().changeAttribute(Plug(handle, index), [&](AttrInfo& info) {
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
    });
    return Status::ok();
}

Status addAttr(const CommandCall& call, Value& result) {
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
        if (Status done =
                call.isEdit() ? editAttribute(call, node, attr) : addToNode(call, node, info);
            !done)
            return done;
    return Status::ok();
}

// --- deleteAttr ----------------------------------------------------------------------------------

const FlagRow kDeleteFlags[] = {{"attribute", "at", "s"}};

Status deleteAttr(const CommandCall& call, Value&) {
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
            return call.fail("'" + attr + "' is not a dynamic attribute of node '" + node.name +
                             "'.");
        if (node.locked || call.scene().isLocked(plug))
            return call.fail("The attribute '" + call.scene().plugName(plug) + "' is locked.");
        call.scene().deleteAttribute(handle, plug.attr);
    }
    return Status::ok();
}

const Command kEditCommands[] = {
    {"addAttr", kAddFlags, countOf(kAddFlags), addAttr, "Adds an attribute to nodes."},
    {"deleteAttr", kDeleteFlags, countOf(kDeleteFlags), deleteAttr, "Removes an added attribute."},
};

}  // namespace

CommandTable attributeEditCommands() {
    return {kEditCommands, std::size(kEditCommands)};
}

}  // namespace torvel
