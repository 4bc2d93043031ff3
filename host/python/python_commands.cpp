#include "python/python_language.h"

namespace torvel {
namespace {

// MEL's python("text"): runs in __main__, gives the value of the last expression.
Status runPython(const CommandCall& call, Value& result)
{
    Language* language = call.session().python;
    if (!language)
        return call.fail("Python is not available");
    const std::vector<std::string> texts = call.texts();
    if (texts.empty())
        return call.fail("a text to run is needed");
    for (const std::string& text : texts)
        if (const Status status = language->run(text, result); !status)
            return status;
    return Status::ok();
}

}  // namespace

const Command kPythonCommands[] = {{"python", nullptr, 0, runPython, "Runs Python text in __main__."}};
const std::size_t kPythonCommandCount = std::size(kPythonCommands);

}  // namespace torvel
