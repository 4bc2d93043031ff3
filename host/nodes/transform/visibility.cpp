#include "nodes/transform/visibility.h"

#include <algorithm>

#include "nodes/core/base_attrs.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

constexpr AttrIndex kLodVisibility = kDagNode["lodVisibility"],
                    kOverrideEnabled = kDagNode["overrideEnabled"],
                    kOverrideVisibility = kDagNode["overrideVisibility"];

bool isOn(const Scene& scene, NodeHandle node) {
    const auto on = [&](AttrIndex attr) { return scene.number(Plug(node, attr)) != 0.0; };
    return on(dagAttrs().visibility) && on(kLodVisibility) && !on(dagAttrs().intermediateObject) &&
           (!on(kOverrideEnabled) || on(kOverrideVisibility));
}

}  // namespace

bool isShown(const Scene& scene, NodeHandle node) {
    const Node* self = scene.node(node);
    if (!self || !self->isDag())
        return false;
    while (self->self != scene.world()) {
        if (!isOn(scene, self->self))
            return false;
        if (self->parents.size() != 1)
            return std::any_of(self->parents.begin(), self->parents.end(),
                               [&](NodeHandle parent) { return isShown(scene, parent); });
        self = scene.node(self->parents.front());
    }
    return true;
}

}  // namespace torvel
