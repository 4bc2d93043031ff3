#include "graph/attribute.h"

namespace torvel {
namespace {

struct TypeName {
    AttrType type;
    const char* name;
};

// The first name of a type is the one written; the others are read as well.
const TypeName kTypeNames[] = {{AttrType::Bool, "bool"},
                               {AttrType::Byte, "byte"},
                               {AttrType::Byte, "char"},
                               {AttrType::Short, "short"},
                               {AttrType::Long, "long"},
                               {AttrType::Long, "int"},
                               {AttrType::Long, "int64"},
                               {AttrType::Enum, "enum"},
                               {AttrType::Float, "float"},
                               {AttrType::Float, "floatLinear"},
                               {AttrType::Double, "double"},
                               {AttrType::Angle, "doubleAngle"},
                               {AttrType::Angle, "floatAngle"},
                               {AttrType::Distance, "doubleLinear"},
                               {AttrType::Time, "time"},
                               {AttrType::String, "string"},
                               {AttrType::Matrix, "matrix"},
                               {AttrType::Matrix, "fltMatrix"},
                               {AttrType::Message, "message"},
                               {AttrType::Double2, "double2"},
                               {AttrType::Double3, "double3"},
                               {AttrType::Double4, "double4"},
                               {AttrType::Float2, "float2"},
                               {AttrType::Float3, "float3"},
                               {AttrType::Long2, "long2"},
                               {AttrType::Long3, "long3"},
                               {AttrType::Short2, "short2"},
                               {AttrType::Short3, "short3"},
                               {AttrType::Compound, "compound"},
                               {AttrType::Mesh, "mesh"},
                               {AttrType::NurbsCurve, "nurbsCurve"},
                               {AttrType::NurbsSurface, "nurbsSurface"},
                               {AttrType::ComponentList, "componentList"},
                               {AttrType::IntArray, "Int32Array"},
                               {AttrType::DoubleArray, "doubleArray"},
                               {AttrType::VectorArray, "vectorArray"},
                               {AttrType::PointArray, "pointArray"},
                               {AttrType::StringArray, "stringArray"},
                               {AttrType::Text, "data"},
                               {AttrType::Any, "any"}};

}  // namespace

bool isNumeric(AttrType type) {
    return type <= AttrType::Time;
}

bool isCompound(AttrType type) {
    return type >= AttrType::Double2 && type <= AttrType::Compound;
}

const char* attrTypeName(AttrType type) {
    for (const TypeName& row : kTypeNames)
        if (row.type == type)
            return row.name;
    return "data";
}

bool attrTypeFromName(std::string_view name, AttrType& type) {
    for (const TypeName& row : kTypeNames)
        if (name == row.name) {
            type = row.type;
            return true;
        }
    return false;
}

}  // namespace torvel
