#include "ui/controls/layout_widgets.h"

#include <algorithm>

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

namespace torvel {

namespace {

// What a layout stretches has to be allowed to grow and shrink again.
void letGrow(QWidget* child) {
    child->setMinimumWidth(0);
    child->setMaximumWidth(QWIDGETSIZE_MAX);
    QSizePolicy policy = child->sizePolicy();
    policy.setHorizontalPolicy(QSizePolicy::Expanding);
    child->setSizePolicy(policy);
}

template <class Map>
typename Map::mapped_type valueAt(const Map& map, int key, typename Map::mapped_type fallback) {
    const auto found = map.find(key);
    return found == map.end() ? fallback : found->second;
}

void alignText(QWidget* child, Qt::Alignment align) {
    if (auto* label = qobject_cast<QLabel*>(child); label && align)
        label->setAlignment(align);
}

template <class Box>
Box* plainBox(QWidget* owner) {
    auto* box = new Box(owner);
    box->setContentsMargins(0, 0, 0, 0);
    box->setSpacing(0);
    return box;
}

}  // namespace

ColumnWidget::ColumnWidget(QWidget* parent, bool adjustable)
    : LayoutWidget(parent), m_box(plainBox<QVBoxLayout>(this)), m_adjustable(adjustable) {
    m_box->addStretch(1);  // rows keep their heights; what is left over stays below them
}

void ColumnWidget::setSpacing(int rows) {
    m_box->setSpacing(rows);
}

void ColumnWidget::attach(const QString& side, int offset) {
    const bool left = side == QLatin1String("left"), right = side == QLatin1String("right");
    m_stretched = side == QLatin1String("both");
    m_align = right ? Qt::AlignRight : Qt::AlignLeft;
    m_box->setContentsMargins(left || m_stretched ? offset : 0, 0,
                              right || m_stretched ? offset : 0, 0);
}

void ColumnWidget::take(QWidget* child) {
    const bool stretched = m_adjustable || (m_stretched && m_width > 0);
    if (m_adjustable)
        letGrow(child);
    else if (stretched)
        child->setFixedWidth(m_width);
    m_box->insertWidget(m_box->count() - 1, child, 0, m_adjustable ? Qt::Alignment() : m_align);
}

// Cells stand at odd rows and columns; the even ones are the room between them.
GridWidget::GridWidget(QWidget* parent, int columns, int rows)
    : LayoutWidget(parent),
      m_grid(plainBox<QGridLayout>(this)),
      m_columns(std::max(1, columns)),
      m_rows(rows) {
    m_grid->setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void GridWidget::setColumnWidth(int column, int width) {
    m_widths[column] = width;
    const int at = 2 * column - 1;
    m_grid->setColumnMinimumWidth(at, width);
    for (int row = 1; row < m_grid->rowCount() && column != m_adjustable; row += 2)
        if (QLayoutItem* item = m_grid->itemAtPosition(row, at))
            if (item->widget())
                item->widget()->setFixedWidth(width);
}

void GridWidget::setRowHeight(int row, int height) {
    m_heights[row] = height;
    m_grid->setRowMinimumHeight(2 * row - 1, height);
}

void GridWidget::setColumnSpacing(int column, int pixels) {
    m_grid->setColumnMinimumWidth(2 * column - 2, pixels);
}

void GridWidget::setRowSpacing(int row, int pixels) {
    m_grid->setRowMinimumHeight(2 * row - 2, pixels);
}

void GridWidget::setAdjustable(int column) {
    m_adjustable = column;
    if (column < 1)
        return;
    m_grid->setAlignment(Qt::AlignTop);
    m_grid->setColumnStretch(2 * column - 1, 1);
}

void GridWidget::take(QWidget* child) {
    const int row = (m_rows > 0 ? m_filled % m_rows : m_filled / m_columns) + 1;
    const int column = (m_rows > 0 ? m_filled / m_rows : m_filled % m_columns) + 1;
    ++m_filled;
    if (column == m_adjustable)
        letGrow(child);
    else if (const int width = valueAt(m_widths, column, 0); width > 0)
        child->setFixedWidth(width);
    if (const int height = valueAt(m_heights, row, 0); height > 0)
        child->setFixedHeight(height);
    alignText(child, valueAt(m_aligns, column, Qt::Alignment()));
    m_grid->addWidget(child, 2 * row - 1, 2 * column - 1);
}

RowWidget::RowWidget(QWidget* parent, int columns)
    : LayoutWidget(parent), m_box(plainBox<QHBoxLayout>(this)), m_columns(std::max(1, columns)) {
    m_box->setSpacing(2);
    m_box->addStretch();
}

void RowWidget::setColumnWidth(int column, int width) {
    m_widths[column] = width;
    if (column > m_filled || column == m_adjustable)
        return;
    QLayoutItem* item = m_box->itemAt(column - 1);  // a cell's part may have been deleted
    if (item && item->widget())
        item->widget()->setFixedWidth(width);
}

void RowWidget::take(QWidget* child) {
    const int column = ++m_filled;
    const int width = valueAt(m_widths, column, 0);
    if (column == m_adjustable)
        letGrow(child);
    else if (width > 0)
        child->setFixedWidth(width);
    alignText(child, valueAt(m_aligns, column, Qt::Alignment()));
    // The stretch at the end gives way to an adjustable column.
    if (column == m_adjustable)
        m_box->setStretch(m_box->count() - 1, 0);
    m_box->insertWidget(column - 1, child, column == m_adjustable ? 1 : 0);
}

FrameWidget::FrameWidget(QWidget* parent)
    : LayoutWidget(parent), m_header(new QPushButton(this)), m_content(new QWidget(this)) {
    auto* box = plainBox<QVBoxLayout>(this);
    box->addWidget(m_header);
    box->addWidget(m_content);
    box->setAlignment(Qt::AlignTop);
    plainBox<QVBoxLayout>(m_content)->setAlignment(Qt::AlignTop);
    m_header->setFixedHeight(20);
    m_header->setFocusPolicy(Qt::NoFocus);
    m_header->setStyleSheet(
        "QPushButton { text-align: left; padding-left: 6px; border: none; border-radius: 2px; "
        "font-weight: bold; background-color: rgb(93, 93, 93); color: rgb(220, 220, 220); }");
    m_content->setObjectName(QStringLiteral("frameContent"));
    refreshHeader();
}

void FrameWidget::refreshHeader() {
    const QString mark = QString::fromUtf8(isCollapsed() ? "\u25b8 " : "\u25be ");
    m_header->setText(m_collapsable ? mark + m_label : m_label);
    m_header->setVisible(m_labelVisible && (m_collapsable || !m_label.isEmpty()));
}

void FrameWidget::setLabel(const QString& label) {
    m_label = label;
    refreshHeader();
}

void FrameWidget::setLabelVisible(bool visible) {
    m_labelVisible = visible;
    refreshHeader();
}

void FrameWidget::setCollapsable(bool collapsable) {
    m_collapsable = collapsable;
    refreshHeader();
}

void FrameWidget::setMarginWidth(int width) {
    const QMargins old = m_content->layout()->contentsMargins();
    m_content->layout()->setContentsMargins(width, old.top(), width, old.bottom());
}

void FrameWidget::setMarginHeight(int height) {
    const QMargins old = m_content->layout()->contentsMargins();
    m_content->layout()->setContentsMargins(old.left(), height, old.right(), height);
}

int FrameWidget::marginWidth() const {
    return m_content->layout()->contentsMargins().left();
}

int FrameWidget::marginHeight() const {
    return m_content->layout()->contentsMargins().top();
}

void FrameWidget::setBorderVisible(bool visible) {
    m_content->setStyleSheet(
        visible ? QStringLiteral("QWidget#frameContent { border: 1px solid rgb(50, 50, 50); }")
                : QString());
}

void FrameWidget::setCollapsed(bool collapsed) {
    m_content->setVisible(!collapsed);
    refreshHeader();
}

bool FrameWidget::isCollapsed() const {
    return m_content->isHidden() && m_content->testAttribute(Qt::WA_WState_ExplicitShowHide);
}

void FrameWidget::take(QWidget* child) {
    letGrow(child);
    m_content->layout()->addWidget(child);
}

ScrollWidget::ScrollWidget(QWidget* parent, bool resizable)
    : LayoutWidget(parent),
      m_area(new QScrollArea(this)),
      m_column(new ColumnWidget(nullptr, resizable)) {
    plainBox<QVBoxLayout>(this)->addWidget(m_area);
    m_area->setWidgetResizable(true);
    m_area->setWidget(m_column);
}

TabWidget::TabWidget(QWidget* parent) : LayoutWidget(parent), m_tabs(new QTabWidget(this)) {
    plainBox<QVBoxLayout>(this)->addWidget(m_tabs);
}

void TabWidget::take(QWidget* child) {
    m_tabs->addTab(child, child->objectName());
}

}  // namespace torvel
