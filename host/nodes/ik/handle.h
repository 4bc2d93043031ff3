#pragma once

#include <vector>

#include "graph/scene.h"
#include "graph/writers.h"

/// ikHandle nodes: what they hang on and how they are solved. A handle is a writer of the graph: it
/// writes the rotates of its joints; what it shows stands in their plain numbers, so saving and
/// copying find it there.
namespace torvel {

class Evaluation;

enum class IkMethod { None, RotatePlane, SingleChain };

/// What a handle is tied to.
struct IkParts {
    NodeHandle start, effector, solver;
    IkMethod method =
        IkMethod::None;  ///< None: a solver that is kept as data only, or no solver at all
    std::vector<NodeHandle>
        path;  ///< from the start joint down to the effector's parent; empty: no chain
    std::vector<NodeHandle> joints;  ///< the joints of the path
};

IkParts ikPartsOf(const Scene& scene, NodeHandle handle);
/// The same into parts that are used again and again.
void findIkParts(const Scene& scene, NodeHandle handle, IkParts& parts);
/// The joint whose place the effector stands for: the one that feeds its translate; null when
/// nothing does.
NodeHandle ikEndJoint(const Scene& scene, NodeHandle effector);

/// Solves every handle that is due, so that the plain numbers of all joints are what they show (for
/// saving, copying).
void solveAllHandles(const Scene& scene);

/// Forgets what the joints remember of FK under a former handle.
void forgetFkRotates(Scene& scene, const std::vector<NodeHandle>& joints);

// Of the node type table.
void declareIkHandle(const Scene& scene, const Node& writer, WriterDeclaration& out);
void evaluateIkHandle(Evaluation& evaluation);

}  // namespace torvel
