#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "host/mel/probe_commands.h"
#include "mel/language.h"
#include "python/language.h"

namespace torvel::test {

/// A session with both languages and the probe commands; `cmds` and `mel` are imported in __main__.
class Python : public testing::Test {
  protected:
    Python() {
        m_session.addCommands({kProbeCommands, 3});
        m_mel = makeMelLanguage(m_session);
        m_python = makePythonLanguage(m_session);
        m_session.log().addSink([this](const LogLine& line) { m_shown += line.text + "\n"; });
        m_session.output().listen([this](const std::string& text, bool) { m_printed += text; });
        run("from maya import cmds, mel");
    }
    ~Python() override { m_session.output().listen({}); }

    static std::string show(const Value& value) {
        if (value.isNone())
            return "none";
        if (value.isString())
            return "'" + value.string() + "'";
        if (value.isTuple())
            return "?";
        if (value.isBool())
            return value.truth() ? "True" : "False";
        if (!value.isList())
            return value.isDouble() ? textOfDouble(value.number()) + "f"
                                    : std::to_string(value.integer());
        std::string text = "[";
        for (const Value& item : value.list())
            text += (text.size() > 1 ? " " : "") + show(item);
        return text + "]";
    }
    /// What the text delivers, or "! " and the error.
    std::string run(const std::string& text) {
        Value result;
        const Status status = m_python->run(text, result);
        return status ? show(result) : "! " + status.text();
    }
    /// "ValueError: text" of what an expression raises, its str otherwise.
    std::string raised(const std::string& expression) {
        return run(
            "def f():\n    try:\n        return str(" + expression +
            ")\n    except Exception as e:\n        return type(e).__name__ + ': ' + str(e)\nf()");
    }

    std::string m_shown, m_printed;
    Session m_session;
    std::unique_ptr<Language> m_mel, m_python;
};

}  // namespace torvel::test
