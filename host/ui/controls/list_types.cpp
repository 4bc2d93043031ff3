// Lists, long texts and bars.
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>

#include "ui/controls/control_type.h"
#include "ui/desktop/main_window.h"

namespace torvel {

namespace {

// --- textScrollList ------------------------------------------------------------------------------

QWidget* makeList(const CommandCall& call, QWidget* parent) {
    auto* list = new QListWidget(parent);
    list->setUniformItemSizes(true);
    if (call.flag("allowMultiSelection"))
        list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    return list;
}

void wireList(MainWindow& window, int id, QWidget* widget) {
    auto* list = static_cast<QListWidget*>(widget);
    QObject::connect(list, &QListWidget::itemSelectionChanged, &window, [&window, id] {
        if (!window.isScripted())
            window.runEvent(id, "selectCommand");
    });
    QObject::connect(list, &QListWidget::itemDoubleClicked, &window,
                     [&window, id] { window.runEvent(id, "doubleClickCommand"); });
}

Status append(const Part& part, const FlagUse& use) {
    part.as<QListWidget>()->addItem(fromValue<QString>(use.values[0]));
    return Status::ok();
}

Status removeAll(const Part& part, const FlagUse&) {
    const MainWindow::Scripted quiet(part.window);
    part.as<QListWidget>()->clear();
    return Status::ok();
}

Status noItem(const FlagUse& use) {
    return Status::failure("textScrollList: Item not found: " + use.values[0].string());
}

Status removeItem(const Part& part, const FlagUse& use) {
    const MainWindow::Scripted quiet(part.window);
    auto* list = part.as<QListWidget>();
    const auto found = list->findItems(fromValue<QString>(use.values[0]), Qt::MatchExactly);
    if (found.isEmpty())
        return noItem(use);
    delete found.first();
    return Status::ok();
}

Status choose(const Part& part, const FlagUse& use) {
    const MainWindow::Scripted quiet(part.window);
    const auto found =
        part.as<QListWidget>()->findItems(fromValue<QString>(use.values[0]), Qt::MatchExactly);
    if (found.isEmpty())
        return noItem(use);
    found.first()->setSelected(true);
    return Status::ok();
}

Status chooseIndex(const Part& part, const FlagUse& use) {
    const MainWindow::Scripted quiet(part.window);
    QListWidgetItem* item = part.as<QListWidget>()->item(fromValue<int>(use.values[0]) - 1);
    if (!item)
        return Status::failure("textScrollList: there is no item " +
                               std::to_string(fromValue<int>(use.values[0])));
    item->setSelected(true);
    return Status::ok();
}

Status chooseNone(const Part& part, const FlagUse&) {
    const MainWindow::Scripted quiet(part.window);
    part.as<QListWidget>()->clearSelection();
    return Status::ok();
}

Value allItems(const Part& part, const FlagUse&) {
    const auto* list = part.as<QListWidget>();
    std::vector<std::string> texts;
    for (int row = 0; row < list->count(); ++row)
        texts.push_back(list->item(row)->text().toStdString());
    return texts.empty() ? Value() : Value::strings(texts);
}

Value chosenItems(const Part& part, bool numbers) {
    const auto* list = part.as<QListWidget>();
    Value::List chosen;
    for (int row = 0; row < list->count(); ++row)
        if (list->item(row)->isSelected())
            chosen.push_back(numbers ? Value(row + 1)
                                     : Value(list->item(row)->text().toStdString()));
    return chosen.empty() ? Value() : Value(chosen);
}

Value chosenTexts(const Part& part, const FlagUse&) {
    return chosenItems(part, false);
}

Value chosenNumbers(const Part& part, const FlagUse&) {
    return chosenItems(part, true);
}

Value chosenCount(const Part& part, const FlagUse&) {
    return static_cast<int>(part.as<QListWidget>()->selectedItems().size());
}

// What is taken away goes before what is added, and that before what is chosen.
constexpr ControlFlag kListFlags[] = {
    {{"allowMultiSelection", "ams", "b", kCreate}},
    {{"numberOfRows", "nr", "i"}, setNothing},
    {{"removeAll", "ra", "", kEdit}, removeAll},
    {{"removeItem", "ri", "s", kEdit, true}, removeItem},
    {{"append", "a", "s", kCreate | kEdit, true}, append},
    {{"deselectAll", "da", "", kEdit}, chooseNone},
    {{"selectItem", "si", "s", kAllModes, true}, choose, chosenTexts},
    {{"selectIndexedItem", "sii", "i", kAllModes, true}, chooseIndex, chosenNumbers},
    {{"allItems", "ai", "", kQuery}, nullptr, allItems},
    {{"numberOfItems", "ni", "", kQuery}, nullptr, get<&QListWidget::count>},
    {{"numberOfSelectedItems", "nsi", "", kQuery}, nullptr, chosenCount},
    {{"selectCommand", "sc", "s"}, setEvent, eventText},
    {{"doubleClickCommand", "dcc", "s"}, setEvent, eventText},
};

// --- scrollField ---------------------------------------------------------------------------------

QWidget* makeScrollField(const CommandCall& call, QWidget* parent) {
    auto* field = new QPlainTextEdit(parent);
    field->setLineWrapMode(call.flag("wordWrap") ? QPlainTextEdit::WidgetWidth
                                                 : QPlainTextEdit::NoWrap);
    return field;
}

Status setEditable(const Part& part, const FlagUse& use) {
    part.as<QPlainTextEdit>()->setReadOnly(!use.values[0].truth());
    return Status::ok();
}

Value isEditable(const Part& part, const FlagUse&) {
    return !part.as<QPlainTextEdit>()->isReadOnly();
}

constexpr ControlFlag kScrollFieldFlags[] = {
    {{"text", "tx", "s"}, put<&QPlainTextEdit::setPlainText>, get<&QPlainTextEdit::toPlainText>},
    {{"insertText", "it", "s"}, put<&QPlainTextEdit::insertPlainText>},
    {{"editable", "ed", "b"}, setEditable, isEditable},
    {{"wordWrap", "ww", "b", kCreate}},
};

// --- progressBar ---------------------------------------------------------------------------------

QWidget* makeBar(const CommandCall&, QWidget* parent) {
    auto* bar = new QProgressBar(parent);
    bar->setValue(0);
    return bar;
}

Status stepBar(const Part& part, const FlagUse& use) {
    auto* bar = part.as<QProgressBar>();
    bar->setValue(
        qBound(bar->minimum(), bar->value() + fromValue<int>(use.values[0]), bar->maximum()));
    return Status::ok();
}

constexpr ControlFlag kBarFlags[] = {
    {{"minValue", "min", "i"}, put<&QProgressBar::setMinimum>, get<&QProgressBar::minimum>},
    {{"maxValue", "max", "i"}, put<&QProgressBar::setMaximum>, get<&QProgressBar::maximum>},
    {{"progress", "pr", "i"}, put<&QProgressBar::setValue>, get<&QProgressBar::value>},
    {{"step", "s", "i", kCreate | kEdit}, stepBar},
    {{"status", "st", "s"}, put<&QProgressBar::setFormat>, get<&QProgressBar::format>},
};

}  // namespace

ControlTypes listTypes() {
    return {
        {"textScrollList", UiKind::Control, kListFlags, std::size(kListFlags), makeList, wireList,
         "List of texts to choose from"},
        {"scrollField", UiKind::Control, kScrollFieldFlags, std::size(kScrollFieldFlags),
         makeScrollField, nullptr, "Field for a text of several lines"},
        {"progressBar", UiKind::Control, kBarFlags, std::size(kBarFlags), makeBar, nullptr,
         "Bar that shows how far a work has come"},
    };
}

}  // namespace torvel
