#pragma once

#include <QComboBox>

namespace torvel {

/// A choice of one among the actions that were added to it. Its entries follow the actions: their
/// texts, and their going.
class OptionMenu : public QComboBox {
    Q_OBJECT

  public:
    using QComboBox::QComboBox;

  protected:
    void actionEvent(QActionEvent* event) override;
};

}  // namespace torvel
