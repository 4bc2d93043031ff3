#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "nodes/shape/mesh.h"
#include "nodes/shape/mesh_blocks.h"
#include "nodes/node_table.h"
#include "nodes/shape/poly_shapes.h"

namespace torvel {
namespace {

const V3d kUp(0, 1, 0);

// Six times the volume of a closed mesh whose faces turn outwards counter-clockwise, divided by
// six.
double volume(const MeshData& mesh) {
    double sum = 0.0;
    std::size_t at = 0;
    for (std::int32_t count : mesh.topology->faceCounts) {
        const std::int32_t* f = mesh.topology->faceVertices.data() + at;
        const auto p = [&](std::int32_t v) {
            return V3d(mesh.points[static_cast<std::size_t>(v)]);
        };
        for (std::int32_t i = 1; i + 1 < count; ++i)
            sum += p(f[0]) ^ p(f[i]).cross(p(f[i + 1]));
        at += static_cast<std::size_t>(count);
    }
    return sum / 6.0;
}

// Vertices - edges + faces; every edge of a closed mesh is used once in each direction.
int eulerNumber(const MeshData& mesh, bool closed) {
    std::set<std::pair<int, int>> directed;
    std::size_t at = 0;
    for (std::int32_t count : mesh.topology->faceCounts) {
        for (std::int32_t i = 0; i < count; ++i)
            EXPECT_TRUE(
                directed
                    .insert({mesh.topology->faceVertices[at + static_cast<std::size_t>(i)],
                             mesh.topology
                                 ->faceVertices[at + static_cast<std::size_t>((i + 1) % count)]})
                    .second);
        at += static_cast<std::size_t>(count);
    }
    std::set<std::pair<int, int>> edges;
    for (const auto& e : directed) {
        EXPECT_TRUE(!closed || directed.count({e.second, e.first}));
        edges.insert(std::minmax(e.first, e.second));
    }
    return static_cast<int>(mesh.points.size()) - static_cast<int>(edges.size()) +
           static_cast<int>(mesh.topology->faceCounts.size());
}

TEST(PolyShapes, CubeOfOneSegmentHasItsKnownCorners) {
    const MeshData cube = polyCubeMesh(1, 1, 1, 1, 1, 1, kUp);
    ASSERT_EQ(cube.points.size(), 8u);
    EXPECT_EQ(cube.topology->faceCounts.size(), 6u);
    EXPECT_EQ(cube.points[0], V3f(-0.5f, -0.5f, 0.5f));
    EXPECT_EQ(cube.points[3], V3f(0.5f, 0.5f, 0.5f));
    EXPECT_EQ(cube.points[5], V3f(0.5f, 0.5f, -0.5f));
    EXPECT_EQ(cube.points[6], V3f(-0.5f, -0.5f, -0.5f));
    EXPECT_NEAR(volume(cube), 1.0, 1e-6);
}

TEST(PolyShapes, SubdividedCubeIsClosedAndFacesOutwards) {
    const MeshData cube = polyCubeMesh(2, 3, 4, 3, 4, 5, kUp);
    EXPECT_EQ(cube.topology->faceCounts.size(), 2u * (12 + 20 + 15));
    EXPECT_EQ(cube.points.size(), 4u * 5 * 6 - 2u * 3 * 4);  // all grid points but the inner ones
    EXPECT_EQ(eulerNumber(cube, true), 2);
    EXPECT_NEAR(volume(cube), 24.0, 1e-4);
}

TEST(PolyShapes, PlaneHasRowsFromTheFront) {
    const MeshData plane = polyPlaneMesh(2, 4, 1, 2, kUp);
    ASSERT_EQ(plane.points.size(), 6u);
    EXPECT_EQ(plane.topology->faceCounts.size(), 2u);
    EXPECT_EQ(plane.points[0], V3f(-1, 0, 2));
    EXPECT_EQ(plane.points[5], V3f(1, 0, -2));
    EXPECT_EQ(eulerNumber(plane, false), 1);
}

TEST(PolyShapes, CylinderApproachesItsVolume) {
    const MeshData cylinder = polyCylinderMesh(1, 2, 64, 3, 2, kUp);
    EXPECT_EQ(eulerNumber(cylinder, true), 2);
    EXPECT_NEAR(volume(cylinder), 2.0 * 32.0 * std::sin(2.0 * kPi / 64.0), 1e-4);
    EXPECT_EQ(polyCylinderMesh(1, 2, 20, 1, 1, kUp).points.size(), 42u);
    EXPECT_EQ(polyCylinderMesh(1, 2, 20, 1, 0, kUp).points.size(), 40u);
}

TEST(PolyShapes, AxisTurnsTheShape) {
    const MeshData plane = polyPlaneMesh(2, 2, 1, 1, V3d(1, 0, 0));
    for (const V3f& p : plane.points)
        EXPECT_NEAR(p.x, 0.0, 1e-6);
}

class MeshNode : public ::testing::Test {
  protected:
    MeshNode() {
        EXPECT_TRUE(scene.createNode("transform", "box", {}, transform).isOk());
        EXPECT_TRUE(scene.createNode("mesh", "boxShape", transform, shape).isOk());
    }
    void give(const char* attr, std::int64_t last, const char* text) {
        scene.changeBulk(scene.findPlug(shape, attr), [&](BulkArray& values) {
            const std::int32_t path[] = {-1, -1, -1, -1};
            NumberSource source(text);
            std::string error;
            EXPECT_TRUE(values.read(path, 0, false, 0, last, source, error)) << error;
        });
    }
    std::string written(const char* attr) {
        std::string out;
        scene.bulk(scene.findPlug(shape, attr))->write(attr, out);
        return out;
    }

