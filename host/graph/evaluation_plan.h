#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "graph/plug.h"

namespace torvel {

struct Slot;

/// What an evaluate function keeps about where its inputs stand.
struct NodePlan {
    virtual ~NodePlan() = default;
};

/// What the evaluator found out about a node's inputs. Holds for one structure number of the scene:
/// connections, hierarchy and attributes; values do not matter.
struct EvaluationPlan {
    /// An output that has to be clean before.
    struct Need {
        Slot* slot;
        NodeHandle node;
        AttrIndex output;
    };
    struct Output {
        AttrIndex output;
        std::vector<Need> needs;
    };
    std::uint64_t structure = 0;
    std::vector<Output> outputs;  ///< those evaluated so far
    std::unique_ptr<NodePlan> own;
};

}  // namespace torvel
