// A growing list of objects. Setting it anew reuses the memory it has.
#pragma once

#include <maya/MObject.h>
#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MObjectArray {
  public:
    MObjectArray();
    MObjectArray(const MObjectArray& other);
    MObjectArray(const MObject* source, unsigned int count);
    MObjectArray(unsigned int size, const MObject& value = MObject::kNullObj);
    ~MObjectArray();
    MObjectArray& operator=(const MObjectArray& other);

    // An index past the end is undefined.
    const MObject& operator[](unsigned int index) const;
    MObject& operator[](unsigned int index);

    unsigned int length() const;
    // New elements have the value of a fresh MObject.
    MStatus setLength(unsigned int length);

    MStatus append(const MObject& value);
    // Before `index`, which may be length(); beyond it the call is refused.
    MStatus insert(const MObject& value, unsigned int index);
    MStatus remove(unsigned int index);
    MStatus clear();
    // Refused when `index` is past the end.
    MStatus set(const MObject& value, unsigned int index);
    MStatus copy(const MObjectArray& source);

    MObject* begin();
    MObject* end();
    const MObject* begin() const;
    const MObject* end() const;
    const MObject* cbegin() const;
    const MObject* cend() const;

  private:
    friend struct MApiBridge;
    MObject* fData;
    unsigned int fLength;
    unsigned int fCapacity;
};

MAYA_API_NAMESPACE_CLOSE
