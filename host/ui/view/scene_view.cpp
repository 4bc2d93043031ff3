#include "ui/view/scene_view.h"

#include <algorithm>
#include <cmath>

#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

#include "draw/painter.h"

namespace torvel {

SceneView::SceneView(Scene& scene, QWidget* parent) : QWidget(parent), m_scene(scene) {
    setMinimumSize(200, 160);
    setFocusPolicy(Qt::StrongFocus);
    ViewFrame::named("persp", m_frame);
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    connect(m_timer, &QTimer::timeout, this, [this] { update(); });
    m_scene.addListener(this);
}

SceneView::~SceneView() {
    m_scene.removeListener(this);
}

void SceneView::touch() {
    if (isVisible() && !m_timer->isActive())
        m_timer->start(0);
}

void SceneView::sceneCleared() {
    m_framed = false;
    touch();
}

void SceneView::frameAll() {
    m_frame.fit(ScenePainter(m_scene).points(), size());
    m_framed = true;
    update();
}

void SceneView::paintEvent(QPaintEvent*) {
    const ScenePainter scene(m_scene);
    if (!m_framed)
        m_frame.fit(scene.points(), size());
    m_framed = true;
    QPainter painter(this);
    scene.paint(painter, size(), m_frame);
}

void SceneView::mousePressEvent(QMouseEvent* event) {
    m_last = event->pos();
}

void SceneView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint moved = event->pos() - m_last;
    m_last = event->pos();
    if (event->buttons() & Qt::MiddleButton || event->modifiers() & Qt::ShiftModifier) {
        const double scale = m_frame.height / std::max(1, height());
        m_frame.center = m_frame.toWorld({-moved.x() * scale, moved.y() * scale, 0.0});
    } else {
        m_frame.turn -= moved.x() * 0.01;
        m_frame.tilt = std::clamp(m_frame.tilt + moved.y() * 0.01, -1.5, 1.5);
    }
    update();
}

void SceneView::wheelEvent(QWheelEvent* event) {
    m_frame.height *= std::pow(0.999, event->angleDelta().y());
    update();
}

void SceneView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F)
        frameAll();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace torvel
