#include "edit/channels.h"

namespace torvel {
namespace {

void collectLeaves(const Scene& scene, const Plug& plug, std::vector<Plug>& out) {
    const AttrInfo& info = scene.info(plug);
    if (isNumeric(info.type) && !scene.isArrayPlug(plug))
        out.push_back(plug);
    for (std::size_t i = 0; i < info.children.size() && !scene.isArrayPlug(plug); ++i)
        collectLeaves(scene, scene.child(plug, static_cast<int>(i)), out);
}

}  // namespace

std::vector<Plug> numericLeaves(const Scene& scene, const Plug& plug) {
    std::vector<Plug> leaves;
    collectLeaves(scene, plug, leaves);
    return leaves;
}

bool isKeyed(const Scene& scene, const Plug& plug) {
    const Plug source = scene.source(plug);
    return !source.isNull() && scene.isType(source.node, "animCurve");
}

}  // namespace torvel
