#pragma once

#include <QMainWindow>

#include "base/value.h"
#include "script/session.h"
#include "ui/controls/dialog_state.h"
#include "ui/tools/commands.h"
#include "ui/controls/tree.h"

namespace torvel {

class Outliner;
class SceneView;
class ScriptEditor;
class Session;

/// The host's desktop: menu bar, outliner, view, Script Editor. Its object name is "MayaWindow", by
/// which scripts know it. The constructor makes it the session's main window, the destructor takes
/// it back.
class MainWindow : public QMainWindow, public Desktop {
    Q_OBJECT

  public:
    explicit MainWindow(Session& session);
    Session& session() const { return m_session; }
    ~MainWindow() override;

    UiTree& tree() { return m_tree; }
    /// Runs the command text of a menu item; nothing for an item that is gone or has none.
    void runItem(int id);
    /// Runs what a window, layout or control was given for an event ("changeCommand"); nothing when
    /// it is gone or was given none. A callable takes `values`; in a text "%1" (Python) or "#1"
    /// (MEL) stands for the first of them.
    void runEvent(int id, const std::string& event, const std::vector<Value>& values = {});
    /// While one lives, a change of a control is a script's and not a person's: it tells no event.
    class Scripted {
      public:
        explicit Scripted(MainWindow& window) : m_window(window) { ++m_window.m_scripted; }
        ~Scripted() { --m_window.m_scripted; }
        Scripted(const Scripted&) = delete;
        Scripted& operator=(const Scripted&) = delete;

      private:
        MainWindow& m_window;
    };
    bool isScripted() const { return m_scripted > 0; }
    /// What dialogs without a person answer, and the state of the one progress window.
    DialogState& dialogs() { return m_dialogs; }
    ToolState& tools() { return m_tools; }
    /// Opens a scene as File > Open does, without asking; a failure is in the log.
    bool openScene(const QString& path);
    /// Writes the window's title anew: "Torvel host - leg.ma".
    void refreshTitle();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void buildFileMenu();
    void buildEditMenu();
    void buildWindowsMenu();
    QMenu* addMenu(const QString& label, const char* name);
    void open();
    void save();
    void saveAs();
    bool saveTo(const QString& path);
    bool mayDiscard();
    void deleteSelected();

    Session& m_session;
    UiTree m_tree;
    DialogState m_dialogs;
    ToolState m_tools;
    Outliner* m_outliner = nullptr;
    SceneView* m_view = nullptr;
    ScriptEditor* m_editor = nullptr;
    int m_sink = 0;
    int m_scripted = 0;
};

/// The main window of a session; null when it has none.
MainWindow* mainWindowOf(const Session& session);

}  // namespace torvel
