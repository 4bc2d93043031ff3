#include "python/run.h"

#include <cstring>

namespace torvel::py {

namespace {

bool isNameChar(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           (c & 0x80);
}

// Walks over a text once and notes where its last logical line and the last piece of that line
// start.
class Scan {
  public:
    explicit Scan(std::string_view text) : m_text(text) {}

    void run() {
        while (m_at < m_text.size())
            step();
        closePiece();
    }
    std::size_t line = 0;  ///< start of the last logical line that holds anything
    std::size_t piece = std::string_view::npos;  ///< start of the last statement
    std::size_t end = 0;                         ///< where its separator or the text's end stands
    bool assigns = false;                        ///< it has an = outside of brackets

  private:
    char peek(std::size_t ahead = 0) const {
        return m_at + ahead < m_text.size() ? m_text[m_at + ahead] : '\0';
    }
    void step() {
        const char c = peek();
        if (c == '#') {
            while (m_at < m_text.size() && peek() != '\n')
                ++m_at;
            return;
        }
        if (c == '\\' && peek(1) == '\n') {
            m_at += 2;
            return;
        }
        if ((c == '\n' || c == ';') && m_depth == 0) {
            closePiece();
            m_newLine = m_newLine || c == '\n';
            ++m_at;
            return;
        }
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f') {
            ++m_at;
            return;
        }
        content(c);
    }
    void closePiece() {
        if (m_start == std::string_view::npos)
            return;
        if (m_startsLine)
            line = m_start;
        piece = m_start;
        end = m_at;
        assigns = m_assigns;
        m_start = std::string_view::npos;
    }
    void content(char c) {
        if (m_start == std::string_view::npos) {
            m_start = m_at;
            m_startsLine = m_newLine;
            m_newLine = false;
            m_assigns = false;
        }
        if (c == '"' || c == '\'') {
            string(c);
            return;
        }
        if (c == '=' && m_depth == 0) {
            const char before = m_at > 0 ? m_text[m_at - 1] : '\0';
            const bool compares =
                peek(1) == '=' || (before != '\0' && std::strchr("=!<>:", before) != nullptr);
            m_assigns = m_assigns || (!compares && !(before == '='));
            // "<<=" and ">>=" are assignments as well; they merely cost one compilation in vain.
        }
        m_depth += c == '(' || c == '[' || c == '{' ? 1 : 0;
        m_depth -= (c == ')' || c == ']' || c == '}') && m_depth > 0 ? 1 : 0;
        ++m_at;
    }
    void string(char quote) {
        const bool triple = peek(1) == quote && peek(2) == quote;
        for (m_at += triple ? 3 : 1; m_at < m_text.size(); ++m_at) {
            if (peek() == '\\')
                ++m_at;
            else if (!triple && (peek() == quote || peek() == '\n'))
                break;
            else if (triple && peek() == quote && peek(1) == quote && peek(2) == quote) {
                m_at += 2;
                break;
            }
        }
        ++m_at;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_start = std::string_view::npos;
    int m_depth = 0;
    bool m_newLine = true;
    bool m_startsLine = true;
    bool m_assigns = false;
};

std::string_view firstWord(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && isNameChar(text[length]))
        ++length;
    return text.substr(0, length);
}

template <std::size_t N>
bool isOneOf(std::string_view word, const char* const (&words)[N]) {
    for (const char* known : words)
        if (word == known)
            return true;
    return false;
}

bool startsCompound(std::string_view text) {
    static constexpr const char* kWords[] = {"if",     "elif",    "else", "for", "while", "try",
                                             "except", "finally", "with", "def", "class", "async"};
    return isOneOf(firstWord(text), kWords) || text[0] == '@';
}

bool startsStatement(std::string_view text) {
    static constexpr const char* kWords[] = {"import", "from",   "return",   "pass",
                                             "del",    "global", "nonlocal", "assert",
                                             "raise",  "break",  "continue"};
    return isOneOf(firstWord(text), kWords);
}

}  // namespace

TextRange lastExpression(std::string_view text) {
    Scan scan(text);
    scan.run();
    if (scan.piece == std::string_view::npos || scan.assigns)
        return {};
    // An indented line, or one that starts as a compound statement, is no statement of the module
    // itself.
    const bool indented = scan.line > 0 && text[scan.line - 1] != '\n';
    if (indented || startsCompound(text.substr(scan.line)) ||
        startsStatement(text.substr(scan.piece)))
        return {};
    return {scan.piece, scan.end};
}

}  // namespace torvel::py
