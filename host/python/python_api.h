#pragma once

// The one place that includes Python's header: before everything else, with Qt's keywords out of its way.
#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <string>
#include <utility>

#include "base/status.h"
#include "base/value.h"

namespace torvel::python {

/// Owns one reference.
class Ref
{
public:
    Ref() = default;
    explicit Ref(PyObject* owned) : m_object(owned) {}
    Ref(Ref&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    Ref& operator=(Ref&& other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    Ref(const Ref&) = delete;
    Ref& operator=(const Ref&) = delete;
    ~Ref() { Py_XDECREF(m_object); }

    PyObject* get() const { return m_object; }
    PyObject* release() { return std::exchange(m_object, nullptr); }
    explicit operator bool() const { return m_object != nullptr; }

private:
    PyObject* m_object = nullptr;
};

/// Holds the interpreter's lock for a scope; entries nest.
class Lock
{
public:
    Lock() : m_state(PyGILState_Ensure()) {}
    ~Lock() { PyGILState_Release(m_state); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    PyGILState_STATE m_state;
};

/// Python to Value: None, bool, int, float, str and lists or tuples of them (both become lists). False with a
/// TypeError set for anything else.
bool toValue(PyObject* object, Value& value);
/// New reference; null with an exception set when memory ends.
PyObject* toPython(const Value& value);
/// Sets the exception that a failed command stands for; returns null.
PyObject* raise(const Status& status);
/// UTF-8 text of a str; what cannot be encoded is replaced.
std::string textOf(PyObject* text);

/// Starts the interpreter once and leaves it without a holder of its lock.
void startInterpreter();
/// Makes `maya` and its modules (once) and fills maya.cmds with the commands of the current session.
void installMayaPackage();
/// Binds or takes away one command in maya.cmds.
void bindCommand(const std::string& name, bool present);

}  // namespace torvel::python
