#include "mel/interpreter.h"

#include "mel/parser.h"
#include "mel/value.h"

namespace torvel::mel {

namespace {

constexpr std::size_t kStackBytes = 3u << 20;
thread_local const char* g_stackBase = nullptr;

const char* stackTop() {
    return static_cast<const char*>(__builtin_frame_address(0));
}

}  // namespace

StackGuard::StackGuard() : m_outermost(g_stackBase == nullptr) {
    if (m_outermost)
        g_stackBase = stackTop();
}

StackGuard::~StackGuard() {
    if (m_outermost)
        g_stackBase = nullptr;
}

void StackGuard::check() {
    const char* top = stackTop();
    const std::size_t used =
        static_cast<std::size_t>(top < g_stackBase ? g_stackBase - top : top - g_stackBase);
    if (g_stackBase && used > kStackBytes)
        throw Fault{
            "The text is nested too deeply or a procedure calls itself without end.", 0, 0, {}};
}

// Opens one scope and closes it however the block is left.
class Interpreter::ScopeGuard {
  public:
    explicit ScopeGuard(Interpreter& owner) : m_frame(*owner.m_frame) {
        m_frame.scopes.emplace_back();
    }
    ~ScopeGuard() { m_frame.scopes.pop_back(); }
    ScopeGuard(const ScopeGuard&) = delete;
    ScopeGuard& operator=(const ScopeGuard&) = delete;

