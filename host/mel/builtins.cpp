#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <unordered_map>

#include "graph/names.h"
#include "mel/interpreter.h"
#include "mel/pattern.h"
#include "mel/value.h"

namespace torvel::mel {

namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295769;

[[noreturn]] void wrongCount(const Node& call) {
    throw Fault{"Wrong number of arguments on call to " + call.text + ".", call.line, 0, {}};
}

std::vector<Value> arguments(Interpreter& in, const Node& call, std::size_t least,
                             std::size_t most) {
    if (call.children.size() < least || call.children.size() > most)
        wrongCount(call);
    std::vector<Value> values;
    for (const Node* child : call.children)
        values.push_back(in.evaluate(*child));
    return values;
}

Value::List listOf(const Value& value) {
    return value.isList() ? value.list() : Value::List{value};
}

// --- running and telling -------------------------------------------------------------------------

std::string joinedText(Interpreter& in, const Node& call) {
    std::string text;
    for (const Node* child : call.children)
        text += (text.empty() ? "" : " ") + textOf(in.evaluate(*child));
    return text;
}

Value runPrint(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 1, 1);
    in.session().output().write(textOf(values[0]));
    return Value();
}

Value runEval(Interpreter& in, const Node& call) {
    return in.run(joinedText(in, call));
}

Value runError(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 1, 4);
    throw Fault{textOf(values.back()), call.line, 0, {}};
}

Value runWarning(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 1, 4);
    in.session().log().write(
        Channel::Warning,
        "// Warning: line " + std::to_string(call.line) + ": " + textOf(values.back()), true);
    return Value();
}

Value runCatching(Interpreter& in, const Node& call, bool quiet) {
    if (call.children.size() != 1)
        wrongCount(call);
    try {
        in.evaluate(*call.children[0]);
        return Value(0);
    } catch (Fault& fault) {
        fault.line = fault.line ? fault.line : call.line;
        if (!quiet)
            in.printFault(fault);
        return Value(1);
    }
}

Value runCatch(Interpreter& in, const Node& call) {
    return runCatching(in, call, false);
}

Value runCatchQuick(Interpreter& in, const Node& call) {
    return runCatching(in, call, true);
}

Value runSource(Interpreter& in, const Node& call) {
    std::string path = joinedText(in, call);
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        path += ".mel";
        file.open(path, std::ios::binary);
    }
    if (!file)
        throw Fault{"Cannot find file \"" + joinedText(in, call) + "\" for source statement.",
                    call.line,
                    0,
                    {}};
    std::ostringstream text;
    text << file.rdbuf();
    return in.run(text.str(), path);
}

Value runEvalDeferred(Interpreter& in, const Node& call) {
    std::string text;
    for (const Node* child : call.children)
        if (child->what != NodeKind::Flag)
            text += (text.empty() ? "" : " ") + textOf(in.evaluate(*child));
    Session* session = &in.session();
    session->deferred()->add([session, text] {
        Value ignored;
        if (Session::current() == session && session->mel)
            ignore(session->mel->run(text, ignored));
    });
    return Value();
}

Value runExists(Interpreter& in, const Node& call) {
    const std::string name = textOf(arguments(in, call, 1, 1)[0]);
    const bool known = in.hasProcedure(name) || findBuiltin(name) ||
                       in.session().findCommand(name) || in.session().findPluginCommand(name);
    return Value(known ? 1 : 0);
}

Value runWhatIs(Interpreter& in, const Node& call) {
    const std::string name = textOf(arguments(in, call, 1, 1)[0]);
    if (in.hasProcedure(name))
        return Value("Mel procedure entered interactively.");
    const bool command =
        findBuiltin(name) || in.session().findCommand(name) || in.session().findPluginCommand(name);
    return Value(command ? "Command" : "Unknown");
}

Value runGetenv(Interpreter& in, const Node& call) {
    const char* text = std::getenv(textOf(arguments(in, call, 1, 1)[0]).c_str());
    return Value(text ? text : "");
}

// --- arrays --------------------------------------------------------------------------------------

Value runSize(Interpreter& in, const Node& call) {
    const Value value = arguments(in, call, 1, 1)[0];
    if (value.isList())
        return Value(static_cast<std::int64_t>(value.list().size()));
    return Value(static_cast<std::int64_t>(value.isString() ? value.string().size() : 1));
}

Value runClear(Interpreter& in, const Node& call) {
    if (call.children.size() != 1)
        wrongCount(call);
    const VariablePtr array = in.variable(*call.children[0]);
    if (!array->kind.array)
        throw Fault{"clear needs an array.", call.line, 0, {}};
    array->value = Value(Value::List());
    return Value();
}

bool less(const Value& a, const Value& b) {
    if (a.isString() && b.isString())
        return a.string() < b.string();
    return numberOf(a) < numberOf(b);
}

Value runSort(Interpreter& in, const Node& call) {
    Value::List items = listOf(arguments(in, call, 1, 1)[0]);
    std::stable_sort(items.begin(), items.end(), less);
    return Value(std::move(items));
}

