#include "draw/painter.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

#include "draw/gather.h"

namespace torvel {

namespace {

constexpr std::size_t kMostPoints = 200000;
constexpr std::size_t kFacesWithEdges = 6000;  // more of them would be nothing but edges

// The end of a line that lies behind the eye is cut off just in front of it. False when all of it
// is behind.
bool clipped(const ViewFrame& frame, V3d& a, V3d& b) {
    const double limit = frame.nearest();
    if (a.z >= limit && b.z >= limit)
        return false;
    if (a.z >= limit)
        a = b + (a - b) * ((limit - b.z) / (a.z - b.z));
    else if (b.z >= limit)
        b = a + (b - a) * ((limit - a.z) / (b.z - a.z));
    return true;
}

void drawLine(QPainter& painter, const QSize& size, const ViewFrame& frame, const V3d& from,
              const V3d& to) {
    V3d a = frame.toView(from), b = frame.toView(to);
    if (clipped(frame, a, b))
        painter.drawLine(frame.toScreen(a, size), frame.toScreen(b, size));
}

QColor shaded(const std::vector<V3d>& corners, bool chosen) {
    V3d normal(0.0);
    for (std::size_t k = 0; k < corners.size(); ++k)
        normal += (corners[k] - corners[0]).cross(corners[(k + 1) % corners.size()] - corners[0]);
    normal.normalize();
    const double light = std::abs(normal.dot(V3d(0.3, 0.4, 0.87)));
    const double green = chosen ? 0.06 : 0.0;
    return QColor::fromRgbF(0.25 + 0.45 * light, 0.27 + 0.45 * light + green, 0.30 + 0.45 * light);
}

// Spacing of the grid's lines: 5, 50, 500 ... for views of 10, 100, 1000.
double gridCell(double height) {
    return std::pow(10.0, std::floor(std::log10(std::max(height, 1e-3)))) / 2.0;
}

}  // namespace

QColor indexColor(int index) {
    static const unsigned kColors[] = {
        0x787878, 0x000000, 0x404040, 0x999999, 0x9b0028, 0x000460, 0x0000ff, 0x004619,
        0x260043, 0xc800c8, 0x8a4833, 0x3f231f, 0x992600, 0xff0000, 0x00ff00, 0x004199,
        0xffffff, 0xffff00, 0x64dcff, 0x43ffa3, 0xffb0b0, 0xe4ac79, 0xffff63, 0x009954,
        0xa16930, 0x9fa130, 0x68a130, 0x30a15d, 0x30a1a1, 0x3067a1, 0x6f30a1, 0xa13069};
    return QColor(kColors[index >= 0 && index < 32 ? index : 0]);
}

ScenePainter::ScenePainter(const Scene& scene, const PaintOptions& options) : m_options(options) {
    Gatherer(scene, *this).run();
}

QImage ScenePainter::image(const QSize& size, const ViewFrame& frame) const {
    QImage picture(size, QImage::Format_RGB32);
    QPainter painter(&picture);
    paint(painter, size, frame);
    return picture;
}

void ScenePainter::paint(QPainter& painter, const QSize& size, const ViewFrame& frame) const {
    painter.fillRect(QRect(QPoint(0, 0), size), m_options.background);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_options.grid)
        drawGrid(painter, size, frame);
    drawSolids(painter, size, frame);
    for (const bool behind : {true, false}) {
        drawWires(painter, size, frame, m_wires, behind);
        drawWires(painter, size, frame, m_bones, behind);
        drawBalls(painter, size, frame, behind);
    }
    drawAxes(painter, size, frame);
    drawDots(painter, size, frame);
}

// On the floor, or in the plane that faces the viewer.
void ScenePainter::drawGrid(QPainter& painter, const QSize& size, const ViewFrame& frame) const {
    const bool level = std::abs(frame.tilt) < 1e-6;
    const bool side = level && std::abs(std::abs(std::sin(frame.turn)) - 1.0) < 1e-6;
    const bool front = level && std::abs(std::sin(frame.turn)) < 1e-6;
    const V3d u = side ? V3d(0, 0, 1) : V3d(1, 0, 0),
              v = side || front ? V3d(0, 1, 0) : V3d(0, 0, 1);
    const double cell = gridCell(frame.height), end = 10 * cell;
    for (int i = -10; i <= 10; ++i) {
        painter.setPen(QPen(i == 0 ? QColor(40, 41, 43) : QColor(76, 78, 82), 1.0));
        const double at = i * cell;
        drawLine(painter, size, frame, u * at - v * end, u * at + v * end);
        drawLine(painter, size, frame, v * at - u * end, v * at + u * end);
    }
}

