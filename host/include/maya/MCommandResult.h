// The result of a MEL command, whatever its type.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MCommandResult {
  public:
    enum Type {
        kInvalid,
        kInt,
        kIntArray,
        kDouble,
        kDoubleArray,
        kString,
        kStringArray,
        kVector,
        kVectorArray,
        kMatrix,
        kMatrixArray
    };

    explicit MCommandResult(MStatus* ReturnStatus = nullptr);
    ~MCommandResult();
    MCommandResult(const MCommandResult&) = delete;
    MCommandResult& operator=(const MCommandResult&) = delete;

    Type resultType(MStatus* ReturnStatus = nullptr) const;
    MString stringResult(MStatus* ReturnStatus = nullptr) const;
    // Fail, and leave the variable as it was, where the result is of another type.
    MStatus getResult(int& result) const;
    MStatus getResult(MIntArray& result) const;
    MStatus getResult(double& result) const;
    MStatus getResult(MDoubleArray& result) const;
    MStatus getResult(MString& result) const;
    MStatus getResult(MStringArray& result) const;

  private:
    friend struct MApiBridge;
    struct Data;
    Data* fData;
};

MAYA_API_NAMESPACE_CLOSE
