#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "script/session.h"
#include "mel/tree.h"

namespace torvel::mel {

struct Variable {
    Kind kind;
    Value value;
};
using VariablePtr = std::shared_ptr<Variable>;

/// Runs parsed texts. Global variables and procedures live as long as the interpreter; what a text
/// declares at its top level is global. Faults are thrown, with line and file where they are known.
class Interpreter {
  public:
    explicit Interpreter(Session& session) : m_session(session) {}

    /// Result of the last statement when it is an expression or a command; none otherwise.
    Value run(std::string_view text, const std::string& file = {});

    // --- for the built-in functions ---
    Session& session() const { return m_session; }
    Value evaluate(const Node& node);
    /// The variable that a node names; throws when it names none.
    VariablePtr variable(const Node& node);
    bool hasProcedure(const std::string& name) const { return m_procedures.count(name) != 0; }
    /// "// Error: line 3: text" and its like, through the log.
    void printFault(const Fault& fault) const;
    /// The fault as one line without "// Error: ".
    static std::string describe(const Fault& fault);
    int line() const { return m_line; }

  private:
    enum class Flow { Normal, Break, Continue, Return };
    struct Procedure {
        const Node* node = nullptr;
        std::shared_ptr<Program> program;
    };
    using Scope = std::vector<std::pair<std::string, VariablePtr>>;
    struct Frame {
        std::vector<Scope> scopes;  ///< empty at top level: the globals
        bool isProcedure = false;
        Value result;
    };
    struct Word {
        Value value;
        bool isFlag = false;
    };
    class ScopeGuard;

    Flow execute(const Node& node);
    Flow executeAll(const std::vector<Node*>& nodes, std::size_t from = 0);
    Flow executeBlock(const Node& node);
    Flow executeIf(const Node& node);
    Flow executeLoop(const Node& node);
    Flow executeFor(const Node& node);
    Flow executeForIn(const Node& node);
    Flow executeSwitch(const Node& node);
    void declare(const Node& node);
    void declareOne(const Node& node, bool global);
    Value firstMatrix(const Node& node);
    void define(const Node& node);

    VariablePtr find(const std::string& name) const;
    VariablePtr findOrMake(const std::string& name, Kind kind);
    VariablePtr& place(const std::string& name);
    void assign(const Node& target, Value value);
    void assignEntry(const Node& target, const Value& value);
    Value assignment(const Node& node);
    Value step(const Node& node);
    Value element(const Node& node);
    Value unary(const Node& node);
    Value call(const Node& node);
    Value callProcedure(const Procedure& procedure, const Node& call);
    Value callCommand(const Command& command, const Node& call);
    Value callPlugin(const PluginCommand& command, const Node& call);
    std::vector<Word> words(const Node& call);
    static std::string flagOf(const Command& command, const Word& word);
    static void split(const Command& command, const std::vector<Word>& words,
                      std::vector<RawFlag>& flags, std::vector<Value>& args);

    Session& m_session;
    std::unordered_map<std::string, VariablePtr> m_globals;
    std::map<std::string, Procedure> m_procedures;
    Frame m_top;
    Frame* m_frame = &m_top;
    std::shared_ptr<Program> m_program;
    int m_line = 0;
    Value m_last;  ///< of the last expression statement
};

/// A function of the language itself: gets the call's nodes, so that it may change variables.
using Builtin = Value (*)(Interpreter& interpreter, const Node& call);
/// Null when there is none of the name.
Builtin findBuiltin(const std::string& name);

}  // namespace torvel::mel
