#pragma once

#include "commands/skin/copy.h"
#include "ui/tools/skin_tool_window.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QTreeWidget;

namespace torvel {

/// The options of "Mirror Skin Weights": plane, direction and pairing, the number of points that
/// would be written and the partner of each influence; its buttons run copySkinWeights. The choices
/// stay for the next time.
class SkinMirrorWindow : public SkinToolWindow {
    Q_OBJECT

  public:
    SkinMirrorWindow(Session& session, QWidget* parent);
    /// Mirrors the chosen skin onto itself and tells how many points were written.
    void mirror();

  protected:
    void refresh() override;

  private:
    CopyOptions options() const;
    void buildChoices();
    void buildButtons();
    QComboBox* association(const QString& none, const char* name);

    QButtonGroup* m_planes;
    QCheckBox* m_direction;
    QComboBox *m_surface, *m_first, *m_second;
    QLabel* m_preview;
    QTreeWidget* m_pairs;
    QWidget* m_buttons;
};

}  // namespace torvel
