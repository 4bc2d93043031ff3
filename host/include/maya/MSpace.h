// The spaces in which positions and transformations are given.
#pragma once

#include <maya/MApiNamespace.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MSpace {
  public:
    enum Space {
        kInvalid = 0,
        kTransform = 1,
        kPreTransform = 2,
        kObject = 2,
        kPostTransform = 3,
        kWorld = 4
    };
};

MAYA_API_NAMESPACE_CLOSE
