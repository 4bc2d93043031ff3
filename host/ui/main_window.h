#pragma once

#include <QMainWindow>

#include "ui/ui_tree.h"

namespace torvel {

class Outliner;
class SceneView;
class ScriptEditor;
class Session;

/// The host's desktop: menu bar, outliner, view, Script Editor. Its object name is "MayaWindow", by
/// which scripts know it. The constructor makes it the session's main window, the destructor takes
/// it back.
class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    explicit MainWindow(Session& session);
    ~MainWindow() override;

    UiTree& tree() { return m_tree; }
    /// Runs the command text of a menu item; nothing for an item that is gone or has none.
    void runItem(int id);
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
    Outliner* m_outliner = nullptr;
    SceneView* m_view = nullptr;
    ScriptEditor* m_editor = nullptr;
    int m_sink = 0;
};

}  // namespace torvel
