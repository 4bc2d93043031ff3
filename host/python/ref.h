#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <utility>

namespace torvel::py {

/// Owns one reference; null allowed.
class Ref {
  public:
    Ref() = default;
    /// Takes over a new reference.
    explicit Ref(PyObject* owned) : m_object(owned) {}
    static Ref borrowed(PyObject* object) {
        Py_XINCREF(object);
        return Ref(object);
    }
    Ref(Ref&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    Ref& operator=(Ref&& other) noexcept {
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

/// Holds the interpreter's lock; may be nested.
class Gil {
  public:
    Gil() : m_state(PyGILState_Ensure()) {}
    ~Gil() { PyGILState_Release(m_state); }
    Gil(const Gil&) = delete;
    Gil& operator=(const Gil&) = delete;

  private:
    PyGILState_STATE m_state;
};

}  // namespace torvel::py
