#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "mel/lexer.h"
#include "mel/tree.h"

namespace torvel::mel {

bool typeFromName(const Token& token, Type& type);

/// Recursive descent over one text; statements and expressions stand in two source files. Throws
/// Faults.
class Parser {
  public:
    Parser(std::string_view text, Program& program) : m_lexer(text), m_program(program) {
        advance();
    }

    void run() {
        while (m_token.kind != Tok::End)
            m_program.statements.push_back(statement());
    }

  private:
    // --- tools ---
    void advance() { m_token = m_lexer.next(); }
    [[noreturn]] void fail(const Token& token, const std::string& text) const {
        throw Fault{
            token.kind == Tok::Bad ? token.text : text, token.mark.line, token.mark.column(), {}};
    }
    [[noreturn]] void fail() const { fail(m_token, "Syntax error"); }
    bool accept(const char* punct) {
        if (!m_token.is(punct))
            return false;
        advance();
        return true;
    }
    void expect(const char* punct) {
        if (!accept(punct))
            fail();
    }
    bool acceptWord(const char* word) {
        if (!m_token.isWord(word))
            return false;
        advance();
        return true;
    }
    Node* make(NodeKind what, const Token& at) {
        m_program.nodes.push_back(std::make_unique<Node>());
        Node* node = m_program.nodes.back().get();
        node->what = what;
        node->line = at.mark.line;
        return node;
    }
    Node* make(NodeKind what) { return make(what, m_token); }
    Node* literal(const Token& token, Value value) {
        Node* node = make(NodeKind::Literal, token);
        node->value = std::move(value);
        return node;
    }

    // --- statements ---
    Node* statement();
    Node* block();
    Node* ifStatement();
    Node* whileStatement();
    Node* doStatement();
    Node* forStatement();
    Node* forIn(Node* node);
    Node* forPart(const char* end);
    Node* switchStatement();
    Node* returnStatement();
    Node* jump(NodeKind what);
    Node* globalStatement();
    Node* declaration(bool global);
    Node* declarator(Kind kind);
    Node* matrixDeclarator(Node* node);
    Node* procedure();
    Node* parameter();
    void endStatement();

    // --- expressions and commands ---
    Node* expressionStatement();
    Node* expression();
    Node* choice();
    Node* binary(int level);
    Node* unary();
    Node* postfix();
    Node* primary();
    Node* variable();
    Node* identifier();
    Node* cast(Type type);
    Node* arguments(const Token& name);
    Node* list(NodeKind what, const char* close);
    Node* vectorOrMatrix();
    Node* backquoted();
    Node* command(bool inBackquotes);
    Node* word(const Token& token, bool inBackquotes);
    Node* negated(const Token& token);
    Node* number(const Token& token, double sign);
    void leaveWords(const Token& token);

    Lexer m_lexer;
    Program& m_program;
    Token m_token;
};

}  // namespace torvel::mel
