#pragma once

#include <vector>

#include "graph/scene.h"

namespace torvel {

/// Pull side of the graph: brings one plug up to date with an explicit stack, so that depth does not matter.
/// A cycle is told once; the value of the last evaluation is used where it closes.
class Evaluator
{
public:
    explicit Evaluator(Scene& scene) : m_scene(scene) {}

    void bringUpToDate(const Plug& plug);
    /// The plug whose stored value a read of `plug` delivers: the end of its chain of sources.
    static Plug resolve(const Scene& scene, const Plug& plug);

private:
    struct Step
    {
        NodeHandle node;
        AttrIndex output;
        bool expanded;
    };
    void push(const Plug& plug);
    void pushOutput(NodeHandle node, AttrIndex attr);
    void pushDependencies(Node& node, AttrIndex output);
    void pushLinked(Node& node, AttrIndex input);
    void finish(Node& node, AttrIndex output);
    void reportCycle(Node& node, AttrIndex output);

    Scene& m_scene;
    std::vector<Step> m_stack;
};

/// Root attribute of an output: the unit that is dirty or clean as a whole.
AttrIndex outputRoot(const Node& node, AttrIndex attr);

/// DAG attributes that the core ties to the parent's world matrix; all kNoAttr on other nodes.
struct WorldAttrs
{
    AttrIndex world = kNoAttr, worldInverse = kNoAttr, parent = kNoAttr, parentInverse = kNoAttr;
};
const WorldAttrs& worldAttrs(const NodeType& type);

}  // namespace torvel
