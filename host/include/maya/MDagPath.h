// The way from the world down to one node.
#pragma once

#include <maya/MFn.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MDagPath {
  public:
    // Not valid. A path also stops being valid when its node is deleted; the functions below then
    // fail and return an empty text, the null object or 0.
    MDagPath();
    MDagPath(const MDagPath& other) = default;
    ~MDagPath() = default;
    MDagPath& operator=(const MDagPath& other) = default;

    // The first path to a node. A null object or one that is no DAG node: failure, `path` not
    // valid.
    static MStatus getAPathTo(const MObject& node, MDagPath& path);
    static MDagPath getAPathTo(const MObject& node, MStatus* ReturnStatus = nullptr);

    bool isValid(MStatus* ReturnStatus = nullptr) const;
    MObject node(MStatus* ReturnStatus = nullptr) const;
    // The lowest transform of the path.
    MObject transform(MStatus* ReturnStatus = nullptr) const;
    // Nodes below the world: 1 for a top-level node.
    unsigned int length(MStatus* ReturnStatus = nullptr) const;
    MFn::Type apiType(MStatus* ReturnStatus = nullptr) const;
    bool hasFn(MFn::Type type, MStatus* ReturnStatus = nullptr) const;

    // "|a|b"; empty for the world.
    MString fullPathName(MStatus* ReturnStatus = nullptr) const;
    // The shortest ending of the full path that names this node alone.
    MString partialPathName(MStatus* ReturnStatus = nullptr) const;

    unsigned int childCount(MStatus* ReturnStatus = nullptr) const;
    MObject child(unsigned int index, MStatus* ReturnStatus = nullptr) const;

    // Removes nodes from the lower end; refused beyond the world.
    MStatus pop(unsigned int num = 1);
    // Refused when the object is no child of the path's node.
    MStatus push(const MObject& child);
    // Down to the only shape that is no intermediate object. Without one, or with several, the call
    // fails and the path stays. A path that ends in a shape already stays and succeeds.
    MStatus extendToShape();
    // Down to the shape of that number among the shapes directly below.
    MStatus extendToShapeDirectlyBelow(unsigned int index);
    MStatus numberOfShapesDirectlyBelow(unsigned int& count) const;
    MStatus set(const MDagPath& source);

    MMatrix inclusiveMatrix(MStatus* ReturnStatus = nullptr) const;
    MMatrix exclusiveMatrix(MStatus* ReturnStatus = nullptr) const;

    bool operator==(const MDagPath& other) const;
    bool operator!=(const MDagPath& other) const;

  private:
    friend struct MApiBridge;
    unsigned int fIndex;
    unsigned int fGeneration;
    unsigned int fInstance;
    unsigned int fState;
};

MAYA_API_NAMESPACE_CLOSE
