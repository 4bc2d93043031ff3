#include "commands/connections.h"

#include "commands/attr_value.h"
#include "commands/session.h"
#include "commands/tables.h"

namespace torvel {
namespace {

// Node and array plugs without an index stand for their first element ("joint1.worldMatrix").
Plug connectable(const Scene& scene, const Plug& plug)
{
    return !plug.isNull() && scene.isArrayPlug(plug) && scene.info(plug).is(kOutput) ? scene.element(plug, 0) : plug;
}

bool isConversion(const Scene& scene, NodeHandle node)
{
    return scene.isType(node, "unitConversion");
}

bool mixesAngles(const Scene& scene, const Plug& source, const Plug& target)
{
    const AttrInfo& from = scene.info(source);
    const AttrInfo& to = scene.info(target);
    return isNumeric(from.type) && isNumeric(to.type) &&
           (from.type == AttrType::Angle) != (to.type == AttrType::Angle);
}

Status connectConverted(Scene& scene, const Plug& source, const Plug& target)
{
    NodeHandle node;
    if (Status made = scene.createNode("unitConversion", {}, {}, node); !made)
        return made;
    const bool toAngle = scene.info(target).type == AttrType::Angle;
    scene.setNumber(scene.findPlug(node, "conversionFactor"), toAngle ? kDegToRad : kRadToDeg);
    Status done = scene.connect(source, scene.findPlug(node, "input"));
    if (done)
        done = scene.connect(scene.findPlug(node, "output"), target);
    if (!done)
        scene.deleteNodes({node});
    return done;
}

// Children of two compounds one by one when some pair needs a conversion.
bool childrenMixAngles(const Scene& scene, const Plug& source, const Plug& target)
{
    const std::size_t count = scene.info(source).children.size();
    if (count == 0 || count != scene.info(target).children.size())
        return false;
    for (std::size_t i = 0; i < count; ++i)
        if (mixesAngles(scene, scene.child(source, static_cast<int>(i)), scene.child(target, static_cast<int>(i))))
            return true;
    return false;
}

// Every plug whose incoming connection would contradict a new one on `target`.
std::vector<Plug> conflicting(const Scene& scene, const Plug& target)
{
    std::vector<Plug> fed;
    for (Plug at = target; !at.isNull(); at = scene.parentPlug(at))
        if (!scene.source(at).isNull())
            fed.push_back(at);
    for (std::size_t i = 0; i < scene.info(target).children.size() && !scene.isArrayPlug(target); ++i) {
        const Plug child = scene.child(target, static_cast<int>(i));
        if (!scene.source(child).isNull())
            fed.push_back(child);
    }
    return fed;
}

}  // namespace

void disconnectInput(Scene& scene, const Plug& target)
{
    const Plug source = scene.source(target);
    if (source.isNull())
        return;
    ignore(scene.disconnect(source, target));
    if (isConversion(scene, source.node) && scene.outgoing(source.node).empty())
        scene.deleteNodes({source.node});
}

Status connectPlugs(Scene& scene, const Plug& source, const Plug& target, bool force)
{
    const std::vector<Plug> fed = conflicting(scene, target);
    if (!fed.empty() && !force)
        return Status::failure("'" + scene.plugName(fed.front()) + "' already has an incoming connection from '" +
                               scene.plugName(scene.source(fed.front())) + "'.");
    if (scene.isLocked(target))
        return Status::failure("Connection not made: '" + scene.plugName(source) + "' -> '" + scene.plugName(target) +
                               "'.  Destination attribute must be writable.");
    for (const Plug& plug : fed)
        disconnectInput(scene, plug);
    if (mixesAngles(scene, source, target))
        return connectConverted(scene, source, target);
    if (!childrenMixAngles(scene, source, target))
        return scene.connect(source, target);
    for (std::size_t i = 0; i < scene.info(source).children.size(); ++i) {
        const int at = static_cast<int>(i);
        if (Status done = connectPlugs(scene, scene.child(source, at), scene.child(target, at), force); !done)
            return done;
    }
    return Status::ok();
}

Plug sourceBehindConversions(const Scene& scene, const Plug& target)
{
    Plug source = scene.source(target);
    for (int hops = 0; hops < 16 && !source.isNull() && isConversion(scene, source.node); ++hops)
        source = scene.source(scene.findPlug(source.node, "input"));
    return source;
}

namespace {

const FlagRow kConnectFlags[] = {
    {"force", "f"}, {"lock", "l", "b"}, {"nextAvailable", "na"}};

Status ends(const CommandCall& call, Plug& source, Plug& target)
{
    const std::vector<std::string> texts = call.texts();
    if (texts.size() != 2)
        return call.fail("Needs a source and a destination attribute.");
    source = connectable(call.scene(), fastPlug(call.scene(), texts[0]));
    if (source.isNull())
        return Status::failure("The source attribute '" + texts[0] + "' cannot be found.");
    target = fastPlug(call.scene(), texts[1]);
    if (target.isNull())
        return Status::failure("The destination attribute '" + texts[1] + "' cannot be found.");
    return Status::ok();
}

Status connectAttr(const CommandCall& call, Value& result)
{
    Scene& scene = call.scene();
    Plug source, target;
    if (Status found = ends(call, source, target); !found)
        return found;
    if (call.has("nextAvailable") && scene.isArrayPlug(target))
        target = scene.element(target, scene.nextAvailable(target));
    if (sourceBehindConversions(scene, target) == source) {
        scene.log().write(Channel::Warning, "'" + scene.plugName(source) + "' is already connected to '" +
                                                scene.plugName(target) + "'.");
        return Status::failure("Maya command error");
    }
    if (Status done = connectPlugs(scene, source, target, call.has("force")); !done)
        return done;
    if (call.has("lock"))
        scene.setLocked(target, call.flag("lock"));
    result = Value("Connected " + scene.plugName(source) + " to " + scene.plugName(target) + ".");
    return Status::ok();
}

const FlagRow kDisconnectFlags[] = {{"nextAvailable", "na"}};

// -nextAvailable: the element of the array that the source feeds.
Plug elementFedBy(const Scene& scene, const Plug& array, const Plug& source)
{
    for (std::size_t i = 0; i < scene.elementCount(array); ++i)
        if (scene.source(scene.elementAt(array, i)) == source)
            return scene.elementAt(array, i);
    return array;
}

Status disconnectAttr(const CommandCall& call, Value& result)
{
    Scene& scene = call.scene();
    Plug source, target;
    if (Status found = ends(call, source, target); !found)
        return found;
    if (call.has("nextAvailable") && scene.isArrayPlug(target))
        target = elementFedBy(scene, target, source);
    const std::string from = scene.plugName(source), to = scene.plugName(target);
    if (scene.source(target) != source && sourceBehindConversions(scene, target) != source)
        return Status::failure("There is no connection from '" + from + "' to '" + to + "' to disconnect");
    if (scene.isLocked(target))
        return call.fail("The attribute '" + to + "' is locked and cannot be disconnected.");
    disconnectInput(scene, target);
    result = Value("Disconnect " + from + " from " + to + ".");
    return Status::ok();
}

const FlagRow kIsConnectedFlags[] = {{"ignoreUnitConversion", "iuc"}};

Status isConnected(const CommandCall& call, Value& result)
{
    Plug source, target;
    if (Status found = ends(call, source, target); !found)
        return found;
    const Plug from = call.has("ignoreUnitConversion") ? sourceBehindConversions(call.scene(), target)
                                                       : call.scene().source(target);
    result = Value(from == source);
    return Status::ok();
}

const FlagRow kInfoFlags[] = {
    {"destinationFromSource", "dfs"}, {"getExactDestination", "ged"},   {"getExactSource", "ges"},
    {"isDestination", "id"},          {"isExactDestination", "ied"},    {"isExactSource", "ies"},
    {"isLocked", "il"},               {"isSource", "is"},               {"sourceFromDestination", "sfd"},
};

Value targetNames(const Scene& scene, const Plug& plug)
{
    std::vector<std::string> names;
    for (const Plug& target : scene.targets(plug))
        names.push_back(scene.plugName(target));
    return Value::strings(names);
}

Status connectionInfo(const CommandCall& call, Value& result)
{
    const Scene& scene = call.scene();
    const std::vector<std::string> texts = call.texts();
    const Plug plug = texts.size() == 1 ? connectable(scene, fastPlug(scene, texts[0])) : Plug();
    if (plug.isNull())
        return call.fail(texts.size() == 1 ? "No object matches name: " + texts[0] : "Needs one attribute.");
    const auto nameOf = [&](const Plug& p) { return Value(p.isNull() ? std::string() : scene.plugName(p)); };
    const Plug source = scene.effectiveSource(plug);
    if (call.has("sourceFromDestination"))
        result = nameOf(source);
    else if (call.has("destinationFromSource"))
        result = targetNames(scene, plug);
    else if (call.has("isDestination"))
        result = Value(!source.isNull());
    else if (call.has("isExactDestination"))
        result = Value(!scene.source(plug).isNull());
    else if (call.has("isSource") || call.has("isExactSource"))
        result = Value(!scene.targets(plug).empty());
    else if (call.has("isLocked"))
        result = Value(scene.isLocked(plug));
    else if (call.has("getExactDestination"))
        result = nameOf(scene.source(plug).isNull() ? Plug() : plug);
    else if (call.has("getExactSource"))
        result = nameOf(scene.targets(plug).empty() ? Plug() : plug);
    else
        return call.fail("Needs a flag that tells what to look for.");
    return Status::ok();
}

const Command kConnectionCommands[] = {
    {"connectAttr", kConnectFlags, countOf(kConnectFlags), connectAttr, "Connects two attributes."},
    {"connectionInfo", kInfoFlags, countOf(kInfoFlags), connectionInfo, "Facts about an attribute's connections."},
    {"disconnectAttr", kDisconnectFlags, countOf(kDisconnectFlags), disconnectAttr, "Breaks a connection."},
    {"isConnected", kIsConnectedFlags, countOf(kIsConnectedFlags), isConnected, "Tells if two attributes are linked."},
};

}  // namespace

CommandTable connectionCommands()
{
    return {kConnectionCommands, std::size(kConnectionCommands)};
}

}  // namespace torvel
