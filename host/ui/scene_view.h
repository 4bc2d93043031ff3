#pragma once

#include <QPoint>
#include <QWidget>

#include "graph/scene.h"

class QTimer;

namespace torvel {

/// The scene drawn with a painter: meshes as shaded faces (as points when there are very many),
/// joints and bones in front. Drag turns, the middle button or Shift moves, the wheel zooms, F
/// shows everything.
class SceneView : public QWidget, private SceneListener {
    Q_OBJECT

  public:
    explicit SceneView(Scene& scene, QWidget* parent = nullptr);
    ~SceneView() override;

    /// Turns the view's distance and centre so that everything is seen.
    void frameAll();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    struct Face {
        double depth;
        QPolygonF outline;
        QColor color;
    };

    void nodeCreated(NodeHandle) override { touch(); }
    void nodeDeleted(NodeHandle) override { touch(); }
    void nodeReparented(NodeHandle) override { touch(); }
    void valueChanged(const Plug&) override { touch(); }
    void connectionChanged(const Plug&, const Plug&, bool) override { touch(); }
    void selectionChanged() override { touch(); }
    void sceneCleared() override;

    void touch();
    V3d toView(const V3d& world) const;
    QPointF toScreen(const V3d& view) const;
    void collectFaces(const Node& node, std::vector<Face>& faces,
                      std::vector<QPointF>& points) const;
    void drawMeshes(QPainter& painter) const;
    void drawJoints(QPainter& painter) const;
    void drawGrid(QPainter& painter) const;

    Scene& m_scene;
    QTimer* m_timer = nullptr;
    V3d m_center{0, 0, 0};
    double m_size = 20.0;  ///< world height seen
    double m_turn = 0.6;   ///< radians about Y
    double m_tilt = 0.35;
    QPoint m_last;
    bool m_framed = false;
};

}  // namespace torvel
