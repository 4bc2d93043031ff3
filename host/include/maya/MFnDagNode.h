// Parents, children and paths of a DAG node.
#pragma once

#include <maya/MFnDependencyNode.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MFnDagNode : public MFnDependencyNode {
  public:
    MFnDagNode();
    explicit MFnDagNode(MObject& object, MStatus* ReturnStatus = nullptr);
    explicit MFnDagNode(const MObject& object, MStatus* ReturnStatus = nullptr);
    explicit MFnDagNode(const MDagPath& path, MStatus* ReturnStatus = nullptr);
    ~MFnDagNode() override;

    MFn::Type type() const override;
    MStatus setObject(MObject& object) override;
    MStatus setObject(const MObject& object) override;
    virtual MStatus setObject(const MDagPath& path);

    // Makes a node below `parent` (the world for the null object) and attaches to it. A shape
    // without a parent gets a transform, which is returned and attached instead.
    MObject create(const MString& type, const MObject& parent = MObject::kNullObj,
                   MStatus* ReturnStatus = nullptr);
    MObject create(const MString& type, const MString& name,
                   const MObject& parent = MObject::kNullObj, MStatus* ReturnStatus = nullptr);
    MObject create(const MTypeId& type, const MObject& parent = MObject::kNullObj,
                   MStatus* ReturnStatus = nullptr);

    // A top-level node has one parent, the world.
    unsigned int parentCount(MStatus* ReturnStatus = nullptr) const;
    MObject parent(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    bool hasParent(const MObject& node, MStatus* ReturnStatus = nullptr) const;
    // Shapes and constraints included, in the order of the DAG.
    unsigned int childCount(MStatus* ReturnStatus = nullptr) const;
    MObject child(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    bool hasChild(const MObject& node, MStatus* ReturnStatus = nullptr) const;
    bool isParentOf(const MObject& node, MStatus* ReturnStatus = nullptr) const;
    bool isChildOf(const MObject& node, MStatus* ReturnStatus = nullptr) const;

    // Puts an existing node below this one.
    MStatus addChild(MObject& child, unsigned int index = kNextPos,
                     bool keepExistingParents = false);
    // The child goes below the world.
    MStatus removeChild(MObject& child);

    // Copies the sub-tree under the same parent without connections to the outside and returns the
    // copy of the top. Instances are refused.
    MObject duplicate(bool instance = false, bool instanceLeaf = false,
                      MStatus* ReturnStatus = nullptr) const;

    // Of the attached path, else of the node's first path.
    MString fullPathName(MStatus* ReturnStatus = nullptr) const;
    MString partialPathName(MStatus* ReturnStatus = nullptr) const;
    MStatus getPath(MDagPath& path);
    // Fails unless a path was attached.
    MDagPath dagPath(MStatus* ReturnStatus = nullptr) const;
    bool isIntermediateObject(MStatus* ReturnStatus = nullptr) const;

    enum { kNextPos = 0xff };

  protected:
    friend struct MApiBridge;
    MStatus readPath(MDagPath& path) const;
    unsigned int fPath[4];
};

MAYA_API_NAMESPACE_CLOSE
