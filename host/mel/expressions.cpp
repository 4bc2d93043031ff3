#include "mel/interpreter.h"
#include "mel/value.h"

namespace torvel::mel {

namespace {

constexpr double kLargestArray = 1 << 24;

std::size_t indexOf(const Value& value) {
    const double index = numberOf(value);
    if (!(index >= 0.0) || index >= kLargestArray)
        throw Fault{"Array index out of bounds: " + textOf(value) + ".", 0, 0, {}};
    return static_cast<std::size_t>(index);
}

Value withSign(const Value& value) {
    if (value.isTuple() || value.isList())
        return combine("*", value, Value(-1));
    return value.isString() ? Value(-numberOf(value)) : combine("-", Value(0), value);
}

// An entry in a row of a matrix.
Value entryOf(const Value::Tuple& row, std::size_t at) {
    if (at >= row.items.size())
        throw Fault{"Matrix index out of bounds: " + std::to_string(at) + ".", 0, 0, {}};
    return Value(row.items[at]);
}

Value joined(const std::vector<Value>& items) {
    Value::List list;
    Kind kind;
    for (const Value& item : items) {
        const Kind own = kindOf(item);
        if (own.array)
            throw Fault{"An array cannot hold arrays.", 0, 0, {}};
        if (own.type > kind.type)
            kind.type = own.type;
    }
    for (const Value& item : items)
        list.push_back(convert(item, kind));
    return Value(std::move(list));
}

}  // namespace

Value Interpreter::evaluate(const Node& node) {
    StackGuard::check();
    const auto child = [&](std::size_t i) { return evaluate(*node.children[i]); };
    switch (node.what) {
        case NodeKind::Literal: return node.value;
        case NodeKind::Flag: return Value("-" + node.text);
        case NodeKind::Variable: return variable(node)->value;
        case NodeKind::Index: return element(node);
        case NodeKind::Member: {
            const Value vector = convert(child(0), {Type::Vector, false});
            return Value(vector.tuple().items[static_cast<std::size_t>(node.text[0] - 'x')]);
        }
        case NodeKind::Unary: return unary(node);
        case NodeKind::Step: return step(node);
        case NodeKind::Binary: {
            const Value left = child(0);
            return combine(node.text, left, child(1));
        }
        case NodeKind::And: return Value(truthOf(child(0)) && truthOf(child(1)) ? 1 : 0);
        case NodeKind::Or: return Value(truthOf(child(0)) || truthOf(child(1)) ? 1 : 0);
        case NodeKind::Choice: return child(truthOf(child(0)) ? 1 : 2);
        case NodeKind::Assign: return assignment(node);
        case NodeKind::Array: {
            std::vector<Value> items;
            for (const Node* item : node.children)
                items.push_back(evaluate(*item));
            return joined(items);
        }
        case NodeKind::Vector: {
            Value::Tuple tuple;
            for (const Node* item : node.children)
                tuple.items.push_back(numberOf(evaluate(*item)));
            return Value(std::move(tuple));
        }
        case NodeKind::Matrix: {
            Value::List rows;
            for (const Node* row : node.children)
                rows.push_back(evaluate(*row));
            return Value(std::move(rows));
        }
        case NodeKind::Cast: return convert(child(0), node.kind);
        case NodeKind::Command: return call(node);
        default: break;
    }
    throw Fault{"Syntax error", node.line, 0, {}};
}

Value Interpreter::unary(const Node& node) {
    const Value value = evaluate(*node.children[0]);
    if (node.text == "!")
        return Value(truthOf(value) ? 0 : 1);
    return node.text == "-" ? withSign(value) : value;
}

Value Interpreter::step(const Node& node) {
    const Value before = evaluate(*node.children[0]);
    const Value after = combine(node.text == "++" ? "+" : "-", before, Value(1));
    assign(*node.children[0], after);
    return node.prefix ? after : before;
}

Value Interpreter::element(const Node& node) {
    const Node& base = *node.children[0];
    const Value index = evaluate(*node.children[1]);
    if (base.what != NodeKind::Variable) {
        const Value array = evaluate(base);
        if (array.isTuple() && base.what == NodeKind::Index)
            return entryOf(array.tuple(), indexOf(index));
        if (!array.isList())
            throw Fault{"Only an array has elements.", node.line, 0, {}};
        const std::size_t at = indexOf(index);
        return at < array.list().size() ? array.list()[at] : defaultOf({kindOf(array).type, false});
    }
    const VariablePtr array = variable(base);
    if (!array->value.isList())
        throw Fault{"\"$" + base.text + "\" is not an array.", node.line, 0, {}};
    const std::size_t at = indexOf(index);
    if (array->kind.type == Type::Matrix && at >= array->value.list().size())
        throw Fault{"Matrix index out of bounds: " + textOf(index) + ".", node.line, 0, {}};
    return at < array->value.list().size() ? array->value.list()[at]
                                           : defaultOf({array->kind.type, false});
}

void Interpreter::assign(const Node& target, Value value) {
    if (target.what == NodeKind::Variable) {
        const VariablePtr known = findOrMake(target.text, kindOf(value));
        known->value =
            known->kind.type == Type::Matrix && !known->kind.array && !known->value.list().empty()
                ? fitMatrix(value, known->value)
                : convert(value, known->kind);
        return;
    }
    if (target.what == NodeKind::Index && target.children[0]->what == NodeKind::Index)
        return assignEntry(target, value);
    if (target.what != NodeKind::Index || target.children[0]->what != NodeKind::Variable)
        throw Fault{"Nothing can be assigned to this expression.", target.line, 0, {}};
    const std::size_t at = indexOf(evaluate(*target.children[1]));
    const VariablePtr known = findOrMake(target.children[0]->text, {kindOf(value).type, true});
    if (!known->value.isList() || known->kind.type == Type::Matrix)
        throw Fault{"\"$" + target.children[0]->text + "\" is not an array.", target.line, 0, {}};
    Value item = convert(value, {known->kind.type, false});
    Value::List& list = known->value.list();
    if (at >= list.size())
        list.resize(at + 1, defaultOf({known->kind.type, false}));
    list[at] = std::move(item);
}

// $matrix[row][column] = value
void Interpreter::assignEntry(const Node& target, const Value& value) {
    const Node& row = *target.children[0];
    const VariablePtr known = variable(*row.children[0]);
    if (known->kind.type != Type::Matrix)
        throw Fault{"\"$" + row.children[0]->text + "\" is not a matrix.", target.line, 0, {}};
    const std::size_t r = indexOf(evaluate(*row.children[1])),
                      c = indexOf(evaluate(*target.children[1]));
    Value::List& rows = known->value.list();
    if (r >= rows.size() || c >= rows[r].tuple().items.size())
        throw Fault{"Matrix index out of bounds.", target.line, 0, {}};
    Value::Tuple numbers = rows[r].tuple();
    numbers.items[c] = numberOf(value);
    rows[r] = Value(std::move(numbers));
}

Value Interpreter::assignment(const Node& node) {
    const Node& target = *node.children[0];
    Value value = evaluate(*node.children[1]);
    if (value.isNone())
        throw Fault{"The assigned expression has no value.", node.line, 0, {}};
    if (node.text != "=")
        value = combine(node.text.substr(0, node.text.size() - 1), evaluate(target), value);
    assign(target, std::move(value));
    return evaluate(target);
}

}  // namespace torvel::mel
