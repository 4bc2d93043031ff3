#include "script/output.h"

#include <cstdio>
#include <utility>

namespace torvel {

namespace {

ScriptOutput& listener() {
    static ScriptOutput output;
    return output;
}

}  // namespace

void setScriptOutput(ScriptOutput output) {
    listener() = std::move(output);
}

void writeScriptOutput(const std::string& text, bool isError) {
    std::FILE* stream = isError ? stderr : stdout;
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
    if (listener())
        listener()(text, isError);
}

}  // namespace torvel
