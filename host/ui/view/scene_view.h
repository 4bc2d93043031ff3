#pragma once

#include <QPoint>
#include <QWidget>

#include "graph/scene.h"
#include "draw/view_frame.h"

class QTimer;

namespace torvel {

/// The scene as ScenePainter draws it (very large meshes as points). Drag turns, the middle button
/// or Shift moves, the wheel zooms, F shows everything.
class SceneView : public QWidget, private SceneListener {
    Q_OBJECT

  public:
    explicit SceneView(Scene& scene, QWidget* parent = nullptr);
    ~SceneView() override;

    /// Chooses the view's distance and centre so that everything is seen.
    void frameAll();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void nodeCreated(NodeHandle) override { touch(); }
    void nodeDeleted(NodeHandle) override { touch(); }
    void nodeReparented(NodeHandle) override { touch(); }
    void valueChanged(const Plug&) override { touch(); }
    void connectionChanged(const Plug&, const Plug&, bool) override { touch(); }
    void selectionChanged() override { touch(); }
    void sceneCleared() override;

    void touch();
    Scene& m_scene;
    QTimer* m_timer = nullptr;
    ViewFrame m_frame;
    QPoint m_last;
    bool m_framed = false;
};

}  // namespace torvel
