#include "graph/evaluator.h"

#include <algorithm>

#include "graph/evaluation.h"
#include "graph/slot_walk.h"
#include "graph/writers.h"

namespace torvel {
namespace {

// Geometry that an unknown node hands on: the inputs it may come in by, in the order they are
// tried.
const char* const kGeometryInputs[] = {"ip", "ig", "inputPolymesh", "inMesh"};
const char* const kGeometryOutputs[] = {"og", "op", "output", "out", "outMesh"};

bool isOneOf(const std::string& name, const char* const* names, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        if (name == names[i])
            return true;
    return false;
}

// First connected geometry input of an unknown node; for several, the element of the output's own
// index.
Plug passThroughInput(const Connections& scene, const Plug& output) {
    const Node* node = scene.node(output.node);
    if (!node || !node->attr(output.attr).is(kOpaque) || node->unknownType.empty() ||
        !isOneOf(node->attr(output.attr).longName, kGeometryOutputs, std::size(kGeometryOutputs)))
        return {};
    for (const char* name : kGeometryInputs) {
        const AttrIndex attr = node->findAttr(name);
        if (attr == kNoAttr)
            continue;
        Plug first, same;
        walkSlot(const_cast<Node&>(*node), Plug(output.node, attr), nullptr,
                 [&](const Plug& plug, Slot& slot) {
                     if (!slot.links || slot.links->source.isNull())
                         return;
                     if (first.isNull())
                         first = plug;
                     if (same.isNull() && plug.index[0] == output.index[0])
                         same = plug;
                 });
        if (!first.isNull())
            return same.isNull() ? first : same;
    }
    return {};
}

}  // namespace

bool isHandedOn(const Node& node, AttrIndex attr) {
    const AttrInfo& info = node.attr(attr);
    return info.is(kOpaque) && !node.unknownType.empty() &&
           (isOneOf(info.longName, kGeometryOutputs, std::size(kGeometryOutputs)) ||
            isOneOf(info.longName, kGeometryInputs, std::size(kGeometryInputs)));
}

AttrIndex outputRoot(const Node& node, AttrIndex attr) {
    while (node.attr(attr).parent != kNoAttr && node.attr(node.attr(attr).parent).is(kOutput))
        attr = node.attr(attr).parent;
    return attr;
}

Plug Evaluator::resolve(const Connections& scene, const Plug& plug) {
    Plug at = plug, mark = plug;
    // A ring meets its mark again: Brent, "An improved Monte Carlo factorization algorithm", 1980.
    for (std::size_t hop = 1, nextMark = 1;; ++hop) {
        const Node* node = scene.node(at.node);
        if (!node || (node->writerLinks && node->writerLinks->find(at.attr)))
            return at;  // a writer's result stands before the value of a source
        Plug next = node->mayBeLinked(at.attr) ? scene.effectiveSource(at) : Plug();
        if (next.isNull() && !node->unknownType.empty())
            next = passThroughInput(scene, at);
        if (next.isNull())
            return at;
        at = next;
        if (at == mark)
            return plug;
        if (hop == nextMark) {
            mark = at;
            nextMark *= 2;
        }
    }
}

void Evaluator::pushOutput(NodeHandle handle, AttrIndex attr) {
    Node* node = m_scene.node(handle);
    if (!node)
        return;
    attr = outputRoot(*node, attr);
    if (m_gathered) {
        m_gathered->push_back({&node->slot(attr), handle, attr});
        return;
    }
    const Slot* slot = node->peek(attr);
    if (!slot || !(slot->state & kClean))
        m_stack.push_back({handle, attr, false});
}

// Queues what a read of this plug needs: the output at the end of its chain, or those of its
// children.
void Evaluator::push(const Plug& plug) {
    m_compounds.forget();
    pushPart(plug);
    while (!m_parts.empty()) {
        const Plug part = m_parts.back();
        m_parts.pop_back();
        pushPart(part);
    }
}

void Evaluator::pushPart(const Plug& plug) {
    const Plug from = resolve(m_scene, plug);
    const Node* node = m_scene.node(from.node);
    if (!node || from.attr >= node->attrCount())
        return;
    const AttrInfo& info = node->attr(from.attr);
    if (info.is(kOutput)) {
        pushOutput(from.node, from.attr);
        return;
    }
    if (node->writerLinks)
        pushWriters(*node, from.attr);
    if (!node->linkedInputs || info.children.empty() || m_scene.isArrayPlug(from) ||
        m_compounds.again(from))
        return;
    for (std::size_t i = info.children.size(); i-- > 0;)
        m_parts.push_back(m_scene.child(from, static_cast<int>(i)));
}

void Evaluator::pushLinked(Node& node, AttrIndex input) {
    for (AttrIndex above = node.attr(input).parent; above != kNoAttr;
         above = node.attr(above).parent)
        if (const Slot* slot = node.attr(above).arrayDepth == 0 ? node.peek(above) : nullptr;
            slot && slot->links && !slot->links->source.isNull())
            push(Plug(node.self, input));
    const AttrInfo& info = node.attr(input);
    if (info.arrayDepth > (info.isArray() ? 1 : 0))
        return;  // inside an array: listed through the array itself
    walkSlot(node, Plug(node.self, input), nullptr, [&](const Plug& plug, Slot& slot) {
        if (slot.links && !slot.links->source.isNull())
            push(plug);
    });
}

// What writes this attribute or a child of it.
void Evaluator::pushWriters(const Node& node, AttrIndex attr) {
    for (const WriterLinks::Written& w : node.writerLinks->written)
        if (w.attr == attr || node.attr(w.attr).parent == attr)
            pushOutput(w.writer.node, w.writer.attr);
}

void Evaluator::pushWriterLinks(const Node& node, AttrIndex output) {
    NodeHandle last;
    for (const WriterLinks::Written& w : node.writerLinks->written) {
        if (w.writer.node == last)
            continue;
        const std::vector<AttrIndex>& below = node.attr(node.rootOf(w.attr)).affects;
        if (std::find(below.begin(), below.end(), output) == below.end())
            continue;
        pushOutput(w.writer.node, w.writer.attr);
        last = w.writer.node;
    }
    if (output == node.writerLinks->output)
        for (const Plug& read : node.writerLinks->reads)
            push(read);
}

void Evaluator::pushDependencies(Node& node, AttrIndex output) {
    for (const EvaluationPlan::Need& need : needsOf(node, output))
        if (!(need.slot->state & kClean))
            m_stack.push_back({need.node, need.output, false});
}

const std::vector<EvaluationPlan::Need>& Evaluator::needsOf(Node& node, AttrIndex output) {
    if (!node.plan)
        node.plan = std::make_unique<EvaluationPlan>();
    EvaluationPlan& plan = *node.plan;
    if (plan.structure != m_scene.structure()) {
        plan.structure = m_scene.structure();
        plan.outputs.clear();
        plan.own.reset();
    }
    for (const EvaluationPlan::Output& known : plan.outputs)
        if (known.output == output)
            return known.needs;
    plan.outputs.push_back({output, {}});
    m_gathered = &plan.outputs.back().needs;
    gatherNeeds(node, output);
    m_gathered = nullptr;
    return plan.outputs.back().needs;
}

void Evaluator::gatherNeeds(Node& node, AttrIndex output) {
    const NodeHandle self = node.self;
    const WorldAttrs& world = node.type->world;
    const bool needsParent = output == world.world || output == world.worldInverse ||
                             output == world.parent || output == world.parentInverse;
    if (node.isDag() && needsParent && world.world != kNoAttr)
        for (NodeHandle parent : node.parents)
            if (const AttrIndex attr = m_scene.node(parent)->type->world.world; attr != kNoAttr)
                pushOutput(parent, attr);
    if (node.writerLinks)
        pushWriterLinks(node, output);
    for (AttrIndex input : node.attr(output).dependsOn) {
        if (node.attr(input).is(kOutput))
            pushOutput(self, input);
        else if (node.mayBeLinked(input))
            pushLinked(node, input);
    }
}

void Evaluator::finish(Node& node, AttrIndex output) {
    if (node.type->evaluate) {
        Evaluation evaluation(m_scene, node, output);
        node.type->evaluate(evaluation);
    }
    Slot& slot = node.slot(output);
    slot.state = (slot.state | kClean) & ~kComputing;
}

// One warning for each ring: all outputs in it count as told.
void Evaluator::reportRing(const Step& met) {
    for (std::size_t i = m_expanded.size(); i-- > 0;) {
        const Step& step = m_stack[m_expanded[i]];
        if (Node* node = m_scene.node(step.node))
            node->slot(step.output).state |= kReported;
        if (step.node == met.node && step.output == met.output)
            break;
    }
    m_scene.log().write(Channel::Warning, "Cycle on '" +
                                              m_scene.plugName(Plug(met.node, met.output)) +
                                              "' may not evaluate as expected.");
}

// An output met again on its own road: the value of the last evaluation stands in.
void Evaluator::closeRing(const Step& met) {
    if (!m_expanded.empty()) {
        const Step& reading = m_stack[m_expanded.back()];
        const Plug reader(reading.node, reading.output);
        if (m_ringReaders.empty() || m_ringReaders.back() != reader)
            m_ringReaders.push_back(reader);
    }
    if (!(m_scene.node(met.node)->slot(met.output).state & kReported))
        reportRing(met);
}

void Evaluator::bringUpToDate(const Plug& plug) {
    push(plug);
    workOff();
    if (m_ringReaders.empty())
        return;
    for (const Plug& reader : m_ringReaders)
        m_scene.outputChanged(reader);
    push(plug);
    workOff();
}

void Evaluator::workOff() {
    while (!m_stack.empty()) {
        const Step step = m_stack.back();
        Node* node = m_scene.node(step.node);
        if (!node) {
            if (step.expanded)
                m_expanded.pop_back();
            m_stack.pop_back();
            continue;
        }
        Slot& slot = node->slot(step.output);
        if (step.expanded) {
            m_stack.pop_back();
            m_expanded.pop_back();
            finish(*node, step.output);
        } else if (slot.state & kClean) {
            m_stack.pop_back();
        } else if (slot.state & kComputing) {
            m_stack.pop_back();
            closeRing(step);
        } else {
            slot.state |= kComputing;
            m_stack.back().expanded = true;
            m_expanded.push_back(m_stack.size() - 1);
            pushDependencies(*node, step.output);
        }
    }
}

void Values::evaluate(const Plug& plug) const {
    const Node* n = node(plug.node);
    if (!n || plug.attr >= n->attrCount())
        return;
    const bool plain = !n->attr(plug.attr).is(kOutput) && !n->linkedInputs &&
                       n->unknownType.empty() && !n->writerLinks;
    if (!plain || m_writersStale)
        bringUpToDate(plug);
}

void Scene::bringUpToDate(const Plug& plug) const {
    Scene& self = const_cast<Scene&>(*this);
    m_everEvaluated = true;
    if (m_writersStale)
        self.refreshWriters();
    Evaluator(self).bringUpToDate(plug);
}

}  // namespace torvel
