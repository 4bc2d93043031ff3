#pragma once

#include <QMainWindow>
#include <QPointer>

namespace torvel {

class MainWindow;

/// A window that a script made: a menu bar and one layout. It runs its "closeCommand" when a person
/// closes it and is deleted then, unless it is kept; `minimizeCommand` and `restoreCommand` at
/// those.
class ScriptWindow : public QMainWindow {
    Q_OBJECT

  public:
    explicit ScriptWindow(MainWindow& owner);
    /// The id of its element; set once it has one.
    void setElement(int id) { m_id = id; }
    /// Shows it with the size wanted, or as large as its content at the first time.
    void present();
    void setWantedSize(int width, int height);  ///< 0: as the content wants it
    void setSizeable(bool sizeable) { m_sizeable = sizeable; }
    bool isSizeable() const { return m_sizeable; }
    void setRetained(bool retained) { m_retained = retained; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    MainWindow& m_owner;
    int m_id = 0;
    int m_width = 0, m_height = 0;
    bool m_sizeable = true, m_retained = false, m_shown = false;
};

}  // namespace torvel
