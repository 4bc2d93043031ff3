// Walks over the nodes that connections reach from a root, the root included.
#pragma once

#include <maya/MFn.h>
#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MItDependencyGraph {
  public:
    enum Direction { kDownstream = 0, kUpstream = 1 };
    enum Traversal { kDepthFirst = 0, kBreadthFirst = 1 };
    enum Level { kNodeLevel = 0, kPlugLevel = 1 };

    // Every connection of a node is followed and each node reported once. Nodes that fail the
    // filter are walked through. A null root, and the plug level, fail: the walk is done at once.
    explicit MItDependencyGraph(MObject& root, MFn::Type filter = MFn::kInvalid,
                                Direction direction = kDownstream,
                                Traversal traversal = kDepthFirst, Level level = kNodeLevel,
                                MStatus* ReturnStatus = nullptr);
    explicit MItDependencyGraph(MPlug& root, MFn::Type filter = MFn::kInvalid,
                                Direction direction = kDownstream,
                                Traversal traversal = kDepthFirst, Level level = kPlugLevel,
                                MStatus* ReturnStatus = nullptr);
    ~MItDependencyGraph();
    MItDependencyGraph(const MItDependencyGraph&) = delete;
    MItDependencyGraph& operator=(const MItDependencyGraph&) = delete;

    bool isDone(MStatus* ReturnStatus = nullptr);
    MStatus next();
    // The next step leaves out what the current node alone leads to.
    MStatus prune();
    MObject currentItem(MStatus* ReturnStatus = nullptr);

  private:
    struct Data;
    Data* fData;
};

MAYA_API_NAMESPACE_CLOSE
