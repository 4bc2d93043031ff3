#include <cmath>
#include <limits>
#include <sstream>

#include <gtest/gtest.h>

#include "commands/host/verify.h"
#include "support/test_scene.h"

namespace torvel {
namespace {

const VerifyRow& row(const std::vector<VerifyRow>& rows, const std::string& what) {
    for (const VerifyRow& each : rows)
        if (each.what == what)
            return each;
    throw std::runtime_error("no row " + what);
}

SceneState sample() {
    SceneState state;
    state.points["|leg|legShape"] = {V3d(0, 0, 0), V3d(1, 2, 3)};
    state.weights["|leg|legShape"]["hip"] = {{0, 1.0}, {1, 0.25}};
    state.weights["|leg|legShape"]["knee"] = {{1, 0.75}};
    state.matrices["hip"] = M44d();
    state.nodes = {"joint |hip"};
    state.connections = {"a.x -> b.y"};
    return state;
}

TEST(Verify, TheSameStateIsWithinEveryLimit) {
    VerifyLimits limits;
    limits.points = limits.weights = limits.matrices = 0.0;
    limits.nodes = limits.connections = 0;
    const auto rows = compareStates(sample(), sample(), limits);
    EXPECT_TRUE(allWithin(rows));
    EXPECT_EQ(row(rows, "points").before, 2u);
    EXPECT_EQ(row(rows, "weights").before, 3u);
}

TEST(Verify, TheFarthestPointIsNamed) {
    SceneState after = sample();
    after.points["|leg|legShape"][1] += V3d(0.3, 0.4, 0.0);
    const auto rows = compareStates(sample(), after, VerifyLimits());
    EXPECT_NEAR(row(rows, "points").largest, 0.5, 1e-12);
    EXPECT_EQ(row(rows, "points").where, "|leg|legShape.vtx[1]");
    EXPECT_FALSE(row(rows, "points").ok);
    EXPECT_TRUE(row(rows, "weights").ok);
    VerifyLimits wide;
    wide.points = 0.6;
    EXPECT_TRUE(allWithin(compareStates(sample(), after, wide)));
}

TEST(Verify, AWeightThatVanishedCounts) {
    SceneState after = sample();
    after.weights["|leg|legShape"]["hip"].erase(1);
    const auto rows = compareStates(sample(), after, VerifyLimits());
    EXPECT_DOUBLE_EQ(row(rows, "weights").largest, 0.25);
    EXPECT_EQ(row(rows, "weights").where, "|leg|legShape hip vtx[1]");
    EXPECT_FALSE(row(rows, "weights").ok);
}

TEST(Verify, MissingMeshesInfluencesAndJointsDiffer) {
    SceneState after = sample();
    after.points.clear();
    after.weights["|leg|legShape"].erase("knee");
    after.matrices.clear();
    const auto rows = compareStates(sample(), after, VerifyLimits());
    for (const char* what : {"points", "weights", "matrices"}) {
        EXPECT_FALSE(row(rows, what).ok) << what;
        EXPECT_EQ(row(rows, what).gone.size(), 1u) << what;
    }
}

TEST(Verify, OtherVertexCountsAndNumbersThatAreNoneDiffer) {
    SceneState after = sample();
    after.points["|leg|legShape"].pop_back();
    EXPECT_FALSE(row(compareStates(sample(), after, VerifyLimits()), "points").ok);
    after = sample();
    after.points["|leg|legShape"][0].x = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(row(compareStates(sample(), after, VerifyLimits()), "points").ok);
}

TEST(Verify, NodesAndConnectionsAreJudgedOnlyWhenAsked) {
    SceneState after = sample();
    after.nodes = {"joint |hip1", "group |g"};
    VerifyLimits limits;
    auto rows = compareStates(sample(), after, limits);
    EXPECT_DOUBLE_EQ(row(rows, "nodes").largest, 3.0);
    EXPECT_TRUE(row(rows, "nodes").ok);
    limits.nodes = 2;
    EXPECT_FALSE(row(compareStates(sample(), after, limits), "nodes").ok);
    limits.nodes = 3;
    EXPECT_TRUE(row(compareStates(sample(), after, limits), "nodes").ok);
}

TEST(Verify, TheTableSaysWhichLineDiffers) {
    SceneState after = sample();
    after.matrices["hip"][3][0] = 2.0;
    std::ostringstream out;
    printTable(compareStates(sample(), after, VerifyLimits()), out);
    EXPECT_NE(out.str().find("DIFFERS  hip"), std::string::npos);
    EXPECT_NE(verifyJson(compareStates(sample(), after, VerifyLimits())).find("\"ok\": false"),
              std::string::npos);
}

TEST(Verify, ReadsJointsNodesAndConnectionsOfAScene) {
    test::TestScene host;
    host.make("joint", "hip");
    host.make("joint", "knee", "hip");
    host.set("hip.translate", 1, 2, 3);
    host.set("knee.translate", 0, 5, 0);
    host.call("connectAttr", {"hip.rotateX", "knee.rotateX"});
    const SceneState state = stateOf(host.scene());
    ASSERT_EQ(state.matrices.size(), 2u);
    EXPECT_EQ(state.matrices.at("knee").translation(), V3d(1, 7, 3));
    EXPECT_TRUE(state.nodes.count("joint |hip|knee"));
    EXPECT_TRUE(state.connections.count("hip.rotateX -> knee.rotateX"));
}

}  // namespace
}  // namespace torvel
