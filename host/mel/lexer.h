#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace torvel::mel {

enum class Tok : std::uint8_t {
    End,
    Ident,     ///< expressions: an identifier or keyword
    Variable,  ///< text without the dollar sign
    Int,
    Float,
    String,  ///< text with escapes resolved
    Punct,   ///< operator or bracket; text is its spelling
    Word,    ///< command words only: a bareword such as |a|b.tx or crv.cv[0:3]
    Flag,    ///< command words only: text without the dash
    Bad      ///< text tells what is wrong
};

/// Where a token starts; the lexer can be set back to it.
struct Mark {
    std::size_t at = 0;
    int line = 1;
    std::size_t lineStart = 0;

    int column() const { return static_cast<int>(at - lineStart) + 1; }
};

struct Token {
    Tok kind = Tok::End;
    Mark mark;
    std::string text;
    double number = 0.0;  ///< of Int and Float

    bool is(const char* punct) const { return kind == Tok::Punct && text == punct; }
    bool isWord(const char* name) const { return kind == Tok::Ident && text == name; }
};

/// Cuts a text into tokens. Expressions and command words follow different rules, so the parser
/// asks for the one or the other kind at each place. Faults come as Tok::Bad; nothing is thrown.
class Lexer {
  public:
    explicit Lexer(std::string_view text) : m_text(text) {}

    Token next();      ///< token of an expression or statement
    Token nextWord();  ///< token of a command's word list
    Mark mark() const { return m_at; }
    void reset(const Mark& mark) { m_at = mark; }
    /// After an identifier: true when `(...)` follows and the whole reads as a call, not as a
    /// command with a parenthesised first word.
    bool looksLikeCall() const;

  private:
    char peek(std::size_t ahead = 0) const {
        return m_at.at + ahead < m_text.size() ? m_text[m_at.at + ahead] : '\0';
    }
    void step();
    bool skipBlanks();  ///< and comments; false in front of nothing
    bool skipGroup();   ///< from an opening bracket past its closing one
    void number(Token& token);
    void string(Token& token);
    void punct(Token& token);
    void bareword(Token& token);
    bool startsNumber() const;

    std::string_view m_text;
    Mark m_at;
};

}  // namespace torvel::mel
