// A queue of changes to the DAG and to connections.
#pragma once

#include <maya/MDGModifier.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MDagModifier : public MDGModifier {
  public:
    MDagModifier();
    ~MDagModifier() override;

    // The node exists at once; it counts as part of the scene after doIt. A shape without a parent
    // gets a transform, which is returned. An unknown type or parent gives the null object.
    MObject createNode(const MString& type, const MObject& parent = MObject::kNullObj,
                       MStatus* ReturnStatus = nullptr);
    MObject createNode(const MTypeId& type, const MObject& parent = MObject::kNullObj,
                       MStatus* ReturnStatus = nullptr);
    // Keeps the local transform. A null node, a cycle and a parent that is no transform are
    // refused; the null object as parent means the world.
    MStatus reparentNode(const MObject& node, const MObject& newParent = MObject::kNullObj);
};

MAYA_API_NAMESPACE_CLOSE
