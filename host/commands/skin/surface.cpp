#include "commands/skin/surface.h"

#include "commands/skin/binding.h"
#include "nodes/shape/mesh.h"

namespace torvel {

V3d closestOnTriangle(const V3d& p, const V3d& a, const V3d& b, const V3d& c, double (&share)[3]) {
    const V3d ab = b - a, ac = c - a, ap = p - a;
    const auto set = [&](double u, double v) {
        share[0] = 1.0 - u - v;
        share[1] = u;
        share[2] = v;
        return a + ab * u + ac * v;
    };
    const double d1 = ab ^ ap, d2 = ac ^ ap;
    if (d1 <= 0.0 && d2 <= 0.0)
        return set(0, 0);
    const V3d bp = p - b;
    const double d3 = ab ^ bp, d4 = ac ^ bp;
    if (d3 >= 0.0 && d4 <= d3)
        return set(1, 0);
    if (const double vc = d1 * d4 - d3 * d2; vc <= 0.0 && d1 >= 0.0 && d3 <= 0.0)
        return set(d1 / (d1 - d3), 0);
    const V3d cp = p - c;
    const double d5 = ab ^ cp, d6 = ac ^ cp;
    if (d6 >= 0.0 && d5 <= d6)
        return set(0, 1);
    if (const double vb = d5 * d2 - d1 * d6; vb <= 0.0 && d2 >= 0.0 && d6 <= 0.0)
        return set(0, d2 / (d2 - d6));
    if (const double va = d3 * d6 - d5 * d4; va <= 0.0 && d4 - d3 >= 0.0 && d5 - d6 >= 0.0) {
        const double t = (d4 - d3) / ((d4 - d3) + (d5 - d6));
        return set(1.0 - t, t);
    }
    const double va = d3 * d6 - d5 * d4, vb = d5 * d2 - d1 * d6, vc = d1 * d4 - d3 * d2;
    const double sum = va + vb + vc;
    return sum > 0.0 ? set(vb / sum, vc / sum) : set(0, 0);
}

Status SkinSurface::read(const Scene& scene, NodeHandle cluster, SkinSurface& out) {
    const std::vector<NodeHandle> shapes = outputShapes(scene, cluster);
    out.m_weights = weightsOf(scene, cluster);
    if (!out.m_weights || shapes.empty() || !scene.isType(shapes.front(), "mesh"))
        return Status::failure("'" + scene.names().shortest(cluster) + "' is no skin of a mesh");
    out.m_points = meshWorldPoints(scene, shapes.front());
    out.m_topology = meshPoints(scene, shapes.front())->topology;
    if (!out.m_topology)
        out.m_topology = std::make_shared<MeshTopology>();
    std::size_t corners = 0;
    for (std::int32_t count : out.m_topology->faceCounts)
        corners += count > 0 ? static_cast<std::size_t>(count) : 0;
    bool good = corners <= out.m_topology->faceVertices.size();
    for (std::int32_t vertex : out.m_topology->faceVertices)
        good = good && vertex >= 0 && static_cast<std::size_t>(vertex) < out.m_points.size();
    return good ? Status::ok()
                : Status::failure("the faces of '" + scene.names().shortest(shapes.front()) +
                                  "' are damaged");
}

void SkinSurface::prepare(bool faces) {
    m_triangles.clear();
    std::vector<Imath::Box3d> boxes;
    std::size_t at = 0;
    for (std::size_t f = 0; faces && f < m_topology->faceCounts.size(); ++f) {
        const std::int32_t* face = m_topology->faceVertices.data() + at;
        const std::int32_t count = m_topology->faceCounts[f];
        for (std::int32_t i = 1; i + 1 < count; ++i) {
            const Triangle triangle{{static_cast<std::size_t>(face[0]),
                                     static_cast<std::size_t>(face[i]),
                                     static_cast<std::size_t>(face[i + 1])}};
            Imath::Box3d box;
            for (std::size_t corner : triangle.corner)
                box.extendBy(m_points[corner]);
            m_triangles.push_back(triangle);
            boxes.push_back(box);
        }
        at += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    if (m_triangles.empty())
        for (const V3d& point : m_points)
            boxes.emplace_back(point);
    m_tree = BoxTree(boxes);
}

SurfaceMix SkinSurface::nearestPoint(const V3d& at) const {
    SurfaceMix mix;
    const std::size_t found =
        m_tree.nearest(at, [&](std::size_t i) { return (m_points[i] - at).length2(); });
    mix.point[0] = found == BoxTree::kNone ? 0 : found;
    return mix;
}

SurfaceMix SkinSurface::nearestPlace(const V3d& at) const {
    if (m_triangles.empty())
        return nearestPoint(at);
    const auto place = [&](std::size_t i, double(&share)[3]) {
        const Triangle& t = m_triangles[i];
        return closestOnTriangle(at, m_points[t.corner[0]], m_points[t.corner[1]],
                                 m_points[t.corner[2]], share);
    };
    SurfaceMix mix;
    const std::size_t found = m_tree.nearest(at, [&](std::size_t i) {
        double share[3];
        return (place(i, share) - at).length2();
    });
    place(found, mix.share);
    for (int c = 0; c < 3; ++c)
        mix.point[c] = m_triangles[found].corner[c];
    return mix;
}

}  // namespace torvel
