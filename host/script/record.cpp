#include "script/record.h"
#include "base/number_text.h"

#include <cmath>
#include <cstdio>
#include <utility>

namespace torvel {

namespace {

// Length of the UTF-8 sequence that starts here, 0 when the bytes are none.
std::size_t sequenceLength(const std::string& text, std::size_t at) {
    const auto byte = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    };
    const unsigned first = byte(at);
    const std::size_t length = first < 0x80                    ? 1
                               : first >= 0xC2 && first < 0xE0 ? 2
                               : first >= 0xE0 && first < 0xF0 ? 3
                               : first >= 0xF0 && first < 0xF5 ? 4
                                                               : 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(at + i) & 0xC0u) != 0x80u)
            return 0;
    const unsigned second = byte(at + 1);
    const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool surrogate = first == 0xED && second >= 0xA0;
    const bool beyond = first == 0xF4 && second >= 0x90;
    return overlong || surrogate || beyond ? 0 : length;
}

void appendEscape(std::string& out, char c) {
    switch (c) {
        case '"': out += "\\\""; return;
        case '\\': out += "\\\\"; return;
        case '\n': out += "\\n"; return;
        case '\r': out += "\\r"; return;
        case '\t': out += "\\t"; return;
        default: break;
    }
    if (static_cast<unsigned char>(c) >= 0x20) {
        out += c;
        return;
    }
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "\\u%04x",
                  static_cast<unsigned>(static_cast<unsigned char>(c)));
    out += buffer;
}

void appendText(std::string& out, const std::string& text) {
    out += '"';
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = sequenceLength(text, at);
        if (length == 0)
            out += "\xEF\xBF\xBD";
        else if (length == 1)
            appendEscape(out, text[at]);
        else
            out.append(text, at, length);
        at += length == 0 ? 1 : length;
    }
    out += '"';
}

void appendNumber(std::string& out, double value) {
    if (!std::isfinite(value)) {
        out += "null";
        return;
    }
    out += numberText(value, 17);
}

void appendValue(std::string& out, const Value& value);

template <class Items, class Append>
void appendArray(std::string& out, const Items& items, Append append) {
    out += '[';
    bool first = true;
    for (const auto& item : items) {
        if (!first)
            out += ',';
        first = false;
        append(out, item);
    }
    out += ']';
}

void appendValue(std::string& out, const Value& value) {
    if (value.isString())
        appendText(out, value.string());
    else if (value.isBool())
        out += value.truth() ? "true" : "false";
    else if (value.isInt())
        out += std::to_string(value.integer());
    else if (value.isDouble())
        appendNumber(out, value.number());
    else if (value.isList())
        appendArray(out, value.list(), appendValue);
    else if (value.isTuple())
        appendArray(out, value.tuple().items, appendNumber);
    else
        out += "null";
}

void appendScript(std::string& out, const RecordEntry& entry) {
    out += "{\"event\":\"script\",\"language\":";
    appendText(out, entry.language);
    out += ",\"form\":";
    appendText(out, entry.form);
    out += entry.display ? ",\"display\":true" : ",\"display\":false";
    out += entry.undo ? ",\"undo\":true" : ",\"undo\":false";
    out += ",\"text\":";
    appendText(out, entry.text);
    out += entry.ok ? ",\"status\":\"ok\"" : ",\"status\":\"failed\"";
    out += ",\"result\":";
    appendValue(out, entry.result);
    out += ",\"error\":";
    if (entry.error.empty())
        out += "null";
    else
        appendText(out, entry.error);
    out += '}';
}

const char* channelName(Channel channel) {
    switch (channel) {
        case Channel::Warning: return "warning";
        case Channel::Error: return "error";
        case Channel::Info:
        case Channel::Result: break;
    }
    return "info";
}

void appendMessage(std::string& out, const RecordEntry& entry) {
    out += "{\"event\":\"message\",\"channel\":\"";
    out += channelName(entry.channel);
    out += "\",\"text\":";
    appendText(out, entry.text);
    if (entry.fromScript)
        out += ",\"source\":\"script\"";
    out += '}';
}

}  // namespace

void ScriptRecord::add(RecordEntry entry) {
    m_entries.push_back(std::move(entry));
    if (m_listener)
        m_listener(m_entries.back());
}

std::vector<std::string> ScriptRecord::scripts() const {
    std::vector<std::string> texts;
    for (const RecordEntry& entry : m_entries)
        if (entry.isScript)
            texts.push_back(entry.text);
    return texts;
}

std::vector<std::string> ScriptRecord::messages() const {
    std::vector<std::string> texts;
    for (const RecordEntry& entry : m_entries)
        if (!entry.isScript && !entry.fromScript)
            texts.push_back(entry.text);
    return texts;
}

std::string recordToJson(const RecordEntry& entry) {
    std::string out;
    out.reserve(entry.text.size() + 160);
    if (entry.isScript)
        appendScript(out, entry);
    else
        appendMessage(out, entry);
    return out;
}

}  // namespace torvel
