// Result of an API call: success, or one of a few kinds of failure.
#pragma once

#include <maya/MApiNamespace.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MStatus {
  public:
    enum MStatusCode {
        kSuccess = 0,
        kFailure,
        kInsufficientMemory,
        kInvalidParameter,
        kLicenseFailure,
        kUnknownParameter,
        kNotImplemented,
        kNotFound,
        kEndOfFile
    };

    // Success.
    MStatus() : fCode(kSuccess) {}
    MStatus(MStatusCode code) : fCode(code) {}
    MStatus(const MStatus& other) = default;
    MStatus& operator=(const MStatus& other) = default;

    bool operator==(const MStatus& other) const { return fCode == other.fCode; }
    bool operator==(MStatusCode code) const { return fCode == code; }
    bool operator!=(const MStatus& other) const { return fCode != other.fCode; }
    bool operator!=(MStatusCode code) const { return fCode != code; }

    // True on success.
    operator bool() const { return fCode == kSuccess; }
    bool error() const { return fCode != kSuccess; }
    void clear() { fCode = kSuccess; }
    MStatusCode statusCode() const { return fCode; }

    // A short English name of the code, such as "(kInvalidParameter): Invalid parameter".
    MString errorString() const;
    // Writes "<text>: <errorString>" to standard error.
    void perror(const char* text) const;
    void perror(const MString& text) const;

  private:
    MStatusCode fCode;
};

using MS = MStatus;

MAYA_API_NAMESPACE_CLOSE
