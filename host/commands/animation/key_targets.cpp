#include "commands/animation/key_targets.h"

#include <algorithm>

#include "commands/attribute/value.h"
#include "script/session.h"
#include "nodes/animation/anim_curve.h"
#include "nodes/animation/time_units.h"
#include "base/number_text.h"

namespace torvel {
namespace {

class TargetList {
  public:
    TargetList(const CommandCall& call, KeyScope scope, std::vector<KeyTarget>& out)
        : m_scene(call.scene()), m_call(call), m_scope(scope), m_out(out) {}

    void addPlug(const Plug& plug) {
        for (const Plug& leaf : numericLeaves(m_scene, plug))
            add({leaf, anyCurveOf(m_scene, leaf)});
    }

    void addNode(NodeHandle handle) {
        if (m_scene.isType(handle, "animCurve"))
            return add({Plug(), handle});
        bool isNamed = false;
        for (const FlagUse* use : m_call.uses("attribute")) {
            if (use->values.empty())
                continue;  // a question may give the flag without a name
            isNamed = true;
            if (const Plug plug = m_scene.findPlug(handle, use->values[0].string()); !plug.isNull())
                addPlug(plug);
        }
        if (isNamed)
            return;
        if (m_scope == KeyScope::Keyed)
            addKeyed(handle);
        else
            addKeyable(handle);
    }

  private:
    void add(const KeyTarget& target) {
        for (const KeyTarget& known : m_out)
            if (known.plug == target.plug && known.curve == target.curve)
                return;
        m_out.push_back(target);
    }

    void addKeyed(NodeHandle handle) {
        for (const Scene::Connection& c : m_scene.incoming(handle))
            if (const NodeHandle curve = anyCurveOf(m_scene, c.target); !curve.isNull())
                add({c.target, curve});
    }

    void addKeyable(NodeHandle handle) {
        const Node& node = *m_scene.node(handle);
        for (AttrIndex i = 0; i < node.attrCount(); ++i) {
            const AttrInfo& info = node.attr(i);
            const Plug plug(handle, i);
            const bool isNumber =
                info.arrayDepth == 0 && isNumeric(info.type) && !info.is(kOutput | kOpaque);
            if (isNumber && m_scene.isKeyable(plug) && !m_scene.isLocked(plug))
                add({plug, anyCurveOf(m_scene, plug)});
        }
    }

