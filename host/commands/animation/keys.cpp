// setKeyframe, cutKey, setDrivenKeyframe.
#include <algorithm>

#include "commands/attribute/value.h"
#include "commands/attribute/connections.h"
#include "commands/animation/key_targets.h"
#include "script/session.h"
#include "commands/animation/time_range.h"
#include "nodes/animation/anim_curve.h"

namespace torvel {
namespace {

// --- keys of one curve ---------------------------------------------------------------------------

struct Tangents {
    int in = -1, out = -1;  ///< -1: as a key that stands there has it, else the scene's default
};

Status readTangents(const CommandCall& call, Tangents& tangents) {
    for (const char* flag : {"inTangentType", "outTangentType"}) {
        if (!call.has(flag))
            continue;
        const int kind = tangentKindOf(call.text(flag));
        if (kind < 0)
            return call.fail("Invalid tangent type: " + call.text(flag));
        (flag[0] == 'i' ? tangents.in : tangents.out) = kind;
    }
    return Status::ok();
}

// Switches hold their value until the next key.
bool isStepped(const AttrInfo& info) {
    return info.type == AttrType::Bool || info.type == AttrType::Enum;
}

void putKey(Scene& scene, NodeHandle curve, double time, double value, const Tangents& tangents,
            bool stepped) {
    std::vector<CurveKey> keys = keysOf(scene, curve);
    auto at = std::lower_bound(keys.begin(), keys.end(), time - 1e-6,
                               [](const CurveKey& key, double t) { return key.time < t; });
    if (at == keys.end() || at->time > time + 1e-6) {
        at = keys.insert(at, CurveKey());
        at->time = time;
        at->inKind = static_cast<int>(playSetting(scene, PlaySetting::InTangent));
        at->outKind = stepped ? static_cast<int>(kStepTangent)
                              : static_cast<int>(playSetting(scene, PlaySetting::OutTangent));
    }
    at->value = value;
    if (tangents.in >= 0)
        at->inKind = tangents.in;
    if (tangents.out >= 0)
        at->outKind = tangents.out;
    setKeys(scene, curve, keys);
}

bool isDrivenOtherwise(const Scene& scene, const KeyTarget& target) {
    return target.curve.isNull() && !scene.effectiveSource(target.plug).isNull();
}

// --- setKeyframe ---------------------------------------------------------------------------------

const FlagRow kSetFlags[] = {
    {"animated", "an"},
    {"attribute", "at", "s", kCreate, true},
    {"controlPoints", "cp"},
    {"dirtyDG", "dd", "b"},
    {"hierarchy", "hi", "s"},
    {"inTangentType", "itt", "s"},
    {"insert", "i"},
    {"outTangentType", "ott", "s"},
    {"respectKeyable", "rk"},
    {"shape", "s", "b"},
    {"time", "t", "t", kCreate, true},
    {"value", "v", "d"},
};

Status refuseScope(const CommandCall& call) {
    const std::string hierarchy = call.text("hierarchy", "none");
    if (hierarchy != "none")
        return call.fail("Keys are set on the named objects only; -hierarchy \"" + hierarchy +
                         "\" is not covered.");
    const std::string option = call.text("option", "keys");
    if (option != "keys")
        return call.fail("Whole keys are cut; -option \"" + option + "\" is not covered.");
    return call.flag("controlPoints") ? call.fail("Keys of control points are not covered.")
                                      : Status::ok();
}

Status timesOf(const CommandCall& call, std::vector<double>& times) {
    for (const FlagUse* use : call.uses("time")) {
        double time = 0.0;
        if (!timeOf(call.scene(), use->values[0], time))
            return call.fail("Invalid time: " + use->values[0].string());
        times.push_back(time);
    }
    if (times.empty())
        times.push_back(sceneTime(call.scene()));
    return Status::ok();
}

Status ensureCurve(Scene& scene, KeyTarget& target) {
    if (!target.curve.isNull())
        return Status::ok();
    Status done = scene.createNode(curveTypeFor(scene, target.plug, false),
                                   curveNameFor(scene, target.plug), {}, target.curve);
    if (done)
        done = scene.connect(scene.findPlug(target.curve, "output"), target.plug);
    return done;
}

Status keyOne(const CommandCall& call, KeyTarget target, const std::vector<double>& times,
              const Tangents& tangents, std::int64_t& count) {
    Scene& scene = call.scene();
    const Plug shown = target.plug.isNull() ? plugFedBy(scene, target.curve) : target.plug;
    const AttrInfo* info = shown.isNull() ? nullptr : &scene.info(shown);
    const bool unkeyable = call.has("respectKeyable") && !scene.isKeyable(target.plug);
    const bool skip =
        !target.plug.isNull() && (isDrivenOtherwise(scene, target) || scene.isLocked(target.plug) ||
                                  info->is(kOutput) || unkeyable);
    if (skip || (call.has("animated") && target.curve.isNull()))
        return Status::ok();
    const double unit = info ? 1.0 / uiScale(*info) : 1.0;
    const bool given = call.has("value");
    const double now = given || !info ? call.number("value") * unit : scene.number(shown);
    if (Status made = ensureCurve(scene, target); !made)
        return made;
    for (const double time : times) {
        const bool insert = call.has("insert");
        const std::vector<CurveKey> keys = keysOf(scene, target.curve);
        if (insert && keys.empty())
            continue;
        putKey(scene, target.curve, time, insert ? curveValue(keys, time) : now, tangents,
               info && isStepped(*info));
        ++count;
    }
    return Status::ok();
}

Status setKeyframe(const CommandCall& call, Value& result) {
    std::vector<KeyTarget> targets;
    std::vector<double> times;
    Tangents tangents;
    Status done = refuseScope(call);
    if (done)
        done = keyTargets(call, KeyScope::Keyable, targets);
    if (done)
        done = timesOf(call, times);
    if (done)
        done = readTangents(call, tangents);
    std::int64_t count = 0;
    for (std::size_t i = 0; done && i < targets.size(); ++i)
        done = keyOne(call, targets[i], times, tangents, count);
    result = Value(count);
    return done;
}

// --- cutKey --------------------------------------------------------------------------------------

const FlagRow kCutFlags[] = {
    {"animation", "an", "s"},
    {"attribute", "at", "s", kCreate, true},
    {"clear", "cl"},
    {"controlPoints", "cp", "b"},
    {"float", "f", "?", kCreate},
    {"hierarchy", "hi", "s"},
    {"index", "in", "?", kCreate},
    {"option", "o", "s"},
    {"shape", "s", "b"},
    {"time", "t", "?", kCreate},
};

// The attribute keeps the value that it shows.
void dropCurve(Scene& scene, NodeHandle curve) {
    std::vector<NodeHandle> gone{curve};
    for (const Scene::Connection& c : scene.outgoing(curve))
        if (scene.isType(c.target.node, "unitConversion")) {
            const std::vector<Scene::Connection> fed = scene.outgoing(c.target.node);
            for (const Scene::Connection& far : fed)
                ignore(scene.disconnect(far.source, far.target));
            gone.push_back(c.target.node);
        }
    scene.deleteNodes(gone);
}

// True when the curve lost a key.
bool cutFrom(Scene& scene, NodeHandle curve, const std::vector<TimeRange>& times,
             const std::vector<TimeRange>& indices) {
    const std::vector<CurveKey> keys = keysOf(scene, curve);
    std::vector<CurveKey> left;
    for (std::size_t i = 0; i < keys.size(); ++i)
        if (!inRanges(times, keys[i].time) || !inRanges(indices, static_cast<double>(i)))
            left.push_back(keys[i]);
    if (left.size() == keys.size())
        return false;
    if (left.empty())
        dropCurve(scene, curve);
    else
        setKeys(scene, curve, left);
    return true;
}

Status cutKey(const CommandCall& call, Value& result) {
    std::vector<KeyTarget> targets;
    std::vector<TimeRange> times, indices;
    Status done = refuseScope(call);
    if (done)
        done = keyTargets(call, KeyScope::Keyed, targets);
    if (done)
        done = timeRanges(call, "time", times);
    if (done)
        done = timeRanges(call, "float", times);
    if (done)
        done = timeRanges(call, "index", indices);
    if (!done)
        return done;
    std::int64_t count = 0;
    for (const KeyTarget& target : targets)
        if (call.scene().isValid(target.curve) &&
            (call.has("float") || isTimeCurve(call.scene(), target.curve)))
            count += cutFrom(call.scene(), target.curve, times, indices) ? 1 : 0;
    result = Value(count);
    return Status::ok();
}

// --- setDrivenKeyframe ---------------------------------------------------------------------------

const FlagRow kDrivenFlags[] = {
    {"attribute", "at", "s", kAllModes, true, true},
    {"currentDriver", "cd", "s"},
    {"driven", "dn"},
    {"driver", "dr"},
    {"driverValue", "dv", "d"},
    {"inTangentType", "itt", "s"},
    {"insert", "i"},
    {"outTangentType", "ott", "s"},
    {"value", "v", "d"},
};

// The driver behind a curve and the conversion before it.
Plug driverOf(const Scene& scene, NodeHandle curve) {
    return sourceBehindConversions(scene, scene.findPlug(curve, "input"));
}

Status ensureDriven(const CommandCall& call, const Plug& driver, KeyTarget& target) {
    Scene& scene = call.scene();
    if (isDrivenOtherwise(scene, target))
        return call.fail("'" + scene.plugName(target.plug) +
                         "' already has an incoming connection.");
    if (!target.curve.isNull())
        return driverOf(scene, target.curve) == driver
                   ? Status::ok()
                   : call.fail("'" + scene.plugName(target.plug) +
                               "' is animated or has another driver; " +
                               "one driver for an attribute is covered.");
    if (scene.isLocked(target.plug))
        return call.fail("The attribute '" + scene.plugName(target.plug) + "' is locked.");
    Status done = scene.createNode(curveTypeFor(scene, target.plug, true),
                                   curveNameFor(scene, target.plug), {}, target.curve);
    if (done)
        done = connectPlugs(scene, driver, scene.findPlug(target.curve, "input"), false);
    return done;
}

Status driveOne(const CommandCall& call, const Plug& driver, KeyTarget target,
                const Tangents& tangents) {
    Scene& scene = call.scene();
    const AttrInfo& info = scene.info(target.plug);
    const double value =
        call.has("value") ? call.number("value") / uiScale(info) : scene.number(target.plug);
    const double at = call.has("driverValue") ? call.number("driverValue")
                                              : scene.number(driver) * uiScale(scene.info(driver));
    const bool isNew = target.curve.isNull();
    if (Status made = ensureDriven(call, driver, target); !made)
        return made;
    putKey(scene, target.curve, at, value, tangents, isStepped(info));
    return isNew ? scene.connect(scene.findPlug(target.curve, "output"), target.plug)
                 : Status::ok();
}

Status queryDriver(const CommandCall& call, const std::vector<KeyTarget>& targets, Value& result) {
    const Scene& scene = call.scene();
    std::vector<std::string> names;
    for (const KeyTarget& target : targets) {
        const bool driven = !target.curve.isNull() && !isTimeCurve(scene, target.curve);
        const Plug driver = driven ? driverOf(scene, target.curve) : Plug();
        if (call.has("driven") && driven)
            names.push_back(scene.plugName(target.plug));
        else if (!driver.isNull())
            names.push_back(scene.plugName(driver));
    }
    if (names.empty())
        names.push_back(call.has("driven") ? "No driven attributes." : "No drivers.");
    result = Value::strings(names);
    return Status::ok();
}

Status setDrivenKeyframe(const CommandCall& call, Value& result) {
    std::vector<KeyTarget> targets;
    Tangents tangents;
    Status done = keyTargets(call, KeyScope::Keyable, targets);
    if (done)
        done = readTangents(call, tangents);
    if (!done)
        return done;
    if (call.isQuery())
        return queryDriver(call, targets, result);
    Plug driver;
    if (!call.has("currentDriver"))
        return call.fail("Needs the flag -currentDriver.");
    done = call.resolvePlug(call.text("currentDriver"), driver);
    if (done && !isNumeric(call.scene().info(driver).type))
        done = call.fail("The driver '" + call.text("currentDriver") + "' is no number.");
    std::int64_t count = 0;
    for (std::size_t i = 0; done && i < targets.size(); ++i) {
        if (targets[i].plug.isNull())
            continue;
        done = driveOne(call, driver, targets[i], tangents);
        count += done ? 1 : 0;
    }
    result = Value(count);
    return done;
}

const Command kKeyCommands[] = {
    {"cutKey", kCutFlags, countOf(kCutFlags), cutKey, "Takes keys away."},
    {"setDrivenKeyframe", kDrivenFlags, countOf(kDrivenFlags), setDrivenKeyframe,
     "Keys over another attribute."},
    {"setKeyframe", kSetFlags, countOf(kSetFlags), setKeyframe, "Sets keys over time."},
};

}  // namespace

CommandTable keyCommands() {
    return {kKeyCommands, std::size(kKeyCommands)};
}

}  // namespace torvel
