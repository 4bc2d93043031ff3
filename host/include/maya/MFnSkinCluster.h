// The influences of a skin.
#pragma once

#include <maya/MFnGeometryFilter.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MFnSkinCluster : public MFnGeometryFilter {
  public:
    MFnSkinCluster();
    explicit MFnSkinCluster(MObject& object, MStatus* ReturnStatus = nullptr);
    explicit MFnSkinCluster(const MObject& object, MStatus* ReturnStatus = nullptr);
    ~MFnSkinCluster() override;

    MFn::Type type() const override;

    // Replaces the contents of `paths` by the influences in ascending order of their index in the
    // cluster's `matrix`; returns their count.
    unsigned int influenceObjects(MDagPathArray& paths, MStatus* ReturnStatus = nullptr) const;
};

MAYA_API_NAMESPACE_CLOSE
