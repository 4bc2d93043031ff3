#pragma once

#include <map>

#include <QWidget>

class QGridLayout;
class QHBoxLayout;
class QPushButton;
class QScrollArea;
class QTabWidget;
class QVBoxLayout;

namespace torvel {

/// A widget that places the widgets made inside it. Widths are pixels; columns count from 1.
class LayoutWidget : public QWidget {
  public:
    using QWidget::QWidget;
    /// The widget that children are made in; the layout itself unless it wraps another.
    virtual QWidget* content() { return this; }
    /// Places a child of content(). A fixed width that the child has is what its maker asked for.
    virtual void take(QWidget* child) = 0;
    /// No room for a further child.
    virtual bool isFull() const { return false; }
};

/// Children below one another: as wide as they ask to be, or stretched to the column.
class ColumnWidget : public LayoutWidget {
  public:
    ColumnWidget(QWidget* parent, bool adjustable);
    void setSpacing(int rows);
    void setColumnWidth(int width) { m_width = width; }
    /// "left", "right", "both" or "none" side stands `offset` pixels from the column's edge.
    void attach(const QString& side, int offset);
    void take(QWidget* child) override;
    bool isAdjustable() const { return m_adjustable; }

  private:
    QVBoxLayout* m_box;
    Qt::Alignment m_align = Qt::AlignLeft;
    int m_width = 0;
    bool m_adjustable, m_stretched = false;
};

/// Cells filled row by row, or column by column when the number of rows is what was given.
class GridWidget : public LayoutWidget {
  public:
    GridWidget(QWidget* parent, int columns, int rows);
    void setColumnWidth(int column, int width);
    void setRowHeight(int row, int height);
    /// Room on the left of a column, above a row.
    void setColumnSpacing(int column, int pixels);
    void setRowSpacing(int row, int pixels);
    /// Of the texts in the column.
    void setColumnAlign(int column, Qt::Alignment align) { m_aligns[column] = align; }
    void setAdjustable(int column);
    void take(QWidget* child) override;
    int columnCount() const { return m_columns; }
    int rowCount() const { return m_rows; }

  private:
    QGridLayout* m_grid;
    int m_columns, m_rows, m_filled = 0, m_adjustable = 0;
    std::map<int, int> m_widths, m_heights;
    std::map<int, Qt::Alignment> m_aligns;
};

/// One row; the adjustable column takes what is left.
class RowWidget : public LayoutWidget {
  public:
    RowWidget(QWidget* parent, int columns);
    void setColumnWidth(int column, int width);
    void setColumnAlign(int column, Qt::Alignment align) { m_aligns[column] = align; }
    void setAdjustable(int column) { m_adjustable = column; }
    void take(QWidget* child) override;
    bool isFull() const override { return m_filled >= m_columns; }
    int columnCount() const { return m_columns; }

  private:
    QHBoxLayout* m_box;
    int m_columns, m_adjustable = 0, m_filled = 0;
    std::map<int, int> m_widths;
    std::map<int, Qt::Alignment> m_aligns;
};

/// A frame with a title, which folds its content when it is collapsable.
class FrameWidget : public LayoutWidget {
  public:
    explicit FrameWidget(QWidget* parent);
    void setLabel(const QString& label);
    QString label() const { return m_label; }
    void setLabelVisible(bool visible);
    void setMarginWidth(int width);
    void setMarginHeight(int height);
    int marginWidth() const;
    int marginHeight() const;
    void setCollapsable(bool collapsable);
    bool isCollapsable() const { return m_collapsable; }
    void setCollapsed(bool collapsed);
    bool isCollapsed() const;
    void setBorderVisible(bool visible);
    QPushButton* header() { return m_header; }
    QWidget* content() override { return m_content; }
    void take(QWidget* child) override;

  private:
    void refreshHeader();

    QPushButton* m_header;
    QWidget* m_content;
    QString m_label;
    bool m_collapsable = false, m_labelVisible = true;
};

/// A view onto a column that may be larger than it.
class ScrollWidget : public LayoutWidget {
  public:
    ScrollWidget(QWidget* parent, bool resizable);
    QWidget* content() override { return m_column; }
    void take(QWidget* child) override { m_column->take(child); }

  private:
    QScrollArea* m_area;
    ColumnWidget* m_column;
};

/// One child at a time, chosen by its tab. A tab bears the child's name until it gets a label.
class TabWidget : public LayoutWidget {
  public:
    explicit TabWidget(QWidget* parent);
    QTabWidget* tabs() { return m_tabs; }
    void take(QWidget* child) override;

  private:
    QTabWidget* m_tabs;
};

}  // namespace torvel
