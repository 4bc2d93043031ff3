#pragma once

#include <vector>

#include "graph/evaluation.h"
#include "graph/evaluation_plan.h"

/// Reading a constraint's inputs while it is evaluated: straight from the slots where they stand,
/// which are looked up once for each structure of the scene.
namespace torvel {

/// Where the value of one input stands, at the end of its connections; a null slot means the
/// fallback.
struct InputPlace {
    const Slot* slot = nullptr;
    double fallback = 0.0;
};

/// The places of all attributes that a constraint has beyond those of a transform.
struct ConstraintPlan : NodePlan {
    AttrIndex first = 0;        ///< attribute of own[0]
    AttrIndex firstInside = 0;  ///< attribute of each element's [0]
    std::vector<InputPlace> own;
    std::vector<std::vector<InputPlace>> elements;  ///< of `target`
};

/// The inputs by the attribute positions of the node's own type. For a type whose visits are many
/// and whose structure seldom changes; each target costs a kept place for every child of `target`.
class ConstraintInputs {
  public:
    /// `targets`: the array attribute whose elements are read.
    ConstraintInputs(const Evaluation& evaluation, AttrIndex targets);

    // Of attributes outside arrays.
    double number(AttrIndex attr) const { return valueAt(own(attr)[0]); }
    V3d vec3(AttrIndex attr) const { return vec3At(own(attr)); }
    const M44d& matrix(AttrIndex attr) const { return matrixAt(own(attr)[0]); }
    bool flag(AttrIndex attr) const { return number(attr) != 0.0; }
    int integer(AttrIndex attr) const { return static_cast<int>(number(attr)); }

    // Of the children of an array's element.
    double numberIn(const InputPlace* element, AttrIndex attr) const {
        return valueAt(inside(element, attr)[0]);
    }
    V3d vec3In(const InputPlace* element, AttrIndex attr) const {
        return vec3At(inside(element, attr));
    }
    const M44d& matrixIn(const InputPlace* element, AttrIndex attr) const {
        return matrixAt(inside(element, attr)[0]);
    }

    /// Elements in ascending order: f(element).
    template <class F>
    void forEachElement(F&& f) const {
        for (const std::vector<InputPlace>& element : m_plan->elements)
            f(element.data());
    }

    // Values that the node itself keeps between two evaluations: read and written without telling
    // anybody.
    V3d held(AttrIndex vector) const;
    bool isHeld(AttrIndex vector) const;
    void hold(AttrIndex vector, const V3d& value) const;

  private:
    const InputPlace* own(AttrIndex attr) const {
        return m_plan->own.data() + (attr - m_plan->first);
    }
    const InputPlace* inside(const InputPlace* element, AttrIndex attr) const {
        return element + (attr - m_plan->firstInside);
    }
    static double valueAt(const InputPlace& place) {
        return place.slot && (place.slot->state & kSet) ? place.slot->number : place.fallback;
    }
    static V3d vec3At(const InputPlace* compound)  // the children follow their compound
    {
        return {valueAt(compound[1]), valueAt(compound[2]), valueAt(compound[3])};
    }
    static const M44d& matrixAt(const InputPlace& place);

    Node& m_node;
    const ConstraintPlan* m_plan;
};

}  // namespace torvel
