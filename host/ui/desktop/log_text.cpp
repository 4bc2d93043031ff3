#include "ui/desktop/log_text.h"

namespace torvel {

std::string shownLine(const LogLine& line) {
    const bool marked = line.text.rfind("#", 0) == 0 || line.text.rfind("//", 0) == 0;
    if (marked || line.channel == Channel::Info || line.channel == Channel::Result)
        return line.text;
    return (line.channel == Channel::Warning ? "# Warning: " : "# Error: ") + line.text;
}

}  // namespace torvel
