#include "mel/lexer.h"

#include <charconv>
#include <cstring>

namespace torvel::mel {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isNameChar(char c) {
    return isLetter(c) || isDigit(c);
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

bool isBarewordChar(char c) {
    return isNameChar(c) || (c != '\0' && std::strchr("|:.*?", c) != nullptr);
}

// Longest first.
constexpr const char* kPuncts[] = {"<<", ">>", "++", "--", "<=", ">=", "==", "!=", "&&", "||",
                                   "+=", "-=", "*=", "/=", "%=", "^=", "(",  ")",  "[",  "]",
                                   "{",  "}",  ";",  ",",  "?",  ":",  "=",  "<",  ">",  "+",
                                   "-",  "*",  "/",  "%",  "^",  "!",  "`",  "."};

}  // namespace

void Lexer::step() {
    if (m_text[m_at.at] == '\n') {
        ++m_at.line;
        m_at.lineStart = m_at.at + 1;
    }
    ++m_at.at;
}

bool Lexer::skipBlanks() {
    while (m_at.at < m_text.size()) {
        if (isBlank(peek())) {
            step();
        } else if (peek() == '/' && peek(1) == '/') {
            while (m_at.at < m_text.size() && peek() != '\n')
                step();
        } else if (peek() == '/' && peek(1) == '*') {
            step();
            step();
            while (m_at.at < m_text.size() && !(peek() == '*' && peek(1) == '/'))
                step();
            for (int i = 0; i < 2 && m_at.at < m_text.size(); ++i)
                step();
        } else {
            return true;
        }
    }
    return false;
}

bool Lexer::startsNumber() const {
    return isDigit(peek()) || (peek() == '.' && isDigit(peek(1)));
}

void Lexer::number(Token& token) {
    const std::size_t start = m_at.at;
    token.kind = Tok::Int;
    if (peek() == '0' && (peek(1) == 'x' || peek(1) == 'X') && isHexDigit(peek(2))) {
        m_at.at += 2;
        std::uint32_t bits = 0;
        for (; isHexDigit(peek()); ++m_at.at)
            bits = bits * 16u + static_cast<std::uint32_t>(
                                    isDigit(peek()) ? peek() - '0' : (peek() | 32) - 'a' + 10);
        token.number = static_cast<std::int32_t>(bits);
        token.text = m_text.substr(start, m_at.at - start);
        return;
    }
    while (isDigit(peek()))
        ++m_at.at;
    if (peek() == '.' && peek(1) != '.') {
        token.kind = Tok::Float;
        for (++m_at.at; isDigit(peek());)
            ++m_at.at;
    }
    const std::size_t sign = peek(1) == '-' || peek(1) == '+' ? 2 : 1;
    if ((peek() == 'e' || peek() == 'E') && isDigit(peek(sign))) {
        token.kind = Tok::Float;
        for (m_at.at += sign; isDigit(peek());)
            ++m_at.at;
    }
    token.text = m_text.substr(start, m_at.at - start);
    const char* end = token.text.data() + token.text.size();
    if (std::from_chars(token.text.data(), end, token.number).ec != std::errc())
        token.number = 0.0;  // underflow of "1e-400"; an overflow has no meaning either
    if (token.kind == Tok::Int && token.number > 2147483647.0)
        token.kind = Tok::Float;
}

void Lexer::string(Token& token) {
    token.kind = Tok::String;
    for (step(); m_at.at < m_text.size() && peek() != '"' && peek() != '\n'; step()) {
        if (peek() != '\\') {
            token.text += peek();
            continue;
        }
        ++m_at.at;
        if (m_at.at >= m_text.size())
            break;
        const char c = peek();
        if (c == '\n')
            continue;  // a line that goes on
        token.text += c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
    }
    if (peek() == '"') {
        step();
        return;
    }
    token.kind = Tok::Bad;
    token.text = "Unterminated string.";
}

void Lexer::punct(Token& token) {
    for (const char* candidate : kPuncts) {
        const std::size_t length = std::strlen(candidate);
        if (m_text.compare(m_at.at, length, candidate) == 0) {
            token.kind = Tok::Punct;
            token.text = candidate;
            m_at.at += length;
            return;
        }
    }
    token.kind = Tok::Bad;
    token.text = "Syntax error";
    step();
}

Token Lexer::next() {
    Token token;
    const bool more = skipBlanks();
    token.mark = m_at;
    if (!more)
        return token;
    if (startsNumber()) {
        number(token);
    } else if (peek() == '"') {
        string(token);
    } else if (isLetter(peek()) || (peek() == '$' && isLetter(peek(1)))) {
        token.kind = peek() == '$' ? Tok::Variable : Tok::Ident;
        m_at.at += peek() == '$' ? 1 : 0;
        const std::size_t start = m_at.at;
        while (isNameChar(peek()))
            ++m_at.at;
        token.text = m_text.substr(start, m_at.at - start);
    } else {
        punct(token);
    }
    return token;
}

void Lexer::bareword(Token& token) {
    const std::size_t start = m_at.at;
    token.kind = Tok::Word;
    while (isBarewordChar(peek()) || peek() == '[') {
        if (peek() != '[') {
            ++m_at.at;
            continue;
        }
        std::size_t length = 1;
        while (isDigit(peek(length)) ||
               std::strchr(":*- ", peek(length) ? peek(length) : 'x') != nullptr)
            ++length;
        if (peek(length) != ']') {
            token.kind = Tok::Bad;
            token.text = "Syntax error";
            return;
        }
        m_at.at += length + 1;
    }
    token.text = m_text.substr(start, m_at.at - start);
}

Token Lexer::nextWord() {
    Token token;
    const bool more = skipBlanks();
    token.mark = m_at;
    if (!more)
        return token;
    const char c = peek();
    if (c == '-' && isLetter(peek(1))) {
        token.kind = Tok::Flag;
        const std::size_t start = ++m_at.at;
        while (isNameChar(peek()))
            ++m_at.at;
        token.text = m_text.substr(start, m_at.at - start);
    } else if (startsNumber()) {
        number(token);
        if (isBarewordChar(peek())) {  // "1:10" and names that start with a digit
            m_at = token.mark;
            token.text.clear();
            bareword(token);
        }
    } else if (isBarewordChar(c)) {
        bareword(token);
    } else if (c == '"' || c == '$') {
        return next();
    } else {
        punct(token);
    }
    return token;
}

bool Lexer::skipGroup() {
    int depth = 0;
    while (skipBlanks()) {
        const char c = peek();
        if (c == '"') {
            Token ignored;
            string(ignored);
            continue;
        }
        depth += c == '(' ? 1 : c == ')' ? -1 : 0;
        step();
        if (depth == 0)
            return true;
    }
    return false;
}

bool Lexer::looksLikeCall() const {
    Lexer ahead = *this;
    if (!ahead.skipBlanks() || ahead.peek() != '(')
        return false;
    if (!ahead.skipGroup() || !ahead.skipBlanks())
        return true;
    const char c = ahead.peek();
    const char after = ahead.peek(1);
    if (c == '-')
        return isBlank(after) || after == '-';
    if (c == '|')
        return after == '|';
    if (c == '<')
        return after != '<';
    if (c == '*')
        return isBlank(after) || after == '(' || after == '$';
    return std::strchr(";,)]}`+/%^=>!&?[", c) != nullptr;
}

}  // namespace torvel::mel
