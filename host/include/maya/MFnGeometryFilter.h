// Geometry that goes through a deformer.
#pragma once

#include <maya/MFnDependencyNode.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MFnGeometryFilter : public MFnDependencyNode {
  public:
    MFnGeometryFilter();
    explicit MFnGeometryFilter(MObject& object, MStatus* ReturnStatus = nullptr);
    explicit MFnGeometryFilter(const MObject& object, MStatus* ReturnStatus = nullptr);
    ~MFnGeometryFilter() override;

    MFn::Type type() const override;

    // Replace the contents of `objects` by shapes, one per connected index in ascending order.
    // Other deformers between this one and the shape are walked through.
    MStatus getInputGeometry(MObjectArray& objects) const;
    MStatus getOutputGeometry(MObjectArray& objects) const;
};

MAYA_API_NAMESPACE_CLOSE
