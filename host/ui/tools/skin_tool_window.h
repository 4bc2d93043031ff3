#pragma once

#include <QWidget>

#include "script/session.h"

class QComboBox;
class QTimer;
class QVBoxLayout;

namespace torvel {

/// A window that works on one skin of the scene: it offers the skins of meshes, the selected
/// object's first, and follows the selection while it is shown.
class SkinToolWindow : public QWidget, private SceneListener {
    Q_OBJECT

  public:
    SkinToolWindow(Session& session, QWidget* parent);
    ~SkinToolWindow() override;
    /// Brings it to the front with the skin of the selection.
    void present();
    /// Takes the skin of the selection without showing anything.
    void followSelection() { readSkins(); }
    /// The skin worked on; null when the scene has none.
    NodeHandle skin() const { return m_skin; }

  protected:
    Session& session() { return m_session; }
    Scene& scene() const { return m_session.scene(); }
    QVBoxLayout* box() { return m_box; }
    /// Shows the skin and the selection anew.
    virtual void refresh() = 0;
    /// Runs a command; a failure goes to the Script Editor.
    bool run(const std::string& command, const std::vector<RawFlag>& flags,
             std::vector<Value> args = {});
    void tell(const std::string& text);
    void showEvent(QShowEvent* event) override;

  private:
    void selectionChanged() override { later(); }
    void nodeDeleted(NodeHandle) override { later(); }
    void sceneCleared() override { later(); }
    void connectionChanged(const Plug&, const Plug&, bool) override { later(); }
    void later();
    void readSkins();
    void chooseSkin(int index);

    Session& m_session;
    QVBoxLayout* m_box;
    QComboBox* m_choice;
    QTimer* m_timer;
    std::vector<NodeHandle> m_skins;
    NodeHandle m_skin;
};

}  // namespace torvel
