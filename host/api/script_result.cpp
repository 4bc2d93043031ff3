#include "api/script_result.h"

#include <charconv>
#include <cmath>

namespace torvel::api {

namespace {

/// Shortest text that reads back as the same number, with a point as Python shows it.
std::string pythonDouble(double value) {
    char buffer[40];
    const auto end = std::to_chars(buffer, buffer + sizeof(buffer), value).ptr;
    std::string text(buffer, end);
    const bool plain = text.find_first_of(".en") == std::string::npos;
    return plain ? text + ".0" : text;
}

std::string quoted(const std::string& text) {
    const char quote =
        text.find('\'') != std::string::npos && text.find('"') == std::string::npos ? '"' : '\'';
    std::string out(1, quote);
    for (const char c : text) {
        if (c == quote || c == '\\')
            out += '\\';
        out += c == '\n' ? std::string("\\n") : std::string(1, c);
    }
    return out + quote;
}

std::string scalarText(const Value& value, ScriptLanguage language) {
    if (value.isString())
        return value.string();
    if (value.isBool() && language == ScriptLanguage::Python)
        return value.truth() ? "True" : "False";
    if (value.isDouble())
        return language == ScriptLanguage::Python ? pythonDouble(value.number())
                                                  : textOfDouble(value.number());
    return std::to_string(value.integer());
}

std::string listText(const Value::List& list, ScriptLanguage language) {
    const bool python = language == ScriptLanguage::Python;
    std::string text;
    for (const Value& item : list) {
        if (!text.empty())
            text += python ? ", " : " ";
        if (python)
            text += item.isString() ? quoted(item.string())
                    : item.isNone() ? "None"
                                    : shown(item, language);
        else
            text += shown(item, language);
    }
    return python ? "[" + text + "]" : text;
}

std::string tupleText(const std::vector<double>& items, ScriptLanguage language) {
    const bool python = language == ScriptLanguage::Python;
    std::string text;
    for (const double item : items) {
        if (!text.empty())
            text += python ? ", " : " ";
        text += python ? pythonDouble(item) : textOfDouble(item);
    }
    return python ? "(" + text + (items.size() == 1 ? ",)" : ")") : text;
}

bool flatten(const Value& value, std::vector<double>& out) {
    if (value.isNumber()) {
        out.push_back(value.number());
        return true;
    }
    if (value.isTuple()) {
        out.insert(out.end(), value.tuple().items.begin(), value.tuple().items.end());
        return true;
    }
    if (!value.isList())
        return value.isNone();
    for (const Value& item : value.list())
        if (item.isNone() || !flatten(item, out))
            return false;
    return true;
}

}  // namespace

bool asText(const Value& value, ScriptLanguage language, std::string& out) {
    const bool fits = value.isNone() || value.isString() || value.isNumber();
    if (fits)
        out = value.isNone() ? std::string() : scalarText(value, language);
    return fits;
}

bool asTexts(const Value& value, std::vector<std::string>& out) {
    std::vector<std::string> texts;
    if (value.isString()) {
        texts.push_back(value.string());
    } else if (value.isList()) {
        for (const Value& item : value.list()) {
            if (!item.isString())
                return false;
            texts.push_back(item.string());
        }
    } else if (!value.isNone() && !(value.isTuple() && value.tuple().items.empty())) {
        return false;
    }
    out = std::move(texts);
    return true;
}

bool asInt(const Value& value, int& out) {
    const bool fits =
        (value.isInt() || value.isBool()) && std::fabs(value.number()) <= 2147483647.0;
    if (fits)
        out = static_cast<int>(value.integer());
    return fits;
}

bool asNumber(const Value& value, double& out) {
    if (value.isNumber())
        out = value.number();
    return value.isNumber();
}

bool asInts(const Value& value, std::vector<int>& out) {
    std::vector<double> numbers;
    if (!flatten(value, numbers))
        return false;
    std::vector<int> whole;
    for (const double number : numbers) {
        if (number != std::floor(number) || std::fabs(number) > 2147483647.0)
            return false;
        whole.push_back(static_cast<int>(number));
    }
    out = std::move(whole);
    return true;
}

bool asNumbers(const Value& value, std::vector<double>& out) {
    std::vector<double> numbers;
    if (!flatten(value, numbers))
        return false;
    out = std::move(numbers);
    return true;
}

std::string shown(const Value& value, ScriptLanguage language) {
    if (value.isNone())
        return {};
    if (value.isList())
        return listText(value.list(), language);
    return value.isTuple() ? tupleText(value.tuple().items, language) : scalarText(value, language);
}

}  // namespace torvel::api
