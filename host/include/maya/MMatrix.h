// A four by four matrix that row vectors are multiplied with from the left.
#pragma once

#include <maya/MApiNamespace.h>

MAYA_API_NAMESPACE_OPEN

#define MMatrix_kTol 1.0e-10

class MAYA_API_EXPORT MMatrix {
  public:
    // Identity.
    MMatrix();
    MMatrix(const MMatrix& other) = default;
    MMatrix(const double source[4][4]);
    MMatrix& operator=(const MMatrix& other) = default;

    MMatrix operator*(const MMatrix& right) const;
    MMatrix& operator*=(const MMatrix& right);
    bool operator==(const MMatrix& other) const;
    bool operator!=(const MMatrix& other) const;
    double operator()(unsigned int row, unsigned int column) const { return matrix[row][column]; }
    double& operator()(unsigned int row, unsigned int column) { return matrix[row][column]; }
    const double* operator[](unsigned int row) const { return matrix[row]; }
    double* operator[](unsigned int row) { return matrix[row]; }

    MMatrix transpose() const;
    // Identity when the matrix has no inverse.
    MMatrix inverse() const;
    MMatrix& setToIdentity();
    bool isEquivalent(const MMatrix& other, double tolerance = MMatrix_kTol) const;

    double matrix[4][4];
};

MAYA_API_NAMESPACE_CLOSE
