#include "edit/bounds.h"

#include "edit/components.h"
#include "nodes/shape/nurbs_curve.h"
#include "nodes/shape/nurbs_curve_math.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

std::vector<V3d> pointsAround(const Scene& scene, NodeHandle shape, bool exactly) {
    const auto curve = exactly ? curveOf(scene, shape) : nullptr;
    return curve ? curvePolyline(*curve, 32) : shapePoints(scene, shape);
}

void extendByShape(const Scene& scene, NodeHandle shape, int instance, bool exactly, Box3d& box) {
    if (scene.number(Plug(shape, dagAttrs().intermediateObject)) != 0.0)
        return;
    const M44d world = worldMatrix(scene, shape, instance);
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

// A node met on the way down, and where in the list of the met ones stands the node it was met
// below.
struct Met {
    NodeHandle node;
    std::size_t above;
    bool shared;  ///< stands in several places
};
constexpr std::size_t kTop = static_cast<std::size_t>(-1);

// Number of the instance that hangs on the nodes it was met below.
int instanceOf(const Scene& scene, const std::vector<Met>& met, std::size_t at) {
    if (!met[at].shared)
        return 0;
    std::vector<NodeHandle> below;
    for (; met[at].above != kTop; at = met[at].above)
        below.push_back(met[at].node);
    std::vector<NodeHandle> path = scene.path(met[at].node);
    path.insert(path.end(), below.rbegin(), below.rend());
    return scene.instanceNumber(path);
}

}  // namespace

Box3d worldBounds(const Scene& scene, NodeHandle top, const BoxOptions& options) {
    Box3d box;
    std::vector<Met> met{{top, kTop, scene.instanceCount(top) > 1}};
    for (std::size_t i = 0; i < met.size(); ++i) {
        const NodeHandle at = met[i].node;
        const Node& node = *scene.node(at);
        if (options.visibleOnly && scene.number(Plug(at, dagAttrs().visibility)) == 0.0)
            continue;
        if (node.type->is(kShapeType))
            extendByShape(scene, at, instanceOf(scene, met, i), options.curvesExactly, box);
        else if (isJoint(scene, at))
            box.extendBy(worldPosition(scene, at, instanceOf(scene, met, i)));
        for (NodeHandle child : node.children)
            met.push_back({child, i, met[i].shared || scene.node(child)->parents.size() > 1});
    }
    if (box.isEmpty())
        box.extendBy(worldPosition(scene, top));
    return box;
}

}  // namespace torvel
