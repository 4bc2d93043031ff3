#include "python/python_api.h"

namespace torvel::python {
namespace {

bool sequenceToValue(PyObject* sequence, Value& value)
{
    const Ref items(PySequence_Fast(sequence, "a list or tuple is expected"));
    if (!items)
        return false;
    Value::List list(static_cast<std::size_t>(PySequence_Fast_GET_SIZE(items.get())));
    for (std::size_t i = 0; i < list.size(); ++i)
        if (!toValue(PySequence_Fast_GET_ITEM(items.get(), static_cast<Py_ssize_t>(i)), list[i]))
            return false;
    value = Value(std::move(list));
    return true;
}

bool integerToValue(PyObject* number, Value& value)
{
    int overflow = 0;
    const long long wide = PyLong_AsLongLongAndOverflow(number, &overflow);
    if (overflow)
        PyErr_SetString(PyExc_OverflowError, "the number is too large for a command argument");
    value = Value(static_cast<std::int64_t>(wide));
    return !overflow && !PyErr_Occurred();
}

PyObject* listToPython(const Value::List& list)
{
    Ref out(PyList_New(static_cast<Py_ssize_t>(list.size())));
    for (std::size_t i = 0; out && i < list.size(); ++i) {
        PyObject* item = toPython(list[i]);
        if (!item)
            return nullptr;
        PyList_SET_ITEM(out.get(), static_cast<Py_ssize_t>(i), item);
    }
    return out.release();
}

PyObject* tupleToPython(const Value::Tuple& tuple)
{
    Ref out(PyTuple_New(static_cast<Py_ssize_t>(tuple.items.size())));
    for (std::size_t i = 0; out && i < tuple.items.size(); ++i)
        PyTuple_SET_ITEM(out.get(), static_cast<Py_ssize_t>(i), PyFloat_FromDouble(tuple.items[i]));
    return out.release();
}

PyObject* textToPython(const std::string& text)
{
    return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace");
}

}  // namespace

std::string textOf(PyObject* text)
{
    const Ref bytes(PyUnicode_AsEncodedString(text, "utf-8", "replace"));
    if (!bytes) {
        PyErr_Clear();
        return {};
    }
    return {PyBytes_AS_STRING(bytes.get()), static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.get()))};
}

bool toValue(PyObject* object, Value& value)
{
    if (PyUnicode_Check(object)) {
        Py_ssize_t size = 0;
        const char* text = PyUnicode_AsUTF8AndSize(object, &size);
        if (text)
            value = Value(std::string(text, static_cast<std::size_t>(size)));
        return text != nullptr;
    }
    if (PyFloat_Check(object))
        return value = Value(PyFloat_AS_DOUBLE(object)), true;
    if (PyBool_Check(object))
        return value = Value(object == Py_True), true;
    if (PyLong_Check(object))
        return integerToValue(object, value);
    if (object == Py_None)
        return value = Value(), true;
    if (PyList_Check(object) || PyTuple_Check(object))
        return sequenceToValue(object, value);
    PyErr_Format(PyExc_TypeError, "Invalid argument type: a %s cannot be given to a command",
                 Py_TYPE(object)->tp_name);
    return false;
}

PyObject* toPython(const Value& value)
{
    if (value.isString())
        return textToPython(value.string());
    if (value.isDouble())
        return PyFloat_FromDouble(value.number());
    if (value.isBool())
        return PyBool_FromLong(value.truth());
    if (value.isInt())
        return PyLong_FromLongLong(std::get<std::int64_t>(value.storage()));
    if (value.isList())
        return listToPython(value.list());
    if (value.isTuple())
        return tupleToPython(value.tuple());
    Py_RETURN_NONE;
}

PyObject* raise(const Status& status)
{
    switch (status.kind()) {
    case Status::Kind::Value: PyErr_SetString(PyExc_ValueError, status.text().c_str()); break;
    case Status::Kind::Type: PyErr_SetString(PyExc_TypeError, status.text().c_str()); break;
    case Status::Kind::Reported: PyErr_SetString(PyExc_RuntimeError, "Maya command error"); break;
    default: PyErr_SetString(PyExc_RuntimeError, status.text().c_str()); break;
    }
    return nullptr;
}

}  // namespace torvel::python
