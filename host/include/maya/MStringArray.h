// A growing list of texts. Setting it anew reuses the memory it has.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MStringArray {
  public:
    MStringArray();
    MStringArray(const MStringArray& other);
    MStringArray(const MString* source, unsigned int count);
    MStringArray(unsigned int size, const MString& value);
    ~MStringArray();
    MStringArray& operator=(const MStringArray& other);

    // An index past the end is undefined.
    const MString& operator[](unsigned int index) const;
    MString& operator[](unsigned int index);

    unsigned int length() const;
    // New elements have the value of a fresh MString.
    MStatus setLength(unsigned int length);

    MStatus append(const MString& value);
    // Before `index`, which may be length(); beyond it the call is refused.
    MStatus insert(const MString& value, unsigned int index);
    MStatus remove(unsigned int index);
    MStatus clear();
    // Refused when `index` is past the end.
    MStatus set(const MString& value, unsigned int index);
    MStatus copy(const MStringArray& source);

    MString* begin();
    MString* end();
    const MString* begin() const;
    const MString* end() const;
    const MString* cbegin() const;
    const MString* cend() const;

  private:
    friend struct MApiBridge;
    MString* fData;
    unsigned int fLength;
    unsigned int fCapacity;
};

MAYA_API_NAMESPACE_CLOSE
