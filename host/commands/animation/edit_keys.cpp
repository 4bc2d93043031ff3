// keyframe, keyTangent, findKeyframe.
#include <algorithm>
#include <cmath>

#include "commands/attribute/value.h"
#include "commands/animation/key_targets.h"
#include "script/session.h"
#include "commands/animation/time_range.h"
#include "nodes/animation/anim_curve.h"
#include "nodes/animation/time_units.h"

namespace torvel {
namespace {

/// The keys of one curve that a call means.
struct Picked {
    NodeHandle curve;
    std::vector<CurveKey> keys;
    std::vector<std::size_t> which;
    double unit = 1.0;  ///< of its values for scripts
};

double valueUnit(const Scene& scene, NodeHandle curve) {
    return uiScale(scene.info(scene.findPlug(curve, "output")));
}

Status pick(const CommandCall& call, std::vector<Picked>& out) {
    const Scene& scene = call.scene();
    std::vector<KeyTarget> targets;
    std::vector<TimeRange> times, indices;
    Status done = keyTargets(call, KeyScope::Keyed, targets);
    if (done)
        done = timeRanges(call, "time", times);
    if (done)
        done = timeRanges(call, "float", times);
    if (done)
        done = timeRanges(call, "index", indices);
    if (!done)
        return done;
    for (const KeyTarget& target : targets) {
        if (target.curve.isNull())
            continue;
        Picked picked{
            target.curve, keysOf(scene, target.curve), {}, valueUnit(scene, target.curve)};
        for (std::size_t i = 0; i < picked.keys.size(); ++i)
            if (inRanges(times, picked.keys[i].time) && inRanges(indices, static_cast<double>(i)))
                picked.which.push_back(i);
        out.push_back(std::move(picked));
    }
    return Status::ok();
}

Value listOrNone(Value::List items) {
    return items.empty() ? Value() : Value(std::move(items));
}

// --- keyframe ------------------------------------------------------------------------------------

const FlagRow kKeyframeFlags[] = {
    {"absolute", "a"},
    {"animation", "an", "s"},
    {"attribute", "at", "s", kAllModes, true, true},
    {"eval", "ev"},
    {"float", "f", "?", kAllModes, false, true},
    {"floatChange", "fc", "d"},
    {"index", "in", "?", kAllModes, false, true},
    {"indexValue", "iv"},
    {"keyframeCount", "kc"},
    {"lastSelected", "lsl"},
    {"name", "n"},
    {"relative", "r"},
    {"selected", "sl"},
    {"shape", "s", "b"},
    {"time", "t", "?", kAllModes, false, true},
    {"timeChange", "tc", "d"},
    {"valueChange", "vc", "d"},
};

// -eval: what the curves give at each time asked for, between keys, too.
Status evaluated(const CommandCall& call, const std::vector<Picked>& curves, Value& result) {
    std::vector<TimeRange> times;
    if (const Status read = timeRanges(call, "time", times); !read)
        return read;
    if (times.empty())
        times.push_back({sceneTime(call.scene()), 0.0});
    Value::List values;
    for (const Picked& curve : curves)
        for (const TimeRange& time : times)
            values.emplace_back(curveValue(curve.keys, time.from) * curve.unit);
    result = listOrNone(std::move(values));
    return Status::ok();
}

Status queryKeys(const CommandCall& call, const std::vector<Picked>& curves, Value& result) {
    if (call.has("selected") || call.has("lastSelected"))
        return Status::ok();  // keys are never selected here
    if (call.has("eval"))
        return evaluated(call, curves, result);
    std::int64_t count = 0;
    Value::List items;
    for (const Picked& curve : curves) {
        if (call.has("name") && !curve.which.empty())
            items.emplace_back(call.scene().node(curve.curve)->name);
        count += static_cast<std::int64_t>(curve.which.size());
        for (const std::size_t i : curve.which) {
            if (call.has("indexValue"))
                items.emplace_back(static_cast<std::int64_t>(i));
            if (call.has("timeChange") || call.has("floatChange"))
                items.emplace_back(curve.keys[i].time);
            if (call.has("valueChange"))
                items.emplace_back(curve.keys[i].value * curve.unit);
        }
    }
    const bool lists = call.has("name") || call.has("indexValue") || call.has("timeChange") ||
                       call.has("floatChange") || call.has("valueChange");
    result = lists ? listOrNone(std::move(items)) : Value(count);
    return Status::ok();
}

bool collide(const std::vector<CurveKey>& keys) {
    for (std::size_t i = 1; i < keys.size(); ++i)
        if (keys[i].time - keys[i - 1].time < 1e-6)
            return true;
    return false;
}

Status keyframe(const CommandCall& call, Value& result) {
    std::vector<Picked> curves;
    if (const Status found = pick(call, curves); !found)
        return found;
    if (call.isQuery())
        return queryKeys(call, curves, result);
    const bool relative = call.has("relative");
    const char* timeFlag = call.has("floatChange") ? "floatChange" : "timeChange";
    std::int64_t count = 0;
    for (Picked& curve : curves) {
        for (const std::size_t i : curve.which) {
            CurveKey& key = curve.keys[i];
            if (call.has(timeFlag))
                key.time = call.number(timeFlag) + (relative ? key.time : 0.0);
            if (call.has("valueChange"))
                key.value = call.number("valueChange") / curve.unit + (relative ? key.value : 0.0);
            ++count;
        }
        std::stable_sort(curve.keys.begin(), curve.keys.end(),
                         [](const CurveKey& a, const CurveKey& b) { return a.time < b.time; });
        if (collide(curve.keys))
            return call.fail("Two keys of '" + call.scene().node(curve.curve)->name +
                             "' would stand at one time.");
    }
    for (const Picked& curve : curves)
        if (!curve.which.empty())
            setKeys(call.scene(), curve.curve, curve.keys);
    result = Value(count);
    return Status::ok();
}

// --- keyTangent ----------------------------------------------------------------------------------

const FlagRow kTangentFlags[] = {
    {"absolute", "a"},
    {"animation", "an", "s"},
    {"attribute", "at", "s", kAllModes, true, true},
    {"float", "f", "?", kAllModes, false, true},
    {"global", "g"},
    {"inAngle", "ia", "a"},
    {"inTangentType", "itt", "s"},
    {"index", "in", "?", kAllModes, false, true},
    {"lock", "l", "b"},
    {"outAngle", "oa", "a"},
    {"outTangentType", "ott", "s"},
    {"time", "t", "?", kAllModes, false, true},
    {"weightedTangents", "wt", "b"},
};

Status kindOf(const CommandCall& call, const char* flag, int& kind) {
    if (!call.has(flag))
        return Status::ok();
    kind = tangentKindOf(call.text(flag));
    return kind < 0 ? call.fail("Invalid tangent type: " + call.text(flag)) : Status::ok();
}

Status globalTangents(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    const auto word = [&](PlaySetting s) {
        return Value(tangentWord(static_cast<int>(playSetting(scene, s))));
    };
    if (call.isQuery()) {
        Value::List items;
        const bool both = !call.has("inTangentType") && !call.has("outTangentType");
        if (both || call.has("inTangentType"))
            items.push_back(word(PlaySetting::InTangent));
        if (both || call.has("outTangentType"))
            items.push_back(word(PlaySetting::OutTangent));
        result = Value(std::move(items));
        return Status::ok();
    }
    int in = -1, out = -1;
    Status done = kindOf(call, "inTangentType", in);
    if (done)
        done = kindOf(call, "outTangentType", out);
    if (done && in >= 0)
        setPlaySetting(scene, PlaySetting::InTangent, in);
    if (done && out >= 0)
        setPlaySetting(scene, PlaySetting::OutTangent, out);
    return done;
}

// Angles count over seconds for curves over time, over the driver's unit for driven ones.
double secondsIn(const Scene& scene, NodeHandle curve) {
    return isTimeCurve(scene, curve) ? framesPerSecond(scene) : 1.0;
}

void queryTangents(const CommandCall& call, const std::vector<Picked>& curves, Value& result) {
    Value::List items;
    for (const Picked& curve : curves) {
        const CurveShape shape(curve.keys);
        const double unit = secondsIn(call.scene(), curve.curve) * curve.unit;
        for (const std::size_t i : curve.which) {
            if (call.has("inTangentType"))
                items.emplace_back(tangentWord(curve.keys[i].inKind));
            if (call.has("outTangentType"))
                items.emplace_back(tangentWord(curve.keys[i].outKind));
            if (call.has("inAngle"))
                items.emplace_back(std::atan(shape.keys[i].inSlope * unit) * kRadToDeg);
            if (call.has("outAngle"))
                items.emplace_back(std::atan(shape.keys[i].outSlope * unit) * kRadToDeg);
            if (call.has("lock"))
                items.emplace_back(true);
        }
        if (call.has("weightedTangents"))
            items.emplace_back(false);
    }
    result = listOrNone(std::move(items));
}

void setTangents(const CommandCall& call, Picked& curve, int in, int out) {
    const CurveShape shape(curve.keys);
    const double unit = secondsIn(call.scene(), curve.curve) * curve.unit;
    for (const std::size_t i : curve.which) {
        CurveKey& key = curve.keys[i];
        // a tangent made fixed keeps the direction it has
        if (in >= 0) {
            key.inKind = in;
            key.inSlope = shape.keys[i].inSlope;
        }
        if (out >= 0) {
            key.outKind = out;
            key.outSlope = shape.keys[i].outSlope;
        }
        if (call.has("inAngle")) {
            key.inKind = kFixedTangent;
            key.inSlope = std::tan(call.number("inAngle") * kDegToRad) / unit;
        }
        if (call.has("outAngle")) {
            key.outKind = kFixedTangent;
            key.outSlope = std::tan(call.number("outAngle") * kDegToRad) / unit;
        }
    }
    setKeys(call.scene(), curve.curve, curve.keys);
}

Status keyTangent(const CommandCall& call, Value& result) {
    if (call.has("global"))
        return globalTangents(call, result);
    if (!call.isQuery() && call.has("weightedTangents") && call.flag("weightedTangents"))
        return call.fail("Weighted tangents are not covered.");
    std::vector<Picked> curves;
    int in = -1, out = -1;
    Status done = pick(call, curves);
    if (done && call.isQuery())
        queryTangents(call, curves, result);
    if (!done || call.isQuery())
        return done;
    done = kindOf(call, "inTangentType", in);
    if (done)
        done = kindOf(call, "outTangentType", out);
    std::int64_t count = 0;
    for (std::size_t i = 0; done && i < curves.size(); ++i) {
        setTangents(call, curves[i], in, out);
        count += static_cast<std::int64_t>(curves[i].which.size());
    }
    result = Value(count);
    return done;
}

// --- findKeyframe --------------------------------------------------------------------------------

const FlagRow kFindFlags[] = {
    {"attribute", "at", "s", kCreate, true},
    {"curve", "c"},
    {"time", "t", "t", kCreate},
    {"which", "w", "s"},
};

// The wanted one among all times, round the ends where needed.
double wantedTime(const std::vector<double>& times, const std::string& which, double now) {
    if (which == "first" || which == "last")
        return which == "first" ? times.front() : times.back();
    if (which == "previous") {
        const auto at = std::lower_bound(times.begin(), times.end(), now - 1e-6);
        return at == times.begin() ? times.back() : *(at - 1);
    }
    const auto at = std::upper_bound(times.begin(), times.end(), now + 1e-6);
    return at == times.end() ? times.front() : *at;
}

Status findKeyframe(const CommandCall& call, Value& result) {
    const std::string which = call.text("which", "next");
    if (which != "next" && which != "previous" && which != "first" && which != "last")
        return call.fail("The flag 'which' takes next, previous, first or last.");
    std::vector<Picked> curves;
    if (const Status found = pick(call, curves); !found)
        return found;
    std::vector<double> times;
    Value::List names;
    for (const Picked& curve : curves) {
        names.emplace_back(call.scene().node(curve.curve)->name);
        for (const CurveKey& key : curve.keys)
            times.push_back(key.time);
    }
    std::sort(times.begin(), times.end());
    double now = sceneTime(call.scene());
    if (call.has("time") && !timeOf(call.scene(), call.use("time")->values[0], now))
        return call.fail("Invalid time: " + call.text("time"));
    if (call.has("curve"))
        result = listOrNone(std::move(names));
    else
        result = Value(times.empty() ? now : wantedTime(times, which, now));
    return Status::ok();
}

const Command kEditCommands[] = {
    {"findKeyframe", kFindFlags, countOf(kFindFlags), findKeyframe, "The time of a key nearby."},
    {"keyTangent", kTangentFlags, countOf(kTangentFlags), keyTangent, "Tangents of keys."},
    {"keyframe", kKeyframeFlags, countOf(kKeyframeFlags), keyframe, "Lists and moves keys."},
};

}  // namespace

CommandTable keyEditCommands() {
    return {kEditCommands, std::size(kEditCommands)};
}

}  // namespace torvel
