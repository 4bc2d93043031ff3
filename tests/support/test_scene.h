#pragma once

#include <string>
#include <vector>

#include "script/session.h"

namespace torvel::test {

/// One flag of a call: `flag("worldSpace")`, `flag("translation", {1, 2, 3})`.
RawFlag flag(std::string name, std::vector<Value> values = {});

/// A session with an empty scene and every command, and short ways to drive and read it. A name
/// that does not resolve is reported as a failure of the test.
class TestScene {
  public:
    using Args = std::vector<Value>;
    using Flags = std::vector<RawFlag>;

    TestScene();
    ~TestScene();

    Session& session() { return m_session; }
    Scene& scene() { return m_session.scene(); }

    /// Runs a command and hands back its status; the result lies in `result()`.
    Status run(const std::string& command, const Args& args = {}, const Flags& flags = {});
    const Value& result() const { return m_result; }
    /// Runs a command that has to succeed.
    Value call(const std::string& command, const Args& args = {}, const Flags& flags = {});
    /// Same, for a result that is one text (or a list: its texts joined by blanks; none: "").
    std::string text(const std::string& command, const Args& args = {}, const Flags& flags = {});
    /// Text of a failing command, with "ok" for one that succeeds.
    std::string error(const std::string& command, const Args& args = {}, const Flags& flags = {});

    /// A node made by createNode under `parent` ("" for the world), not selected.
    std::string make(const std::string& type, const std::string& name,
                     const std::string& parent = {});

    NodeHandle node(const std::string& name);
    Plug plug(const std::string& name);
    double number(const std::string& plugName);  ///< as getAttr gives it (degrees)
    std::vector<double> numbers(
        const std::string& plugName);  ///< of a compound or a matrix, as getAttr gives it
    void set(const std::string& plugName, double value);
    void set(const std::string& plugName, double x, double y, double z);
    bool exists(const std::string& name);
    std::vector<double> worldPosition(const std::string& name);
    std::vector<double> worldMatrix(const std::string& name);

    /// Lines shown since the start (or the last clearLines).
    const std::vector<LogLine>& lines() const { return m_lines; }
    void clearLines() { m_lines.clear(); }

  private:
    std::vector<LogLine> m_lines;  // outlives the session, which may still write while it ends
    Session m_session;
    Value m_result;
};

/// Numbers of a list or tuple, nested ones flattened.
std::vector<double> numbersOf(const Value& value);
/// Texts of a list of texts.
std::vector<std::string> textsOf(const Value& value);
/// Reports each entry that is farther away than `tolerance`.
void expectNear(const std::vector<double>& actual, const std::vector<double>& expected,
                double tolerance = 1e-9);

}  // namespace torvel::test
