// A growing list of plugs. Setting it anew reuses the memory it has.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MPlugArray {
  public:
    MPlugArray();
    MPlugArray(const MPlugArray& other);
    MPlugArray(const MPlug* source, unsigned int count);
    MPlugArray(unsigned int size, const MPlug& value);
    ~MPlugArray();
    MPlugArray& operator=(const MPlugArray& other);

    // An index past the end is undefined.
    const MPlug& operator[](unsigned int index) const;
    MPlug& operator[](unsigned int index);

    unsigned int length() const;
    // New elements have the value of a fresh MPlug.
    MStatus setLength(unsigned int length);

    MStatus append(const MPlug& value);
    // Before `index`, which may be length(); beyond it the call is refused.
    MStatus insert(const MPlug& value, unsigned int index);
    MStatus remove(unsigned int index);
    MStatus clear();
    // Refused when `index` is past the end.
    MStatus set(const MPlug& value, unsigned int index);
    MStatus copy(const MPlugArray& source);

    MPlug* begin();
    MPlug* end();
    const MPlug* begin() const;
    const MPlug* end() const;
    const MPlug* cbegin() const;
    const MPlug* cend() const;

  private:
    friend struct MApiBridge;
    MPlug* fData;
    unsigned int fLength;
    unsigned int fCapacity;
};

MAYA_API_NAMESPACE_CLOSE
