#include <string>

#include <gtest/gtest.h>

#include "python/run.h"

namespace torvel::test {
namespace {

// The text of the last statement if it can be an expression, "-" otherwise.
std::string last(const std::string& text) {
    const py::TextRange range = py::lastExpression(text);
    return range.isEmpty() ? "-" : text.substr(range.begin, range.end - range.begin);
}

TEST(LastExpression, IsFoundBehindSeparators) {
    EXPECT_EQ(last("a"), "a");
    EXPECT_EQ(last("import x; f(1)"), "f(1)");
    EXPECT_EQ(last("a = 1\nf(a,\n  2)\n"), "f(a,\n  2)");
    EXPECT_EQ(last("f(a=1)"), "f(a=1)");
    EXPECT_EQ(last("x == 1"), "x == 1");
    EXPECT_EQ(last("'a;b\\'c'"), "'a;b\\'c'");
    EXPECT_EQ(last("'''a\n; b'''; c # d; e").substr(0, 1), "c");
    EXPECT_EQ(last("f();"), "f()");
    EXPECT_EQ(last("a + \\\nb"), "a + \\\nb");
}

TEST(LastExpression, IsNoneOfAStatement) {
    for (const char* text : {"", "# only", "a = 1", "import os", "for i in x: f()", "if a: b; c",
                             "if a:\n    b", "def f():\n    pass", "else: f()", "@d\ndef f(): pass",
                             "del a", "a = 1; b = 2", "(a) = 2"})
        EXPECT_EQ(last(text), "-") << text;
}

}  // namespace
}  // namespace torvel::test
