// Names, type and attributes of any node.
#pragma once

#include <maya/MFnBase.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MFnDependencyNode : public MFnBase {
  public:
    MFnDependencyNode();
    explicit MFnDependencyNode(MObject& object, MStatus* ReturnStatus = nullptr);
    explicit MFnDependencyNode(const MObject& object, MStatus* ReturnStatus = nullptr);
    ~MFnDependencyNode() override;

    MFn::Type type() const override;

    // Makes a node and attaches to it; an unknown type gives the null object.
    MObject create(const MString& type, MStatus* ReturnStatus = nullptr);
    MObject create(const MString& type, const MString& name, MStatus* ReturnStatus = nullptr);
    MObject create(const MTypeId& type, MStatus* ReturnStatus = nullptr);

    // The short name with its namespace.
    MString name(MStatus* ReturnStatus = nullptr) const;
    MString typeName(MStatus* ReturnStatus = nullptr) const;
    // Makes the name legal and unique and returns the one given.
    MString setName(const MString& name, bool createNamespace = false,
                    MStatus* ReturnStatus = nullptr);
    MUuid uuid(MStatus* ReturnStatus = nullptr) const;

    // Long and short names both resolve, added attributes too; an unknown one gives the null plug.
    MPlug findPlug(const MString& attribute, bool wantNetworkedPlug,
                   MStatus* ReturnStatus = nullptr) const;
    MPlug findPlug(const MObject& attribute, bool wantNetworkedPlug,
                   MStatus* ReturnStatus = nullptr) const;
    // Pass whether a networked plug is wanted.
    MPlug findPlug(const MString& attribute, MStatus* ReturnStatus) const = delete;
    MPlug findPlug(const MObject& attribute, MStatus* ReturnStatus) const = delete;

    MObject attribute(const MString& attribute, MStatus* ReturnStatus = nullptr) const;
    bool hasAttribute(const MString& attribute, MStatus* ReturnStatus = nullptr) const;
    bool hasUniqueName(MStatus* ReturnStatus = nullptr) const;
};

MAYA_API_NAMESPACE_CLOSE
