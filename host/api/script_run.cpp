#include "api/script_run.h"

#include <exception>

#include "api/bridge.h"

namespace torvel::api {

namespace {

Status runText(Session& session, ScriptLanguage language, const std::string& text, Value& value) {
    Language* runner = language == ScriptLanguage::Mel ? session.mel : session.python;
    if (!runner)
        return Status::failure("the language is not available");
    try {
        return runner->run(text, value);
    } catch (const std::exception& fault) {
        return Status::failure(fault.what());
    }
}

}  // namespace

MStatus runScript(const Script& script, const Taker& take) {
    Session* session = Session::current();
    if (!session)
        return MStatus::kFailure;
    const bool mel = script.language == ScriptLanguage::Mel;
    RecordEntry entry;
    entry.isScript = true;
    entry.language = mel ? "mel" : "python";
    entry.form = script.form;
    entry.display = script.display;
    entry.undo = script.undo;
    entry.text = Bridge::text(script.text);
    if (script.display)
        session->log().write(Channel::Info, entry.text, true);

    Value value;
    const Status status = runText(*session, script.language, entry.text, value);
    entry.error = status.text();
    entry.ok = status.isOk();
    if (entry.ok && !take(value, entry.result)) {
        entry.ok = false;
        entry.error = "the result is not of the type asked for";
    }
    const bool good = entry.ok;
    session->record().add(std::move(entry));
    return good ? MStatus::kSuccess : MStatus::kFailure;
}

}  // namespace torvel::api
