// The command of every layout and control: one way to make, edit and ask them all.
#include <algorithm>
#include <deque>
#include <map>

#include <QMainWindow>
#include <QVariant>
#include <QWidget>

#include "script/session.h"
#include "script/callbacks.h"
#include "ui/controls/control_type.h"
#include "ui/controls/layout_widgets.h"
#include "ui/desktop/main_window.h"
#include "ui/controls/lookup.h"

namespace torvel {

UiTree& Part::tree() const {
    return window.tree();
}

UiElement& Part::element() const {
    return *tree().element(id);
}

QWidget* Part::widget() const {
    const UiElement* one = tree().element(id);
    return one ? qobject_cast<QWidget*>(one->object.data()) : nullptr;
}

template <>
QString fromValue<QString>(const Value& value) {
    return value.isString() ? QString::fromStdString(value.string()) : QString();
}
template <>
bool fromValue<bool>(const Value& value) {
    return value.truth();
}
template <>
int fromValue<int>(const Value& value) {
    return static_cast<int>(std::clamp(value.number(), -2147483647.0, 2147483647.0));
}
template <>
double fromValue<double>(const Value& value) {
    return value.number();
}
template <>
Value toValue<QString>(const QString& value) {
    return value.toStdString();
}
template <>
Value toValue<bool>(const bool& value) {
    return value;
}
template <>
Value toValue<int>(const int& value) {
    return value;
}
template <>
Value toValue<double>(const double& value) {
    return value;
}

Qt::Alignment textAlignment(const Value& value) {
    const std::string text = value.isString() ? value.string() : std::string();
    const Qt::Alignment across = text == "left"    ? Qt::AlignLeft
                                 : text == "right" ? Qt::AlignRight
                                                   : Qt::AlignHCenter;
    return across | Qt::AlignVCenter;
}

Status setEvent(const Part& part, const FlagUse& use) {
    UiCommand& command = part.element().commands[use.row->longName];
    dropCallback(command.text);
    command.text = use.values.empty() || !use.values[0].isString() ? "" : use.values[0].string();
    command.python = part.window.session().calledFromPython;
    return Status::ok();
}

Value eventText(const Part& part, const FlagUse& use) {
    const auto& commands = part.element().commands;
    const auto found = commands.find(use.row->longName);
    return found == commands.end() ? Value("") : Value(found->second.text);
}

Status setNothing(const Part&, const FlagUse&) {
    return Status::ok();
}

namespace {

// --- flags of every layout and control -----------------------------------------------------------

Status setWidth(const Part& part, const FlagUse& use) {
    if (const int width = fromValue<int>(use.values[0]); width > 0)
        part.widget()->setFixedWidth(width);
    return Status::ok();
}

Status setHeight(const Part& part, const FlagUse& use) {
    if (const int height = fromValue<int>(use.values[0]); height > 0)
        part.widget()->setFixedHeight(height);
    return Status::ok();
}

// What was asked for holds before the first layout has run.
Value widthOf(const Part& part, const FlagUse&) {
    const QWidget* widget = part.widget();
    return widget->minimumWidth() == widget->maximumWidth() ? widget->minimumWidth()
                                                            : widget->width();
}

Value heightOf(const Part& part, const FlagUse&) {
    const QWidget* widget = part.widget();
    return widget->minimumHeight() == widget->maximumHeight() ? widget->minimumHeight()
                                                              : widget->height();
}

Value visible(const Part& part, const FlagUse&) {
    return !part.widget()->isHidden();
}

Status setBackground(const Part& part, const FlagUse& use) {
    const auto shade = [&](std::size_t at) {
        return std::min(1.0, std::max(0.0, use.values[at].number()));
    };
    const QColor color = QColor::fromRgbF(shade(0), shade(1), shade(2));
    QPalette palette = part.widget()->palette();
    for (QPalette::ColorRole role : {QPalette::Window, QPalette::Button, QPalette::Base})
        palette.setColor(role, color);
    part.widget()->setPalette(palette);
    part.widget()->setAutoFillBackground(true);
    return Status::ok();
}

Value background(const Part& part, const FlagUse&) {
    const QColor color = part.widget()->palette().color(QPalette::Window);
    return Value::doubles({color.redF(), color.greenF(), color.blueF()});
}

Status setDocTag(const Part& part, const FlagUse& use) {
    part.widget()->setProperty("docTag", fromValue<QString>(use.values[0]));
    return Status::ok();
}

Value docTag(const Part& part, const FlagUse&) {
    return part.widget()->property("docTag").toString().toStdString();
}

Value fullPathName(const Part& part, const FlagUse&) {
    return part.tree().fullPath(part.id);
}

Value parentPath(const Part& part, const FlagUse&) {
    return part.tree().fullPath(part.element().parent);
}

Value objectType(const Part& part, const FlagUse&) {
    return part.element().type;
}

constexpr ControlFlag kCommonFlags[] = {
    {{"exists", "ex", "", kCreate | kQuery}},
    {{"parent", "p", "s", kCreate | kQuery}, nullptr, parentPath},
    {{"width", "w", "i"}, setWidth, widthOf},
    {{"height", "h", "i"}, setHeight, heightOf},
    {{"enable", "en", "b"}, put<&QWidget::setEnabled>, get<&QWidget::isEnabled>},
    {{"visible", "vis", "b"}, put<&QWidget::setVisible>, visible},
    {{"manage", "m", "b"}, put<&QWidget::setVisible>, visible},
    {{"annotation", "ann", "s"}, put<&QWidget::setToolTip>, get<&QWidget::toolTip>},
    {{"backgroundColor", "bgc", "ddd"}, setBackground, background},
    {{"enableBackground", "ebg", "b"},
     put<&QWidget::setAutoFillBackground>,
     get<&QWidget::autoFillBackground>},
    {{"docTag", "dtg", "s"}, setDocTag, docTag},
    {{"useTemplate", "ut", "s", kCreate}},
    {{"fullPathName", "fpn", "", kQuery}, nullptr, fullPathName},
    {{"objectTypeUI", "otu", "", kQuery}, nullptr, objectType},
};

// --- the kinds -----------------------------------------------------------------------------------

Value childArray(const Part& part, const FlagUse&) {
    std::vector<std::string> names;
    for (int child : part.tree().children(part.id))
        if (const UiElement* one = part.tree().element(child))
            names.push_back(one->name);
    return names.empty() ? Value() : Value::strings(names);
}

Value childCount(const Part& part, const FlagUse& use) {
    const Value names = childArray(part, use);
    return names.isList() ? static_cast<int>(names.list().size()) : 0;
}

constexpr ControlFlag kLayoutFlags[] = {
    {{"childArray", "ca", "", kQuery}, nullptr, childArray},
    {{"numberOfChildren", "nch", "", kQuery}, nullptr, childCount},
};

struct Kind {
    ControlType type;
    std::vector<const ControlFlag*> flags;  ///< in the order they act
    std::vector<FlagRow> rows;              ///< same order
};

void addFlag(Kind& kind, const ControlFlag& flag) {
    FlagRow row = flag.row;
    if (row.modes == kAllModes)
        row.modes = (flag.set ? kCreate | kEdit : kCreate) | (flag.get ? kQuery : 0u);
    kind.flags.push_back(&flag);
    kind.rows.push_back(row);
}

Kind kindOf(const ControlType& type) {
    Kind kind{type, {}, {}};
    for (const ControlFlag& flag : kCommonFlags)
        addFlag(kind, flag);
    for (std::size_t i = 0; i < type.flagCount; ++i)
        addFlag(kind, type.flags[i]);
    if (type.kind == UiKind::Layout)
        for (const ControlFlag& flag : kLayoutFlags)
            addFlag(kind, flag);
    return kind;
}

// Any control or any layout by name, for scripts that do not know which kind it is.
const ControlType kGenericTypes[] = {
    {"control", UiKind::Control, nullptr, 0, nullptr, nullptr, "Edits or asks any control"},
    {"layout", UiKind::Layout, nullptr, 0, nullptr, nullptr, "Edits or asks any layout"},
};

const std::map<std::string, Kind>& kinds() {
    static const std::map<std::string, Kind> all = [] {
        std::map<std::string, Kind> made;
        for (const ControlTypes& types :
             {layoutTypes(), fieldTypes(), choiceTypes(), groupTypes(), listTypes(), sliderTypes()})
            for (const ControlType& type : types)
                made.emplace(type.name, kindOf(type));
        for (const ControlType& type : kGenericTypes)
            made.emplace(type.name, kindOf(type));
        return made;
    }();
    return all;
}

// --- making --------------------------------------------------------------------------------------

// The layout of a window, which takes what is made in the window itself.
int layoutBelow(const UiTree& tree, int id) {
    for (int child : tree.children(id))
        if (const UiElement* one = tree.element(child); one && one->kind == UiKind::Layout)
            return child;
    return UiTree::kNone;
}

Status tooMany(const UiTree& tree, int id) {
    return Status::failure("Too many children in layout: " + tree.element(id)->name);
}

// Where a new part goes: the parent named or the current one, seen through a window to its layout.
Status findParent(const CommandCall& call, UiTree& tree, UiKind kind, int& id) {
    id = tree.currentParent();
    if (call.has("parent"))
        if (Status found = tree.find(call.text("parent"), id); !found)
            return found;
    const UiElement* one = tree.element(id);
    if (!one || (one->kind != UiKind::Window && one->kind != UiKind::Layout))
        return call.fail("the parent must be a window or a layout");
    if (one->object == mainWindowOf(call.session()))
        return call.fail("the main window takes no controls; make a window first");
    if (one->kind == UiKind::Layout)
        return Status::ok();
    const int layout = layoutBelow(tree, id);
    if (kind == UiKind::Layout)
        return layout == UiTree::kNone ? Status::ok() : tooMany(tree, id);
    if (layout == UiTree::kNone)
        return Status::failure("Controls must have a layout.  No layout found in window : " +
                               one->name);
    id = layout;
    return Status::ok();
}

void place(UiTree& tree, int parent, QWidget* widget) {
    QObject* object = tree.element(parent)->object.data();
    if (auto* layout = dynamic_cast<LayoutWidget*>(object))
        layout->take(widget);
    else if (auto* window = qobject_cast<QMainWindow*>(object))
        window->setCentralWidget(widget);
}

bool startsWith(std::string_view text, std::string_view head) {
    return text.substr(0, head.size()) == head;
}

// Sizes and places, not what a field shows.
bool countsPixels(const Kind& kind, const FlagRow& row) {
    const std::string_view name = row.longName;
    return kind.type.kind == UiKind::Layout || name == "width" || name == "height" ||
           startsWith(name, "columnWidth") || startsWith(name, "columnAttach") ||
           startsWith(name, "columnOffset");
}

Status apply(const CommandCall& call, const Kind& kind, const Part& part) {
    for (const ControlFlag* flag : kind.flags)
        for (const FlagUse* use : call.uses(flag->row.longName)) {
            if (countsPixels(kind, *use->row))
                if (Status fits = checkPixels(call, *use); !fits)
                    return fits;
            if (flag->set)
                if (Status done = flag->set(part, *use); !done)
                    return done;
        }
    return Status::ok();
}

Status makePart(const CommandCall& call, const Kind& kind, MainWindow& window, Value& result) {
    UiTree& tree = window.tree();
    UiElement one;
    one.kind = kind.type.kind;
    one.type = kind.type.name;
    if (!kind.type.make)
        return call.fail("only -edit, -query and -exists are possible");
    if (Status named = newName(call, one.name); !named)
        return named;
    if (Status found = findParent(call, tree, one.kind, one.parent); !found)
        return found;
    const int parent = one.parent;
    auto* layout = dynamic_cast<LayoutWidget*>(tree.element(parent)->object.data());
    if (layout && layout->isFull())
        return tooMany(tree, parent);
    QWidget* widget =
        kind.type.make(call, layout ? layout->content()
                                    : qobject_cast<QWidget*>(tree.element(parent)->object.data()));
    one.object = widget;
    int id = UiTree::kNone;
    if (Status added = tree.add(one, kind.type.name, id); !added) {
        delete widget;
        return added;
    }
    if (Status done = apply(call, kind, Part{window, id}); !done) {
        tree.remove(id);
        return done;
    }
    place(tree, parent, widget);
    if (kind.type.wire)
        kind.type.wire(window, id, widget);
    if (one.kind == UiKind::Layout)
        tree.setCurrentParent(id);
    result = tree.fullPath(id);
    return Status::ok();
}

// --- asking and editing --------------------------------------------------------------------------

bool isOfKind(const UiElement* one, const Kind& kind) {
    if (!one || one->kind != kind.type.kind)
        return false;
    return !kind.type.make || one->type == kind.type.name;
}

Status findPart(const CommandCall& call, const Kind& kind, UiTree& tree, int& id) {
    const std::vector<std::string> names = call.texts();
    if (names.size() != 1)
        return call.fail("exactly one name is needed");
    if (Status found = tree.find(names.front(), id); !found)
        return found;
    return isOfKind(tree.element(id), kind)
               ? Status::ok()
               : Status::failure("Object '" + names.front() + "' not found.");
}

Status ask(const CommandCall& call, const Kind& kind, const Part& part, Value& result) {
    for (const ControlFlag* flag : kind.flags)
        if (const FlagUse* use = call.use(flag->row.longName); use && flag->get) {
            result = flag->get(part, *use);
            return Status::ok();
        }
    return call.fail("no flag to query");
}

Status runControl(const CommandCall& call, Value& result) {
    UiTree* tree = nullptr;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    auto& window = *mainWindowOf(call.session());
    const Kind& kind = kinds().at(call.name());
    if (call.has("exists")) {
        const std::vector<std::string> names = call.texts();
        result = names.size() == 1 && isOfKind(tree->element(tree->lookUp(names.front())), kind);
        return Status::ok();
    }
    if (call.isCreate())
        return makePart(call, kind, window, result);
    int id = UiTree::kNone;
    if (Status found = findPart(call, kind, *tree, id); !found)
        return found;
    const Part part{window, id};
    if (call.isQuery())
        return ask(call, kind, part, result);
    const Status done = apply(call, kind, part);
    if (done)
        result = tree->fullPath(id);
    return done;
}

}  // namespace

CommandTable controlCommands() {
    static const std::vector<Command> rows = [] {
        std::vector<Command> made;
        for (const auto& [name, kind] : kinds())
            made.push_back(
                {name.c_str(), kind.rows.data(), kind.rows.size(), runControl, kind.type.help});
        return made;
    }();
    return {rows.data(), rows.size()};
}

}  // namespace torvel
