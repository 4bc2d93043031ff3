#include "python/interpreter.h"

#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

namespace torvel::py {

namespace {

std::thread::id g_mainThread;

// The package as scripts see it. `maya.cmds` is filled with the commands of the current session.
constexpr const char* kPackage = R"PY(
import sys, types, io, _torvel

def _module(name):
    module = types.ModuleType(name)
    sys.modules[name] = module
    parent, _, leaf = name.rpartition('.')
    if parent:
        setattr(sys.modules[parent], leaf, module)
    return module

_maya = _module('maya')
_maya.__path__ = []
_cmds = _module('maya.cmds')
_mel = _module('maya.mel')
_utils = _module('maya.utils')
_standalone = _module('maya.standalone')

_mel.eval = _torvel.eval_mel

def executeDeferred(function, *args, **kwargs):
    if isinstance(function, str):
        text = function
        function = lambda: exec(text, sys.modules['__main__'].__dict__)
    _torvel.later(lambda: function(*args, **kwargs))

def executeInMainThreadWithResult(function, *args, **kwargs):
    if isinstance(function, str):
        text, scope = function, sys.modules['__main__'].__dict__
        function = lambda: eval(text, scope)
    return _torvel.in_main_thread(lambda: function(*args, **kwargs))

def _callback(number, *args):
    return _torvel.callback(number)(*(args or (False,)))

_utils.executeDeferred = executeDeferred
_utils.executeInMainThreadWithResult = executeInMainThreadWithResult
_utils._callback = _callback
_standalone.initialize = lambda name='python': None
_standalone.uninitialize = lambda: None

class _Stream(io.TextIOBase):
    def __init__(self, number):
        self._number = number
    encoding = 'utf-8'
    errors = 'replace'
    def writable(self):
        return True
    def fileno(self):
        return self._number
    def write(self, text):
        _torvel.write(self._number, text)
        return len(text)

sys.stdout = sys.__stdout__ = _Stream(1)
sys.stderr = sys.__stderr__ = _Stream(2)
)PY";

[[noreturn]] void die(const char* what) {
    std::fprintf(stderr, "The Python interpreter cannot be started: %s\n", what);
    std::_Exit(1);
}

void check(const PyStatus& status) {
    if (PyStatus_Exception(status))
        die(status.err_msg ? status.err_msg : "unknown reason");
}

void configure(PyConfig& config) {
    PyConfig_InitIsolatedConfig(&config);
    config.site_import =
        0;  // a third of the start; its one use, the packages' folder, is added below
    config.install_signal_handlers = 0;
    config.parse_argv = 0;
    config.pathconfig_warnings = 0;
#ifdef __linux__
    check(PyConfig_SetBytesString(&config, &config.program_name, "/usr/bin/python3"));
#endif
    if (const char* path = std::getenv("PYTHONPATH"))
        check(PyConfig_SetBytesString(&config, &config.pythonpath_env, path));
}

void addPackageFolders() {
    PyObject* path = PySys_GetObject("path");
    char local[64];
    std::snprintf(local, sizeof local, "/usr/local/lib/python%d.%d/dist-packages", PY_MAJOR_VERSION,
                  PY_MINOR_VERSION);
    for (const char* folder : {static_cast<const char*>(local), "/usr/lib/python3/dist-packages"}) {
        const Ref text(PyUnicode_FromString(folder));
        if (path && text)
            PyList_Append(path, text.get());
    }
}

void installPackage() {
    PyObject* modules = PyImport_GetModuleDict();
    const Ref host(makeHostModule());
    if (!host || PyDict_SetItemString(modules, "_torvel", host.get()) != 0)
        die("no module");
    const Ref scope(PyDict_New());
    PyDict_SetItemString(scope.get(), "__builtins__", PyEval_GetBuiltins());
    PyDict_SetItemString(scope.get(), "__name__", PyUnicode_InternFromString("maya"));
    const Ref code(Py_CompileString(kPackage, "<maya>", Py_file_input));
    const Ref done(code ? PyEval_EvalCode(code.get(), scope.get(), scope.get()) : nullptr);
    if (!done) {
        PyErr_Print();
        die("no package");
    }
}

// One entry for each wait of the main thread that gave the lock back, innermost last: how often the
// thread had asked for it by then. A callback inside the wait asks once more, so only an equal
// count means the wait itself.
std::vector<int> g_waits;

void beginWait() {
    if (!isMainThread() || !PyGILState_Check())
        return;
    g_waits.push_back(PyThreadState_Get()->gilstate_counter);
    PyEval_SaveThread();
}

}  // namespace

void startInterpreter() {
    if (Py_IsInitialized())
        return;
    g_mainThread = std::this_thread::get_id();
    PyConfig config;
    configure(config);
    const PyStatus status = Py_InitializeFromConfig(&config);
    PyConfig_Clear(&config);
    check(status);
    addPackageFolders();
    installPackage();
    PyEval_SaveThread();
}

void followEventLoop() {
    static bool following = false;
    QAbstractEventDispatcher* dispatcher =
        QCoreApplication::instance()
            ? QAbstractEventDispatcher::instance(QCoreApplication::instance()->thread())
            : nullptr;
    if (following || !dispatcher)
        return;
    following = true;
    QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, dispatcher, beginWait,
                     Qt::DirectConnection);
    QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, dispatcher, endWait,
                     Qt::DirectConnection);
    QObject::connect(dispatcher, &QObject::destroyed, [] { following = false; });
}

// Qt may tell of an end without a beginning (processEvents), and not tell of the last end at all.
void endWait() {
    if (!isMainThread() || g_waits.empty() || PyGILState_Check())
        return;
    PyThreadState* state = PyGILState_GetThisThreadState();
    if (state->gilstate_counter != g_waits.back())
        return;
    g_waits.pop_back();
    PyEval_RestoreThread(state);
}

bool isMainThread() {
    return std::this_thread::get_id() == g_mainThread;
}

}  // namespace torvel::py