    Log log;
    Scene scene{nodeTypes(), log};
    NodeHandle transform, shape;
};

TEST_F(MeshNode, FacesComeFromSignedEdges) {
    give("vt", 3, "0 0 0 1 0 0 1 1 0 0 1 0");
    give("ed", 4, "0 1 0 1 2 0 2 3 0 3 0 0 0 2 0");
    give("fc", 1, "f 3 0 1 -5 mu 0 3 0 1 2 f 3 4 2 3");
    const auto mesh = meshPoints(scene, shape);
    EXPECT_EQ(mesh->topology->faceVertices, (std::vector<std::int32_t>{0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(mesh->points[2], V3f(1, 1, 0));
    EXPECT_EQ(
        written("fc"),
        "\tsetAttr -s 2 -ch 6 \".fc[0:1]\" -type \"polyFaces\" \n\t\tf 3 0 1 -5\n\t\tmu 0 3 0 1 2\n"
        "\t\tf 3 4 2 3;\n");
    EXPECT_EQ(written("vt"), "\tsetAttr -s 4 \".vt[0:3]\"  0 0 0 1 0 0 1 1 0 0 1 0;\n");
}

TEST_F(MeshNode, TweaksAreAddedAfterTheInput) {
    give("vt", 1, "0 0 0 1 0 0");
    scene.setNumber(scene.findPlug(shape, "pt[1].py"), 2.5);
    EXPECT_EQ(meshPoints(scene, shape)->points[1], V3f(1, 2.5f, 0));
    NodeHandle maker;
    ASSERT_TRUE(scene.createNode("polyCube", "", {}, maker).isOk());
    ASSERT_TRUE(
        scene.connect(scene.findPlug(maker, "output"), scene.findPlug(shape, "inMesh")).isOk());
    EXPECT_EQ(meshPoints(scene, shape)->points[1], V3f(0.5f, 2.0f, 0.5f));
    scene.setNumber(scene.findPlug(maker, "width"), 4.0);
    EXPECT_EQ(meshPoints(scene, shape)->points[1], V3f(2.0f, 2.0f, 0.5f));
    EXPECT_EQ(written("pt"), "\tsetAttr -s 1 \".pt[1]\" -type \"float3\"  0 2.5 0;\n");
}

TEST_F(MeshNode, SparseTweaksAreWrittenInRuns) {
    for (std::int32_t at : {9, 2, 3, 4})
        scene.setNumber(scene.findPlug(shape, "pt[" + std::to_string(at) + "].px"), at);
    EXPECT_EQ(written("pt"),
              "\tsetAttr -s 4 \".pt[2:4]\" -type \"float3\"  2 0 0 3 0 0 4 0 0;\n"
              "\tsetAttr \".pt[9]\" -type \"float3\"  9 0 0;\n");
    EXPECT_EQ(scene.elementIndices(scene.findPlug(shape, "pt")),
              (std::vector<std::int32_t>{2, 3, 4, 9}));
}

TEST_F(MeshNode, OwnMeshKeepsPointsAndFaces) {
    const MeshData cube = polyCubeMesh(1, 2, 3, 2, 2, 2, kUp);
    setOwnMesh(scene, shape, cube);
    const auto mesh = meshPoints(scene, shape);
    EXPECT_EQ(mesh->points, cube.points);
    EXPECT_EQ(mesh->topology->faceVertices, cube.topology->faceVertices);
}

TEST_F(MeshNode, WorldPointsFollowTheTransform) {
    give("vt", 0, "1 0 0");
    scene.setVec3(scene.findPlug(transform, "translate"), V3d(0, 5, 0));
    EXPECT_EQ(meshWorldPoints(scene, shape)[0], V3d(1, 5, 0));
    EXPECT_EQ(meshPoints(scene, transform)->points.size(), 0u);
}

}  // namespace
}  // namespace torvel
