// Labels with their fields in one row.
#include <algorithm>

#include <QButtonGroup>
#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>

#include "ui/controls/control_type.h"
#include "ui/controls/field_events.h"
#include "ui/controls/group_widget.h"
#include "ui/controls/number_field.h"
#include "ui/desktop/main_window.h"

namespace torvel {

namespace {

GroupWidget* group(const Part& part) {
    return part.as<GroupWidget>();
}

// --- flags of every group ------------------------------------------------------------------------

Status setCellWidth(const Part& part, const FlagUse& use) {
    group(part)->setColumnWidth(fromValue<int>(use.values[0]), fromValue<int>(use.values[1]));
    return Status::ok();
}

Status setCellWidths(const Part& part, const FlagUse& use) {
    for (std::size_t i = 0; i < use.values.size(); ++i)
        group(part)->setColumnWidth(static_cast<int>(i) + 1, fromValue<int>(use.values[i]));
    return Status::ok();
}

Status setCellAlign(const Part& part, const FlagUse& use) {
    group(part)->setColumnAlign(fromValue<int>(use.values[0]), textAlignment(use.values[1]));
    return Status::ok();
}

Status setCellAligns(const Part& part, const FlagUse& use) {
    for (std::size_t i = 0; i < use.values.size(); ++i)
        group(part)->setColumnAlign(static_cast<int>(i) + 1, textAlignment(use.values[i]));
    return Status::ok();
}

template <int column>
Status setAdjustable(const Part& part, const FlagUse&) {
    group(part)->setAdjustable(column);
    return Status::ok();
}

// The label comes first: it decides how the columns count.
constexpr ControlFlag kGroupFlags[] = {
    {{"label", "l", "s"}, put<&GroupWidget::setLabel>, get<&GroupWidget::label>},
    {{"extraLabel", "el", "s"}, put<&GroupWidget::setExtraLabel>, get<&GroupWidget::extraLabel>},
    {{"columnWidth", "cw", "ii", kAllModes, true}, setCellWidth},
    {{"columnWidth1", "cw1", "i"}, setCellWidths},
    {{"columnWidth2", "cw2", "ii"}, setCellWidths},
    {{"columnWidth3", "cw3", "iii"}, setCellWidths},
    {{"columnWidth4", "cw4", "iiii"}, setCellWidths},
    {{"columnWidth5", "cw5", "iiiii"}, setCellWidths},
    {{"columnWidth6", "cw6", "iiiiii"}, setCellWidths},
    {{"columnAlign", "cal", "is", kAllModes, true}, setCellAlign},
    {{"columnAlign1", "cl1", "s"}, setCellAligns},
    {{"columnAlign2", "cl2", "ss"}, setCellAligns},
    {{"columnAlign3", "cl3", "sss"}, setCellAligns},
    {{"columnAttach", "cat", "isi", kAllModes, true}, setNothing},
    {{"columnAttach2", "ct2", "ss"}, setNothing},
    {{"columnAttach3", "ct3", "sss"}, setNothing},
    {{"columnOffset2", "co2", "ii"}, setNothing},
    {{"adjustableColumn", "adj", "i"}, put<&GroupWidget::setAdjustable>},
    {{"adjustableColumn1", "ad1"}, setAdjustable<1>},
    {{"adjustableColumn2", "ad2"}, setAdjustable<2>},
    {{"adjustableColumn3", "ad3"}, setAdjustable<3>},
    {{"adjustableColumn4", "ad4"}, setAdjustable<4>},
    {{"changeCommand", "cc", "s"}, setEvent, eventText},
};

template <int index>
Status enableField(const Part& part, const FlagUse& use) {
    if (QWidget* field = group(part)->field(index - 1))
        field->setEnabled(use.values[0].truth());
    return Status::ok();
}

template <int index>
Value isFieldEnabled(const Part& part, const FlagUse&) {
    const QWidget* field = group(part)->field(index - 1);
    return field && field->isEnabled();
}

constexpr ControlFlag kEnableFlags[] = {
    {{"enable1", "en1", "b"}, enableField<1>, isFieldEnabled<1>},
    {{"enable2", "en2", "b"}, enableField<2>, isFieldEnabled<2>},
    {{"enable3", "en3", "b"}, enableField<3>, isFieldEnabled<3>},
    {{"enable4", "en4", "b"}, enableField<4>, isFieldEnabled<4>},
};

// --- textFieldGrp, textFieldButtonGrp ------------------------------------------------------------

QWidget* makeTextGroup(const CommandCall&, QWidget* parent) {
    auto* made = new GroupWidget(parent);
    made->add(new QLineEdit(made), 200);
    return made;
}

QWidget* makeTextButtonGroup(const CommandCall& call, QWidget* parent) {
    auto* made = static_cast<GroupWidget*>(makeTextGroup(call, parent));
    made->add(new QPushButton(made), 0);
    return made;
}

void wireTextGroup(MainWindow& window, int id, QWidget* widget) {
    const auto* made = static_cast<GroupWidget*>(widget);
    tellText(window, id, made->as<QLineEdit>(0));
    if (auto* button = made->as<QPushButton>(1))
        QObject::connect(button, &QPushButton::clicked, &window,
                         [&window, id] { window.runEvent(id, "buttonCommand"); });
}

Status setEditable(const Part& part, const FlagUse& use) {
    group(part)->as<QLineEdit>(0)->setReadOnly(!use.values[0].truth());
    return Status::ok();
}

Value isEditable(const Part& part, const FlagUse&) {
    return !group(part)->as<QLineEdit>(0)->isReadOnly();
}

Status setButton(const Part& part, const FlagUse& use) {
    group(part)->as<QPushButton>(1)->setText(fromValue<QString>(use.values[0]));
    return Status::ok();
}

Value buttonLabel(const Part& part, const FlagUse&) {
    return group(part)->as<QPushButton>(1)->text().toStdString();
}

constexpr ControlFlag kTextFlags[] = {
    {{"text", "tx", "s"}, put<&QLineEdit::setText>, get<&QLineEdit::text>},
    {{"fileName", "fi", "s"}, put<&QLineEdit::setText>, get<&QLineEdit::text>},
    {{"placeholderText", "pht", "s"},
     put<&QLineEdit::setPlaceholderText>,
     get<&QLineEdit::placeholderText>},
    {{"editable", "ed", "b"}, setEditable, isEditable},
    {{"textChangedCommand", "tcc", "s"}, setEvent, eventText},
};

constexpr auto kTextGroupFlags = joined(kGroupFlags, kTextFlags);

constexpr ControlFlag kTextButtonGroupOwn[] = {
    {{"buttonLabel", "bl", "s"}, setButton, buttonLabel},
    {{"buttonCommand", "bc", "s"}, setEvent, eventText},
};
constexpr auto kTextButtonGroupFlags = joined(kGroupFlags, kTextFlags, kTextButtonGroupOwn);

// --- intFieldGrp, floatFieldGrp ------------------------------------------------------------------

QWidget* makeNumberGroup(const CommandCall& call, QWidget* parent, int digits) {
    auto* made = new GroupWidget(parent);
    const int count = std::clamp(call.integer("numberOfFields", 1), 1, 4);
    for (int i = 0; i < count; ++i)
        made->add(new NumberField(made, digits), 70);
    return made;
}

QWidget* makeIntGroup(const CommandCall& call, QWidget* parent) {
    return makeNumberGroup(call, parent, 0);
}

QWidget* makeFloatGroup(const CommandCall& call, QWidget* parent) {
    return makeNumberGroup(call, parent, std::max(1, call.integer("precision", 4)));
}

void wireNumberGroup(MainWindow& window, int id, QWidget* widget) {
    const auto* made = static_cast<GroupWidget*>(widget);
    for (int i = 0; i < made->fieldCount(); ++i)
        tellNumber(window, id, made->as<NumberField>(i));
}

Value shownNumber(const NumberField* field) {
    if (!field)
        return Value();
    return field->digits() == 0 ? Value(field->wholeValue()) : Value(field->value());
}

template <int index>
Status setNumber(const Part& part, const FlagUse& use) {
    auto* field = group(part)->as<NumberField>(index - 1);
    if (!field)
        return Status::failure(part.element().type + ": there is no field " +
                               std::to_string(index));
    field->setValue(use.values[0].number());
    return Status::ok();
}

template <int index>
Value numberOf(const Part& part, const FlagUse&) {
    return shownNumber(group(part)->as<NumberField>(index - 1));
}

Status setNumbers(const Part& part, const FlagUse& use) {
    for (std::size_t i = 0; i < use.values.size(); ++i)
        if (auto* field = group(part)->as<NumberField>(static_cast<int>(i)))
            field->setValue(use.values[i].number());
    return Status::ok();
}

Value numbersOf(const Part& part, const FlagUse&) {
    Value::List all;
    for (int i = 0; i < group(part)->fieldCount(); ++i)
        all.push_back(shownNumber(group(part)->as<NumberField>(i)));
    return all;
}

constexpr ControlFlag kIntGroupOwn[] = {
    {{"numberOfFields", "nf", "i", kCreate}},
    {{"value", "v", "i*"}, setNumbers, numbersOf},
    {{"value1", "v1", "i"}, setNumber<1>, numberOf<1>},
    {{"value2", "v2", "i"}, setNumber<2>, numberOf<2>},
    {{"value3", "v3", "i"}, setNumber<3>, numberOf<3>},
    {{"value4", "v4", "i"}, setNumber<4>, numberOf<4>},
};
constexpr auto kIntGroupFlags = joined(kGroupFlags, kEnableFlags, kIntGroupOwn);

constexpr ControlFlag kFloatGroupOwn[] = {
    {{"numberOfFields", "nf", "i", kCreate}},
    {{"precision", "pre", "i", kCreate}},
    {{"value", "v", "d*"}, setNumbers, numbersOf},
    {{"value1", "v1", "d"}, setNumber<1>, numberOf<1>},
    {{"value2", "v2", "d"}, setNumber<2>, numberOf<2>},
    {{"value3", "v3", "d"}, setNumber<3>, numberOf<3>},
    {{"value4", "v4", "d"}, setNumber<4>, numberOf<4>},
};
constexpr auto kFloatGroupFlags = joined(kGroupFlags, kEnableFlags, kFloatGroupOwn);

// --- checkBoxGrp, radioButtonGrp -----------------------------------------------------------------

template <class Button>
QWidget* makeButtons(const CommandCall& call, QWidget* parent, const char* count) {
    auto* made = new GroupWidget(parent);
    if (call.flag("vertical"))
        made->setVertical();
    for (int i = 0; i < std::clamp(call.integer(count, 1), 1, 4); ++i)
        made->add(new Button(made), call.flag("vertical") ? 0 : 90);
    return made;
}

QWidget* makeCheckGroup(const CommandCall& call, QWidget* parent) {
    return makeButtons<QCheckBox>(call, parent, "numberOfCheckBoxes");
}

QWidget* makeRadioGroup(const CommandCall& call, QWidget* parent) {
    QWidget* made = makeButtons<QRadioButton>(call, parent, "numberOfRadioButtons");
    auto* exclusive = new QButtonGroup(made);
    for (int i = 0; i < static_cast<GroupWidget*>(made)->fieldCount(); ++i)
        exclusive->addButton(static_cast<GroupWidget*>(made)->as<QRadioButton>(i));
    return made;
}

void wireButtons(MainWindow& window, int id, QWidget* widget) {
    const auto* made = static_cast<GroupWidget*>(widget);
    for (int i = 0; i < made->fieldCount(); ++i)
        QObject::connect(made->as<QAbstractButton>(i), &QAbstractButton::clicked, &window,
                         [&window, id](bool on) {
                             window.runEvent(id, "changeCommand", {Value(on)});
                             window.runEvent(id, on ? "onCommand" : "offCommand", {Value(on)});
                         });
}

template <int index>
Status setButtonLabel(const Part& part, const FlagUse& use) {
    if (auto* button = group(part)->as<QAbstractButton>(index - 1))
        button->setText(fromValue<QString>(use.values[0]));
    return Status::ok();
}

template <int index>
Value buttonLabelOf(const Part& part, const FlagUse&) {
    const auto* button = group(part)->as<QAbstractButton>(index - 1);
    return button ? button->text().toStdString() : std::string();
}

Status setButtonLabels(const Part& part, const FlagUse& use) {
    for (std::size_t i = 0; i < use.values.size(); ++i)
        if (auto* button = group(part)->as<QAbstractButton>(static_cast<int>(i)))
            button->setText(fromValue<QString>(use.values[i]));
    return Status::ok();
}

template <int index>
Status setTicked(const Part& part, const FlagUse& use) {
    if (auto* button = group(part)->as<QAbstractButton>(index - 1))
        button->setChecked(use.values[0].truth());
    return Status::ok();
}

template <int index>
Value isTicked(const Part& part, const FlagUse&) {
    const auto* button = group(part)->as<QAbstractButton>(index - 1);
    return button && button->isChecked();
}

Status setChosen(const Part& part, const FlagUse& use) {
    auto* button = group(part)->as<QAbstractButton>(fromValue<int>(use.values[0]) - 1);
    if (!button)
        return Status::failure("radioButtonGrp: there is no such button");
    button->setChecked(true);
    return Status::ok();
}

Value chosen(const Part& part, const FlagUse&) {
    for (int i = 0; i < group(part)->fieldCount(); ++i)
        if (const auto* button = group(part)->as<QAbstractButton>(i); button && button->isChecked())
            return i + 1;
    return 0;
}

constexpr ControlFlag kButtonFlags[] = {
    {{"vertical", "vr", "b", kCreate}},
    {{"onCommand", "onc", "s"}, setEvent, eventText},
    {{"offCommand", "ofc", "s"}, setEvent, eventText},
    {{"label1", "l1", "s"}, setButtonLabel<1>, buttonLabelOf<1>},
    {{"label2", "l2", "s"}, setButtonLabel<2>, buttonLabelOf<2>},
    {{"label3", "l3", "s"}, setButtonLabel<3>, buttonLabelOf<3>},
    {{"label4", "l4", "s"}, setButtonLabel<4>, buttonLabelOf<4>},
    {{"labelArray2", "la2", "ss"}, setButtonLabels},
    {{"labelArray3", "la3", "sss"}, setButtonLabels},
    {{"labelArray4", "la4", "ssss"}, setButtonLabels},
};

constexpr ControlFlag kCheckGroupOwn[] = {
    {{"numberOfCheckBoxes", "ncb", "i", kCreate}},
    {{"value1", "v1", "b"}, setTicked<1>, isTicked<1>},
    {{"value2", "v2", "b"}, setTicked<2>, isTicked<2>},
    {{"value3", "v3", "b"}, setTicked<3>, isTicked<3>},
    {{"value4", "v4", "b"}, setTicked<4>, isTicked<4>},
};
constexpr auto kCheckGroupFlags = joined(kGroupFlags, kEnableFlags, kButtonFlags, kCheckGroupOwn);

constexpr ControlFlag kRadioGroupOwn[] = {
    {{"numberOfRadioButtons", "nrb", "i", kCreate}},
    {{"select", "sl", "i"}, setChosen, chosen},
};
constexpr auto kRadioGroupFlags = joined(kGroupFlags, kEnableFlags, kButtonFlags, kRadioGroupOwn);

}  // namespace

ControlTypes groupTypes() {
    return {
        {"textFieldGrp", UiKind::Control, kTextGroupFlags.data(), kTextGroupFlags.size(),
         makeTextGroup, wireTextGroup, "Label and text field"},
        {"textFieldButtonGrp", UiKind::Control, kTextButtonGroupFlags.data(),
         kTextButtonGroupFlags.size(), makeTextButtonGroup, wireTextGroup,
         "Label, text field and button"},
        {"intFieldGrp", UiKind::Control, kIntGroupFlags.data(), kIntGroupFlags.size(), makeIntGroup,
         wireNumberGroup, "Label and fields for whole numbers"},
        {"floatFieldGrp", UiKind::Control, kFloatGroupFlags.data(), kFloatGroupFlags.size(),
         makeFloatGroup, wireNumberGroup, "Label and fields for numbers"},
        {"checkBoxGrp", UiKind::Control, kCheckGroupFlags.data(), kCheckGroupFlags.size(),
         makeCheckGroup, wireButtons, "Label and boxes to tick"},
        {"radioButtonGrp", UiKind::Control, kRadioGroupFlags.data(), kRadioGroupFlags.size(),
         makeRadioGroup, wireButtons, "Label and a choice of one"},
    };
}

}  // namespace torvel
