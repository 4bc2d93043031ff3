// Walks over the items of a selection list that have a given type.
#pragma once

#include <maya/MFn.h>
#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MItSelectionList {
  public:
    // Keeps a copy of the list and stands on the first match. kInvalid passes everything.
    explicit MItSelectionList(const MSelectionList& list, MFn::Type filter = MFn::kInvalid,
                              MStatus* ReturnStatus = nullptr);
    ~MItSelectionList();
    MItSelectionList(const MItSelectionList&) = delete;
    MItSelectionList& operator=(const MItSelectionList&) = delete;

    bool isDone(MStatus* ReturnStatus = nullptr);
    MStatus next();
    MStatus reset();
    // Starts over with the new filter.
    MStatus setFilter(MFn::Type filter);

    MStatus getDependNode(MObject& node);
    // Fail for an item that is no DAG node.
    MStatus getDagPath(MDagPath& path);
    MStatus getDagPath(MDagPath& path, MObject& component);
    MStatus getPlug(MPlug& plug);

  private:
    struct Data;
    Data* fData;
};

MAYA_API_NAMESPACE_CLOSE
