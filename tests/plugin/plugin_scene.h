#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <maya/MObject.h>
#include <maya/MObjectArray.h>

#include <QTemporaryDir>

#include "commands/session.h"

class QWidget;

namespace torvel {
class MainWindow;
}

namespace torvel::test {

/// A host with both languages and its desktop, off screen, with a home folder of its own: what a
/// user has in front of him after the plug-in was loaded, but for the plug-in's menu. The four
/// commands are there. No update server answers.
class PluginScene : public ::testing::Test {
  public:
    PluginScene();
    ~PluginScene() override;

    Session& session() { return m_session; }
    Scene& scene() { return m_session.scene(); }
    MainWindow& mainWindow() { return *m_window; }

    /// Runs a Python text that has to succeed; `cmds` is there. Gives the value of its last
    /// expression.
    Value python(const std::string& text);
    /// The same, as text: a list gives its texts joined by blanks.
    std::string pythonText(const std::string& text);

    /// The node of a name or path; a failure of the test when there is not exactly one.
    NodeHandle node(const std::string& name);
    Plug plug(const std::string& path, const std::string& attribute);
    MObject object(const std::string& name);
    MObjectArray objects(const std::vector<std::string>& names);
    bool exists(const std::string& name);
    void select(const std::vector<std::string>& names);
    /// Full paths of the selected nodes.
    std::vector<std::string> selected();

    /// What happened since the start or the last forget(): scripts as "python <form>: <text>" or
    /// "mel <form>: <text>" with " (failed)" behind a script that failed, lines as "info: ...",
    /// "warning: ..." or "error: ...". The lines that the languages print themselves are left out.
    std::vector<std::string> transcript();
    /// The lines alone.
    std::vector<std::string> messages();
    /// The scripts alone, in the form above.
    std::vector<std::string> scripts();
    /// How many error lines the languages printed themselves.
    int languageErrors();
    void forget() { m_session.record().clear(); }

    /// Opens the skeleton window by its command, today's version check done; null when none came
    /// up.
    QWidget* openTool();
    QWidget* openTwist();
    /// Runs the command and gives the window of that name that it opened; null when none came up.
    QWidget* openWindow(const std::string& command, const char* objectName);
    std::vector<QWidget*> toolWindows();
    std::vector<QWidget*> windowsNamed(const char* objectName);
    void press(QWidget* window, const char* button);
    void check(QWidget* window, const char* box, bool on);
    /// Opens a window, sets its box, selects and presses Freeze Rotations; forgets what the
    /// preparation recorded.
    void freeze(const std::vector<std::string>& selection, bool allHierarchy);

    static QString settingsPath();
    /// Makes a settings file in which today's version check is done and no licence is asked for.
    void passDailyStep();

  private:
    QTemporaryDir m_home;
    Session m_session;
    std::unique_ptr<MainWindow> m_window;
};

/// Full paths of the nodes, "(null)" for null objects.
std::vector<std::string> pathsOf(const MObjectArray& nodes);
/// Lets Qt delete what was closed.
void finishDeletion();

using Lines = std::vector<std::string>;

}  // namespace torvel::test