Value runArrayToString(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    std::string text;
    bool first = true;
    for (const Value& item : listOf(values[0])) {
        text += (first ? "" : textOf(values[1])) + textOf(item);
        first = false;
    }
    return Value(text);
}

Value runArrayContains(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    for (const Value& item : listOf(values[1]))
        if (textOf(item) == textOf(values[0]))
            return Value(1);
    return Value(0);
}

Value runArrayRemove(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    const Value::List unwanted = listOf(values[0]);
    Value::List kept;
    for (const Value& item : listOf(values[1])) {
        const auto same = [&](const Value& other) { return textOf(other) == textOf(item); };
        if (std::none_of(unwanted.begin(), unwanted.end(), same))
            kept.push_back(item);
    }
    return Value(std::move(kept));
}

Value runArrayCatenate(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    Value::List items = listOf(values[0]);
    for (const Value& item : listOf(values[1]))
        items.push_back(item);
    return Value(std::move(items));
}

Value runAppendArray(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 3, 3);
    const VariablePtr array = in.variable(*call.children[0]);
    const Value::List more = listOf(values[1]);
    const auto count = std::min<std::size_t>(
        more.size(), static_cast<std::size_t>(std::max(0.0, numberOf(values[2]))));
    if (!array->kind.array)
        throw Fault{call.text + " needs an array.", call.line, 0, {}};
    for (std::size_t i = 0; i < count; ++i)
        array->value.list().push_back(convert(more[i], {array->kind.type, false}));
    return Value();
}

// --- texts ---------------------------------------------------------------------------------------

Value changedCase(Interpreter& in, const Node& call, char from, char to) {
    std::string text = textOf(arguments(in, call, 1, 1)[0]);
    for (char& c : text)
        if (c >= from && c <= from + 25)
            c = static_cast<char>(c - from + to);
    return Value(text);
}

Value runToUpper(Interpreter& in, const Node& call) {
    return changedCase(in, call, 'a', 'A');
}

Value runToLower(Interpreter& in, const Node& call) {
    return changedCase(in, call, 'A', 'a');
}

// Both positions count from 1 and are included.
Value runSubstring(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 3, 3);
    const std::string text = textOf(values[0]);
    const double first = std::max(1.0, numberOf(values[1]));
    const double last = std::min(static_cast<double>(text.size()), numberOf(values[2]));
    if (!(first <= last))
        return Value("");
    return Value(text.substr(static_cast<std::size_t>(first) - 1,
                             static_cast<std::size_t>(last - first) + 1));
}

Value runStrip(Interpreter& in, const Node& call) {
    const std::string text = textOf(arguments(in, call, 1, 1)[0]);
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return Value("");
    return Value(text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1));
}

Value runStartsWith(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    return Value(textOf(values[0]).rfind(textOf(values[1]), 0) == 0 ? 1 : 0);
}

Value runEndsWith(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    const std::string text = textOf(values[0]);
    const std::string tail = textOf(values[1]);
    const bool fits = text.size() >= tail.size();
    return Value(fits && text.compare(text.size() - tail.size(), tail.size(), tail) == 0 ? 1 : 0);
}

Value runGmatch(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    return Value(Names::matches(textOf(values[1]), textOf(values[0])) ? 1 : 0);
}

// Where a pattern is found first; false when it is not there.
bool findPattern(const Node& call, const std::string& pattern, const std::string& text,
                 std::size_t& begin, std::size_t& end) {
    Pattern compiled;
    if (!compiled.parse(pattern))
        throw Fault{
            "Invalid regular expression \"" + pattern.substr(0, 80) + "\".", call.line, 0, {}};
    const Pattern::Result result = compiled.find(text, begin, end);
    if (result == Pattern::Result::TooCostly)
        throw Fault{call.text + ": the text is too long for the pattern.", call.line, 0, {}};
    return result == Pattern::Result::Found;
}

Value runMatch(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    const std::string text = textOf(values[1]);
    std::size_t begin = 0, end = 0;
    const bool any = findPattern(call, textOf(values[0]), text, begin, end);
    return Value(any ? text.substr(begin, end - begin) : std::string());
}

// The first match only, taken as it stands.
Value runSubstitute(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 3, 3);
    const std::string text = textOf(values[1]);
    std::size_t begin = 0, end = 0;
    if (!findPattern(call, textOf(values[0]), text, begin, end))
        return Value(text);
    return Value(text.substr(0, begin) + textOf(values[2]) + text.substr(end));
}

std::vector<std::string> tokensOf(const std::string& text, const std::string& separators) {
    std::vector<std::string> parts;
    for (std::size_t at = text.find_first_not_of(separators); at != std::string::npos;) {
        const std::size_t end = text.find_first_of(separators, at);
        parts.push_back(text.substr(at, end - at));
        at = text.find_first_not_of(separators, end);
    }
    return parts;
}

