// The program itself, run as users run it.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

namespace torvel {
namespace {

struct Outcome {
    int code = -1;
    std::string out, err;
};

Outcome run(const QStringList& arguments, const QString& folder = {}, const QString& output = {}) {
    QProcess process;
    process.setWorkingDirectory(folder);
    if (!output.isEmpty())
        process.setStandardOutputFile(output);
    process.start(QStringLiteral(TORVEL_HOST_PROGRAM), arguments);
    if (!process.waitForFinished(120000)) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    Outcome done;
    done.code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    done.out = process.readAllStandardOutput().toStdString();
    done.err = process.readAllStandardError().toStdString();
    return done;
}

struct ProgramTest : testing::Test {
    std::string path(const char* name) const { return dir.filePath(name).toStdString(); }
    QString write(const char* name, const std::string& text) const {
        std::ofstream(path(name)) << text;
        return dir.filePath(name);
    }
    std::string read(const char* name) const {
        std::ostringstream text;
        text << std::ifstream(path(name)).rdbuf();
        return text.str();
    }

    QTemporaryDir dir;
};

// A root joint with a child, as a scene file.
const char* const kScene =
    "//Maya ASCII 2024 scene\nrequires maya \"2024\";\ncurrentUnit -l centimeter -a degree -t "
    "film;\n"
    "createNode joint -n \"hip\";\n\tsetAttr \".t\" -type \"double3\" 1 2 3 ;\n"
    "createNode joint -n \"knee\" -p \"hip\";\n\tsetAttr \".t\" -type \"double3\" 0 5 0 ;\n// End "
    "of scene.ma\n";

TEST_F(ProgramTest, AWindowThatAScriptClosedEndsTheProgram) {
    const QString script = write("close.py",
                                 "import os\ntry:\n    from PySide2 import QtWidgets\n"
                                 "except ImportError:\n    os._exit(77)\n"
                                 "for window in QtWidgets.QApplication.topLevelWidgets():\n"
                                 "    if window.objectName() == 'MayaWindow':\n"
                                 "        print('open:', window.isVisible())\n"
                                 "        window.close()\n");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const Outcome done = run({"--script", script});
    if (done.code == 77)
        GTEST_SKIP() << "PySide2 is not installed";
    EXPECT_EQ(done.code, 0) << done.err;
    EXPECT_NE(done.out.find("open: True"), std::string::npos) << done.out;
}

TEST_F(ProgramTest, PrintsOfScriptsGoToStandardOutput) {
    const Outcome done = run({"--batch", "--no-plugin", "--python", "print(6 * 7)"});
    EXPECT_EQ(done.code, 0) << done.err;
    EXPECT_EQ(done.out, "42\n");
}

TEST_F(ProgramTest, DialogsAreAnsweredFromTheCommandLine) {
    const Outcome done =
        run({"--batch", "--no-plugin", "--answer", "No", "--answer", "OK=a=b", "--python",
             "from maya import cmds\n"
             "print(cmds.confirmDialog(message='Go?', button=['Yes', 'No']))\n"
             "cmds.promptDialog()\nprint(cmds.promptDialog(q=True, text=True))"});
    EXPECT_EQ(done.code, 0) << done.err;
    EXPECT_EQ(done.out, "No\na=b\n");
}

TEST_F(ProgramTest, AMissingSceneIsUnreadable) {
    const Outcome done = run({"--batch", "--no-plugin", dir.filePath("none.ma")});
    EXPECT_EQ(done.code, 3);
    EXPECT_NE(done.err.find("none.ma"), std::string::npos);
}

TEST_F(ProgramTest, ADamagedSceneIsUnreadable) {
    const Outcome done =
        run({"--batch", "--no-plugin",
             write("cut.ma", "//Maya ASCII 2024 scene\ncreateNode joint -n \"hi")});
    EXPECT_EQ(done.code, 3) << done.err;
}

TEST_F(ProgramTest, WrongUseIsTwo) {
    EXPECT_EQ(run({"--no-such-option"}).code, 2);
    EXPECT_EQ(run({"--batch", "--render", "a.jpg"}).code, 2);
    EXPECT_EQ(run({"--batch", "--no-plugin", "--plugin", "/no/such/plugin.so"}).code, 2);
    EXPECT_EQ(run({"--batch", "--no-plugin", "--trace", "/no/such/folder/trace"}).code, 2);
}

TEST_F(ProgramTest, ThePictureShowsWhatTheScriptsMade) {
    const QString file = dir.filePath("ring.png");
    const std::string script =
        "import maya.cmds as c\nc.circle(n='ring')\nc.setAttr('ring.overrideEnabled', 1)\n"
        "c.setAttr('ring.overrideColor', 13)\nc.select(cl=True)";
    const Outcome done = run({"--batch", "--no-plugin", "--python", QString::fromStdString(script),
                              "--render", file, "--view", "front", "--size", "120x80"});
    EXPECT_EQ(done.code, 0) << done.err;
    const QImage picture(file);
    ASSERT_EQ(picture.size(), QSize(120, 80));
    int red = 0;
    for (int x = 0; x < 120; ++x)
        red += picture.pixelColor(x, 40) == QColor(255, 0, 0) ? 1 : 0;
    EXPECT_GE(red, 2) << "both sides of the ring";
    EXPECT_EQ(run({"--batch", "--no-plugin", "--render", "/no/such/folder/a.png"}).code, 1);
}

TEST_F(ProgramTest, AFailingScriptIsOneAndTheNextStillRuns) {
    const Outcome done = run({"--batch", "--no-plugin", "--python", "raise ValueError('mine')",
                              "--python", "print('on')"});
    EXPECT_EQ(done.code, 1);
    EXPECT_EQ(done.out, "on\n");
    EXPECT_NE(done.err.find("mine"), std::string::npos);
    EXPECT_EQ(run({"--batch", "--no-plugin", "--script", dir.filePath("none.py")}).code, 1);
    EXPECT_EQ(run({"--batch", "--no-plugin", "--command", "this is no mel ("}).code, 1);
}

TEST_F(ProgramTest, ScriptsSeeTheirArgumentsAndRunInOrder) {
    const QString script = write("args.py", "import sys\nprint(sys.argv[1:])\n");
    const Outcome done = run({"--batch", "--no-plugin", "--python", "print('first')", "--script",
                              script, "--command", "print \"third\\n\"", "--", "it's", "-x"});
    EXPECT_EQ(done.code, 0) << done.err;
    EXPECT_EQ(done.out, "first\n[\"it's\", '-x']\nthird\n");
}

TEST_F(ProgramTest, ASceneIsOpenedChangedAndSaved) {
    const QString scene = write("in.ma", kScene);
    const Outcome done = run({"--batch", "--no-plugin", scene, "--python",
                              "import maya.cmds as cmds; cmds.setAttr('knee.ty', 9)", "--save",
                              dir.filePath("out.ma")});
    EXPECT_EQ(done.code, 0) << done.err;
    const Outcome again = run({"--batch", "--no-plugin", dir.filePath("out.ma"), "--python",
                               "import maya.cmds as cmds; print(cmds.getAttr('knee.ty'))"});
    EXPECT_EQ(again.out, "9.0\n") << again.err;
}

TEST_F(ProgramTest, AFailedScriptSavesNothingUnlessAskedForAndNeverOverItsScene) {
    const QString scene = write("in.ma", kScene), other = dir.filePath("out.ma");
    const struct {
        QStringList arguments;
        int code;
        bool written;
    } rows[] = {
        {{"--python", "oops", "--save", other}, 1, false},
        {{"--script", "none.py", "--save", other}, 1, false},
        {{"--python", "oops", "--save", scene, "--save-anyway"}, 1, false},
        {{"--python", "oops", "--save", other, "--save-anyway"}, 1, true},
        {{"--python", "1", "--save", other}, 0, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.arguments.join(' ').toStdString());
        QFile::remove(other);
        const Outcome done =
            run(QStringList{"--batch", "--no-plugin", scene} + row.arguments, dir.path());
        EXPECT_EQ(done.code, row.code) << done.err;
        EXPECT_EQ(QFile::exists(other), row.written);
        EXPECT_EQ(done.err.find("not saved") == std::string::npos, row.written);
        EXPECT_EQ(read("in.ma"), kScene);
    }
}

TEST_F(ProgramTest, AFullDiskIsToldByTheExitCode) {
    const QString scene = write("in.ma", kScene), full = "/dev/full";
    ASSERT_TRUE(QFile::link(full, dir.filePath("full.png")));
    const struct {
        QStringList arguments;
        QString output;
        int code;
    } rows[] = {
        {{"--python", "print(1)"}, full, 1},
        {{"--version"}, full, 1},
        {{"--python", "print(1)", "--trace", full, "--command", "warning \"w\""}, {}, 1},
        {{"--verify-json", full}, {}, 2},
        {{"--check-json", full}, {}, 2},
        {{"--render", dir.filePath("full.png")}, {}, 1},
    };
    for (const auto& row : rows) {
        const Outcome done = run(QStringList{"--batch", "--no-plugin", scene} + row.arguments,
                                 dir.path(), row.output);
        EXPECT_EQ(done.code, row.code) << row.arguments.join(' ').toStdString() << done.err;
        if (row.arguments.front() != "--version") {
            EXPECT_NE(done.err.find("annot write"), std::string::npos) << done.err;
        }
    }
}

TEST_F(ProgramTest, SignalsEndABatch) {
    for (const int signal : {SIGINT, SIGTERM}) {
        QProcess process;
        process.start(QStringLiteral(TORVEL_HOST_PROGRAM),
                      {"--batch", "--no-plugin", "--python", "print('up')\nwhile True: pass"});
        ASSERT_TRUE(process.waitForReadyRead(60000));
        ::kill(static_cast<pid_t>(process.processId()), signal);
        ASSERT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 128 + signal);
    }
}

TEST_F(ProgramTest, ScriptNodesRunInTrustedScenesOnly) {
    const QString scene =
        write("in.ma",
              "//Maya ASCII 2024 scene\n"
              "createNode script -n \"hello\";\n\tsetAttr \".st\" 1;\n"
              "\tsetAttr \".b\" -type \"string\" \"print \\\"opened \\\"\";\n"
              "\tsetAttr \".a\" -type \"string\" \"print \\\"closed \\\"\";\n"
              "createNode script -n \"snake\";\n\tsetAttr \".st\" 6;\n\tsetAttr \".stp\" 1;\n"
              "\tsetAttr \".b\" -type \"string\" \"print('six', end=' ')\";\n"
              "createNode script -n \"gui\";\n\tsetAttr \".st\" 2;\n"
              "\tsetAttr \".b\" -type \"string\" \"print \\\"gui\\\"\";\n"
              "// End of in.ma\n");
    qputenv("XDG_CONFIG_HOME", dir.filePath("config").toUtf8());
    const auto printed = [&](QStringList more) {
        const Outcome done = run(QStringList{"--batch", "--no-plugin", scene} + more);
        EXPECT_EQ(done.code, 0) << done.err;
        EXPECT_EQ(done.err.find("script node 'hello' (MEL)") != std::string::npos,
                  done.out.find("opened") != std::string::npos)
            << done.err;
        return done.out;
    };
    const QString again = QStringLiteral(
        "from maya import cmds\n"
        "cmds.file('%1', open=True, force=True%2)\n");
    EXPECT_EQ(printed({}), "");
    EXPECT_EQ(printed({"--trust"}), "opened six closed ");
    EXPECT_EQ(printed({"--trust", "--python",
                       again.arg(scene, QStringLiteral(", executeScriptNodes=False"))}),
              "opened six closed ");
    EXPECT_EQ(printed({"--trust-folder", dir.path()}), "opened six closed ");
    EXPECT_EQ(printed({"--python", again.arg(scene, QString())}),
              "opened six closed opened six closed ");
    write("config/torvel/trusted_folders", dir.filePath("elsewhere").toStdString() + "\n");
    EXPECT_EQ(printed({}), "");
    qunsetenv("XDG_CONFIG_HOME");
}

TEST_F(ProgramTest, VerifyFindsAMovedJoint) {
    const QString scene = write("in.ma", kScene);
    const QString move = "import maya.cmds as cmds; cmds.setAttr('hip.tx', 1.5)";
    const Outcome moved = run({"--batch", "--no-plugin", scene, "--verify", "--verify-json",
                               dir.filePath("v.json"), "--python", move});
    EXPECT_EQ(moved.code, 4) << moved.err;
    EXPECT_NE(moved.out.find("DIFFERS"), std::string::npos);
    EXPECT_NE(read("v.json").find("\"largest\": 0.5"), std::string::npos);
    EXPECT_EQ(run({"--batch", "--no-plugin", scene, "--verify", "--verify-matrices", "0.6",
                   "--python", move})
                  .code,
              0);
}

TEST_F(ProgramTest, BatchHasAHiddenMainWindowAndNoUiHasNone) {
    const QString ask =
        "import maya.cmds as cmds; print(cmds.about(batch=True)); "
        "print(cmds.setParent('MayaWindow'))";
    EXPECT_EQ(run({"--batch", "--no-plugin", "--python", ask}).out, "True\nMayaWindow\n");
    const Outcome bare = run({"--no-ui", "--no-plugin", "--python", ask});
    EXPECT_EQ(bare.code, 1);
    EXPECT_EQ(bare.out, "True\n");
    EXPECT_NE(bare.err.find("no user interface"), std::string::npos);
}

// The script opens the plug-in's window by its menu item and clicks in it through PySide2.
TEST_F(ProgramTest, AScriptClicksThePluginsWindow) {
    const Outcome done = run({"--batch", "--script", TORVEL_SOURCE_DIR "/tools/demo/show_freeze.py",
                              "--", TORVEL_SCENES_DIR "/leg.ma", TORVEL_SCENES_DIR "/limb.ma"},
                             dir.path());
    EXPECT_EQ(done.code, 0) << done.err;
    EXPECT_NE(done.err.find("Reconnecting skinCluster: skinCluster1\n"), std::string::npos);
    std::istringstream lines(done.out);
    std::vector<std::vector<std::string>> rows;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream cells(line);
        std::vector<std::string> row{std::istream_iterator<std::string>(cells), {}};
        if (row.size() > 9 && row[1] != "scope")
            rows.push_back(row);
    }
    ASSERT_EQ(rows.size(), 4u) << done.out;
    const char* const frozen[] = {"1", "4", "1", "7"};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i][0], i < 2 ? "leg.ma" : "limb.ma");
        EXPECT_EQ(rows[i][1], i % 2 ? "all" : "one");
        EXPECT_EQ(rows[i][3], frozen[i]) << done.out;
        EXPECT_LE(std::stod(rows[i][8]), 1e-4);
        EXPECT_EQ(rows[i][10], "identical");
    }
    EXPECT_GT(QImage(dir.filePath("build/pictures/window.png")).width(), 200);
}

TEST_F(ProgramTest, ThePluginPutsItsMenuIntoTheWindow) {
    const QString ask =
        "import maya.cmds as cmds; print(cmds.menu('TorvelPlugin', q=True, label=True))";
    const Outcome done = run({"--batch", "--python", ask, "--trace", dir.filePath("trace")});
    EXPECT_EQ(done.code, 0) << done.err;
    EXPECT_EQ(done.out, "Torvel Plugin\n");
    EXPECT_NE(done.err.find("Plugin has been initialized"), std::string::npos);
    std::istringstream lines(read("trace"));
    std::string first;
    std::getline(lines, first);
    EXPECT_NE(first.find("\"event\":\"message\""), std::string::npos);
    EXPECT_NE(read("trace").find("\"event\":\"script\""), std::string::npos);
}

}  // namespace
}  // namespace torvel
