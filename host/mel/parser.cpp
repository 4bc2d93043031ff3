#include "mel/parser.h"

#include "mel/parser_class.h"

namespace torvel::mel {

bool typeFromName(const Token& token, Type& type) {
    if (token.kind != Tok::Ident)
        return false;
    static constexpr std::pair<const char*, Type> kNames[] = {{"int", Type::Int},
                                                              {"float", Type::Float},
                                                              {"string", Type::String},
                                                              {"vector", Type::Vector},
                                                              {"matrix", Type::Matrix}};
    for (const auto& [name, value] : kNames)
        if (token.text == name) {
            type = value;
            return true;
        }
    return false;
}

Node* Parser::statement() {
    StackGuard::check();
    if (m_token.is(";")) {
        Node* node = make(NodeKind::Empty);
        advance();
        return node;
    }
    if (m_token.is("{"))
        return block();
    if (m_token.kind != Tok::Ident)
        return expressionStatement();
    if (m_token.isWord("if"))
        return ifStatement();
    if (m_token.isWord("while"))
        return whileStatement();
    if (m_token.isWord("do"))
        return doStatement();
    if (m_token.isWord("for"))
        return forStatement();
    if (m_token.isWord("switch"))
        return switchStatement();
    if (m_token.isWord("return"))
        return returnStatement();
    if (m_token.isWord("break"))
        return jump(NodeKind::Break);
    if (m_token.isWord("continue"))
        return jump(NodeKind::Continue);
    if (m_token.isWord("global"))
        return globalStatement();
    if (m_token.isWord("proc"))
        return procedure();
    return expressionStatement();
}

Node* Parser::block() {
    Node* node = make(NodeKind::Block);
    expect("{");
    while (!m_token.is("}")) {
        if (m_token.kind == Tok::End)
            fail();
        node->children.push_back(statement());
    }
    advance();
    return node;
}

Node* Parser::ifStatement() {
    Node* node = make(NodeKind::If);
    advance();
    expect("(");
    node->children.push_back(expression());
    expect(")");
    node->children.push_back(statement());
    if (acceptWord("else"))
        node->children.push_back(statement());
    return node;
}

Node* Parser::whileStatement() {
    Node* node = make(NodeKind::While);
    advance();
    expect("(");
    node->children.push_back(expression());
    expect(")");
    node->children.push_back(statement());
    return node;
}

Node* Parser::doStatement() {
    Node* node = make(NodeKind::DoWhile);
    advance();
    node->children.push_back(statement());
    if (!acceptWord("while"))
        fail();
    expect("(");
    node->children.push_back(expression());
    expect(")");
    endStatement();
    return node;
}

// Expressions or declarations up to `end`, as a block without a scope of its own.
Node* Parser::forPart(const char* end) {
    Node* node = make(NodeKind::Block);
    node->prefix = true;
    Type type = Type::None;
    while (!m_token.is(end)) {
        const bool declares = typeFromName(m_token, type);
        node->children.push_back(declares ? declaration(false) : expression());
        if (!declares && !m_token.is(end))
            expect(",");
        else if (!m_token.is(end))
            fail();
    }
    advance();
    return node;
}

Node* Parser::forStatement() {
    Node* node = make(NodeKind::For);
    advance();
    expect("(");
    const Mark start = m_token.mark;
    if (m_token.kind == Tok::Variable) {
        advance();
        if (m_token.isWord("in")) {
            m_lexer.reset(start);
            advance();
            return forIn(node);
        }
        m_lexer.reset(start);
        advance();
    }
    node->children.push_back(forPart(";"));
    Node* condition = m_token.is(";") ? make(NodeKind::Empty) : expression();
    node->children.push_back(condition);
    expect(";");
    node->children.push_back(forPart(")"));
    node->children.push_back(statement());
    return node;
}

Node* Parser::forIn(Node* node) {
    node->what = NodeKind::ForIn;
    Node* variable = make(NodeKind::Variable);
    variable->text = m_token.text;
    advance();
    advance();
    node->children = {variable, expression()};
    expect(")");
    node->children.push_back(statement());
    return node;
}

Node* Parser::switchStatement() {
    Node* node = make(NodeKind::Switch);
    advance();
    expect("(");
    node->children.push_back(expression());
    expect(")");
    expect("{");
    while (!accept("}")) {
        Node* branch = make(NodeKind::Case);
        if (acceptWord("default"))
            branch->prefix = true;
        else if (acceptWord("case"))
            branch->children.push_back(expression());
        else
            fail();
        expect(":");
        while (!m_token.is("}") && !m_token.isWord("case") && !m_token.isWord("default")) {
            if (m_token.kind == Tok::End)
                fail();
            branch->children.push_back(statement());
        }
        node->children.push_back(branch);
    }
    return node;
}

Node* Parser::returnStatement() {
    Node* node = make(NodeKind::Return);
    advance();
    if (!m_token.is(";") && !m_token.is("}") && m_token.kind != Tok::End)
        node->children.push_back(expression());
    endStatement();
    return node;
}

Node* Parser::jump(NodeKind what) {
    Node* node = make(what);
    advance();
    endStatement();
    return node;
}

// A statement ends at its semicolon; at the end of a text or block it may be missing.
void Parser::endStatement() {
    if (!accept(";") && m_token.kind != Tok::End && !m_token.is("}"))
        fail();
}

Node* Parser::globalStatement() {
    advance();
    if (m_token.isWord("proc"))
        return procedure();
    Node* node = declaration(true);
    endStatement();
    return node;
}

Node* Parser::declaration(bool global) {
    Node* node = make(NodeKind::Declare);
    node->global = global;
    if (!typeFromName(m_token, node->kind.type))
        fail();
    advance();
    node->kind.array = accept("[");
    if (node->kind.array)
        expect("]");
    do
        node->children.push_back(declarator(node->kind));
    while (accept(","));
    return node;
}

// Both sizes of a matrix stand in its declaration.
Node* Parser::matrixDeclarator(Node* node) {
    for (int i = 0; i < 2; ++i) {
        expect("[");
        node->children.push_back(expression());
        expect("]");
    }
    if (accept("="))
        node->children.push_back(expression());
    return node;
}

Node* Parser::declarator(Kind kind) {
    if (m_token.kind != Tok::Variable)
        fail();
    Node* node = make(NodeKind::Declarator);
    node->text = m_token.text;
    node->kind = kind;
    advance();
    if (kind.type == Type::Matrix)
        return matrixDeclarator(node);
    if (accept("[")) {
        node->kind.array = true;
        if (!m_token.is("]")) {
            node->prefix = true;
            node->children.push_back(expression());
        }
        expect("]");
    }
    if (accept("=")) {
        node->prefix = false;
        node->children.assign(1, expression());
    }
    return node;
}

Node* Parser::procedure() {
    Node* node = make(NodeKind::Procedure);
    advance();
    if (typeFromName(m_token, node->kind.type)) {
        advance();
        node->kind.array = accept("[");
        if (node->kind.array)
            expect("]");
    }
    if (m_token.kind != Tok::Ident)
        fail();
    node->text = m_token.text;
    advance();
    expect("(");
    while (!accept(")")) {
        node->children.push_back(parameter());
        if (!m_token.is(")"))
            expect(",");
    }
    node->children.push_back(block());
    return node;
}

Node* Parser::parameter() {
    Kind kind;
    if (!typeFromName(m_token, kind.type))
        fail();
    advance();
    if (m_token.kind != Tok::Variable)
        fail();
    Node* node = make(NodeKind::Declarator);
    node->text = m_token.text;
    advance();
    kind.array = accept("[");
    if (kind.array)
        expect("]");
    node->kind = kind;
    return node;
}

std::shared_ptr<Program> parse(std::string_view text, std::string file) {
    const StackGuard guard;
    auto program = std::make_shared<Program>();
    program->file = std::move(file);
    Parser(text, *program).run();
    return program;
}

}  // namespace torvel::mel
