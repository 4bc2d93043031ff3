#include <charconv>

#include "commands/attribute/value.h"
#include "edit/components.h"
#include "script/session.h"
#include "nodes/animation/anim_curve.h"

namespace torvel {
namespace {

const FlagRow kGetFlags[] = {
    {"asString", "as"},     {"channelBox", "cb"}, {"keyable", "k"}, {"lock", "l"},
    {"multiIndices", "mi"}, {"settable", "se"},   {"silent", "sl"}, {"size", "s"},
    {"time", "t", "t"},     {"type", "typ"},
};

Status missing(const CommandCall& call, const std::string& text) {
    Plug plug;
    const Status why = call.resolvePlug(text, plug);
    return why.isOk() || why.text().rfind("More than one", 0) != 0
               ? Status::notFound("No object matches name: " + text)
               : why;
}

// The value at another time; the scene's own time comes back afterwards.
Status readAtTime(const CommandCall& call, const Plug& plug, Value& out) {
    Scene& scene = call.scene();
    const double now = sceneTime(scene);
    const bool modified = scene.document().modified;
    setSceneTime(scene, call.number("time"));
    const Status status = readValue(call, plug, call.flag("asString"), out);
    setSceneTime(scene, now);
    scene.setModified(modified);
    return status;
}

Value indicesOf(const Scene& scene, const Plug& plug) {
    Value::List items;
    for (std::int32_t logical : scene.elementIndices(plug))
        items.emplace_back(static_cast<std::int64_t>(logical));
    return items.empty() ? Value() : Value(std::move(items));
}

std::string typeText(const Scene& scene, const Plug& plug) {
    const AttrInfo& info = scene.info(plug);
    return info.type == AttrType::Compound ? "TdataCompound" : attrTypeName(info.type);
}

bool driverAllowsEdit(const Scene& scene, const Plug& plug) {
    return scene.isSettable(plug) || (!scene.isLocked(plug) && isKeyed(scene, plug));
}

// True when one of the flags that ask about the plug itself was given.
bool readState(const CommandCall& call, const Plug& plug, Value& out) {
    const Scene& scene = call.scene();
    if (call.has("lock"))
        out = Value(scene.isLocked(plug));
    else if (call.has("keyable"))
        out = Value(scene.isKeyable(plug));
    else if (call.has("channelBox"))
        out = Value(scene.isChannelBox(plug));
    else if (call.has("settable"))
        out = Value(driverAllowsEdit(scene, plug));
    else if (call.has("type"))
        out = Value(typeText(scene, plug));
    else if (call.has("size"))
        out = Value(
            static_cast<std::int64_t>(scene.info(plug).isArray() ? scene.elementCount(plug) : 1));
    else if (call.has("multiIndices"))
        out = indicesOf(scene, plug);
    else
        return false;
    return true;
}

// The points that a text like "curve.cv[0:2]" names; false when it names none.
bool pointsNamed(const Scene& scene, const std::string& text, PointSet& out) {
    std::vector<SelectionItem> items;
    return componentItems(scene, text, items) && items.size() == 1 &&
           pointsOfItem(scene, items.front(), out) && !out.points.empty();
}

// Their positions in the space of the shape.
Value positionsOf(const Scene& scene, const PointSet& set) {
    const std::vector<V3d> points = shapePoints(scene, set.shape);
    Value::List items;
    for (const int index : set.points) {
        const V3d& p = points[static_cast<std::size_t>(index)];
        items.emplace_back(Value::Tuple{{p.x, p.y, p.z}});
    }
    return items.size() == 1 ? items.front() : Value(std::move(items));
}

Status getAttr(const CommandCall& call, Value& result) {
    if (call.args().empty() || !call.args()[0].isString())
        return call.fail("Needs the name of an attribute.");
    const std::string& text = call.args()[0].string();
    const Plug plug = fastPlug(call.scene(), text);
    PointSet points;
    if (plug.isNull() && call.m_flags.empty() && pointsNamed(call.scene(), text, points)) {
        result = positionsOf(call.scene(), points);
        return Status::ok();
    }
    if (plug.isNull())
        return missing(call, text);
    if (call.m_flags.empty())
        return readValue(call, plug, false, result);
    if (readState(call, plug, result))
        return Status::ok();
    return call.has("time") ? readAtTime(call, plug, result)
                            : readValue(call, plug, call.flag("asString"), result);
}

// --- setAttr -------------------------------------------------------------------------------------

const FlagRow kSetFlags[] = {
    {"alteredValue", "av"},    {"caching", "ca", "b"}, {"capacityHint", "ch", "i"},
    {"channelBox", "cb", "b"}, {"clamp", "c"},         {"keyable", "k", "b"},
    {"lock", "l", "b"},        {"size", "s", "i"},     {"type", "typ", "s"},
};

Status setStates(const CommandCall& call, const Plug& plug) {
    Scene& scene = call.scene();
    if (call.has("lock")) {
        const Node* node = scene.node(plug.node);
        if (node->locked)
            return call.fail("Attribute '" + scene.plugName(plug) +
                             "' is from a locked node, so it cannot be " +
                             (call.flag("lock") ? "locked." : "unlocked."));
        scene.setLocked(plug, call.flag("lock"));
    }
    if (call.has("keyable"))
        scene.setKeyable(plug, call.flag("keyable"));
    if (call.has("channelBox"))
        scene.setChannelBox(plug, call.flag("channelBox"));
    return Status::ok();
}

// "node.attr[0:3]" names a run of elements: what stands before the bracket, and both ends.
struct Run {
    std::string array;
    int first = 0, last = -1;
};

bool parseRun(const std::string& text, Run& run) {
    const std::size_t open = text.rfind('['), colon = text.rfind(':');
    if (open == std::string::npos || colon == std::string::npos || colon < open ||
        text.back() != ']')
        return false;
    const char* begin = text.data();
    const char* end = begin + text.size() - 1;
    const auto a = std::from_chars(begin + open + 1, end, run.first);
    const auto b = std::from_chars(begin + colon + 1, end, run.last);
    run.array = text.substr(0, open);
    return a.ec == std::errc() && b.ec == std::errc() && run.first >= 0 && run.last >= run.first;
}

Status refuseUnsettable(const CommandCall& call, const Plug& plug) {
    return driverAllowsEdit(call.scene(), plug)
               ? Status::ok()
               : call.fail("The attribute '" + call.scene().plugName(plug) +
                           "' is locked or connected and cannot be modified.");
}

Status setRun(const CommandCall& call, const Run& run) {
    Scene& scene = call.scene();
    const Plug array = fastPlug(scene, run.array);
    if (array.isNull() || !scene.isArrayPlug(array))
        return call.fail("No object matches name: " + run.array);
    const std::size_t elements = static_cast<std::size_t>(run.last - run.first) + 1,
                      values = call.args().size() - 1;
    if (values == 0 || values % elements != 0)
        return call.fail("The values do not fill the elements of '" + scene.plugName(array) + "'.");
    const WriteOptions options{call.text("type"), call.has("clamp")};
    for (std::size_t i = 0; i < elements; ++i) {
        const Plug element = scene.element(array, run.first + static_cast<std::int32_t>(i));
        Status done = refuseUnsettable(call, element);
        if (done)
            done = writeValue(call, element, call.args().data() + 1 + i * (values / elements),
                              values / elements, options);
        if (!done)
            return done;
    }
    return Status::ok();
}

Status setPoints(const CommandCall& call, const PointSet& set) {
    std::vector<V3d> positions(set.points.size());
    if (call.args().size() != 1 + 3 * positions.size())
        return call.fail("Each point needs three numbers.");
    for (std::size_t i = 0; i < 3 * positions.size(); ++i) {
        const Value& value = call.args()[1 + i];
        if (!value.isNumber())
            return call.fail("Each point needs three numbers.");
        positions[i / 3][static_cast<int>(i % 3)] = value.number();
    }
    return movePoints(call.scene(), set, positions);
}

Status setAttr(const CommandCall& call, Value&) {
    if (call.args().empty() || !call.args()[0].isString())
        return call.fail("Needs the name of an attribute.");
    Scene& scene = call.scene();
    const std::string& text = call.args()[0].string();
    const Plug plug = fastPlug(scene, text);
    if (plug.isNull()) {
        PointSet points;
        if (pointsNamed(scene, text, points))
            return setPoints(call, points);
        Run run;
        return parseRun(text, run) ? setRun(call, run)
                                   : call.fail("No object matches name: " + text);
    }
    const std::size_t count = call.args().size() - 1;
    // Unlocking comes before the value, locking after it: one call can do both.
    const bool locksLater = count > 0 && call.has("lock") && call.flag("lock");
    if (!call.m_flags.empty() && !locksLater)
        if (Status done = setStates(call, plug); !done)
            return done;
    if (count == 0)
        return call.m_flags.empty() ? call.fail("No value was given for '" + text + "'.")
                                    : Status::ok();
    Status done = refuseUnsettable(call, plug);
    if (done && scene.info(plug).is(kOutput))
        done = call.fail("The attribute '" + scene.plugName(plug) +
                         "' is computed and cannot be set.");
    if (done)
        done = writeValue(call, plug, call.args().data() + 1, count,
                          {call.text("type"), call.has("clamp")});
    if (plug.node == scene.timeNode())
        dirtyTimeCurves(scene);
    return done && locksLater ? setStates(call, plug) : done;
}

const Command kAttributeCommands[] = {
    {"getAttr", kGetFlags, countOf(kGetFlags), getAttr, "Value or state of an attribute."},
    {"setAttr", kSetFlags, countOf(kSetFlags), setAttr,
     "Writes an attribute or its lock and channel states."},
};

}  // namespace

CommandTable attributeCommands() {
    return {kAttributeCommands, std::size(kAttributeCommands)};
}

}  // namespace torvel
