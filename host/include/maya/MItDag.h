// Walks over the nodes below a root, the root included.
#pragma once

#include <maya/MFn.h>
#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MItDag {
  public:
    enum TraversalType { kInvalidType, kDepthFirst, kBreadthFirst };

    // Starts at the world. Nodes that fail the filter are not reported but still walked through.
    explicit MItDag(TraversalType traversal = kDepthFirst, MFn::Type filter = MFn::kInvalid,
                    MStatus* ReturnStatus = nullptr);
    ~MItDag();
    MItDag(const MItDag&) = delete;
    MItDag& operator=(const MItDag&) = delete;

    // Stands on the first match of the new root. Traversal and filter are those given here, not
    // those given before. An invalid root fails and ends the walk.
    MStatus reset(const MObject& root, TraversalType traversal = kDepthFirst,
                  MFn::Type filter = MFn::kInvalid);
    MStatus reset(const MDagPath& root, TraversalType traversal = kDepthFirst,
                  MFn::Type filter = MFn::kInvalid);
    // From the world, depth first, without a filter.
    MStatus reset();

    bool isDone(MStatus* ReturnStatus = nullptr) const;
    MStatus next();
    // The next step leaves out what lies below the current node.
    MStatus prune();

    MObject currentItem(MStatus* ReturnStatus = nullptr);
    MStatus getPath(MDagPath& path) const;
    MString fullPathName(MStatus* ReturnStatus = nullptr) const;
    // Levels below the root: 0 for the root itself.
    unsigned int depth(MStatus* ReturnStatus = nullptr) const;

  private:
    struct Data;
    Data* fData;
};

MAYA_API_NAMESPACE_CLOSE
