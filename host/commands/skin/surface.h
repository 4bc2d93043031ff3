#pragma once

#include <memory>
#include <vector>

#include "commands/geometry/box_tree.h"
#include "graph/data.h"
#include "graph/scene.h"
#include "nodes/deform/skin_weights.h"

namespace torvel {

/// A place on a surface as a mix of its points; the shares sum up to 1.
struct SurfaceMix {
    std::size_t point[3] = {0, 0, 0};
    double share[3] = {1.0, 0.0, 0.0};
};

/// The mesh that a skin shows, in world space as it stands now, with the weights of its points. The
/// weights belong to the cluster and are as long good as it does not change.
class SkinSurface {
  public:
    /// "'x' is no skin of a mesh" for anything else; faces that name points which do not exist are
    /// refused.
    static Status read(const Scene& scene, NodeHandle cluster, SkinSurface& out);

    const std::vector<V3d>& points() const { return m_points; }
    const MeshTopology& topology() const { return *m_topology; }
    const WeightList& weights() const { return *m_weights; }

    /// Builds what the questions below need: once before the first of them, on one thread.
    void prepare(bool faces);
    /// The nearest place of any face, faces taken as fans of triangles; the nearest point without
    /// faces.
    SurfaceMix nearestPlace(const V3d& at) const;
    SurfaceMix nearestPoint(const V3d& at) const;

  private:
    struct Triangle {
        std::size_t corner[3];
    };
    std::vector<V3d> m_points;
    std::shared_ptr<const MeshTopology> m_topology;
    const WeightList* m_weights = nullptr;
    std::vector<Triangle> m_triangles;
    BoxTree m_tree;
};

/// The point of a triangle nearest to `p`, and the shares of its corners there.
V3d closestOnTriangle(const V3d& p, const V3d& a, const V3d& b, const V3d& c, double (&share)[3]);

}  // namespace torvel
