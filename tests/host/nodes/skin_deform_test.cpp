#include "nodes/deform/skin_deform.h"

#include <gtest/gtest.h>
#include <tbb/global_control.h>

#include <cmath>

#include "nodes/deform/skin_weights.h"

namespace torvel {
namespace {

M44d translation(double x, double y, double z) {
    M44d m;
    m.setTranslation(V3d(x, y, z));
    return m;
}

M44d turnZ(double degrees) {
    const double c = std::cos(degrees * kDegToRad), s = std::sin(degrees * kDegToRad);
    return M44d(c, s, 0, 0, -s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
}

// One vertex at a time with a list of weights and moves.
struct OneSkin {
    WeightList weights;
    SkinSetup setup;

    explicit OneSkin(std::vector<SkinWeight> list, std::vector<M44d> moves,
                     bool normalized = false) {
        weights.assign(0, std::move(list));
        for (const M44d& move : moves)
            setup.influences.push_back({true, move});
        setup.weights = &weights.compiled(normalized);
    }
    V3f move(const V3f& p) const {
        V3f out;
        deformPoints(setup, &p, &out, 1);
        return out;
    }
};

void expectPoint(const V3f& actual, double x, double y, double z, double tolerance = 1e-6) {
    EXPECT_NEAR(actual.x, x, tolerance);
    EXPECT_NEAR(actual.y, y, tolerance);
    EXPECT_NEAR(actual.z, z, tolerance);
}

TEST(SkinDeform, LinearIsTheWeightedMeanOfTheMoves) {
    const OneSkin skin({{0, 0.25}, {1, 0.75}}, {translation(4, 0, 0), turnZ(90)});
    // 0.25 * (1 + 4, 2, 3) + 0.75 * (-2, 1, 3)
    expectPoint(skin.move({1, 2, 3}), -0.25, 1.25, 3.0);
}

TEST(SkinDeform, GeometryMatrixSurroundsTheMove) {
    OneSkin skin({{0, 1.0}}, {turnZ(90)});
    skin.setup.geom = translation(10, 0, 0);
    // (1,0,0) is (11,0,0) in the world, turned to (0,11,0), back in its space (-10,11,0)
    expectPoint(skin.move({1, 0, 0}), -10.0, 11.0, 0.0, 1e-5);
    skin.setup.method = 1;
    expectPoint(skin.move({1, 0, 0}), -10.0, 11.0, 0.0, 1e-5);
}

TEST(SkinDeform, AnInfluenceThatIsGonePullsToTheOrigin) {
    OneSkin skin({{0, 0.5}, {1, 0.5}}, {M44d(), M44d()});
    skin.setup.influences[1].present = false;
    expectPoint(skin.move({2, 4, -6}), 1, 2, -3);
    const OneSkin missing({{0, 0.25}}, {M44d()});  // weights that do not sum to 1
    expectPoint(missing.move({2, 4, -8}), 0.5, 1, -2);
}

TEST(SkinDeform, PostNormalizationDividesByTheSum) {
    const OneSkin skin({{0, 0.1}, {1, 0.3}}, {translation(4, 0, 0), M44d()}, true);
    expectPoint(skin.move({0, 1, 0}), 1, 1, 0);
}

TEST(SkinDeform, BindPoseLeavesPointsBitForBit) {
    std::vector<SkinWeight> list;
    std::vector<M44d> moves;
    const M44d bind = turnZ(33) * translation(17.3, -211.7, 0.123);
    for (int i = 0; i < 7; ++i) {
        list.push_back({i, i == 6 ? 1.0 - 6.0 / 7.0 : 1.0 / 7.0});
        moves.push_back(bind.inverse() * bind);
    }
    OneSkin skin(list, moves);
    skin.setup.geom = translation(3, 4, 5);
    const V3f p(12.345678f, 99.87654f, -0.3333333f);
    EXPECT_EQ(skin.move(p), p);
}

TEST(SkinDeform, EnvelopeIsPartOfTheWay) {
    OneSkin skin({{0, 1.0}}, {translation(8, 0, 0)});
    skin.setup.envelope = 0.25;
    expectPoint(skin.move({1, 1, 1}), 3, 1, 1);
    skin.setup.method = 1;
    expectPoint(skin.move({1, 1, 1}), 3, 1, 1);
}

TEST(SkinDeform, DualQuaternionsKeepTheRadius) {
    OneSkin skin({{0, 0.5}, {1, 0.5}}, {M44d(), turnZ(90)});
    skin.setup.method = 1;
    const double h = std::sqrt(0.5);
    expectPoint(skin.move({2, 0, 1}), 2 * h, 2 * h, 1);  // half of the turn, no shrinking
    skin.setup.method = 0;
    expectPoint(skin.move({2, 0, 1}), 1, 1, 1);
}

TEST(SkinDeform, DualQuaternionsTakeTheShortWay) {
    OneSkin skin({{0, 0.5}, {1, 0.5}}, {turnZ(170), turnZ(-170)});  // mean: half a turn
    skin.setup.method = 1;
    expectPoint(skin.move({1, 0, 0}), -1, 0, 0);
}

TEST(SkinDeform, BlendWeightsMixBothMethods) {
    OneSkin skin({{0, 0.5}, {1, 0.5}}, {M44d(), turnZ(90)});
    const std::vector<double> blend{0.5};
    skin.setup.method = 2;
    skin.setup.blend = &blend;
    const double mean = 0.5 * (1.0 + 2.0 * std::sqrt(0.5));
    expectPoint(skin.move({2, 0, 0}), mean, mean, 0);
}

TEST(SkinDeform, ScaleActsInDualQuaternionsOnlyWhenAsked) {
    M44d scale;
    scale.setScale(V3d(3, 1, 1));
    OneSkin skin({{0, 1.0}}, {scale * turnZ(90)});
    skin.setup.method = 1;
    expectPoint(skin.move({1, 0, 0}), 0, 1, 0);
    skin.setup.keepScale = true;
    expectPoint(skin.move({1, 0, 0}), 0, 3, 0);
}

TEST(SkinDeform, ThreadCountDoesNotChangeABit) {
    constexpr std::size_t kCount = 50000;
    WeightList weights;
    std::vector<V3f> in(kCount), one(kCount), many(kCount);
    for (std::size_t v = 0; v < kCount; ++v) {
        in[v] = V3f(static_cast<float>(v % 97) * 0.37f, static_cast<float>(v % 31) * 1.7f,
                    static_cast<float>(v % 11));
        const double w = static_cast<double>(v % 100) / 100.0;
        weights.assign(v, {{static_cast<std::int32_t>(v % 5), w},
                           {static_cast<std::int32_t>(5 + v % 3), 1.0 - w}});
    }
    SkinSetup setup;
    for (int i = 0; i < 8; ++i)
        setup.influences.push_back({true, turnZ(10.0 * i) * translation(i, -i, 2.0 * i)});
    setup.weights = &weights.compiled(false);
    for (int method = 0; method < 3; ++method) {
        setup.method = method;
        {
            const tbb::global_control single(tbb::global_control::max_allowed_parallelism, 1);
            deformPoints(setup, in.data(), one.data(), kCount);
        }
        deformPoints(setup, in.data(), many.data(), kCount);
        EXPECT_EQ(one, many) << "method " << method;
    }
}

TEST(SkinDeform, PointsWithoutAListGoToTheOrigin) {
    const OneSkin skin({{0, 1.0}}, {M44d()});
    const V3f in[2] = {V3f(1, 2, 3), V3f(4, 5, 6)};
    V3f out[2];
    deformPoints(skin.setup, in, out, 2);
    EXPECT_EQ(out[0], in[0]);
    expectPoint(out[1], 0, 0, 0);
}

}  // namespace
}  // namespace torvel
