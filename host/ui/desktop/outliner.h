#pragma once

#include <unordered_map>
#include <unordered_set>

#include <QTreeWidget>

#include "graph/scene.h"

class QTimer;

namespace torvel {

/// The DAG as a tree. Refreshes itself once the scene is at rest and only while it can be seen;
/// children are made when a branch is opened. A click selects in the scene, the scene's selection
/// is shown here.
class Outliner : public QTreeWidget, private SceneListener {
    Q_OBJECT

  public:
    explicit Outliner(Scene& scene, QWidget* parent = nullptr);
    ~Outliner() override;

    /// Rebuilds now, keeping open branches open.
    void refresh();

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void nodeCreated(NodeHandle) override { touch(); }
    void nodeDeleted(NodeHandle) override { touch(); }
    void nodeRenamed(NodeHandle, const std::string&) override { touch(); }
    void nodeReparented(NodeHandle) override { touch(); }
    using QTreeWidget::selectionChanged;  // the widget's own, beside the listener's
    void selectionChanged() override;
    void sceneCleared() override { touch(); }

    void touch();
    void update();
    void fill(QTreeWidgetItem* item);
    QTreeWidgetItem* makeItem(NodeHandle handle);
    void rememberOpen(QTreeWidgetItem* item);
    void showSelection();
    void takeSelection();
    NodeHandle handleOf(const QTreeWidgetItem* item) const;

    Scene& m_scene;
    QTimer* m_timer = nullptr;
    std::unordered_set<std::uint64_t> m_open;
    bool m_stale = true;
    bool m_selectionStale = true;
    bool m_busy = false;
};

}  // namespace torvel
