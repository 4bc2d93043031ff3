// The two control shapes that are made without a script.

#include <maya/MDoubleArray.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>

#include "control/shape_routines.h"

// An open polyline through the points, with the knots 0, 1, 2 and so on.
template <unsigned int count>
static MObject polyline(const double (&points)[count][3]) {
    MPointArray vertices;
    MDoubleArray knots;
    for (unsigned int i = 0; i < count; ++i) {
        vertices.append(MPoint(points[i][0], points[i][1], points[i][2]));
        knots.append(i);
    }
    MFnNurbsCurve curveFn;
    return curveFn.create(vertices, knots, 1, MFnNurbsCurve::kOpen, false, false,
                          MObject::kNullObj);
}

MObject createShape09() {
    return polyline({{-2, 0, 0},
                     {2, 0, 0},
                     {0, 0, 0},
                     {0, 0, 2},
                     {0, 0, -2},
                     {0, 0, 0},
                     {0, 2, 0},
                     {0, -2, 0}});
}

MObject createShape46() {
    return polyline({{0, -1, 1}, {0, 1, 1}, {0, 1, -1}, {0, -1, -1}, {0, -1, 1}});
}
