#include <cmath>

#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MVector.h>

#include "graph/math.h"

MAYA_API_NAMESPACE_OPEN

namespace {

// Below this a vector counts as having no length.
constexpr double kTiny = 1.0e-10;

bool near(double a, double b, double tolerance) {
    return std::fabs(a - b) <= tolerance;
}

}  // namespace

// --- MPoint --------------------------------------------------------------------------------------

MPoint::MPoint(const MVector& vector) : x(vector.x), y(vector.y), z(vector.z), w(1.0) {}

MPoint& MPoint::operator*=(double factor) {
    x *= factor;
    y *= factor;
    z *= factor;
    return *this;
}

MPoint MPoint::operator*(double factor) const {
    MPoint scaled(*this);
    scaled *= factor;
    return scaled;
}

MPoint MPoint::operator*(int factor) const {
    return *this * static_cast<double>(factor);
}

MPoint MPoint::operator*(short factor) const {
    return *this * static_cast<double>(factor);
}

MPoint MPoint::operator*(unsigned int factor) const {
    return *this * static_cast<double>(factor);
}

MPoint MPoint::operator*(unsigned short factor) const {
    return *this * static_cast<double>(factor);
}

MPoint MPoint::operator*(float factor) const {
    return *this * static_cast<double>(factor);
}

MPoint MPoint::operator*(const MMatrix& m) const {
    double out[4];
    for (unsigned int c = 0; c < 4; ++c)
        out[c] = x * m(0, c) + y * m(1, c) + z * m(2, c) + w * m(3, c);
    return MPoint(out);
}

MPoint& MPoint::operator*=(const MMatrix& matrix) {
    return *this = *this * matrix;
}

MVector MPoint::operator-(const MPoint& other) const {
    return MVector(x - other.x, y - other.y, z - other.z);
}

MPoint MPoint::operator+(const MVector& offset) const {
    return MPoint(x + offset.x, y + offset.y, z + offset.z, w);
}

MPoint MPoint::operator-(const MVector& offset) const {
    return MPoint(x - offset.x, y - offset.y, z - offset.z, w);
}

MPoint& MPoint::operator+=(const MVector& offset) {
    return *this = *this + offset;
}

MPoint& MPoint::operator-=(const MVector& offset) {
    return *this = *this - offset;
}

bool MPoint::operator==(const MPoint& other) const {
    return x == other.x && y == other.y && z == other.z && w == other.w;
}

bool MPoint::operator!=(const MPoint& other) const {
    return !(*this == other);
}

double MPoint::distanceTo(const MPoint& other) const {
    return (*this - other).length();
}

bool MPoint::isEquivalent(const MPoint& other, double tolerance) const {
    return near(x, other.x, tolerance) && near(y, other.y, tolerance) &&
           near(z, other.z, tolerance) && near(w, other.w, tolerance);
}

// --- MVector -------------------------------------------------------------------------------------

MVector::MVector(const MPoint& point) : x(point.x), y(point.y), z(point.z) {}

MVector MVector::operator+(const MVector& other) const {
    return MVector(x + other.x, y + other.y, z + other.z);
}

MVector MVector::operator-(const MVector& other) const {
    return MVector(x - other.x, y - other.y, z - other.z);
}

MVector MVector::operator-() const {
    return MVector(-x, -y, -z);
}

MVector& MVector::operator+=(const MVector& other) {
    return *this = *this + other;
}

MVector& MVector::operator-=(const MVector& other) {
    return *this = *this - other;
}

MVector& MVector::operator*=(double factor) {
    return *this = *this * factor;
}

MVector& MVector::operator/=(double divisor) {
    return *this = *this / divisor;
}

MVector MVector::operator/(double divisor) const {
    return MVector(x / divisor, y / divisor, z / divisor);
}

MVector MVector::operator*(double factor) const {
    return MVector(x * factor, y * factor, z * factor);
}

MVector MVector::operator*(const MMatrix& m) const {
    double out[3];
    for (unsigned int c = 0; c < 3; ++c)
        out[c] = x * m(0, c) + y * m(1, c) + z * m(2, c);
    return MVector(out);
}

double MVector::operator*(const MVector& other) const {
    return x * other.x + y * other.y + z * other.z;
}

MVector MVector::operator^(const MVector& other) const {
    return MVector(y * other.z - z * other.y, z * other.x - x * other.z, x * other.y - y * other.x);
}

MVector operator*(double factor, const MVector& vector) {
    return vector * factor;
}

bool MVector::operator==(const MVector& other) const {
    return x == other.x && y == other.y && z == other.z;
}

bool MVector::operator!=(const MVector& other) const {
    return !(*this == other);
}

double MVector::length() const {
    return std::sqrt(*this * *this);
}

MVector MVector::normal() const {
    const double size = length();
    return size > kTiny ? *this / size : *this;
}

MStatus MVector::normalize() {
    if (!(length() > kTiny))
        return MStatus::kFailure;
    *this = normal();
    return MStatus::kSuccess;
}

double MVector::angle(const MVector& other) const {
    return std::atan2((*this ^ other).length(), *this * other);
}

bool MVector::isEquivalent(const MVector& other, double tolerance) const {
    return near(x, other.x, tolerance) && near(y, other.y, tolerance) &&
           near(z, other.z, tolerance);
}

// --- MMatrix -------------------------------------------------------------------------------------

MMatrix::MMatrix() {
    setToIdentity();
}

MMatrix::MMatrix(const double source[4][4]) {
    for (unsigned int r = 0; r < 4; ++r)
        for (unsigned int c = 0; c < 4; ++c)
            matrix[r][c] = source[r][c];
}

MMatrix& MMatrix::setToIdentity() {
    for (unsigned int r = 0; r < 4; ++r)
        for (unsigned int c = 0; c < 4; ++c)
            matrix[r][c] = r == c ? 1.0 : 0.0;
    return *this;
}

MMatrix MMatrix::operator*(const MMatrix& right) const {
    MMatrix product;
    for (unsigned int r = 0; r < 4; ++r)
        for (unsigned int c = 0; c < 4; ++c)
            product(r, c) = matrix[r][0] * right(0, c) + matrix[r][1] * right(1, c) +
                            matrix[r][2] * right(2, c) + matrix[r][3] * right(3, c);
    return product;
}

MMatrix& MMatrix::operator*=(const MMatrix& right) {
    return *this = *this * right;
}

bool MMatrix::operator==(const MMatrix& other) const {
    return isEquivalent(other, 0.0);
}

bool MMatrix::operator!=(const MMatrix& other) const {
    return !(*this == other);
}

MMatrix MMatrix::transpose() const {
    MMatrix turned;
    for (unsigned int r = 0; r < 4; ++r)
        for (unsigned int c = 0; c < 4; ++c)
            turned(c, r) = matrix[r][c];
    return turned;
}

MMatrix MMatrix::inverse() const {
    // Imath gives the identity for a singular matrix.
    return MMatrix(torvel::M44d(matrix).inverse().x);
}

bool MMatrix::isEquivalent(const MMatrix& other, double tolerance) const {
    for (unsigned int r = 0; r < 4; ++r)
        for (unsigned int c = 0; c < 4; ++c)
            if (!near(matrix[r][c], other(r, c), tolerance))
                return false;
    return true;
}

MAYA_API_NAMESPACE_CLOSE
