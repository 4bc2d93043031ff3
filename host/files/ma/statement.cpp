#include "files/ma/statement.h"

#include <algorithm>
#include <cstring>

namespace torvel {
namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

const char* findByte(const char* at, const char* end, char byte) {
    return at == end ? nullptr
                     : static_cast<const char*>(
                           std::memchr(at, byte, static_cast<std::size_t>(end - at)));
}

// Behind the closing quote of a text that opens at `quote`; null when it does not close.
const char* behindString(const char* quote, const char* end) {
    for (const char* at = quote + 1;;) {
        const char* close = findByte(at, end, '"');
        if (!close)
            return nullptr;
        const char* escape = close;
        while (escape != quote + 1 && escape[-1] == '\\')
            --escape;
        if ((close - escape) % 2 == 0)
            return close + 1;
        at = close + 1;
    }
}

}  // namespace

void StatementScanner::skipLineComment() {
    const char* line = m_at;
    const char* newline = findByte(m_at, m_end, '\n');
    m_at = newline ? newline : m_end;
    const std::string_view text(line, static_cast<std::size_t>(m_at - line));
    m_sawEndLine = m_sawEndLine || text.substr(0, 9) == "// End of";
}

// False when a block comment does not end.
bool StatementScanner::skipBetween() {
    while (m_at != m_end) {
        if (isBlank(*m_at) || *m_at == ';') {
            ++m_at;
        } else if (*m_at == '/' && m_at + 1 != m_end && m_at[1] == '/') {
            skipLineComment();
        } else if (*m_at == '/' && m_at + 1 != m_end && m_at[1] == '*') {
            const std::string_view rest(m_at, static_cast<std::size_t>(m_end - m_at));
            const std::size_t close = rest.find("*/", 2);
            if (close == std::string_view::npos)
                return false;
            m_at += close + 2;
        } else {
            break;
        }
    }
    return true;
}

StatementScanner::Found StatementScanner::next(std::string_view& statement) {
    const bool closed = skipBetween();
    const char* start = m_at;
    statement = {start, static_cast<std::size_t>(m_end - start)};
    if (!closed)
        return Found::Unfinished;
    if (m_at == m_end)
        return Found::End;
    const char* semicolon = findByte(m_at, m_end, ';');
    for (const char* at = m_at; semicolon;) {
        const char* quote = findByte(at, semicolon, '"');
        if (!quote)
            break;
        at = behindString(quote, m_end);
        if (!at)
            semicolon = nullptr;
        else if (at > semicolon)
            semicolon = findByte(at, m_end, ';');
    }
    m_at = semicolon ? semicolon + 1 : m_end;
    if (!semicolon)
        return Found::Unfinished;
    const char* last = semicolon;
    while (last != start && isBlank(last[-1]))
        --last;
    statement = {start, static_cast<std::size_t>(last - start)};
    return Found::Statement;
}

std::size_t StatementScanner::lineOf(const char* place) {
    if (!m_counted || place < m_counted) {
        m_counted = m_begin;
        m_line = 1;
    }
    m_line += static_cast<std::size_t>(std::count(m_counted, place, '\n'));
    m_counted = place;
    return m_line;
}

bool Token::isFlag() const {
    if (kind != Kind::Word || text.size() < 2 || text[0] != '-')
        return false;
    const char c = text[1];
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

void TokenCursor::skipBlanks() {
    while (m_at != m_end && isBlank(*m_at))
        ++m_at;
}

std::string_view TokenCursor::rest() {
    skipBlanks();
    return {m_at, static_cast<std::size_t>(m_end - m_at)};
}

Token TokenCursor::next() {
    skipBlanks();
    if (m_at == m_end)
        return {};
    const char* start = m_at;
    if (*m_at == '"') {
        const char* behind = behindString(m_at, m_end);
        m_at = behind ? behind : m_end;
        return {Token::Kind::Quoted,
                {start + 1, static_cast<std::size_t>(m_at - start - (behind ? 2 : 1))}};
    }
    const auto isMark = [](char c) {
        return c == '(' || c == ')' || c == '{' || c == '}' || c == ',';
    };
    const bool plus = *m_at == '+' && (m_at + 1 == m_end || isBlank(m_at[1]) || m_at[1] == '"');
    if (isMark(*m_at) || plus)
        return {Token::Kind::Mark, {m_at++, 1}};
    while (m_at != m_end && !isBlank(*m_at) && *m_at != '"' && !isMark(*m_at))
        ++m_at;
    return {Token::Kind::Word, {start, static_cast<std::size_t>(m_at - start)}};
}

bool TokenCursor::text(std::string& out) {
    Token token = next();
    const bool joined = token.isMark('(');
    if (joined)
        token = next();
    if (token.kind != Token::Kind::Quoted)
        return false;
    out = unescaped(token.text);
    while (joined && !(token = next()).isMark(')')) {
        if (!token.isMark('+') || (token = next()).kind != Token::Kind::Quoted)
            return false;
        out += unescaped(token.text);
    }
    return true;
}

std::string unescaped(std::string_view raw) {
    std::string out;
    out.reserve(raw.size());
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] != '\\' || i + 1 == raw.size()) {
            out += raw[i];
            continue;
        }
        const char c = raw[++i];
        out += c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
    }
    return out;
}

std::string inQuotes(std::string_view text) {
    std::string out = "\"";
    for (char c : text) {
        switch (c) {
            case '\n': out += "\\n"; break;
            case '\t': out += "\\t"; break;
            case '\r': out += "\\r"; break;
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            default: out += c;
        }
    }
    return out + '"';
}

std::string withoutReturns(std::string_view text) {
    if (text.find('\r') == std::string_view::npos)
        return std::string(text);
    std::string out;
    bool inside = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!inside && text[i] == '\r')
            continue;
        out += text[i];
        if (text[i] == '"')
            inside = !inside;
        else if (inside && text[i] == '\\' && i + 1 < text.size())
            out += text[++i];
    }
    return out;
}

std::string onOneLine(std::string_view text) {
    std::string out;
    bool inside = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (!inside && isBlank(c)) {
            if (!out.empty() && out.back() != ' ')
                out += ' ';
            continue;
        }
        out += c;
        if (c == '"')
            inside = !inside;
        else if (inside && c == '\\' && i + 1 < text.size())
            out += text[++i];
    }
    while (!out.empty() && out.back() == ' ')
        out.pop_back();
    return out;
}

}  // namespace torvel
