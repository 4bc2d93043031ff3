#include "nodes/transform/visibility.h"

#include <algorithm>

#include "nodes/node_table.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

struct Switches {
    AttrIndex lodVisibility, overrideEnabled, overrideVisibility;
};

const Switches& switches() {
    static const Switches attrs = [] {
        const auto& names = nodeTypes().find("dagNode")->byName;
        return Switches{names.at("lodVisibility"), names.at("overrideEnabled"),
                        names.at("overrideVisibility")};
    }();
    return attrs;
}

bool isOn(const Scene& scene, NodeHandle node) {
    const auto on = [&](AttrIndex attr) { return scene.number(Plug(node, attr)) != 0.0; };
    return on(dagAttrs().visibility) && on(switches().lodVisibility) &&
           !on(dagAttrs().intermediateObject) &&
           (!on(switches().overrideEnabled) || on(switches().overrideVisibility));
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
