// The number of a node type.
#pragma once

#include <maya/MApiNamespace.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MTypeId {
  public:
    MTypeId() : fId(0) {}
    MTypeId(const MTypeId& other) = default;
    MTypeId(unsigned int id) : fId(id) {}
    MTypeId(unsigned int prefix, unsigned int id) : fId((prefix << 8) | id) {}
    MTypeId& operator=(const MTypeId& other) = default;

    bool operator==(const MTypeId& other) const { return fId == other.fId; }
    bool operator!=(const MTypeId& other) const { return fId != other.fId; }
    unsigned int id() const { return fId; }

  private:
    unsigned int fId;
};

MAYA_API_NAMESPACE_CLOSE
