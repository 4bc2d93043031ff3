// A position with a homogeneous fourth coordinate.
#pragma once

#include <maya/MApiNamespace.h>

MAYA_API_NAMESPACE_OPEN

#define MPoint_kTol 1.0e-10

class MAYA_API_EXPORT MPoint {
  public:
    // The origin.
    MPoint() : x(0.0), y(0.0), z(0.0), w(1.0) {}
    MPoint(const MPoint& other) = default;
    MPoint(double xx, double yy, double zz = 0.0, double ww = 1.0) : x(xx), y(yy), z(zz), w(ww) {}
    MPoint(const MVector& vector);
    MPoint(const double source[4]) : x(source[0]), y(source[1]), z(source[2]), w(source[3]) {}
    MPoint& operator=(const MPoint& other) = default;

    // Scaling changes x, y and z and leaves w.
    MPoint& operator*=(double factor);
    MPoint operator*(int factor) const;
    MPoint operator*(short factor) const;
    MPoint operator*(unsigned int factor) const;
    MPoint operator*(unsigned short factor) const;
    MPoint operator*(float factor) const;
    MPoint operator*(double factor) const;
    // Row vector times matrix, all four coordinates.
    MPoint operator*(const MMatrix& matrix) const;
    MPoint& operator*=(const MMatrix& matrix);

    MVector operator-(const MPoint& other) const;
    MPoint operator+(const MVector& offset) const;
    MPoint operator-(const MVector& offset) const;
    MPoint& operator+=(const MVector& offset);
    MPoint& operator-=(const MVector& offset);

    bool operator==(const MPoint& other) const;
    bool operator!=(const MPoint& other) const;
    double operator[](unsigned int index) const { return (&x)[index]; }
    double& operator[](unsigned int index) { return (&x)[index]; }

    double distanceTo(const MPoint& other) const;
    bool isEquivalent(const MPoint& other, double tolerance = MPoint_kTol) const;

    double x;
    double y;
    double z;
    double w;
};

MAYA_API_NAMESPACE_CLOSE
