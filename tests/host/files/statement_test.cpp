#include <gtest/gtest.h>

#include "files/ma/attr_path.h"
#include "files/ma/statement.h"

namespace torvel {
namespace {

using Found = StatementScanner::Found;

TEST(StatementScanner, EndsStatementsOutsideQuotesOnly) {
    StatementScanner scanner("a \"x;\\\";y\" ; b;\n");
    std::string_view text;
    ASSERT_EQ(scanner.next(text), Found::Statement);
    EXPECT_EQ(text, "a \"x;\\\";y\"");
    ASSERT_EQ(scanner.next(text), Found::Statement);
    EXPECT_EQ(text, "b");
    EXPECT_EQ(scanner.next(text), Found::End);
}

TEST(StatementScanner, AnEscapedBackslashBeforeTheQuoteClosesTheText) {
    StatementScanner scanner("a \"x\\\\\"; b;");
    std::string_view text;
    ASSERT_EQ(scanner.next(text), Found::Statement);
    EXPECT_EQ(text, "a \"x\\\\\"");
}

TEST(StatementScanner, PassesCommentsAndCountsLines) {
    StatementScanner scanner("//head; \"\n/* one\n two; */\nfirst;\r\n// End of x.ma\nsecond;\n");
    std::string_view text;
    ASSERT_EQ(scanner.next(text), Found::Statement);
    EXPECT_EQ(text, "first");
    EXPECT_EQ(scanner.lineOf(text.data()), 4u);
    EXPECT_FALSE(scanner.sawEndLine());
    ASSERT_EQ(scanner.next(text), Found::Statement);
    EXPECT_EQ(scanner.lineOf(text.data()), 6u);
    EXPECT_TRUE(scanner.sawEndLine());
}

TEST(StatementScanner, ReportsWhatDoesNotEnd) {
    std::string_view text;
    EXPECT_EQ(StatementScanner("setAttr \".t\" 1").next(text), Found::Unfinished);
    EXPECT_EQ(StatementScanner("setAttr \".t;").next(text), Found::Unfinished);
    EXPECT_EQ(StatementScanner("/* open").next(text), Found::Unfinished);
    EXPECT_EQ(StatementScanner("  \n\t").next(text), Found::End);
}

TEST(TokenCursor, TellsFlagsFromNegativeNumbers) {
    TokenCursor cursor("setAttr -l on \".tx\" -5 -.5");
    EXPECT_EQ(cursor.next().text, "setAttr");
    EXPECT_TRUE(cursor.next().isFlag());
    cursor.next();
    EXPECT_EQ(cursor.next().kind, Token::Kind::Quoted);
    EXPECT_FALSE(cursor.next().isFlag());
    EXPECT_FALSE(cursor.next().isFlag());
    EXPECT_TRUE(cursor.next().isEnd());
}

TEST(TokenCursor, JoinsTextsInParentheses) {
    TokenCursor cursor("(\"one\\n\"\n\t\t+ \"two\")");
    std::string text;
    ASSERT_TRUE(cursor.text(text));
    EXPECT_EQ(text, "one\ntwo");
    EXPECT_TRUE(cursor.next().isEnd());
    TokenCursor open("(\"one\" + ");
    EXPECT_FALSE(open.text(text));
}

TEST(Quotes, EscapesGoThereAndBack) {
    const std::string text = "a\n\t\r\"\\ b";
    EXPECT_EQ(inQuotes(text), "\"a\\n\\t\\r\\\"\\\\ b\"");
    EXPECT_EQ(unescaped("a\\n\\t\\r\\\"\\\\ b"), text);
    EXPECT_EQ(onOneLine(" a \n\t\t\"b  c\"  -d "), "a \"b  c\" -d");
}

TEST(AttrPath, CutsStepsAndRanges) {
    AttrPath path;
    ASSERT_EQ(path.cut("wl[3].w[0:7].x"), AttrPath::Cut::Good);
    ASSERT_EQ(path.count, 3);
    EXPECT_EQ(path.steps[0].first, 3);
    EXPECT_EQ(path.steps[1].first, 0);
    EXPECT_EQ(path.steps[1].last, 7);
    EXPECT_EQ(path.steps[2].first, -1);
}

TEST(AttrPath, RefusesWhatIsNoPath) {
    AttrPath path;
    for (const char* text : {"", "a[", "a[]", "a[x]", "a[-1]", "a.", "a[1]b", ".a", "a[1:]"})
        EXPECT_EQ(path.cut(text), AttrPath::Cut::Malformed) << text;
    for (const char* text :
         {"a[4000000000]", "a[0:4000000000]", "a[99999999999999999999]", "a[5:2]"})
        EXPECT_EQ(path.cut(text), AttrPath::Cut::HugeIndex) << text;
}

}  // namespace
}  // namespace torvel
