#include "mel/language.h"

#include "script/session.h"

namespace torvel {

namespace {

Status runEval(const CommandCall& call, Value& result) {
    std::string text;
    for (const std::string& part : call.texts())
        text += (text.empty() ? "" : " ") + part;
    Language* mel = call.session().mel;
    return mel ? mel->run(text, result) : call.fail("MEL is not available.");
}

const Command kRows[] = {{"eval", nullptr, 0, runEval, "Runs a MEL text and returns its result."}};

}  // namespace

CommandTable melCommands() {
    return {kRows, std::size(kRows)};
}

}  // namespace torvel
