// A direction with a length.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

#define MVector_kTol 1.0e-10

class MAYA_API_EXPORT MVector {
  public:
    // The zero vector.
    MVector() : x(0.0), y(0.0), z(0.0) {}
    MVector(const MVector& other) = default;
    MVector(double xx, double yy, double zz = 0.0) : x(xx), y(yy), z(zz) {}
    MVector(const MPoint& point);
    MVector(const double source[3]) : x(source[0]), y(source[1]), z(source[2]) {}
    MVector& operator=(const MVector& other) = default;

    MVector operator+(const MVector& other) const;
    MVector operator-(const MVector& other) const;
    MVector operator-() const;
    MVector& operator+=(const MVector& other);
    MVector& operator-=(const MVector& other);
    MVector& operator*=(double factor);
    MVector& operator/=(double divisor);
    MVector operator/(double divisor) const;
    MVector operator*(double factor) const;
    // Row vector times the upper left three by three part.
    MVector operator*(const MMatrix& matrix) const;
    // Dot product.
    double operator*(const MVector& other) const;
    // Cross product.
    MVector operator^(const MVector& other) const;

    bool operator==(const MVector& other) const;
    bool operator!=(const MVector& other) const;
    double operator[](unsigned int index) const { return (&x)[index]; }
    double& operator[](unsigned int index) { return (&x)[index]; }

    double length() const;
    // A vector without length is returned as it is, without a NaN.
    MVector normal() const;
    // Fails, and changes nothing, on a vector without length.
    MStatus normalize();
    // Radians, 0 to pi.
    double angle(const MVector& other) const;
    bool isEquivalent(const MVector& other, double tolerance = MVector_kTol) const;

    double x;
    double y;
    double z;
};

MAYA_API_EXPORT MVector operator*(double factor, const MVector& vector);

MAYA_API_NAMESPACE_CLOSE
