#include "ui/controls/group_widget.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace torvel {

namespace {

constexpr int kLabelWidth = 140;

}  // namespace

GroupWidget::GroupWidget(QWidget* parent)
    : QWidget(parent),
      m_box(new QHBoxLayout(this)),
      m_label(new QLabel(this)),
      m_extra(new QLabel(this)) {
    m_box->setContentsMargins(0, 0, 0, 0);
    m_box->setSpacing(4);
    m_box->addWidget(m_label);
    m_box->addWidget(m_extra);
    m_box->addStretch();
    m_label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_label->setFixedWidth(kLabelWidth);
    m_label->hide();
    m_extra->hide();
}

void GroupWidget::add(QWidget* field, int width) {
    if (width > 0)
        field->setFixedWidth(width);
    m_fields.push_back(field);
    if (m_column)
        m_column->layout()->addWidget(field);
    else
        m_box->insertWidget(fieldCount(), field);
}

QWidget* GroupWidget::field(int index) const {
    return index >= 0 && index < fieldCount() ? m_fields[static_cast<std::size_t>(index)] : nullptr;
}

QWidget* GroupWidget::cell(int column) const {
    const int first = m_label->isHidden() ? 1 : 2;
    if (column < first)
        return column == 1 ? m_label : nullptr;
    return column - first < fieldCount() ? field(column - first) : m_extra;
}

void GroupWidget::setLabel(const QString& label) {
    m_label->setText(label);
    m_label->show();
}

QString GroupWidget::label() const {
    return m_label->text();
}

void GroupWidget::setExtraLabel(const QString& label) {
    m_extra->setText(label);
    m_extra->show();
}

QString GroupWidget::extraLabel() const {
    return m_extra->text();
}

void GroupWidget::setColumnWidth(int column, int width) {
    if (QWidget* one = cell(column))
        one->setFixedWidth(width);
}

void GroupWidget::setColumnAlign(int column, Qt::Alignment align) {
    if (auto* one = qobject_cast<QLabel*>(cell(column)))
        one->setAlignment(align);
}

void GroupWidget::setAdjustable(int column) {
    QWidget* one = cell(column);
    const int at = one ? m_box->indexOf(one) : -1;
    if (at < 0)
        return;
    one->setMinimumWidth(0);
    one->setMaximumWidth(QWIDGETSIZE_MAX);
    one->setSizePolicy(QSizePolicy::Expanding, one->sizePolicy().verticalPolicy());
    m_box->setStretch(at, 1);
}

void GroupWidget::setVertical() {
    m_column = new QWidget(this);
    auto* box = new QVBoxLayout(m_column);
    box->setContentsMargins(0, 0, 0, 0);
    box->setSpacing(2);
    m_box->insertWidget(1, m_column);
}

}  // namespace torvel
