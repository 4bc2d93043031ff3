#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "files/ma/text_codes.h"
#include "files/ma/units.h"

namespace torvel {
namespace {

std::string degrees(double radians) {
    std::string out;
    appendInUnits(out, radians, FileUnits::kDegreeFactor);
    return out;
}

std::string plain(double value) {
    std::string out;
    appendDouble(out, value);
    return out;
}

TEST(Units, RoundAnglesComeOutRound) {
    for (const char* text : {"90", "-45", "30", "0.1", "360", "0"})
        EXPECT_EQ(degrees(std::strtod(text, nullptr) * FileUnits::kDegreeFactor), text);
}

TEST(Units, AnAngleOfAFileComesBackExactly) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> angle(-720.0, 720.0);
    for (int i = 0; i < 20000; ++i) {
        const double radians = angle(random) * FileUnits::kDegreeFactor;
        ASSERT_EQ(std::strtod(degrees(radians).c_str(), nullptr) * FileUnits::kDegreeFactor,
                  radians);
    }
}

TEST(Units, NumbersOfUsualSizeHaveNoExponent) {
    EXPECT_EQ(plain(100000.0), "100000");
    EXPECT_EQ(plain(0.25), "0.25");
    EXPECT_EQ(plain(-0.0), "-0");
    EXPECT_EQ(std::strtod(plain(5.551115123125783e-17).c_str(), nullptr), 5.551115123125783e-17);
    EXPECT_EQ(std::strtod(plain(1.5e300).c_str(), nullptr), 1.5e300);
}

TEST(Units, WhatIsNoNumberIsWrittenAsAWord) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(plain(std::nan("")), "nan");
    EXPECT_EQ(plain(-kInfinity), "-inf");
    std::string angle;
    appendInUnits(angle, kInfinity, FileUnits::kDegreeFactor);
    EXPECT_EQ(angle, "inf");
}

TEST(Units, NumbersFollowTheType) {
    const FileUnits units;
    const auto text = [&](AttrType type, double value) {
        std::string out;
        appendNumber(out, type, value, units);
        return out;
    };
    EXPECT_EQ(text(AttrType::Bool, 1.0), "yes");
    EXPECT_EQ(text(AttrType::Bool, 0.0), "no");
    EXPECT_EQ(text(AttrType::Enum, 5.0), "5");
    EXPECT_EQ(text(AttrType::Long, 1e6), "1000000");
    EXPECT_EQ(text(AttrType::Float, static_cast<double>(0.1f)), "0.1");
    EXPECT_EQ(text(AttrType::Double, 0.1), "0.1");
}

TEST(Units, TheStatementSaysTheUnits) {
    EXPECT_EQ(FileUnits::of("currentUnit -l centimeter -a degree -t film").length, 1.0);
    EXPECT_EQ(FileUnits::of("currentUnit -linear meter -angle radian").length, 100.0);
    EXPECT_EQ(FileUnits::of("currentUnit -linear meter -angle radian").angle, 1.0);
    EXPECT_EQ(FileUnits::of("").angle, FileUnits::kDegreeFactor);
}

TEST(TextCodes, OnlyWhatIsNoUtf8IsConverted) {
    std::string old =
        "caf\xE9 \x80 \x93"
        "a"
        "\x94";
    toUtf8(old);
    EXPECT_EQ(old,
              "caf\xC3\xA9 \xE2\x82\xAC \xE2\x80\x9C"
              "a"
              "\xE2\x80\x9D");
    std::string utf8 = "caf\xC3\xA9 \xE2\x82\xAC";
    const std::string same = utf8;
    toUtf8(utf8);
    EXPECT_EQ(utf8, same);
}

}  // namespace
}  // namespace torvel
