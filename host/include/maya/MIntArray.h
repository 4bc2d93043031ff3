// A growing list of whole numbers. Setting it anew reuses the memory it has.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MIntArray {
  public:
    MIntArray();
    MIntArray(const MIntArray& other);
    MIntArray(const int* source, unsigned int count);
    MIntArray(unsigned int size, int value = 0);
    ~MIntArray();
    MIntArray& operator=(const MIntArray& other);

    // An index past the end is undefined.
    const int& operator[](unsigned int index) const;
    int& operator[](unsigned int index);

    unsigned int length() const;
    // New elements have the value of a fresh int.
    MStatus setLength(unsigned int length);

    MStatus append(int value);
    // Before `index`, which may be length(); beyond it the call is refused.
    MStatus insert(int value, unsigned int index);
    MStatus remove(unsigned int index);
    MStatus clear();
    // Refused when `index` is past the end.
    MStatus set(int value, unsigned int index);
    MStatus copy(const MIntArray& source);

    int* begin();
    int* end();
    const int* begin() const;
    const int* end() const;
    const int* cbegin() const;
    const int* cend() const;

  private:
    friend struct MApiBridge;
    int* fData;
    unsigned int fLength;
    unsigned int fCapacity;
};

MAYA_API_NAMESPACE_CLOSE
