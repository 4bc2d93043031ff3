// currentTime, currentUnit, playbackOptions, play.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "commands/animation/key_targets.h"
#include "script/session.h"
#include "commands/animation/time_range.h"
#include "nodes/animation/anim_curve.h"
#include "nodes/shape/mesh.h"
#include "nodes/animation/time_units.h"
#include "base/number_text.h"

namespace torvel {
namespace {

const char* const kLoopNames[] = {"once", "continuous", "oscillate"};
const char* const kViewNames[] = {"all", "active"};

/// A setting, the attribute that keeps it, and playbackOptions' flag for it (null: another command
/// sets it).
struct SettingRow {
    PlaySetting setting;
    const char* attr;
    const char* flag = nullptr;
    const char* fileFlag = nullptr;      ///< of a range: how a file's script node writes it
    const char* const* names = nullptr;  ///< of one that is chosen by name
    int nameCount = 0;
};
// The outer range before the inner one, so that one call can set both.
constexpr SettingRow kSettings[] = {
    {PlaySetting::AnimationStart, "playbackAnimationStart", "animationStartTime", " -ast "},
    {PlaySetting::AnimationEnd, "playbackAnimationEnd", "animationEndTime", " -aet "},
    {PlaySetting::MinTime, "playbackMin", "minTime", " -min "},
    {PlaySetting::MaxTime, "playbackMax", "maxTime", " -max "},
    {PlaySetting::By, "playbackBy", "by"},
    {PlaySetting::MaxSpeed, "playbackMaxSpeed", "maxPlaybackSpeed"},
    {PlaySetting::Speed, "playbackSpeed", "playbackSpeed"},
    {PlaySetting::Loop, "playbackLoop", "loop", nullptr, kLoopNames, 3},
    {PlaySetting::View, "playbackView", "view", nullptr, kViewNames, 2},
    {PlaySetting::InTangent, "newInTangent"},
    {PlaySetting::OutTangent, "newOutTangent"},
};

constexpr bool standAtTheirNumbers() {
    for (std::size_t i = 0; i < std::size(kSettings); ++i)
        if (static_cast<std::size_t>(kSettings[i].setting) != i)
            return false;
    return true;
}
static_assert(standAtTheirNumbers());

const SettingRow& rowOf(PlaySetting setting) {
    return kSettings[static_cast<int>(setting)];
}

Plug settingPlug(const Scene& scene, PlaySetting setting) {
    return scene.findPlug(scene.timeNode(), rowOf(setting).attr);
}

// Files keep their range in a script node; nothing of the script is run. False when it says nothing
// about the flag.
bool rangeInFile(const Scene& scene, const char* flag, double& value) {
    std::string text;
    if (const Node* node = scene.node(scene.names().lookUp("sceneConfigurationScriptNode")))
        for (const std::string& kept : node->keptText)
            text += kept;
    const std::size_t command = text.find("playbackOptions");
    const std::size_t at = command == std::string::npos ? command : text.find(flag, command);
    if (at == std::string::npos)
        return false;
    const char* begin = text.c_str() + at + std::string(flag).size();
    return readNumber(begin, value) != begin;
}

}  // namespace

double playSetting(const Scene& scene, PlaySetting setting) {
    const Plug plug = settingPlug(scene, setting);
    const Slot* slot = scene.peekSlot(plug);
    double value = 0.0;
    const char* fileFlag = rowOf(setting).fileFlag;
    if (fileFlag && !(slot && (slot->state & kSet)) && rangeInFile(scene, fileFlag, value))
        return value;
    return scene.storedNumber(plug);
}

void setPlaySetting(Scene& scene, PlaySetting setting, double value) {
    scene.setNumber(settingPlug(scene, setting), value);
}

namespace {

// --- currentTime ---------------------------------------------------------------------------------

const FlagRow kTimeFlags[] = {{"update", "u", "b"}};

Status currentTime(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    if (!call.isQuery()) {
        double frame = 0.0;
        if (call.args().size() != 1 || !timeOf(scene, call.args()[0], frame) ||
            !std::isfinite(frame))
            return call.fail("Needs a time.");
        setSceneTime(scene, frame);
    }
    result = Value(sceneTime(scene));
    return Status::ok();
}

// --- currentUnit ---------------------------------------------------------------------------------

const FlagRow kUnitFlags[] = {{"angle", "a", "s"},
                              {"fullName", "f"},
                              {"linear", "l", "s"},
                              {"time", "t", "s"},
                              {"updateAnimation", "ua", "b"}};

std::string withTimeWord(const std::string& statement, const std::string& unit) {
    const std::string base =
        statement.empty() ? "currentUnit -l centimeter -a degree -t film;" : statement;
    for (const char* flag : {" -t ", " -time "}) {
        const std::size_t at = base.find(flag);
        if (at == std::string::npos)
            continue;
        const std::size_t from = at + std::string(flag).size();
        return base.substr(0, from) + unit +
               base.substr(std::min(base.find_first_of(" ;", from), base.size()));
    }
    return base.substr(0, base.find(';')) + " -t " + unit + ";";
}

// Keys, the time and the range stay where they are on the clock.
void rescaleTimes(Scene& scene, double factor) {
    for (const NodeHandle node : scene.allNodes()) {
        if (!isTimeCurve(scene, node))
            continue;
        std::vector<CurveKey> keys = keysOf(scene, node);
        for (CurveKey& key : keys) {
            key.time *= factor;
            key.inSlope /= factor;
            key.outSlope /= factor;
        }
        setKeys(scene, node, keys);
    }
    for (const PlaySetting setting : {PlaySetting::MinTime, PlaySetting::MaxTime,
                                      PlaySetting::AnimationStart, PlaySetting::AnimationEnd})
        setPlaySetting(scene, setting, playSetting(scene, setting) * factor);
    setSceneTime(scene, sceneTime(scene) * factor);
}

Status setTimeUnit(const CommandCall& call, const std::string& unit) {
    Scene& scene = call.scene();
    const double rate = rateOfUnit(unit), former = framesPerSecond(scene);
    if (rate <= 0.0)
        return call.fail("Invalid time unit: " + unit);
    std::vector<std::pair<NodeHandle, std::vector<CurveKey>>> curves;
    for (const NodeHandle node : scene.allNodes())
        if (isTimeCurve(scene, node))
            curves.emplace_back(node, keysOf(scene, node));
    scene.changeDocument([&](Document& document) {
        document.unitsText = withTimeWord(document.unitsText, unit);
        document.modified = true;
    });
    for (const auto& [curve, keys] : curves)
        setKeys(scene, curve, keys);  // slopes stand by the second in the node
    if (rate != former && call.flag("updateAnimation", true))
        rescaleTimes(scene, rate / former);
    return Status::ok();
}

Status currentUnit(const CommandCall& call, Value& result) {
    struct Unit {
        const char* flag;
        const char* shortName;
        const char* longName;
    };
    static const Unit kUnits[] = {{"angle", "deg", "degree"}, {"linear", "cm", "centimeter"}};
    for (const Unit& unit : kUnits) {
        if (!call.has(unit.flag))
            continue;
        if (call.isQuery()) {
            result = Value(call.has("fullName") ? unit.longName : unit.shortName);
            return Status::ok();
        }
        const std::string wanted = call.text(unit.flag);
        if (wanted != unit.shortName && wanted != unit.longName)
            return call.fail(std::string("The ") + unit.flag + " unit is always " + unit.longName +
                             ".");
    }
    if (!call.has("time"))
        return Status::ok();
    if (!call.isQuery())
        return setTimeUnit(call, call.text("time"));
    result = Value(timeUnit(call.scene()));
    return Status::ok();
}

// --- playbackOptions -----------------------------------------------------------------------------

const FlagRow kPlaybackFlags[] = {
    {"animationEndTime", "aet", "t"},
    {"animationStartTime", "ast", "t"},
    {"by", "by", "d"},
    {"framesPerSecond", "fps"},
    {"loop", "l", "s"},
    {"maxPlaybackSpeed", "mps", "d"},
    {"maxTime", "max", "t"},
    {"minTime", "min", "t"},
    {"playbackSpeed", "ps", "d"},
    {"view", "v", "s"},
};

// The inner range never leaves the outer one: setting one moves the other along.
void keepRangesNested(Scene& scene, PlaySetting changed, double value) {
    const auto at = [&](PlaySetting s) { return playSetting(scene, s); };
    const auto atMost = [&](PlaySetting s) { setPlaySetting(scene, s, std::min(at(s), value)); };
    const auto atLeast = [&](PlaySetting s) { setPlaySetting(scene, s, std::max(at(s), value)); };
    switch (changed) {
        case PlaySetting::MinTime:
            atMost(PlaySetting::AnimationStart);
            atLeast(PlaySetting::MaxTime);
            return atLeast(PlaySetting::AnimationEnd);
        case PlaySetting::MaxTime:
            atLeast(PlaySetting::AnimationEnd);
            atMost(PlaySetting::MinTime);
            return atMost(PlaySetting::AnimationStart);
        case PlaySetting::AnimationStart:
            atLeast(PlaySetting::MinTime);
            atLeast(PlaySetting::MaxTime);
            return atLeast(PlaySetting::AnimationEnd);
        case PlaySetting::AnimationEnd:
            atMost(PlaySetting::MaxTime);
            atMost(PlaySetting::MinTime);
            return atMost(PlaySetting::AnimationStart);
        default: return;
    }
}

Status settingOfCall(const CommandCall& call, const SettingRow& row, double& value) {
    value = call.number(row.flag);
    if (row.fileFlag && !timeOf(call.scene(), call.use(row.flag)->values[0], value))
        return call.fail(std::string("The flag '") + row.flag + "' needs a time.");
    if (!row.names)
        return Status::ok();
    const std::string name = call.text(row.flag);
    for (int i = 0; i < row.nameCount; ++i)
        if (name == row.names[i]) {
            value = i;
            return Status::ok();
        }
    return call.fail(std::string("Invalid value for the flag '") + row.flag + "': " + name);
}

Value settingValue(const Scene& scene, const SettingRow& row) {
    const double value = playSetting(scene, row.setting);
    if (!row.names)
        return Value(value);
    return Value(row.names[value > 0.0 && value < row.nameCount ? static_cast<int>(value) : 0]);
}

Status playbackOptions(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    if (call.isQuery() && call.has("framesPerSecond"))
        result = Value(framesPerSecond(scene));
    for (const SettingRow& row : kSettings) {
        if (!row.flag || !call.has(row.flag))
            continue;
        if (call.isQuery()) {
            result = settingValue(scene, row);
            continue;
        }
        double value = 0.0;
        if (Status read = settingOfCall(call, row, value); !read)
            return read;
        setPlaySetting(scene, row.setting, value);
        keepRangesNested(scene, row.setting, value);
    }
    return Status::ok();
}

// --- play ----------------------------------------------------------------------------------------

const FlagRow kPlayFlagsOfPlay[] = {{"forward", "f", "b"}, {"state", "st", "b"}, {"wait", "w"}};

void evaluateMeshes(const Scene& scene) {
    for (const NodeHandle node : scene.allNodes())
        if (scene.isType(node, "mesh"))
            meshPoints(scene, node);
}

// Shows every frame of the range once, as fast as they come, and stops at its end.
Status play(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    if (call.isQuery()) {
        result = call.has("forward") ? Value(true) : Value(false);
        return Status::ok();
    }
    if (call.has("state") && !call.flag("state"))
        return Status::ok();  // nothing plays on after the command
    const double first = playSetting(scene, PlaySetting::MinTime),
                 last = playSetting(scene, PlaySetting::MaxTime);
    const double step = std::max(playSetting(scene, PlaySetting::By), 1e-3);
    const bool forward = call.flag("forward", true);
    const auto frames = static_cast<long>(std::floor((last - first) / step + 1e-9));
    for (long i = 0; i <= frames; ++i) {
        setSceneTime(scene, forward ? first + static_cast<double>(i) * step
                                    : last - static_cast<double>(i) * step);
        evaluateMeshes(scene);
    }
    setSceneTime(scene, forward ? last : first);
    return Status::ok();
}

const Command kTimeCommands[] = {
    {"currentTime", kTimeFlags, countOf(kTimeFlags), currentTime, "Gets and sets the time."},
    {"currentUnit", kUnitFlags, countOf(kUnitFlags), currentUnit, "The units in use."},
    {"play", kPlayFlagsOfPlay, countOf(kPlayFlagsOfPlay), play, "Plays the range once."},
    {"playbackOptions", kPlaybackFlags, countOf(kPlaybackFlags), playbackOptions,
     "Range and way of playback."},
};

}  // namespace

CommandTable timeCommands() {
    return {kTimeCommands, std::size(kTimeCommands)};
}

}  // namespace torvel
