#include "commands/constraint/flags.h"

#include <array>

#include "commands/attribute/value.h"
#include "commands/attribute/connections.h"
#include "script/session.h"
#include "nodes/constraint/math.h"
#include "nodes/transform/transform.h"

namespace torvel {

namespace {

// --- the commands, a row each ---

template <std::size_t N>
using Flags = std::array<FlagRow, N>;

template <std::size_t N, std::size_t M>
constexpr Flags<N + M> operator+(const Flags<N>& first, const Flags<M>& second) {
    Flags<N + M> out{};
    for (std::size_t i = 0; i < N + M; ++i)
        out[i] = i < N ? first[i] : second[i - N];
    return out;
}

constexpr Flags<6> kCommon = {{{"name", "n", "s"},
                               {"weight", "w", "d"},
                               {"remove", "rm", "", kEdit},
                               {"targetList", "tl", "", kQuery},
                               {"weightAliasList", "wal", "", kQuery},
                               {"layer", "l", "s", kCreate | kEdit}}};
constexpr Flags<1> kKeepsPlace = {{{"maintainOffset", "mo", "", kCreate | kEdit}}};
constexpr Flags<2> kCaches = {
    {{"createCache", "cc", "dd", kEdit}, {"deleteCache", "dc", "", kEdit}}};

constexpr Flags<3> skipAndOffset(const char* letters) {
    return kKeepsPlace +
           Flags<2>{{{"skip", "sk", "s", kCreate | kEdit, true}, {"offset", "o", letters}}};
}

constexpr auto kParentFlags = kCommon + kKeepsPlace +
                              Flags<2>{{{"skipTranslate", "st", "s", kCreate | kEdit, true},
                                        {"skipRotate", "sr", "s", kCreate | kEdit, true}}} +
                              kCaches +
                              Flags<1>{{{"decompRotationToChild", "dr", "", kCreate | kEdit}}};
constexpr auto kPointFlags = kCommon + skipAndOffset("lll");
constexpr auto kOrientFlags = kCommon + skipAndOffset("aaa") + kCaches;
constexpr auto kScaleFlags =
    kCommon + skipAndOffset("ddd") + Flags<1>{{{"scaleCompensate", "sc", "b"}}};
constexpr auto kAimFlags = kCommon + skipAndOffset("aaa") +
                           Flags<5>{{{"aimVector", "aim", "ddd"},
                                     {"upVector", "u", "ddd"},
                                     {"worldUpVector", "wu", "ddd"},
                                     {"worldUpObject", "wuo", "s"},
                                     {"worldUpType", "wut", "s"}}};

template <std::size_t N>
constexpr Command row(const char* name, const Flags<N>& flags, const char* help) {
    return {name, flags.data(), N, constrain, help};
}

const Command kConstraintCommands[] = {
    row("parentConstraint", kParentFlags, "Lets objects carry another one."),
    row("pointConstraint", kPointFlags, "Lets objects place another one."),
    row("orientConstraint", kOrientFlags, "Lets objects turn another one."),
    row("scaleConstraint", kScaleFlags, "Lets objects scale another one."),
    row("aimConstraint", kAimFlags, "Keeps an object pointing at others."),
    row("poleVectorConstraint", kCommon, "Lets objects hold an IK handle's pole."),
};

// --- flags that set attributes ---

constexpr const char* kUpTypes[] = {"scene", "object", "objectrotation", "vector", "none"};
constexpr const char* kVectors[] = {"offset", "aimVector", "upVector", "worldUpVector"};

int upTypeOf(const std::string& text) {
    for (int i = 0; i < static_cast<int>(std::size(kUpTypes)); ++i)
        if (text == kUpTypes[i])
            return i;
    return -1;
}

unsigned axesOf(const CommandCall& call, const char* flag) {
    unsigned bits = 0;
    for (const FlagUse* use : call.uses(flag))
        for (const Value& value : use->values)
            for (unsigned axis = 0; axis < 3; ++axis)
                if (value.isString() && value.string() == std::string(1, "xyz"[axis]))
                    bits |= 1u << axis;
    return bits;
}

Status setUpType(const CommandCall& call, NodeHandle constraint) {
    if (!call.has("worldUpType"))
        return Status::ok();
    const int type = upTypeOf(call.text("worldUpType"));
    if (type < 0)
        return Status::failure("'" + call.text("worldUpType") + "' is no world up type.");
    call.scene().setNumber(call.scene().findPlug(constraint, "worldUpType"), type);
    return Status::ok();
}

Status setUpObject(const CommandCall& call, NodeHandle constraint) {
    if (!call.has("worldUpObject"))
        return Status::ok();
    NodeHandle object;
    if (Status found = call.resolve(call.text("worldUpObject"), object); !found)
        return found;
    const Plug world = call.scene().findPlug(object, "worldMatrix[0]");
    if (world.isNull())
        return Status::failure("'" + call.text("worldUpObject") + "' has no place in the world.");
    return connectPlugs(call.scene(), world, call.scene().findPlug(constraint, "worldUpMatrix"),
                        true);
}

void setCompensation(const CommandCall& call, NodeHandle constraint) {
    if (!call.has("scaleCompensate"))
        return;
    const Plug plug = call.scene().findPlug(constraint, "constraintScaleCompensate");
    disconnectInput(call.scene(), plug);  // the given value counts, not the joint's own
    call.scene().setNumber(plug, call.flag("scaleCompensate"));
}

// The rotation that the child has now is where later ones are measured from.
void setDecomposition(const CommandCall& call, NodeHandle constraint) {
    Scene& scene = call.scene();
    const Node* node = scene.node(constraint);
    if (call.has("decompRotationToChild") && !node->parents.empty())
        scene.setVec3(scene.findPlug(constraint, "rotationDecompositionTarget"),
                      channelsOf(scene, node->parents.front()).rotate);
}

}  // namespace

CommandTable constraintCommands() {
    return {kConstraintCommands, std::size(kConstraintCommands)};
}

Status refuseUncovered(const CommandCall& call) {
    for (const char* flag : {"createCache", "deleteCache", "layer"})
        if (call.has(flag))
            return call.fail(std::string("The flag '") + flag +
                             "' is not covered: there are no constraint caches " +
                             "and no animation layers.");
    return Status::ok();
}

unsigned skippedAxes(const CommandCall& call) {
    return axesOf(call, "skip") | axesOf(call, "skipTranslate") | (axesOf(call, "skipRotate") << 3);
}

bool givesSkips(const CommandCall& call) {
    return call.has("skip") || call.has("skipTranslate") || call.has("skipRotate");
}

Status applyConstraintFlags(const CommandCall& call, NodeHandle constraint) {
    Scene& scene = call.scene();
    for (const char* flag : kVectors) {
        const Plug plug = call.has(flag) ? scene.findPlug(constraint, flag) : Plug();
        for (int i = 0; i < 3 && !plug.isNull(); ++i) {
            const Plug axis = scene.child(plug, i);
            scene.setNumber(axis, call.number(flag, 0.0, static_cast<std::size_t>(i)) /
                                      uiScale(scene.info(axis)));
        }
    }
    setCompensation(call, constraint);
    setDecomposition(call, constraint);
    Status done = setUpType(call, constraint);
    return done ? setUpObject(call, constraint) : done;
}

bool queryConstraintFlags(const CommandCall& call, NodeHandle constraint, Value& result) {
    const Scene& scene = call.scene();
    for (const char* flag : kVectors) {
        if (!call.has(flag))
            continue;
        const Plug plug = scene.findPlug(constraint, flag);
        const V3d value = scene.vec3(plug) * uiScale(scene.info(scene.child(plug, 0)));
        result = Value::doubles({value.x, value.y, value.z});
        return true;
    }
    if (call.has("worldUpType")) {
        const int type = static_cast<int>(scene.number(scene.findPlug(constraint, "worldUpType")));
        result = Value(kUpTypes[type >= 0 && type <= kNoUp ? type : kVectorUp]);
    } else if (call.has("worldUpObject")) {
        const Plug source = scene.source(scene.findPlug(constraint, "worldUpMatrix"));
        result = source.isNull() ? Value() : Value(scene.names().shortest(source.node));
    } else if (call.has("scaleCompensate")) {
        result =
            Value(scene.number(scene.findPlug(constraint, "constraintScaleCompensate")) != 0.0);
    } else {
        return false;
    }
    return true;
}

}  // namespace torvel
