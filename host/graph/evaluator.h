#pragma once

#include <vector>

#include "graph/scene.h"
#include "graph/seen_plugs.h"

namespace torvel {

/// Pull side of the graph: brings one plug up to date with an explicit stack, so that depth does
/// not matter. A cycle is told once; the value of the last evaluation is used where it closes, and
/// what took it is evaluated once more with the new one: rings through parts that do not depend on
/// each other come out right.
class Evaluator {
  public:
    explicit Evaluator(Scene& scene) : m_scene(scene) {}

    void bringUpToDate(const Plug& plug);
    /// The plug whose stored value a read of `plug` delivers: the end of its chain of sources.
    static Plug resolve(const Connections& scene, const Plug& plug);

  private:
    struct Step {
        NodeHandle node;
        AttrIndex output;
        bool expanded;
    };
    void push(const Plug& plug);
    void pushPart(const Plug& plug);
    void pushOutput(NodeHandle node, AttrIndex attr);
    void pushDependencies(Node& node, AttrIndex output);
    const std::vector<EvaluationPlan::Need>& needsOf(Node& node, AttrIndex output);
    void gatherNeeds(Node& node, AttrIndex output);
    void pushLinked(Node& node, AttrIndex input);
    void pushWriters(const Node& node, AttrIndex attr);
    void pushWriterLinks(const Node& node, AttrIndex output);
    void finish(Node& node, AttrIndex output);
    void closeRing(const Step& met);
    void reportRing(const Step& met);
    void workOff();

    Scene& m_scene;
    std::vector<Step> m_stack;
    std::vector<std::size_t> m_expanded;  // places on the stack whose inputs are being worked off
    std::vector<Plug> m_parts;            // of compounds, still to be pushed
    SeenPlugs m_compounds;                // of one push
    std::vector<EvaluationPlan::Need>* m_gathered =
        nullptr;  // while a plan is made: instead of the stack
    std::vector<Plug>
        m_ringReaders;  // outputs that took a value of the last evaluation where a ring closes
};

/// Root attribute of an output: the unit that is dirty or clean as a whole.
AttrIndex outputRoot(const Node& node, AttrIndex attr);

/// Whether geometry of an unknown node goes in or out by the attribute (by its name).
bool isHandedOn(const Node& node, AttrIndex attr);

}  // namespace torvel
