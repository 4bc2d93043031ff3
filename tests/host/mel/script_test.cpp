#include <filesystem>
#include <fstream>
#include <random>

#include <gtest/gtest.h>

#include "mel/language.h"
#include "host/mel/probe_commands.h"

namespace torvel::test {
namespace {

class Mel : public testing::Test {
  protected:
    Mel() {
        m_session.addCommands({kProbeCommands, 3});
        m_mel = makeMelLanguage(m_session);
        m_session.log().addSink([this](const LogLine& line) { m_shown += line.text + "\n"; });
        m_session.output().listen([this](const std::string& text, bool) { m_printed += text; });
    }
    ~Mel() override { m_session.output().listen({}); }

    static std::string show(const Value& value) {
        if (value.isNone())
            return "none";
        if (value.isString())
            return "\"" + value.string() + "\"";
        std::string text;
        if (value.isList()) {
            for (const Value& item : value.list())
                text += (text.empty() ? "{" : " ") + show(item);
            return text.empty() ? "{}" : text + "}";
        }
        if (value.isTuple()) {
            for (const double item : value.tuple().items)
                text += (text.empty() ? "<" : " ") + textOfDouble(item);
            return text + ">";
        }
        return value.isDouble() ? textOfDouble(value.number()) + "f"
                                : std::to_string(value.integer());
    }
    std::string run(const std::string& text) {
        Value result;
        const Status status = m_mel->run(text, result);
        return status ? show(result) : "! " + status.text();
    }

    std::string m_shown, m_printed;
    Session m_session;
    std::unique_ptr<Language> m_mel;
};

struct Case {
    std::string text, expected;
    int line;
};

// A case is everything up to a line "// -> result".
std::vector<Case> casesOf(const std::filesystem::path& path) {
    std::vector<Case> cases;
    std::ifstream file(path);
    std::string text;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        const std::string mark = "// -> ";
        const std::size_t at = line.find(mark);
        if (at == std::string::npos) {
            text += line + "\n";
            continue;
        }
        cases.push_back({text + line.substr(0, at), line.substr(at + mark.size()), number});
        text.clear();
    }
    return cases;
}

TEST_F(Mel, ScriptsGiveTheResultsWrittenBesideThem) {
    int count = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(TORVEL_SOURCE_DIR "/tests/host/mel")) {
        if (entry.path().extension() != ".mel")
            continue;
        m_mel = makeMelLanguage(m_session);  // each file has its own variables
        for (const Case& one : casesOf(entry.path())) {
            EXPECT_EQ(run(one.text), one.expected) << entry.path().filename() << ":" << one.line;
            ++count;
        }
    }
    EXPECT_GT(count, 80);
}

TEST_F(Mel, PrintsWithoutDecoration) {
    run("print \"a\\n\"; print (1.0/3); print ({1,2}); print(<<1,2,3.5>>)");
    EXPECT_EQ(m_printed, "a\n0.33333333331\n2\n1 2 3.5");
}

TEST_F(Mel, AFailureShowsItsLineAndStopsTheText) {
    EXPECT_EQ(run("print \"a\";\nnoSuchThing 1;\nprint \"b\";"),
              "! line 2: Cannot find procedure \"noSuchThing\".");
    EXPECT_EQ(m_printed, "a");
    EXPECT_EQ(m_shown, "// Error: line 2: Cannot find procedure \"noSuchThing\".\n");
}

TEST_F(Mel, ASyntaxErrorRunsNothing) {
    EXPECT_EQ(run("print \"a\";\nprint ,;"), "! Line 2.7: Syntax error");
    EXPECT_EQ(m_printed, "");
    EXPECT_EQ(m_shown, "// Error: Line 2.7: Syntax error\n");
}

TEST_F(Mel, WarningsAndCaughtErrorsAreShown) {
    EXPECT_EQ(run("warning \"w\";\ncatch(`fails`);\ncatchQuick(`fails`)"), "1");
    EXPECT_EQ(m_shown, "// Warning: line 1: w\n// Error: line 2: fails: it went wrong\n");
}

TEST_F(Mel, SourcedFilesNameThemselves) {
    const std::string path = testing::TempDir() + "faulty.mel";
    std::ofstream(path) << "global proc int fromFile() { return 7; }\n\nbroken;\n";
    EXPECT_EQ(run("source \"" + path + "\""),
              "! file: " + path + " line 3: Cannot find procedure \"broken\".");
    EXPECT_EQ(run("fromFile"), "7");
}

TEST_F(Mel, PluginCommandsGetTheirFlagsAsTexts) {
    m_session.addPluginCommand("plug", [](const std::vector<Value>& args, Value& result) {
        std::string text;
        for (const Value& value : args)
            text += describeValue(value) + ";";
        result = Value(text);
        return Status::ok();
    });
    EXPECT_EQ(run("plug -n \"a\" b 3"), "\"-n;a;b;3;\"");
    m_session.removePluginCommand("plug");
    EXPECT_EQ(run("plug"), "! line 1: Cannot find procedure \"plug\".");
}

TEST_F(Mel, EndlessNestingIsAnError) {
    EXPECT_EQ(run("proc f() { f(); } f();").substr(0, 2), "! ");
    EXPECT_EQ(run(std::string(200000, '(')).substr(0, 2), "! ");
    EXPECT_EQ(run(std::string(200000, '{')).substr(0, 2), "! ");
    std::string sum = "1";
    for (int i = 0; i < 200000; ++i)
        sum += "+1";
    run("int $s = " + sum);  // a result or an error, no crash
    EXPECT_EQ(run("1 + 1"), "2");
}

TEST_F(Mel, RandomTokensNeverCrash) {
    static const char* kTokens[] = {
        "print", "$a",    "$b[2]",   "(",      ")",        "{",      "}",           "[",   "]",
        "`",     ";",     "\"t\"",   "1",      "2.5",      "-",      "-n",          "int", "string",
        "$c[]",  "=",     "+",       "*",      "^",        "<<",     ">>",          ",",   "if",
        "else",  "probe", "list",    "proc",   "f",        "return", "for",         "in",  "switch",
        "case",  ":",     "default", "catch",  "size",     "\"",     "|a|b.t[0:2]", "?",   "&&",
        "!",     "++",    ".",       "eval",   "tokenize", "clear",  "0x",          "1e",  "@",
        "\\",    "//",    "/*",      "global", "float",    "-ee"};
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        const unsigned length = 1 + random() % 14;
        for (unsigned k = 0; k < length; ++k)
            text += std::string(kTokens[random() % (sizeof kTokens / sizeof kTokens[0])]) +
                    (random() % 2 ? " " : "");
        run(text);
        m_shown.clear();
        m_printed.clear();
    }
    EXPECT_EQ(run("1 + 1"), "2");
}

}  // namespace
}  // namespace torvel::test
