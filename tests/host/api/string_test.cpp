#include <string>

#include <gtest/gtest.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

namespace {

std::string text(const MString& string) {
    return {string.asChar(), string.length()};
}

// "señal": five characters, six bytes.
const char* const kAccented =
    "se\xC3\xB1"
    "al";

TEST(StringTest, numbersAreWrittenShort) {
    EXPECT_EQ(text(MString("v") + 1.0), "v1");
    EXPECT_EQ(text(MString("v") + 40), "v40");
    EXPECT_EQ(text(MString("v") + -0.25), "v-0.25");
    EXPECT_EQ(text(MString("v") + 1.0 / 3.0), "v0.333333");
    EXPECT_EQ(text(MString("v") + 7.88260904e-16), "v7.88261e-16");
    EXPECT_EQ(text(MString("v") + 1e-05), "v1e-05");
}

TEST(StringTest, appendingTakesEveryKindOfNumber) {
    MString string("n");
    string += 3;
    string += -4;
    string += 5u;
    string += 0.5f;
    string += 2.5;
    string += "x";
    EXPECT_EQ(text(string), "n3-450.52.5x");
}

TEST(StringTest, appendingToItselfDoublesIt) {
    MString string("abc");
    string += string;
    string += string.asChar();
    EXPECT_EQ(text(string), "abcabcabcabc");
    string = string.asChar() + 9;
    EXPECT_EQ(text(string), "abc");
}

TEST(StringTest, bytesAndCharactersAreCountedApart) {
    const MString string(kAccented);
    EXPECT_EQ(string.length(), 6u);
    EXPECT_EQ(string.numChars(), 5);
    EXPECT_EQ(string.index('a'), 4);
    EXPECT_EQ(string.indexW('a'), 3);
    EXPECT_EQ(string.indexW(MString("al")), 3);
    EXPECT_EQ(string.indexW(L'\u00f1'), 2);
    EXPECT_EQ(string.indexW("|"), -1);
}

TEST(StringTest, partsIncludeTheirEndAndAreClipped) {
    const MString string("|shoulder");
    EXPECT_EQ(text(string.substringW(1, 3)), "sho");
    EXPECT_EQ(text(string.substringW(1, static_cast<int>(string.length()) - 1)), "shoulder");
    EXPECT_EQ(text(string.substring(0, 0)), "|");
    EXPECT_EQ(text(string.substring(4, 400)), "ulder");
    EXPECT_EQ(text(string.substringW(3, 2)), "");
    EXPECT_EQ(text(string.substringW(30, 40)), "");
    EXPECT_EQ(text(string.substringW(-1, 2)), "");
    EXPECT_EQ(text(MString().substringW(0, 5)), "");
}

TEST(StringTest, partsOfAccentedTextKeepWholeCharacters) {
    const MString string(kAccented);
    EXPECT_EQ(text(string.substringW(1, 2)), "e\xC3\xB1");
    EXPECT_EQ(text(string.substringW(0, static_cast<int>(string.length()) - 1)), kAccented);
}

TEST(StringTest, substituteReplacesEveryOccurrence) {
    MString string("a|b|c");
    EXPECT_TRUE(string.substitute("|", "__"));
    EXPECT_EQ(text(string), "a__b__c");
    EXPECT_FALSE(string.substitute("", "x"));
    EXPECT_EQ(text(string), "a__b__c");
}

TEST(StringTest, splitDropsEmptyParts) {
    MStringArray parts(1, MString("old"));
    EXPECT_TRUE(MString("|a||b|").split('|', parts));
    ASSERT_EQ(parts.length(), 2u);
    EXPECT_EQ(text(parts[0]), "a");
    EXPECT_EQ(text(parts[1]), "b");
}

TEST(StringTest, wideTextGoesBothWays) {
    const MString string(L"se\u00f1al");
    EXPECT_TRUE(string == kAccented);
    EXPECT_EQ(std::wstring(MString(kAccented).asWChar()), L"se\u00f1al");
    int length = 0;
    EXPECT_EQ(MString("a\xFFz").asWChar(length)[1], L'\uFFFD');
    EXPECT_EQ(length, 3);
}

TEST(StringTest, nullPointersAreEmptyTexts) {
    const char* nothing = nullptr;
    MString string(nothing);
    EXPECT_TRUE(string.isEmpty());
    EXPECT_TRUE(string == nothing);
    string += nothing;
    string = nothing;
    EXPECT_STREQ(string.asChar(), "");
}

TEST(StringTest, numbersAreReadWholeOrNotAtAll) {
    EXPECT_TRUE(MString(" 12 ").isInt());
    EXPECT_EQ(MString("12").asInt(), 12);
    EXPECT_FALSE(MString("12a").isInt());
    EXPECT_DOUBLE_EQ(MString("-2.5e1").asDouble(), -25.0);
    EXPECT_FALSE(MString("").isDouble());
}

TEST(StringArrayTest, itemsMoveWithInsertAndRemove) {
    MStringArray list;
    list.append("b");
    EXPECT_TRUE(list.insert("a", 0));
    EXPECT_TRUE(list.insert("c", 2));
    EXPECT_FALSE(list.insert("x", 9));
    EXPECT_TRUE(list.remove(1));
    EXPECT_FALSE(list.remove(2));
    ASSERT_EQ(list.length(), 2u);
    EXPECT_EQ(text(list[0]) + text(list[1]), "ac");
}

TEST(StringArrayTest, anItemOfTheListMayBeAppendedToIt) {
    MStringArray list;
    list.append("a");
    for (int i = 0; i < 20; ++i)
        list.append(list[0]);
    EXPECT_EQ(text(list[20]), "a");
}

TEST(StringArrayTest, lengtheningGivesFreshItems) {
    MStringArray list(2, MString("x"));
    list.clear();
    list.setLength(2);
    EXPECT_TRUE(list[0].isEmpty());
    EXPECT_TRUE(list[1].isEmpty());
}

}  // namespace
