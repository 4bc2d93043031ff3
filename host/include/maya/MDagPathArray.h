// A growing list of DAG paths. Setting it anew reuses the memory it has.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MDagPathArray {
  public:
    MDagPathArray();
    MDagPathArray(const MDagPathArray& other);
    MDagPathArray(const MDagPath* source, unsigned int count);
    MDagPathArray(unsigned int size, const MDagPath& value);
    ~MDagPathArray();
    MDagPathArray& operator=(const MDagPathArray& other);

    // An index past the end is undefined.
    const MDagPath& operator[](unsigned int index) const;
    MDagPath& operator[](unsigned int index);

    unsigned int length() const;
    // New elements have the value of a fresh MDagPath.
    MStatus setLength(unsigned int length);

    MStatus append(const MDagPath& value);
    // Before `index`, which may be length(); beyond it the call is refused.
    MStatus insert(const MDagPath& value, unsigned int index);
    MStatus remove(unsigned int index);
    MStatus clear();
    // Refused when `index` is past the end.
    MStatus set(const MDagPath& value, unsigned int index);
    MStatus copy(const MDagPathArray& source);

    MDagPath* begin();
    MDagPath* end();
    const MDagPath* begin() const;
    const MDagPath* end() const;
    const MDagPath* cbegin() const;
    const MDagPath* cend() const;

  private:
    friend struct MApiBridge;
    MDagPath* fData;
    unsigned int fLength;
    unsigned int fCapacity;
};

MAYA_API_NAMESPACE_CLOSE
