#include "edit/bounds.h"
#include "script/session.h"
#include "commands/selection/targets.h"
#include "edit/world_placing.h"

namespace torvel {
namespace {

const FlagRow kMoveFlags[] = {
    {"absolute", "a"},    {"localSpace", "ls"},  {"moveX", "x"},    {"moveXY", "xy"},
    {"moveXYZ", "xyz"},   {"moveXZ", "xz"},      {"moveY", "y"},    {"moveYZ", "yz"},
    {"moveZ", "z"},       {"objectSpace", "os"}, {"relative", "r"}, {"rotatePivotRelative", "rpr"},
    {"worldSpace", "ws"},
};
const FlagRow kRotateFlags[] = {
    {"absolute", "a"},
    {"centerPivot", "cp"},
    {"euler", "eu"},
    {"forceOrderXYZ", "fo"},
    {"objectCenterPivot", "ocp"},
    {"objectSpace", "os"},
    {"pivot", "p", "lll"},
    {"relative", "r"},
    {"rotateX", "x"},
    {"rotateXY", "xy"},
    {"rotateXYZ", "xyz"},
    {"rotateXZ", "xz"},
    {"rotateY", "y"},
    {"rotateYZ", "yz"},
    {"rotateZ", "z"},
    {"worldSpace", "ws"},
};
const FlagRow kScaleFlags[] = {
    {"absolute", "a"},     {"centerPivot", "cp"}, {"objectCenterPivot", "ocp"},
    {"objectSpace", "os"}, {"pivot", "p", "lll"}, {"relative", "r"},
    {"scaleX", "x"},       {"scaleXY", "xy"},     {"scaleXYZ", "xyz"},
    {"scaleXZ", "xz"},     {"scaleY", "y"},       {"scaleYZ", "yz"},
    {"scaleZ", "z"},       {"worldSpace", "ws"},
};

/// The numbers of a call and the axes they belong to.
struct Amount {
    V3d value{0.0};
    bool on[3] = {true, true, true};

