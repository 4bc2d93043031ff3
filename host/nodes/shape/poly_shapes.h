#pragma once

#include "graph/data.h"

/// Simple closed or open meshes around the origin, built along +Y and turned by the smallest
/// rotation onto `axis`.
namespace torvel {

/// Box: 2(wh + hd + wd) faces and the vertices on its surface. Counts below 1 count as 1.
/// One segment each: vertices 0, 1 front bottom, 2, 3 front top, 4, 5 back top, 6, 7 back bottom,
/// left before right.
MeshData polyCubeMesh(double width, double height, double depth, int segmentsWidth,
                      int segmentsHeight, int segmentsDepth, const V3d& axis);
/// (w + 1)(h + 1) vertices in rows of rising x, first row at the front (+z).
MeshData polyPlaneMesh(double width, double height, int segmentsWidth, int segmentsHeight,
                       const V3d& axis);
/// Rings of `segmentsAxis` vertices from the bottom to the top, caps of `segmentsCaps` rings with a
/// centre vertex each; 0 caps: one face of many sides at either end.
MeshData polyCylinderMesh(double radius, double height, int segmentsAxis, int segmentsHeight,
                          int segmentsCaps, const V3d& axis);

/// The most faces that one maker makes; with more of them its output is empty and a warning names
/// it.
inline constexpr double kMostPolyFaces = 4e6;
// Faces for these counts; doubles, so that no count is too large to be asked about.
double polyCubeFaces(double segmentsWidth, double segmentsHeight, double segmentsDepth);
double polyPlaneFaces(double segmentsWidth, double segmentsHeight, double);
double polyCylinderFaces(double segmentsAxis, double segmentsHeight, double segmentsCaps);

}  // namespace torvel
