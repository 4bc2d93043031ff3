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
    kScriptFailed = 1,  ///< or something could not be written, or --check found something
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
    /// Closes the scene and empties every buffer, Python's too: the program leaves without
    /// destructors. Returns the exit code, which is kScriptFailed instead of kDone when the trace
    /// or standard output could not be written.
    int finish(int code);

  private:
    void flush();
    bool openTrace();
    bool trustFolders();
    void showLog();
    bool loadPlugins();
    bool loadPlugin(const std::string& nameOrPath);
    bool openScene();
    bool runSteps();
    bool runStep(const ScriptStep& step);
    bool maySave(bool scriptsDone);
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
