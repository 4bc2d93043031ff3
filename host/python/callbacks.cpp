#include "python/values.h"

#include "python/callbacks.h"

#include <cstdlib>
#include <unordered_map>

#include "script/session.h"
#include "script/deferred.h"
#include "python/run.h"

namespace torvel {

namespace {

const std::string kPrefix = "__import__(\"maya.utils\").utils._callback(";
long g_next = 1;

std::unordered_map<long, PyObject*>& callbacks() {
    static std::unordered_map<long, PyObject*> objects;
    return objects;
}

PyObject* find(const std::string& text) {
    if (!isCallback(text))
        return nullptr;
    return callbackObject(std::strtol(text.c_str() + kPrefix.size(), nullptr, 10));
}

}  // namespace

PyObject* callbackObject(long number) {
    const auto found = callbacks().find(number);
    return found == callbacks().end() ? nullptr : found->second;
}

namespace {

Status callObject(Session& session, PyObject* callable, const std::vector<Value>& args) {
    const ScriptDepth depth(session.deferred());
    const py::Gil lock;
    const py::Ref kept = py::Ref::borrowed(callable);  // it may remove itself
    const py::Ref tuple(PyTuple_New(static_cast<Py_ssize_t>(args.size())));
    for (std::size_t i = 0; tuple && i < args.size(); ++i)
        PyTuple_SET_ITEM(tuple.get(), static_cast<Py_ssize_t>(i), py::fromValue(args[i]));
    const py::Ref result(tuple ? PyObject_CallObject(callable, tuple.get()) : nullptr);
    return result ? Status::ok() : py::reportError(session);
}

}  // namespace

std::string addCallback(PyObject* callable) {
    Py_INCREF(callable);
    callbacks()[g_next] = callable;
    return kPrefix + std::to_string(g_next++) + ")";
}

bool isCallback(const std::string& text) {
    return text.compare(0, kPrefix.size(), kPrefix) == 0;
}

void removeCallback(const std::string& text) {
    PyObject* object = find(text);
    if (!object)
        return;
    const py::Gil lock;
    callbacks().erase(std::strtol(text.c_str() + kPrefix.size(), nullptr, 10));
    Py_DECREF(object);
}

Status runCallback(Session& session, const std::string& text, const std::vector<Value>& args) {
    PyObject* callable = find(text);
    return callable ? callObject(session, callable, args)
                    : Status::failure("The callable of this command is gone.");
}

}  // namespace torvel
