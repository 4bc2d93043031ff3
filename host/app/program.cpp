#include "app/program.h"

#include <cstdio>
#include <filesystem>
#include <iostream>

#include <QApplication>

#include "app/host_setup.h"
#include "app/network.h"
#include "app/interruption.h"
#include "app/rig_check.h"
#include "commands/host/verify.h"
#include "files/script_nodes.h"
#include "files/trusted_folders.h"
#include "script/session.h"
#include "ui/desktop/log_text.h"
#include "ui/desktop/main_window.h"
#include "commands/host/render.h"

namespace torvel {

namespace {

RawFlag flagOf(const char* name, Value value) {
    return RawFlag{name, {std::move(value)}, true};
}

std::string absolute(const std::string& path) {
    std::error_code ignored;
    const auto full = std::filesystem::absolute(path, ignored);
    return full.empty() ? path : full.lexically_normal().string();
}

// Deferred deletions and queued calls of a script take place before the next one starts.
void settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// A path that is told from the program's own folder.
std::string besideProgram(const char* path) {
    const std::filesystem::path folder(QCoreApplication::applicationDirPath().toStdString());
    return (folder / path).lexically_normal().string();
}

bool endsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

}  // namespace

Program::Program(Options options)
    : m_options(std::move(options)), m_session(std::make_unique<Session>()) {
    m_session->batch = m_options.batch;
    m_session->trust = m_options.trust;
}

Program::~Program() = default;

void Program::complain(const std::string& text) {
    std::cerr << "torvel-host: " << text << std::endl;
}

bool Program::openTrace() {
    if (m_options.trace.empty())
        return true;
    m_trace.open(m_options.trace, std::ios::binary | std::ios::trunc);
    if (!m_trace) {
        complain("cannot write " + m_options.trace);
        return false;
    }
    m_session->record().setListener([this](const RecordEntry& entry) {
        const bool sound = m_trace.good();
        m_trace << recordToJson(entry) << '\n' << std::flush;
        if (sound && !m_trace)
            complain("cannot write " + m_options.trace + "; it ends here");
    });
    return true;
}

bool Program::trustFolders() {
    for (const std::string& folder : m_options.trustFolders)
        if (const Status listed = trustFolder(folder); !listed) {
            complain(listed.text());
            return false;
        }
    return true;
}

void Program::showLog() {
    if (m_options.batch)
        m_session->log().addSink(
            [](const LogLine& line) { std::cerr << shownLine(line) << std::endl; });
}

bool Program::loadPlugin(const std::string& nameOrPath) {
    Value result;
    const Status loaded =
        m_session->call("loadPlugin", {flagOf("quiet", true)}, {Value(nameOrPath)}, result);
    if (!loaded)
        complain("cannot load the plug-in " + nameOrPath +
                 (loaded.text().empty() ? "" : ": " + loaded.text()));
    settle();
    return loaded.isOk();
}

bool Program::loadPlugins() {
    if (!m_options.noPlugin) {
        if (!loadPlugin(besideProgram(TORVEL_BUNDLED_PLUGIN)))
            return false;
    }
    for (const std::string& each : m_options.plugins) {
        const bool isPath = each.find('/') != std::string::npos || std::filesystem::exists(each);
        if (!loadPlugin(isPath ? absolute(each) : each))
            return false;
    }
    return true;
}

bool Program::openScene() {
    if (m_options.scene.empty())
        return true;
    if (!std::filesystem::is_regular_file(m_options.scene)) {
        complain("no such scene: " + m_options.scene);
        return false;
    }
    Value result;
    const Status opened = m_session->call("file", {flagOf("open", true), flagOf("force", true)},
                                          {Value(absolute(m_options.scene))}, result);
    if (!opened)
        complain("cannot read " + m_options.scene +
                 (opened.text().empty() ? "" : ": " + opened.text()));
    if (m_window)
        m_window->refreshTitle();
    settle();
    return opened.isOk();
}

void Program::setArguments(const std::string& script) {
    std::string list = pythonLiteral(script);
    for (const std::string& argument : m_options.scriptArguments)
        list += ", " + pythonLiteral(argument);
    Value result;
    if (m_session->python)
        ignore(m_session->python->run("import sys\nsys.argv = [" + list + "]\n", result));
}

bool Program::runStep(const ScriptStep& step) {
    const bool isFile = step.kind == ScriptStep::Kind::File;
    const bool mel = isFile ? endsWith(step.text, ".mel") : step.kind == ScriptStep::Kind::Mel;
    Language* language = mel ? m_session->mel : m_session->python;
    if (isFile && !std::filesystem::is_regular_file(step.text)) {
        complain("no such script: " + step.text);
        return false;
    }
    setArguments(isFile ? step.text : std::string(mel ? "-m" : "-c"));
    Value result;
    const Status done = isFile ? language->runFile(step.text) : language->run(step.text, result);
    settle();
    flush();
    return done.isOk();
}

bool Program::runSteps() {
    bool good = true;
    for (const ScriptStep& step : m_options.steps)
        good = runStep(step) && good;
    return good;
}

// After a failed script the scene may be half done.
bool Program::maySave(bool scriptsDone) {
    if (m_options.save.empty() || scriptsDone)
        return true;
    for (const std::string& opened : {m_options.scene, m_session->scene().document().fileName})
        if (sameFile(m_options.save, opened)) {
            complain("a script failed: not saved over " + m_options.save +
                     ", the scene it came from");
            return false;
        }
    if (!m_options.saveAnyway)
        complain("a script failed: not saved; --save-anyway writes " + m_options.save);
    return m_options.saveAnyway;
}

bool Program::saveScene() {
    if (m_options.save.empty())
        return true;
    Value result;
    Status saved =
        m_session->call("file", {flagOf("rename", absolute(m_options.save))}, {}, result);
    if (saved)
        saved = m_session->call("file", {flagOf("save", true), flagOf("type", "mayaAscii")}, {},
                                result);
    if (!saved)
        complain("cannot save " + m_options.save +
                 (saved.text().empty() ? "" : ": " + saved.text()));
    return saved.isOk();
}

bool Program::drawPicture() {
    if (m_options.render.empty())
        return true;
    RenderJob job;
    job.file = m_options.render;
    job.view = m_options.view;
    job.wire = m_options.wire;
    job.sequence = !m_options.frames.empty();
    pictureSize(m_options.size, job.size);
    if (job.sequence)
        frameRange(m_options.frames, job.first, job.last);
    std::vector<std::string> written;
    const Status drawn = render(*m_session, job, written);
    if (!drawn)
        complain(drawn.text());
    return drawn.isOk();
}

// An empty path: nothing is asked for.
bool Program::writeText(const std::string& path, const std::string& text) {
    if (path.empty())
        return true;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text << std::flush;
    if (!out)
        complain("cannot write " + path);
    return out.good();
}

int Program::compare(const SceneState& before) {
    const auto rows = compareStates(before, stateOf(m_session->scene()), m_options.limits);
    printTable(rows, std::cout);
    if (!writeText(m_options.verifyJson, verifyJson(rows)))
        return kWrongUse;
    return allWithin(rows) ? kDone : kVerifyDiffers;
}

int Program::check() {
    RigReport report;
    if (!checkRigs(*m_session, besideProgram(TORVEL_BUNDLED_SCRIPTS), report)) {
        complain("the check failed");
        return kScriptFailed;
    }
    std::cout << report.text << std::flush;
    if (!writeText(m_options.checkJson, report.json))
        return kWrongUse;
    return report.findings == 0 ? kDone : kScriptFailed;
}

int Program::run() {
    if (m_options.batch)
        endOnSignals();
    showLog();
    if (!openTrace() || !trustFolders())
        return kWrongUse;
    setUpSession(*m_session);
    if (!m_options.noUi)
        m_window = std::make_unique<MainWindow>(*m_session);
    if (m_options.batch && !m_options.network)
        closeNetwork();
    for (const std::string& answer : m_options.answers)
        if (m_window)
            m_window->dialogs().answers.push_back(answerOf(answer));
    if (m_window && !m_options.batch)
        m_window->show();
    if (!loadPlugins())
        return kWrongUse;
    if (!openScene())
        return kUnreadableScene;

    SceneState before;
    if (m_options.verify)
        before = stateOf(m_session->scene());
    const bool scriptsDone = runSteps();
    int code = scriptsDone ? kDone : kScriptFailed;
    if (m_options.verify)
        if (const int verdict = compare(before); code == kDone)
            code = verdict;
    if (m_options.check)
        if (const int verdict = check(); code == kDone)
            code = verdict;
    if (!(maySave(scriptsDone) && saveScene()) && code == kDone)
        code = kScriptFailed;
    if (!drawPicture() && code == kDone)
        code = kScriptFailed;
    // A script may have closed the window, and with it the reason to go on.
    if (!m_options.batch && m_window->isVisible()) {
        flush();
        QApplication::exec();
    }
    return code;
}

int Program::finish(int code) {
    runClosingScripts(*m_session);
    flush();
    const bool printed = std::cout.good() && std::ferror(stdout) == 0;
    if (!printed)
        complain("cannot write standard output");
    return code == kDone && !(printed && m_trace.good()) ? kScriptFailed : code;
}

void Program::flush() {
    Value result;
    if (m_session->python)
        ignore(
            m_session->python->run("import sys\nsys.stdout.flush()\nsys.stderr.flush()\n", result));
    std::cout.flush();
    std::cerr.flush();
    std::fflush(nullptr);
}

}  // namespace torvel
