#include "script/output.h"

#include <cstdio>
#include <utility>

namespace torvel {

void ScriptOutput::listen(Listener listener) {
    m_listener = std::move(listener);
}

void ScriptOutput::write(const std::string& text, bool isError) {
    std::FILE* stream = isError ? stderr : stdout;
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
    if (m_listener)
        m_listener(text, isError);
}

}  // namespace torvel
