#include "python/values.h"

#include "python/callbacks.h"

namespace torvel::py {

namespace {

constexpr int kDeepestList = 100;

bool textInto(PyObject* object, Value& value) {
    Py_ssize_t length = 0;
    const char* text = PyUnicode_AsUTF8AndSize(object, &length);
    if (!text)
        return false;
    value = Value(std::string(text, static_cast<std::size_t>(length)));
    return true;
}

bool integerInto(PyObject* object, Value& value) {
    int overflow = 0;
    const long long number = PyLong_AsLongLongAndOverflow(object, &overflow);
    if (overflow) {
        PyErr_SetString(PyExc_TypeError, "Invalid argument: the integer is too large.");
        return false;
    }
    if (number == -1 && PyErr_Occurred())
        return false;
    value = Value(static_cast<std::int64_t>(number));
    return true;
}

bool convert(PyObject* object, bool callables, int depth, Value& value);

bool listInto(PyObject* object, bool callables, int depth, Value& value) {
    if (depth > kDeepestList) {
        PyErr_SetString(PyExc_TypeError, "Invalid argument: lists nested too deeply.");
        return false;
    }
    Value::List items;
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(object); ++i) {
        Value item;
        if (!convert(PySequence_Fast_GET_ITEM(object, i), callables, depth + 1, item))
            return false;
        items.push_back(std::move(item));
    }
    value = Value(std::move(items));
    return true;
}

bool otherInto(PyObject* object, bool callables, Value& value) {
    if (PyIndex_Check(object)) {
        const Ref index(PyNumber_Index(object));
        return index && integerInto(index.get(), value);
    }
    const PyNumberMethods* numbers = Py_TYPE(object)->tp_as_number;
    if (numbers && numbers->nb_float) {
        const double number = PyFloat_AsDouble(object);
        if (PyErr_Occurred())
            return false;
        value = Value(number);
        return true;
    }
    if (callables && PyCallable_Check(object)) {
        value = Value(addCallback(object));
        return true;
    }
    PyErr_Format(PyExc_TypeError,
                 "Invalid argument: objects of type '%.100s' cannot be passed to a command.",
                 Py_TYPE(object)->tp_name);
    return false;
}

bool convert(PyObject* object, bool callables, int depth, Value& value) {
    if (PyUnicode_Check(object))
        return textInto(object, value);
    if (PyBool_Check(object)) {
        value = Value(object == Py_True);
        return true;
    }
    if (PyLong_Check(object))
        return integerInto(object, value);
    if (PyFloat_Check(object)) {
        value = Value(PyFloat_AS_DOUBLE(object));
        return true;
    }
    if (object == Py_None)
        return true;
    if (PyList_Check(object) || PyTuple_Check(object))
        return listInto(object, callables, depth, value);
    return otherInto(object, callables, value);
}

Value resultAt(PyObject* object, int depth) {
    Value value;
    const bool plain = object == Py_None || PyUnicode_Check(object) || PyLong_Check(object) ||
                       PyFloat_Check(object);
    if (plain && convert(object, false, 0, value))
        return value;
    PyErr_Clear();
    if (plain || depth > kDeepestList || !(PyList_Check(object) || PyTuple_Check(object)))
        return Value(Value::Tuple());
    Value::List items;
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(object); ++i)
        items.push_back(resultAt(PySequence_Fast_GET_ITEM(object, i), depth + 1));
    return Value(std::move(items));
}

template <class Items>
PyObject* fromList(const Items& items) {
    Ref list(PyList_New(static_cast<Py_ssize_t>(items.size())));
    for (std::size_t i = 0; list && i < items.size(); ++i) {
        PyObject* item = fromValue(items[i]);
        if (!item)
            return nullptr;
        PyList_SET_ITEM(list.get(), static_cast<Py_ssize_t>(i), item);
    }
    return list.release();
}

PyObject* fromTuple(const std::vector<double>& items) {
    Ref tuple(PyTuple_New(static_cast<Py_ssize_t>(items.size())));
    for (std::size_t i = 0; tuple && i < items.size(); ++i) {
        PyObject* item = PyFloat_FromDouble(items[i]);
        if (!item)
            return nullptr;
        PyTuple_SET_ITEM(tuple.get(), static_cast<Py_ssize_t>(i), item);
    }
    return tuple.release();
}

}  // namespace

bool toValue(PyObject* object, bool callables, Value& value) {
    return convert(object, callables, 0, value);
}

Value resultOf(PyObject* object) {
    return resultAt(object, 0);
}

PyObject* fromText(const std::string& text) {
    return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace");
}

PyObject* fromValue(const Value& value) {
    if (value.isString())
        return fromText(value.string());
    if (value.isDouble())
        return PyFloat_FromDouble(value.number());
    if (value.isBool())
        return PyBool_FromLong(value.truth() ? 1 : 0);
    if (value.isInt())
        return PyLong_FromLongLong(value.integer());
    if (value.isList())
        return fromList(value.list());
    if (value.isTuple())
        return fromTuple(value.tuple().items);
    Py_RETURN_NONE;
}

std::string textOf(PyObject* object) {
    const Ref text(object ? PyObject_Str(object) : nullptr);
    const Ref bytes(text ? PyUnicode_AsEncodedString(text.get(), "utf-8", "replace") : nullptr);
    PyErr_Clear();
    return bytes ? std::string(PyBytes_AS_STRING(bytes.get()),
                               static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.get())))
                 : std::string();
}

}  // namespace torvel::py
