// The interpreter's lock while commands run Qt's event loop.
#include <cstdint>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include "host/python/python_session.h"

namespace torvel::test {

namespace {

/// Runs the loop for so many milliseconds.
Status runWait(const CommandCall& call, Value&) {
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(call.args()[0].number()), &loop, &QEventLoop::quit);
    loop.exec();
    return Status::ok();
}

void turnLoop() {
    QCoreApplication::processEvents();
}

Status runTurn(const CommandCall&, Value&) {
    turnLoop();
    return Status::ok();
}

constexpr Command kLoopCommands[] = {{"wait", nullptr, 0, runWait}, {"turn", nullptr, 0, runTurn}};

QCoreApplication& application() {
    static int count = 1;
    static char name[] = "tests";
    static char* arguments[] = {name, nullptr};
    static auto* made = new QCoreApplication(count, arguments);
    return *made;
}

}  // namespace

class PythonEventLoop : public Python {
  protected:
    PythonEventLoop() {
        application();
        m_python.reset();
        m_session.addCommands({kLoopCommands, 2});
        m_python = makePythonLanguage(m_session);
        run("from maya import cmds, mel, utils\nimport threading, time, ctypes\nseen = []");
    }
};

TEST_F(PythonEventLoop, OtherThreadsWorkDuringTheWait) {
    run("stop = threading.Event(); started = threading.Event()\n"
        "def work():\n    started.set()\n    while not stop.wait(0.001):\n        seen.append(1)\n"
        "thread = threading.Thread(target=work); thread.start(); started.wait(); del seen[:]\n"
        "cmds.wait(200)\nstop.set(); thread.join()");
    EXPECT_EQ(run("len(seen) > 5"), "True");
}

TEST_F(PythonEventLoop, AWaitInsideAWait) {
    EXPECT_EQ(run("utils.executeDeferred(lambda: (cmds.wait(20), seen.append('inner')))\n"
                  "cmds.wait(100)\nseen.append('outer')\nseen"),
              "['inner' 'outer']");
}

TEST_F(PythonEventLoop, AWaitOutlastedByTheOneInsideIt) {
    EXPECT_EQ(run("utils.executeDeferred(lambda: (cmds.wait(120), seen.append('inner')))\n"
                  "cmds.wait(20)\nseen.append('outer')\nseen"),
              "['inner' 'outer']");
}

TEST_F(PythonEventLoop, ThreeDeepThroughMelToo) {
    EXPECT_EQ(run("def third():\n    mel.eval('wait 10')\n    seen.append(3)\n"
                  "def second():\n    utils.executeDeferred(third)\n    mel.eval('wait 40')\n    "
                  "seen.append(2)\n"
                  "utils.executeDeferred(second)\ncmds.wait(100)\nseen"),
              "[3 2]");
}

TEST_F(PythonEventLoop, TurningTheLoopInsideAWait) {
    EXPECT_EQ(run("utils.executeDeferred(lambda: (cmds.turn(), "
                  "seen.append(1)))\ncmds.wait(50)\ncmds.turn()\nseen"),
              "[1]");
}

// Native code called through ctypes or a binding runs without the lock and takes it back by itself.
TEST_F(PythonEventLoop, TurningTheLoopFromNativeCodeInsideAWait) {
    const std::string address = std::to_string(reinterpret_cast<std::uintptr_t>(&turnLoop));
    EXPECT_EQ(
        run("turn = ctypes.CFUNCTYPE(None)(" + address +
            ")\n"
            "utils.executeDeferred(lambda: (turn(), seen.append(1)))\ncmds.wait(50)\nturn()\nseen"),
        "[1]");
}

// Qt does not always tell when the last wait of a loop is over.
TEST_F(PythonEventLoop, ALoopThatEndsUntold) {
    EXPECT_EQ(run("utils.executeDeferred(lambda: seen.append(len(seen)))\n"
                  "for i in range(20):\n    cmds.wait(1)\nseen"),
              "[0]");
}

}  // namespace torvel::test
