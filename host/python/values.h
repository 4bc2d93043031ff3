#pragma once

#include "python/ref.h"

#include <string>

#include "base/value.h"

namespace torvel::py {

/// An argument of a command: None, bool, int, float, str and lists or tuples of them; objects with
/// __index__ or
/// __float__ count as numbers. With `callables` a callable becomes the text of a callback
/// (callbacks.h). False with a TypeError set for anything else.
bool toValue(PyObject* object, bool callables, Value& value);

/// A result of a text. What no Value can hold becomes an empty Tuple, the mark of "no such value".
Value resultOf(PyObject* object);

/// New reference. Bytes that are no UTF-8 are replaced.
PyObject* fromText(const std::string& text);
PyObject* fromValue(const Value& value);

/// str(object); empty when that fails. Clears errors.
std::string textOf(PyObject* object);

}  // namespace torvel::py
