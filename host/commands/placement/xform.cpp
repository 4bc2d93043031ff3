#include "edit/bounds.h"
#include "script/session.h"
#include "commands/selection/targets.h"
#include "edit/world_placing.h"

namespace torvel {
namespace {

const FlagRow kXformFlags[] = {
    {"absolute", "a"},
    {"boundingBox", "bb"},
    {"centerPivots", "cp"},
    {"euler", "eu"},
    {"matrix", "m", "dddddddddddddddd"},
    {"objectSpace", "os"},
    {"pivots", "piv", "lll"},
    {"preserve", "p", "b"},
    {"relative", "r"},
    {"rotateAxis", "ra", "aaa"},
    {"rotateOrder", "roo", "s"},
    {"rotatePivot", "rp", "lll"},
    {"rotation", "ro", "aaa"},
    {"scale", "s", "ddd"},
    {"scalePivot", "sp", "lll"},
    {"shear", "sh", "ddd"},
    {"translation", "t", "lll"},
    {"worldSpace", "ws"},
    {"zeroTransformPivots", "ztp"},
};

V3d vectorOf(const CommandCall& call, const char* flag) {
    return {call.number(flag, 0.0, 0), call.number(flag, 0.0, 1), call.number(flag, 0.0, 2)};
}

Value listOf(const V3d& v) {
    return Value::doubles({v.x, v.y, v.z});
}

Value listOf(const M44d& m) {
    std::vector<double> numbers;
    for (int i = 0; i < 16; ++i)
        numbers.push_back(m[i / 4][i % 4]);
    return Value::doubles(numbers);
}

// --- query ---------------------------------------------------------------------------------------

Value boxValue(const CommandCall& call, NodeHandle node) {
    Box3d box = worldBounds(call.scene(), node);
    if (!call.has("worldSpace")) {
        const M44d toParent = inverseOf(parentWorldMatrix(call.scene(), node));
        Box3d local;
        for (int corner = 0; corner < 8; ++corner)
            local.extendBy(V3d(corner & 1 ? box.min.x : box.max.x,
                               corner & 2 ? box.min.y : box.max.y,
                               corner & 4 ? box.min.z : box.max.z) *
                           toParent);
        box = local;
    }
    return Value::doubles({box.min.x, box.min.y, box.min.z, box.max.x, box.max.y, box.max.z});
}

Value pivotsValue(const V3d& rotate, const V3d& scale) {
    return Value::doubles({rotate.x, rotate.y, rotate.z, scale.x, scale.y, scale.z});
}

V3d worldAngles(const Scene& scene, NodeHandle node, int order) {
    return eulerFromMatrix(worldRotation(scene, node), order) * kRadToDeg;
}

Status queryNode(const CommandCall& call, NodeHandle node, Value& result) {
    const Scene& scene = call.scene();
    const Channels c = channelsOf(scene, node);
    const bool world = call.has("worldSpace");
    if (call.has("translation"))
        result = listOf(world ? worldTranslation(scene, node) : c.translate);
    else if (call.has("rotation"))
        result = listOf(world ? worldAngles(scene, node, c.rotateOrder) : c.rotate * kRadToDeg);
    else if (call.has("scale"))
        result = listOf(world ? decompose(worldMatrix(scene, node)).scale : c.scale);
    else if (call.has("matrix"))
        result = listOf(world ? worldMatrix(scene, node) : localMatrix(scene, node));
    else if (call.has("rotatePivot"))
        result = listOf(world ? worldRotatePivot(scene, node) : c.rotatePivot);
    else if (call.has("scalePivot"))
        result = listOf(world ? worldScalePivot(scene, node) : c.scalePivot);
    else if (call.has("pivots"))
        result = world ? pivotsValue(worldRotatePivot(scene, node), worldScalePivot(scene, node))
                       : pivotsValue(c.rotatePivot, c.scalePivot);
    else if (call.has("shear"))
        result = listOf(c.shear);
    else if (call.has("rotateAxis"))
        result = listOf(c.rotateAxis * kRadToDeg);
    else if (call.has("rotateOrder"))
        result = Value(rotateOrderName(c.rotateOrder));
    else if (call.has("boundingBox"))
        result = boxValue(call, node);
    else
        return call.fail("Needs a flag that tells what to query.");
    return Status::ok();
}

// Positions of points; everything else is answered by their transform.
Status queryTargets(const CommandCall& call, const std::vector<Target>& targets, Value& result) {
    if (!targets.front().isPoints || !call.has("translation"))
        return queryNode(call, targets.front().node, result);
    std::vector<double> numbers;
    for (const Target& target : targets) {
        const std::vector<V3d> points = shapePoints(call.scene(), target.points.shape);
        const M44d matrix =
            call.has("worldSpace") ? worldMatrix(call.scene(), target.points.shape) : M44d();
        for (int index : target.points.points) {
            const V3d point = points[static_cast<std::size_t>(index)] * matrix;
            numbers.insert(numbers.end(), {point.x, point.y, point.z});
        }
    }
    result = Value::doubles(numbers);
    return Status::ok();
}

// --- set -----------------------------------------------------------------------------------------

void placePivots(const CommandCall& call, NodeHandle node, Channels& c) {
    const bool preserve = call.flag("preserve", true);
    const M44d toLocal = inverseOf(worldMatrix(call.scene(), node));
    const auto place = [&](const char* flag, bool rotate, bool scale) {
        if (!call.has(flag))
            return;
        const V3d given = vectorOf(call, flag);
        const V3d pivot = call.has("worldSpace") ? given * toLocal : given;
        if (rotate && preserve)
            moveRotatePivot(c, pivot);
        else if (rotate)
            c.rotatePivot = pivot;
        if (scale && preserve)
            moveScalePivot(c, pivot);
        else if (scale)
            c.scalePivot = pivot;
    };
    place("rotatePivot", true, false);
    place("scalePivot", false, true);
    place("pivots", true, true);
    if (call.has("centerPivots")) {
        const V3d centre = worldBounds(call.scene(), node).center() * toLocal;
        moveRotatePivot(c, centre);
        moveScalePivot(c, centre);
    }
    if (call.has("zeroTransformPivots"))
        c.rotatePivot = c.scalePivot = c.rotatePivotTranslate = c.scalePivotTranslate = V3d(0.0);
}

void turn(const CommandCall& call, NodeHandle node, Channels& c) {
    const V3d angles = vectorOf(call, "rotation") * kDegToRad;
    const bool relative = call.has("relative");
    if (!call.has("worldSpace"))
        c.rotate = relative ? c.rotate + angles : angles;
    else if (relative)
        setWorldRotation(call.scene(), node,
                         worldRotation(call.scene(), node) * eulerMatrix(angles, c.rotateOrder), c);
    else
        setWorldRotation(call.scene(), node, eulerMatrix(angles, c.rotateOrder), c);
}

void shift(const CommandCall& call, NodeHandle node, Channels& c) {
    const V3d offset = vectorOf(call, "translation");
    const bool relative = call.has("relative");
    if (call.has("worldSpace"))
        setWorldTranslation(call.scene(), node,
                            relative ? worldTranslation(call.scene(), node) + offset : offset, c);
    else
        c.translate = relative ? c.translate + offset : offset;
}

void resize(const CommandCall& call, Channels& c) {
    const V3d scale = vectorOf(call, "scale");
    c.scale = call.has("relative") ? c.scale * scale : scale;
}

void placeByMatrix(const CommandCall& call, NodeHandle node, Channels& c) {
    M44d matrix;
    for (int i = 0; i < 16; ++i)
        matrix[i / 4][i % 4] = call.number("matrix", 0.0, static_cast<std::size_t>(i));
    if (call.has("worldSpace")) {
        setWorldMatrixChannels(
            call.scene(), node,
            call.has("relative") ? worldMatrix(call.scene(), node) * matrix : matrix, c);
        return;
    }
    channelsForLocalByRotate(c, call.has("relative") ? localMatrixOf(c) * matrix : matrix);
}

Status editNode(const CommandCall& call, NodeHandle node) {
    Channels c = channelsOf(call.scene(), node);
    if (call.has("rotateOrder")) {
        const int order = rotateOrderOf(call.text("rotateOrder"));
        if (order < 0)
            return call.fail("'" + call.text("rotateOrder") + "' is no rotate order.");
        changeRotateOrder(c, order, call.flag("preserve"));
    }
    if (call.has("rotateAxis"))
        c.rotateAxis = vectorOf(call, "rotateAxis") * kDegToRad;
    if (call.has("shear"))
        c.shear = vectorOf(call, "shear");
    placePivots(call, node, c);
    if (call.has("matrix"))
        placeByMatrix(call, node, c);
    if (call.has("scale"))
        resize(call, c);
    if (call.has("rotation"))
        turn(call, node, c);
    if (call.has("translation"))
        shift(call, node, c);
    writeFreeChannels(call.scene(), node, c);
    return Status::ok();
}

Status editPoints(const CommandCall& call, const PointSet& set) {
    if (!call.has("translation"))
        return call.fail("Points take translations only.");
    const Scene& scene = call.scene();
    const std::vector<V3d> all = shapePoints(scene, set.shape);
    const M44d world = call.has("worldSpace") ? worldMatrix(scene, set.shape) : M44d();
    const V3d value = vectorOf(call, "translation");
    std::vector<V3d> points;
    for (int index : set.points) {
        const V3d now = all[static_cast<std::size_t>(index)] * world;
        points.push_back((call.has("relative") ? now + value : value) * inverseOf(world));
    }
    return movePoints(call.scene(), set, points);
}

Status xform(const CommandCall& call, Value& result) {
    std::vector<Target> targets;
    if (Status found = targetsOf(call, targets); !found)
        return found;
    if (call.isQuery())
        return queryTargets(call, targets, result);
    for (const Target& target : targets)
        if (Status done =
                target.isPoints ? editPoints(call, target.points) : editNode(call, target.node);
            !done)
            return done;
    return Status::ok();
}

const Command kTransformCommands[] = {
    {"xform", kXformFlags, countOf(kXformFlags), xform, "Placement of objects in any space."}};

}  // namespace

CommandTable transformCommands() {
    return {kTransformCommands, std::size(kTransformCommands)};
}

}  // namespace torvel
