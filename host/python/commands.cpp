#include "python/commands.h"

#include <cstddef>
#include <exception>
#include <new>

#include "script/session.h"
#include "python/callbacks.h"
#include "python/interpreter.h"
#include "python/values.h"

namespace torvel {

namespace py {

namespace {

Session* g_session = nullptr;

// A command as a function object. Its row is static data; a plug-in's command is looked up at each
// call.
struct CommandObject {
    PyObject_HEAD vectorcallfunc call;
    const Command* command;
    std::string* name;
};

bool readFlags(PyObject* const* values, PyObject* names, std::vector<RawFlag>& flags) {
    const Py_ssize_t count = names ? PyTuple_GET_SIZE(names) : 0;
    flags.resize(static_cast<std::size_t>(count));
    for (Py_ssize_t i = 0; i < count; ++i) {
        RawFlag& flag = flags[static_cast<std::size_t>(i)];
        Py_ssize_t length = 0;
        const char* name = PyUnicode_AsUTF8AndSize(PyTuple_GET_ITEM(names, i), &length);
        if (!name)
            return false;
        flag.name.assign(name, static_cast<std::size_t>(length));
        flag.fromPython = true;
        flag.values.resize(1);
        if (!toValue(values[i], true, flag.values[0]))
            return false;
    }
    return true;
}

bool readArguments(PyObject* const* values, std::size_t count, std::vector<Value>& args) {
    args.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        if (!toValue(values[i], false, args[i]))
            return false;
    return true;
}

Status runCommand(const CommandObject& self, const std::vector<RawFlag>& flags,
                  std::vector<Value> args, Value& result) {
    const CallerMark mark(self.command != nullptr);
    if (!self.command)
        return g_session->call(*self.name, flags, std::move(args), result);
    return g_session->run(*self.command, flags, std::move(args), result);
}

PyObject* callCommand(PyObject* object, PyObject* const* values, std::size_t count,
                      PyObject* names) {
    const auto& self = *reinterpret_cast<CommandObject*>(object);
    const char* refused = !g_session        ? "There is no scene to work on."
                          : !isMainThread() ? "Commands run on the main thread only; use "
                                              "maya.utils.executeInMainThreadWithResult."
                                            : nullptr;
    if (refused) {
        PyErr_SetString(PyExc_RuntimeError, refused);
        return nullptr;
    }
    const auto positional = static_cast<std::size_t>(PyVectorcall_NARGS(count));
    std::vector<RawFlag> flags;
    std::vector<Value> args;
    if (!readFlags(values + positional, names, flags) || !readArguments(values, positional, args))
        return nullptr;
    try {
        Value result;
        const Status status = runCommand(self, flags, std::move(args), result);
        endWait();
        if (status)
            return fromValue(result);
        raise(status);
    } catch (const std::exception& failure) {
        endWait();
        PyErr_SetString(PyExc_RuntimeError, failure.what());
    }
    return nullptr;
}

void destroy(PyObject* object) {
    delete reinterpret_cast<CommandObject*>(object)->name;
    PyObject_Free(object);
}

PyObject* nameOf(PyObject* object, void*) {
    return fromText(*reinterpret_cast<CommandObject*>(object)->name);
}

PyObject* helpOf(PyObject* object, void*) {
    const Command* command = reinterpret_cast<CommandObject*>(object)->command;
    if (!command)
        return fromText("A command of a plug-in.");
    std::string text = command->help;
    for (std::size_t i = 0; i < command->flagCount; ++i)
        text += std::string("\n  ") + command->flags[i].longName + " (" +
                command->flags[i].shortName + ") " + command->flags[i].args;
    return fromText(text);
}

PyObject* show(PyObject* object) {
    return PyUnicode_FromFormat("<command %s>",
                                reinterpret_cast<CommandObject*>(object)->name->c_str());
}

PyGetSetDef g_members[] = {{"__name__", nameOf, nullptr, nullptr, nullptr},
                           {"__qualname__", nameOf, nullptr, nullptr, nullptr},
                           {"__doc__", helpOf, nullptr, nullptr, nullptr},
                           {nullptr, nullptr, nullptr, nullptr, nullptr}};

PyTypeObject* commandType() {
    static PyTypeObject type{};
    if (type.tp_name)
        return &type;
    Py_SET_REFCNT(&type, 1);
    type.tp_name = "maya.cmds.command";
    type.tp_basicsize = sizeof(CommandObject);
    type.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_VECTORCALL;
    type.tp_vectorcall_offset = offsetof(CommandObject, call);
    type.tp_call = PyVectorcall_Call;
    type.tp_dealloc = destroy;
    type.tp_repr = show;
    type.tp_getset = g_members;
    return PyType_Ready(&type) == 0 ? &type : nullptr;
}

PyObject* makeCommand(const std::string& name) {
    PyTypeObject* type = commandType();
    auto* made = type ? PyObject_New(CommandObject, type) : nullptr;
    if (!made)
        return nullptr;
    made->call = callCommand;
    made->command = g_session->findCommand(name);
    made->name = new std::string(name);
    return reinterpret_cast<PyObject*>(made);
}

PyObject* commandDictionary() {
    PyObject* module = PyDict_GetItemString(PyImport_GetModuleDict(), "maya.cmds");
    return module ? PyModule_GetDict(module) : nullptr;
}

void unbindAll(PyObject* dictionary) {
    const Ref names(PyDict_Keys(dictionary));
    for (Py_ssize_t i = 0; names && i < PyList_GET_SIZE(names.get()); ++i) {
        PyObject* name = PyList_GET_ITEM(names.get(), i);
        PyObject* item = PyDict_GetItem(dictionary, name);
        if (item && Py_TYPE(item) == commandType())
            PyDict_DelItem(dictionary, name);
    }
}

}  // namespace

CallerMark::CallerMark(bool python)
    : m_session(g_session), m_before(m_session && m_session->calledFromPython) {
    if (m_session)
        m_session->calledFromPython = python;
}

CallerMark::~CallerMark() {
    if (m_session && m_session == g_session)  // a session may end inside a call
        m_session->calledFromPython = m_before;
}

Session* currentSession() {
    return g_session;
}

void raise(const Status& status) {
    PyObject* type = PyExc_RuntimeError;
    if (status.kind() == Status::Kind::Value)
        type = PyExc_ValueError;
    else if (status.kind() == Status::Kind::Type)
        type = PyExc_TypeError;
    const Ref text(
        fromText(status.kind() == Status::Kind::Reported ? "Maya command error" : status.text()));
    PyErr_SetObject(type, text.get());
}

void bindCommand(const std::string& name, bool present) {
    PyObject* dictionary = commandDictionary();
    if (!dictionary)
        return;
    const Ref made(present ? makeCommand(name) : nullptr);
    if (made)
        PyDict_SetItemString(dictionary, name.c_str(), made.get());
    else if (PyDict_GetItemString(dictionary, name.c_str()))
        PyDict_DelItemString(dictionary, name.c_str());
    PyErr_Clear();
}

void bindSession(Session* session) {
    const Gil lock;
    if (PyObject* dictionary = commandDictionary())
        unbindAll(dictionary);
    g_session = session;
    if (!session)
        return;
    for (const auto& row : session->commands())
        bindCommand(row.first, true);
    for (const auto& row : session->pluginCommands())
        bindCommand(row.first, true);
}

}  // namespace py

}  // namespace torvel
