#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <utility>

#include "base/units.h"
#include "script/command.h"
#include "script/session.h"
#include "base/number_text.h"

namespace torvel {

namespace {

bool readPlain(const std::string& text, double& value) {
    return readMeasure(text, Measure::Number, value);
}

bool hasStar(const FlagRow& row) {
    const std::size_t length = std::strlen(row.args);
    return length > 0 && row.args[length - 1] == '*';
}

std::size_t letterCount(const FlagRow& row) {
    return std::strlen(row.args) - (hasStar(row) ? 1 : 0);
}

bool isSwitch(const FlagRow& row) {
    return row.args[0] == '\0';
}

const FlagRow* findRow(const Command& command, std::string_view name) {
    for (std::size_t i = 0; i < command.flagCount; ++i)
        if (name == command.flags[i].longName || name == command.flags[i].shortName)
            return &command.flags[i];
    return nullptr;
}

const char* letterName(char letter) {
    switch (letter) {
        case 's': return "string";
        case 'i': return "int";
        case 'd': return "float";
        case 'a': return "angle";
        case 'l': return "distance";
        case 'b': return "bool";
        case 't': return "time";
        default: return "any value";
    }
}

std::string typeName(const Value& value) {
    if (value.isBool())
        return "bool";
    if (value.isInt())
        return "int";
    if (value.isDouble())
        return "float";
    if (value.isString())
        return "string";
    return value.isNone() ? "None" : "list";
}

std::string expectedTypes(const FlagRow& row) {
    const std::size_t count = letterCount(row);
    if (count == 1)
        return hasStar(row) ? std::string("[ ") + letterName(row.args[0]) + ", ... ]"
                            : letterName(row.args[0]);
    std::string text = "( ";
    for (std::size_t i = 0; i < count; ++i)
        text += std::string(i ? ", " : "") + letterName(row.args[i]);
    return text + " )";
}

std::string givenTypes(const std::vector<Value>& values) {
    if (values.size() == 1 && !values[0].isList())
        return typeName(values[0]);
    std::string text = "[ ";
    for (std::size_t i = 0; i < values.size(); ++i)
        text += (i ? ", " : "") + typeName(values[i]);
    return text + (values.empty() ? "]" : " ]");
}

Status wrongArguments(const RawFlag& raw, const FlagRow& row, const std::vector<Value>& values) {
    return Status::usage("Invalid arguments for flag '" + raw.name + "'.  Expected " +
                         expectedTypes(row) + ", got " + givenTypes(values));
}

Status invalidFlag(const RawFlag& raw) {
    return Status::usage(raw.fromPython ? "Invalid flag '" + raw.name + "'"
                                        : "Invalid flag '-" + raw.name + "'.");
}

Status needsBool(const RawFlag& raw, bool query) {
    return Status::usage("Flag '" + raw.name + "' must be passed a boolean argument" +
                         (query ? " when query flag is set" : ""));
}

std::string textOfNumber(const Value& value) {
    if (!value.isDouble())
        return std::to_string(value.integer());
    return numberText(value.number(), 10);
}

bool takeText(Value& value, bool strict) {
    if (value.isString())
        return true;
    if (strict || !value.isNumber())
        return false;
    value = Value(textOfNumber(value));
    return true;
}

bool takeInteger(Value& value, bool strict) {
    double number = value.number();
    if (value.isString() ? strict || !readPlain(value.string(), number) : !value.isNumber())
        return false;
    if (value.isDouble() && strict)
        return false;
    if (!(number > -9.2e18 && number < 9.2e18))
        return false;
    value = Value(static_cast<std::int64_t>(number));
    return true;
}

bool takeBool(Value& value) {
    if (value.isNumber()) {
        value = Value(value.number() != 0.0);
        return true;
    }
    if (!value.isString())
        return false;
    const std::string& text = value.string();
    const bool on = text == "on" || text == "true" || text == "yes" || text == "1";
    if (!on && text != "off" && text != "false" && text != "no" && text != "0")
        return false;
    value = Value(on);
    return true;
}

bool takeMeasure(Value& value, Measure kind) {
    double number = value.number();
    if (value.isString() ? !readMeasure(value.string(), kind, number) : !value.isNumber())
        return false;
    value = Value(number);
    return true;
}

bool takeNumber(Value& value, bool strict) {
    double number = value.number();
    if (value.isString() ? strict || !readPlain(value.string(), number) : !value.isNumber())
        return false;
    value = Value(number);
    return true;
}

// Brings a value into the shape that the letter asks for. Python is strict about texts and floats,
// MEL converts.
bool takeAs(char letter, Value& value, bool strict) {
    switch (letter) {
        case 's': return takeText(value, strict);
        case 'i': return takeInteger(value, strict);
        case 'd': return takeNumber(value, strict);
        case 'a': return takeMeasure(value, Measure::Angle);
        case 'l': return takeMeasure(value, Measure::Length);
        case 'b': return takeBool(value);
        case 't': return value.isNumber() || value.isString();
        default: return true;
    }
}

// One use of a flag: the count and each type.
bool takeAll(const FlagRow& row, std::vector<Value>& values, bool strict) {
    const std::size_t letters = letterCount(row);
    const bool star = hasStar(row);
    if (star ? values.size() + 1 < letters : values.size() != letters)
        return false;
    for (std::size_t i = 0; i < values.size(); ++i)
        if (!takeAs(row.args[i < letters ? i : letters - 1], values[i], strict))
            return false;
    return true;
}

Status addUse(const RawFlag& raw, const FlagRow& row, std::vector<Value> values,
              CommandCall& call) {
    FlagUse use;
    use.row = &row;
    use.values = std::move(values);
    if (!takeAll(row, use.values, raw.fromPython)) {
        return wrongArguments(raw, row, use.values);
    }
    call.m_flags.push_back(std::move(use));
    return Status::ok();
}

// A list for a flag that may stand several times: one use for each item, unless it is one use's
// values in a row.
Status addMany(const RawFlag& raw, const FlagRow& row, const Value::List& items,
               CommandCall& call) {
    const bool nested = !items.empty() && items[0].isList();
    if (!nested && (letterCount(row) > 1 || hasStar(row)))
        return addUse(raw, row, items, call);
    for (const Value& item : items) {
        const Status added = item.isList() && row.args[0] != '?'
                                 ? addUse(raw, row, item.list(), call)
                                 : addUse(raw, row, {item}, call);
        if (!added)
            return added;
    }
    return Status::ok();
}

Status addPythonValue(const RawFlag& raw, const FlagRow& row, CommandCall& call) {
    const Value& value = raw.values[0];
    if (!value.isList() ||
        (letterCount(row) == 1 && row.args[0] == '?' && !row.multiUse && !hasStar(row)))
        return addUse(raw, row, {value}, call);
    return row.multiUse ? addMany(raw, row, value.list(), call)
                        : addUse(raw, row, value.list(), call);
}

Status addSwitch(const RawFlag& raw, const FlagRow& row, CommandCall& call) {
    if (!raw.fromPython && !raw.values.empty())
        return wrongArguments(raw, row, raw.values);
    if (raw.fromPython && !raw.values[0].isBool() && !raw.values[0].isInt())
        return needsBool(raw, false);
    if (raw.fromPython && !raw.values[0].truth())
        return Status::ok();
    FlagUse use;
    use.row = &row;
    call.m_flags.push_back(std::move(use));
    return Status::ok();
}

// In query mode a flag stands alone (True from Python) unless it needs its value there, too.
Status addQueried(const RawFlag& raw, const FlagRow& row, CommandCall& call) {
    const bool plain = raw.values.empty() || raw.values[0].isBool() || raw.values[0].isInt();
    if (!plain)
        return needsBool(raw, true);
    if (!raw.values.empty() && !raw.values[0].truth())
        return Status::ok();
    FlagUse use;
    use.row = &row;
    call.m_flags.push_back(std::move(use));
    return Status::ok();
}

bool wantsValueInQuery(const RawFlag& raw, const FlagRow& row) {
    return row.queryTakesValue && !raw.values.empty() &&
           !(raw.values[0].isBool() && row.args[0] != 'b');
}

Status checkUse(const RawFlag& raw, const FlagRow& row, const CommandCall& call) {
    if ((row.modes & call.m_mode) == 0) {
        const char* mode = call.isQuery() ? "query" : call.isEdit() ? "edit" : "create";
        return Status::usage("Flag '" + raw.name + "' cannot be used in " + mode + " mode.");
    }
    if (!raw.fromPython)
        return Status::ok();
    for (const FlagUse& use : call.m_flags)
        if (use.row == &row)
            return Status::usage("Flag '" + std::string(row.longName) +
                                 "' is given by its long and its short name.");
    return Status::ok();
}

Status addFlag(const Command& command, const RawFlag& raw, CommandCall& call) {
    const FlagRow* row = findRow(command, raw.name);
    if (!row)
        return invalidFlag(raw);
    if (raw.fromPython && raw.values.empty())
        return wrongArguments(raw, *row, raw.values);
    if (const Status usable = checkUse(raw, *row, call); !usable)
        return usable;
    if (isSwitch(*row))
        return addSwitch(raw, *row, call);
    if (call.isQuery() && !wantsValueInQuery(raw, *row))
        return addQueried(raw, *row, call);
    return raw.fromPython ? addPythonValue(raw, *row, call) : addUse(raw, *row, raw.values, call);
}

Status readMode(const Command& command, const RawFlag& raw, CommandCall& call) {
    const Mode mode = modeOfFlag(command, raw.name);
    if (mode == kCreate)
        return Status::ok();
    if (raw.fromPython &&
        (raw.values.empty() || !(raw.values[0].isBool() || raw.values[0].isInt())))
        return needsBool(raw, false);
    if (raw.fromPython && !raw.values[0].truth())
        return Status::ok();
    if (call.m_mode != kCreate && call.m_mode != mode)
        return Status::usage("The edit and the query flag cannot be used together.");
    call.m_mode = mode;
    return Status::ok();
}

// A flat list is the usual case and is moved as a whole.
bool isFlat(const std::vector<Value>& args) {
    for (const Value& value : args)
        if (value.isNone() || value.isList() || value.isBool() || value.isTuple())
            return false;
    return true;
}

Status flatten(const Value& value, int depth, std::vector<Value>& out) {
    if (value.isNone())
        return Status::ok();
    if (value.isTuple()) {
        out.insert(out.end(), value.tuple().items.begin(), value.tuple().items.end());
        return Status::ok();
    }
    if (!value.isList()) {
        out.push_back(value.isBool() ? Value(value.integer()) : value);
        return Status::ok();
    }
    if (value.list().empty())
        return Status::usage("Invalid argument: an empty list.");
    if (depth > 100)
        return Status::usage("Invalid argument: lists nested too deeply.");
    for (const Value& item : value.list())
        if (const Status done = flatten(item, depth + 1, out); !done)
            return done;
    return Status::ok();
}

Status takePositional(std::vector<Value> args, CommandCall& call) {
    if (isFlat(args)) {
        call.m_args = std::move(args);
        return Status::ok();
    }
    for (const Value& value : args)
        if (const Status done = flatten(value, 0, call.m_args); !done)
            return done;
    return Status::ok();
}

Status noMatch(std::string_view text) {
    return Status::notFound("No object matches name: " + std::string(text));
}

}  // namespace

namespace {

// Texts end at their first zero byte in names, in files and in the real program.
bool hasZeroByte(const Value& value) {
    if (value.isString())
        return value.string().find('\0') != std::string::npos;
    return value.isList() && std::any_of(value.list().begin(), value.list().end(), hasZeroByte);
}

bool haveZeroByte(const std::vector<Value>& values) {
    return std::any_of(values.begin(), values.end(), hasZeroByte);
}

}  // namespace

Mode modeOfFlag(const Command& command, std::string_view flag) {
    const bool query = flag == "q" || flag == "query";
    const bool edit = flag == "e" || flag == "edit";
    if ((!query && !edit) || findRow(command, flag))
        return kCreate;
    return query ? kQuery : kEdit;
}

Status parseCall(const Command& command, const std::vector<RawFlag>& flags, std::vector<Value> args,
                 CommandCall& call) {
    if (haveZeroByte(args) || std::any_of(flags.begin(), flags.end(), [](const RawFlag& raw) {
            return haveZeroByte(raw.values);
        }))
        return call.fail("A text cannot hold a zero byte.");
    for (const RawFlag& raw : flags)
        if (const Status done = readMode(command, raw, call); !done)
            return done;
    call.m_flags.reserve(flags.size());
    for (const RawFlag& raw : flags) {
        if (modeOfFlag(command, raw.name) != kCreate)
            continue;
        if (const Status done = addFlag(command, raw, call); !done)
            return done;
    }
    return takePositional(std::move(args), call);
}

int melArgumentCount(const Command& command, std::string_view flag, bool query) {
    const FlagRow* row = findRow(command, flag);
    if (!row)
        return modeOfFlag(command, flag) != kCreate ? 0 : -1;
    if (isSwitch(*row) || (query && !row->queryTakesValue))
        return 0;
    return hasStar(*row) ? std::numeric_limits<int>::max() : static_cast<int>(letterCount(*row));
}

Scene& CommandCall::scene() const {
    return m_session.scene();
}

const FlagUse* CommandCall::use(std::string_view longName) const {
    for (std::size_t i = m_flags.size(); i-- > 0;)
        if (longName == m_flags[i].row->longName)
            return &m_flags[i];
    return nullptr;
}

std::vector<const FlagUse*> CommandCall::uses(std::string_view longName) const {
    std::vector<const FlagUse*> found;
    for (const FlagUse& flag : m_flags)
        if (longName == flag.row->longName)
            found.push_back(&flag);
    return found;
}

std::string CommandCall::text(std::string_view longName, std::string fallback) const {
    const FlagUse* found = use(longName);
    if (!found || found->values.empty())
        return fallback;
    const Value& value = found->values[0];
    if (value.isString())
        return value.string();
    return value.isNumber() ? textOfNumber(value) : fallback;
}

double CommandCall::number(std::string_view longName, double fallback, std::size_t at) const {
    const FlagUse* found = use(longName);
    if (!found || at >= found->values.size())
        return fallback;
    const Value& value = found->values[at];
    double number = value.number();
    if (value.isString() && !readPlain(value.string(), number))
        return fallback;
    return number;
}

int CommandCall::integer(std::string_view longName, int fallback) const {
    const double value = number(longName, fallback);
    if (!(value > -2147483648.5 && value < 2147483647.5))
        return fallback;
    return static_cast<int>(value);
}

bool CommandCall::flag(std::string_view longName, bool fallback) const {
    const FlagUse* found = use(longName);
    if (!found)
        return fallback;
    return found->values.empty() ? found->on : found->values[0].truth();
}

std::vector<std::string> CommandCall::texts() const {
    std::vector<std::string> texts;
    texts.reserve(m_args.size());
    for (const Value& value : m_args)
        texts.push_back(value.isString() ? value.string() : textOfNumber(value));
    return texts;
}

Status CommandCall::objectsOrSelection(std::vector<NodeHandle>& out) const {
    if (!m_args.empty())
        return objects(out);
    out = scene().selection().nodes();
    return Status::ok();
}

Status CommandCall::objects(std::vector<NodeHandle>& out) const {
    const Names& names = scene().names();
    for (const std::string& text : texts()) {
        if (names.isPattern(text)) {
            const std::vector<NodeHandle> found = names.find(Names::trimmed(text));
            if (found.empty())
                return noMatch(text);
            out.insert(out.end(), found.begin(), found.end());
            continue;
        }
        NodeHandle node;
        if (const Status done = resolve(text, node); !done)
            return done;
        out.push_back(node);
    }
    return Status::ok();
}

Status CommandCall::resolve(const std::string& text, NodeHandle& out) const {
    const Names& names = scene().names();
    const std::string_view name = Names::trimmed(text);
    out = names.lookUp(name);
    return out.isNull() ? names.findOne(name, out) : Status::ok();
}

Status CommandCall::resolvePlug(const std::string& text, Plug& out) const {
    const std::string_view whole = Names::trimmed(text);
    const std::size_t dot = whole.find('.');
    if (dot == std::string_view::npos || dot == 0)
        return noMatch(whole);
    const Names& names = scene().names();
    NodeHandle node = names.lookUp(whole.substr(0, dot));
    if (node.isNull() && names.find(whole.substr(0, dot)).size() > 1)
        return Status::notFound("More than one object matches name: " + std::string(whole));
    if (!node.isNull())
        out = scene().findPlug(node, whole.substr(dot + 1));
    return node.isNull() || out.isNull() ? noMatch(whole) : Status::ok();
}

Status CommandCall::fail(const std::string& text) const {
    return Status::failure(m_name + ": " + text);
}

}  // namespace torvel
