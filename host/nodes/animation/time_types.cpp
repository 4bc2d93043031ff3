// time and unitConversion.
#include "nodes/animation/time_units.h"

#include <cstdlib>

#include "nodes/core/quick_node.h"
#include "nodes/core/fn_numbers.h"
#include "base/number_text.h"
#include "nodes/core/base_attrs.h"

namespace torvel {
namespace {

// What playback and new keys go by lives with the time, unseen by listings and files.
constexpr std::uint32_t kUnseen = kOpaque | kNotStored;
constexpr AttrRow setting(const char* name, double value) {
    return attrRow(name, name, AttrType::Double, value, kUnseen);
}

constexpr AttrRow kTimeAttrs[] = {
    attrRow("outTime", "o", AttrType::Time),
    attrRow("unwarpedTime", "unw", AttrType::Time),
    attrRow("enableTimewarp", "etw", AttrType::Bool),
    attrRow("timecodeProductionStart", "tps", AttrType::Time),
    attrRow("timecodeMayaStart", "tms", AttrType::Time),
    setting("playbackMin", 1.0),
    setting("playbackMax", 120.0),
    setting("playbackAnimationStart", 1.0),
    setting("playbackAnimationEnd", 200.0),
    setting("playbackSpeed", 0.0),
    setting("playbackMaxSpeed", 1.0),
    setting("playbackBy", 1.0),
    setting("playbackLoop", 1.0),
    setting("playbackView", 1.0),
    setting("newInTangent", 18.0),
    setting("newOutTangent", 18.0),
};

constexpr TypeAttrs kTime("time", kDependNode, kTimeAttrs);

// A conversion takes one number or three at once; the inner places of its two numbers serve the
// second case.
constexpr std::uint32_t kInner = kOpaque | kNotStored;
constexpr std::uint32_t kInnerOut = kInner | kOutput;
constexpr AttrRow inner(const char* parent, const char* longName, const char* shortName,
                        std::uint32_t flags) {
    return under(parent, attrRow(longName, shortName, AttrType::Double, 0.0, flags));
}

constexpr AttrRow kConversionAttrs[] = {
    attrRow("input", "i", AttrType::Double, 0.0, 0, "output"),
    inner("input", "input0", "i_0", kInner),
    inner("input", "input1", "i_1", kInner),
    inner("input", "input2", "i_2", kInner),
    attrRow("conversionFactor", "cf", AttrType::Double, 1.0, 0, "output"),
    attrRow("output", "o", AttrType::Double, 0.0, kOutput | kNotStored),
    inner("output", "output0", "o_0", kInnerOut),
    inner("output", "output1", "o_1", kInnerOut),
    inner("output", "output2", "o_2", kInnerOut),
};

constexpr TypeAttrs kUnitConversion("unitConversion", kDependNode, kConversionAttrs);

bool isTime(const Scene& scene, const Plug& plug) {
    return !plug.isNull() && scene.info(plug).type == AttrType::Time;
}

// Factors of times count in ticks, 6000 a second; times themselves are frames here.
double tickScale(const Scene& scene, const Plug& source, const Plug& output) {
    const std::vector<Plug>& targets = scene.targets(output);
    const double ticks = kTicksPerSecond / framesPerSecond(scene);
    return (isTime(scene, source) ? ticks : 1.0) /
           (!targets.empty() && isTime(scene, targets.front()) ? ticks : 1.0);
}

void convert(Evaluation& e) {
    constexpr AttrIndex kInput = kUnitConversion["input"],
                        kFactor = kUnitConversion["conversionFactor"],
                        kResult = kUnitConversion["output"];
    QuickNode node(e);
    const double factor = node.number(kFactor);
    const Slot* slot = e.node().peek(kInput);
    const Plug source = slot && slot->links ? slot->links->source : Plug();
    if (!source.isNull() && isCompound(e.scene().info(source).type))
        node.set(kResult, node.vec3(kInput) * factor);
    else
        node.set(kResult,
                 node.number(kInput) * factor * tickScale(e.scene(), source, e.plug(kResult)));
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kTime, fn::kTime, "kTime", kUniqueType),
    typeRow(kUnitConversion, fn::kUnitConversion, "kUnitConversion", 0, convert),
};

struct RateName {
    const char* name;
    double framesPerSecond;
};
constexpr RateName kRates[] = {
    {"game", 15.0},       {"film", 24.0},      {"pal", 25.0},          {"ntsc", 30.0},
    {"show", 48.0},       {"palf", 50.0},      {"ntscf", 60.0},        {"sec", 1.0},
    {"millisec", 1000.0}, {"min", 1.0 / 60.0}, {"hour", 1.0 / 3600.0},
};

// The word behind -t or -time of a currentUnit statement; empty without one.
std::string timeWord(const std::string& statement) {
    for (const char* flag : {" -t ", " -time "})
        if (const std::size_t at = statement.find(flag); at != std::string::npos) {
            const std::size_t from = at + std::string(flag).size();
            return statement.substr(from, statement.find_first_of(" ;\t\n", from) - from);
        }
    return {};
}

}  // namespace

AttrIndex timeAttr() {
    constexpr AttrIndex kOutTime = kTime["outTime"];
    return kOutTime;
}

TypeRows timeTypes() {
    return family(kTypes);
}

double rateOfUnit(const std::string& unit) {
    for (const RateName& rate : kRates)
        if (unit == rate.name)
            return rate.framesPerSecond;
    double number = 0.0;
    const char* end = readNumber(unit.c_str(), number);
    return end != unit.c_str() && std::string(end) == "fps" && number > 0.0 ? number : 0.0;
}

std::string timeUnit(const Scene& scene) {
    const std::string word = timeWord(scene.document().unitsText);
    return word.empty() ? "film" : word;
}

double framesPerSecond(const Scene& scene) {
    if (scene.document().unitsText.empty())
        return 24.0;
    const double rate = rateOfUnit(timeUnit(scene));
    return rate > 0.0 ? rate : 24.0;
}

}  // namespace torvel
