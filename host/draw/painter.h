#pragma once

#include <memory>
#include <vector>

#include <QColor>
#include <QImage>
#include <QPolygonF>

#include "graph/data.h"
#include "graph/scene.h"
#include "draw/view_frame.h"

class QPainter;

namespace torvel {

struct PaintOptions {
    bool wire = false;  ///< meshes as edges
    bool grid = true;
    bool joints = true;
    QColor background{58, 60, 63};
    std::size_t mostFaces = 60000;  ///< meshes that would go beyond it are drawn as points
};

/// The visible part of a scene as one moment's picture: meshes flat-shaded, farthest first, then
/// curves, locators and IK handles, then joints by draw style and radius, then local axes, all of
/// them in front of the meshes. Templates come before what is none. Override colours count, those
/// of nodes above, too. What is selected is drawn white, the last of it green; components yellow.
/// Everything is gathered on construction: the scene may change afterwards. No screen is needed.
class ScenePainter {
  public:
    explicit ScenePainter(const Scene& scene, const PaintOptions& options = {});

    /// World points that a picture has to show: of meshes, curves and locators, around joints.
    const std::vector<V3d>& points() const { return m_points; }

    /// Draws everything, background included, over the whole of `size`.
    void paint(QPainter& painter, const QSize& size, const ViewFrame& frame) const;
    QImage image(const QSize& size, const ViewFrame& frame) const;

  private:
    struct Look {
        QColor color;
        double width = 1.0;
        bool chosen = false;
        bool behind = false;  ///< templates: the others are drawn over them
    };
    struct Wire {
        std::vector<V3d> points;
        Look look;
    };
    struct Solid {
        std::vector<V3d> points;
        std::shared_ptr<const MeshTopology> topology;
        Look look;
        bool wire = false;
    };
    struct Ball {
        V3d at;
        double radius = 0.0;
        Look look;
    };
    struct Dot {
        V3d at;
        QColor color;
    };
    struct Axes {
        M44d world;
        double length = 0.0;
    };
    struct Face {
        double depth = 0.0;
        QPolygonF outline;
        QColor fill, edge;
        double width = 0.6;
    };
    class Gatherer;

    void drawGrid(QPainter& painter, const QSize& size, const ViewFrame& frame) const;
    void addFaces(const Solid& solid, const QSize& size, const ViewFrame& frame,
                  std::vector<Face>& faces, std::vector<QPointF>& dots) const;
    void drawSolids(QPainter& painter, const QSize& size, const ViewFrame& frame) const;
    void drawWires(QPainter& painter, const QSize& size, const ViewFrame& frame,
                   const std::vector<Wire>& wires, bool behind) const;
    void drawBalls(QPainter& painter, const QSize& size, const ViewFrame& frame, bool behind) const;
    void drawAxes(QPainter& painter, const QSize& size, const ViewFrame& frame) const;
    void drawDots(QPainter& painter, const QSize& size, const ViewFrame& frame) const;

    PaintOptions m_options;
    std::vector<V3d> m_points;
    std::vector<Solid> m_solids;
    std::vector<Wire> m_wires;
    std::vector<Wire> m_bones;
    std::vector<Ball> m_balls;
    std::vector<Axes> m_axes;
    std::vector<Dot> m_dots;
};

/// Colour number 0..31 of overrideColor; gray for others.
QColor indexColor(int index);

}  // namespace torvel
