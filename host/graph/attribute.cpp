#include "graph/attribute.h"

#include <cmath>

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

// Whole numbers have 32 bits; no number counts as 0.
double whole(double value) {
    if (std::isnan(value))
        return 0.0;
    const double rounded = value > 0 ? std::floor(value + 0.5) : std::ceil(value - 0.5);
    return std::fmin(std::fmax(rounded, -2147483648.0), 2147483647.0) + 0.0;  // no -0
}

}  // namespace

bool isNumeric(AttrType type) {
    return type <= AttrType::Time;
}

double asAttrType(AttrType type, double value) {
    switch (type) {
        case AttrType::Bool: return value != 0.0 ? 1.0 : 0.0;
        case AttrType::Byte:
        case AttrType::Short:
        case AttrType::Long:
        case AttrType::Enum: return whole(value);
        case AttrType::Float: return static_cast<double>(static_cast<float>(value));
        default: return value;
    }
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
