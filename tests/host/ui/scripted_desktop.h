#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>

#include "app/host_setup.h"
#include "host/ui/desktop.h"
#include "ui/desktop/main_window.h"

namespace torvel::test {

/// A main window with both languages, driven by the texts that users write.
class ScriptedDesktop : public testing::Test {
  protected:
    ScriptedDesktop() {
        application();
        setUpSession(session);
        session.log().addSink([this](const LogLine& line) { lines.push_back(line.text); });
        window = std::make_unique<MainWindow>(session);
        py("from maya import cmds, mel");
    }

    static std::string show(const Value& value) {
        if (value.isNone())
            return "None";
        if (value.isString())
            return value.string();
        if (value.isBool())
            return value.truth() ? "True" : "False";
        if (value.isList()) {
            std::string text;
            for (const Value& item : value.list())
                text += (text.empty() ? "" : " ") + show(item);
            return "[" + text + "]";
        }
        return value.isInt() ? std::to_string(value.integer()) : textOfDouble(value.number());
    }
    /// What the text's last expression gives, or "! " and the error.
    std::string run(Language* language, const std::string& text) {
        Value result;
        const Status status = language->run(text, result);
        return status ? show(result) : "! " + status.text();
    }
    std::string py(const std::string& text) { return run(session.python, text); }
    std::string mel(const std::string& text) { return run(session.mel, text); }
    /// True when the text fails with an error that ends so.
    bool fails(const std::string& text, const std::string& end) {
        const std::string error = py(text);
        const bool good = error.rfind("! ", 0) == 0 && error.size() >= end.size() &&
                          error.compare(error.size() - end.size(), end.size(), end) == 0;
        EXPECT_TRUE(good) << error;
        return good;
    }
    template <class Widget = QWidget>
    Widget* find(const char* name) {
        auto* found = window->findChild<Widget*>(QString::fromUtf8(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    void click(const char* name) { find<QAbstractButton>(name)->click(); }
    static void settle() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    std::vector<std::string> lines;
    Session session;
    std::unique_ptr<MainWindow> window;
};

}  // namespace torvel::test
