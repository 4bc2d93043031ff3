#include "nodes/shape/mesh_types.h"

#include "nodes/shape/mesh.h"
#include "nodes/shape/poly_shapes.h"
#include "nodes/core/rows.h"

namespace torvel {
namespace {

constexpr int kFnMesh = 296;
constexpr int kFnPolyCreator = 434;
constexpr int kFnPolyCube = 435;
constexpr int kFnPolyCylinder = 436;
constexpr int kFnPolyPlane = 437;

constexpr const char* kMeshOutputs = "outMesh worldMesh";
constexpr std::uint32_t kBlock = kArray | kBulk;

constexpr AttrRow kMeshAttrs[] = {
    attrRow("outMesh", "o", AttrType::Mesh, 0.0, kOutput | kNotStored | kGeometryOut),
    attrRow("worldMesh", "w", AttrType::Mesh, 0.0, kOutput | kNotStored | kGeometryOut | kArray),
    attrRow("inMesh", "i", AttrType::Mesh, 0.0, kNotStored | kGeometryIn, kMeshOutputs),
    compoundRow("pnts", "pt", AttrType::Float3, kBlock, kMeshOutputs),
    under("pnts", attrRow("pntx", "px", AttrType::Float)),
    under("pnts", attrRow("pnty", "py", AttrType::Float)),
    under("pnts", attrRow("pntz", "pz", AttrType::Float)),
    compoundRow("vrts", "vt", AttrType::Float3, kBlock, kMeshOutputs),
    under("vrts", attrRow("vrtx", "vx", AttrType::Float)),
    under("vrts", attrRow("vrty", "vy", AttrType::Float)),
    under("vrts", attrRow("vrtz", "vz", AttrType::Float)),
    compoundRow("edge", "ed", AttrType::Long3, kBlock, kMeshOutputs),
    under("edge", attrRow("edg1", "e1", AttrType::Long)),
    under("edge", attrRow("edg2", "e2", AttrType::Long)),
    under("edge", attrRow("edgh", "eh", AttrType::Long)),
    attrRow("face", "fc", AttrType::Text, 0.0, kBlock, kMeshOutputs),
    attrRow("tweakLocation", "twl", AttrType::Any, 0.0, kNotStored),
    attrRow("displaySmoothMesh", "dsm", AttrType::Byte),
    attrRow("smoothLevel", "lev", AttrType::Short),
    attrRow("visibleInReflections", "vir", AttrType::Bool),
    attrRow("visibleInRefractions", "vif", AttrType::Bool),
    attrRow("doubleSided", "ds", AttrType::Bool, 1.0),
    attrRow("opposite", "op", AttrType::Bool),
    attrRow("castsShadows", "csh", AttrType::Bool, 1.0),
    attrRow("receiveShadows", "rcsh", AttrType::Bool, 1.0),
    attrRow("motionBlur", "mb", AttrType::Bool, 1.0),
    attrRow("primaryVisibility", "vis", AttrType::Bool, 1.0),
    attrRow("displayColors", "dcol", AttrType::Bool),
    attrRow("vertexColorSource", "vcs", AttrType::Byte, 1.0),
};
constexpr AffectRow kMeshAffects[] = {{"outMesh", "worldMesh"}};

constexpr AttrRow kPolyCreatorAttrs[] = {
    attrRow("output", "out", AttrType::Mesh, 0.0, kOutput | kNotStored | kGeometryOut),
    compoundRow("axis", "ax", AttrType::Double3, 0, "output"),
    under("axis", attrRow("axisX", "axx", AttrType::Double)),
    under("axis", attrRow("axisY", "axy", AttrType::Double, 1.0)),
    under("axis", attrRow("axisZ", "axz", AttrType::Double)),
    attrRow("createUVs", "cuv", AttrType::Byte, 2.0),
};

constexpr AttrRow lengthRow(const char* longName, const char* shortName, double value = 1.0) {
    return within(attrRow(longName, shortName, AttrType::Distance, value, kKeyable, "output"),
                  0.0001);
}

constexpr AttrRow countRow(const char* longName, const char* shortName, double value,
                           double least = 1.0) {
    return within(attrRow(longName, shortName, AttrType::Long, value, kKeyable, "output"), least);
}

constexpr AttrRow kPolyCubeAttrs[] = {
    lengthRow("width", "w"),
    lengthRow("height", "h"),
    lengthRow("depth", "d"),
    countRow("subdivisionsWidth", "sw", 1),
    countRow("subdivisionsHeight", "sh", 1),
    countRow("subdivisionsDepth", "sd", 1),
};
constexpr AttrRow kPolyPlaneAttrs[] = {
    lengthRow("width", "w"),
    lengthRow("height", "h"),
    countRow("subdivisionsWidth", "sw", 10),
    countRow("subdivisionsHeight", "sh", 10),
};
constexpr AttrRow kPolyCylinderAttrs[] = {
    lengthRow("radius", "r"),
    lengthRow("height", "h", 2.0),
    countRow("subdivisionsAxis", "sa", 20, 3),
    countRow("subdivisionsHeight", "sh", 1),
    countRow("subdivisionsCaps", "sc", 1, 0),
};

const NodeTypeRow kMeshShape = typeRow("mesh", "deformableShape", kFnMesh, "kMesh", kMeshAttrs,
                                       kMeshAffects, 0, evaluateMesh, createdMesh);
const NodeTypeRow kPolyCreator =
    typeRow("polyCreator", "dependNode", kFnPolyCreator, "kPolyCreator", kPolyCreatorAttrs,
            kAbstractType | kHistoryMaker);
const NodeTypeRow kPolyCube = typeRow("polyCube", "polyCreator", kFnPolyCube, "kPolyCube",
                                      kPolyCubeAttrs, kHistoryMaker, evaluatePolyCube);
const NodeTypeRow kPolyPlane = typeRow("polyPlane", "polyCreator", kFnPolyPlane, "kPolyMesh",
                                       kPolyPlaneAttrs, kHistoryMaker, evaluatePolyPlane);
const NodeTypeRow kPolyCylinder =
    typeRow("polyCylinder", "polyCreator", kFnPolyCylinder, "kPolyCylinder", kPolyCylinderAttrs,
            kHistoryMaker, evaluatePolyCylinder);

}  // namespace

const NodeTypeRow* const kMeshTypes[] = {&kMeshShape, &kPolyCreator, &kPolyCube, &kPolyPlane,
                                         &kPolyCylinder};
const std::size_t kMeshTypeCount = sizeof kMeshTypes / sizeof *kMeshTypes;

}  // namespace torvel
