#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPlainTextEdit>

#include "host/ui/desktop.h"

namespace torvel {
namespace {

using test::Desktop;

TEST(MainWindow, IsTheSessionsMainWindowWhileItLives) {
    Desktop desktop;
    EXPECT_EQ(desktop.host.session().mainWindow, desktop.window.get());
    EXPECT_EQ(desktop.window->objectName(), "MayaWindow");
    desktop.window.reset();
    EXPECT_EQ(desktop.host.session().mainWindow, nullptr);
    // Lines after its end reach no widget.
    desktop.host.session().log().write(Channel::Info, "after");
}

TEST(MainWindow, TitleNamesTheScene) {
    Desktop desktop;
    EXPECT_EQ(desktop.window->windowTitle(), "Torvel host - untitled");
    desktop.host.scene().changeDocument(
        [](Document& document) { document.fileName = "/somewhere/rigs/leg.ma"; });
    desktop.window->refreshTitle();
    EXPECT_EQ(desktop.window->windowTitle(), "Torvel host - leg.ma");
}

TEST(MainWindow, ItsLogShowsTheSessionsLines) {
    Desktop desktop;
    desktop.host.session().log().write(Channel::Info, "first");
    desktop.host.session().log().write(Channel::Error, "second");
    EXPECT_EQ(desktop.window->findChild<QPlainTextEdit*>()->toPlainText(),
              "first\n# Error: second");
}

TEST(MainWindow, ATypedLineRunsInPython) {
    Desktop desktop;
    auto* input = desktop.window->findChild<QLineEdit*>("commandLine");
    input->setText("cmds.ls()");
    Q_EMIT input->returnPressed();
    EXPECT_EQ(desktop.python.texts, std::vector<std::string>{"cmds.ls()"});
    EXPECT_TRUE(input->text().isEmpty());
    Q_EMIT input->returnPressed();
    EXPECT_EQ(desktop.python.texts.size(), 1u);
}

TEST(MainWindow, OpeningWhatCannotBeOpenedIsToldInTheLog) {
    Desktop desktop;
    EXPECT_FALSE(desktop.window->openScene("/no/such/file.ma"));
    ASSERT_FALSE(desktop.host.lines().empty());
    EXPECT_EQ(desktop.host.lines().back().channel, Channel::Error);
}

}  // namespace
}  // namespace torvel
