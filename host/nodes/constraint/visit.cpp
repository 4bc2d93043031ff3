#include "nodes/constraint/visit.h"

#include "nodes/constraint/math.h"
#include "nodes/transform/transform.h"

namespace torvel {

bool isZero(const V3d& v) {
    return v.x == 0.0 && v.y == 0.0 && v.z == 0.0;
}

bool isFinite(const V3d& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

M44d turn(const V3d& angles, int order) {
    return isZero(angles) ? M44d() : eulerMatrix(angles, order);
}

// Rotation alone; the usual matrices of rigs are orthonormal already and pass as they are.
M44d pureRotation(const M44d& m) {
    constexpr double kClose = 1e-14;
    for (int i = 0; i < 3; ++i) {
        const int j = (i + 1) % 3;
        const double length = m[i][0] * m[i][0] + m[i][1] * m[i][1] + m[i][2] * m[i][2];
        const double skew = m[i][0] * m[j][0] + m[i][1] * m[j][1] + m[i][2] * m[j][2];
        if (!(std::fabs(length - 1.0) < kClose) || !(std::fabs(skew) < kClose))
            return rotationPart(m);
    }
    M44d out = linearPart(m);
    const double turned = out[0][0] * (out[1][1] * out[2][2] - out[1][2] * out[2][1]) -
                          out[0][1] * (out[1][0] * out[2][2] - out[1][2] * out[2][0]) +
                          out[0][2] * (out[1][0] * out[2][1] - out[1][1] * out[2][0]);
    return turned > 0.0 ? out : rotationPart(m);
}

// Product of two matrices without translation.
M44d product(const M44d& a, const M44d& b) {
    M44d out;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            out[i][j] = a[i][0] * b[0][j] + a[i][1] * b[1][j] + a[i][2] * b[2][j];
    return out;
}

V3d pointTimes(const V3d& p, const M44d& m) {
    return {p.x * m[0][0] + p.y * m[1][0] + p.z * m[2][0] + m[3][0],
            p.x * m[0][1] + p.y * m[1][1] + p.z * m[2][1] + m[3][1],
            p.x * m[0][2] + p.y * m[1][2] + p.z * m[2][2] + m[3][2]};
}

V3d directionTimes(const V3d& v, const M44d& m) {
    return {v.x * m[0][0] + v.y * m[1][0] + v.z * m[2][0],
            v.x * m[0][1] + v.y * m[1][1] + v.z * m[2][1],
            v.x * m[0][2] + v.y * m[1][2] + v.z * m[2][2]};
}

V3d overScale(const V3d& v, const V3d& scale) {
    V3d out;
    for (int i = 0; i < 3; ++i)
        out[i] = scale[i] != 0.0 ? v[i] / scale[i] : v[i];
    return out;
}

bool ConstraintVisit::anyWeight() {
    in.forEachElement([&](const InputPlace* e) {
        const double w = weightOf(e);
        sum += w;
        weighted += w > 0.0 ? 1 : 0;
    });
    return sum > 0.0;
}

void ConstraintVisit::put(AttrIndex output, const V3d& value) const {
    if (!isFinite(value))
        return;
    in.hold(output, value);
    markClean(output);
}

V3d ConstraintVisit::angles(const M44d& rotation, AttrIndex near) const {
    const V3d hint = in.held(near);
    return eulerFromMatrix(rotation, order(), isFinite(hint) ? &hint : nullptr);
}

void ConstraintVisit::remember(const V3d& angles) const {
    constexpr double kNoise = 1e-10;
    const V3d change = angles - in.held(a.last);
    if (isFinite(angles) && !(change.length2() < kNoise * kNoise))
        in.hold(a.last, angles);
}

void ConstraintVisit::rest(AttrIndex output, AttrIndex restValue) const {
    if (in.flag(a.erp) || !in.isHeld(output))
        put(output, in.vec3(restValue));
    markClean(output);
}

void ConstraintVisit::keep(AttrIndex output, AttrIndex restValue) const {
    if (!in.isHeld(output))
        put(output, in.vec3(restValue));
    markClean(output);
}

V3d ConstraintVisit::meanPivot() const {
    V3d mean(0.0);
    forEachTarget([&](const InputPlace* e, double share) {
        const V3d pivot = in.vec3In(e, a.t) + in.vec3In(e, a.rp) + in.vec3In(e, a.rpt);
        mean += pointTimes(pivot, in.matrixIn(e, a.pm)) * share;
    });
    return mean;
}

M44d ConstraintVisit::toChannels(const M44d& world) const {
    const M44d local = product(world, pureRotation(in.matrix(a.cpim)));
    const V3d orient = a.cjo != kNoAttr ? in.vec3(a.cjo) : V3d(0.0);
    return isZero(orient) ? local : timesInverse(local, eulerMatrix(orient));
}

void ConstraintVisit::markClean(AttrIndex output) const {
    Slot& slot = m_node.slot(output);
    if (!(slot.state & kComputing))
        slot.state |= kClean;
}

bool concernsConstraint(Evaluation& evaluation, const ConstraintAttrs& a) {
    const AttrIndex output = evaluation.output();
    if (output != kNoAttr && (output == a.outT || output == a.outR || output == a.outS))
        return true;
    evaluateTransform(evaluation);
    return false;
}

}  // namespace torvel
