#include "nodes/shape/poly_shapes.h"

#include <algorithm>
#include <cmath>

namespace torvel {
namespace {

class MeshBuilder {
  public:
    explicit MeshBuilder(const V3d& axis) {
        if (axis.length() > 1e-12)
            m_turn.setRotation(V3d(0, 1, 0), axis.normalized());
    }
    int point(double x, double y, double z) {
        m_mesh.points.push_back(V3f(V3d(x, y, z) * m_turn.toMatrix44()));
        return static_cast<int>(m_mesh.points.size()) - 1;
    }
    void face(std::initializer_list<int> vertices) { face(std::vector<std::int32_t>(vertices)); }
    void face(const std::vector<std::int32_t>& vertices) {
        m_topology->faceCounts.push_back(static_cast<std::int32_t>(vertices.size()));
        m_topology->faceVertices.insert(m_topology->faceVertices.end(), vertices.begin(),
                                        vertices.end());
    }
    int pointCount() const { return static_cast<int>(m_mesh.points.size()); }
    MeshData take() {
        m_mesh.topology = m_topology;
        return std::move(m_mesh);
    }

  private:
    Quatd m_turn;
    MeshData m_mesh;
    std::shared_ptr<MeshTopology> m_topology = std::make_shared<MeshTopology>();
};

// A box is a belt of rows of points around the x axis (front, top, back, bottom) with two side
// walls.
class BoxBuilder {
  public:
    BoxBuilder(const V3d& size, int w, int h, int d, const V3d& axis)
        : m_build(axis), m_size(size), m_w(w), m_h(h), m_d(d) {}

    MeshData run() {
        beltPoints();
        beltFaces();
        wall(m_w, true);
        wall(0, false);
        return m_build.take();
    }

  private:
    int beltRows() const { return 2 * (m_h + m_d); }

    void row(double y, double z) {
        for (int i = 0; i <= m_w; ++i)
            m_build.point((static_cast<double>(i) / m_w - 0.5) * m_size.x, y * m_size.y,
                          z * m_size.z);
    }

    void beltPoints() {
        for (int j = 0; j < m_h; ++j)
            row(static_cast<double>(j) / m_h - 0.5, 0.5);
        for (int k = 0; k < m_d; ++k)
            row(0.5, 0.5 - static_cast<double>(k) / m_d);
        for (int j = 0; j < m_h; ++j)
            row(0.5 - static_cast<double>(j) / m_h, -0.5);
        for (int k = 0; k < m_d; ++k)
            row(-0.5, static_cast<double>(k) / m_d - 0.5);
    }

    int belt(int rowNumber, int column) const {
        return (rowNumber % beltRows()) * (m_w + 1) + column;
    }

    void beltFaces() {
        for (int r = 0; r < beltRows(); ++r)
            for (int i = 0; i < m_w; ++i)
                m_build.face({belt(r, i), belt(r, i + 1), belt(r + 1, i + 1), belt(r + 1, i)});
    }

    // Point of a side wall at height j, depth k (0 at the front): on the rim it is one of the belt.
    int wallPoint(int column, int inner, int j, int k) const {
        if (k == 0)
            return belt(j, column);
        if (j == m_h)
            return belt(m_h + k, column);
        if (k == m_d)
            return belt(m_h + m_d + (m_h - j), column);
        if (j == 0)
            return belt(2 * m_h + m_d + (m_d - k), column);
        return inner + (j - 1) * (m_d - 1) + (k - 1);
    }

    void wall(int column, bool right) {
        const int inner = m_build.pointCount();
        for (int j = 1; j < m_h; ++j)
            for (int k = 1; k < m_d; ++k)
                m_build.point(right ? 0.5 * m_size.x : -0.5 * m_size.x,
                              (static_cast<double>(j) / m_h - 0.5) * m_size.y,
                              (0.5 - static_cast<double>(k) / m_d) * m_size.z);
        for (int j = 0; j < m_h; ++j)
            for (int k = 0; k < m_d; ++k) {
                const int a = wallPoint(column, inner, j, k),
                          b = wallPoint(column, inner, j, k + 1);
                const int c = wallPoint(column, inner, j + 1, k + 1),
                          d = wallPoint(column, inner, j + 1, k);
                if (right)
                    m_build.face({a, b, c, d});
                else
                    m_build.face({b, a, d, c});
            }
    }

