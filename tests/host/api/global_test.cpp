#include <functional>
#include <stdexcept>

#include <maya/MCommandResult.h>
#include <maya/MDoubleArray.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MQtUtil.h>
#include <maya/MStringArray.h>

#include "host/api/api_scene.h"

namespace torvel::test {
namespace {

/// Answers every text with one value, or fails.
class FixedLanguage : public Language {
  public:
    Status run(const std::string&, Value& result) override {
        if (throws)
            throw std::runtime_error("thrown");
        result = answer;
        return fails ? Status::failure("it failed") : Status::ok();
    }
    Status runFile(const std::string&) override { return Status::ok(); }

    Value answer;
    bool fails = false;
    bool throws = false;
};

class GlobalTest : public ApiTest {
  protected:
    void SetUp() override {
        scene.session().python = &language;
        scene.session().mel = &language;
        scene.session().record().clear();
    }
    void TearDown() override { scene.session().python = scene.session().mel = nullptr; }
    const RecordEntry& last() { return scene.session().record().entries().back(); }

    FixedLanguage language;
};

TEST_F(GlobalTest, textResultsTakeTextNumbersAndNothing) {
    MString result("before");
    language.answer = "text";
    EXPECT_TRUE(MGlobal::executePythonCommand("x", result, false, false));
    EXPECT_EQ(text(result), "text");
    language.answer = 3;
    MGlobal::executePythonCommand("x", result);
    EXPECT_EQ(text(result), "3");
    language.answer = true;
    MGlobal::executePythonCommand("x", result);
    EXPECT_EQ(text(result), "True");
    language.answer = Value();
    EXPECT_TRUE(MGlobal::executePythonCommand("x", result));
    EXPECT_EQ(text(result), "");
}

TEST_F(GlobalTest, aResultThatDoesNotFitLeavesTheVariable) {
    MString result("before");
    language.answer = Value(Value::List{"a"});
    EXPECT_FALSE(MGlobal::executePythonCommand("x", result));
    EXPECT_EQ(text(result), "before");
    EXPECT_FALSE(last().ok);
    MStringArray list(1, MString("kept"));
    language.answer = Value(Value::List{"a", 1});
    EXPECT_FALSE(MGlobal::executePythonCommand("x", list));
    language.answer = 7;
    EXPECT_FALSE(MGlobal::executePythonCommand("x", list));
    ASSERT_EQ(list.length(), 1u);
    EXPECT_EQ(text(list[0]), "kept");
}

TEST_F(GlobalTest, listResultsTakeListsOneTextAndNothing) {
    MStringArray list;
    language.answer = Value::strings({"a", "b"});
    EXPECT_TRUE(MGlobal::executeCommand("x", list));
    ASSERT_EQ(list.length(), 2u);
    EXPECT_EQ(text(list[1]), "b");
    language.answer = "one";
    EXPECT_TRUE(MGlobal::executeCommand("x", list));
    EXPECT_EQ(list.length(), 1u);
    language.answer = Value();
    EXPECT_TRUE(MGlobal::executeCommand("x", list));
    EXPECT_EQ(list.length(), 0u);
}

TEST_F(GlobalTest, numbersAndTheirListsAreRead) {
    int whole = 0;
    language.answer = 4;
    EXPECT_TRUE(MGlobal::executeCommand("x", whole));
    EXPECT_EQ(whole, 4);
    language.answer = 1.5;
    EXPECT_FALSE(MGlobal::executeCommand("x", whole));
    MDoubleArray numbers;
    language.answer = Value(Value::Tuple{{1.0, 2.5, 3.0}});
    EXPECT_TRUE(MGlobal::executeCommand("x", numbers));
    ASSERT_EQ(numbers.length(), 3u);
    EXPECT_DOUBLE_EQ(numbers[1], 2.5);
    MCommandResult any;
    EXPECT_TRUE(MGlobal::executeCommand("x", any));
    EXPECT_EQ(any.resultType(), MCommandResult::kVector);
}

TEST_F(GlobalTest, stringResultShowsAnyValue) {
    language.answer = Value(Value::List{"it's", 1, 2.0});
    EXPECT_EQ(text(MGlobal::executePythonCommandStringResult("x", false, false)),
              "[\"it's\", 1, 2.0]");
    language.answer = Value(Value::Tuple{{1.0, 0.5}});
    EXPECT_EQ(text(MGlobal::executePythonCommandStringResult("x")), "(1.0, 0.5)");
    language.fails = true;
    MStatus status;
    EXPECT_EQ(text(MGlobal::executePythonCommandStringResult("x", false, false, &status)), "");
    EXPECT_FALSE(status);
}

TEST_F(GlobalTest, everythingRunIsRecorded) {
    language.answer = "sphere";
    MString result;
    MGlobal::executePythonCommand("first", result, false, true);
    MGlobal::displayWarning("careful");
    language.fails = true;
    MGlobal::executeCommand("second");
    const auto& entries = scene.session().record().entries();
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].language + " " + entries[0].form + " " + entries[0].text,
              "python string first");
    EXPECT_TRUE(entries[0].undo);
    EXPECT_FALSE(entries[0].display);
    EXPECT_EQ(entries[0].result.string(), "sphere");
    EXPECT_EQ(entries[1].text, "careful");
    EXPECT_EQ(entries[1].channel, Channel::Warning);
    EXPECT_FALSE(entries[1].fromScript);
    EXPECT_FALSE(entries[2].ok);
    EXPECT_EQ(entries[2].error, "it failed");
}

TEST_F(GlobalTest, noExceptionLeavesTheApi) {
    language.throws = true;
    EXPECT_FALSE(MGlobal::executeCommand("x"));
    EXPECT_EQ(last().error, "thrown");
    scene.session().mel = nullptr;
    EXPECT_FALSE(MGlobal::executeCommand("x")) << "a language that is not there";
}

TEST_F(GlobalTest, thereIsNoMainWindowWithoutOne) {
    EXPECT_EQ(MQtUtil::mainWindow(), nullptr);
}

TEST(GlobalWithoutSession, answersAreEmpty) {
    ASSERT_EQ(Session::current(), nullptr);
    MSelectionList list;
    EXPECT_FALSE(MGlobal::getActiveSelectionList(list));
    EXPECT_FALSE(list.add("a"));
    EXPECT_FALSE(MGlobal::executeCommand("x"));
    EXPECT_TRUE(MFnDependencyNode().create("transform").isNull());
    MGlobal::displayInfo("nobody listens");
}

}  // namespace
}  // namespace torvel::test
