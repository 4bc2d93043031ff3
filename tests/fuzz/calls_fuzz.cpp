// Makes a row of command calls out of bytes, on a small rig: any command, flags of its rows, values
// of the kinds they ask for (and now and then of another kind). Afterwards everything is evaluated
// and saved. A failing call has a text.
#include <fuzzer/FuzzedDataProvider.h>

#include "commands/tables.h"
#include "fuzz_scene.h"
#include "script/session.h"

using namespace torvel;

namespace {

// These reach files or the user's settings.
const char* const kLeftOut[] = {"hostRender", "hostCoverage", "optionVar"};

const char* const kTexts[] = {"joint1",
                              "joint2",
                              "joint3",
                              "|joint1|joint2",
                              "box",
                              "boxShape",
                              "circle1",
                              "group1",
                              "*",
                              "joint1.t",
                              "joint1.tx",
                              "joint2.rotate",
                              "box.vtx[0:3]",
                              "box.f[0]",
                              "box.e[*]",
                              "boxShape.pt",
                              "boxShape.pt[2].px",
                              "skinCluster1",
                              "skinCluster1.weightList[0].weights[1]",
                              "time1.outTime",
                              "joint1.worldMatrix[0]",
                              "joint2.worldInverseMatrix",
                              "parentConstraint1",
                              "xyz",
                              "double3",
                              "mesh",
                              "",
                              ".",
                              "|",
                              "world",
                              "persp",
                              "initialShadingGroup",
                              "a b",
                              "a:b",
                              "\\\\",
                              "\n",
                              "plusMinusAverage",
                              "joint",
                              "transform",
                              "double",
                              "string",
                              "x",
                              "vtx",
                              "tx",
                              "translate"};
const double kNumbers[] = {0, 1, -1, 0.5, 3, 90, 1e39, -1e-320, 1e9, 2147483647.0, 16777217.0};

class Caller {
  public:
    Caller(Session& session, FuzzedDataProvider& bytes) : m_session(session), m_bytes(bytes) {}

    void call() {
        const auto& commands = m_session.commands();
        auto at = commands.begin();
        std::advance(at, m_bytes.ConsumeIntegralInRange<std::size_t>(0, commands.size() - 1));
        for (const char* name : kLeftOut)
            if (at->first == name)
                return;
        std::vector<RawFlag> flags;
        const std::size_t wanted = m_bytes.ConsumeIntegralInRange<std::size_t>(0, 4);
        for (std::size_t i = 0; i < wanted; ++i)
            flags.push_back(flagOf(*at->second));
        std::vector<Value> args;
        for (std::size_t i = m_bytes.ConsumeIntegralInRange<std::size_t>(0, 4); i > 0; --i)
            args.push_back(m_bytes.ConsumeIntegralInRange(0, 3) ? text() : value('?'));
        Value result;
        const Status status = m_session.call(at->first, flags, std::move(args), result);
        if (!status && status.text().empty() && at->first != "error")
            fuzz::fail(at->first + " fails without a text");
    }

  private:
    RawFlag flagOf(const Command& command) {
        RawFlag flag;
        flag.fromPython = true;
        const std::size_t number =
            m_bytes.ConsumeIntegralInRange<std::size_t>(0, command.flagCount + 2);
        if (number >= command.flagCount) {
            flag.name = number == command.flagCount       ? "query"
                        : number == command.flagCount + 1 ? "edit"
                                                          : "nothing";
            flag.values = {Value(true)};
            return flag;
        }
        const FlagRow& row = command.flags[number];
        flag.name = row.longName;
        const std::string kinds = row.args;
        if (kinds.empty() || m_bytes.ConsumeIntegralInRange(0, 9) == 0)
            flag.values = {value('b')};
        else if (kinds.size() == 1)
            flag.values = {value(kinds[0])};
        else {
            Value::List list;
            for (char kind : kinds)
                list.push_back(value(kind));
            flag.values = {Value(std::move(list))};
        }
        return flag;
    }

    Value text() {
        return Value(kTexts[m_bytes.ConsumeIntegralInRange<std::size_t>(0, std::size(kTexts) - 1)]);
    }

    Value value(char kind) {
        switch (m_bytes.ConsumeIntegralInRange(0, 19) == 0 ? '?' : kind) {
            case 's': return text();
            case 'b': return Value(m_bytes.ConsumeBool());
            case 'i': return Value(m_bytes.ConsumeIntegralInRange(-2, 40));
            case '?': return m_bytes.ConsumeBool() ? text() : number();
            default: return number();
        }
    }

    Value number() {
        return Value(
            kNumbers[m_bytes.ConsumeIntegralInRange<std::size_t>(0, std::size(kNumbers) - 1)]);
    }

    Session& m_session;
    FuzzedDataProvider& m_bytes;
};

void must(Session& session, const char* command, std::vector<RawFlag> flags,
          std::vector<Value> args) {
    Value result;
    if (const Status done = session.call(command, flags, std::move(args), result); !done)
        fuzz::fail(std::string(command) + ": " + done.text());
}

// A chain of three joints, a box bound to it, a circle that one joint follows.
void makeRig(Session& session) {
    createDefaultNodes(session.scene());
    for (double y : {0.0, 1.0, 2.0})
        must(session, "joint", {{"position", {Value(Value::List{0.0, y, 0.0})}, true}}, {});
    must(session, "polyCube", {{"name", {Value("box")}, true}}, {});
    must(session, "skinCluster", {},
         {Value("joint1"), Value("joint2"), Value("joint3"), Value("box")});
    must(session, "circle", {{"name", {Value("circle1")}, true}}, {});
    must(session, "parentConstraint", {}, {Value("circle1"), Value("joint3")});
    must(session, "select", {}, {Value("joint1")});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    FuzzedDataProvider bytes(data, size);
    Session session;
    addSceneCommands(session);
    makeRig(session);
    Caller caller(session, bytes);
    for (int calls = 0; calls < 40 && bytes.remaining_bytes() > 0; ++calls)
        caller.call();
    fuzz::evaluateAll(session.scene());
    fuzz::expectStable(session.scene());
    return 0;
}
