// The lasting identity of a node.
#pragma once

#include <maya/MApiNamespace.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MUuid {
  public:
    // Not valid.
    MUuid();
    MUuid(const MUuid& other) = default;
    // Reads "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX"; any other text leaves it not valid.
    MUuid(const MString& text);
    MUuid& operator=(const MUuid& other) = default;

    bool operator==(const MUuid& other) const;
    bool operator!=(const MUuid& other) const;
    bool valid() const;
    MString asString() const;

  private:
    unsigned char fBytes[16];
};

MAYA_API_NAMESPACE_CLOSE
