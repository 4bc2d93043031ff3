#include "nodes/constraint/inputs.h"

#include "graph/evaluator.h"
#include "graph/payload.h"

namespace torvel {
namespace {

const M44d kIdentity;

double storedIn(const Slot* slot, const AttrInfo& info) {
    return slot && (slot->state & kSet) ? slot->number : info.defaultValue;
}

// Slots are made here where there are none yet, so that a value given later is seen.
InputPlace placeOf(Scene& scene, const Plug& plug) {
    const Plug from = Evaluator::resolve(scene, plug);
    return {scene.slotFor(from), scene.info(from).defaultValue};
}

bool isBelow(const Node& node, AttrIndex attr, AttrIndex above) {
    while (attr != kNoAttr && attr != above)
        attr = node.type->attrs[attr].parent;
    return attr == above;
}

class PlanMaker {
  public:
    PlanMaker(Scene& scene, Node& node, AttrIndex targets)
        : m_scene(scene), m_node(node), m_targets(targets) {}

    std::unique_ptr<ConstraintPlan> make() {
        const AttrIndex end = static_cast<AttrIndex>(m_node.type->attrs.size());
        AttrIndex endInside = m_targets + 1;  // the children follow their array
        while (endInside < end && isBelow(m_node, endInside, m_targets))
            ++endInside;
        auto plan = std::make_unique<ConstraintPlan>();
        plan->first = static_cast<AttrIndex>(m_scene.types().find("transform")->attrs.size());
        plan->firstInside = m_targets;
        plan->own = places(plan->first, end, -1);
        for (const std::int32_t element : m_scene.elementIndices(Plug(m_node.self, m_targets)))
            plan->elements.push_back(places(plan->firstInside, endInside, element));
        return plan;
    }

  private:
    std::vector<InputPlace> places(AttrIndex first, AttrIndex end, std::int32_t element) {
        std::vector<InputPlace> out(end - first);
        for (AttrIndex attr = first; attr < end; ++attr) {
            const AttrInfo& info = m_node.type->attrs[attr];
            const bool leaf = info.children.empty() && !info.is(kOutput) && attr != m_targets;
            if (leaf && isBelow(m_node, attr, m_targets) == (element >= 0))
                out[attr - first] = placeOf(m_scene, element >= 0 ? Plug(m_node.self, attr, element)
                                                                  : Plug(m_node.self, attr));
        }
        return out;
    }

    Scene& m_scene;
    Node& m_node;
    AttrIndex m_targets;
};

void fetch(const InputPlace& place) {
#if defined(__GNUC__)
    __builtin_prefetch(place.slot);
#else
    static_cast<void>(place);
#endif
}

std::size_t elementsOf(const Node& node, AttrIndex array) {
    const Slot* slot = node.peek(array);
    return slot && slot->array ? slot->array->elements.size() : 0;
}

}  // namespace

ConstraintInputs::ConstraintInputs(const Evaluation& evaluation, AttrIndex targets)
    : m_node(evaluation.node()) {
    Scene& scene = evaluation.scene();
    if (!m_node.plan)
        m_node.plan = std::make_unique<EvaluationPlan>();
    EvaluationPlan& plan = *m_node.plan;
    m_plan = static_cast<const ConstraintPlan*>(plan.own.get());
    // An element without connections comes in silently.
    if (!m_plan || m_plan->elements.size() != elementsOf(m_node, targets)) {
        plan.own = PlanMaker(scene, m_node, targets).make();
        m_plan = static_cast<const ConstraintPlan*>(plan.own.get());
    }
    // The inputs lie apart in memory: they are all fetched at once instead of one after the other.
    for (const InputPlace& place : m_plan->own)
        fetch(place);
    for (const std::vector<InputPlace>& element : m_plan->elements)
        for (const InputPlace& place : element)
            fetch(place);
}

const M44d& ConstraintInputs::matrixAt(const InputPlace& place) {
    const auto* held = place.slot ? payloadAs<MatrixData>(place.slot->data.get()) : nullptr;
    return held ? held->matrix : kIdentity;
}

V3d ConstraintInputs::held(AttrIndex vector) const {
    V3d out;
    for (int i = 0; i < 3; ++i) {
        const AttrIndex part = vector + 1 + static_cast<AttrIndex>(i);
        out[i] = storedIn(m_node.peek(part), m_node.type->attrs[part]);
    }
    return out;
}

bool ConstraintInputs::isHeld(AttrIndex vector) const {
    const Slot* slot = m_node.peek(vector + 1);
    return slot && (slot->state & kSet);
}

void ConstraintInputs::hold(AttrIndex vector, const V3d& value) const {
    for (int i = 0; i < 3; ++i) {
        Slot& slot = m_node.slot(vector + 1 + static_cast<AttrIndex>(i));
        slot.number = value[i];
        slot.state |= kSet;
    }
}

}  // namespace torvel
