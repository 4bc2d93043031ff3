#include "nodes/constraint/evaluate.h"

#include <cmath>

#include "nodes/constraint/math.h"
#include "nodes/constraint/visit.h"

namespace torvel {
namespace {

// Targets, weights, offsets and rest values mean what the public reference of the constraint nodes
// says; the sums behind them stand with each function here and in evaluate.h.

// --- rotations ---

// World rotation of a target, its own offset in front; all but the last factor also as a signed
// quaternion.
struct TargetTurn {
    V3d offset{0.0}, rotate, orient{0.0};
    int offsetOrder = kXYZ, order = kXYZ;
    M44d parent;  // what stands above the joint orient, orthonormal

    /// The rotate channels and the joint orient.
    M44d spin() const {
        const M44d m = turn(rotate, order);
        return isZero(orient) ? m : product(m, eulerMatrix(orient));
    }
    M44d matrix(const M44d& spun) const {
        const M44d m = product(spun, parent);
        return isZero(offset) ? m : product(eulerMatrix(offset, offsetOrder), m);
    }
    Quatd quaternion() const {
        const Quatd own =
            inTurn(quaternionOfAngles(offset, offsetOrder), quaternionOfAngles(rotate, order));
        return inTurn(inTurn(own, quaternionOfAngles(orient, kXYZ)), quaternionOfMatrix(parent));
    }
};

TargetTurn orientTarget(const ConstraintVisit& c, const InputPlace* e) {
    TargetTurn t;
    t.rotate = c.in.vec3In(e, c.a.r);
    t.order = static_cast<int>(c.in.numberIn(e, c.a.ro));
    t.orient = c.in.vec3In(e, c.a.jo);
    t.parent = pureRotation(c.in.matrixIn(e, c.a.pm));
    return t;
}

bool compensated(const ConstraintVisit& c, const InputPlace* e, V3d& inverseScale) {
    if (c.in.numberIn(e, c.a.ssc) == 0.0)
        return false;
    inverseScale = c.in.vec3In(e, c.a.is);
    return inverseScale != V3d(1.0);
}

// Columns over the parent joint's scale, then what is above.
M44d aboveJoint(const ConstraintVisit& c, const InputPlace* e) {
    const M44d& above = c.in.matrixIn(e, c.a.pm);
    V3d inverseScale;
    if (!compensated(c, e, inverseScale))
        return above;
    M44d out = above;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            out[i][j] = inverseScale[i] != 0.0 ? above[i][j] / inverseScale[i] : above[i][j];
    return out;
}

TargetTurn parentTarget(const ConstraintVisit& c, const InputPlace* e, const M44d& above) {
    TargetTurn t;
    t.rotate = c.in.vec3In(e, c.a.r);
    t.order = static_cast<int>(c.in.numberIn(e, c.a.ro));
    t.orient = c.in.vec3In(e, c.a.jo);
    t.offset = c.in.vec3In(e, c.a.tor);
    t.offsetOrder = c.order();
    t.parent = pureRotation(above);
    return t;
}

/// Mean of several targets in channel space: `turnOf(element)` gives each one.
template <class TurnOf>
M44d meanTurn(const ConstraintVisit& c, TurnOf&& turnOf) {
    // All quaternions get one common factor at the end: into channel space.
    const Quatd into = quaternionOfMatrix(c.toChannels(M44d()));
    RotationMean mean(c.in.integer(c.a.interp), quaternionOfAngles(c.in.held(c.a.last), c.order()));
    c.forEachTarget([&](const InputPlace* e, double share) {
        mean.add(inTurn(turnOf(e).quaternion(), into), share);
    });
    return matrixOfQuaternion(mean.result());
}

// --- parent ---

// Where a target carries the object's pivot: the offset in the target's own space, about its rotate
// pivot.
V3d carriedPoint(const ConstraintVisit& c, const InputPlace* e, const M44d& spun) {
    const V3d place = c.in.vec3In(e, c.a.t) + c.in.vec3In(e, c.a.rp) + c.in.vec3In(e, c.a.rpt);
    const M44d& above = c.in.matrixIn(e, c.a.pm);
    const V3d offset = c.in.vec3In(e, c.a.tot);
    if (isZero(offset))
        return pointTimes(place, above);
    V3d local = directionTimes(offset * c.in.vec3In(e, c.a.s), spun);
    V3d inverseScale;
    if (compensated(c, e, inverseScale))
        local = overScale(local, inverseScale);
    return pointTimes(local + place, above);
}

}  // namespace

void evaluateParentConstraint(Evaluation& evaluation) {
    const ConstraintAttrs& attrs = kParentAttrs;
    if (!concernsConstraint(evaluation, attrs))
        return;
    ConstraintVisit c(evaluation, attrs);
    if (!c.anyWeight()) {
        c.rest(attrs.outT, attrs.restT);
        c.rest(attrs.outR, attrs.restR);
        return;
    }
    const auto turnOf = [&](const InputPlace* e) { return parentTarget(c, e, aboveJoint(c, e)); };
    V3d point(0.0);
    M44d rotation;
    c.forEachTarget([&](const InputPlace* e, double share) {
        const TargetTurn turn = turnOf(e);
        const M44d spun = turn.spin();
        point += carriedPoint(c, e, spun) * share;
        if (c.weighted == 1)
            rotation = c.toChannels(turn.matrix(spun));
    });
    if (c.weighted > 1)
        rotation = meanTurn(c, turnOf);
    c.put(attrs.outT, pointTimes(point, c.in.matrix(attrs.cpim)) - c.ownPivot());
    const V3d angles = c.angles(rotation, attrs.restR);
    c.remember(c.followsLast() ? c.angles(rotation, attrs.last) : angles);
    c.put(attrs.outR, angles);
}

void evaluatePointConstraint(Evaluation& evaluation) {
    const ConstraintAttrs& attrs = kPointAttrs;
    if (!concernsConstraint(evaluation, attrs))
        return;
    ConstraintVisit c(evaluation, attrs);
    if (!c.anyWeight())
        return c.rest(attrs.outT, attrs.restT);
    const V3d offset = c.in.vec3(attrs.offset) * (c.in.flag(attrs.polarity) ? -1.0 : 1.0);
    c.put(attrs.outT, pointTimes(c.meanPivot(), c.in.matrix(attrs.cpim)) + offset - c.ownPivot());
}

void evaluateOrientConstraint(Evaluation& evaluation) {
    const ConstraintAttrs& attrs = kOrientAttrs;
    if (!concernsConstraint(evaluation, attrs))
        return;
    ConstraintVisit c(evaluation, attrs);
    if (!c.anyWeight())
        return c.rest(attrs.outR, attrs.restR);
    const auto turnOf = [&](const InputPlace* e) { return orientTarget(c, e); };
    M44d mean;
    if (c.weighted > 1)
        mean = meanTurn(c, turnOf);
    else
        c.forEachTarget([&](const InputPlace* e, double) {
            const TargetTurn turn = turnOf(e);
            mean = c.toChannels(turn.matrix(turn.spin()));
        });
    const V3d last = c.angles(mean, attrs.restR), offset = c.in.vec3(attrs.offset);
    c.remember(c.followsLast() ? c.angles(mean, attrs.last) : last);
    if (isZero(offset))
        c.put(attrs.outR, last);
    else
        c.putAngles(attrs.outR, product(eulerMatrix(offset, c.order()), mean));
}

void evaluateScaleConstraint(Evaluation& evaluation) {
    const ConstraintAttrs& attrs = kScaleAttrs;
    if (!concernsConstraint(evaluation, attrs))
        return;
    ConstraintVisit c(evaluation, attrs);
    if (!c.anyWeight())
        return c.rest(attrs.outS, attrs.restS);
    V3d mean(1.0), first(0.0);
    c.forEachTarget([&](const InputPlace* e, double share) {
        const V3d world = c.in.vec3In(e, attrs.s) * decompose(c.in.matrixIn(e, attrs.pm)).scale;
        if (isZero(first))
            first = world;
        for (int i = 0; i < 3; ++i)
            mean[i] *= c.weighted == 1 ? std::fabs(world[i]) : std::pow(std::fabs(world[i]), share);
    });
    for (int i = 0; i < 3; ++i)
        mean[i] = std::copysign(mean[i], first[i]);  // mirroring is the first target's business
    if (!c.in.flag(attrs.compensate))
        mean = overScale(mean, decompose(inverseOf(c.in.matrix(attrs.cpim))).scale);
    c.put(attrs.outS, mean * c.in.vec3(attrs.offset));
}

void evaluatePoleVectorConstraint(Evaluation& evaluation) {
    const ConstraintAttrs& attrs = kPoleVectorAttrs;
    if (!concernsConstraint(evaluation, attrs))
        return;
    ConstraintVisit c(evaluation, attrs);
    if (!c.anyWeight())
        return c.rest(attrs.outT, attrs.restT);
    const V3d root = pointTimes(c.in.vec3(attrs.crp), c.in.matrix(attrs.pivotSpace));
    const V3d pole = directionTimes(c.meanPivot() - root, c.in.matrix(attrs.cpim));
    c.put(attrs.outT, pole + c.in.vec3(attrs.offset));
}

}  // namespace torvel
