#include <fstream>

#include "host/python/python_session.h"
#include "script/callbacks.h"

namespace torvel::test {
namespace {

TEST_F(Python, DeliversTheLastExpression) {
    EXPECT_EQ(run("1 + 1"), "2");
    EXPECT_EQ(run("a = 3; a * 2.5"), "7.5f");
    EXPECT_EQ(run("a = [1]\na += ['x']\n\na  # the list\n"), "[1 'x']");
    EXPECT_EQ(run("('a', 'b')"), "['a' 'b']");
    EXPECT_EQ(run("True"), "True");
    EXPECT_EQ(run("None"), "none");
    EXPECT_EQ(run("a = 1"), "none");
    EXPECT_EQ(run("import os; os.sep"), "'/'");
    EXPECT_EQ(run("for i in [1]: i\n"), "none");
    EXPECT_EQ(run("if 1: a; a"), "none");
    EXPECT_EQ(run("def g():\n    return 1\n    2"), "none");
    EXPECT_EQ(run("(1 +\n 2)"), "3");
    EXPECT_EQ(run("'''a\n= b;'''"), "'a\n= b;'");
    EXPECT_EQ(run("\xC3\xA9 = '\xC3\xA9'\n\xC3\xA9"), "'\xC3\xA9'");
    EXPECT_EQ(run(""), "none");
    EXPECT_EQ(run("a = 2; a;  "), "2");
}

TEST_F(Python, MarksWhatNoResultCanHold) {
    EXPECT_EQ(run("{}"), "?");
    EXPECT_EQ(run("['a', object()]"), "['a' ?]");
    EXPECT_EQ(run("2 ** 100"), "?");
}

TEST_F(Python, RunsEachStatementOnce) {
    run("n = 0\ndef bump():\n    global n\n    n += 1\n    return n");
    EXPECT_EQ(run("bump(); bump()"), "2");
    EXPECT_EQ(run("bump(\n)"), "3");
    EXPECT_EQ(run("x = bump()"), "none");
    EXPECT_EQ(run("n"), "4");
}

TEST_F(Python, ShowsTheLineOfAnError) {
    EXPECT_EQ(run("a = 1\nraise RuntimeError('text')"),
              "! RuntimeError: file <maya console> line 2: text");
    EXPECT_EQ(m_shown, "# Error: RuntimeError: file <maya console> line 2: text\n");
    EXPECT_EQ(run("a = 1\n\ncmds.fails('value')"),
              "! ValueError: file <maya console> line 3: No object matches name: x");
    EXPECT_EQ(run("a = (\n").substr(0, 45), "! SyntaxError: file <maya console> line 1: '(");
    EXPECT_EQ(run("cmds.nothing()"),
              "! AttributeError: file <maya console> line 1: module 'maya.cmds' has no attribute "
              "'nothing'");
}

TEST_F(Python, ShowsTheTracebackOfCalls) {
    run("def inner():\n    raise ValueError('x')\n");
    m_shown.clear();
    run("inner()");
    EXPECT_EQ(
        m_shown,
        "# Error: ValueError: file <maya console> line 2: x\n# Traceback (most recent call last):\n"
        "#   File \"<maya console>\", line 1, in <module>\n#   File \"<maya console>\", line 2, in "
        "inner\n"
        "# ValueError: x\n");
}

TEST_F(Python, AFailureKeepsWhatCameBefore) {
    EXPECT_EQ(run("kept = 5; 1/0; kept = 6").substr(0, 20), "! ZeroDivisionError:");
    EXPECT_EQ(run("kept"), "5");
    EXPECT_EQ(run("import sys; sys.exit()"), "none");
    EXPECT_EQ(run("import sys; sys.exit(3)").substr(0, 13), "! SystemExit:");
}

TEST_F(Python, PrintsThroughTheOutput) {
    run("print('a', 1)\nimport sys; sys.stderr.write('e')");
    EXPECT_EQ(m_printed, "a 1\ne");
}

TEST_F(Python, BindsTheOneModuleInEachWay) {
    EXPECT_EQ(run("import maya.cmds as mc\nimport maya.cmds\nmc is cmds and maya.cmds is cmds"),
              "True");
    EXPECT_EQ(run("from maya.cmds import *\nlist is cmds.list"), "True");
    EXPECT_EQ(run("import maya.standalone; maya.standalone.initialize()"), "none");
    run("del list");
}

TEST_F(Python, RunsMelAndTellsItsErrors) {
    EXPECT_EQ(run("mel.eval('int $a = 3; $a * 2')"), "6");
    EXPECT_EQ(run("mel.eval('list \"a\" \"b\"')"), "['a' 'b']");
    EXPECT_EQ(raised("mel.eval('nope')"),
              "'RuntimeError: Error occurred during execution of MEL script\nline 1: Cannot find "
              "procedure \"nope\".'");
    Value result;
    ASSERT_TRUE(m_mel->run("python(\"a = 4; a + 1\")", result).isOk());
    EXPECT_EQ(show(result), "5");
    EXPECT_FALSE(m_mel->run("python(\"1/0\")", result).isOk());
}

TEST_F(Python, RunsFilesWithTheirNameAndFolder) {
    const std::string folder = testing::TempDir();
    std::ofstream(folder + "neighbour_of_script.py") << "value = 11\n";
    std::ofstream(folder + "script_of_test.py")
        << "import neighbour_of_script\nseen = (neighbour_of_script.value, __file__)\n";
    ASSERT_TRUE(m_python->runFile(folder + "script_of_test.py").isOk());
    EXPECT_EQ(run("seen"), "[11 '" + folder + "script_of_test.py']");
    EXPECT_FALSE(m_python->runFile(folder + "no_such_file.py").isOk());
}

TEST_F(Python, DefersUntilTheTextHasEnded) {
    run("import maya.utils\norder = []\nmaya.utils.executeDeferred(order.append, "
        "2)\norder.append(1)");
    EXPECT_EQ(run("order"), "[1 2]");
    EXPECT_EQ(run("maya.utils.executeInMainThreadWithResult(lambda a: a + 1, 4)"), "5");
    run("cmds.evalDeferred('order.append(4)'); order.append(3)");
    EXPECT_EQ(run("order"), "[1 2 3 4]");
}

TEST_F(Python, CommandsOfOtherThreadsAreRefused) {
    EXPECT_EQ(run("import threading\nseen = []\ndef work():\n    try:\n        cmds.list('a')\n"
                  "    except RuntimeError as e:\n        seen.append('refused')\n"
                  "t = threading.Thread(target=work); t.start(); t.join()\nseen"),
              "['refused']");
}

TEST_F(Python, CallablesOfControlsAreCalledWithTheirValues) {
    EXPECT_EQ(run("seen = []\ncmds.probe(name=lambda *a: seen.append(a)).startswith('create "
                  "name=__import__')"),
              "True");
    Value text;
    ASSERT_TRUE(
        m_python->run("cmds.probe(n=lambda *a: seen.append(a))[len('create name='):-2]", text)
            .isOk());
    EXPECT_TRUE(runControlCommand(m_session, text.string(), {Value(true)}, true).isOk());
    run(text.string());
    EXPECT_EQ(run("seen"), "[[True] [False]]");
    dropCallback(text.string());
    EXPECT_EQ(run(text.string()).substr(0, 14), "! RuntimeError");
    EXPECT_TRUE(runControlCommand(m_session, "seen = 5", {}, true).isOk());
    EXPECT_EQ(run("seen"), "5");
}

TEST_F(Python, SessionsFollowOneAnother) {
    run("old = cmds.list");
    m_python.reset();
    Session second;
    const auto python = makePythonLanguage(second);
    Value result;
    EXPECT_TRUE(python->run("'list' in dir(cmds)", result).isOk());
    EXPECT_FALSE(result.truth());
    EXPECT_TRUE(python->run("'warning' in dir(cmds)", result).isOk());
    EXPECT_TRUE(result.truth());
}

}  // namespace
}  // namespace torvel::test
