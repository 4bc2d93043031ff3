// Names a node (or an attribute of one, or a plug-in) without owning it. It survives renaming and
// reparenting; once the node is deleted every question is answered as by the null object.
#pragma once

#include <maya/MFn.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MObject {
  public:
    // The null object.
    MObject();
    MObject(const MObject& other) = default;
    ~MObject() = default;
    MObject& operator=(const MObject& other) = default;

    bool hasFn(MFn::Type type) const;
    bool isNull() const;
    // kInvalid for the null object and for a deleted node.
    MFn::Type apiType() const;
    // The constant's name, such as "kJoint".
    const char* apiTypeStr() const;

    bool operator==(const MObject& other) const;
    bool operator!=(const MObject& other) const;

    static MObject kNullObj;

  private:
    friend struct MApiBridge;
    unsigned int fIndex;
    unsigned int fGeneration;
    unsigned int fAttribute;
    unsigned int fKind;
};

MAYA_API_NAMESPACE_CLOSE
