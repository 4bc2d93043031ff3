// An ordered list of nodes, DAG paths and plugs.
#pragma once

#include <maya/MObject.h>
#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MSelectionList {
  public:
    MSelectionList();
    MSelectionList(const MSelectionList& other);
    ~MSelectionList();
    MSelectionList& operator=(const MSelectionList& other);

    // A null or deleted object, an invalid path, a null plug and a text that matches nothing fail
    // and leave the list as it was. Without merging, repeats are kept.
    MStatus add(const MObject& object, const bool mergeWithExisting = false);
    // Components are not supported: one that is not null fails.
    MStatus add(const MDagPath& path, const MObject& component = MObject::kNullObj,
                const bool mergeWithExisting = false);
    // All matches of a name, a path or a pattern with * and ?: fewest path components first, ties
    // in the order of the DAG, other nodes last.
    MStatus add(const MString& match, const bool searchChildNamespacesToo = false);
    MStatus add(const MPlug& plug, const bool mergeWithExisting = false);
    MStatus add(const MUuid& uuid, bool mergeWithExisting = false);

    unsigned int length(MStatus* ReturnStatus = nullptr) const;
    bool isEmpty(MStatus* ReturnStatus = nullptr) const;
    MStatus clear();
    MStatus remove(unsigned int index);

    // An index past the end fails.
    MStatus getDependNode(unsigned int index, MObject& node) const;
    // Fails for an item that is no DAG node. `component` becomes null.
    MStatus getDagPath(unsigned int index, MDagPath& path,
                       MObject& component = MObject::kNullObj) const;
    // Fails for an item that is no plug.
    MStatus getPlug(unsigned int index, MPlug& plug) const;
    // Replaces the contents of `strings` by the names of one item.
    MStatus getSelectionStrings(unsigned int index, MStringArray& strings) const;
    MStatus getSelectionStrings(MStringArray& strings) const;
    bool hasItem(const MObject& object, MStatus* ReturnStatus = nullptr) const;

  private:
    friend struct MApiBridge;
    struct Data;
    Data* fData;
};

MAYA_API_NAMESPACE_CLOSE
