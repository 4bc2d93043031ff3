#pragma once

#include <utility>
#include <vector>

#include <QPointer>

#include "ui/controls/layout_widgets.h"

namespace torvel {

/// Edges of children tied to the form, to a part of its length or to one another. An edge that is
/// tied to nothing follows the size of its child; a ring of ties counts as untied.
class FormWidget : public LayoutWidget {
  public:
    enum Edge { kLeft, kTop, kRight, kBottom };
    enum class Tie { None, Form, OppositeForm, Position, Control, OppositeControl };
    struct Attachment {
        Tie tie = Tie::None;
        int offset = 0;
        int position = 0;  ///< of divisions()
        QPointer<QWidget> other;
    };

    FormWidget(QWidget* parent, int divisions);
    /// Nothing happens for a widget that is no child of the form.
    void attach(QWidget* child, Edge edge, const Attachment& attachment);
    void take(QWidget* child) override;
    int divisions() const { return m_divisions; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

  private:
    struct Child {
        QPointer<QWidget> widget;
        Attachment edges[4];
    };
    struct Axis;

    int find(const QWidget* widget) const;  ///< -1 for a foreign one
    int sizeOf(const Child& child, bool across) const;
    bool edgeAt(Axis& axis, const Attachment& tie, bool low, int& at) const;
    void solve(Axis& axis, int index) const;
    Axis solved(bool across, int length) const;
    int needed(bool across) const;
    void arrange();

    int m_divisions;
    std::vector<Child> m_children;
};

}  // namespace torvel
