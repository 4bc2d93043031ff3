#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include "mel/language.h"
#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

QString keptFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           "/torvel/option_vars.json";
}

// A MEL text's result as another MEL text shows it.
std::string said(TestScene& host, const std::string& text) {
    Value result;
    const Status status = host.session().mel->run(text, result);
    if (!status)
        return "! " + status.text();
    std::string joined;
    const Value::List items = result.isList() ? result.list() : Value::List{result};
    for (const Value& item : items)
        joined += (joined.empty() ? "" : " ") +
                  (item.isString() ? item.string() : textOfDouble(item.number()));
    return result.isNone() ? "" : joined;
}

TEST(OptionVars, AreKeptFromOneSessionToTheNext) {
    const struct {
        const char *text, *answer;
    } kCalls[] = {
        {"optionVar -q \"none\"", "0"},
        {"optionVar -iv \"i\" 3 -fv \"f\" 0.1 -sv \"s\" \"a \\\"b\\\"\\n\"", ""},
        {"optionVar -q i", "3"},
        {"optionVar -q f", "0.1"},
        {"optionVar -query \"s\"", "a \"b\"\n"},
        {"optionVar -iva \"i\" 4 -iva \"i\" 5", ""},
        {"optionVar -q i", "3 4 5"},
        {"optionVar -as i", "3"},
        {"optionVar -as f", "0"},
        {"optionVar -rfa i 1; optionVar -q i", "3 5"},
        {"optionVar -rfa i 2", "! line 1: optionVar: The variable 'i' has no element 2."},
        {"optionVar -sva i x; optionVar -q i", "x"},
        {"optionVar -sa list -fva g 1e-300; optionVar -l", "f g i list s"},
        {"optionVar -as list", "0"},
        {"optionVar -ca g; optionVar -as g", "0"},
        {"optionVar -rm f -rm list; optionVar -ex f", "0"},
        {"optionVar -ex i", "1"},
        {"optionVar", "! line 1: optionVar: Needs a flag that tells what to do."},
    };
    QFile::remove(keptFile());
    for (const auto& call : kCalls) {
        TestScene host;  // each call in a session of its own
        setUpMel(host.session());
        EXPECT_EQ(said(host, call.text), call.answer) << call.text;
    }
    EXPECT_EQ(QDir(QFileInfo(keptFile()).path()).entryList(QDir::Files).size(), 1);
}

TEST(OptionVars, ADamagedFileIsToldAndNotWrittenOver) {
    const QByteArray damaged = "[{\"name\": \"a\", \"type\": \"tree\"}]";
    QDir().mkpath(QFileInfo(keptFile()).path());
    QFile file(keptFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(damaged);
    file.close();
    TestScene host;
    EXPECT_EQ(
        host.error("optionVar", {}, {flag("iv", {"a", 1})}),
        "optionVar: The file " + keptFile().toStdString() + " is damaged; mend or remove it.");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), damaged);
    file.close();
    QFile::remove(keptFile());
}

}  // namespace
