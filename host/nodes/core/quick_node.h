#pragma once

#include "graph/evaluation.h"

/// What utility nodes read and write, without building a plug for each number: such nodes stand in
/// their hundreds on the way of every joint, so a visit must cost next to nothing.
namespace torvel {

/// The node an evaluate function works on. Inputs are up to date; numbers come in internal units
/// (radians, centimetres, frames). Positions are those of the node's own type, from its TypeAttrs:
/// nothing is checked here. Outputs are set without marking them clean: that of the call is marked
/// by the evaluator, and a function that sets others at once uses Evaluation::set for those. For
/// payloads, deeper arrays and other nodes' plugs see Evaluation, which says when to take which.
class QuickNode {
  public:
    explicit QuickNode(Evaluation& evaluation);

    /// A number or a child of a compound; not inside an array.
    double number(AttrIndex attr) const;
    bool flag(AttrIndex attr) const { return number(attr) != 0.0; }
    /// A whole number, halves away from zero (what an enum or int makes of a connected number).
    int whole(AttrIndex attr) const;
    /// The first three children of a compound.
    V3d vec3(AttrIndex compound) const;
    /// Valid until the next edit of the graph; the identity without a value.
    const M44d& matrix(AttrIndex attr) const;

    /// Elements of an array in ascending order of their indices.
    std::size_t count(AttrIndex array) const;
    std::int32_t logicalAt(AttrIndex array, std::size_t position) const;
    /// `leaf`: the array attribute itself, or a number below it with no further array between.
    double element(AttrIndex array, std::size_t position, AttrIndex leaf) const;
    const M44d& elementMatrix(AttrIndex array, std::size_t position, AttrIndex leaf) const;
    /// A number of the element with this index; `fallback` when there is none.
    double elementOr(AttrIndex array, std::int32_t logical, AttrIndex leaf, double fallback) const;
    /// What feeds the element with this index as a whole; null without it.
    Plug elementSource(AttrIndex array, std::int32_t logical) const;
    /// The number that a source gives.
    double numberFrom(const Plug& source) const;

    /// Outputs outside arrays; a float attribute keeps what a float can hold.
    void set(AttrIndex attr, double value);
    void set(AttrIndex compound, const V3d& value);
    void set(AttrIndex attr, const M44d& value) { m_evaluation.set(attr, value); }

  private:
    double linked(const Slot& slot) const { return numberFrom(slot.links->source); }
    double linkedChild(const Slot& slot, int number) const;
    V3d linkedVec3(const Slot& slot) const;
    const M44d& linkedMatrix(const Slot& slot) const;
    const ArrayStore* store(AttrIndex array) const;

    Evaluation& m_evaluation;
    const Scene& m_scene;
    Node& m_node;
};

}  // namespace torvel
