#include "mel/interpreter.h"
#include "mel/value.h"

namespace torvel::mel {

namespace {

// A text such as "-n" is a flag, too, where the command has it.
bool looksLikeFlag(const Value& value) {
    if (!value.isString() || value.string().size() < 2 || value.string()[0] != '-')
        return false;
    const char c = value.string()[1];
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

void splice(const Value& value, std::vector<Value>& out) {
    if (value.isList())
        out.insert(out.end(), value.list().begin(), value.list().end());
    else if (value.isTuple())
        out.insert(out.end(), value.tuple().items.begin(), value.tuple().items.end());
    else
        out.push_back(value);
}

}  // namespace

Value Interpreter::call(const Node& node) {
    m_line = node.line;
    try {
        if (const auto found = m_procedures.find(node.text); found != m_procedures.end()) {
            const Procedure procedure = found->second;  // it may be defined anew while it runs
            return callProcedure(procedure, node);
        }
        if (const Builtin builtin = findBuiltin(node.text))
            return builtin(*this, node);
        if (const Command* command = m_session.findCommand(node.text))
            return callCommand(*command, node);
        if (const PluginCommand* command = m_session.findPluginCommand(node.text))
            return callPlugin(*command, node);
        throw Fault{"Cannot find procedure \"" + node.text + "\".", node.line, 0, {}};
    } catch (Fault& fault) {
        if (fault.line == 0)
            fault.line = node.line;
        if (fault.file.empty() && m_program)
            fault.file = m_program->file;
        throw;
    }
}

Value Interpreter::callProcedure(const Procedure& procedure, const Node& call) {
    const Node& node = *procedure.node;
    const std::size_t count = node.children.size() - 1;
    if (call.children.size() != count)
        throw Fault{"Wrong number of arguments on call to " + node.text + ".", call.line, 0, {}};
    Frame frame;
    frame.isProcedure = true;
    frame.scopes.emplace_back();
    for (std::size_t i = 0; i < count; ++i) {
        const Node& parameter = *node.children[i];
        const Node& given = *call.children[i];
        VariablePtr bound;
        if (parameter.kind.array && given.what == NodeKind::Variable)
            bound = variable(given);
        if (!bound || !bound->kind.array || bound->kind.type != parameter.kind.type)
            bound = std::make_shared<Variable>(
                Variable{parameter.kind, convert(evaluate(given), parameter.kind)});
        frame.scopes[0].emplace_back(parameter.text, std::move(bound));
    }
    struct Saved {
        Interpreter& self;
        Frame* frame;
        std::shared_ptr<Program> program;
        ~Saved() {
            self.m_frame = frame;
            self.m_program = std::move(program);
        }
    } saved{*this, m_frame, m_program};
    m_frame = &frame;
    m_program = procedure.program;
    executeAll(node.children[count]->children);
    return node.kind.type == Type::None ? Value() : convert(frame.result, node.kind);
}

std::vector<Interpreter::Word> Interpreter::words(const Node& call) {
    std::vector<Word> words;
    std::vector<Value> spliced;
    for (const Node* child : call.children) {
        if (child->what == NodeKind::Flag) {
            words.push_back({Value(child->text), true});
            continue;
        }
        spliced.clear();
        splice(evaluate(*child), spliced);
        for (Value& value : spliced)
            words.push_back({std::move(value), false});
    }
    return words;
}

// The flag that a word stands for; empty for a value.
std::string Interpreter::flagOf(const Command& command, const Word& word) {
    if (word.isFlag)
        return word.value.string();
    if (!looksLikeFlag(word.value))
        return {};
    const std::string name = word.value.string().substr(1);
    return melArgumentCount(command, name, false) >= 0 ? name : std::string();
}

void Interpreter::split(const Command& command, const std::vector<Word>& words,
                        std::vector<RawFlag>& flags, std::vector<Value>& args) {
    bool query = false;
    for (const Word& word : words)
        query = query || modeOfFlag(command, flagOf(command, word)) == kQuery;
    for (std::size_t i = 0; i < words.size(); ++i) {
        RawFlag flag;
        flag.name = flagOf(command, words[i]);
        if (flag.name.empty()) {
            args.push_back(words[i].value);
            continue;
        }
        for (int left = melArgumentCount(command, flag.name, query); left > 0; --left) {
            if (i + 1 >= words.size() || words[i + 1].isFlag)
                break;
            flag.values.push_back(words[++i].value);
        }
        flags.push_back(std::move(flag));
    }
}

Value Interpreter::callCommand(const Command& command, const Node& call) {
    std::vector<RawFlag> flags;
    std::vector<Value> args;
    split(command, words(call), flags, args);
    Value result;
    if (const Status status = m_session.run(command, flags, std::move(args), result); !status)
        throw Fault{status.text(), call.line, 0, {}};
    return result;
}

Value Interpreter::callPlugin(const PluginCommand& command, const Node& call) {
    std::vector<Value> args;
    for (const Word& word : words(call))
        args.push_back(word.isFlag ? Value("-" + word.value.string()) : word.value);
    Value result;
    if (const Status status = m_session.run(call.text, command, args, result); !status)
        throw Fault{status.text(), call.line, 0, {}};
    return result;
}

}  // namespace torvel::mel
