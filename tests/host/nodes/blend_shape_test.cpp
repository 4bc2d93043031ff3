#include "nodes/deform/blend_shape.h"

#include "files/ma/reader.h"
#include "node_scene.h"
#include "nodes/shape/mesh.h"

namespace torvel::test {
namespace {

std::vector<ShapeItem> itemsAt(const std::vector<double>& weights) {
    std::vector<ShapeItem> items;
    for (double weight : weights)
        items.push_back({weight, {}});
    return items;
}

void expectShares(const std::vector<double>& weights, double at,
                  const std::vector<double>& wanted) {
    const std::vector<double> shares = itemShares(itemsAt(weights), at);
    ASSERT_EQ(shares.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i)
        EXPECT_NEAR(shares[i], wanted[i], 1e-12) << "item " << i << " at " << at;
}

TEST(BlendShape, SharesOfInBetweens) {
    EXPECT_DOUBLE_EQ(itemWeight(6000), 1.0);
    EXPECT_DOUBLE_EQ(itemWeight(5333), 0.333);
    EXPECT_DOUBLE_EQ(itemWeight(4500), -0.5);
    expectShares({1}, 0.4, {0.4});
    expectShares({1}, 1.5, {1.5});
    expectShares({1}, -0.5, {-0.5});
    expectShares({1}, 0, {0});
    expectShares({0.5, 1}, 0.25, {0.5, 0});
    expectShares({0.5, 1}, 0.5, {1, 0});
    expectShares({0.5, 1}, 0.75, {0.5, 0.5});
    expectShares({0.5, 1}, 2, {0, 2});
    expectShares({-1, 1}, -0.5, {0.5, 0});
    expectShares({-1, 1}, 0.5, {0, 0.5});
    expectShares({-1, 1}, -2, {2, 0});
    expectShares({}, 1, {});
}

TEST(BlendShape, ComponentTexts) {
    using List = std::vector<std::size_t>;
    EXPECT_EQ(namedPoints({"vtx[0]", "vtx[6:7]"}, 8), (List{0, 6, 7}));
    EXPECT_EQ(namedPoints({"vtx[*]"}, 3), (List{0, 1, 2}));
    EXPECT_EQ(namedPoints({"vtx[2:9]"}, 4), (List{2, 3}));
    EXPECT_EQ(namedPoints({"vtx[a]", "vtx[1", "vtx", "vtx[3:1]", ""}, 4), List());
    EXPECT_EQ(namedPoints({"vtx[*]"}, 0), List());
}

class BlendShapeNode : public NodeScene {
  protected:
    NodeHandle mesh(const char* name, const std::vector<V3f>& points) {
        const NodeHandle shape = make("mesh", "", make("transform", name));
        MeshData data;
        data.points = points;
        auto topology = std::make_shared<MeshTopology>();
        topology->faceCounts = {3};
        topology->faceVertices = {0, 1, 2};
        data.topology = topology;
        setOwnMesh(scene, shape, data);
        return shape;
    }
    void SetUp() override {
        base = mesh("base", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
        shown = make("mesh", "", make("transform", "shown"));
        node = make("blendShape", "");
        link(base, "outMesh", node, "ip[0].ig");
        link(node, "og[0]", shown, "i");
    }
    V3d point(std::size_t i) { return V3d(meshPoints(scene, shown)->points.at(i)); }
    void stored(const char* item, std::vector<double> offsets,
                std::vector<std::string> components) {
        auto points = std::make_shared<DoubleArrayData>();
        points->items = std::move(offsets);
        auto list = std::make_shared<ComponentListData>();
        list->items = std::move(components);
        scene.setData(plug(node, (std::string(item) + ".ipt").c_str()), points);
        scene.setData(plug(node, (std::string(item) + ".ict").c_str()), list);
    }
    NodeHandle base, shown, node;
};

TEST_F(BlendShapeNode, LivingTargetsAndTheirWeights) {
    const NodeHandle up = mesh("up", {{0, 0, 4}, {1, 0, 0}, {0, 1, 0}});
    const NodeHandle side = mesh("side", {{2, 0, 0}, {1, 0, 0}, {0, 3, 0}});
    link(up, "w[0]", node, "it[0].itg[0].iti[6000].igt");
    link(side, "w[0]", node, "it[0].itg[3].iti[6000].igt");
    expectNear(point(0), V3d(0, 0, 0));
    set(node, "w[0]", 0.5);
    set(node, "w[3]", 2);
    expectNear(point(0), V3d(4, 0, 2), 1e-6);
    expectNear(point(1), V3d(1, 0, 0), 1e-6);
    expectNear(point(2), V3d(0, 5, 0), 1e-6);
    set(node, "en", 0.5);
    expectNear(point(0), V3d(2, 0, 1), 1e-6);
    set(node, "it[0].bw[0]", 0.5);
    expectNear(point(0), V3d(1, 0, 0.5), 1e-6);
    set(node, "it[0].itg[0].tw[0]", 0);
    expectNear(point(0), V3d(1, 0, 0), 1e-6);
    set(node, "tgdt[0].dwgh", 0);
    expectNear(point(0), V3d(0, 0, 0), 1e-6);
}

TEST_F(BlendShapeNode, StoredOffsetsAndInBetweens) {
    stored("it[0].itg[0].iti[6000]", {0, 0, 2, 1, 0, 2, 0, 1}, {"vtx[0]", "vtx[2]"});
    stored("it[0].itg[0].iti[5500]", {4, 0, 0, 1}, {"vtx[0]"});
    set(node, "w[0]", 0.25);
    expectNear(point(0), V3d(2, 0, 0), 1e-6);
    expectNear(point(2), V3d(0, 1, 0), 1e-6);
    set(node, "w[0]", 0.75);
    expectNear(point(0), V3d(2, 0, 1), 1e-6);
    expectNear(point(2), V3d(0, 2, 0), 1e-6);
    set(node, "w[0]", 1);
    expectNear(point(0), V3d(0, 0, 2), 1e-6);
    expectNear(point(1), V3d(1, 0, 0), 1e-6);
    set(node, "tgvs[0]", 0);
    expectNear(point(0), V3d(0, 0, 0), 1e-6);
}

TEST_F(BlendShapeNode, ItemsAreReadAsFilesWriteThem) {
    const char* const text =
        "//Maya ASCII 2022 scene\ncreateNode blendShape -n \"shapes\";\n"
        "\tsetAttr \".w[0]\"  0.5;\n\tsetAttr -s 2 \".it[0].itg\";\n"
        "\tsetAttr \".it[0].itg[0].iti[6000].ipt\" -type \"pointArray\" 2 0 0 3\n\t\t 1 0 6 0 1 ;\n"
        "\tsetAttr \".it[0].itg[0].iti[6000].ict\" -type \"componentList\" 1 \"vtx[1:2]\";\n"
        "\tsetAttr \".it[0].itg[1].iti[6000].ipt\" -type \"pointArray\" 0 ;\n"
        "\tsetAttr \".it[0].itg[1].iti[6000].ict\" -type \"componentList\" ;\n// End of x.ma\n";
    OpenReport report;
    const Status status = readSceneText(scene, text, "x.ma", report);
    ASSERT_TRUE(status) << status.text();
    node = scene.names().lookUp("shapes");
    ASSERT_TRUE(scene.disconnect(scene.source(plug(shown, "i")), plug(shown, "i")));
    link(base, "outMesh", node, "ip[0].ig");
    link(node, "og[0]", shown, "i");
    expectNear(point(1), V3d(1, 0, 1.5), 1e-6);
    expectNear(point(2), V3d(0, 4, 0), 1e-6);
    set(node, "w[1]", 1);
    expectNear(point(0), V3d(0, 0, 0), 1e-6);
}

TEST_F(BlendShapeNode, TargetsCompareWithTheShapeBeforeOtherDeformers) {
    const NodeHandle up = mesh("up", {{0, 0, 4}, {1, 0, 0}, {0, 1, 0}});
    const NodeHandle bent = mesh("bent", {{9, 9, 9}, {1, 0, 0}, {0, 1, 0}});
    const Status cut = scene.disconnect(plug(base, "outMesh"), plug(node, "ip[0].ig"));
    ASSERT_TRUE(cut);
    link(bent, "outMesh", node, "ip[0].ig");
    link(base, "outMesh", node, "orggeom[0]");
    link(up, "w[0]", node, "it[0].itg[0].iti[6000].igt");
    set(node, "w[0]", 1);
    expectNear(point(0), V3d(9, 9, 13), 1e-6);
}

}  // namespace
}  // namespace torvel::test
