// The nodes that make simple meshes.
#include <algorithm>

#include "graph/evaluation.h"
#include "nodes/core/base_attrs.h"
#include "nodes/core/fn_numbers.h"
#include "nodes/shape/poly_shapes.h"

namespace torvel {
namespace {

constexpr AttrRow kPolyCreatorAttrs[] = {
    attrRow("output", "out", AttrType::Mesh, 0.0, kOutput | kNotStored | kGeometryOut),
    compoundRow("axis", "ax", AttrType::Double3, 0, "output"),
    under("axis", attrRow("axisX", "axx", AttrType::Double)),
    under("axis", attrRow("axisY", "axy", AttrType::Double, 1.0)),
    under("axis", attrRow("axisZ", "axz", AttrType::Double)),
    attrRow("createUVs", "cuv", AttrType::Byte, 2.0),
};

constexpr TypeAttrs kCreator("polyCreator", kDependNode, kPolyCreatorAttrs);

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
constexpr TypeAttrs kCube("polyCube", kCreator, kPolyCubeAttrs);
constexpr TypeAttrs kPlane("polyPlane", kCreator, kPolyPlaneAttrs);
constexpr TypeAttrs kCylinder("polyCylinder", kCreator, kPolyCylinderAttrs);

// Whole, and in a range in which faces can be counted; NaN is none.
int count(const Evaluation& e, AttrIndex attr) {
    const double value = e.number(attr);
    return value > 0.0 ? static_cast<int>(std::min(value, kMostPolyFaces + 1.0)) : 0;
}

V3d axisOf(const Evaluation& e) {
    return e.vec3(kCreator["axis"]);
}

template <class Make>
void put(Evaluation& e, double faces, Make&& make) {
    MeshData mesh;
    if (faces <= kMostPolyFaces) {
        mesh = make();
    } else {
        mesh.topology = std::make_shared<const MeshTopology>();
        e.scene().log().write(Channel::Warning,
                              "'" + e.node().name + "' makes more than " +
                                  std::to_string(static_cast<int>(kMostPolyFaces)) +
                                  " faces and is not drawn.");
    }
    e.set(kCreator["output"], std::make_shared<MeshData>(std::move(mesh)));
}

void evaluateCube(Evaluation& e) {
    constexpr AttrIndex kWidth = kCube["width"], kHeight = kCube["height"], kDepth = kCube["depth"],
                        kAcross = kCube["subdivisionsWidth"], kUp = kCube["subdivisionsHeight"],
                        kDeep = kCube["subdivisionsDepth"];
    const int w = count(e, kAcross), h = count(e, kUp), d = count(e, kDeep);
    put(e, polyCubeFaces(w, h, d), [&] {
        return polyCubeMesh(e.number(kWidth), e.number(kHeight), e.number(kDepth), w, h, d,
                            axisOf(e));
    });
}

void evaluatePlane(Evaluation& e) {
    constexpr AttrIndex kWidth = kPlane["width"], kHeight = kPlane["height"],
                        kAcross = kPlane["subdivisionsWidth"], kUp = kPlane["subdivisionsHeight"];
    const int w = count(e, kAcross), h = count(e, kUp);
    put(e, polyPlaneFaces(w, h, 0.0),
        [&] { return polyPlaneMesh(e.number(kWidth), e.number(kHeight), w, h, axisOf(e)); });
}

void evaluateCylinder(Evaluation& e) {
    constexpr AttrIndex kRadius = kCylinder["radius"], kHeight = kCylinder["height"],
                        kAround = kCylinder["subdivisionsAxis"],
                        kUp = kCylinder["subdivisionsHeight"],
                        kCaps = kCylinder["subdivisionsCaps"];
    const int around = count(e, kAround), rows = count(e, kUp), caps = count(e, kCaps);
    put(e, polyCylinderFaces(around, rows, caps), [&] {
        return polyCylinderMesh(e.number(kRadius), e.number(kHeight), around, rows, caps,
                                axisOf(e));
    });
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kCreator, fn::kPolyCreator, "kPolyCreator", kAbstractType | kHistoryMaker),
    typeRow(kCube, fn::kPolyCube, "kPolyCube", kHistoryMaker, evaluateCube),
    typeRow(kPlane, fn::kPolyPlane, "kPolyMesh", kHistoryMaker, evaluatePlane),
    typeRow(kCylinder, fn::kPolyCylinder, "kPolyCylinder", kHistoryMaker, evaluateCylinder),
};

}  // namespace

TypeRows polyTypes() {
    return family(kTypes);
}

}  // namespace torvel
