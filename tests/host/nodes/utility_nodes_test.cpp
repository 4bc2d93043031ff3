#include <cmath>

#include "node_scene.h"
#include "support/scene_script.h"

namespace torvel::test {
namespace {

struct UtilityCase {
    const char* name;
    const char* script;
};

class Utility : public ::testing::TestWithParam<UtilityCase> {};

const UtilityCase kUtilities[] = {
    {"MultiplyDivideByOperation", R"(
        multiplyDivide n
        n.i2 == 1 1 1
        n.op 0; n.input1 1 2 3; n.input2 9 9 9; n.output == 1 2 3
        n.op 1; n.i2 4 5 -6; n.o == 4 10 -18
        n.op 2; n.i1 1 9 3; n.i2 4 3 0; n.o == 0.25 3 0  # nothing is divided by zero
        n.op 3; n.i1 2 9 -4; n.i2 3 0.5 0.5; n.o == 8 3 0  # no root of a negative number)"},
    {"FloatsKeepWhatAFloatHolds", R"(
        transform from; multiplyDivide n; from.tx -> n.i1x
        from.tx 0.1; n.ox == 0.10000000149011612 ~ 0)"},
    {"CompoundAndChildConnectionsFollowTheirSource", R"(
        transform from; multiplyDivide n; transform to; from.t -> n.i1; n.o -> to.t
        n.i2 2 3 4; from.t 1 2 3; to.t == 2 6 12
        from.ty 10; to.t == 2 30 12
        reverse r; n.oy -> r.iz; r.o == 1 1 -29
        from.ty 0; r.o == 1 1 1)"},
    {"PlusMinusAverageOverSparseArrays", R"(
        plusMinusAverage n; transform from
        n.o1 == 0
        n.i1[2] 10; n.i1[5] 4; from.tx -> n.i1[9]; from.tx 1
        n.op 0; n.output1D == 10
        n.op 1; n.o1 == 15
        n.op 3; n.o1 == 5
        n.op 2; n.o1 == 5
        n.input2D[0].input2Dx 7; n.i2[1].i2x 3; n.i2[1].i2y 2; n.o2x == 4; n.output2Dy == -2
        from.t -> n.i3[0]; n.i3[1] 1 1 1; from.t 5 6 7; n.o3 == 4 5 6
        from.tz 0; n.o3 == 4 5 -1)"},
    {"DistancesRunThroughTheMatrices", R"(
        distanceBetween n; transform a; transform b
        n.p1 1 2 3; n.p2 1 5 7; n.distance == 5
        n.p1 0 0 0; n.p2 0 0 0; a.wm[0] -> n.im1; b.wm[0] -> n.im2
        a.t 1 0 0; b.t 1 6 8; n.d == 10
        b.ty 0; n.d == 8)"},
    {"BlendsOfNumbers", R"(
        blendColors n
        n.op == 0.5 0 0.5
        n.b 0.25; n.c1 4 8 12; n.c2 0 4 0; n.op == 1 5 3
        blendTwoAttr two
        two.i[0] 10; two.i[1] 20; two.o == 10
        two.ab 0.3; two.o == 13
        blendWeighted w
        w.i[0] 10; w.i[3] 20; w.o == 30
        w.w[3] 0.5; w.w[0] 2; w.o == 30
        w.w[0] 0; w.o == 10)"},
    {"ClampAndSetRange", R"(
        clamp c
        c.mn -1 0 2; c.mx 1 1 3; c.ip -5 0.5 9; c.op == -1 0.5 3
        setRange r
        r.on 0 10 5; r.om 10 20 5; r.n 100 -1 7; r.m 200 1 8; r.v 2.5 25 5; r.o == 125 1 7)"},
    {"RemapValueThroughItsRamps", R"(
        remapValue n
        n.i 0.25; n.ov == 0.25 ~ 1e-7; n.oc == 0.25 0.25 0.25 ~ 1e-7  # straight when new
        n.imn 10; n.imx 20; n.omn 100; n.omx 200
        n.i 12.5; n.ov == 125 ~ 1e-5
        n.i 99; n.ov == 200
        n.i -99; n.ov == 100
        # a peak in the middle, told out of order
        n.vl[1].vlp 1; n.vl[1].vlfv 0; n.vl[4].vlp 0.5; n.vl[4].vlfv 1; n.vl[4].vli 1
        n.i 17.5; n.ov == 150 ~ 1e-5
        n.vl[4].vli 2; n.i 16.25; n.ov == 184.375 ~ 1e-4  # smooth: 2 - (3/16 - 2/64)
        n.vl[4].vli 0; n.ov == 200
        # a spline leaves the first key at its secant and passes the top level: 0.5 + 0.125
        n.vl[0].vli 3; n.i 12.5; n.ov == 162.5 ~ 1e-4)"},
    {"SumsAndProducts", R"(
        addDoubleLinear a; a.i1 0.1; a.i2 0.2; a.o == 0.30000000000000004 ~ 0
        multDoubleLinear m; m.i1 0.1; m.i2 3; m.o == 0.30000000000000004 ~ 0
        multiply p; p.o == 0; p.i[0] 2; p.i[1] 7; p.o == 14
        sum s; s.i[0] 2; s.i[1] 7; s.o == 9
        floatConstant c; c._f 0.5; c.of == 0.5)"},
    {"MatricesAreComposedAndTakenApart", R"(
        composeMatrix c; decomposeMatrix d
        c.it 1 2 3; c.ir 0 0 90d; c.is 2 3 4
        c.omat == 0 2 0 0  -3 0 0 0  0 0 4 0  1 2 3 1
        c.omat -> d.imat; d.ot == 1 2 3; d.or == 0 0 90d; d.os == 2 3 4; d.osh == 0 0 0
        d.oqz == 0.70710678118654752; d.oqw == 0.70710678118654752
        c.uer 0; c.omat == 2 0 0 0  0 3 0 0  0 0 4 0  1 2 3 1
        # (1, 0, 0, 1) is a quarter turn about x, of any length
        c.iqx 1; c.omat == 2 0 0 0  0 0 3 0  0 -4 0 0  1 2 3 1
        c.uer 1; c.iro 5; c.ir 0.3 0.4 0.5; d.iro 5; d.or == 0.3 0.4 0.5)"},
    {"ProductsSumsAndTransposesOfMatrices", R"(
        multMatrix n; transform turned; transform moved
        n.o == 1 0 0 0  0 1 0 0  0 0 1 0  0 0 0 1
        turned.rz 90d; moved.tx 5; turned.m -> n.i[1]; moved.m -> n.i[0]
        n.o == 0 5 0  # first moved along x, then turned: ends on y
        inverseMatrix i; multMatrix one; n.o -> i.imat; n.o -> one.i[0]; i.omat -> one.i[1]
        one.o == 1 0 0 0  0 1 0 0  0 0 1 0  0 0 0 1
        transposeMatrix t; n.o -> t.imat; t.omat == 0 -1 0 0  1 0 0 5  0 0 1 0  0 0 0 1
        wtAddMatrix s; moved.m -> s.i[0].m; turned.m -> s.i[1].m; s.i[0].w 0.25; s.i[1].w 0.75
        s.o == 0.25 0.75 0 0  -0.75 0.25 0 0  0 0 1 0  1.25 0 0 1)"},
    {"MatricesArePickedAndBlended", R"(
        transform from; from.t 1 2 3; from.rz 90d; from.s 2 2 2
        pickMatrix p; from.m -> p.imat
        p.omat == 0 2 0 0  -2 0 0 0  0 0 2 0  1 2 3 1
        p.rot 0; p.sca 0; p.omat == 1 0 0 0  0 1 0 0  0 0 1 0  1 2 3 1
        p.tra 0; p.rot 1; p.omat == 0 1 0 0  -1 0 0 0  0 0 1 0  0 0 0 1
        blendMatrix b; from.m -> b.tgt[0].tmat
        b.omat == 0 2 0 0  -2 0 0 0  0 0 2 0  1 2 3 1
        decomposeMatrix d; b.omat -> d.imat; b.tgt[0].wgt 0.5
        d.or == 0 0 45d; d.os == 1.5 1.5 1.5; d.ot == 0.5 1 1.5; d.osh == 0 0 0
        b.tgt[0].row 0; b.omat == 1.5 0 0 0  0 1.5 0 0  0 0 1.5 0  0.5 1 1.5 1
        b.env 0; b.omat == 1 0 0 0  0 1 0 0  0 0 1 0  0 0 0 1)"},
    {"PairBlendMixesOrTakesOneSide", R"(
        pairBlend n
        n.it1 0 10 20; n.it2 4 14 24; n.ir1 10d 0 0; n.ir2 30d 0 0; n.ot == 4 14 24
        n.w 0.25; n.ot == 1 11 21; n.or == 15d 0 0
        n.tym 1; n.tzm 2; n.ot == 1 10 24
        # the short way round: from 170 to -170 degrees passes 180, not 0
        n.ir1 0 0 170d; n.ir2 0 0 -170d; n.w 0.5; n.or == 0 0 0
        n.ri 1; n.or == 0 0 180d)"},
    {"ChoicePassesEveryKindOfValue", R"(
        choice c; transform a; transform b; transform to
        a.t -> c.i[0]; b.t -> c.i[1]; c.o -> to.t; a.t 1 2 3; b.t 4 5 6; to.t == 1 2 3
        c.s 1; to.t == 4 5 6
        c.s 9; b.tx 7; to.t == 7 5 6
        choice matrices; inverseMatrix inv
        a.wm[0] -> matrices.i[0]; b.wm[0] -> matrices.i[1]; matrices.o -> inv.imat
        inv.omat == -1 -2 -3
        matrices.s 1; inv.omat == -7 -5 -6
        choice numbers; a.ty -> numbers.i[0]; b.ty -> numbers.i[1]; numbers.o -> to.sx; to.sx == 2
        numbers.s 1; to.sx == 5)"},
    {"ConversionsTakeThreeAnglesAtOnce", R"(
        transform from; unitConversion n; transform to; n.cf 57.29577951308232
        from.r -> n.i; n.o -> to.t; from.r 10d 20d 30d; to.t == 10 20 30
        from.ry -90d; to.t == 10 -90 30)"},
    {"ConversionsOfTimesCountTicks", R"(
        transform to; unitConversion n; n.cf 0.004
        time1.outTime -> n.i; n.o -> to.tx; time1.outTime 12; to.tx == 12)"},
};

TEST_P(Utility, Gives) {
    Log log;
    Scene scene{nodeTypes(), log};
    SceneScript(scene).run(GetParam().script);
}

INSTANTIATE_TEST_SUITE_P(Nodes, Utility, ::testing::ValuesIn(kUtilities),
                         [](const auto& each) { return std::string(each.param.name); });

using UtilityScene = NodeScene;

TEST_F(UtilityScene, ConditionChoosesByItsTerms) {
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

struct AimCase {
    const char* what;
    int mode, upMode;
    V3d target, upTarget;
    double envelope;
    V3d x, y;  // the first two rows of what comes out
};

const double kHalf = std::sqrt(0.5);
const AimCase kAims[] = {
    {"the smallest turn", 1, 0, {0, 0, 10}, {}, 1, {0, 0, 2}, {0, 1, 0}},
    {"half of it", 1, 0, {0, 0, 10}, {}, 0.5, {2 * kHalf, 0, 2 * kHalf}, {0, 1, 0}},
    {"up at a point", 1, 1, {10, 0, 0}, {2, -1, 9}, 1, {2, 0, 0}, {0, 0, 1}},
    {"up along a direction", 1, 2, {0, 0, 5}, {0, 1, 0}, 1, {0, 0, 2}, {-1, 0, 0}},
    {"along, not at", 2, 0, {0, -1, 0}, {}, 1, {0, -2, 0}, {1, 0, 0}},
    {"only the up axis", 0, 2, {}, {1, 0, 0}, 1, {2, 0, 0}, {0, 1, 0}},
    {"up along the aim: smallest turn", 1, 2, {0, 5, 0}, {1, 0, 0}, 1, {0, 2, 0}, {-1, 0, 0}},
    {"nothing to point at", 1, 0, {0, 0, 0}, {}, 1, {2, 0, 0}, {0, 1, 0}},
    {"switched off", 1, 1, {0, 0, 5}, {1, 0, 0}, 0, {2, 0, 0}, {0, 1, 0}},
};

TEST_F(UtilityScene, AimMatrixTurnsOneAxisAndLeansASecondOne) {
    const NodeHandle node = make("aimMatrix", "");
    scene.setMatrix(plug(node, "inputMatrix"),
                    scaleMatrix({2, 1, 1}) * translationMatrix({1, 2, 3}));
    scene.setMatrix(plug(node, "primaryTargetMatrix"), translationMatrix({1, 2, 3}));
    scene.setMatrix(plug(node, "secondaryTargetMatrix"), eulerMatrix({0, 0, kPi / 2}));
    for (const AimCase& c : kAims) {
        SCOPED_TRACE(c.what);
        set(node, "primaryMode", c.mode);
        set(node, "secondaryMode", c.upMode);
        set(node, "primaryTargetVector", c.target.x, c.target.y, c.target.z);
        set(node, "secondaryTargetVector", c.upTarget.x, c.upTarget.y, c.upTarget.z);
        set(node, "envelope", c.envelope);
        const V3d z = (c.x / 2.0).cross(c.y);
        expectNear(
            scene.matrix(plug(node, "outputMatrix")),
            M44d(c.x.x, c.x.y, c.x.z, 0, c.y.x, c.y.y, c.y.z, 0, z.x, z.y, z.z, 0, 1, 2, 3, 1));
    }
}

}  // namespace
}  // namespace torvel::test
