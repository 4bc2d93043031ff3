#include "commands/bounds.h"

#include "commands/components.h"
#include "nodes/nurbs_curve.h"
#include "nodes/nurbs_curve_math.h"
#include "nodes/transform.h"

namespace torvel {
namespace {

std::vector<V3d> pointsAround(const Scene& scene, NodeHandle shape, bool exactly)
{
    const auto curve = exactly ? curveOf(scene, shape) : nullptr;
    return curve ? curvePolyline(*curve, 32) : shapePoints(scene, shape);
}

void extendByShape(const Scene& scene, NodeHandle shape, bool exactly, Box3d& box)
{
    if (scene.number(Plug(shape, dagAttrs().intermediateObject)) != 0.0)
        return;
    const M44d world = worldMatrix(scene, shape);
    for (const V3d& point : pointsAround(scene, shape, exactly))
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

Box3d worldBounds(const Scene& scene, NodeHandle top, const BoxOptions& options)
{
    Box3d box;
    std::vector<NodeHandle> stack{top};
    while (!stack.empty()) {
        const NodeHandle at = stack.back();
        stack.pop_back();
        const Node& node = *scene.node(at);
        if (options.visibleOnly && scene.number(Plug(at, dagAttrs().visibility)) == 0.0)
            continue;
        if (node.type->is(kShapeType))
            extendByShape(scene, at, options.curvesExactly, box);
        else if (isJoint(scene, at))
            box.extendBy(worldPosition(scene, at));
        stack.insert(stack.end(), node.children.begin(), node.children.end());
    }
    if (box.isEmpty())
        box.extendBy(worldPosition(scene, top));
    return box;
}

}  // namespace torvel
