// A growing list of numbers. Setting it anew reuses the memory it has.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MDoubleArray {
  public:
    MDoubleArray();
    MDoubleArray(const MDoubleArray& other);
    MDoubleArray(const double* source, unsigned int count);
    MDoubleArray(unsigned int size, double value = 0.0);
    ~MDoubleArray();
    MDoubleArray& operator=(const MDoubleArray& other);

    // An index past the end is undefined.
    const double& operator[](unsigned int index) const;
    double& operator[](unsigned int index);

    unsigned int length() const;
    // New elements have the value of a fresh double.
    MStatus setLength(unsigned int length);

    MStatus append(double value);
    // Before `index`, which may be length(); beyond it the call is refused.
    MStatus insert(double value, unsigned int index);
    MStatus remove(unsigned int index);
    MStatus clear();
    // Refused when `index` is past the end.
    MStatus set(double value, unsigned int index);
    MStatus copy(const MDoubleArray& source);

    double* begin();
    double* end();
    const double* begin() const;
    const double* end() const;
    const double* cbegin() const;
    const double* cend() const;

  private:
    friend struct MApiBridge;
    double* fData;
    unsigned int fLength;
    unsigned int fCapacity;
};

MAYA_API_NAMESPACE_CLOSE
