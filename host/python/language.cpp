#include "python/ref.h"

#include "python/language.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "python/callbacks.h"
#include "python/commands.h"
#include "python/interpreter.h"
#include "python/run.h"
#include "python/values.h"

namespace torvel {

namespace {

class PythonLanguage : public Language {
  public:
    explicit PythonLanguage(Session& session)
        : m_session(session), m_alive(std::make_shared<bool>(true)) {
        py::startInterpreter();
        py::bindSession(&session);
        const std::weak_ptr<bool> alive = m_alive;
        session.onCommandChange([alive, &session](const std::string& name, bool present) {
            if (alive.expired() || py::currentSession() != &session)
                return;
            const py::Gil lock;
            py::bindCommand(name, present);
        });
    }

    ~PythonLanguage() override {
        if (py::currentSession() == &m_session)
            py::bindSession(nullptr);
    }

    Status run(const std::string& text, Value& result) override {
        py::followEventLoop();
        const ScriptDepth depth(m_session.deferred());
        const py::Gil lock;
        const py::CallerMark mark(false);
        return py::runText(m_session, text, "<maya console>", true, result);
    }

    Status runFile(const std::string& path) override {
        py::followEventLoop();
        const ScriptDepth depth(m_session.deferred());
        const py::Gil lock;
        std::ifstream file(path, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        if (!file.is_open()) {
            PyErr_SetString(PyExc_OSError, ("cannot read " + path).c_str());
            return py::reportError(m_session);
        }
        announce(path);
        Value ignored;
        return py::runText(m_session, text.str(), path.c_str(), false, ignored);
    }

    bool isCallback(const std::string& text) const override { return torvel::isCallback(text); }
    Status runCallback(const std::string& text, const std::vector<Value>& args) override {
        return torvel::runCallback(m_session, text, args);
    }
    void dropCallback(const std::string& text) override { removeCallback(text); }

  private:
    // What a script expects to find: its own name and its neighbours.
    static void announce(const std::string& path) {
        const py::Ref name(py::fromText(path));
        PyDict_SetItemString(py::mainDictionary(), "__file__", name.get());
        const std::size_t slash = path.rfind('/');
        const py::Ref folder(py::fromText(slash == std::string::npos ? "" : path.substr(0, slash)));
        PyObject* folders = PySys_GetObject("path");
        if (folders && folder && PySequence_Contains(folders, folder.get()) == 0)
            PyList_Insert(folders, 0, folder.get());
        PyErr_Clear();
    }

    Session& m_session;
    std::shared_ptr<bool> m_alive;
};

Status runPython(const CommandCall& call, Value& result) {
    std::string text;
    for (const std::string& part : call.texts())
        text += (text.empty() ? "" : "\n") + part;
    Language* python = call.session().python;
    return python ? python->run(text, result) : call.fail("Python is not available.");
}

std::string joined(const CommandCall& call) {
    std::string text;
    for (const std::string& part : call.texts())
        text += part;
    return text;
}

Status runError(const CommandCall& call, Value&) {
    return Status::failure(joined(call));
}

Status runWarning(const CommandCall& call, Value&) {
    call.session().log().write(Channel::Warning, "# Warning: " + joined(call), true);
    return Status::ok();
}

Status runEvalDeferred(const CommandCall& call, Value&) {
    Session* session = &call.session();
    const std::string text = joined(call);
    session->deferred()->add([session, text] {
        Value ignored;
        if (Session::current() == session && session->python)
            ignore(session->python->run(text, ignored));
    });
    return Status::ok();
}

constexpr FlagRow kTellFlags[] = {{"noContext", "n", "b"}, {"showLineNumber", "sl", "b"}};
constexpr FlagRow kDeferFlags[] = {
    {"lowestPriority", "lp"}, {"lowPriority", "low"}, {"list", "ls"}};

const Command kRows[] = {
    {"python", nullptr, 0, runPython,
     "Runs a Python text and returns the value of its last expression."},
    {"error", kTellFlags, countOf(kTellFlags), runError, "Fails with a text."},
    {"warning", kTellFlags, countOf(kTellFlags), runWarning, "Prints a warning."},
    {"evalDeferred", kDeferFlags, countOf(kDeferFlags), runEvalDeferred,
     "Runs a text when the program is idle."}};

}  // namespace

CommandTable pythonCommands() {
    return {kRows, std::size(kRows)};
}

namespace {

struct KeptPython {
    std::unique_ptr<Language> language;
};

}  // namespace

std::unique_ptr<Language> makePythonLanguage(Session& session) {
    session.addCommands(pythonCommands());
    auto language = std::make_unique<PythonLanguage>(session);
    session.python = language.get();
    return language;
}

void setUpPython(Session& session) {
    session.kept<KeptPython>().language = makePythonLanguage(session);
}

}  // namespace torvel
