#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/value.h"

namespace torvel::mel {

enum class Type : unsigned char { None, Int, Float, String, Vector, Matrix };

/// A declared type; `array` for `int $a[]`.
struct Kind {
    Type type = Type::None;
    bool array = false;
};

enum class NodeKind : unsigned char {
    // expressions
    Literal,   ///< value
    Flag,      ///< text; only among the words of a command
    Variable,  ///< text
    Index,     ///< children: array, index
    Member,    ///< children: vector; text x, y or z
    Unary,     ///< text: - !
    Step,      ///< text: ++ --; `prefix`
    Binary,    ///< text
    And,
    Or,
    Choice,   ///< condition ? a : b
    Assign,   ///< text: = += ...; children: target, value
    Array,    ///< { a, b }
    Vector,   ///< << x, y, z >>
    Matrix,   ///< << a, b; c, d >>; children: rows as Vector nodes
    Cast,     ///< int($x); `kind`
    Command,  ///< text: name; children: words or, with `prefix`, arguments in parentheses
    // statements
    Expression,
    Block,
    If,  ///< condition, then, [else]
    While,
    DoWhile,  ///< body, condition
    For,      ///< init block, condition, step block, body
    ForIn,    ///< variable, array, body
    Switch,   ///< value, then Case nodes
    Case,     ///< [value] and statements; `prefix`: default
    Break,
    Continue,
    Return,      ///< [value]
    Declare,     ///< Declarator children; `kind`, `global`
    Declarator,  ///< text; `kind`; [value]; with `prefix` the child is an array's size; a matrix:
                 ///< rows, columns, [value]
    Procedure,   ///< text: name; `kind`: result; Declarator children, body last
    Empty
};

/// One node of a parsed text. All nodes live in their Program; links are plain pointers.
struct Node {
    NodeKind what = NodeKind::Empty;
    bool prefix = false;
    bool global = false;
    Kind kind;
    int line = 0;
    std::string text;
    Value value;
    std::vector<Node*> children;
};

/// A parsed text. Procedures keep the program that they stand in alive.
struct Program {
    std::vector<std::unique_ptr<Node>> nodes;
    std::vector<Node*> statements;
    std::string file;  ///< empty for a text that is no file
};

/// A fault of a text: thrown inside the language only, caught in Language::run.
struct Fault {
    std::string text;
    int line = 0;    ///< 0: filled where a statement or command knows it
    int column = 0;  ///< not 0: a fault of syntax
    std::string file;
};

/// Stops a recursion that would use up the stack. Made once in each function that recurses.
class StackGuard {
  public:
    /// Throws a Fault when more than a fixed part of the thread's stack is in use since the
    /// outermost `base`.
    static void check();

    /// Marks where the outermost run of this thread starts; inner ones change nothing.
    StackGuard();
    ~StackGuard();
    StackGuard(const StackGuard&) = delete;
    StackGuard& operator=(const StackGuard&) = delete;

  private:
    bool m_outermost;
};

}  // namespace torvel::mel
