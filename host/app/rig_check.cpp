#include "app/rig_check.h"

#include "script/session.h"

namespace torvel {

std::string pythonLiteral(const std::string& text) {
    std::string literal = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\')
            literal += '\\';
        if (c == '\n')
            literal += "\\n";
        else if (c == '\r')
            literal += "\\r";
        else if (c == '\0')
            literal += "\\0";
        else
            literal += c;
    }
    return literal + "'";
}

Status checkRigs(Session& session, const std::string& folder, RigReport& report) {
    const std::string path = pythonLiteral(folder);
    const std::string script =
        "import sys\n"
        "sys.path.insert(0, " +
        path +
        ")\n"
        "try:\n"
        "    import torvel_check\n"
        "finally:\n"
        "    sys.path.remove(" +
        path +
        ")\n"
        "torvel_check.report()\n";
    Value answer;
    if (const Status asked = session.python->run(script, answer); !asked)
        return asked;
    const Value::List& parts = answer.list();
    report.findings = std::stoi(parts.at(0).string());
    report.text = parts.at(1).string();
    report.json = parts.at(2).string();
    return Status::ok();
}

}  // namespace torvel