    const Scene& m_scene;
    const CommandCall& m_call;
    KeyScope m_scope;
    std::vector<KeyTarget>& m_out;
};

struct KindWord {
    const char* word;
    int kind;
};
constexpr KindWord kKinds[] = {
    {"fixed", kFixedTangent},     {"linear", kLinearTangent},     {"flat", kFlatTangent},
    {"step", kStepTangent},       {"spline", kSplineTangent},     {"clamped", kClampedTangent},
    {"plateau", kPlateauTangent}, {"stepnext", kStepNextTangent}, {"auto", kAutoTangent},
};

// "a:b" with one end open, or one time.
bool rangeOfText(const Scene& scene, const std::string& text, TimeRange& range) {
    const std::size_t colon = text.find(':');
    const std::string first = text.substr(0, colon);
    if (!first.empty() && !timeOf(scene, Value(first), range.from))
        return false;
    if (colon == std::string::npos) {
        range.to = range.from;
        return !first.empty();
    }
    const std::string last = text.substr(colon + 1);
    return last.empty() || timeOf(scene, Value(last), range.to);
}

}  // namespace

Status keyTargets(const CommandCall& call, KeyScope scope, std::vector<KeyTarget>& out) {
    TargetList list(call, scope, out);
    if (call.args().empty()) {
        std::vector<NodeHandle> nodes;
        if (const Status found = call.objectsOrSelection(nodes); !found)
            return found;
        for (const NodeHandle node : nodes)
            list.addNode(node);
        return Status::ok();
    }
    for (const std::string& text : call.texts()) {
        Plug plug;
        NodeHandle node;
        const bool isPlug = text.find('.') != std::string::npos;
        if (const Status found = isPlug ? call.resolvePlug(text, plug) : call.resolve(text, node);
            !found)
            return found;
        if (isPlug)
            list.addPlug(plug);
        else
            list.addNode(node);
    }
    return Status::ok();
}

NodeHandle anyCurveOf(const Scene& scene, const Plug& plug) {
    Plug source = scene.source(plug);
    if (!source.isNull() && scene.isType(source.node, "unitConversion"))
        source = scene.source(scene.findPlug(source.node, "input"));
    return !source.isNull() && scene.isType(source.node, "animCurve") ? source.node : NodeHandle();
}

Plug plugFedBy(const Scene& scene, NodeHandle curve) {
    const std::vector<Scene::Connection> fed = scene.outgoing(curve);
    for (const Scene::Connection& c : fed)
        if (scene.info(c.source).longName == "output")
            return c.target;
    return {};
}

std::string curveNameFor(const Scene& scene, const Plug& plug) {
    const std::string& node = scene.node(plug.node)->name;
    std::string name = node.substr(node.rfind(':') + 1) + "_" + scene.attrPath(plug, true);
    for (char& c : name)
        if (c == '.' || c == '[' || c == ']')
            c = '_';
    return name;
}

std::string curveTypeFor(const Scene& scene, const Plug& plug, bool driven) {
    const AttrType type = scene.info(plug).type;
    const char* value = type == AttrType::Angle      ? "A"
                        : type == AttrType::Distance ? "L"
                        : type == AttrType::Time     ? "T"
                                                     : "U";
    return std::string("animCurve") + (driven ? "U" : "T") + value;
}

bool timeOf(const Scene& scene, const Value& value, double& frame) {
    if (value.isNumber()) {
        frame = value.number();
        return true;
    }
    if (!value.isString())
        return false;
    const char* end = readNumber(value.string().c_str(), frame);
    if (end == value.string().c_str())
        return false;
    const std::string unit(end);
    const double rate = unit.empty() ? framesPerSecond(scene) : rateOfUnit(unit);
    if (rate > 0.0)
        frame *= framesPerSecond(scene) / rate;
    return rate > 0.0;
}

namespace {

// One range: a text, one number, or two ends.
bool rangeOf(const Scene& scene, const Value& value, TimeRange& range) {
    if (value.isTuple())
        return rangeOf(scene, Value::doubles(value.tuple().items), range);
    if (!value.isList())
        return value.isString()
                   ? rangeOfText(scene, value.string(), range)
                   : timeOf(scene, value, range.from) && timeOf(scene, value, range.to);
    const Value::List& ends = value.list();
    return (ends.size() == 1 || ends.size() == 2) && timeOf(scene, ends.front(), range.from) &&
           timeOf(scene, ends.back(), range.to);
}

bool addRanges(const Scene& scene, const Value& value, std::vector<TimeRange>& out) {
    const bool many =
        value.isList() && !value.list().empty() &&
        (value.list()[0].isList() || value.list()[0].isTuple() ||
         (value.list()[0].isString() && value.list()[0].string().find(':') != std::string::npos));
    if (many)
        return std::all_of(value.list().begin(), value.list().end(),
                           [&](const Value& item) { return addRanges(scene, item, out); });
    TimeRange range;
    if (!rangeOf(scene, value, range))
        return false;
    out.push_back(range);
    return true;
}

}  // namespace

Status timeRanges(const CommandCall& call, const char* flag, std::vector<TimeRange>& out) {
    for (const FlagUse* use : call.uses(flag))
        if (use->values.size() != 1 || !addRanges(call.scene(), use->values[0], out))
            return call.fail(std::string("The flag '") + flag +
                             "' takes a time or a range of times.");
    return Status::ok();
}

bool inRanges(const std::vector<TimeRange>& ranges, double time) {
    return ranges.empty() ||
           std::any_of(ranges.begin(), ranges.end(),
                       [time](const TimeRange& range) { return range.holds(time); });
}

int tangentKindOf(const std::string& word) {
    for (const KindWord& row : kKinds)
        if (word == row.word)
            return row.kind;
    return -1;
}

const char* tangentWord(int kind) {
    for (const KindWord& row : kKinds)
        if (kind == row.kind)
            return row.word;
    return "fixed";
}

}  // namespace torvel
