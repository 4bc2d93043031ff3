#include "python/interpreter.h"

#include <memory>

#include <QCoreApplication>
#include <QMetaObject>

#include "script/session.h"
#include "python/callbacks.h"
#include "python/commands.h"
#include "python/run.h"
#include "python/values.h"

namespace torvel::py {

namespace {

PyObject* write(PyObject*, PyObject* args) {
    int stream = 1;
    PyObject* text = nullptr;
    if (!PyArg_ParseTuple(args, "iU", &stream, &text))
        return nullptr;
    const Ref bytes(PyUnicode_AsEncodedString(text, "utf-8", "replace"));
    if (!bytes)
        return nullptr;
    ScriptOutput plain;
    Session* session = currentSession();
    (session ? session->output() : plain)
        .write({PyBytes_AS_STRING(bytes.get()),
                static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.get()))},
               stream == 2);
    Py_RETURN_NONE;
}

PyObject* evalMel(PyObject*, PyObject* args) {
    const char* text = nullptr;
    Py_ssize_t length = 0;
    if (!PyArg_ParseTuple(args, "s#", &text, &length))
        return nullptr;
    Session* session = currentSession();
    if (!session || !session->mel) {
        PyErr_SetString(PyExc_RuntimeError, "MEL is not available.");
        return nullptr;
    }
    const CallerMark mark(false);
    Value result;
    const Status status =
        session->mel->run(std::string(text, static_cast<std::size_t>(length)), result);
    endWait();
    if (status)
        return fromValue(result);
    const Ref error(fromText("Error occurred during execution of MEL script\n" + status.text()));
    PyErr_SetObject(PyExc_RuntimeError, error.get());
    return nullptr;
}

// A callable that waits for its turn; released with the lock held, wherever the task ends.
std::shared_ptr<PyObject> kept(PyObject* callable) {
    Py_INCREF(callable);
    return {callable, [](PyObject* object) {
                const Gil lock;
                Py_DECREF(object);
            }};
}

PyObject* later(PyObject*, PyObject* callable) {
    const std::shared_ptr<PyObject> task = kept(callable);
    if (!currentSession()) {
        PyErr_SetString(PyExc_RuntimeError, "There is no scene to work on.");
        return nullptr;
    }
    currentSession()->deferred()->add([task] {
        const Gil lock;
        const Ref result(PyObject_CallNoArgs(task.get()));
        Session* session = currentSession();
        if (!result && session)
            ignore(reportError(*session));
        else if (!result)
            PyErr_Clear();
    });
    Py_RETURN_NONE;
}

PyObject* callback(PyObject*, PyObject* number) {
    const long value = PyLong_AsLong(number);
    if (value == -1 && PyErr_Occurred())
        return nullptr;
    PyObject* object = callbackObject(value);
    if (!object) {
        PyErr_SetString(PyExc_RuntimeError, "The callable of this control is gone.");
        return nullptr;
    }
    Py_INCREF(object);
    return object;
}

// The error of a call made on the main thread, carried over to the thread that asked.
struct Outcome {
    PyObject* result = nullptr;
    PyObject *type = nullptr, *value = nullptr, *traceback = nullptr;
};

PyObject* inMainThread(PyObject*, PyObject* callable) {
    QCoreApplication* application = QCoreApplication::instance();
    if (isMainThread())
        return PyObject_CallNoArgs(callable);
    if (!application) {
        PyErr_SetString(PyExc_RuntimeError, "The main thread runs no event loop.");
        return nullptr;
    }
    Outcome outcome;
    Py_BEGIN_ALLOW_THREADS QMetaObject::invokeMethod(
        application,
        [callable, &outcome] {
            const Gil lock;
            outcome.result = PyObject_CallNoArgs(callable);
            PyErr_Fetch(&outcome.type, &outcome.value, &outcome.traceback);
        },
        Qt::BlockingQueuedConnection);
    Py_END_ALLOW_THREADS if (!outcome.result)
        PyErr_Restore(outcome.type, outcome.value, outcome.traceback);
    return outcome.result;
}

PyMethodDef g_functions[] = {
    {"write", write, METH_VARARGS, nullptr},
    {"eval_mel", evalMel, METH_VARARGS, "Runs a MEL text and returns its result."},
    {"later", later, METH_O, nullptr},
    {"callback", callback, METH_O, nullptr},
    {"in_main_thread", inMainThread, METH_O, nullptr},
    {nullptr, nullptr, 0, nullptr}};

PyModuleDef g_module = {
    PyModuleDef_HEAD_INIT, "_torvel", nullptr, -1, g_functions, nullptr, nullptr, nullptr, nullptr};

}  // namespace

PyObject* makeHostModule() {
    return PyModule_Create(&g_module);
}

}  // namespace torvel::py
