// Texts, fields, buttons and lines.
#include <memory>

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QVariant>

#include "ui/controls/control_type.h"
#include "ui/controls/field_events.h"
#include "ui/controls/number_field.h"
#include "ui/desktop/main_window.h"

namespace torvel {

void tellNumber(MainWindow& window, int id, NumberField* field) {
    const auto shown = [field] {
        return field->digits() == 0 ? Value(field->wholeValue()) : Value(field->value());
    };
    QObject::connect(field, &QLineEdit::editingFinished, &window, [&window, id, field, shown] {
        if (field->commit())
            window.runEvent(id, "changeCommand", {shown()});
    });
    QObject::connect(field, &QLineEdit::returnPressed, &window, [&window, id, field, shown] {
        field->commit() ? window.runEvent(id, "changeCommand", {shown()}) : void();
        window.runEvent(id, "enterCommand", {shown()});
    });
}

void tellText(MainWindow& window, int id, QLineEdit* field) {
    const auto told = std::make_shared<QString>(field->text());
    const auto value = [field] { return Value(field->text().toStdString()); };
    const auto change = [&window, id, field, told, value] {
        if (field->text() == *told)
            return;
        *told = field->text();
        window.runEvent(id, "changeCommand", {value()});
    };
    // What a script writes is no change by hand.
    QObject::connect(field, &QLineEdit::textChanged, &window, [field, told](const QString& text) {
        if (!field->isModified())
            *told = text;
    });
    QObject::connect(field, &QLineEdit::textEdited, &window, [&window, id, value] {
        window.runEvent(id, "textChangedCommand", {value()});
    });
    QObject::connect(field, &QLineEdit::editingFinished, &window, change);
    QObject::connect(field, &QLineEdit::returnPressed, &window, [&window, id, change, value] {
        change();
        window.runEvent(id, "enterCommand", {value()});
    });
}

namespace {

// --- text ----------------------------------------------------------------------------------------

QWidget* makeText(const CommandCall& call, QWidget* parent) {
    auto* label = new QLabel(QString::fromStdString(call.text("label")), parent);
    label->setTextFormat(call.flag("hyperlink") ? Qt::RichText : Qt::PlainText);
    label->setOpenExternalLinks(call.flag("hyperlink"));
    label->setAlignment(textAlignment("center"));
    return label;
}

Status setAlign(const Part& part, const FlagUse& use) {
    part.as<QLabel>()->setAlignment(textAlignment(use.values[0]));
    return Status::ok();
}

Value alignOf(const Part& part, const FlagUse&) {
    const Qt::Alignment align = part.as<QLabel>()->alignment();
    return align & Qt::AlignLeft ? "left" : align & Qt::AlignRight ? "right" : "center";
}

Status setFont(const Part& part, const FlagUse& use) {
    const std::string name = use.values[0].isString() ? use.values[0].string() : std::string();
    QFont font = part.widget()->font();
    font.setBold(name.find("bold") != std::string::npos || name.find("Bold") != std::string::npos);
    font.setItalic(name.find("oblique") != std::string::npos ||
                   name.find("Oblique") != std::string::npos);
    if (name == "fixedWidthFont")
        font.setFamily(QStringLiteral("DejaVu Sans Mono"));
    part.widget()->setFont(font);
    return Status::ok();
}

constexpr ControlFlag kTextFlags[] = {
    {{"label", "l", "s"}, put<&QLabel::setText>, get<&QLabel::text>},
    {{"align", "al", "s"}, setAlign, alignOf},
    {{"wordWrap", "ww", "b"}, put<&QLabel::setWordWrap>, get<&QLabel::wordWrap>},
    {{"font", "fn", "s"}, setFont},
    {{"hyperlink", "hl", "b"}},
    {{"recomputeSize", "rs", "b"}, setNothing},
};

// --- textField -----------------------------------------------------------------------------------

QWidget* makeTextField(const CommandCall&, QWidget* parent) {
    return new QLineEdit(parent);
}

void wireTextField(MainWindow& window, int id, QWidget* widget) {
    tellText(window, id, static_cast<QLineEdit*>(widget));
}

Value isEditable(const Part& part, const FlagUse&) {
    return !part.as<QLineEdit>()->isReadOnly();
}

Status setEditable(const Part& part, const FlagUse& use) {
    part.as<QLineEdit>()->setReadOnly(!use.values[0].truth());
    return Status::ok();
}

constexpr ControlFlag kTextFieldFlags[] = {
    {{"text", "tx", "s"}, put<&QLineEdit::setText>, get<&QLineEdit::text>},
    {{"fileName", "fi", "s"}, put<&QLineEdit::setText>, get<&QLineEdit::text>},
    {{"insertText", "it", "s"}, put<&QLineEdit::insert>},
    {{"placeholderText", "pht", "s"},
     put<&QLineEdit::setPlaceholderText>,
     get<&QLineEdit::placeholderText>},
    {{"editable", "ed", "b"}, setEditable, isEditable},
    {{"font", "fn", "s"}, setFont},
    {{"alwaysInvokeEnterCommandOnReturn", "aie", "b"}, setNothing},
    {{"changeCommand", "cc", "s"}, setEvent, eventText},
    {{"enterCommand", "ec", "s"}, setEvent, eventText},
    {{"textChangedCommand", "tcc", "s"}, setEvent, eventText},
};

// --- intField, floatField ------------------------------------------------------------------------

QWidget* makeIntField(const CommandCall&, QWidget* parent) {
    return new NumberField(parent, 0);
}

QWidget* makeFloatField(const CommandCall& call, QWidget* parent) {
    return new NumberField(parent, std::max(1, call.integer("precision", 4)));
}

void wireNumber(MainWindow& window, int id, QWidget* widget) {
    tellNumber(window, id, static_cast<NumberField*>(widget));
}

// Limits come before the value that they limit.
constexpr ControlFlag kIntFieldFlags[] = {
    {{"minValue", "min", "i"}, put<&NumberField::setMinimum>, get<&NumberField::wholeMinimum>},
    {{"maxValue", "max", "i"}, put<&NumberField::setMaximum>, get<&NumberField::wholeMaximum>},
    {{"value", "v", "i"}, put<&NumberField::setValue>, get<&NumberField::wholeValue>},
    {{"editable", "ed", "b"}, setEditable, isEditable},
    {{"step", "s", "i"}, setNothing},
    {{"changeCommand", "cc", "s"}, setEvent, eventText},
    {{"enterCommand", "ec", "s"}, setEvent, eventText},
};

constexpr ControlFlag kFloatFieldFlags[] = {
    {{"minValue", "min", "d"}, put<&NumberField::setMinimum>, get<&NumberField::minimum>},
    {{"maxValue", "max", "d"}, put<&NumberField::setMaximum>, get<&NumberField::maximum>},
    {{"precision", "pre", "i"}, put<&NumberField::setDigits>, get<&NumberField::digits>},
    {{"value", "v", "d"}, put<&NumberField::setValue>, get<&NumberField::value>},
    {{"editable", "ed", "b"}, setEditable, isEditable},
    {{"step", "s", "d"}, setNothing},
    {{"changeCommand", "cc", "s"}, setEvent, eventText},
    {{"enterCommand", "ec", "s"}, setEvent, eventText},
};

// --- button --------------------------------------------------------------------------------------

QWidget* makeButton(const CommandCall& call, QWidget* parent) {
    const std::vector<std::string> names = call.texts();
    const std::string fallback = names.empty() ? "button" : names.front();
    return new QPushButton(QString::fromStdString(call.text("label", fallback)), parent);
}

void wireButton(MainWindow& window, int id, QWidget* widget) {
    QObject::connect(static_cast<QPushButton*>(widget), &QPushButton::clicked, &window,
                     [&window, id] { window.runEvent(id, "command", {Value(false)}); });
}

// An ampersand is a character of the label, not the mark of a key.
Status setButtonLabel(const Part& part, const FlagUse& use) {
    part.as<QAbstractButton>()->setText(
        fromValue<QString>(use.values[0]).replace(QLatin1Char('&'), QLatin1String("&&")));
    return Status::ok();
}

Value buttonLabel(const Part& part, const FlagUse&) {
    return part.as<QAbstractButton>()
        ->text()
        .replace(QLatin1String("&&"), QLatin1String("&"))
        .toStdString();
}

Status setButtonAlign(const Part& part, const FlagUse& use) {
    const std::string side = use.values[0].isString() ? use.values[0].string() : std::string();
    part.widget()->setStyleSheet(
        side == "left" || side == "right"
            ? QStringLiteral("text-align: %1; padding: 3px 6px;").arg(QString::fromStdString(side))
            : QString());
    part.widget()->setProperty("align", QString::fromStdString(side));
    return Status::ok();
}

Value buttonAlign(const Part& part, const FlagUse&) {
    const QString side = part.widget()->property("align").toString();
    return side.isEmpty() ? "center" : side.toStdString();
}

constexpr ControlFlag kButtonFlags[] = {
    {{"label", "l", "s"}, setButtonLabel, buttonLabel},
    {{"align", "al", "s"}, setButtonAlign, buttonAlign},
    {{"command", "c", "s"}, setEvent, eventText},
    {{"recomputeSize", "rs", "b"}, setNothing},
    {{"actOnPress", "aop", "b"}, setNothing},
};

// --- separator -----------------------------------------------------------------------------------

QWidget* makeSeparator(const CommandCall& call, QWidget* parent) {
    auto* line = new QFrame(parent);
    line->setProperty("horizontal", call.flag("horizontal", true));
    line->setFrameStyle((call.flag("horizontal", true) ? QFrame::HLine : QFrame::VLine) |
                        QFrame::Sunken);
    return line;
}

Status setStyle(const Part& part, const FlagUse& use) {
    struct Look {
        const char* name;
        int shadow;  ///< 0: no line at all
        int middle;
    };
    static constexpr Look kLooks[] = {
        {"in", QFrame::Sunken, 0},        {"out", QFrame::Raised, 0},
        {"single", QFrame::Plain, 0},     {"double", QFrame::Sunken, 2},
        {"singleDash", QFrame::Plain, 0}, {"doubleDash", QFrame::Sunken, 2},
        {"shelf", QFrame::Raised, 0},     {"none", 0, 0},
    };
    const std::string name = use.values[0].string();
    auto* line = part.as<QFrame>();
    const bool across = line->property("horizontal").toBool();
    for (const Look& look : kLooks)
        if (name == look.name) {
            line->setFrameStyle(look.shadow == 0
                                    ? static_cast<int>(QFrame::NoFrame)
                                    : (across ? QFrame::HLine : QFrame::VLine) | look.shadow);
            line->setMidLineWidth(look.middle);
            line->setProperty("style", QString::fromStdString(name));
            return Status::ok();
        }
    return Status::failure("separator: there is no style '" + name + "'");
}

Value styleOf(const Part& part, const FlagUse&) {
    const QString name = part.widget()->property("style").toString();
    return name.isEmpty() ? "in" : name.toStdString();
}

Value isHorizontal(const Part& part, const FlagUse&) {
    return part.widget()->property("horizontal").toBool();
}

constexpr ControlFlag kSeparatorFlags[] = {
    {{"style", "st", "s"}, setStyle, styleOf},
    {{"horizontal", "hr", "b"}, nullptr, isHorizontal},
};

}  // namespace

ControlTypes fieldTypes() {
    return {
        {"text", UiKind::Control, kTextFlags, std::size(kTextFlags), makeText, nullptr,
         "Text that cannot be edited"},
        {"textField", UiKind::Control, kTextFieldFlags, std::size(kTextFieldFlags), makeTextField,
         wireTextField, "Field for one line of text"},
        {"intField", UiKind::Control, kIntFieldFlags, std::size(kIntFieldFlags), makeIntField,
         wireNumber, "Field for a whole number"},
        {"floatField", UiKind::Control, kFloatFieldFlags, std::size(kFloatFieldFlags),
         makeFloatField, wireNumber, "Field for a number"},
        {"button", UiKind::Control, kButtonFlags, std::size(kButtonFlags), makeButton, wireButton,
         "Button that runs a command"},
        {"separator", UiKind::Control, kSeparatorFlags, std::size(kSeparatorFlags), makeSeparator,
         nullptr, "Line between parts of a layout"},
    };
}

}  // namespace torvel
