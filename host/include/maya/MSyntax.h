// The flags of a plug-in's command. Only commands without a syntax are supported: registering one
// with a syntax is refused.
#pragma once

#include <maya/MApiNamespace.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MSyntax {
  public:
    MSyntax();
    MSyntax(const MSyntax& other);
    ~MSyntax();
    MSyntax& operator=(const MSyntax& other);
};

MAYA_API_NAMESPACE_CLOSE