// tokenize text [separators] $array: the number of parts.
Value runTokenize(Interpreter& in, const Node& call) {
    if (call.children.size() < 2 || call.children.size() > 3)
        wrongCount(call);
    const std::string text = textOf(in.evaluate(*call.children[0]));
    const std::string separators =
        call.children.size() == 3 ? textOf(in.evaluate(*call.children[1])) : " \t\n\r";
    const VariablePtr array = in.variable(*call.children.back());
    const std::vector<std::string> parts = tokensOf(text, separators);
    array->value = convert(Value::strings(parts), array->kind);
    return Value(static_cast<std::int64_t>(parts.size()));
}

Value runStringToArray(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    return Value::strings(tokensOf(textOf(values[0]), textOf(values[1])));
}

// --- numbers -------------------------------------------------------------------------------------

template <double (*F)(double)>
Value ofOne(Interpreter& in, const Node& call) {
    return Value(F(numberOf(arguments(in, call, 1, 1)[0])));
}

template <double (*F)(double, double)>
Value ofTwo(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    return Value(F(numberOf(values[0]), numberOf(values[1])));
}

double toRadians(double degrees) {
    return degrees * kRadiansPerDegree;
}
double toDegrees(double radians) {
    return radians / kRadiansPerDegree;
}
double signOf(double value) {
    return value < 0.0 ? -1.0 : value > 0.0 ? 1.0 : 0.0;
}

Value runAbs(Interpreter& in, const Node& call) {
    const Value value = arguments(in, call, 1, 1)[0];
    return value.isInt() ? wrapped(std::fabs(value.number())) : Value(std::fabs(numberOf(value)));
}

Value runMin(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    return numberOf(values[1]) < numberOf(values[0]) ? values[1] : values[0];
}

Value runMax(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    return numberOf(values[1]) > numberOf(values[0]) ? values[1] : values[0];
}

Value runClamp(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 3, 3);
    return Value(std::min(std::max(numberOf(values[2]), numberOf(values[0])), numberOf(values[1])));
}

Value runCross(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    return combine("^", convert(values[0], {Type::Vector, false}),
                   convert(values[1], {Type::Vector, false}));
}

Value runDot(Interpreter& in, const Node& call) {
    const std::vector<Value> values = arguments(in, call, 2, 2);
    return combine("*", convert(values[0], {Type::Vector, false}),
                   convert(values[1], {Type::Vector, false}));
}

Value runUnit(Interpreter& in, const Node& call) {
    const Value vector = convert(arguments(in, call, 1, 1)[0], {Type::Vector, false});
    const double length = numberOf(vector);
    return length == 0.0 ? vector : combine("/", vector, Value(length));
}

const std::unordered_map<std::string, Builtin>& table() {
    static const std::unordered_map<std::string, Builtin> rows = {
        {"print", runPrint},
        {"eval", runEval},
        {"error", runError},
        {"warning", runWarning},
        {"catch", runCatch},
        {"catchQuick", runCatchQuick},
        {"source", runSource},
        {"evalDeferred", runEvalDeferred},
        {"exists", runExists},
        {"whatIs", runWhatIs},
        {"getenv", runGetenv},
        {"size", runSize},
        {"clear", runClear},
        {"sort", runSort},
        {"stringArrayToString", runArrayToString},
        {"stringArrayContains", runArrayContains},
        {"stringArrayRemove", runArrayRemove},
        {"stringArrayCatenate", runArrayCatenate},
        {"appendStringArray", runAppendArray},
        {"toupper", runToUpper},
        {"tolower", runToLower},
        {"substring", runSubstring},
        {"strip", runStrip},
        {"startsWith", runStartsWith},
        {"endsWith", runEndsWith},
        {"gmatch", runGmatch},
        {"match", runMatch},
        {"substitute", runSubstitute},
        {"tokenize", runTokenize},
        {"stringToStringArray", runStringToArray},
        {"abs", runAbs},
        {"min", runMin},
        {"max", runMax},
        {"clamp", runClamp},
        {"cross", runCross},
        {"dot", runDot},
        {"unit", runUnit},
        {"floor", ofOne<std::floor>},
        {"ceil", ofOne<std::ceil>},
        {"trunc", ofOne<std::trunc>},
        {"sqrt", ofOne<std::sqrt>},
        {"sin", ofOne<std::sin>},
        {"cos", ofOne<std::cos>},
        {"tan", ofOne<std::tan>},
        {"asin", ofOne<std::asin>},
        {"acos", ofOne<std::acos>},
        {"atan", ofOne<std::atan>},
        {"exp", ofOne<std::exp>},
        {"log", ofOne<std::log>},
        {"log10", ofOne<std::log10>},
        {"sign", ofOne<signOf>},
        {"mag", [](Interpreter& in,
                   const Node& call) { return Value(numberOf(arguments(in, call, 1, 1)[0])); }},
        {"deg_to_rad", ofOne<toRadians>},
        {"rad_to_deg", ofOne<toDegrees>},
        {"pow", ofTwo<std::pow>},
        {"atan2", ofTwo<std::atan2>},
        {"fmod", ofTwo<std::fmod>},
        {"hypot", ofTwo<std::hypot>}};
    return rows;
}

}  // namespace

Builtin findBuiltin(const std::string& name) {
    const auto found = table().find(name);
    return found == table().end() ? nullptr : found->second;
}

}  // namespace torvel::mel
