// A growing list of points. Setting it anew reuses the memory it has.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MPointArray {
  public:
    MPointArray();
    MPointArray(const MPointArray& other);
    MPointArray(const MPoint* source, unsigned int count);
    MPointArray(unsigned int size, const MPoint& value);
    ~MPointArray();
    MPointArray& operator=(const MPointArray& other);

    // An index past the end is undefined.
    const MPoint& operator[](unsigned int index) const;
    MPoint& operator[](unsigned int index);

    unsigned int length() const;
    // New elements have the value of a fresh MPoint.
    MStatus setLength(unsigned int length);

    MStatus append(const MPoint& value);
    MStatus append(double x, double y, double z = 0.0, double w = 1.0);
    // Before `index`, which may be length(); beyond it the call is refused.
    MStatus insert(const MPoint& value, unsigned int index);
    MStatus remove(unsigned int index);
    MStatus clear();
    // Refused when `index` is past the end.
    MStatus set(const MPoint& value, unsigned int index);
    MStatus copy(const MPointArray& source);

    MPoint* begin();
    MPoint* end();
    const MPoint* begin() const;
    const MPoint* end() const;
    const MPoint* cbegin() const;
    const MPoint* cend() const;

  private:
    friend struct MApiBridge;
    MPoint* fData;
    unsigned int fLength;
    unsigned int fCapacity;
};

MAYA_API_NAMESPACE_CLOSE
