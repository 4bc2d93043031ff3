#include <cstdint>

#include "mel/parser_class.h"

namespace torvel::mel {

namespace {

// The number that a keyword stands for, -1 for other words.
int switchWord(const std::string& text) {
    if (text == "on" || text == "yes" || text == "true")
        return 1;
    return text == "off" || text == "no" || text == "false" ? 0 : -1;
}

bool isReserved(const std::string& text) {
    static constexpr const char* kWords[] = {"break", "case",   "continue", "default", "do",
                                             "else",  "for",    "global",   "if",      "in",
                                             "proc",  "return", "switch",   "while"};
    for (const char* word : kWords)
        if (text == word)
            return true;
    return false;
}

// Weakest first.
constexpr int kLevelCount = 6;
constexpr const char* kLevels[kLevelCount][5] = {
    {"||"}, {"&&"}, {"==", "!="}, {"<", "<=", ">", ">="}, {"+", "-"}, {"*", "/", "%", "^"}};

bool isOfLevel(const Token& token, int level) {
    for (const char* spelling : kLevels[level])
        if (spelling && token.is(spelling))
            return true;
    return false;
}

bool isAssignment(const Token& token) {
    for (const char* spelling : {"=", "+=", "-=", "*=", "/=", "%=", "^="})
        if (token.is(spelling))
            return true;
    return false;
}

}  // namespace

Node* Parser::expressionStatement() {
    Type type = Type::None;
    if (typeFromName(m_token, type)) {
        const Mark start = m_token.mark;
        advance();
        const bool isCast = m_token.is("(");
        m_lexer.reset(start);
        advance();
        if (!isCast) {
            Node* node = declaration(false);
            endStatement();
            return node;
        }
    }
    Node* node = make(NodeKind::Expression);
    const bool isCommand =
        m_token.kind == Tok::Ident && type == Type::None && !m_lexer.looksLikeCall();
    node->children.push_back(isCommand ? command(false) : expression());
    endStatement();
    return node;
}

Node* Parser::expression() {
    StackGuard::check();
    Node* target = choice();
    if (!isAssignment(m_token))
        return target;
    if (target->what != NodeKind::Variable && target->what != NodeKind::Index)
        fail();
    Node* node = make(NodeKind::Assign);
    node->text = m_token.text;
    advance();
    node->children = {target, expression()};
    return node;
}

Node* Parser::choice() {
    Node* condition = binary(0);
    if (!m_token.is("?"))
        return condition;
    Node* node = make(NodeKind::Choice);
    advance();
    node->children = {condition, expression()};
    expect(":");
    node->children.push_back(expression());
    return node;
}

Node* Parser::binary(int level) {
    if (level == kLevelCount)
        return unary();
    Node* left = binary(level + 1);
    while (isOfLevel(m_token, level)) {
        Node* node = make(level == 0   ? NodeKind::Or
                          : level == 1 ? NodeKind::And
                                       : NodeKind::Binary);
        node->text = m_token.text;
        advance();
        node->children = {left, binary(level + 1)};
        left = node;
    }
    return left;
}

Node* Parser::unary() {
    StackGuard::check();
    const bool step = m_token.is("++") || m_token.is("--");
    if (!step && !m_token.is("-") && !m_token.is("!") && !m_token.is("+"))
        return postfix();
    Node* node = make(step ? NodeKind::Step : NodeKind::Unary);
    node->text = m_token.text;
    node->prefix = true;
    advance();
    node->children.push_back(unary());
    const NodeKind target = node->children[0]->what;
    if (step && target != NodeKind::Variable && target != NodeKind::Index)
        fail();
    return node;
}

Node* Parser::postfix() {
    Node* value = primary();
    while (true) {
        Node* node = nullptr;
        if (m_token.is("[")) {
            node = make(NodeKind::Index);
            advance();
            node->children = {value, expression()};
            expect("]");
        } else if (m_token.is(".")) {
            node = make(NodeKind::Member);
            advance();
            node->text = m_token.text;
            if (node->text != "x" && node->text != "y" && node->text != "z")
                fail();
            advance();
            node->children = {value};
        } else if ((m_token.is("++") || m_token.is("--")) &&
                   (value->what == NodeKind::Variable || value->what == NodeKind::Index)) {
            node = make(NodeKind::Step);
            node->text = m_token.text;
            advance();
            node->children = {value};
        } else {
            return value;
        }
        value = node;
    }
}

Node* Parser::primary() {
    const Token token = m_token;
    switch (token.kind) {
        case Tok::Int:
        case Tok::Float: advance(); return number(token, 1.0);
        case Tok::String: advance(); return literal(token, token.text);
        case Tok::Variable: return variable();
        case Tok::Ident: return identifier();
        default: break;
    }
    if (token.is("`"))
        return backquoted();
    if (token.is("{"))
        return list(NodeKind::Array, "}");
    if (token.is("<<"))
        return vectorOrMatrix();
    expect("(");
    Node* inner = expression();
    expect(")");
    return inner;
}

Node* Parser::number(const Token& token, double sign) {
    const double value = sign * token.number;
    if (token.kind == Tok::Int)
        return literal(token, Value(static_cast<std::int64_t>(value)));
    return literal(token, Value(value));
}

Node* Parser::variable() {
    Node* node = make(NodeKind::Variable);
    node->text = m_token.text;
    advance();
    return node;
}

Node* Parser::identifier() {
    const Token name = m_token;
    if (const int value = switchWord(name.text); value >= 0) {
        advance();
        return literal(name, Value(value));
    }
    if (isReserved(name.text))
        fail();
    advance();
    Type type = Type::None;
    const bool call = m_token.is("(");
    if (typeFromName(name, type) && call)
        return cast(type);
    if (!call)
        fail(name, "Invalid use of Maya object \"" + name.text + "\".");
    return arguments(name);
}

Node* Parser::cast(Type type) {
    Node* node = make(NodeKind::Cast);
    node->kind.type = type;
    expect("(");
    node->children.push_back(expression());
    expect(")");
    return node;
}

Node* Parser::arguments(const Token& name) {
    Node* node = make(NodeKind::Command, name);
    node->text = name.text;
    node->prefix = true;
    expect("(");
    while (!accept(")")) {
        node->children.push_back(expression());
        if (!m_token.is(")"))
            expect(",");
    }
    return node;
}

Node* Parser::list(NodeKind what, const char* close) {
    Node* node = make(what);
    advance();
    while (!accept(close)) {
        node->children.push_back(expression());
        if (!m_token.is(close))
            expect(",");
    }
    return node;
}

// Three items in one row are a vector. A ">" would be read as a comparison: the items bind tighter.
Node* Parser::vectorOrMatrix() {
    Node* matrix = make(NodeKind::Matrix);
    matrix->children.push_back(make(NodeKind::Vector));
    advance();
    while (true) {
        matrix->children.back()->children.push_back(binary(4));
        if (accept(">>"))
            break;
        if (accept(";"))
            matrix->children.push_back(make(NodeKind::Vector));
        else
            expect(",");
    }
    for (const Node* row : matrix->children)
        if (row->children.size() != matrix->children[0]->children.size())
            fail();
    Node* first = matrix->children[0];
    return matrix->children.size() == 1 && first->children.size() == 3 ? first : matrix;
}

Node* Parser::backquoted() {
    expect("`");
    if (m_token.kind != Tok::Ident)
        fail();
    Node* node = m_lexer.looksLikeCall() ? expression() : command(true);
    expect("`");
    return node;
}

// Back from command words: the token that ended them is read again by the rules of expressions.
void Parser::leaveWords(const Token& token) {
    m_lexer.reset(token.mark);
    advance();
}

Node* Parser::command(bool inBackquotes) {
    StackGuard::check();
    if (isReserved(m_token.text) || switchWord(m_token.text) >= 0)
        fail();
    Node* node = make(NodeKind::Command);
    node->text = m_token.text;
    while (true) {
        const Token token = m_lexer.nextWord();
        const bool ends = token.kind == Tok::End || token.is(";") || token.is("}") ||
                          token.is(")") || (inBackquotes && token.is("`"));
        if (ends) {
            leaveWords(token);
            return node;
        }
        node->children.push_back(word(token, inBackquotes));
    }
}

Node* Parser::word(const Token& token, bool inBackquotes) {
    if (token.kind == Tok::Word) {
        const int value = switchWord(token.text);
        return value >= 0 ? literal(token, Value(value)) : literal(token, token.text);
    }
    if (token.kind == Tok::Flag) {
        Node* node = make(NodeKind::Flag, token);
        node->text = token.text;
        return node;
    }
    if (token.kind == Tok::String)
        return literal(token, token.text);
    if (token.kind == Tok::Int || token.kind == Tok::Float)
        return number(token, 1.0);
    if (token.is("-"))
        return negated(token);
    const bool group =
        token.is("(") || token.is("{") || token.is("<<") || (token.is("`") && !inBackquotes);
    if (!group && token.kind != Tok::Variable)
        fail(token, "Syntax error");
    leaveWords(token);
    Node* node = primary();
    while (token.kind == Tok::Variable && m_token.is("[")) {
        Node* index = make(NodeKind::Index);
        advance();
        index->children = {node, expression()};
        expect("]");
        node = index;
    }
    m_lexer.reset(m_token.mark);
    return node;
}

Node* Parser::negated(const Token& token) {
    const Token value = m_lexer.nextWord();
    if (value.kind == Tok::Int || value.kind == Tok::Float)
        return number(value, -1.0);
    if (value.kind != Tok::Variable && !value.is("("))
        fail(token, "Syntax error");
    Node* node = make(NodeKind::Unary, token);
    node->text = "-";
    node->children.push_back(word(value, false));
    return node;
}

}  // namespace torvel::mel