  private:
    Frame& m_frame;
};

Value Interpreter::run(std::string_view text, const std::string& file) {
    const StackGuard guard;
    struct Saved {
        Interpreter& self;
        std::shared_ptr<Program> program;
        Frame* frame;
        int line;
        ~Saved() {
            self.m_program = std::move(program);
            self.m_frame = frame;
            self.m_line = line;
        }
    } saved{*this, m_program, m_frame, m_line};
    Frame top;
    try {
        m_program = parse(text, file);
        m_frame = &top;
        m_last = Value();
        executeAll(m_program->statements);
    } catch (Fault& fault) {
        if (fault.line == 0)
            fault.line = m_line ? m_line : 1;
        if (fault.file.empty())
            fault.file = file;
        throw;
    }
    return std::exchange(m_last, Value());
}

std::string Interpreter::describe(const Fault& fault) {
    const std::string line = std::to_string(fault.line);
    if (fault.column > 0) {
        const std::string where =
            "Line " + line + "." + std::to_string(fault.column) + ": " + fault.text;
        return fault.file.empty() ? where : "file: " + fault.file + " " + where;
    }
    return (fault.file.empty() ? "line " : "file: " + fault.file + " line ") + line + ": " +
           fault.text;
}

void Interpreter::printFault(const Fault& fault) const {
    m_session.log().write(Channel::Error, "// Error: " + describe(fault), true);
}

Interpreter::Flow Interpreter::executeAll(const std::vector<Node*>& nodes, std::size_t from) {
    for (std::size_t i = from; i < nodes.size(); ++i)
        if (const Flow flow = execute(*nodes[i]); flow != Flow::Normal)
            return flow;
    return Flow::Normal;
}

Interpreter::Flow Interpreter::execute(const Node& node) {
    StackGuard::check();
    m_line = node.line;
    if (node.what != NodeKind::Empty)
        m_last = Value();
    switch (node.what) {
        case NodeKind::Expression: m_last = evaluate(*node.children[0]); return Flow::Normal;
        case NodeKind::Block: return executeBlock(node);
        case NodeKind::If: return executeIf(node);
        case NodeKind::While:
        case NodeKind::DoWhile: return executeLoop(node);
        case NodeKind::For: return executeFor(node);
        case NodeKind::ForIn: return executeForIn(node);
        case NodeKind::Switch: return executeSwitch(node);
        case NodeKind::Break: return Flow::Break;
        case NodeKind::Continue: return Flow::Continue;
        case NodeKind::Return:
            m_frame->result = node.children.empty() ? Value() : evaluate(*node.children[0]);
            return Flow::Return;
        case NodeKind::Declare: declare(node); return Flow::Normal;
        case NodeKind::Procedure: define(node); return Flow::Normal;
        case NodeKind::Empty: return Flow::Normal;
        default: evaluate(node); return Flow::Normal;  // the steps of a for
    }
}

Interpreter::Flow Interpreter::executeBlock(const Node& node) {
    if (node.prefix)
        return executeAll(node.children);
    const ScopeGuard scope(*this);
    const Flow flow = executeAll(node.children);
    m_last = Value();
    return flow;
}

Interpreter::Flow Interpreter::executeIf(const Node& node) {
    const std::size_t branch = truthOf(evaluate(*node.children[0])) ? 1 : 2;
    const Flow flow =
        branch < node.children.size() ? execute(*node.children[branch]) : Flow::Normal;
    m_last = Value();
    return flow;
}

Interpreter::Flow Interpreter::executeLoop(const Node& node) {
    const bool first = node.what == NodeKind::DoWhile;
    const Node& condition = *node.children[first ? 1 : 0];
    const Node& body = *node.children[first ? 0 : 1];
    bool skipTest = first;
    while (skipTest || truthOf(evaluate(condition))) {
        skipTest = false;
        const Flow flow = execute(body);
        if (flow == Flow::Return)
            return flow;
        if (flow == Flow::Break)
            break;
    }
    m_last = Value();
    return Flow::Normal;
}

Interpreter::Flow Interpreter::executeFor(const Node& node) {
    const ScopeGuard scope(*this);
    const Node& condition = *node.children[1];
    for (execute(*node.children[0]);
         condition.what == NodeKind::Empty || truthOf(evaluate(condition));
         execute(*node.children[2])) {
        const Flow flow = execute(*node.children[3]);
        if (flow == Flow::Return)
            return flow;
        if (flow == Flow::Break)
            break;
    }
    m_last = Value();
    return Flow::Normal;
}

Interpreter::Flow Interpreter::executeForIn(const Node& node) {
    const ScopeGuard scope(*this);
    const Value items = evaluate(*node.children[1]);
    if (!items.isList())
        throw Fault{"A for-in loop needs an array.", node.line, 0, {}};
    for (const Value& item : items.list()) {
        findOrMake(node.children[0]->text, kindOf(item));
        assign(*node.children[0], item);
        const Flow flow = execute(*node.children[2]);
        if (flow == Flow::Return)
            return flow;
        if (flow == Flow::Break)
            break;
    }
    m_last = Value();
    return Flow::Normal;
}

Interpreter::Flow Interpreter::executeSwitch(const Node& node) {
    const ScopeGuard scope(*this);
    const Value value = evaluate(*node.children[0]);
    std::size_t chosen = 0;
    for (std::size_t i = 1; i < node.children.size(); ++i) {
        const Node& branch = *node.children[i];
        if (branch.prefix && chosen == 0)
            chosen = i;
        if (!branch.prefix && truthOf(combine("==", value, evaluate(*branch.children[0])))) {
            chosen = i;
            break;
        }
    }
    for (std::size_t i = chosen; chosen != 0 && i < node.children.size(); ++i) {
        const Node& branch = *node.children[i];
        const Flow flow = executeAll(branch.children, branch.prefix ? 0 : 1);
        if (flow == Flow::Break)
            break;
        if (flow != Flow::Normal)
            return flow;
    }
    m_last = Value();
    return Flow::Normal;
}

void Interpreter::define(const Node& node) {
    m_procedures[node.text] = {&node, m_program};
}

void Interpreter::declare(const Node& node) {
    for (const Node* declarator : node.children)
        declareOne(*declarator, node.global);
}

VariablePtr& Interpreter::place(const std::string& name) {
    if (m_frame->scopes.empty())
        return m_globals[name];
    Scope& scope = m_frame->scopes.back();
    for (auto& [known, variable] : scope)
        if (known == name)
            return variable;
    scope.emplace_back(name, nullptr);
    return scope.back().second;
}

// Of the declared size: zeros or the value given.
Value Interpreter::firstMatrix(const Node& node) {
    if (node.children.size() < 2)  // a parameter: takes any size
        return defaultOf(node.kind);
    const double rows = numberOf(evaluate(*node.children[0])),
                 columns = numberOf(evaluate(*node.children[1]));
    if (!(rows >= 1.0 && columns >= 1.0 && rows <= 4096.0 && columns <= 4096.0))
        throw Fault{"Invalid size of matrix \"$" + node.text + "\".", node.line, 0, {}};
    const Value zeros = matrixOf(static_cast<std::size_t>(rows), static_cast<std::size_t>(columns));
    return node.children.size() == 3 ? fitMatrix(evaluate(*node.children[2]), zeros) : zeros;
}

void Interpreter::declareOne(const Node& node, bool global) {
    const bool isTop = m_frame->scopes.empty();
    Value first = defaultOf(node.kind);
    if (node.kind.type == Type::Matrix)
        first = firstMatrix(node);
    else if (node.prefix)
        first = Value(Value::List());
    else if (!node.children.empty())
        first = convert(evaluate(*node.children[0]), node.kind);
    if (!global && !isTop) {
        place(node.text) = std::make_shared<Variable>(Variable{node.kind, std::move(first)});
        return;
    }
    VariablePtr& known = m_globals[node.text];
    if (known && (known->kind.type != node.kind.type || known->kind.array != node.kind.array))
        throw Fault{"Invalid redeclaration of variable \"$" + node.text + "\" as a different type.",
                    node.line,
                    0,
                    {}};
    if (!known)
        known = std::make_shared<Variable>(Variable{node.kind, std::move(first)});
    else if (!node.children.empty() || !global)
        known->value = std::move(first);
    if (!isTop) {
        const VariablePtr variable = known;
        place(node.text) = variable;
    }
}

VariablePtr Interpreter::find(const std::string& name) const {
    for (std::size_t i = m_frame->scopes.size(); i-- > 0;)
        for (const auto& [known, variable] : m_frame->scopes[i])
            if (known == name)
                return variable;
    if (m_frame->isProcedure)
        return nullptr;
    const auto found = m_globals.find(name);
    return found == m_globals.end() ? nullptr : found->second;
}

VariablePtr Interpreter::findOrMake(const std::string& name, Kind kind) {
    if (VariablePtr known = find(name))
        return known;
    VariablePtr made = std::make_shared<Variable>(Variable{kind, defaultOf(kind)});
    // In a block, too, an undeclared variable belongs to the whole text or procedure.
    if (!m_frame->isProcedure)
        m_globals[name] = made;
    else
        m_frame->scopes.front().emplace_back(name, made);
    return made;
}

VariablePtr Interpreter::variable(const Node& node) {
    if (node.what != NodeKind::Variable)
        throw Fault{"A variable is needed here.", node.line, 0, {}};
    if (VariablePtr known = find(node.text))
        return known;
    throw Fault{"\"$" + node.text + "\" is an undeclared variable.", node.line, 0, {}};
}

}  // namespace torvel::mel
