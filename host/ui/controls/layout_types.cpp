// The layouts.
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>

#include "ui/controls/control_type.h"
#include "ui/controls/form_widget.h"
#include "ui/controls/layout_widgets.h"
#include "ui/desktop/main_window.h"

namespace torvel {

namespace {

int at(const FlagUse& use, std::size_t index) {
    return static_cast<int>(use.values[index].number());
}

// --- columnLayout --------------------------------------------------------------------------------

QWidget* makeColumn(const CommandCall& call, QWidget* parent) {
    return new ColumnWidget(parent, call.flag("adjustableColumn"));
}

Status attachColumn(const Part& part, const FlagUse& use) {
    part.as<ColumnWidget>()->attach(fromValue<QString>(use.values[0]), at(use, 1));
    return Status::ok();
}

Status alignColumn(const Part& part, const FlagUse& use) {
    part.as<ColumnWidget>()->attach(fromValue<QString>(use.values[0]), 0);
    return Status::ok();
}

constexpr ControlFlag kColumnFlags[] = {
    {{"adjustableColumn", "adj", "b"}, nullptr, get<&ColumnWidget::isAdjustable>},
    {{"columnAlign", "cal", "s"}, alignColumn},
    {{"columnAttach", "cat", "si"}, attachColumn},
    {{"columnOffset", "co", "si"}, attachColumn},
    {{"columnWidth", "cw", "i"}, put<&ColumnWidget::setColumnWidth>},
    {{"rowSpacing", "rs", "i"}, put<&ColumnWidget::setSpacing>},
};

// --- rowColumnLayout -----------------------------------------------------------------------------

QWidget* makeGrid(const CommandCall& call, QWidget* parent) {
    return new GridWidget(parent, call.integer("numberOfColumns", 1),
                          call.integer("numberOfRows", 0));
}

template <void (GridWidget::*method)(int, int)>
Status onGrid(const Part& part, const FlagUse& use) {
    if (at(use, 0) < 1)
        return Status::failure(part.element().type + ": columns and rows count from 1");
    (part.as<GridWidget>()->*method)(at(use, 0), at(use, 1));
    return Status::ok();
}

// 0: no column gives way.
Status setGridAdjustable(const Part& part, const FlagUse& use) {
    if (at(use, 0) < 0)
        return Status::failure(part.element().type + ": columns and rows count from 1");
    part.as<GridWidget>()->setAdjustable(at(use, 0));
    return Status::ok();
}

template <class Widget>
Status alignCells(const Part& part, const FlagUse& use) {
    part.as<Widget>()->setColumnAlign(at(use, 0), textAlignment(use.values[1]));
    return Status::ok();
}

// Cells are as wide as their column; the offset is room before them.
Status attachCells(const Part& part, const FlagUse& use) {
    const std::string side = use.values[1].isString() ? use.values[1].string() : "";
    if (at(use, 0) >= 1 && (side == "left" || side == "both"))
        part.as<GridWidget>()->setColumnSpacing(at(use, 0), at(use, 2));
    return Status::ok();
}

constexpr ControlFlag kGridFlags[] = {
    {{"numberOfColumns", "nc", "i"}, nullptr, get<&GridWidget::columnCount>},
    {{"numberOfRows", "nr", "i"}, nullptr, get<&GridWidget::rowCount>},
    {{"adjustableColumn", "adj", "i"}, setGridAdjustable},
    {{"columnWidth", "cw", "ii", kAllModes, true}, onGrid<&GridWidget::setColumnWidth>},
    {{"columnSpacing", "cs", "ii", kAllModes, true}, onGrid<&GridWidget::setColumnSpacing>},
    {{"columnAlign", "cal", "is", kAllModes, true}, alignCells<GridWidget>},
    {{"columnAttach", "cat", "isi", kAllModes, true}, attachCells},
    {{"columnOffset", "co", "isi", kAllModes, true}, attachCells},
    {{"rowHeight", "rh", "ii", kAllModes, true}, onGrid<&GridWidget::setRowHeight>},
    {{"rowSpacing", "rs", "ii", kAllModes, true}, onGrid<&GridWidget::setRowSpacing>},
};

// --- rowLayout -----------------------------------------------------------------------------------

QWidget* makeRow(const CommandCall& call, QWidget* parent) {
    return new RowWidget(parent, call.integer("numberOfColumns", 1));
}

Status setCellWidth(const Part& part, const FlagUse& use) {
    if (at(use, 0) < 1)
        return Status::failure("rowLayout: columns count from 1");
    part.as<RowWidget>()->setColumnWidth(at(use, 0), at(use, 1));
    return Status::ok();
}

// columnWidth3, columnAlign3: one value for each of the first columns.
Status setCellWidths(const Part& part, const FlagUse& use) {
    for (std::size_t i = 0; i < use.values.size(); ++i)
        part.as<RowWidget>()->setColumnWidth(static_cast<int>(i) + 1, at(use, i));
    return Status::ok();
}

Status setCellAligns(const Part& part, const FlagUse& use) {
    for (std::size_t i = 0; i < use.values.size(); ++i)
        part.as<RowWidget>()->setColumnAlign(static_cast<int>(i) + 1, textAlignment(use.values[i]));
    return Status::ok();
}

template <int column>
Status setAdjustable(const Part& part, const FlagUse&) {
    part.as<RowWidget>()->setAdjustable(column);
    return Status::ok();
}

constexpr ControlFlag kRowFlags[] = {
    {{"numberOfColumns", "nc", "i"}, nullptr, get<&RowWidget::columnCount>},
    {{"adjustableColumn", "adj", "i"}, put<&RowWidget::setAdjustable>},
    {{"adjustableColumn1", "ad1"}, setAdjustable<1>},
    {{"adjustableColumn2", "ad2"}, setAdjustable<2>},
    {{"adjustableColumn3", "ad3"}, setAdjustable<3>},
    {{"adjustableColumn4", "ad4"}, setAdjustable<4>},
    {{"adjustableColumn5", "ad5"}, setAdjustable<5>},
    {{"adjustableColumn6", "ad6"}, setAdjustable<6>},
    {{"columnWidth", "cw", "ii", kAllModes, true}, setCellWidth},
    {{"columnWidth1", "cw1", "i"}, setCellWidths},
    {{"columnWidth2", "cw2", "ii"}, setCellWidths},
    {{"columnWidth3", "cw3", "iii"}, setCellWidths},
    {{"columnWidth4", "cw4", "iiii"}, setCellWidths},
    {{"columnWidth5", "cw5", "iiiii"}, setCellWidths},
    {{"columnWidth6", "cw6", "iiiiii"}, setCellWidths},
    {{"columnAlign", "cal", "is", kAllModes, true}, alignCells<RowWidget>},
    {{"columnAlign1", "cl1", "s"}, setCellAligns},
    {{"columnAlign2", "cl2", "ss"}, setCellAligns},
    {{"columnAlign3", "cl3", "sss"}, setCellAligns},
    {{"columnAlign4", "cl4", "ssss"}, setCellAligns},
    // Cells stand side by side without room of their own.
    {{"columnAttach", "cat", "isi", kAllModes, true}, setNothing},
    {{"columnAttach1", "ct1", "s"}, setNothing},
    {{"columnAttach2", "ct2", "ss"}, setNothing},
    {{"columnAttach3", "ct3", "sss"}, setNothing},
    {{"columnAttach4", "ct4", "ssss"}, setNothing},
};

// --- formLayout ----------------------------------------------------------------------------------

QWidget* makeForm(const CommandCall& call, QWidget* parent) {
    return new FormWidget(parent, call.integer("numberOfDivisions", 100));
}

// A child's own name comes before equal names elsewhere.
Status childOf(const Part& form, const FlagUse& use, std::size_t index, QWidget*& child) {
    const std::string name = use.values[index].string();
    int id = form.tree().lookUp(form.tree().fullPath(form.id) + "|" + name);
    if (id == UiTree::kNone)
        if (Status found = form.tree().find(name, id); !found)
            return found;
    const UiElement* one = form.tree().element(id);
    if (one->parent != form.id)
        return Status::failure("formLayout: '" + name + "' is no child of the form");
    child = qobject_cast<QWidget*>(one->object.data());
    return Status::ok();
}

Status edgeOf(const FlagUse& use, FormWidget::Edge& edge) {
    const std::string name = use.values[1].string();
    const char* const kNames[] = {"left", "top", "right", "bottom"};
    for (int i = 0; i < 4; ++i)
        if (name == kNames[i]) {
            edge = static_cast<FormWidget::Edge>(i);
            return Status::ok();
        }
    return Status::failure("formLayout: '" + name + "' is no edge (left, top, right, bottom)");
}

template <FormWidget::Tie tie>
Status attachEdge(const Part& form, const FlagUse& use) {
    FormWidget::Attachment attachment;
    attachment.tie = tie;
    QWidget *child = nullptr, *other = nullptr;
    FormWidget::Edge edge = FormWidget::kLeft;
    if (Status found = childOf(form, use, 0, child); !found)
        return found;
    if (Status known = edgeOf(use, edge); !known)
        return known;
    if (tie == FormWidget::Tie::Control || tie == FormWidget::Tie::OppositeControl)
        if (Status found = childOf(form, use, 3, other); !found)
            return found;
    attachment.other = other;
    if (tie != FormWidget::Tie::None)
        attachment.offset = at(use, 2);
    if (tie == FormWidget::Tie::Position)
        attachment.position = at(use, 3);
    form.as<FormWidget>()->attach(child, edge, attachment);
    return Status::ok();
}

constexpr ControlFlag kFormFlags[] = {
    {{"numberOfDivisions", "nd", "i"}, nullptr, get<&FormWidget::divisions>},
    {{"attachForm", "af", "ssi", kAllModes, true}, attachEdge<FormWidget::Tie::Form>},
    {{"attachOppositeForm", "aof", "ssi", kAllModes, true},
     attachEdge<FormWidget::Tie::OppositeForm>},
    {{"attachControl", "ac", "ssis", kAllModes, true}, attachEdge<FormWidget::Tie::Control>},
    {{"attachOppositeControl", "aoc", "ssis", kAllModes, true},
     attachEdge<FormWidget::Tie::OppositeControl>},
    {{"attachPosition", "ap", "ssii", kAllModes, true}, attachEdge<FormWidget::Tie::Position>},
    {{"attachNone", "an", "ss", kAllModes, true}, attachEdge<FormWidget::Tie::None>},
};

// --- frameLayout, scrollLayout, tabLayout --------------------------------------------------------

QWidget* makeFrame(const CommandCall& call, QWidget* parent) {
    auto* frame = new FrameWidget(parent);
    frame->setBorderVisible(call.flag("borderVisible"));
    return frame;
}

void wireFrame(MainWindow& window, int id, QWidget* widget) {
    auto* frame = static_cast<FrameWidget*>(widget);
    QObject::connect(frame->header(), &QPushButton::clicked, &window, [&window, id, frame] {
        if (!frame->isCollapsable())
            return;
        const bool fold = !frame->isCollapsed();
        window.runEvent(id, fold ? "preCollapseCommand" : "preExpandCommand");
        frame->setCollapsed(fold);
        window.runEvent(id, fold ? "collapseCommand" : "expandCommand");
    });
}

constexpr ControlFlag kFrameFlags[] = {
    {{"label", "l", "s"}, put<&FrameWidget::setLabel>, get<&FrameWidget::label>},
    {{"labelVisible", "lv", "b"}, put<&FrameWidget::setLabelVisible>},
    {{"collapsable", "cll", "b"},
     put<&FrameWidget::setCollapsable>,
     get<&FrameWidget::isCollapsable>},
    {{"collapse", "cl", "b"}, put<&FrameWidget::setCollapsed>, get<&FrameWidget::isCollapsed>},
    {{"marginWidth", "mw", "i"}, put<&FrameWidget::setMarginWidth>, get<&FrameWidget::marginWidth>},
    {{"marginHeight", "mh", "i"},
     put<&FrameWidget::setMarginHeight>,
     get<&FrameWidget::marginHeight>},
    {{"borderVisible", "bv", "b"}, put<&FrameWidget::setBorderVisible>},
    {{"borderStyle", "bs", "s"}, setNothing},
    {{"labelAlign", "la", "s"}, setNothing},
    {{"font", "fn", "s"}, setNothing},
    {{"collapseCommand", "cc", "s"}, setEvent, eventText},
    {{"expandCommand", "ec", "s"}, setEvent, eventText},
    {{"preCollapseCommand", "pcc", "s"}, setEvent, eventText},
    {{"preExpandCommand", "pec", "s"}, setEvent, eventText},
};

QWidget* makeScroll(const CommandCall& call, QWidget* parent) {
    return new ScrollWidget(parent, call.flag("childResizable"));
}

constexpr ControlFlag kScrollFlags[] = {
    {{"childResizable", "cr", "b"}},
    {{"horizontalScrollBarThickness", "hst", "i"}, setNothing},
    {{"verticalScrollBarThickness", "vst", "i"}, setNothing},
};

QWidget* makeTabs(const CommandCall&, QWidget* parent) {
    return new TabWidget(parent);
}

int tabOf(const Part& part, const std::string& name) {
    const UiTree& tree = part.tree();
    int id = tree.lookUp(tree.fullPath(part.id) + "|" + name);
    id = id == UiTree::kNone ? tree.lookUp(name) : id;
    const UiElement* one = tree.element(id);
    return one ? part.as<TabWidget>()->tabs()->indexOf(qobject_cast<QWidget*>(one->object.data()))
               : -1;
}

Status noTab(const std::string& name) {
    return Status::failure("tabLayout: '" + name + "' is no child of the layout");
}

Status setTabLabel(const Part& part, const FlagUse& use) {
    const int tab = tabOf(part, use.values[0].string());
    if (tab < 0)
        return noTab(use.values[0].string());
    part.as<TabWidget>()->tabs()->setTabText(tab, fromValue<QString>(use.values[1]));
    return Status::ok();
}

Status selectTab(const Part& part, const FlagUse& use) {
    const int tab = tabOf(part, use.values[0].string());
    if (tab < 0)
        return noTab(use.values[0].string());
    part.as<TabWidget>()->tabs()->setCurrentIndex(tab);
    return Status::ok();
}

Value selectedTab(const Part& part, const FlagUse&) {
    const QWidget* shown = part.as<TabWidget>()->tabs()->currentWidget();
    return shown ? Value(shown->objectName().toStdString()) : Value();
}

Status selectTabIndex(const Part& part, const FlagUse& use) {
    part.as<TabWidget>()->tabs()->setCurrentIndex(at(use, 0) - 1);
    return Status::ok();
}

Value selectedTabIndex(const Part& part, const FlagUse&) {
    return part.as<TabWidget>()->tabs()->currentIndex() + 1;
}

Status showTabs(const Part& part, const FlagUse& use) {
    part.as<TabWidget>()->tabs()->tabBar()->setVisible(use.values[0].truth());
    return Status::ok();
}

void wireTabs(MainWindow& window, int id, QWidget* widget) {
    auto* tabs = static_cast<TabWidget*>(widget)->tabs();
    QObject::connect(tabs, &QTabWidget::tabBarClicked, &window, [&window, id, tabs](int index) {
        if (index < 0 || index == tabs->currentIndex())
            return;
        tabs->setCurrentIndex(index);
        window.runEvent(id, "selectCommand");
        window.runEvent(id, "changeCommand");
    });
}

constexpr ControlFlag kTabFlags[] = {
    {{"tabLabel", "tl", "ss", kAllModes, true}, setTabLabel},
    {{"selectTab", "st", "s"}, selectTab, selectedTab},
    {{"selectTabIndex", "sti", "i"}, selectTabIndex, selectedTabIndex},
    {{"innerMarginWidth", "imw", "i"}, setNothing},
    {{"innerMarginHeight", "imh", "i"}, setNothing},
    {{"tabsVisible", "tv", "b"}, showTabs},
    {{"changeCommand", "cc", "s"}, setEvent, eventText},
    {{"selectCommand", "sc", "s"}, setEvent, eventText},
};

}  // namespace

ControlTypes layoutTypes() {
    return {
        {"columnLayout", UiKind::Layout, kColumnFlags, std::size(kColumnFlags), makeColumn, nullptr,
         "Layout of one column"},
        {"rowColumnLayout", UiKind::Layout, kGridFlags, std::size(kGridFlags), makeGrid, nullptr,
         "Layout of rows and columns"},
        {"rowLayout", UiKind::Layout, kRowFlags, std::size(kRowFlags), makeRow, nullptr,
         "Layout of one row"},
        {"formLayout", UiKind::Layout, kFormFlags, std::size(kFormFlags), makeForm, nullptr,
         "Layout of attached edges"},
        {"frameLayout", UiKind::Layout, kFrameFlags, std::size(kFrameFlags), makeFrame, wireFrame,
         "Layout with a title that may fold"},
        {"scrollLayout", UiKind::Layout, kScrollFlags, std::size(kScrollFlags), makeScroll, nullptr,
         "Layout with scroll bars"},
        {"tabLayout", UiKind::Layout, kTabFlags, std::size(kTabFlags), makeTabs, wireTabs,
         "Layout of tabs"},
    };
}

}  // namespace torvel
