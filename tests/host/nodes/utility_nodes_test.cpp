#include <cmath>

#include "node_scene.h"
#include "nodes/transform/rotation.h"

namespace torvel::test {
namespace {

class Utility : public NodeScene {
  protected:
    double number(NodeHandle node, const char* attr) { return scene.number(plug(node, attr)); }
    M44d matrix(NodeHandle node, const char* attr) { return scene.matrix(plug(node, attr)); }
    void setMatrix(NodeHandle node, const char* attr, const M44d& value) {
        scene.setMatrix(plug(node, attr), value);
    }
};

struct TripleCase {
    int operation;
    V3d a, b, wanted;
};

TEST_F(Utility, MultiplyDivideByOperation) {
    const NodeHandle node = make("multiplyDivide", "");
    expectNear(get(node, "i2"), V3d(1.0));
    const TripleCase cases[] = {
        {0, {1, 2, 3}, {9, 9, 9}, {1, 2, 3}},
        {1, {1, 2, 3}, {4, 5, -6}, {4, 10, -18}},
        {2, {1, 9, 3}, {4, 3, 0}, {0.25, 3, 0}},    // nothing is divided by zero
        {3, {2, 9, -4}, {3, 0.5, 0.5}, {8, 3, 0}},  // no root of a negative number
    };
    for (const TripleCase& c : cases) {
        set(node, "op", c.operation);
        set(node, "input1", c.a.x, c.a.y, c.a.z);
        set(node, "input2", c.b.x, c.b.y, c.b.z);
        expectNear(get(node, "output"), c.wanted);
    }
}

TEST_F(Utility, FloatsKeepWhatAFloatHolds) {
    const NodeHandle from = make("transform", "from"), node = make("multiplyDivide", "");
    link(from, "tx", node, "i1x");
    set(from, "tx", 0.1);
    EXPECT_EQ(number(node, "ox"), static_cast<double>(0.1f));
}

TEST_F(Utility, CompoundAndChildConnectionsFollowTheirSource) {
    const NodeHandle from = make("transform", "from"), node = make("multiplyDivide", ""),
                     to = make("transform", "to");
    link(from, "t", node, "i1");
    link(node, "o", to, "t");
    set(node, "i2", 2, 3, 4);
    set(from, "t", 1, 2, 3);
    expectNear(get(to, "t"), V3d(2, 6, 12));
    set(from, "ty", 10);
    expectNear(get(to, "t"), V3d(2, 30, 12));
    const NodeHandle second = make("reverse", "");
    link(node, "oy", second, "iz");
    expectNear(get(second, "o"), V3d(1, 1, -29));
    set(from, "ty", 0);
    expectNear(get(second, "o"), V3d(1, 1, 1));
}

TEST_F(Utility, PlusMinusAverageOverSparseArrays) {
    const NodeHandle node = make("plusMinusAverage", ""), from = make("transform", "from");
    EXPECT_EQ(number(node, "o1"), 0);
    set(node, "i1[2]", 10);
    set(node, "i1[5]", 4);
    link(from, "tx", node, "i1[9]");
    set(from, "tx", 1);
    const double wanted[] = {10, 15, 5, 5};
    for (int operation = 0; operation < 4; ++operation) {
        set(node, "op", operation);
        EXPECT_EQ(number(node, "output1D"), wanted[operation]) << operation;
    }
    set(node, "op", 2);
    set(node, "input2D[0].input2Dx", 7);
    set(node, "i2[1].i2x", 3);
    set(node, "i2[1].i2y", 2);
    EXPECT_EQ(number(node, "o2x"), 4);
    EXPECT_EQ(number(node, "output2Dy"), -2);
    link(from, "t", node, "i3[0]");
    set(node, "i3[1]", 1, 1, 1);
    set(from, "t", 5, 6, 7);
    expectNear(get(node, "o3"), V3d(4, 5, 6));
    set(from, "tz", 0);
    expectNear(get(node, "o3"), V3d(4, 5, -1));
}

TEST_F(Utility, ConditionChoosesByItsTerms) {
    const NodeHandle node = make("condition", "");
    expectNear(get(node, "oc"), V3d(0.0));  // 0 == 0: the colour of truth, black unless set
    set(node, "ct", 1, 2, 3);
    set(node, "cf", 4, 5, 6);
    const bool wanted[6][3] = {{false, true, false}, {true, false, true},  {false, false, true},
                               {false, true, true},  {true, false, false}, {true, true, false}};
    for (int operation = 0; operation < 6; ++operation)
        for (int order = -1; order <= 1; ++order) {
            set(node, "op", operation);
            set(node, "ft", 2 + order);
            set(node, "st", 2);
            expectNear(get(node, "oc"), wanted[operation][order + 1] ? V3d(1, 2, 3) : V3d(4, 5, 6));
        }
}

TEST_F(Utility, DistancesRunThroughTheMatrices) {
    const NodeHandle node = make("distanceBetween", ""), a = make("transform", "a"),
                     b = make("transform", "b");
    set(node, "p1", 1, 2, 3);
    set(node, "p2", 1, 5, 7);
    EXPECT_NEAR(number(node, "distance"), 5, 1e-12);
    set(node, "p1", 0, 0, 0);
    set(node, "p2", 0, 0, 0);
    link(a, "wm[0]", node, "im1");
    link(b, "wm[0]", node, "im2");
    set(a, "t", 1, 0, 0);
    set(b, "t", 1, 6, 8);
    EXPECT_NEAR(number(node, "d"), 10, 1e-12);
    set(b, "ty", 0);
    EXPECT_NEAR(number(node, "d"), 8, 1e-12);
}

TEST_F(Utility, BlendsOfNumbers) {
    const NodeHandle colors = make("blendColors", "");
    expectNear(get(colors, "op"), V3d(0.5, 0, 0.5));
    set(colors, "b", 0.25);
    set(colors, "c1", 4, 8, 12);
    set(colors, "c2", 0, 4, 0);
    expectNear(get(colors, "op"), V3d(1, 5, 3));

    const NodeHandle two = make("blendTwoAttr", "");
    set(two, "i[0]", 10);
    set(two, "i[1]", 20);
    EXPECT_EQ(number(two, "o"), 10);
    set(two, "ab", 0.3);
    EXPECT_NEAR(number(two, "o"), 13, 1e-12);

    const NodeHandle weighted = make("blendWeighted", "");
    set(weighted, "i[0]", 10);
    set(weighted, "i[3]", 20);
    EXPECT_EQ(number(weighted, "o"), 30);
    set(weighted, "w[3]", 0.5);
    set(weighted, "w[0]", 2);
    EXPECT_EQ(number(weighted, "o"), 30);
    set(weighted, "w[0]", 0);
    EXPECT_EQ(number(weighted, "o"), 10);
}

TEST_F(Utility, ClampAndSetRange) {
    const NodeHandle clamp = make("clamp", "");
    set(clamp, "mn", -1, 0, 2);
    set(clamp, "mx", 1, 1, 3);
    set(clamp, "ip", -5, 0.5, 9);
    expectNear(get(clamp, "op"), V3d(-1, 0.5, 3));

    const NodeHandle range = make("setRange", "");
    set(range, "on", 0, 10, 5);
    set(range, "om", 10, 20, 5);
    set(range, "n", 100, -1, 7);
    set(range, "m", 200, 1, 8);
    set(range, "v", 2.5, 25, 5);
    expectNear(get(range, "o"), V3d(125, 1, 7));
}

TEST_F(Utility, RemapValueThroughItsRamps) {
    const NodeHandle node = make("remapValue", "");
    set(node, "i", 0.25);
    EXPECT_NEAR(number(node, "ov"), 0.25, 1e-7);  // straight when new
    expectNear(get(node, "oc"), V3d(0.25), 1e-7);
    set(node, "imn", 10);
    set(node, "imx", 20);
    set(node, "omn", 100);
    set(node, "omx", 200);
    set(node, "i", 12.5);
    EXPECT_NEAR(number(node, "ov"), 125, 1e-5);
    set(node, "i", 99);
    EXPECT_EQ(number(node, "ov"), 200);
    set(node, "i", -99);
    EXPECT_EQ(number(node, "ov"), 100);

    // a peak in the middle, told out of order
    set(node, "vl[1].vlp", 1);
    set(node, "vl[1].vlfv", 0);
    set(node, "vl[4].vlp", 0.5);
    set(node, "vl[4].vlfv", 1);
    set(node, "vl[4].vli", 1);
    set(node, "i", 17.5);
    EXPECT_NEAR(number(node, "ov"), 150, 1e-5);
    set(node, "vl[4].vli", 2);
    set(node, "i", 16.25);  // a quarter of the way down, smoothly: 1 - (3/16 - 2/64)
    EXPECT_NEAR(number(node, "ov"), 100 * (2 - (3.0 / 16 - 2.0 / 64)), 1e-4);
    set(node, "vl[4].vli", 0);
    EXPECT_EQ(number(node, "ov"), 200);
    set(node, "vl[0].vli",
        3);  // a spline leaves the first key at its secant and passes the top level
    set(node, "i", 12.5);
    EXPECT_NEAR(number(node, "ov"), 100 + 100 * (0.5 + 0.125 * 1.0), 1e-4);
}

TEST_F(Utility, SumsAndProducts) {
    const NodeHandle add = make("addDoubleLinear", ""), mult = make("multDoubleLinear", "");
    set(add, "i1", 0.1);
    set(add, "i2", 0.2);
    set(mult, "i1", 0.1);
    set(mult, "i2", 3);
    EXPECT_EQ(number(add, "o"), 0.1 + 0.2);
    EXPECT_EQ(number(mult, "o"), 0.1 * 3);
    const NodeHandle product = make("multiply", ""), sum = make("sum", ""),
                     constant = make("floatConstant", "");
    EXPECT_EQ(number(product, "o"), 0);
    for (const NodeHandle node : {product, sum}) {
        set(node, "i[0]", 2);
        set(node, "i[1]", 7);
    }
    EXPECT_EQ(number(product, "o"), 14);
    EXPECT_EQ(number(sum, "o"), 9);
    set(constant, "_f", 0.5);
    EXPECT_EQ(number(constant, "of"), 0.5);
}

TEST_F(Utility, MatricesAreComposedAndTakenApart) {
    const NodeHandle compose = make("composeMatrix", ""), parts = make("decomposeMatrix", "");
    set(compose, "it", 1, 2, 3);
    set(compose, "ir", 0, 0, kPi / 2);
    set(compose, "is", 2, 3, 4);
    // rows by hand: x -> 2 y, y -> -3 x, z -> 4 z
    const M44d wanted(0, 2, 0, 0, -3, 0, 0, 0, 0, 0, 4, 0, 1, 2, 3, 1);
    expectNear(matrix(compose, "omat"), wanted);
    link(compose, "omat", parts, "imat");
    expectNear(get(parts, "ot"), V3d(1, 2, 3));
    expectNear(get(parts, "or"), V3d(0, 0, kPi / 2));
    expectNear(get(parts, "os"), V3d(2, 3, 4));
    expectNear(get(parts, "osh"), V3d(0.0));
    EXPECT_NEAR(number(parts, "oqz"), std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(number(parts, "oqw"), std::sqrt(0.5), 1e-12);

    set(compose, "uer", 0);
    expectNear(matrix(compose, "omat"), M44d(2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 1, 2, 3, 1));
    set(compose, "iqx", 1);  // (1, 0, 0, 1) is a quarter turn about x, of any length
    expectNear(matrix(compose, "omat"), M44d(2, 0, 0, 0, 0, 0, 3, 0, 0, -4, 0, 0, 1, 2, 3, 1));

    set(compose, "uer", 1);
    set(compose, "iro", kZYX);
    set(compose, "ir", 0.3, 0.4, 0.5);
    set(parts, "iro", kZYX);
    expectNear(get(parts, "or"), V3d(0.3, 0.4, 0.5));
}

TEST_F(Utility, ProductsSumsAndInversesOfMatrices) {
    const NodeHandle mult = make("multMatrix", ""), inverse = make("inverseMatrix", "");
    const NodeHandle turned = make("transform", "turned"), moved = make("transform", "moved");
    expectNear(matrix(mult, "o"), M44d());
    set(turned, "rz", kPi / 2);
    set(moved, "tx", 5);
    link(turned, "m", mult, "i[1]");
    link(moved, "m", mult, "i[0]");
    // first moved along x, then turned: ends on y
    expectNear(translationOf(matrix(mult, "o")), V3d(0, 5, 0));
    link(mult, "o", inverse, "imat");
    expectNear(matrix(mult, "o") * matrix(inverse, "omat"), M44d());
    const NodeHandle transpose = make("transposeMatrix", "");
    link(mult, "o", transpose, "imat");
    EXPECT_NEAR(matrix(transpose, "omat")[1][3], 5, 1e-12);

    const NodeHandle sum = make("wtAddMatrix", "");
    link(moved, "m", sum, "i[0].m");
    link(turned, "m", sum, "i[1].m");
    set(sum, "i[0].w", 0.25);
    set(sum, "i[1].w", 0.75);
    const M44d wanted(0.25, 0.75, 0, 0, -0.75, 0.25, 0, 0, 0, 0, 1, 0, 1.25, 0, 0, 1);
    expectNear(matrix(sum, "o"), wanted);
}

TEST_F(Utility, MatricesArePickedAndBlended) {
    const NodeHandle from = make("transform", "from"), pick = make("pickMatrix", "");
    set(from, "t", 1, 2, 3);
    set(from, "r", 0, 0, kPi / 2);
    set(from, "s", 2, 2, 2);
    link(from, "m", pick, "imat");
    expectNear(matrix(pick, "omat"), matrix(from, "m"));
    set(pick, "rot", 0);
    set(pick, "sca", 0);
    expectNear(matrix(pick, "omat"), translationMatrix({1, 2, 3}));
    set(pick, "tra", 0);
    set(pick, "rot", 1);
    expectNear(matrix(pick, "omat"), eulerMatrix({0, 0, kPi / 2}));

    const NodeHandle blend = make("blendMatrix", "");
    link(from, "m", blend, "tgt[0].tmat");
    expectNear(matrix(blend, "omat"), matrix(from, "m"));
    set(blend, "tgt[0].wgt", 0.5);
    expectNear(matrix(blend, "omat"), scaleMatrix(V3d(1.5)) * eulerMatrix({0, 0, kPi / 4}) *
                                          translationMatrix({0.5, 1, 1.5}));
    set(blend, "tgt[0].row", 0);
    expectNear(matrix(blend, "omat"), scaleMatrix(V3d(1.5)) * translationMatrix({0.5, 1, 1.5}));
    set(blend, "env", 0);
    expectNear(matrix(blend, "omat"), M44d());
}

struct AimCase {
    const char* what;
    int mode, upMode;
    V3d target, upTarget;
    double envelope;
    V3d x, y;  // the first two rows of what comes out
};

TEST_F(Utility, AimMatrixTurnsOneAxisAndLeansASecondOne) {
    const NodeHandle node = make("aimMatrix", "");
    setMatrix(node, "inputMatrix", scaleMatrix({2, 1, 1}) * translationMatrix({1, 2, 3}));
    setMatrix(node, "primaryTargetMatrix", translationMatrix({1, 2, 3}));
    setMatrix(node, "secondaryTargetMatrix", eulerMatrix({0, 0, kPi / 2}));
    const double half = std::sqrt(0.5);
    const AimCase cases[] = {
        {"the smallest turn", 1, 0, {0, 0, 10}, {}, 1, {0, 0, 2}, {0, 1, 0}},
        {"half of it", 1, 0, {0, 0, 10}, {}, 0.5, {2 * half, 0, 2 * half}, {0, 1, 0}},
        {"up at a point", 1, 1, {10, 0, 0}, {2, -1, 9}, 1, {2, 0, 0}, {0, 0, 1}},
        {"up along a direction", 1, 2, {0, 0, 5}, {0, 1, 0}, 1, {0, 0, 2}, {-1, 0, 0}},
        {"along, not at", 2, 0, {0, -1, 0}, {}, 1, {0, -2, 0}, {1, 0, 0}},
        {"only the up axis", 0, 2, {}, {1, 0, 0}, 1, {2, 0, 0}, {0, 1, 0}},
        {"up along the aim leaves the smallest turn",
         1,
         2,
         {0, 5, 0},
         {1, 0, 0},
         1,
         {0, 2, 0},
         {-1, 0, 0}},
        {"nothing to point at", 1, 0, {0, 0, 0}, {}, 1, {2, 0, 0}, {0, 1, 0}},
        {"switched off", 1, 1, {0, 0, 5}, {1, 0, 0}, 0, {2, 0, 0}, {0, 1, 0}},
    };
    for (const AimCase& c : cases) {
        SCOPED_TRACE(c.what);
        set(node, "primaryMode", c.mode);
        set(node, "secondaryMode", c.upMode);
        set(node, "primaryTargetVector", c.target.x, c.target.y, c.target.z);
        set(node, "secondaryTargetVector", c.upTarget.x, c.upTarget.y, c.upTarget.z);
        set(node, "envelope", c.envelope);
        const V3d z = (c.x / 2.0).cross(c.y);
        expectNear(matrix(node, "outputMatrix"), M44d(c.x.x, c.x.y, c.x.z, 0, c.y.x, c.y.y, c.y.z,
                                                      0, z.x, z.y, z.z, 0, 1, 2, 3, 1));
    }
}

TEST_F(Utility, PairBlendMixesOrTakesOneSide) {
    const NodeHandle node = make("pairBlend", "");
    set(node, "it1", 0, 10, 20);
    set(node, "it2", 4, 14, 24);
    setDegrees(node, "ir1", 10, 0, 0);
    setDegrees(node, "ir2", 30, 0, 0);
    expectNear(get(node, "ot"), V3d(4, 14, 24));
    set(node, "w", 0.25);
    expectNear(get(node, "ot"), V3d(1, 11, 21));
    expectNear(degrees(node, "or"), V3d(15, 0, 0));
    set(node, "tym", 1);
    set(node, "tzm", 2);
    expectNear(get(node, "ot"), V3d(1, 10, 24));
    // the short way round: from 170 to -170 degrees passes 180, not 0
    setDegrees(node, "ir1", 0, 0, 170);
    setDegrees(node, "ir2", 0, 0, -170);
    set(node, "w", 0.5);
    expectNear(degrees(node, "or"), V3d(0, 0, 0));
    set(node, "ri", 1);
    expectNear(degrees(node, "or"), V3d(0, 0, 180));
}

TEST_F(Utility, ChoicePassesEveryKindOfValue) {
    const NodeHandle choice = make("choice", ""), a = make("transform", "a"),
                     b = make("transform", "b");
    const NodeHandle to = make("transform", "to"), inverse = make("inverseMatrix", "");
    link(a, "t", choice, "i[0]");
    link(b, "t", choice, "i[1]");
    link(choice, "o", to, "t");
    set(a, "t", 1, 2, 3);
    set(b, "t", 4, 5, 6);
    expectNear(get(to, "t"), V3d(1, 2, 3));
    set(choice, "s", 1);
    expectNear(get(to, "t"), V3d(4, 5, 6));
    set(choice, "s", 9);
    set(b, "tx", 7);
    expectNear(get(to, "t"), V3d(7, 5, 6));

    const NodeHandle matrices = make("choice", "");
    link(a, "wm[0]", matrices, "i[0]");
    link(b, "wm[0]", matrices, "i[1]");
    link(matrices, "o", inverse, "imat");
    expectNear(translationOf(matrix(inverse, "omat")), V3d(-1, -2, -3));
    set(matrices, "s", 1);
    expectNear(translationOf(matrix(inverse, "omat")), V3d(-7, -5, -6));

    const NodeHandle numbers = make("choice", "");
    link(a, "ty", numbers, "i[0]");
    link(b, "ty", numbers, "i[1]");
    link(numbers, "o", to, "sx");
    EXPECT_EQ(number(to, "sx"), 2);
    set(numbers, "s", 1);
    EXPECT_EQ(number(to, "sx"), 5);
}

TEST_F(Utility, ConversionsTakeThreeAnglesAtOnce) {
    const NodeHandle from = make("transform", "from"), node = make("unitConversion", ""),
                     to = make("transform", "to");
    set(node, "cf", 180.0 / kPi);
    link(from, "r", node, "i");
    link(node, "o", to, "t");
    setDegrees(from, "r", 10, 20, 30);
    expectNear(get(to, "t"), V3d(10, 20, 30));
    setDegrees(from, "r", 10, -90, 30);
    expectNear(get(to, "t"), V3d(10, -90, 30));
}

TEST_F(Utility, ConversionsOfTimesCountTicks) {
    const NodeHandle to = make("transform", "to"), node = make("unitConversion", "");
    set(node, "cf", 24.0 / 6000.0);
    link(scene.timeNode(), "outTime", node, "i");
    link(node, "o", to, "tx");
    scene.setNumber(plug(scene.timeNode(), "outTime"), 12);
    EXPECT_NEAR(get(to, "t").x, 12, 1e-12);
}

}  // namespace
}  // namespace torvel::test
