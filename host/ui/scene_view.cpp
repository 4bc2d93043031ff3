#include "ui/scene_view.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include <Imath/ImathBox.h>

#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

namespace torvel {

namespace {

constexpr std::size_t kMostFaces = 60000;
constexpr std::size_t kMostPoints = 200000;

M44d worldMatrix(const Scene& scene, NodeHandle handle) {
    const Plug plug = scene.findPlug(handle, "worldMatrix[0]");
    return plug.isNull() ? M44d() : scene.matrix(plug);
}

std::shared_ptr<const MeshData> meshOf(const Scene& scene, const Node& node) {
    if (!scene.isType(node.self, "mesh") ||
        scene.number(scene.findPlug(node.self, "intermediateObject")) != 0.0)
        return nullptr;
    return scene.dataAs<MeshData>(scene.findPlug(node.self, "outMesh"));
}

std::vector<NodeHandle> nodesOfType(const Scene& scene, const char* type) {
    std::vector<NodeHandle> found;
    scene.forEachNode([&](const Node& node) {
        if (scene.isType(node.self, type))
            found.push_back(node.self);
    });
    return found;
}

}  // namespace

SceneView::SceneView(Scene& scene, QWidget* parent) : QWidget(parent), m_scene(scene) {
    setMinimumSize(200, 160);
    setFocusPolicy(Qt::StrongFocus);
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
    Imath::Box3d box;
    for (NodeHandle handle : nodesOfType(m_scene, "mesh"))
        if (const auto mesh = meshOf(m_scene, *m_scene.node(handle))) {
            const M44d world = worldMatrix(m_scene, handle);
            for (const V3f& point : mesh->points)
                box.extendBy(V3d(point) * world);
        }
    for (NodeHandle handle : nodesOfType(m_scene, "joint"))
        box.extendBy(worldMatrix(m_scene, handle).translation());
    if (!box.isEmpty()) {
        m_center = box.center();
        m_size = std::max(box.size().length() * 1.1, 1e-3);
    }
    m_framed = true;
    update();
}

V3d SceneView::toView(const V3d& world) const {
    const V3d p = world - m_center;
    const double x = std::cos(m_turn) * p.x - std::sin(m_turn) * p.z;
    const double z = std::sin(m_turn) * p.x + std::cos(m_turn) * p.z;
    return {x, std::cos(m_tilt) * p.y - std::sin(m_tilt) * z,
            std::sin(m_tilt) * p.y + std::cos(m_tilt) * z};
}

QPointF SceneView::toScreen(const V3d& view) const {
    const double scale = std::min(width(), height()) / m_size;
    return {width() / 2.0 + view.x * scale, height() / 2.0 - view.y * scale};
}

void SceneView::collectFaces(const Node& node, std::vector<Face>& faces,
                             std::vector<QPointF>& points) const {
    const auto mesh = meshOf(m_scene, node);
    if (!mesh || !mesh->topology)
        return;
    const M44d world = worldMatrix(m_scene, node.self);
    std::vector<V3d> seen(mesh->points.size());
    for (std::size_t i = 0; i < seen.size(); ++i)
        seen[i] = toView(V3d(mesh->points[i]) * world);
    const MeshTopology& topology = *mesh->topology;
    if (faces.size() + topology.faceCounts.size() > kMostFaces) {
        const std::size_t step = seen.size() / kMostPoints + 1;
        for (std::size_t i = 0; i < seen.size(); i += step)
            points.push_back(toScreen(seen[i]));
        return;
    }
    std::size_t at = 0;
    for (std::int32_t count : topology.faceCounts) {
        Face face{0.0, {}, {}};
        std::vector<V3d> corners;
        for (std::int32_t k = 0; k < count; ++k, ++at) {
            const auto vertex = static_cast<std::size_t>(topology.faceVertices[at]);
            if (vertex < seen.size())
                corners.push_back(seen[vertex]);
        }
        if (corners.size() < 3)
            continue;
        V3d normal(0, 0, 0);
        for (std::size_t k = 0; k < corners.size(); ++k) {
            normal += corners[k].cross(corners[(k + 1) % corners.size()]);
            face.depth += corners[k].z / static_cast<double>(corners.size());
            face.outline << toScreen(corners[k]);
        }
        normal.normalize();
        const double light = std::abs(normal.dot(V3d(0.3, 0.4, 0.87)));
        face.color =
            QColor::fromRgbF(0.25 + 0.45 * light, 0.27 + 0.45 * light, 0.30 + 0.45 * light);
        faces.push_back(std::move(face));
    }
}

void SceneView::drawMeshes(QPainter& painter) const {
    std::vector<Face> faces;
    std::vector<QPointF> points;
    for (NodeHandle handle : nodesOfType(m_scene, "mesh"))
        collectFaces(*m_scene.node(handle), faces, points);
    std::stable_sort(faces.begin(), faces.end(),
                     [](const Face& a, const Face& b) { return a.depth < b.depth; });
    for (const Face& face : faces) {
        painter.setPen(QPen(face.color.darker(125), 0.6));
        painter.setBrush(face.color);
        painter.drawPolygon(face.outline);
    }
    painter.setPen(QColor(170, 175, 185));
    if (!points.empty())
        painter.drawPoints(points.data(), static_cast<int>(points.size()));
}

void SceneView::drawJoints(QPainter& painter) const {
    const std::vector<NodeHandle> selected = m_scene.selection().nodes();
    for (NodeHandle handle : nodesOfType(m_scene, "joint")) {
        const QPointF at = toScreen(toView(worldMatrix(m_scene, handle).translation()));
        const bool chosen = std::find(selected.begin(), selected.end(), handle) != selected.end();
        const QColor color = chosen ? QColor(90, 230, 130) : QColor(240, 190, 80);
        painter.setPen(QPen(color, 2.0));
        const Node* node = m_scene.node(handle);
        const NodeHandle parent = node->parents.empty() ? NodeHandle() : node->parents.front();
        if (m_scene.isType(parent, "joint"))
            painter.drawLine(toScreen(toView(worldMatrix(m_scene, parent).translation())), at);
        painter.setBrush(QColor(40, 40, 40));
        painter.drawEllipse(at, 5.0, 5.0);
    }
}

void SceneView::drawGrid(QPainter& painter) const {
    const double cell = std::pow(10.0, std::floor(std::log10(std::max(m_size, 1e-3)))) / 2.0;
    painter.setPen(QPen(QColor(86, 86, 86), 1.0));
    for (int i = -10; i <= 10; ++i) {
        const double at = i * cell, end = 10 * cell;
        painter.drawLine(toScreen(toView({at, 0, -end})), toScreen(toView({at, 0, end})));
        painter.drawLine(toScreen(toView({-end, 0, at})), toScreen(toView({end, 0, at})));
    }
}

void SceneView::paintEvent(QPaintEvent*) {
    if (!m_framed)
        frameAll();
    QPainter painter(this);
    painter.fillRect(rect(), QColor(58, 60, 63));
    painter.setRenderHint(QPainter::Antialiasing);
    drawGrid(painter);
    drawMeshes(painter);
    drawJoints(painter);
}

void SceneView::mousePressEvent(QMouseEvent* event) {
    m_last = event->pos();
}

void SceneView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint moved = event->pos() - m_last;
    m_last = event->pos();
    if (event->buttons() & Qt::MiddleButton || event->modifiers() & Qt::ShiftModifier) {
        const double scale = m_size / std::max(1, std::min(width(), height()));
        m_center.x -= std::cos(m_turn) * moved.x() * scale;
        m_center.z += std::sin(m_turn) * moved.x() * scale;
        m_center.y += moved.y() * scale;
    } else {
        m_turn -= moved.x() * 0.01;
        m_tilt = std::clamp(m_tilt + moved.y() * 0.01, -1.5, 1.5);
    }
    update();
}

void SceneView::wheelEvent(QWheelEvent* event) {
    m_size *= std::pow(0.999, event->angleDelta().y());
    update();
}

void SceneView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F)
        frameAll();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace torvel
