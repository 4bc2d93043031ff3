// Control vertices of a NURBS curve.
#pragma once

#include <maya/MFnDagNode.h>
#include <maya/MSpace.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MFnNurbsCurve : public MFnDagNode {
  public:
    enum Form { kInvalid, kOpen, kClosed, kPeriodic, kLast };

    MFnNurbsCurve();
    explicit MFnNurbsCurve(MObject& object, MStatus* ReturnStatus = nullptr);
    explicit MFnNurbsCurve(const MObject& object, MStatus* ReturnStatus = nullptr);
    explicit MFnNurbsCurve(const MDagPath& path, MStatus* ReturnStatus = nullptr);
    ~MFnNurbsCurve() override;

    MFn::Type type() const override;

    // A curve below `parentOrOwner`; below a new transform, which is returned, for the null object.
    // The function set is attached to the shape. The count of knots has to be that of the vertices
    // plus degree minus 1, and knots may not descend; otherwise nothing is made.
    MObject create(const MPointArray& cvs, const MDoubleArray& knots, unsigned int degree,
                   Form form, bool create2D, bool createRational,
                   const MObject& parentOrOwner = MObject::kNullObj,
                   MStatus* ReturnStatus = nullptr);

    int numCVs(MStatus* ReturnStatus = nullptr) const;
    int numKnots(MStatus* ReturnStatus = nullptr) const;
    int numSpans(MStatus* ReturnStatus = nullptr) const;
    int degree(MStatus* ReturnStatus = nullptr) const;
    Form form(MStatus* ReturnStatus = nullptr) const;
    MStatus getKnots(MDoubleArray& knots) const;
    // kWorld needs an attached path.
    MStatus getCVs(MPointArray& cvs, MSpace::Space space = MSpace::kObject) const;
    // As many points as the curve has vertices. With construction history they are kept as offsets
    // on top of what the history makes.
    MStatus setCVs(const MPointArray& cvs, MSpace::Space space = MSpace::kObject);
    MStatus updateCurve();
};

MAYA_API_NAMESPACE_CLOSE
