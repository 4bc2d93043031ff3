#pragma once

#include <cmath>

#include "nodes/constraint/inputs.h"
#include "nodes/transform/rotation.h"

/// What the evaluate functions of all constraints share.
namespace torvel {

/// Attribute positions of one constraint type; those that it has not are kNoAttr.
struct ConstraintAttrs {
    AttrIndex target, weight, t, rp, rpt, r, ro, jo, s, ssc, is, pm, tot, tor;
    AttrIndex cro, cpim, crp, crt, cjo, offset, polarity, erp, interp, last, restT, restR, restS,
        outT, outR, outS;
    AttrIndex compensate, pivotSpace, aim, up, worldUp, upMatrix, upType;
};
extern const ConstraintAttrs kParentAttrs, kPointAttrs, kOrientAttrs, kAimAttrs, kScaleAttrs,
    kPoleVectorAttrs;

bool isZero(const V3d& v);
bool isFinite(const V3d& v);
/// Rotation by angles, the identity for none.
M44d turn(const V3d& angles, int order = kXYZ);
/// Rotation alone, as rotationPart; quick for matrices without scale.
M44d pureRotation(const M44d& m);
/// Product of two matrices without translation.
M44d product(const M44d& a, const M44d& b);
V3d pointTimes(const V3d& p, const M44d& m);
V3d directionTimes(const V3d& v, const M44d& m);
/// Axis by axis; an axis of scale 0 stays as it is.
V3d overScale(const V3d& v, const V3d& scale);

/// One constraint under evaluation.
class ConstraintVisit {
  public:
    ConstraintVisit(Evaluation& evaluation, const ConstraintAttrs& attrs)
        : in(evaluation, attrs.target), a(attrs), m_node(evaluation.node()) {}

    /// Adds up the weights; false when there is none.
    bool anyWeight();
    double weightOf(const InputPlace* element) const {
        const double w = in.numberIn(element, a.weight);
        return w > 0.0 ? w : 0.0;  // what is no number counts as nothing, too
    }
    /// f(element, share of the weight, 0 to 1)
    template <class F>
    void forEachTarget(F&& f) const {
        in.forEachElement([&](const InputPlace* e) {
            if (const double w = weightOf(e); w > 0.0)
                f(e, w / sum);
        });
    }

    /// Writes an output; values that are no numbers leave it alone.
    void put(AttrIndex output, const V3d& value) const;
    /// Writes angles on the turn nearest to restRotate: they depend on the inputs alone, not on the
    /// way there.
    void putAngles(AttrIndex output, const M44d& rotation) const {
        put(output, angles(rotation, a.restR));
    }
    /// Angles of the rotation on the turn nearest to those kept in `near`.
    V3d angles(const M44d& rotation, AttrIndex near) const;
    /// No Flip goes on from the last rotation.
    bool followsLast() const { return weighted > 1 && in.integer(a.interp) == 0; }
    /// Keeps the last rotation of the targets for the next evaluation and the file; noise does not
    /// change it.
    void remember(const V3d& angles) const;
    /// Without any weight: the rest value, or the output as it stands.
    void rest(AttrIndex output, AttrIndex restValue) const;
    /// Nothing can be told: the output stays as it is.
    void keep(AttrIndex output, AttrIndex restValue) const;
    int order() const { return in.integer(a.cro); }

    /// Weighted mean of the targets' rotate pivots in the world.
    V3d meanPivot() const;
    V3d ownPivot() const { return in.vec3(a.crp) + in.vec3(a.crt); }
    /// World rotation to the space that the object's rotate channels turn in.
    M44d toChannels(const M44d& world) const;

    ConstraintInputs in;
    const ConstraintAttrs& a;
    double sum = 0.0;
    int weighted = 0;

  private:
    void markClean(AttrIndex output) const;

    Node& m_node;
};

/// True when a constraint's own output is asked for; the rest is done as for any transform.
bool concernsConstraint(Evaluation& evaluation, const ConstraintAttrs& attrs);

}  // namespace torvel
