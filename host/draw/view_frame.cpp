#include "draw/view_frame.h"

#include <algorithm>
#include <cmath>

namespace torvel {

namespace {

const double kTanHalfAngle = std::tan(0.3);  // about 34 degrees from top to bottom

double aspectOf(const QSize& size) {
    return static_cast<double>(std::max(1, size.width())) / std::max(1, size.height());
}

}  // namespace

bool ViewFrame::named(const std::string& name, ViewFrame& out) {
    struct View {
        const char* name;
        double turn, tilt;
        bool perspective;
    };
    static const View kViews[] = {{"persp", 0.6, 0.35, true},
                                  {"front", 0.0, 0.0, false},
                                  {"side", kPi / 2.0, 0.0, false},
                                  {"top", 0.0, kPi / 2.0, false}};
    for (const View& view : kViews)
        if (name == view.name) {
            out.turn = view.turn;
            out.tilt = view.tilt;
            out.perspective = view.perspective;
            return true;
        }
    return false;
}

V3d ViewFrame::toView(const V3d& world) const {
    const V3d p = world - center;
    const double x = std::cos(turn) * p.x - std::sin(turn) * p.z;
    const double z = std::sin(turn) * p.x + std::cos(turn) * p.z;
    return {x, std::cos(tilt) * p.y - std::sin(tilt) * z,
            std::sin(tilt) * p.y + std::cos(tilt) * z};
}

V3d ViewFrame::toWorld(const V3d& view) const {
    const double y = std::cos(tilt) * view.y + std::sin(tilt) * view.z;
    const double z = std::cos(tilt) * view.z - std::sin(tilt) * view.y;
    return center + V3d(std::cos(turn) * view.x + std::sin(turn) * z, y,
                        std::cos(turn) * z - std::sin(turn) * view.x);
}

double ViewFrame::distance() const {
    return height / 2.0 / kTanHalfAngle;
}

double ViewFrame::nearest() const {
    return perspective ? distance() * 0.98 : 1e300;
}

double ViewFrame::pixels(double length, const V3d& view, const QSize& size) const {
    const double scale = std::max(1, size.height()) / height;
    return length * (perspective ? scale * distance() / (distance() - view.z) : scale);
}

QPointF ViewFrame::toScreen(const V3d& view, const QSize& size) const {
    return {size.width() / 2.0 + pixels(view.x, view, size),
            size.height() / 2.0 - pixels(view.y, view, size)};
}

void ViewFrame::fit(const std::vector<V3d>& points, const QSize& size, double margin) {
    if (points.empty())
        return;
    Imath::Box3d box;
    for (const V3d& point : points)
        box.extendBy(toView(point));
    center = toWorld(box.center());
    const double aspect = aspectOf(size), room = 1.0 - 2.0 * margin;
    const V3d extent = box.size();
    height = std::max({extent.y, extent.x / aspect, 1e-3 * (1.0 + extent.z)}) / room;
    if (!perspective)
        return;
    // The eye goes back until every point is within the cone.
    double away = distance();
    for (const V3d& point : points) {
        const V3d p = toView(point);
        const double reach = std::max(std::abs(p.y), std::abs(p.x) / aspect);
        away = std::max(away, p.z + reach / (kTanHalfAngle * room));
    }
    height = 2.0 * away * kTanHalfAngle;
}

}  // namespace torvel
