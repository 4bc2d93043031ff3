#pragma once

#include <vector>

#include <QWidget>

class QHBoxLayout;
class QLabel;

namespace torvel {

/// A label with fields behind it in one row, and a second label at the end when it has a text.
/// Columns count from 1, the label's; a group without a label has none for it.
class GroupWidget : public QWidget {
  public:
    explicit GroupWidget(QWidget* parent);
    /// Adds a field as the next column.
    void add(QWidget* field, int width);
    QWidget* field(int index) const;  ///< from 0; null behind the last
    int fieldCount() const { return static_cast<int>(m_fields.size()); }
    void setLabel(const QString& label);
    QString label() const;
    void setExtraLabel(const QString& label);
    QString extraLabel() const;
    void setColumnWidth(int column, int width);
    void setColumnAlign(int column, Qt::Alignment align);
    /// The column that takes what is left.
    void setAdjustable(int column);
    /// Fields below one another.
    void setVertical();

    /// The fields of one class, null where the field is of another.
    template <class Field>
    Field* as(int index) const {
        return dynamic_cast<Field*>(field(index));
    }

  private:
    QWidget* cell(int column) const;

    QHBoxLayout* m_box;
    QLabel *m_label, *m_extra;
    QWidget* m_column = nullptr;
    std::vector<QWidget*> m_fields;
};

}  // namespace torvel
