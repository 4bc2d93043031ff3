// The arguments of a call of a plug-in's command.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MArgList {
  public:
    MArgList();
    MArgList(const MArgList& other);
    ~MArgList();
    MArgList& operator=(const MArgList& other);

    unsigned int length(MStatus* ReturnStatus = nullptr) const;
    // Fail with an empty value past the end and where the argument cannot be read so.
    bool asBool(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    int asInt(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    double asDouble(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MString asString(unsigned int index, MStatus* ReturnStatus = nullptr) const;

  private:
    friend struct MApiBridge;
    struct Data;
    Data* fData;
};

MAYA_API_NAMESPACE_CLOSE
