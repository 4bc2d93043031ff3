// Check boxes, radio buttons and option menus.
#include <QAction>
#include <QButtonGroup>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QRadioButton>

#include "script/session.h"
#include "ui/controls/control_type.h"
#include "ui/controls/lookup.h"
#include "ui/controls/option_menu.h"
#include "ui/desktop/main_window.h"

namespace torvel {

namespace {

// What a click on a box or a radio button tells: that it changed, and to what.
void tellToggle(MainWindow& window, int id, bool on) {
    window.runEvent(id, "changeCommand", {Value(on)});
    window.runEvent(id, on ? "onCommand" : "offCommand", {Value(on)});
}

// --- checkBox ------------------------------------------------------------------------------------

QString shownLabel(const CommandCall& call) {
    const std::vector<std::string> names = call.texts();
    return QString::fromStdString(call.text("label", names.empty() ? "" : names.front()));
}

QWidget* makeCheckBox(const CommandCall& call, QWidget* parent) {
    return new QCheckBox(shownLabel(call), parent);
}

void wireCheckBox(MainWindow& window, int id, QWidget* widget) {
    QObject::connect(static_cast<QCheckBox*>(widget), &QCheckBox::clicked, &window,
                     [&window, id](bool on) { tellToggle(window, id, on); });
}

constexpr ControlFlag kCheckBoxFlags[] = {
    {{"label", "l", "s"}, put<&QAbstractButton::setText>, get<&QAbstractButton::text>},
    {{"value", "v", "b"}, put<&QAbstractButton::setChecked>, get<&QAbstractButton::isChecked>},
    {{"align", "al", "s"}, setNothing},
    {{"recomputeSize", "rs", "b"}, setNothing},
    {{"changeCommand", "cc", "s"}, setEvent, eventText},
    {{"onCommand", "onc", "s"}, setEvent, eventText},
    {{"offCommand", "ofc", "s"}, setEvent, eventText},
};

// --- radioButton ---------------------------------------------------------------------------------

QWidget* makeRadio(const CommandCall& call, QWidget* parent) {
    return new QRadioButton(shownLabel(call), parent);
}

// The button that was on is told as well.
void wireRadio(MainWindow& window, int id, QWidget* widget) {
    auto* button = static_cast<QRadioButton*>(widget);
    UiTree& tree = window.tree();
    if (const UiElement* one = tree.element(tree.currentCollection()); one && !button->group())
        if (auto* group = qobject_cast<QButtonGroup*>(one->object.data()))
            group->addButton(button);
    QObject::connect(button, &QRadioButton::toggled, &window, [&window, id](bool on) {
        if (!window.isScripted())
            tellToggle(window, id, on);
    });
}

Status setSelected(const Part& part, const FlagUse& use) {
    const MainWindow::Scripted quiet(part.window);
    const bool on = use.values.empty() || use.values[0].truth();
    part.as<QRadioButton>()->setChecked(on);
    return Status::ok();
}

Status setCollection(const Part& part, const FlagUse& use) {
    int id = UiTree::kNone;
    if (Status found = part.tree().find(use.values[0].string(), id); !found)
        return found;
    auto* group = qobject_cast<QButtonGroup*>(part.tree().element(id)->object.data());
    if (!group)
        return Status::failure("radioButton: '" + use.values[0].string() +
                               "' is no radio collection");
    group->addButton(part.as<QRadioButton>());
    return Status::ok();
}

Value collectionOf(const Part& part, const FlagUse&) {
    const int id = part.tree().idOf(part.as<QRadioButton>()->group());
    return part.tree().fullPath(id);
}

Status setData(const Part& part, const FlagUse& use) {
    part.widget()->setProperty("data", fromValue<int>(use.values[0]));
    return Status::ok();
}

Value dataOf(const Part& part, const FlagUse&) {
    return part.widget()->property("data").toInt();
}

constexpr ControlFlag kRadioFlags[] = {
    {{"label", "l", "s"}, put<&QAbstractButton::setText>, get<&QAbstractButton::text>},
    {{"collection", "cl", "s"}, setCollection, collectionOf},
    {{"select", "sl", ""}, setSelected, get<&QAbstractButton::isChecked>},
    {{"data", "da", "i"}, setData, dataOf},
    {{"align", "al", "s"}, setNothing},
    {{"recomputeSize", "rs", "b"}, setNothing},
    {{"changeCommand", "cc", "s"}, setEvent, eventText},
    {{"onCommand", "onc", "s"}, setEvent, eventText},
    {{"offCommand", "ofc", "s"}, setEvent, eventText},
};

// --- optionMenu ----------------------------------------------------------------------------------

QWidget* makeOptionMenu(const CommandCall& call, QWidget* parent) {
    if (!call.has("label"))
        return new OptionMenu(parent);
    auto* row = new QWidget(parent);
    auto* box = new QHBoxLayout(row);
    box->setContentsMargins(0, 0, 0, 0);
    box->setSpacing(4);
    box->addWidget(new QLabel(QString::fromStdString(call.text("label")), row));
    box->addWidget(new OptionMenu(row), 1);
    return row;
}

void wireOptionMenu(MainWindow& window, int id, QWidget*) {
    auto* menu = Part{window, id}.as<OptionMenu>();
    window.tree().setCurrentMenu(id);
    QObject::connect(
        menu, QOverload<int>::of(&QComboBox::activated), &window, [&window, id, menu](int index) {
            const QPointer<QObject> item = menu->itemData(index).value<QObject*>();
            window.runEvent(id, "changeCommand", {Value(menu->itemText(index).toStdString())});
            if (auto* action = qobject_cast<QAction*>(item.data()))
                action->trigger();
        });
}

Status setMenuLabel(const Part& part, const FlagUse& use) {
    if (auto* label = part.as<QLabel>()) {
        label->setText(fromValue<QString>(use.values[0]));
        return Status::ok();
    }
    return Status::failure("optionMenu: a label can be changed only where one was made");
}

Value menuLabel(const Part& part, const FlagUse&) {
    const auto* label = part.as<QLabel>();
    return label ? label->text().toStdString() : std::string();
}

// At creation there are no items yet.
Status setChoice(const Part& part, const FlagUse& use) {
    auto* menu = part.as<OptionMenu>();
    const int at = menu->findText(fromValue<QString>(use.values[0]));
    if (at < 0)
        return Status::failure("optionMenu: Item not found: " + use.values[0].string());
    menu->setCurrentIndex(at);
    return Status::ok();
}

Status selectItem(const Part& part, const FlagUse& use) {
    auto* menu = part.as<OptionMenu>();
    const int wanted = fromValue<int>(use.values[0]);
    if (wanted < 1 || wanted > menu->count())
        return Status::failure("optionMenu: there is no item " + std::to_string(wanted));
    menu->setCurrentIndex(wanted - 1);
    return Status::ok();
}

Value selectedItem(const Part& part, const FlagUse&) {
    return part.as<OptionMenu>()->currentIndex() + 1;
}

Value items(const Part& part, bool full) {
    std::vector<std::string> names;
    for (int child : part.tree().children(part.id))
        if (const UiElement* one = part.tree().element(child))
            names.push_back(full ? part.tree().fullPath(child) : one->name);
    return names.empty() ? Value() : Value::strings(names);
}

Value itemsLong(const Part& part, const FlagUse&) {
    return items(part, true);
}

Value itemsShort(const Part& part, const FlagUse&) {
    return items(part, false);
}

Status deleteItems(const Part& part, const FlagUse&) {
    for (int child : part.tree().children(part.id))
        part.tree().remove(child);
    return Status::ok();
}

constexpr ControlFlag kOptionMenuFlags[] = {
    {{"label", "l", "s"}, setMenuLabel, menuLabel},
    {{"deleteAllItems", "dai", "", kEdit}, deleteItems},
    {{"value", "v", "s", kEdit | kQuery}, setChoice, get<&QComboBox::currentText>},
    {{"select", "sl", "i", kEdit | kQuery}, selectItem, selectedItem},
    {{"numberOfItems", "ni", "", kQuery}, nullptr, get<&QComboBox::count>},
    {{"itemListLong", "ill", "", kQuery}, nullptr, itemsLong},
    {{"itemListShort", "ils", "", kQuery}, nullptr, itemsShort},
    {{"changeCommand", "cc", "s"}, setEvent, eventText},
};

}  // namespace

ControlTypes choiceTypes() {
    return {
        {"checkBox", UiKind::Control, kCheckBoxFlags, std::size(kCheckBoxFlags), makeCheckBox,
         wireCheckBox, "Box to tick"},
        {"radioButton", UiKind::Control, kRadioFlags, std::size(kRadioFlags), makeRadio, wireRadio,
         "Choice of one in its collection"},
        {"optionMenu", UiKind::Control, kOptionMenuFlags, std::size(kOptionMenuFlags),
         makeOptionMenu, wireOptionMenu, "Choice of one among its items"},
    };
}

}  // namespace torvel
