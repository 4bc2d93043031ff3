// What all function sets share: the object they are attached to.
#pragma once

#include <maya/MFn.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MFnBase {
  public:
    MFnBase();
    virtual ~MFnBase();
    MFnBase(const MFnBase&) = delete;
    MFnBase& operator=(const MFnBase&) = delete;

    virtual MFn::Type type() const;
    bool hasObj(MFn::Type type) const;
    bool hasObj(const MObject& object) const;
    // The null object with a failure when nothing is attached or the node was deleted.
    MObject object(MStatus* ReturnStatus = nullptr) const;

    // A null or incompatible object fails with kInvalidParameter and leaves the function set empty:
    // its functions then fail and return an empty text, 0 or the null object.
    virtual MStatus setObject(MObject& object);
    virtual MStatus setObject(const MObject& object);

    // Whether the value is the type of an object; false for kInvalid.
    static bool isValid(MFn::Type type);
    // The constant's name, such as "kJoint".
    static const char* typeString(MFn::Type type);

  protected:
    friend struct MApiBridge;
    MStatus attach(const MObject& object, MFn::Type required);

    MObject fObject;
};

MAYA_API_NAMESPACE_CLOSE