    V3d over(const V3d& other) const {
        return {on[0] ? value.x : other.x, on[1] ? value.y : other.y, on[2] ? value.z : other.z};
    }
};

// "moveXZ": the flags name the axes; without one all three count. One number serves all asked axes.
Status amountOf(const CommandCall& call, const std::string& stem, double neutral, Amount& out) {
    static const char* const kAxes[] = {"X", "Y", "Z", "XY", "XZ", "YZ", "XYZ"};
    std::string axes;
    for (const char* name : kAxes)
        if (call.has(stem + name))
            axes += name;
    if (axes.empty())
        axes = "XYZ";
    const std::vector<double> numbers = numbersOfCall(call);
    std::size_t next = 0;
    out.value = V3d(neutral);
    std::size_t asked = 0;
    for (int i = 0; i < 3; ++i)
        asked += (out.on[i] = axes.find(static_cast<char>('X' + i)) != std::string::npos) ? 1 : 0;
    if (numbers.size() != asked && numbers.size() != 1)
        return call.fail("Needs " + std::to_string(asked) + " numbers.");
    for (int i = 0; i < 3; ++i)
        if (out.on[i])
            out.value[i] = numbers[numbers.size() == 1 ? 0 : next++];
    return Status::ok();
}

bool pivotGiven(const CommandCall& call, const Target& target, V3d& pivot) {
    if (call.has("pivot")) {
        pivot = {call.number("pivot", 0.0, 0), call.number("pivot", 0.0, 1),
                 call.number("pivot", 0.0, 2)};
        return true;
    }
    if (call.has("centerPivot") || call.has("objectCenterPivot")) {
        pivot = worldBounds(call.scene(), target.node).center();
        return true;
    }
    pivot = worldRotatePivot(call.scene(), target.node);
    return false;
}

// Applies a change of world points to the points of a target.
template <class F>
Status changePoints(const CommandCall& call, const Target& target, F&& change) {
    const Scene& scene = call.scene();
    const std::vector<V3d> all = shapePoints(scene, target.points.shape);
    const M44d world = worldMatrix(scene, target.points.shape), back = inverseOf(world);
    std::vector<V3d> points;
    for (int index : target.points.points)
        points.push_back(change(all[static_cast<std::size_t>(index)] * world) * back);
    return movePoints(call.scene(), target.points, points);
}

Status refuseFixed(const CommandCall& call, NodeHandle node, const Channels& wanted) {
    ChannelPlan plan;
    const Status done = plan.plan(call.scene(), node, wanted);
    if (!done)
        return call.fail(done.text());
    plan.apply(call.scene());
    return Status::ok();
}

template <class ForNode, class ForPoints>
Status onTargets(const CommandCall& call, ForNode&& forNode, ForPoints&& forPoints) {
    std::vector<Target> targets;
    if (Status found = targetsOf(call, targets); !found)
        return found;
    for (const Target& target : targets) {
        const Status done = target.isPoints ? forPoints(target) : forNode(target);
        if (!done)
            return done;
    }
    return Status::ok();
}

// --- move ----------------------------------------------------------------------------------------

Status moveNode(const CommandCall& call, const Amount& amount, NodeHandle node) {
    const Scene& scene = call.scene();
    Channels c = channelsOf(scene, node);
    if (call.has("relative")) {
        if (call.has("objectSpace"))
            c.translate += amount.value * rotationPart(localMatrixOf(c));
        else if (call.has("localSpace"))
            c.translate += amount.value;
        else
            setWorldTranslation(scene, node, worldTranslation(scene, node) + amount.value, c);
    } else if (call.has("rotatePivotRelative")) {
        setWorldPivotPosition(scene, node, amount.over(worldRotatePivot(scene, node)), c);
    } else if (call.has("objectSpace") || call.has("localSpace")) {
        c.translate = amount.over(c.translate);
    } else {
        setWorldTranslation(scene, node, amount.over(worldTranslation(scene, node)), c);
    }
    return refuseFixed(call, node, c);
}

Status movePointsOf(const CommandCall& call, const Amount& amount, const Target& target) {
    const bool own = call.has("objectSpace") || call.has("localSpace"),
               relative = call.has("relative");
    const M44d world = worldMatrix(call.scene(), target.points.shape);
    return changePoints(call, target, [&](const V3d& point) {
        if (own) {
            const V3d local = point * inverseOf(world);
            return (relative ? local + amount.value : amount.over(local)) * world;
        }
        return relative ? point + amount.value : amount.over(point);
    });
}

Status move(const CommandCall& call, Value&) {
    Amount amount;
    if (Status read = amountOf(call, "move", 0.0, amount); !read)
        return read;
    return onTargets(
        call, [&](const Target& t) { return moveNode(call, amount, t.node); },
        [&](const Target& t) { return movePointsOf(call, amount, t); });
}

// --- rotate --------------------------------------------------------------------------------------

// World rotation of the node after the call.
M44d rotatedWorld(const CommandCall& call, const Amount& amount, const Channels& now,
                  const M44d& world) {
    const int order = call.has("forceOrderXYZ") ? static_cast<int>(kXYZ) : now.rotateOrder;
    if (call.has("relative"))
        return world * eulerMatrix(amount.value * kDegToRad, order);
    const V3d old = eulerFromMatrix(world, order);
    return eulerMatrix(amount.over(old * kRadToDeg) * kDegToRad, order);
}

Status rotateNode(const CommandCall& call, const Amount& amount, const Target& target) {
    const Scene& scene = call.scene();
    const NodeHandle node = target.node;
    const M44d before = worldRotation(scene, node);
    Channels c = channelsOf(scene, node);
    const bool relative = call.has("relative");
    if (relative && call.has("euler")) {
        c.rotate += amount.value * kDegToRad;
    } else if (call.has("objectSpace")) {
        const M44d own = eulerMatrix(amount.value * kDegToRad, c.rotateOrder);
        const V3d hint = c.rotate;
        c.rotate = relative ? eulerFromMatrix(own * eulerMatrix(c.rotate, c.rotateOrder),
                                              c.rotateOrder, &hint)
                            : amount.over(c.rotate * kRadToDeg) * kDegToRad;
    } else {
        setWorldRotation(scene, node, rotatedWorld(call, amount, c, before), c);
    }
    V3d pivot;
    if (pivotGiven(call, target, pivot)) {
        const M44d after =
            rotationPart(localMatrixOf(c)) * rotationPart(parentWorldMatrix(scene, node));
        const V3d arm = worldRotatePivot(scene, node) - pivot;
        setWorldPivotPosition(scene, node, pivot + arm * (inverseOf(before) * after), c);
    }
    return refuseFixed(call, node, c);
}

// Points have no rotation of their own: every call turns them.
Status rotatePointsOf(const CommandCall& call, const Amount& amount, const Target& target) {
    V3d pivot;
    pivotGiven(call, target, pivot);
    M44d turn = eulerMatrix(amount.value * kDegToRad);
    if (call.has("objectSpace")) {
        const M44d axes = worldRotation(call.scene(), target.node);
        turn = inverseOf(axes) * turn * axes;
    }
    return changePoints(call, target,
                        [&](const V3d& point) { return pivot + (point - pivot) * turn; });
}

Status rotate(const CommandCall& call, Value&) {
    Amount amount;
    if (Status read = amountOf(call, "rotate", 0.0, amount); !read)
        return read;
    return onTargets(
        call, [&](const Target& t) { return rotateNode(call, amount, t); },
        [&](const Target& t) { return rotatePointsOf(call, amount, t); });
}

// --- scale ---------------------------------------------------------------------------------------

Status scaleNode(const CommandCall& call, const Amount& amount, const Target& target) {
    const Scene& scene = call.scene();
    Channels c = channelsOf(scene, target.node);
    const V3d before = c.scale;
    c.scale = call.has("relative") ? c.scale * amount.value : amount.over(c.scale);
    V3d pivot;
    if (pivotGiven(call, target, pivot)) {
        const M44d axes = worldRotation(scene, target.node);
        V3d factor(1.0);
        for (int i = 0; i < 3; ++i)
            factor[i] = before[i] != 0.0 ? c.scale[i] / before[i] : 1.0;
        const V3d arm = worldRotatePivot(scene, target.node) - pivot;
        setWorldPivotPosition(scene, target.node,
                              pivot + arm * (inverseOf(axes) * scaleMatrix(factor) * axes), c);
    }
    return refuseFixed(call, target.node, c);
}

Status scalePointsOf(const CommandCall& call, const Amount& amount, const Target& target) {
    V3d pivot;
    pivotGiven(call, target, pivot);
    M44d stretch = scaleMatrix(amount.value);
    if (!call.has("worldSpace")) {
        const M44d axes = worldRotation(call.scene(), target.node);
        stretch = inverseOf(axes) * stretch * axes;
    }
    return changePoints(call, target,
                        [&](const V3d& point) { return pivot + (point - pivot) * stretch; });
}

Status scale(const CommandCall& call, Value&) {
    Amount amount;
    if (Status read = amountOf(call, "scale", 1.0, amount); !read)
        return read;
    return onTargets(
        call, [&](const Target& t) { return scaleNode(call, amount, t); },
        [&](const Target& t) { return scalePointsOf(call, amount, t); });
}

const Command kMoveCommands[] = {
    {"move", kMoveFlags, countOf(kMoveFlags), move, "Moves objects and points."},
    {"rotate", kRotateFlags, countOf(kRotateFlags), rotate, "Turns objects and points."},
    {"scale", kScaleFlags, countOf(kScaleFlags), scale, "Scales objects and points."},
};

}  // namespace

CommandTable moveCommands() {
    return {kMoveCommands, std::size(kMoveCommands)};
}

}  // namespace torvel