void ScenePainter::addFaces(const Solid& solid, const QSize& size, const ViewFrame& frame,
                            std::vector<Face>& faces, std::vector<QPointF>& dots) const {
    const MeshTopology& topology = *solid.topology;
    std::vector<V3d> seen(solid.points.size());
    std::transform(solid.points.begin(), solid.points.end(), seen.begin(),
                   [&](const V3d& point) { return frame.toView(point); });
    if (faces.size() + topology.faceCounts.size() > m_options.mostFaces) {
        const std::size_t step = seen.size() / kMostPoints + 1;
        for (std::size_t i = 0; i < seen.size(); i += step)
            if (seen[i].z < frame.nearest())
                dots.push_back(frame.toScreen(seen[i], size));
        return;
    }
    std::size_t at = 0;
    std::vector<V3d> corners;
    for (const std::int32_t count : topology.faceCounts) {
        corners.clear();
        bool front = true;
        for (std::int32_t k = 0; k < count; ++k, ++at) {
            const auto vertex = static_cast<std::size_t>(topology.faceVertices[at]);
            if (vertex < seen.size())
                corners.push_back(seen[vertex]);
        }
        Face face;
        for (const V3d& corner : corners) {
            front = front && corner.z < frame.nearest();
            face.depth += corner.z / static_cast<double>(corners.size());
            if (front)
                face.outline << frame.toScreen(corner, size);
        }
        if (corners.size() < 3 || !front)
            continue;
        if (!solid.wire)
            face.fill = shaded(corners, solid.look.chosen);
        const bool dense = topology.faceCounts.size() > kFacesWithEdges && !solid.look.chosen;
        face.edge = dense && !solid.wire ? face.fill : solid.look.color;
        face.width = solid.look.chosen ? 0.9 : 0.6;
        faces.push_back(std::move(face));
    }
}

void ScenePainter::drawSolids(QPainter& painter, const QSize& size, const ViewFrame& frame) const {
    std::vector<Face> faces;
    std::vector<QPointF> dots;
    for (const Solid& solid : m_solids)
        addFaces(solid, size, frame, faces, dots);
    std::stable_sort(faces.begin(), faces.end(),
                     [](const Face& a, const Face& b) { return a.depth < b.depth; });
    for (const Face& face : faces) {
        painter.setPen(QPen(face.edge, face.width));
        painter.setBrush(face.fill.isValid() ? QBrush(face.fill) : QBrush(Qt::NoBrush));
        painter.drawPolygon(face.outline);
    }
    painter.setPen(QColor(170, 175, 185));
    if (!dots.empty())
        painter.drawPoints(dots.data(), static_cast<int>(dots.size()));
}

void ScenePainter::drawWires(QPainter& painter, const QSize& size, const ViewFrame& frame,
                             const std::vector<Wire>& wires, bool behind) const {
    painter.setBrush(Qt::NoBrush);
    for (const Wire& wire : wires) {
        if (wire.look.behind != behind)
            continue;
        painter.setPen(
            QPen(wire.look.color, wire.look.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        for (std::size_t i = 1; i < wire.points.size(); ++i)
            drawLine(painter, size, frame, wire.points[i - 1], wire.points[i]);
    }
}

void ScenePainter::drawBalls(QPainter& painter, const QSize& size, const ViewFrame& frame,
                             bool behind) const {
    for (const Ball& ball : m_balls) {
        const V3d at = frame.toView(ball.at);
        if (ball.look.behind != behind || at.z >= frame.nearest())
            continue;
        const double radius = std::max(2.5, frame.pixels(ball.radius, at, size));
        painter.setPen(QPen(ball.look.color, ball.look.width));
        QColor fill = ball.look.color;
        fill.setAlpha(ball.look.chosen ? 110 : 45);
        painter.setBrush(fill);
        painter.drawEllipse(frame.toScreen(at, size), radius, radius);
    }
}

void ScenePainter::drawAxes(QPainter& painter, const QSize& size, const ViewFrame& frame) const {
    static const QColor kColors[] = {QColor(235, 60, 60), QColor(80, 205, 80),
                                     QColor(90, 135, 255)};
    const double shortest = 0.1 * std::min(size.width(), size.height());
    for (const Axes& axes : m_axes) {
        const V3d at = axes.world.translation();
        const double one = frame.pixels(1.0, frame.toView(at), size);
        if (frame.toView(at).z >= frame.nearest() || !(one > 0.0))
            continue;
        const double length = std::max(axes.length, shortest / one);
        for (int i = 0; i < 3; ++i) {
            const V3d row(axes.world[i][0], axes.world[i][1], axes.world[i][2]);
            if (row.length() < 1e-12)
                continue;
            painter.setPen(QPen(kColors[i], 2.4));
            drawLine(painter, size, frame, at, at + row.normalized() * length);
        }
    }
}

void ScenePainter::drawDots(QPainter& painter, const QSize& size, const ViewFrame& frame) const {
    painter.setPen(Qt::NoPen);
    for (const Dot& dot : m_dots) {
        const V3d at = frame.toView(dot.at);
        if (at.z >= frame.nearest())
            continue;
        const QPointF middle = frame.toScreen(at, size);
        painter.fillRect(QRectF(middle.x() - 3.0, middle.y() - 3.0, 6.0, 6.0), dot.color);
    }
}

}  // namespace torvel
