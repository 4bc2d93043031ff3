#include "commands/attribute/value.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "base/number_source.h"
#include "graph/data.h"

namespace torvel {

double uiScale(const AttrInfo& info) {
    return info.type == AttrType::Angle ? kRadToDeg : 1.0;
}

Value numberValue(const AttrInfo& info, double internal) {
    switch (info.type) {
        case AttrType::Bool: return Value(internal != 0.0);
        case AttrType::Byte:
        case AttrType::Short:
        case AttrType::Long:
        case AttrType::Enum: return Value(static_cast<std::int64_t>(internal));
        case AttrType::Angle: return Value(internal * kRadToDeg);
        default: return Value(internal);
    }
}

Plug fastPlug(const Scene& scene, std::string_view text) {
    const std::size_t dot = text.find('.');
    if (dot == std::string_view::npos)
        return {};
    const NodeHandle node = scene.names().lookUp(text.substr(0, dot));
    if (node.isNull())
        return {};
    text.remove_prefix(dot + 1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
        text.remove_suffix(1);
    return scene.findPlug(node, text);
}

namespace {

bool allNumbersBelow(const Scene& scene, const Plug& plug) {
    const AttrInfo& info = scene.info(plug);
    for (std::size_t i = 0; i < info.children.size(); ++i) {
        const Plug child = scene.child(plug, static_cast<int>(i));
        const AttrInfo& below = scene.info(child);
        if (below.isArray() || (!isNumeric(below.type) && !isCompound(below.type)) ||
            (isCompound(below.type) && !allNumbersBelow(scene, child)))
            return false;
    }
    return !info.children.empty();
}

Value matrixValue(const M44d& m) {
    Value::List items;
    items.reserve(16);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            items.emplace_back(m[row][column]);
    return Value(std::move(items));
}

Value tuplesOf(const std::vector<double>& numbers, std::size_t width) {
    Value::List items;
    for (std::size_t at = 0; at + width <= numbers.size(); at += width) {
        const auto first = numbers.begin() + static_cast<std::ptrdiff_t>(at);
        items.emplace_back(
            Value::Tuple{std::vector<double>(first, first + static_cast<std::ptrdiff_t>(width))});
    }
    return Value(std::move(items));
}

Value integersOf(const std::vector<std::int32_t>& numbers) {
    Value::List items;
    for (std::int32_t number : numbers)
        items.emplace_back(static_cast<std::int64_t>(number));
    return Value(std::move(items));
}

Value::Tuple tupleOf(const Scene& scene, const Plug& plug) {
    Value::Tuple tuple;
    for (const Plug& leaf : numericLeaves(scene, plug))
        tuple.items.push_back(scene.number(leaf) * uiScale(scene.info(leaf)));
    return tuple;
}

Value enumText(const AttrInfo& info, double value) {
    int number = 0;
    for (const std::string& entry : info.enumNames) {
        const std::size_t equals = entry.find('=');
        if (equals != std::string::npos)
            number = std::atoi(entry.c_str() + equals + 1);
        if (number == static_cast<int>(value))
            return Value(entry.substr(0, equals));
        ++number;
    }
    return Value(textOfDouble(value));
}

Status readData(const CommandCall& call, const Plug& plug, Value& out) {
    const Scene& scene = call.scene();
    const PayloadPtr data = scene.data(plug);
    const AttrType type = scene.info(plug).type;
    if (type == AttrType::Message)
        return call.fail("Message attributes have no data values.");
    if (!data) {
        if (type == AttrType::IntArray || type == AttrType::DoubleArray ||
            type == AttrType::VectorArray || type == AttrType::PointArray ||
            type == AttrType::StringArray || type == AttrType::ComponentList)
            out = Value(Value::List());
        return Status::ok();
    }
    if (const auto* ints = dynamic_cast<const IntArrayData*>(data.get()))
        out = integersOf(ints->items);
    else if (const auto* doubles = dynamic_cast<const DoubleArrayData*>(data.get()))
        out = type == AttrType::VectorArray  ? tuplesOf(doubles->items, 3)
              : type == AttrType::PointArray ? tuplesOf(doubles->items, 4)
                                             : Value::doubles(doubles->items);
    else if (const auto* texts = dynamic_cast<const StringArrayData*>(data.get()))
        out = Value::strings(texts->items);
    else if (const auto* components = dynamic_cast<const ComponentListData*>(data.get()))
        out = Value::strings(components->items);
    else
        return call.fail("The data of '" + scene.plugName(plug) + "' cannot be shown as a value.");
    return Status::ok();
}

Status readArray(const CommandCall& call, const Plug& plug, Value& out) {
    const Scene& scene = call.scene();
    const AttrInfo& info = scene.info(plug);
    if (info.type ==
        AttrType::Matrix)  // a matrix array without an index stands for its first element
        return readValue(call, scene.element(plug, 0), false, out);
    const bool tuples = isCompound(info.type) && allNumbersBelow(scene, plug);
    if (!isNumeric(info.type) && !tuples)
        return call.fail("'" + scene.plugName(plug) + "' is an array and needs an index.");
    Value::List items;
    for (std::size_t i = 0; i < scene.elementCount(plug); ++i) {
        const Plug element = scene.elementAt(plug, i);
        items.push_back(tuples ? Value(tupleOf(scene, element))
                               : numberValue(info, scene.number(element)));
    }
    out = Value(std::move(items));
    return Status::ok();
}

}  // namespace

Status readValue(const CommandCall& call, const Plug& plug, bool enumAsText, Value& out) {
    const Scene& scene = call.scene();
    const AttrInfo& info = scene.info(plug);
    if (info.isArray() && scene.isArrayPlug(plug))
        return readArray(call, plug, out);
    if (isNumeric(info.type)) {
        const double number = scene.number(plug);
        out = enumAsText && info.type == AttrType::Enum ? enumText(info, number)
                                                        : numberValue(info, number);
        return Status::ok();
    }
    if (info.type == AttrType::String) {
        if (scene.data(plug))
            out = Value(scene.text(plug));
        return Status::ok();
    }
    if (info.type == AttrType::Matrix) {
        out = matrixValue(scene.matrix(plug));
        return Status::ok();
    }
    if (!isCompound(info.type))
        return readData(call, plug, out);
    if (!allNumbersBelow(scene, plug))
        return call.fail("The children of '" + scene.plugName(plug) +
                         "' are not all numbers; name one of them.");
    out = Value(Value::List{Value(tupleOf(scene, plug))});
    return Status::ok();
}

namespace {

// Numbers, texts of numbers and the words for on and off.
bool scriptNumber(const Value& value, double& out) {
    out = value.number();
    if (!value.isString())
        return value.isNumber();
    const std::string& text = value.string();
    if (text == "on" || text == "yes" || text == "true" || text == "off" || text == "no" ||
        text == "false") {
        out = text == "on" || text == "yes" || text == "true";
        return true;
    }
    NumberSource source(text);
    return source.number(out) && source.atEnd();
}

// Script value to the stored one; a value outside the range is refused or, when asked, clamped.
namespace {

struct Limits {
    double low, high;
};

constexpr Limits kWholeNumbers{-2147483648.0, 2147483647.0};

bool isWhole(AttrType type) {
    return type == AttrType::Byte || type == AttrType::Short || type == AttrType::Long ||
           type == AttrType::Enum;
}

// An added enum takes the numbers between its first and its last entry.
Limits limitsOf(const AttrInfo& info) {
    if (info.type != AttrType::Enum || !info.is(kDynamic) || info.enumNames.empty())
        return isWhole(info.type) ? Limits{std::max(info.minimum, kWholeNumbers.low),
                                           std::min(info.maximum, kWholeNumbers.high)}
                                  : Limits{info.minimum, info.maximum};
    Limits limits{1e300, -1e300};
    int number = 0;
    for (const std::string& entry : info.enumNames) {
        const std::size_t equals = entry.find('=');
        if (equals != std::string::npos)
            number = std::atoi(entry.c_str() + equals + 1);
        limits.low = std::min(limits.low, static_cast<double>(number));
        limits.high = std::max(limits.high, static_cast<double>(number));
        ++number;
    }
    return limits;
}

}  // namespace

Status internalNumber(const CommandCall& call, const Plug& plug, const Value& value, bool clamp,
                      double& out) {
    const AttrInfo& info = call.scene().info(plug);
    if (!scriptNumber(value, out))
        return call.fail("The attribute '" + call.scene().plugName(plug) + "' needs a number.");
    if (info.type == AttrType::Angle)
        out *= kDegToRad;
    if (info.type == AttrType::Bool)
        out = out != 0.0;
    if (!std::isfinite(out))
        return call.fail("The attribute '" + call.scene().plugName(plug) +
                         "' takes finite numbers only.");
    const Limits limits = limitsOf(info);
    if (out >= limits.low && out <= limits.high)
        return Status::ok();
    const bool high = out > limits.high;
    const double limit = high ? limits.high : limits.low;
    if (!clamp)
        return call.fail("Cannot set the attribute '" + call.scene().plugName(plug) +
                         "' past its " + (high ? "maximum" : "minimum") + " value of " +
                         textOfDouble(limit * uiScale(info)) + ".");
    out = limit;
    return Status::ok();
}

Status writeNumbers(const CommandCall& call, const Plug& plug, const Value* values,
                    std::size_t count, bool clamp) {
    Scene& scene = call.scene();
    double number = 0.0;
    if (isNumeric(scene.info(plug).type)) {
        if (count != 1)
            return call.fail("The attribute '" + scene.plugName(plug) + "' takes one value.");
        const Status fits = internalNumber(call, plug, values[0], clamp, number);
        if (fits)
            scene.setNumber(plug, number);
        return fits;
    }
    const std::vector<Plug> leaves = numericLeaves(scene, plug);
    if (leaves.empty() || leaves.size() != count)
        return call.fail("Error reading data element number " + std::to_string(count + 1) + ": '" +
                         scene.plugName(plug) + "' takes " + std::to_string(leaves.size()) +
                         " numbers.");
    std::vector<double> numbers(count);
    for (std::size_t i = 0; i < count; ++i)
        if (Status fits = internalNumber(call, leaves[i], values[i], clamp, numbers[i]); !fits)
            return fits;
    for (std::size_t i = 0; i < count; ++i)
        scene.setNumber(leaves[i], numbers[i]);
    return Status::ok();
}

Status writeMatrix(const CommandCall& call, const Plug& plug, const Value* values,
                   std::size_t count) {
    Scene& scene = call.scene();
    if (count != 16 || scene.info(plug).type != AttrType::Matrix)
        return call.fail("The attribute '" + scene.plugName(plug) + "' does not take a matrix of " +
                         std::to_string(count) + " numbers.");
    M44d m;
    for (int i = 0; i < 16; ++i)
        m[i / 4][i % 4] = values[i].number();
    scene.setMatrix(plug, m);
    return Status::ok();
}

// Array values come with or without their count in front.
void dropCount(const Value*& values, std::size_t& count, std::size_t width) {
    if (count > 0 && values[0].isInt() &&
        static_cast<std::size_t>(values[0].integer()) * width == count - 1) {
        ++values;
        --count;
    }
}

Status writeArray(const CommandCall& call, const Plug& plug, AttrType type, const Value* values,
                  std::size_t count) {
    Scene& scene = call.scene();
    if (scene.info(plug).type != type)
        return call.fail("The attribute '" + scene.plugName(plug) + "' is of another type.");
    dropCount(values, count,
              type == AttrType::VectorArray  ? 3
              : type == AttrType::PointArray ? 4
                                             : 1);
    const auto store = [&](auto data, auto&& convert) {
        for (std::size_t i = 0; i < count; ++i)
            data->items.push_back(convert(values[i]));
        scene.setData(plug, std::move(data));
    };
    const auto toText = [](const Value& v) {
        return v.isString() ? v.string() : textOfDouble(v.number());
    };
    if (type == AttrType::IntArray)
        store(std::make_shared<IntArrayData>(),
              [](const Value& v) { return static_cast<std::int32_t>(v.integer()); });
    else if (type == AttrType::StringArray)
        store(std::make_shared<StringArrayData>(), toText);
    else if (type == AttrType::ComponentList)
        store(std::make_shared<ComponentListData>(), toText);
    else
        store(std::make_shared<DoubleArrayData>(), [](const Value& v) { return v.number(); });
    return Status::ok();
}

Status writeTyped(const CommandCall& call, const Plug& plug, const Value* values, std::size_t count,
                  const WriteOptions& options) {
    Scene& scene = call.scene();
    AttrType type = AttrType::Double;
    const bool known = options.type == "Int32Array" || attrTypeFromName(options.type, type);
    if (options.type == "Int32Array")
        type = AttrType::IntArray;
    if (!known)
        return call.fail("Data type '" + options.type + "' is not known.");
    if (isNumeric(type) || isCompound(type))
        return writeNumbers(call, plug, values, count, options.clamp);
    switch (type) {
        case AttrType::String:
            if (count != 1 || !values[0].isString() || scene.info(plug).type != AttrType::String)
                return call.fail("The attribute '" + scene.plugName(plug) +
                                 "' does not take this text.");
            scene.setText(plug, values[0].string());
            return Status::ok();
        case AttrType::Matrix: return writeMatrix(call, plug, values, count);
        case AttrType::IntArray:
        case AttrType::DoubleArray:
        case AttrType::VectorArray:
        case AttrType::PointArray:
        case AttrType::StringArray:
        case AttrType::ComponentList: return writeArray(call, plug, type, values, count);
        default:
            return call.fail("Values of type '" + options.type + "' cannot be given to a command.");
    }
}

}  // namespace

Status writeValue(const CommandCall& call, const Plug& plug, const Value* values, std::size_t count,
                  const WriteOptions& options) {
    if (!options.type.empty())
        return writeTyped(call, plug, values, count, options);
    const AttrInfo& info = call.scene().info(plug);
    if (isNumeric(info.type) || isCompound(info.type))
        return writeNumbers(call, plug, values, count, options.clamp);
    if (info.type == AttrType::Matrix && count == 16)
        return writeMatrix(call, plug, values, count);
    return call.fail("'" + call.scene().plugName(plug) +
                     "' is not a numeric attribute; it needs -type \"" + attrTypeName(info.type) +
                     "\".");
}

}  // namespace torvel
