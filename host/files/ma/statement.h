#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace torvel {

/// Cuts the text of a scene file into statements. A statement ends at the first `;` outside quotes;
/// comments between statements are passed over. Nothing is copied.
class StatementScanner {
  public:
    explicit StatementScanner(std::string_view text)
        : m_begin(text.data()), m_at(text.data()), m_end(text.data() + text.size()) {}

    enum class Found { Statement, End, Unfinished };
    /// `statement` comes without its `;` and without blanks around it. Unfinished: the text ends
    /// inside a statement, a string or a block comment; `statement` is what there is of it.
    Found next(std::string_view& statement);

    /// Line of a place in the text, from 1. Cheap for places that ascend.
    std::size_t lineOf(const char* place);
    /// A comment "// End of ..." was passed.
    bool sawEndLine() const { return m_sawEndLine; }
    const char* position() const { return m_at; }
    const char* end() const { return m_end; }

  private:
    bool skipBetween();
    void skipLineComment();

    const char* m_begin;
    const char* m_at;
    const char* m_end;
    const char* m_counted = nullptr;
    std::size_t m_line = 1;
    bool m_sawEndLine = false;
};

/// One word of a statement.
struct Token {
    enum class Kind { End, Word, Quoted, Mark };
    Kind kind = Kind::End;
    std::string_view text;  ///< a quoted text without its quotes, escapes as they stand

    bool isEnd() const { return kind == Kind::End; }
    bool isMark(char c) const { return kind == Kind::Mark && text.front() == c; }
    /// "-sn", "-longName"; not "-5", "-.5".
    bool isFlag() const;
};

/// Walks over the words of one statement.
class TokenCursor {
  public:
    explicit TokenCursor(std::string_view text)
        : m_at(text.data()), m_end(text.data() + text.size()) {}

    Token next();
    Token peek() const { return TokenCursor(*this).next(); }
    /// A text value: one quoted text, or several joined by + in parentheses. False when none stands
    /// here.
    bool text(std::string& out);
    std::string_view rest();

  private:
    void skipBlanks();

    const char* m_at;
    const char* m_end;
};

/// Resolves \n \t \r \" \\ ; any other escaped character stands for itself.
std::string unescaped(std::string_view raw);
/// The text in double quotes with those escapes.
std::string inQuotes(std::string_view text);
/// The text without the carriage returns outside its quotes, as kept statements are stored.
std::string withoutReturns(std::string_view text);
/// Like withoutReturns, each run of blanks outside quotes made one blank.
std::string onOneLine(std::string_view text);

}  // namespace torvel
