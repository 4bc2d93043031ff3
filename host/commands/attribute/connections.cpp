#include "commands/attribute/connections.h"

#include "commands/attribute/value.h"
#include "script/session.h"
#include "nodes/shape/nurbs_curve.h"
#include "nodes/animation/time_units.h"

namespace torvel {
namespace {

// Node and array plugs without an index stand for their first element ("joint1.worldMatrix").
Plug connectable(const Scene& scene, const Plug& plug) {
    return !plug.isNull() && scene.isArrayPlug(plug) && scene.info(plug).is(kOutput)
               ? scene.element(plug, 0)
               : plug;
}

bool isConversion(const Scene& scene, NodeHandle node) {
    return scene.isType(node, "unitConversion");
}

// What a number is worth to plain numbers: degrees for radians, ticks for frames.
double plainFactor(const Scene& scene, const AttrInfo& info) {
    switch (info.type) {
        case AttrType::Angle: return kRadToDeg;
        case AttrType::Time: return framesPerSecond(scene) / kTicksPerSecond;
        default: return 1.0;
    }
}

bool mixesUnits(const Scene& scene, const Plug& source, const Plug& target) {
    const AttrInfo& from = scene.info(source);
    const AttrInfo& to = scene.info(target);
    const auto hasUnit = [](AttrType type) {
        return type == AttrType::Angle || type == AttrType::Time;
    };
    return isNumeric(from.type) && isNumeric(to.type) && from.children.empty() &&
           to.children.empty() && from.type != to.type && (hasUnit(from.type) || hasUnit(to.type));
}

// Numbers, or compounds of three numbers of one kind each.
const AttrInfo& unitOf(const Scene& scene, const Plug& plug) {
    return scene.info(plug).children.empty() ? scene.info(plug) : scene.info(scene.child(plug, 0));
}

Status connectConverted(Scene& scene, const Plug& source, const Plug& target) {
    NodeHandle node;
    if (Status made = scene.createNode("unitConversion", {}, {}, node); !made)
        return made;
    const AttrInfo &from = unitOf(scene, source), &to = unitOf(scene, target);
    const double factor = plainFactor(scene, from);
    const double back = to.type == AttrType::Angle  ? kDegToRad
                        : to.type == AttrType::Time ? kTicksPerSecond / framesPerSecond(scene)
                                                    : 1.0;
    scene.setNumber(scene.findPlug(node, "conversionFactor"), factor * back);
    Status done = scene.connect(source, scene.findPlug(node, "input"));
    if (done)
        done = scene.connect(scene.findPlug(node, "output"), target);
    if (!done)
        scene.deleteNodes({node});
    return done;
}

// Children of two compounds one by one when some pair needs a conversion.
bool childrenMixUnits(const Scene& scene, const Plug& source, const Plug& target) {
    const std::size_t count = scene.info(source).children.size();
    if (count == 0 || count != scene.info(target).children.size())
        return false;
    for (std::size_t i = 0; i < count; ++i)
        if (mixesUnits(scene, scene.child(source, static_cast<int>(i)),
                       scene.child(target, static_cast<int>(i))))
            return true;
    return false;
}

// Three numbers of one kind: one conversion takes them all.
bool isUniformTriple(const Scene& scene, const Plug& plug) {
    const std::vector<AttrIndex>& children = scene.info(plug).children;
    for (int i = 0; i < 3 && children.size() == 3; ++i)
        if (!isNumeric(scene.info(scene.child(plug, i)).type) ||
            scene.info(scene.child(plug, i)).type != unitOf(scene, plug).type)
            return false;
    return children.size() == 3;
}

// Every plug whose incoming connection would contradict a new one on `target`.
std::vector<Plug> conflicting(const Scene& scene, const Plug& target) {
    std::vector<Plug> fed;
    for (Plug at = target; !at.isNull(); at = scene.parentPlug(at))
        if (!scene.source(at).isNull())
            fed.push_back(at);
    for (std::size_t i = 0; i < scene.info(target).children.size() && !scene.isArrayPlug(target);
         ++i) {
        const Plug child = scene.child(target, static_cast<int>(i));
        if (!scene.source(child).isNull())
            fed.push_back(child);
    }
    return fed;
}

}  // namespace

void disconnectInput(Scene& scene, const Plug& target) {
    const Plug source = scene.source(target);
    if (source.isNull())
        return;
    ignore(scene.disconnect(source, target));
    if (isConversion(scene, source.node) && scene.outgoing(source.node).empty())
        scene.deleteNodes({source.node});
}

Status connectPlugs(Scene& scene, const Plug& source, const Plug& target, bool force) {
    const std::vector<Plug> fed = conflicting(scene, target);
    if (!fed.empty() && !force)
        return Status::failure("'" + scene.plugName(fed.front()) +
                               "' already has an incoming connection from '" +
                               scene.plugName(scene.source(fed.front())) + "'.");
    if (scene.isLocked(target))
        return Status::failure("Connection not made: '" + scene.plugName(source) + "' -> '" +
                               scene.plugName(target) +
                               "'.  Destination attribute must be writable.");
    for (const Plug& plug : fed)
        disconnectInput(scene, plug);
    if (mixesUnits(scene, source, target))
        return connectConverted(scene, source, target);
    if (!childrenMixUnits(scene, source, target))
        return scene.connect(source, target);
    if (isUniformTriple(scene, source) && isUniformTriple(scene, target))
        return connectConverted(scene, source, target);
    for (std::size_t i = 0; i < scene.info(source).children.size(); ++i) {
        const int at = static_cast<int>(i);
        if (Status done =
                connectPlugs(scene, scene.child(source, at), scene.child(target, at), force);
            !done)
            return done;
    }
    return Status::ok();
}

Plug sourceBehindConversions(const Scene& scene, const Plug& target) {
    Plug source = scene.source(target);
    for (int hops = 0; hops < 16 && !source.isNull() && isConversion(scene, source.node); ++hops)
        source = scene.source(scene.findPlug(source.node, "input"));
    return source;
}

namespace {

const FlagRow kConnectFlags[] = {{"force", "f"}, {"lock", "l", "b"}, {"nextAvailable", "na"}};

Status ends(const CommandCall& call, Plug& source, Plug& target) {
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

Status connectAttr(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    Plug source, target;
    if (Status found = ends(call, source, target); !found)
        return found;
    if (call.has("nextAvailable") && scene.isArrayPlug(target))
        target = scene.element(target, scene.nextAvailable(target));
    if (sourceBehindConversions(scene, target) == source) {
        scene.log().write(Channel::Warning, "'" + scene.plugName(source) +
                                                "' is already connected to '" +
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
Plug elementFedBy(const Scene& scene, const Plug& array, const Plug& source) {
    for (std::size_t i = 0; i < scene.elementCount(array); ++i)
        if (scene.source(scene.elementAt(array, i)) == source)
            return scene.elementAt(array, i);
    return array;
}

Status disconnectAttr(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    Plug source, target;
    if (Status found = ends(call, source, target); !found)
        return found;
    if (call.has("nextAvailable") && scene.isArrayPlug(target))
        target = elementFedBy(scene, target, source);
    const std::string from = scene.plugName(source), to = scene.plugName(target);
    if (scene.source(target) != source && sourceBehindConversions(scene, target) != source)
        return Status::failure("There is no connection from '" + from + "' to '" + to +
                               "' to disconnect");
    if (scene.isLocked(target))
        return call.fail("The attribute '" + to + "' is locked and cannot be disconnected.");
    if (scene.isType(target.node, "nurbsCurve") && scene.info(target).longName == "create")
        setCurve(scene, target.node, curveOf(scene, target.node));  // it stays as it is
    disconnectInput(scene, target);
    result = Value("Disconnect " + from + " from " + to + ".");
    return Status::ok();
}

const FlagRow kIsConnectedFlags[] = {{"ignoreUnitConversion", "iuc"}};

Status isConnected(const CommandCall& call, Value& result) {
    Plug source, target;
    if (Status found = ends(call, source, target); !found)
        return found;
    const Plug from = call.has("ignoreUnitConversion")
                          ? sourceBehindConversions(call.scene(), target)
                          : call.scene().source(target);
    result = Value(from == source);
    return Status::ok();
}

const FlagRow kInfoFlags[] = {
    {"destinationFromSource", "dfs"},
    {"getExactDestination", "ged"},
    {"getExactSource", "ges"},
    {"getLockedAncestor", "gla"},
    {"isDestination", "id"},
    {"isExactDestination", "ied"},
    {"isExactSource", "ies"},
    {"isLocked", "il"},
    {"isSource", "is"},
    {"sourceFromDestination", "sfd"},
};

// The plug itself or the nearest one above it that passes.
template <class Test>
Plug nearest(const Scene& scene, Plug plug, Test&& test) {
    while (!plug.isNull() && !test(plug))
        plug = scene.parentPlug(plug);
    return plug;
}

Value targetNames(const Scene& scene, const Plug& plug) {
    std::vector<std::string> names;
    for (const Plug& target : scene.targets(plug))
        names.push_back(scene.plugName(target));
    return Value::strings(names);
}

Status connectionInfo(const CommandCall& call, Value& result) {
    const Scene& scene = call.scene();
    const std::vector<std::string> texts = call.texts();
    const Plug plug = texts.size() == 1 ? connectable(scene, fastPlug(scene, texts[0])) : Plug();
    if (plug.isNull())
        return call.fail(texts.size() == 1 ? "No object matches name: " + texts[0]
                                           : "Needs one attribute.");
    const auto nameOf = [&](const Plug& p) {
        return Value(p.isNull() ? std::string() : scene.plugName(p));
    };
    const Plug source = scene.effectiveSource(plug);
    const auto feeds = [&](const Plug& p) { return !scene.targets(p).empty(); };
    const auto isFed = [&](const Plug& p) { return !scene.source(p).isNull(); };
    const auto isLocked = [&](const Plug& p) {
        const Slot* slot = scene.peekSlot(p);
        return slot && (slot->state & kLocked);
    };
    if (call.has("sourceFromDestination"))
        result = nameOf(source);
    else if (call.has("destinationFromSource"))
        result = targetNames(scene, nearest(scene, plug, feeds));
    else if (call.has("isDestination"))
        result = Value(!source.isNull());
    else if (call.has("isExactDestination"))
        result = Value(isFed(plug));
    else if (call.has("isSource"))
        result = Value(!nearest(scene, plug, feeds).isNull());
    else if (call.has("isExactSource"))
        result = Value(feeds(plug));
    else if (call.has("isLocked"))
        result = Value(scene.isLocked(plug));
    else if (call.has("getExactDestination"))
        result = nameOf(nearest(scene, plug, isFed));
    else if (call.has("getExactSource"))
        result = nameOf(nearest(scene, plug, feeds));
    else if (call.has("getLockedAncestor"))
        result = nameOf(nearest(scene, plug, isLocked));
    else
        return call.fail("Needs a flag that tells what to look for.");
    return Status::ok();
}

const Command kConnectionCommands[] = {
    {"connectAttr", kConnectFlags, countOf(kConnectFlags), connectAttr, "Connects two attributes."},
    {"connectionInfo", kInfoFlags, countOf(kInfoFlags), connectionInfo,
     "Facts about an attribute's connections."},
    {"disconnectAttr", kDisconnectFlags, countOf(kDisconnectFlags), disconnectAttr,
     "Breaks a connection."},
    {"isConnected", kIsConnectedFlags, countOf(kIsConnectedFlags), isConnected,
     "Tells if two attributes are linked."},
};

}  // namespace

CommandTable connectionCommands() {
    return {kConnectionCommands, std::size(kConnectionCommands)};
}

}  // namespace torvel
