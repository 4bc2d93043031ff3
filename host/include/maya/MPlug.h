// One attribute of one node, or an element or child of it. A plain value: it owns no memory.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MPlug {
  public:
    // The null plug. Every question to it fails with false, 0 or another null plug.
    MPlug();
    MPlug(const MPlug& other) = default;
    MPlug(const MObject& node, const MObject& attribute);
    ~MPlug() = default;
    MPlug& operator=(const MPlug& other) = default;

    bool isNull(MStatus* ReturnStatus = nullptr) const;
    // "node.attribute", elements as "node.array[2]".
    MString name(MStatus* ReturnStatus = nullptr) const;
    MObject node(MStatus* ReturnStatus = nullptr) const;
    MObject attribute(MStatus* ReturnStatus = nullptr) const;

    bool isArray(MStatus* ReturnStatus = nullptr) const;
    bool isElement(MStatus* ReturnStatus = nullptr) const;
    // Elements that exist now; nothing is evaluated.
    unsigned int numElements(MStatus* ReturnStatus = nullptr) const;
    // The same after evaluating what feeds the array.
    unsigned int evaluateNumElements(MStatus* ReturnStatus = nullptr);
    // Position among the existing elements, which are in ascending logical order.
    MPlug elementByPhysicalIndex(unsigned int physicalIndex, MStatus* ReturnStatus = nullptr) const;
    // Any index of an array gives a plug; the element comes into being when it is connected.
    MPlug elementByLogicalIndex(unsigned int logicalIndex, MStatus* ReturnStatus = nullptr) const;
    unsigned int logicalIndex(MStatus* ReturnStatus = nullptr) const;

    bool isCompound(MStatus* ReturnStatus = nullptr) const;
    bool isChild(MStatus* ReturnStatus = nullptr) const;
    unsigned int numChildren(MStatus* ReturnStatus = nullptr) const;
    MPlug child(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MPlug child(const MObject& attribute, MStatus* ReturnStatus = nullptr) const;

    // Replaces the contents of `array` by the source of this very plug (`asDst`) and its
    // destinations (`asSrc`); children and elements are not looked at. True when any was found.
    bool connectedTo(MPlugArray& array, bool asDst, bool asSrc,
                     MStatus* ReturnStatus = nullptr) const;
    bool isConnected(MStatus* ReturnStatus = nullptr) const;

    bool operator==(const MPlug& other) const;
    bool operator!=(const MPlug& other) const;
    // With an attribute.
    bool operator==(const MObject& attribute) const;
    bool operator!=(const MObject& attribute) const;

  private:
    friend struct MApiBridge;
    alignas(8) unsigned int fData[8];
};

MAYA_API_NAMESPACE_CLOSE
