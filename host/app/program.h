#pragma once

#include <fstream>
#include <memory>
#include <string>

#include "app/options.h"

namespace torvel {

class MainWindow;
class Session;

/// Exit codes of the program.
enum ExitCode {
    kDone = 0,
    kScriptFailed = 1,  ///< or --check found something
    kWrongUse = 2,
    kUnreadableScene = 3,
    kVerifyDiffers = 4
};

/// One run of the program after its options are read: session, window, plug-ins, scene, scripts,
/// saving, desktop. A QApplication exists already.
class Program {
  public:
    explicit Program(Options options);
    ~Program();

    /// Returns the exit code. With a desktop it comes back when the last window is closed.
    int run();
    /// Empties every buffer, Python's too: the program leaves without destructors.
    void flush();

  private:
    bool openTrace();
    void showLog();
    bool loadPlugins();
    bool loadPlugin(const std::string& nameOrPath);
    bool openScene();
    bool runSteps();
    bool runStep(const ScriptStep& step);
    bool saveScene();
    bool drawPicture();
    int compare(const struct SceneState& before);
    int check();
    bool writeText(const std::string& path, const std::string& text);
    void setArguments(const std::string& script);
    void complain(const std::string& text);

    Options m_options;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<MainWindow> m_window;
    std::ofstream m_trace;
};

}  // namespace torvel
