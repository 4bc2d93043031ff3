#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/number_source.h"
#include "graph/math.h"
#include "graph/plug.h"

namespace torvel {

/// Anything a plug holds that is not one number. Payloads are shared and never changed once a
/// second owner exists.
struct Payload {
    virtual ~Payload() = default;
};
using PayloadPtr = std::shared_ptr<const Payload>;

struct StringData : Payload {
    explicit StringData(std::string t) : text(std::move(t)) {}
    std::string text;
};
struct MatrixData : Payload {
    MatrixData() = default;
    explicit MatrixData(const M44d& m) : matrix(m) {}
    M44d matrix;
};
struct IntArrayData : Payload {
    std::vector<std::int32_t> items;
};
struct DoubleArrayData : Payload {
    std::vector<double>
        items;  ///< doubleArray; vectorArray and pointArray hold 3 or 4 numbers an entry
};
struct StringArrayData : Payload {
    std::vector<std::string> items;
};
/// Component list such as "vtx[*]", "f[0:3]".
struct ComponentListData : Payload {
    std::vector<std::string> items;
};
/// A value of a type that the host keeps but does not read: its text after -type, verbatim.
struct TextData : Payload {
    std::string typeName;
    std::string text;
};

/// Large array attributes kept in one block. Reached through plugs like any array: `path` holds the
/// logical indices from this array inwards, `child` the attribute asked for (the array's own for
/// plain elements).
struct BulkArray : Payload {
    virtual std::size_t size() const = 0;  ///< elements that exist
    virtual std::int32_t logicalAt(std::size_t physical) const = 0;
    /// Elements of the inner array at outer element `logical` (weightList[v].weights); 0 without
    /// one.
    virtual std::size_t innerSize(std::int32_t logical) const;
    virtual std::int32_t innerLogicalAt(std::int32_t logical, std::size_t physical) const;
    /// Number at an element; `component` is 0.. within a vector element. Missing elements give 0.
    virtual double number(const std::int32_t* path, int component) const = 0;
    virtual void setNumber(const std::int32_t* path, int component, double value) = 0;
    virtual std::shared_ptr<BulkArray> clone() const = 0;

    /// Takes the values of one file statement for elements first..last at nesting level `level` (0:
    /// this array, 1: the inner array of outer element path[0]; `inner` tells that a range of the
    /// outer array holds whole inner arrays:
    /// ".wl[0:7].w"). Word flags of the statement are already cut off. False with a text on damage.
    virtual bool read(const std::int32_t* path, int level, bool inner, std::int64_t first,
                      std::int64_t last, NumberSource& source, std::string& error) = 0;
    /// Appends the setAttr statements that give this array back ("\tsetAttr ... ;\n" each) to
    /// `out`.
    virtual void write(const std::string& attrName, std::string& out) const = 0;
};

/// Faces of a mesh; shared between all meshes that differ in points only.
struct MeshTopology {
    std::vector<std::int32_t> faceCounts;    ///< vertices of each face
    std::vector<std::int32_t> faceVertices;  ///< all faces' vertices in a row
};

/// A mesh as it flows between nodes; points in the space of the shape, centimetres.
struct MeshData : Payload {
    std::vector<V3f> points;
    std::shared_ptr<const MeshTopology> topology;
};

struct NurbsCurveData : Payload {
    int degree = 3;
    int spans = 0;
    int form = 0;  ///< 0 open, 1 closed, 2 periodic
    bool rational = false;
    int dimension = 3;
    std::vector<double> knots;  ///< cvs + degree - 1
    std::vector<V3d> cvs;
    std::vector<double> weights;  ///< one a CV when rational
};

}  // namespace torvel