    MeshBuilder m_build;
    V3d m_size;
    int m_w, m_h, m_d;
};

class CylinderBuilder {
  public:
    CylinderBuilder(double radius, double height, int around, int rows, int caps, const V3d& axis)
        : m_build(axis),
          m_radius(radius),
          m_height(height),
          m_around(around),
          m_rows(rows),
          m_caps(caps) {}

    MeshData run() {
        for (int c = 1; c < m_caps; ++c)
            ring(-0.5, static_cast<double>(c) / m_caps);
        for (int j = 0; j <= m_rows; ++j)
            ring(static_cast<double>(j) / m_rows - 0.5, 1.0);
        for (int c = m_caps - 1; c > 0; --c)
            ring(0.5, static_cast<double>(c) / m_caps);
        const int rings = m_build.pointCount() / m_around;
        for (int r = 0; r + 1 < rings; ++r)
            band(r);
        cap(0, false);
        cap(rings - 1, true);
        return m_build.take();
    }

  private:
    void ring(double y, double part) {
        for (int i = 0; i < m_around; ++i) {
            const double angle = 2.0 * kPi * i / m_around;
            m_build.point(m_radius * part * std::cos(angle), y * m_height,
                          -m_radius * part * std::sin(angle));
        }
    }
    int at(int ringNumber, int i) const { return ringNumber * m_around + (i % m_around); }
    void band(int r) {
        for (int i = 0; i < m_around; ++i)
            m_build.face({at(r, i), at(r, i + 1), at(r + 1, i + 1), at(r + 1, i)});
    }
    void cap(int r, bool top) {
        std::vector<std::int32_t> rim;
        for (int i = 0; i < m_around; ++i)
            rim.push_back(at(r, i));
        if (!top)
            std::reverse(rim.begin(), rim.end());
        if (m_caps == 0) {
            m_build.face(rim);
            return;
        }
        const int centre = m_build.point(0.0, top ? 0.5 * m_height : -0.5 * m_height, 0.0);
        for (std::size_t i = 0; i < rim.size(); ++i)
            m_build.face({rim[i], rim[(i + 1) % rim.size()], centre});
    }

    MeshBuilder m_build;
    double m_radius, m_height;
    int m_around, m_rows, m_caps;
};

}  // namespace

MeshData polyCubeMesh(double width, double height, double depth, int segmentsWidth,
                      int segmentsHeight, int segmentsDepth, const V3d& axis) {
    return BoxBuilder(V3d(width, height, depth), std::max(1, segmentsWidth),
                      std::max(1, segmentsHeight), std::max(1, segmentsDepth), axis)
        .run();
}

MeshData polyPlaneMesh(double width, double height, int segmentsWidth, int segmentsHeight,
                       const V3d& axis) {
    const int w = std::max(1, segmentsWidth), h = std::max(1, segmentsHeight);
    MeshBuilder build(axis);
    for (int j = 0; j <= h; ++j)
        for (int i = 0; i <= w; ++i)
            build.point((static_cast<double>(i) / w - 0.5) * width, 0.0,
                        (0.5 - static_cast<double>(j) / h) * height);
    for (int j = 0; j < h; ++j)
        for (int i = 0; i < w; ++i) {
            const int a = j * (w + 1) + i;
            build.face({a, a + 1, a + w + 2, a + w + 1});
        }
    return build.take();
}

MeshData polyCylinderMesh(double radius, double height, int segmentsAxis, int segmentsHeight,
                          int segmentsCaps, const V3d& axis) {
    return CylinderBuilder(radius, height, std::max(3, segmentsAxis), std::max(1, segmentsHeight),
                           std::max(0, segmentsCaps), axis)
        .run();
}

double polyCubeFaces(double segmentsWidth, double segmentsHeight, double segmentsDepth) {
    const double w = std::max(1.0, segmentsWidth), h = std::max(1.0, segmentsHeight),
                 d = std::max(1.0, segmentsDepth);
    return 2.0 * (w * h + h * d + w * d);
}

double polyPlaneFaces(double segmentsWidth, double segmentsHeight, double) {
    return std::max(1.0, segmentsWidth) * std::max(1.0, segmentsHeight);
}

double polyCylinderFaces(double segmentsAxis, double segmentsHeight, double segmentsCaps) {
    return std::max(3.0, segmentsAxis) *
           (std::max(1.0, segmentsHeight) + 2.0 * std::max(0.0, segmentsCaps));
}

}  // namespace torvel
