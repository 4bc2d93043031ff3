#pragma once

#include <string>

#include "base/value.h"
#include "mel/tree.h"

namespace torvel::mel {

// Values of the language are plain Values: int64 kept within 32 bits, double, text, Tuple of three
// for a vector, List for an array. A matrix is a List of Tuples, its rows; with three columns it
// looks like a vector[], and only the kind of its variable tells the two apart.

/// "int", "string[]" ...
std::string kindName(Kind kind);
/// The kind that a value has by itself; an empty array counts as string[].
Kind kindOf(const Value& value);
/// 0, 0.0, "", <<0,0,0>> or an empty array.
Value defaultOf(Kind kind);
/// Converts for an assignment; throws a Fault for an array in place of a single value and the
/// reverse.
Value convert(const Value& value, Kind kind);

/// Zeros.
Value matrixOf(std::size_t rows, std::size_t columns);
/// A value for a matrix variable of the size that `model` has; throws a Fault for another size or
/// kind.
Value fitMatrix(const Value& value, const Value& model);

/// As `print` shows it: whole floats without a point, others with up to ten digits; arrays one item
/// a line.
std::string textOf(const Value& value);
/// Leading number of a text, 0 when there is none; length of a vector.
double numberOf(const Value& value);
bool truthOf(const Value& value);
/// Wraps to 32 bits, as the language's int does.
Value wrapped(double value);

/// One of + - * / % ^ == != < <= > >=. Throws a Fault for a division by zero and for kinds that do
/// not fit.
Value combine(const std::string& op, const Value& left, const Value& right);

}  // namespace torvel::mel
