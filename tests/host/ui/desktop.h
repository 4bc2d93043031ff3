#pragma once

#include <memory>

#include <QApplication>
#include <QMenu>
#include <QMenuBar>

#include "support/test_scene.h"
#include "ui/desktop/main_window.h"
#include "ui/commands.h"

namespace torvel::test {

// Every window needs an application; it stays until the process ends.
inline QApplication& application() {
    static int count = 1;
    static char name[] = "tests";
    static char* arguments[] = {name, nullptr};
    static auto* made = new QApplication(count, arguments);
    return *made;
}

// A language that notes what it was asked to run.
class NotingLanguage : public Language {
  public:
    Status run(const std::string& text, Value&) override {
        texts.push_back(text);
        return answer;
    }
    Status runFile(const std::string& path) override { return run("file " + path, m_none); }

    std::vector<std::string> texts;
    Status answer;

  private:
    Value m_none;
};

// A session with the UI commands, a main window and languages that only note texts.
struct Desktop {
    Desktop() {
        application();
        if (!host.session().findCommand("menu"))
            host.session().addCommands({kUiCommands, kUiCommandCount});
        host.session().python = &python;
        host.session().mel = &mel;
        window = std::make_unique<MainWindow>(host.session());
    }
    ~Desktop() {
        window.reset();
        host.session().python = nullptr;
        host.session().mel = nullptr;
    }

    QMenu* menu(const char* name) const {
        return window->findChild<QMenu*>(QString::fromUtf8(name));
    }

    TestScene host;
    NotingLanguage python, mel;
    std::unique_ptr<MainWindow> window;
};

}  // namespace torvel::test
