#include "ui/controls/form_widget.h"

#include <algorithm>

#include <QEvent>

namespace torvel {

// Where the children of one direction start and end, as far as they are known.
struct FormWidget::Axis {
    enum State : char { Unknown, Busy, Known };

    bool across = true;
    int length = 0;
    std::vector<std::pair<int, int>> ends;
    std::vector<State> states;
};

FormWidget::FormWidget(QWidget* parent, int divisions)
    : LayoutWidget(parent), m_divisions(std::max(1, divisions)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void FormWidget::take(QWidget* child) {
    m_children.push_back({child, {}});
    child->setMaximumWidth(QWIDGETSIZE_MAX);
    if (!child->testAttribute(Qt::WA_WState_ExplicitShowHide))
        child->show();
    updateGeometry();
    arrange();
}

void FormWidget::attach(QWidget* child, Edge edge, const Attachment& attachment) {
    if (const int found = find(child); found >= 0)
        m_children[static_cast<std::size_t>(found)].edges[edge] = attachment;
    updateGeometry();
    arrange();
}

int FormWidget::find(const QWidget* widget) const {
    for (std::size_t i = 0; i < m_children.size(); ++i)
        if (widget && m_children[i].widget == widget)
            return static_cast<int>(i);
    return -1;
}

int FormWidget::sizeOf(const Child& child, bool across) const {
    const QSize size = child.widget->sizeHint()
                           .expandedTo(child.widget->minimumSize())
                           .boundedTo(child.widget->maximumSize());
    return std::max(0, across ? size.width() : size.height());
}

bool FormWidget::edgeAt(Axis& axis, const Attachment& tie, bool low, int& at) const {
    const int inward = low ? tie.offset : -tie.offset;
    switch (tie.tie) {
        case Tie::None: return false;
        case Tie::Form: at = (low ? 0 : axis.length) + inward; return true;
        case Tie::OppositeForm: at = (low ? axis.length : 0) + inward; return true;
        case Tie::Position: at = axis.length * tie.position / m_divisions + inward; return true;
        case Tie::Control:
        case Tie::OppositeControl: break;
    }
    const int other = find(tie.other);
    if (other < 0 || axis.states[static_cast<std::size_t>(other)] == Axis::Busy)
        return false;
    solve(axis, other);
    const std::pair<int, int>& theirs = axis.ends[static_cast<std::size_t>(other)];
    at = ((tie.tie == Tie::Control) == low ? theirs.second : theirs.first) + inward;
    return true;
}

void FormWidget::solve(Axis& axis, int index) const {
    const auto i = static_cast<std::size_t>(index);
    const Child& child = m_children[i];
    if (axis.states[i] == Axis::Known || !child.widget)
        return;
    axis.states[i] = Axis::Busy;
    int low = 0, high = 0;
    const bool hasLow = edgeAt(axis, child.edges[axis.across ? kLeft : kTop], true, low);
    const bool hasHigh = edgeAt(axis, child.edges[axis.across ? kRight : kBottom], false, high);
    const int size = sizeOf(child, axis.across);
    if (hasLow && hasHigh)
        axis.ends[i] = {low, std::max(low, high)};
    else if (hasHigh)
        axis.ends[i] = {high - size, high};
    else
        axis.ends[i] = {low, low + size};
    axis.states[i] = Axis::Known;
}

FormWidget::Axis FormWidget::solved(bool across, int length) const {
    Axis axis;
    axis.across = across;
    axis.length = length;
    axis.ends.resize(m_children.size());
    axis.states.resize(m_children.size(), Axis::Unknown);
    for (std::size_t i = 0; i < m_children.size(); ++i)
        solve(axis, static_cast<int>(i));
    return axis;
}

// The least length at which no child is cut: what stands before it, its size, what stands behind
// it; for one between two places of the form its size in proportion.
int FormWidget::needed(bool across) const {
    const Axis axis = solved(across, 0);
    int most = 0;
    for (std::size_t i = 0; i < m_children.size(); ++i) {
        const Child& child = m_children[i];
        if (!child.widget || child.widget->isHidden())
            continue;
        const Attachment& low = child.edges[across ? kLeft : kTop];
        const Attachment& high = child.edges[across ? kRight : kBottom];
        const int size = sizeOf(child, across);
        most = std::max(most, std::max(0, axis.ends[i].first) + size + high.offset);
        const int from = low.tie == Tie::Position ? low.position : 0;
        const int to = high.tie == Tie::Position ? high.position : m_divisions;
        if (low.tie != Tie::Control && to > from)
            most = std::max(most, (size + low.offset + high.offset) * m_divisions / (to - from));
    }
    return most;
}

QSize FormWidget::sizeHint() const {
    return {needed(true), needed(false)};
}

void FormWidget::arrange() {
    const Axis across = solved(true, width()), down = solved(false, height());
    for (std::size_t i = 0; i < m_children.size(); ++i)
        if (QWidget* widget = m_children[i].widget)
            widget->setGeometry(across.ends[i].first, down.ends[i].first,
                                across.ends[i].second - across.ends[i].first,
                                down.ends[i].second - down.ends[i].first);
}

void FormWidget::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

// Children that change their size ask for a new layout.
bool FormWidget::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        arrange();
    }
    return QWidget::event(event);
}

}  // namespace torvel
