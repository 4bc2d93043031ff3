#include "mel/value.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "base/number_text.h"

namespace torvel::mel {

namespace {

Value tuple(double x, double y, double z) {
    return Value(Value::Tuple{{x, y, z}});
}

double part(const Value& value, std::size_t i) {
    if (!value.isTuple())
        return numberOf(value);
    return i < value.tuple().items.size() ? value.tuple().items[i] : 0.0;
}

bool isArray(const Value& value) {
    return value.isList();
}

bool isMatrix(const Value& value) {
    return value.isList() && !value.list().empty() && value.list()[0].isTuple();
}

std::size_t columnsOf(const Value& matrix) {
    return matrix.list()[0].tuple().items.size();
}

[[noreturn]] void wrongSizes(const std::string& op) {
    throw Fault{"The sizes of the matrices do not fit the operator " + op + ".", 0, 0, {}};
}

Value product(const Value& left, const Value& right) {
    const std::size_t inner = columnsOf(left), columns = columnsOf(right);
    if (inner != right.list().size())
        wrongSizes("*");
    Value out = matrixOf(left.list().size(), columns);
    for (std::size_t row = 0; row < left.list().size(); ++row) {
        Value::Tuple numbers{std::vector<double>(columns, 0.0)};
        for (std::size_t column = 0; column < columns; ++column)
            for (std::size_t i = 0; i < inner; ++i)
                numbers.items[column] +=
                    left.list()[row].tuple().items[i] * right.list()[i].tuple().items[column];
        out.list()[row] = Value(std::move(numbers));
    }
    return out;
}

// Entry by entry; a single number stands for all entries of the other side.
Value combineMatrices(const std::string& op, const Value& left, const Value& right) {
    const Value& shape = isMatrix(left) ? left : right;
    const bool both = isMatrix(left) && isMatrix(right);
    if (both && (left.list().size() != right.list().size() || columnsOf(left) != columnsOf(right)))
        wrongSizes(op);
    Value out = matrixOf(shape.list().size(), columnsOf(shape));
    for (std::size_t row = 0; row < out.list().size(); ++row) {
        Value::Tuple numbers{std::vector<double>(columnsOf(shape))};
        for (std::size_t i = 0; i < numbers.items.size(); ++i) {
            const auto entry = [&](const Value& side) {
                return isMatrix(side) ? side.list()[row].tuple().items[i] : numberOf(side);
            };
            numbers.items[i] = combine(op, Value(entry(left)), Value(entry(right))).number();
        }
        out.list()[row] = Value(std::move(numbers));
    }
    return out;
}

Value withMatrix(const std::string& op, const Value& left, const Value& right) {
    const bool both = isMatrix(left) && isMatrix(right);
    if (both && (op == "==" || op == "!=")) {
        bool same = left.list().size() == right.list().size();
        for (std::size_t i = 0; same && i < left.list().size(); ++i)
            same = left.list()[i].tuple().items == right.list()[i].tuple().items;
        return Value(same == (op == "==") ? 1 : 0);
    }
    const bool scaled = !both && (op == "*" || (op == "/" && isMatrix(left)));
    if ((!both && !scaled) || (both && op != "+" && op != "-" && op != "*"))
        throw Fault{"Illegal operation " + op + " on a matrix.", 0, 0, {}};
    return both && op == "*" ? product(left, right) : combineMatrices(op, left, right);
}

Value compare(const std::string& op, int order, bool comparable) {
    if (op == "==")
        return Value(comparable && order == 0 ? 1 : 0);
    if (op == "!=")
        return Value(comparable && order == 0 ? 0 : 1);
    if (!comparable)
        return Value(0);
    const bool result = op == "<"    ? order < 0
                        : op == "<=" ? order <= 0
                        : op == ">"  ? order > 0
                                     : order >= 0;
    return Value(result ? 1 : 0);
}

int orderOf(double left, double right) {
    return left < right ? -1 : left > right ? 1 : 0;
}

bool isComparison(const std::string& op) {
    return op == "==" || op == "!=" || op[0] == '<' || op[0] == '>';
}

Value compareValues(const std::string& op, const Value& left, const Value& right) {
    if (left.isString() && right.isString())
        return compare(op, left.string().compare(right.string()), true);
    if (left.isTuple() && right.isTuple() && (op == "==" || op == "!=")) {
        const bool same = left.tuple().items == right.tuple().items;
        return Value(same == (op == "==") ? 1 : 0);
    }
    const double a = numberOf(left);
    const double b = numberOf(right);
    return compare(op, orderOf(a, b), a == a && b == b);
}

Value combineVectors(char op, const Value& left, const Value& right) {
    double a[3], b[3];
    for (std::size_t i = 0; i < 3; ++i) {
        a[i] = part(left, i);
        b[i] = part(right, i);
    }
    const bool both = left.isTuple() && right.isTuple();
    switch (op) {
        case '+': return tuple(a[0] + b[0], a[1] + b[1], a[2] + b[2]);
        case '-': return tuple(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
        case '*':
            return both ? Value(a[0] * b[0] + a[1] * b[1] + a[2] * b[2])
                        : tuple(a[0] * b[0], a[1] * b[1], a[2] * b[2]);
        case '/':
            if (b[0] == 0.0 || b[1] == 0.0 || b[2] == 0.0)
                throw Fault{"Divide by zero.", 0, 0, {}};
            return tuple(a[0] / b[0], a[1] / b[1], a[2] / b[2]);
        case '^':
            if (both)
                return tuple(a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                             a[0] * b[1] - a[1] * b[0]);
            break;
        default: break;
    }
    throw Fault{std::string("Invalid use of operator ") + op + " with a vector.", 0, 0, {}};
}

Value combineIntegers(char op, std::int64_t a, std::int64_t b) {
    if ((op == '/' || op == '%') && b == 0)
        throw Fault{"Divide by zero.", 0, 0, {}};
    const std::int64_t result = op == '+'   ? a + b
                                : op == '-' ? a - b
                                : op == '*' ? a * b
                                : op == '/' ? a / b
                                            : a % b;
    return Value(
        static_cast<std::int64_t>(static_cast<std::int32_t>(static_cast<std::uint32_t>(result))));
}

Value combineNumbers(char op, const Value& left, const Value& right) {
    if (op == '^')
        throw Fault{"The operator ^ needs two vectors.", 0, 0, {}};
    const bool whole =
        !left.isDouble() && !right.isDouble() && !left.isString() && !right.isString();
    if (whole)
        return combineIntegers(op, left.integer(), right.integer());
    const double a = numberOf(left);
    const double b = numberOf(right);
    if ((op == '/' || op == '%') && b == 0.0)
        throw Fault{"Divide by zero.", 0, 0, {}};
    return Value(op == '+'   ? a + b
                 : op == '-' ? a - b
                 : op == '*' ? a * b
                 : op == '/' ? a / b
                             : std::fmod(a, b));
}

Value convertArray(const Value& value, Type type) {
    Value::List items = value.list();
    for (Value& item : items)
        item = convert(item, {type, false});
    return Value(std::move(items));
}

}  // namespace

std::string kindName(Kind kind) {
    static constexpr const char* kNames[] = {"void", "int", "float", "string", "vector", "matrix"};
    return std::string(kNames[static_cast<int>(kind.type)]) + (kind.array ? "[]" : "");
}

Kind kindOf(const Value& value) {
    if (isMatrix(value) && columnsOf(value) != 3)
        return {Type::Matrix, false};
    if (value.isList())
        return {value.list().empty() ? Type::String : kindOf(value.list()[0]).type, true};
    if (value.isTuple())
        return {Type::Vector, false};
    if (value.isString())
        return {Type::String, false};
    return {value.isDouble() ? Type::Float : value.isNone() ? Type::None : Type::Int, false};
}

Value defaultOf(Kind kind) {
    if (kind.array)
        return Value(Value::List());
    switch (kind.type) {
        case Type::Int: return Value(0);
        case Type::Float: return Value(0.0);
        case Type::String: return Value("");
        case Type::Vector: return tuple(0.0, 0.0, 0.0);
        case Type::Matrix: return Value(Value::List());
        case Type::None: break;
    }
    return Value();
}

Value convert(const Value& value, Kind kind) {
    if (value.isNone())
        return defaultOf(kind);
    if (kind.type == Type::Matrix && !kind.array && isMatrix(value))
        return value;
    if (isArray(value) != kind.array && kind.type != Type::None) {
        if (kind.array && value.isTuple())
            return convert(Value::doubles(value.tuple().items), kind);
        throw Fault{"Cannot convert data of type " + kindName(kindOf(value)) + " to type " +
                        kindName(kind) + ".",
                    0,
                    0,
                    {}};
    }
    if (kind.array)
        return convertArray(value, kind.type);
    switch (kind.type) {
        case Type::Int: return wrapped(numberOf(value));
        case Type::Float: return Value(numberOf(value));
        case Type::String: return value.isString() ? value : Value(textOf(value));
        case Type::Vector: return tuple(part(value, 0), part(value, 1), part(value, 2));
        case Type::Matrix:
            if (value.isTuple())
                return Value(Value::List{value});
            throw Fault{
                "Cannot convert data of type " + kindName(kindOf(value)) + " to type matrix.",
                0,
                0,
                {}};
        case Type::None: break;
    }
    return value;
}

Value matrixOf(std::size_t rows, std::size_t columns) {
    return Value(Value::List(rows, Value(Value::Tuple{std::vector<double>(columns, 0.0)})));
}

Value fitMatrix(const Value& value, const Value& model) {
    Value fitting = convert(value, {Type::Matrix, false});
    const bool sameSize = isMatrix(fitting) && isMatrix(model) &&
                          fitting.list().size() == model.list().size() &&
                          columnsOf(fitting) == columnsOf(model);
    if (!sameSize)
        throw Fault{"The sizes of the two matrices differ.", 0, 0, {}};
    return fitting;
}

std::string textOf(const Value& value) {
    if (value.isString())
        return value.string();
    std::string text;
    if (value.isList()) {
        for (const Value& item : value.list())
            text += textOf(item) + "\n";
        return text;
    }
    if (value.isTuple()) {
        for (const double item : value.tuple().items)
            text += (text.empty() ? "" : " ") + textOf(Value(item));
        return text;
    }
    if (value.isNone())
        return text;
    if (!value.isDouble())
        return std::to_string(value.integer());
    return numberText(value.number(), 10);
}

double numberOf(const Value& value) {
    if (value.isString()) {
        double number = 0.0;
        readNumber(value.string().c_str(), number);
        return number;
    }
    if (value.isTuple()) {
        double sum = 0.0;
        for (const double item : value.tuple().items)
            sum += item * item;
        return std::sqrt(sum);
    }
    if (value.isList())
        throw Fault{"Illegal operation on an array.", 0, 0, {}};
    return value.number();
}

bool truthOf(const Value& value) {
    return numberOf(value) != 0.0;
}

Value wrapped(double value) {
    if (!(std::fabs(value) < 9.0e18))
        return Value(std::int64_t(0));
    const auto bits = static_cast<std::uint32_t>(static_cast<std::int64_t>(value));
    return Value(static_cast<std::int64_t>(static_cast<std::int32_t>(bits)));
}

Value combine(const std::string& op, const Value& left, const Value& right) {
    if ((isMatrix(left) && !right.isString()) || (isMatrix(right) && !left.isString()))
        return withMatrix(op, left, right);
    if (isArray(left) || isArray(right))
        throw Fault{"Illegal operation " + op + " on an array.", 0, 0, {}};
    if (isComparison(op))
        return compareValues(op, left, right);
    if (left.isString() || right.isString()) {
        if (op != "+")
            throw Fault{"Illegal operation " + op + " on a string.", 0, 0, {}};
        return Value(textOf(left) + textOf(right));
    }
    if (left.isTuple() || right.isTuple())
        return combineVectors(op[0], left, right);
    return combineNumbers(op[0], left, right);
}

}  // namespace torvel::mel
