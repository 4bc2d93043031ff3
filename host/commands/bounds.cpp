#include "commands/bounds.h"

#include "commands/components.h"
#include "nodes/transform.h"

namespace torvel {
namespace {

void extendByShape(const Scene& scene, NodeHandle shape, Box3d& box)
{
    if (scene.number(Plug(shape, dagAttrs().intermediateObject)) != 0.0)
        return;
    const M44d world = worldMatrix(scene, shape);
    for (const V3d& point : shapePoints(scene, shape))
        box.extendBy(point * world);
    if (!scene.isType(shape, "locator"))
        return;
    const V3d centre = scene.vec3(scene.findPlug(shape, "localPosition"));
    const V3d size = scene.vec3(scene.findPlug(shape, "localScale"));
    for (int corner = 0; corner < 8; ++corner) {
        const V3d sign(corner & 1 ? 1.0 : -1.0, corner & 2 ? 1.0 : -1.0, corner & 4 ? 1.0 : -1.0);
        box.extendBy((centre + size * sign) * world);
    }
}

}  // namespace

Box3d worldBounds(const Scene& scene, NodeHandle top)
{
    Box3d box;
    std::vector<NodeHandle> stack{top};
    while (!stack.empty()) {
        const NodeHandle at = stack.back();
        stack.pop_back();
        const Node& node = *scene.node(at);
        if (node.type->is(kShapeType))
            extendByShape(scene, at, box);
        else if (isJoint(scene, at))
            box.extendBy(worldPosition(scene, at));
        stack.insert(stack.end(), node.children.begin(), node.children.end());
    }
    if (box.isEmpty())
        box.extendBy(worldPosition(scene, top));
    return box;
}

}  // namespace torvel
