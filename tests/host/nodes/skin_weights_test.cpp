#include "nodes/deform/skin_weights.h"

#include <gtest/gtest.h>

namespace torvel {
namespace {

bool readInto(WeightList& weights, std::int32_t vertex, bool whole, std::int64_t first,
              std::int64_t last, const char* text, std::string* message = nullptr) {
    const std::int32_t path[] = {vertex, -1, -1, -1};
    NumberSource source(text);
    std::string error;
    const bool good = weights.read(path, whole ? 0 : 1, whole, first, last, source, error);
    if (message)
        *message = error;
    return good && source.atEnd();
}

TEST(SkinWeights, ReadsCountedLists) {
    WeightList weights;
    ASSERT_TRUE(readInto(weights, -1, true, 0, 2, "1 0 1\n 2 3 0.25 7 0.75\n 0"));
    ASSERT_EQ(weights.size(), 3u);
    EXPECT_EQ(weights.weight(0, 0), 1.0);
    ASSERT_EQ(weights.count(1), 2u);
    EXPECT_EQ(weights.begin(1)[0].influence, 3);
    EXPECT_EQ(weights.begin(1)[1].weight, 0.75);
    EXPECT_EQ(weights.count(2), 0u);
}

TEST(SkinWeights, ReadsOneVertexARange) {
    WeightList weights;
    ASSERT_TRUE(readInto(weights, 7, false, 0, 3, "0.5 0 0.25 0.25"));
    ASSERT_TRUE(readInto(weights, 7, false, 12, 12, "0.125"));
    EXPECT_EQ(weights.size(), 8u);
    EXPECT_EQ(weights.count(7), 4u);  // the zero is left out
    EXPECT_EQ(weights.weight(7, 1), 0.0);
    EXPECT_EQ(weights.weight(7, 12), 0.125);
    EXPECT_EQ(weights.innerLogicalAt(7, 3), 12);
    EXPECT_EQ(weights.innerSize(3), 0u);
}

TEST(SkinWeights, AListSplitOverTwoStatementsIsJoined) {
    WeightList weights;
    ASSERT_TRUE(readInto(weights, -1, true, 0, 1, "1 0 1 1 4 0.5"));
    ASSERT_TRUE(readInto(weights, -1, true, 1, 2, "1 9 0.5 1 0 1"));
    EXPECT_EQ(weights.count(1), 2u);
    EXPECT_EQ(weights.sum(1), 1.0);
}

TEST(SkinWeights, DamageIsRefusedByVertex) {
    WeightList weights;
    std::string error;
    EXPECT_FALSE(readInto(weights, -1, true, 0, 1, "1 0 1 2 0 0.5", &error));
    EXPECT_NE(error.find("vertex 1"), std::string::npos) << error;
    EXPECT_FALSE(readInto(weights, -1, true, 0, 0, "1 -4 0.5"));
    EXPECT_FALSE(readInto(weights, -1, false, 0, 0, "0.5"));
}

TEST(SkinWeights, WritesWhatItRead) {
    WeightList weights;
    ASSERT_TRUE(readInto(weights, -1, true, 0, 2, "1 0 1 2 3 0.1 7 0.9 0"));
    std::string text;
    weights.write("wl", text);
    EXPECT_EQ(text,
              "\tsetAttr -s 3 \".wl\";\n\tsetAttr \".wl[0:2].w\"\n\t\t1 0 1\n\t\t2 3 0.1 7 "
              "0.9\n\t\t0;\n");
}

TEST(SkinWeights, EditsStaySortedAndZeroRemoves) {
    WeightList weights;
    for (std::int32_t influence : {5, 1, 9, 3, 7, 0})
        weights.set(2, influence, influence + 1.0);
    weights.set(2, 3, 0.0);
    ASSERT_EQ(weights.count(2), 5u);
    const std::int32_t expected[] = {0, 1, 5, 7, 9};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(weights.begin(2)[i].influence, expected[i]);
        EXPECT_EQ(weights.begin(2)[i].weight, expected[i] + 1.0);
    }
}

TEST(SkinWeights, ManyGrowingListsSurvivePacking) {
    WeightList weights;
    for (std::int32_t influence = 0; influence < 40; ++influence)
        for (std::size_t v = 0; v < 600; ++v)
            weights.set(v, influence, static_cast<double>(v) + influence * 0.001 + 1.0);
    for (std::size_t v = 0; v < 600; ++v) {
        ASSERT_EQ(weights.count(v), 40u);
        for (std::int32_t influence = 0; influence < 40; ++influence)
            ASSERT_EQ(weights.weight(v, influence),
                      static_cast<double>(v) + influence * 0.001 + 1.0);
    }
}

TEST(SkinWeights, RevisionFollowsEdits) {
    WeightList weights;
    weights.set(0, 0, 1.0);
    const std::uint64_t before = weights.revision();
    EXPECT_EQ(weights.weight(0, 0), 1.0);
    EXPECT_EQ(weights.revision(), before);
    weights.set(0, 1, 0.5);
    EXPECT_NE(weights.revision(), before);
}

}  // namespace
}  // namespace torvel
