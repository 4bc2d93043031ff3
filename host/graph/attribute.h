#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "graph/plug.h"

namespace torvel {

enum class AttrType : std::uint8_t {
    Bool,
    Byte,
    Short,
    Long,
    Enum,
    Float,
    Double,
    Angle,
    Distance,
    Time,
    String,
    Matrix,
    Message,
    Double2,
    Double3,
    Double4,
    Float2,
    Float3,
    Long2,
    Long3,
    Short2,
    Short3,
    Compound,
    Mesh,
    NurbsCurve,
    NurbsSurface,
    ComponentList,
    IntArray,
    DoubleArray,
    VectorArray,
    PointArray,
    StringArray,
    Text,  ///< a data type the host keeps as text only (TextData)
    Any    ///< opaque: made on demand for attributes the host does not know; takes every connection
};

bool isNumeric(AttrType type);  ///< one number
/// What a plug of this type makes of a number: rounded, cut to float, 0 or 1.
double asAttrType(AttrType type, double value);
bool isCompound(AttrType type);  ///< has children
/// Spelling in addAttr -at and getAttr -type: "doubleLinear", "double3", "matrix" ...
const char* attrTypeName(AttrType type);
/// Inverse of attrTypeName; false when unknown.
bool attrTypeFromName(std::string_view name, AttrType& type);

enum AttrFlag : std::uint32_t {
    kKeyable = 1u << 0,
    kArray = 1u << 1,
    kOutput = 1u << 2,     ///< computed by the node's evaluate function, not writable, not stored
    kNotStored = 1u << 3,  ///< writable, but never written to a file
    kHidden = 1u << 4,
    kChannelBox = 1u << 5,
    kNextAvailable = 1u << 6,  ///< indexMatters off: connectAttr -na finds the next element
    kDynamic = 1u << 7,        ///< made by addAttr
    kNotReadable = 1u << 8,
    kNotConnectable = 1u << 9,
    kBulk = 1u << 10,        ///< array whose values live in one BulkArray payload
    kGeometryIn = 1u << 11,  ///< takes part in geometry pass-through and history walks
    kGeometryOut = 1u << 12,
    kDeleteElement =
        1u << 13,        ///< an element vanishes when its connection goes (skinCluster.matrix)
    kOpaque = 1u << 14,  ///< made on demand, known to files only
    kPerInstance =
        1u << 15  ///< output array with one element for each DAG path (worldMatrix and its kin)
};

/// One row of a node type's table. Children of a compound follow it and name it in `parent`; the
/// children of Double3 and its like are made by themselves (suffix X Y Z, or the letters in
/// `childSuffixes`).
struct AttrRow {
    const char* longName;
    const char* shortName;
    AttrType type;
    double defaultValue = 0.0;
    std::uint32_t flags = 0;
    const char* affects = "";  ///< blank-separated long names of the outputs it dirties
    const char* parent = nullptr;
    AttrType childType = AttrType::Double;  ///< of the children made by themselves
    const char* childSuffixes = "XYZ";
    const char* enumNames = nullptr;  ///< "xyz:yzx:..." or "Bone=0:Box=1"
    double minimum = -1e300;
    double maximum = 1e300;
};

/// An attribute as the graph uses it.
struct AttrInfo {
    std::string longName;
    std::string shortName;
    AttrType type = AttrType::Double;
    std::uint32_t flags = 0;
    double defaultValue = 0.0;
    double minimum = -1e300, maximum = 1e300;
    double softMinimum = -1e300, softMaximum = 1e300;
    std::vector<std::string> enumNames;
    std::string niceName;
    std::string addAttrText;  ///< dynamic: the flags as read from a file, for saving

    AttrIndex parent = kNoAttr;
    std::vector<AttrIndex> children;
    std::vector<AttrIndex> affects;    ///< outputs to dirty
    std::vector<AttrIndex> dependsOn;  ///< inverse: inputs of this output (root attributes)
    int arrayDepth = 0;                ///< arrays on the way from the root, this one included
    AttrIndex arrayOwner = kNoAttr;    ///< nearest array at or above it; kNoAttr when none
    AttrIndex bulkOwner = kNoAttr;     ///< the kBulk array at or above it
    std::uint32_t slot = 0;  ///< position in the node (no array above) or in the array's element
    std::uint32_t elementSize = 0;  ///< of an array: slots of one element
    int childNumber = 0;            ///< position among its parent's children

    bool is(std::uint32_t flag) const { return (flags & flag) != 0; }
    bool isArray() const { return is(kArray); }
};

}  // namespace torvel
