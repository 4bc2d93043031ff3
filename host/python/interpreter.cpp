#include "python/python_api.h"
#include "mel/script_output.h"
#include "python/python_language.h"

namespace torvel::python {
namespace {

// sys.stdout and sys.stderr of scripts: the real streams, and whoever listens to what scripts print.
PyObject* writeOut(PyObject*, PyObject* args)
{
    PyObject* text = nullptr;
    int isError = 0;
    if (!PyArg_ParseTuple(args, "Ui", &text, &isError))
        return nullptr;
    writeScriptOutput(textOf(text), isError != 0);
    Py_RETURN_NONE;
}

PyMethodDef g_writeMethod = {"write", writeOut, METH_VARARGS, nullptr};

const char* const kStreamText =
    "class _Stream:\n"
    "    encoding = 'utf-8'\n"
    "    def __init__(self, isError): self.isError = isError\n"
    "    def write(self, text):\n"
    "        _write(str(text), self.isError)\n"
    "        return len(text)\n"
    "    def flush(self): pass\n"
    "    def isatty(self): return False\n"
    "import sys\n"
    "sys.stdout = _Stream(0)\n"
    "sys.stderr = _Stream(1)\n";

void replaceStreams()
{
    const Ref scope(PyDict_New());
    const Ref write(PyCFunction_New(&g_writeMethod, nullptr));
    PyDict_SetItemString(scope.get(), "__builtins__", PyEval_GetBuiltins());
    PyDict_SetItemString(scope.get(), "_write", write.get());
    const Ref done(PyRun_String(kStreamText, Py_file_input, scope.get(), scope.get()));
    if (!done)
        PyErr_Print();
}

}  // namespace

void startInterpreter()
{
    if (Py_IsInitialized())
        return;
    PyConfig config;
    PyConfig_InitPythonConfig(&config);
    config.install_signal_handlers = 0;
    config.parse_argv = 0;
    config.user_site_directory = 0;
    config.write_bytecode = 0;
    PyConfig_SetString(&config, &config.program_name, L"/usr/bin/python3");  // finds the system's own library
    const PyStatus status = Py_InitializeFromConfig(&config);
    PyConfig_Clear(&config);
    if (PyStatus_Exception(status))
        Py_ExitStatusException(status);
    replaceStreams();
    PyEval_SaveThread();  // every entry takes the lock for itself
}

}  // namespace torvel::python
