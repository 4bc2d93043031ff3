#include <clocale>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <QApplication>

#include "app/program.h"
#include "ui/desktop/style.h"

namespace {

bool hasScreen() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* value = std::getenv(name); value && *value)
            return true;
    return false;
}

// Without a screen nobody could close the desktop again.
void chooseScreen(torvel::Options& options) {
#ifdef __linux__
    if (!options.batch && !hasScreen()) {
        std::cerr << "torvel-host: no display, working as with --batch" << std::endl;
        options.batch = true;
    }
#endif
    if (options.batch)
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

}  // namespace

int main(int argc, char** argv) {
    torvel::ParsedOptions parsed =
        torvel::parseOptions(std::vector<std::string>(argv + 1, argv + argc));
    if (!parsed.run) {
        (parsed.code == 0 ? std::cout : std::cerr) << parsed.text << std::flush;
        return parsed.code == 0 && !std::cout ? torvel::kScriptFailed : parsed.code;
    }
    chooseScreen(parsed.options);

    // Neither is ever deleted: plug-ins and Python may hold what hangs on them until the process
    // ends.
    int count = 1;
    auto* application = new QApplication(count, argv);
    std::setlocale(LC_NUMERIC, "C");  // Qt took over the user's; scripts and libraries print numbers
    application->setApplicationName(QStringLiteral("torvel-host"));
    torvel::applyDesktopStyle(*application);
    auto* program = new torvel::Program(std::move(parsed.options));
    const int code = program->run();
    std::_Exit(program->finish(code));
}
