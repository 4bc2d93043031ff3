#pragma once

#include <string>
#include <vector>

#include <Imath/ImathBox.h>

#include <QPointF>
#include <QSize>

#include "graph/math.h"

namespace torvel {

/// From where a scene is seen. View space: x to the right, y up, z toward the viewer, the origin at
/// `center`.
struct ViewFrame {
    V3d center{0.0};
    double turn = 0.6;     ///< radians about +Y; 0 looks along -Z
    double tilt = 0.35;    ///< radians; a quarter turn looks straight down
    double height = 20.0;  ///< world height seen at the centre
    bool perspective = false;

    /// "persp", "front" (+Z towards the viewer), "side" (+X) or "top" (+Y); false for other names.
    static bool named(const std::string& name, ViewFrame& out);

    V3d toView(const V3d& world) const;
    V3d toWorld(const V3d& view) const;
    /// Distance of the eye from the centre (perspective only).
    double distance() const;
    /// Nearest depth that can be drawn: view points with a greater z lie behind the eye.
    double nearest() const;
    /// Picture position of a view point that is not behind the eye.
    QPointF toScreen(const V3d& view, const QSize& size) const;
    /// Length in the picture of a world length at a view point.
    double pixels(double length, const V3d& view, const QSize& size) const;

    /// Moves centre and height so that all points fill a picture of this size, with `margin` of
    /// each side left free. No points: nothing changes.
    void fit(const std::vector<V3d>& points, const QSize& size, double margin = 0.06);
};

}  // namespace torvel
