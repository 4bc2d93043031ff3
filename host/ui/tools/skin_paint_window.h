#pragma once

#include <vector>

#include "commands/skin/paint.h"
#include "ui/tools/skin_tool_window.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QListWidget;
class QPushButton;
class QTableWidget;

namespace torvel {

/// Painting by typing: an influence, an operation and a value for the selected points or all of
/// them, and a table of their weights in which each can be typed.
class SkinPaintWindow : public SkinToolWindow {
    Q_OBJECT

  public:
    SkinPaintWindow(Session& session, QWidget* parent);
    /// Does the chosen operation and tells how many points changed.
    void paint();

  protected:
    void refresh() override;

  private:
    QWidget* influencePage();
    QWidget* brushPage();
    void readInfluences();
    void showWeights();
    void typed(int row, int column);
    void hold(bool on);
    NodeHandle influence() const;  ///< null when none is chosen
    std::int32_t logical() const;  ///< -1 when none is chosen
    std::vector<int> points() const;
    void apply(PaintMode mode, double value, const std::vector<int>& points);

    QListWidget* m_influences;
    QCheckBox* m_held;
    QComboBox* m_mode;
    QDoubleSpinBox* m_value;
    QButtonGroup* m_target;
    QLabel* m_summary;
    QTableWidget* m_table;
    QPushButton* m_paint;
    std::vector<NodeHandle> m_nodes;  ///< of the list, same order
    std::vector<int> m_rows;          ///< points of the table
    NodeHandle m_chosen;
    bool m_busy = false;
};

}  // namespace torvel
