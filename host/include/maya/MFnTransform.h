// Position of a transform.
#pragma once

#include <maya/MFnDagNode.h>
#include <maya/MSpace.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MFnTransform : public MFnDagNode {
  public:
    MFnTransform();
    explicit MFnTransform(MObject& object, MStatus* ReturnStatus = nullptr);
    explicit MFnTransform(const MObject& object, MStatus* ReturnStatus = nullptr);
    explicit MFnTransform(const MDagPath& path, MStatus* ReturnStatus = nullptr);
    ~MFnTransform() override;

    MFn::Type type() const override;

    // A top-level transform; attached and returned.
    MObject create(const MObject& parent = MObject::kNullObj, MStatus* ReturnStatus = nullptr);

    // kTransform and kObject are the translate channels; kWorld is the translation part of the
    // world matrix and needs an attached path. Pivots play no part. Centimetres.
    MVector getTranslation(MSpace::Space space, MStatus* ReturnStatus = nullptr) const;
    MStatus setTranslation(const MVector& translation, MSpace::Space space);
};

MAYA_API_NAMESPACE_CLOSE
