#include <gtest/gtest.h>

#include "script/record.h"
#include "script/session.h"

namespace torvel::test {
namespace {

RecordEntry script(const std::string& text) {
    RecordEntry entry;
    entry.isScript = true;
    entry.language = "python";
    entry.form = "plain";
    entry.text = text;
    return entry;
}

TEST(ScriptRecord, WritesAScriptAsOneLine) {
    RecordEntry entry = script("a\n\"b\"\\");
    EXPECT_EQ(
        recordToJson(entry),
        R"({"event":"script","language":"python","form":"plain","display":false,"undo":false,)"
        R"("text":"a\n\"b\"\\","status":"ok","result":null,"error":null})");
    entry.language = "mel";
    entry.form = "stringArray";
    entry.display = true;
    entry.undo = true;
    entry.ok = false;
    entry.result = Value::strings({"x", "y"});
    entry.error = "line 1: no";
    EXPECT_EQ(
        recordToJson(entry),
        R"({"event":"script","language":"mel","form":"stringArray","display":true,"undo":true,)"
        R"("text":"a\n\"b\"\\","status":"failed","result":["x","y"],"error":"line 1: no"})");
}

TEST(ScriptRecord, EscapesControlsAndRepairsBrokenText) {
    RecordEntry entry;
    entry.channel = Channel::Warning;
    entry.text = std::string("\x01\t\xC3\xA9\xFF\xC3", 6);
    EXPECT_EQ(recordToJson(entry),
              "{\"event\":\"message\",\"channel\":\"warning\",\"text\":"
              "\"\\u0001\\t\xC3\xA9\xEF\xBF\xBD\xEF\xBF\xBD\"}");
    entry.text = "\xED\xA0\x80";  // half of a surrogate pair
    EXPECT_EQ(recordToJson(entry).find("\xED"), std::string::npos);
}

TEST(ScriptRecord, TellsItsListenerInOrder) {
    ScriptRecord record;
    std::string seen;
    record.setListener([&](const RecordEntry& entry) { seen += entry.text; });
    record.add(script("a"));
    record.add(script("b"));
    EXPECT_EQ(seen, "ab");
    EXPECT_EQ(record.scripts(), (std::vector<std::string>{"a", "b"}));
}

TEST(ScriptRecord, HoldsTheLinesOfItsSession) {
    Session session;
    session.log().write(Channel::Info, "shown");
    session.log().write(Channel::Error, "# Error: x", true);
    EXPECT_EQ(session.record().messages(), (std::vector<std::string>{"shown"}));
    EXPECT_EQ(recordToJson(session.record().entries()[1]),
              R"({"event":"message","channel":"error","text":"# Error: x","source":"script"})");
}

}  // namespace
}  // namespace torvel::test
