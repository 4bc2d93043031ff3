#include "nodes/constraint/evaluate.h"
#include "nodes/constraint/math.h"
#include "nodes/constraint/visit.h"

namespace torvel {
namespace {

V3d upDirection(const ConstraintVisit& c, int type, const V3d& own) {
    switch (type) {
        case kObjectUp: return translationOf(c.in.matrix(c.a.upMatrix)) - own;
        case kObjectRotationUp:
            return directionTimes(c.in.vec3(c.a.worldUp), rotationPart(c.in.matrix(c.a.upMatrix)));
        case kVectorUp: return c.in.vec3(c.a.worldUp);
        default: return {0.0, 1.0, 0.0};
    }
}

// Where the up axis points at the moment, by the rotation put out last.
V3d formerUp(const ConstraintVisit& c, const AimFrame& frame, const M44d& parent) {
    M44d m = turn(c.in.held(c.in.isHeld(c.a.outR) ? c.a.outR : c.a.restR), c.order());
    m = product(m, turn(c.in.vec3(c.a.cjo)));
    const V3d offset = c.in.vec3(c.a.offset);
    if (!isZero(offset))
        m = product(eulerMatrix(offset, c.order()).transposed(), m);
    return directionTimes(frame.upVector, product(m, pureRotation(parent)));
}

M44d aimed(const ConstraintVisit& c, const AimFrame& frame, const V3d& direction, const V3d& own,
           const M44d& parent) {
    const int type = c.in.integer(c.a.upType);
    if (type == kNoUp)
        return smallestRotation(frame.aimVector, direction);
    M44d rotation;
    if (aimRotation(frame, direction, upDirection(c, type, own), rotation) ||
        aimRotation(frame, direction, formerUp(c, frame, parent), rotation))
        return rotation;
    aimRotation(frame, direction, anySquareTo(direction), rotation);
    return rotation;
}

}  // namespace

void evaluateAimConstraint(Evaluation& evaluation) {
    const ConstraintAttrs& attrs = kAimAttrs;
    if (!concernsConstraint(evaluation, attrs) || evaluation.output() != attrs.outR)
        return;
    ConstraintVisit c(evaluation, attrs);
    if (!c.anyWeight())
        return c.rest(attrs.outR, attrs.restR);
    const M44d parent = inverseOf(c.in.matrix(attrs.cpim));
    const V3d own = pointTimes(c.in.vec3(attrs.outT) + c.ownPivot(), parent);
    const V3d direction = c.meanPivot() - own;
    const AimFrame frame{c.in.vec3(attrs.aim), c.in.vec3(attrs.up)};
    if (!(direction.length2() > 0.0) || !(frame.aimVector.length2() > 0.0))
        return c.keep(attrs.outR, attrs.restR);
    const M44d rotation = c.toChannels(aimed(c, frame, direction, own, parent));
    const V3d offset = c.in.vec3(attrs.offset);
    c.putAngles(attrs.outR,
                isZero(offset) ? rotation : product(eulerMatrix(offset, c.order()), rotation));
}

}  // namespace torvel
