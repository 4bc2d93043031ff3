#include <map>

#include "python/python_api.h"
#include "commands/session.h"

namespace torvel::python {
namespace {

// One command as a Python callable. The name is looked up in the session at hand at every call, so that an object
// kept by a script never outlives its command.
struct CommandFunction
{
    PyObject_HEAD
    vectorcallfunc call;
    PyObject* name;
};

PyTypeObject g_type{};
PyObject* g_module = nullptr;  // maya.cmds

bool takeFlags(PyObject* const* values, PyObject* names, std::vector<RawFlag>& flags)
{
    const Py_ssize_t count = names ? PyTuple_GET_SIZE(names) : 0;
    flags.reserve(static_cast<std::size_t>(count));
    for (Py_ssize_t i = 0; i < count; ++i) {
        Value value;
        if (!toValue(values[i], value))
            return false;
        flags.push_back({textOf(PyTuple_GET_ITEM(names, i)), {std::move(value)}, true});
    }
    return true;
}

PyObject* callCommand(PyObject* self, PyObject* const* values, std::size_t packed, PyObject* names)
{
    Session* session = Session::current();
    if (!session)
        return raise(Status::failure("There is no session"));
    const Py_ssize_t count = PyVectorcall_NARGS(packed);
    std::vector<Value> args(static_cast<std::size_t>(count));
    for (Py_ssize_t i = 0; i < count; ++i)
        if (!toValue(values[i], args[static_cast<std::size_t>(i)]))
            return nullptr;
    std::vector<RawFlag> flags;
    if (!takeFlags(values + count, names, flags))
        return nullptr;
    Value result;
    const PyObject* name = reinterpret_cast<CommandFunction*>(self)->name;
    const Status status = session->call(PyUnicode_AsUTF8(const_cast<PyObject*>(name)), flags, std::move(args), result);
    if (!status)
        return PyErr_Occurred() ? nullptr : raise(status);
    return toPython(result);
}

PyObject* represent(PyObject* self)
{
    return PyUnicode_FromFormat("<built-in function %U>", reinterpret_cast<CommandFunction*>(self)->name);
}

void release(PyObject* self)
{
    Py_XDECREF(reinterpret_cast<CommandFunction*>(self)->name);
    PyObject_Free(self);
}

PyObject* nameOf(PyObject* self, void*)
{
    PyObject* name = reinterpret_cast<CommandFunction*>(self)->name;
    Py_INCREF(name);
    return name;
}

PyGetSetDef g_members[] = {{"__name__", nameOf, nullptr, nullptr, nullptr}, {nullptr, nullptr, nullptr, nullptr, nullptr}};

void readyType()
{
    Py_SET_REFCNT(reinterpret_cast<PyObject*>(&g_type), 1);
    g_type.tp_name = "maya.cmds.command";
    g_type.tp_basicsize = sizeof(CommandFunction);
    g_type.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_VECTORCALL;
    g_type.tp_vectorcall_offset = offsetof(CommandFunction, call);
    g_type.tp_call = PyVectorcall_Call;
    g_type.tp_repr = represent;
    g_type.tp_dealloc = release;
    g_type.tp_getset = g_members;
    PyType_Ready(&g_type);
}

PyObject* makeFunction(const std::string& name)
{
    CommandFunction* made = PyObject_New(CommandFunction, &g_type);
    if (!made)
        return nullptr;
    made->call = callCommand;
    made->name = PyUnicode_FromString(name.c_str());
    return reinterpret_cast<PyObject*>(made);
}

PyObject* evalMel(PyObject*, PyObject* text)
{
    Session* session = Session::current();
    if (!PyUnicode_Check(text))
        return raise(Status::usage("eval() takes a text"));
    if (!session || !session->mel)
        return raise(Status::failure("MEL is not available"));
    Value result;
    const Status status = session->mel->run(textOf(text), result);
    if (!status)
        return raise(Status::failure("Error occurred during execution of MEL script\n" + status.text()));
    return toPython(result);
}

PyMethodDef g_melMethods[] = {{"eval", evalMel, METH_O, "Runs a MEL text and returns its result."},
                              {nullptr, nullptr, 0, nullptr}};

// The parts of the package that are plain Python.
const char* const kUtilsText =
    "def executeDeferred(function, *args, **kwargs):\n"
    "    if callable(function):\n"
    "        function(*args, **kwargs)\n"
    "    else:\n"
    "        import __main__\n"
    "        exec(function, __main__.__dict__)\n"
    "def executeInMainThreadWithResult(function, *args, **kwargs):\n"
    "    if callable(function):\n"
    "        return function(*args, **kwargs)\n"
    "    import __main__\n"
    "    return eval(function, __main__.__dict__)\n"
    "processIdleEvents = lambda: None\n";
const char* const kStandaloneText = "def initialize(name='python'):\n    pass\ndef uninitialize():\n    pass\n";

PyObject* addModule(PyObject* package, const char* name, const char* text)
{
    const std::string full = std::string("maya.") + name;
    PyObject* module = PyImport_AddModule(full.c_str());  // borrowed, kept by sys.modules
    PyObject_SetAttrString(package, name, module);
    if (text) {
        PyObject* scope = PyModule_GetDict(module);
        PyDict_SetItemString(scope, "__builtins__", PyEval_GetBuiltins());
        Ref done(PyRun_String(text, Py_file_input, scope, scope));
        if (!done)
            PyErr_Print();
    }
    return module;
}

void makePackage()
{
    readyType();
    PyObject* package = PyImport_AddModule("maya");
    PyObject_SetAttrString(package, "__path__", Ref(PyList_New(0)).get());
    g_module = addModule(package, "cmds", nullptr);
    PyModule_AddFunctions(addModule(package, "mel", nullptr), g_melMethods);
    addModule(package, "utils", kUtilsText);
    addModule(package, "standalone", kStandaloneText);
}

void clearCommands()
{
    PyObject* scope = PyModule_GetDict(g_module);
    const Ref keys(PyDict_Keys(scope));
    for (Py_ssize_t i = 0; i < PyList_GET_SIZE(keys.get()); ++i) {
        PyObject* key = PyList_GET_ITEM(keys.get(), i);
        if (Py_TYPE(PyDict_GetItem(scope, key)) == &g_type)
            PyDict_DelItem(scope, key);
    }
}

}  // namespace

void bindCommand(const std::string& name, bool present)
{
    PyObject* scope = PyModule_GetDict(g_module);
    if (present)
        PyDict_SetItemString(scope, name.c_str(), Ref(makeFunction(name)).get());
    else if (PyDict_DelItemString(scope, name.c_str()) != 0)
        PyErr_Clear();
}

void installMayaPackage()
{
    if (!g_module)
        makePackage();
    clearCommands();
    Session* session = Session::current();
    for (const auto& entry : session->commands())
        bindCommand(entry.first, true);
    for (const auto& entry : session->pluginCommands())
        bindCommand(entry.first, true);
}

}  // namespace torvel::python
