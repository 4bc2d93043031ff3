#pragma once

#include <array>
#include <type_traits>
#include <vector>

#include <QWidget>

#include "script/command.h"
#include "script/command.h"
#include "ui/controls/tree.h"

namespace torvel {

class MainWindow;

/// One element that a call makes, edits or asks.
struct Part {
    MainWindow& window;
    int id;

    UiTree& tree() const;
    /// Valid until an element is added or removed.
    UiElement& element() const;
    QWidget* widget() const;
    /// The element's own widget or the first of that class inside it; null when there is none.
    template <class Widget>
    Widget* as() const;
};

/// One flag of a control: its row, what it does at creation and in edit mode, what it answers.
/// Without `set` the flag is for creation alone and `make` reads it; without `get` it cannot be
/// asked. The modes of the command follow from that unless the row names some.
struct ControlFlag {
    FlagRow row = {"", ""};
    Status (*set)(const Part& part, const FlagUse& use) = nullptr;
    Value (*get)(const Part& part, const FlagUse& use) = nullptr;
};

/// One kind of layout or control: the command of its name makes, edits and asks it. Flags act in
/// the order of the table, those that every control has (size, enable, visible ...) before them.
struct ControlType {
    const char* name;
    UiKind kind;
    const ControlFlag* flags;
    std::size_t flagCount;
    /// Null for a kind that is only edited and asked ("control", "layout").
    QWidget* (*make)(const CommandCall& call, QWidget* parent);
    /// Connects the widget's signals to MainWindow::runEvent; null when there are none.
    void (*wire)(MainWindow& window, int id, QWidget* widget);
    const char* help;
};

using ControlTypes = std::vector<ControlType>;

ControlTypes layoutTypes();  ///< columnLayout rowColumnLayout rowLayout formLayout frameLayout ...
ControlTypes fieldTypes();   ///< text textField intField floatField separator button
ControlTypes choiceTypes();  ///< checkBox radioButton optionMenu
ControlTypes listTypes();    ///< textScrollList scrollField progressBar
ControlTypes sliderTypes();  ///< intSlider floatSlider intSliderGrp floatSliderGrp
ControlTypes groupTypes();   ///< textFieldGrp intFieldGrp floatFieldGrp textFieldButtonGrp ...

/// The commands of all of them. The rows stay for the life of the process.
CommandTable controlCommands();

/// For events: keeps the text or callable under the flag's long name, in the language of the call.
Status setEvent(const Part& part, const FlagUse& use);
Value eventText(const Part& part, const FlagUse& use);
/// A flag that is read and has no meaning on this desktop.
Status setNothing(const Part& part, const FlagUse& use);

// --- flags as pairs of methods -------------------------------------------------------------------

/// A value of a call as a method takes it, and back.
template <class T>
T fromValue(const Value& value);
template <class T>
Value toValue(const T& value);

template <class Method>
struct MethodTraits;
template <class Widget_, class Result, class Argument_>
struct MethodTraits<Result (Widget_::*)(Argument_)> {
    using Widget = Widget_;
    using Argument = std::decay_t<Argument_>;
};
template <class Widget_, class Result>
struct MethodTraits<Result (Widget_::*)() const> {
    using Widget = Widget_;
};

/// `put<&QLabel::setText>`: the flag's one value goes to that method.
template <auto method>
Status put(const Part& part, const FlagUse& use) {
    using Traits = MethodTraits<decltype(method)>;
    if (auto* widget = part.as<typename Traits::Widget>(); widget && !use.values.empty())
        (widget->*method)(fromValue<typename Traits::Argument>(use.values[0]));
    return Status::ok();
}

/// `get<&QLabel::text>`: the flag answers with what that method returns.
template <auto method>
Value get(const Part& part, const FlagUse&) {
    using Traits = MethodTraits<decltype(method)>;
    auto* widget = part.as<typename Traits::Widget>();
    return widget ? toValue((widget->*method)()) : Value();
}

template <class Widget>
Widget* Part::as() const {
    QWidget* own = widget();
    if (auto* same = dynamic_cast<Widget*>(own))
        return same;
    if (own)
        for (QObject* child : own->children())
            if (auto* inner = dynamic_cast<Widget*>(child))
                return inner;
    return nullptr;
}

/// Several rows of flags one after the other.
template <std::size_t... sizes>
constexpr auto joined(const ControlFlag (&... parts)[sizes]) {
    std::array<ControlFlag, (sizes + ...)> all{};
    std::size_t at = 0;
    const auto add = [&](const ControlFlag* flags, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            all[at++] = flags[i];
    };
    (add(parts, sizes), ...);
    return all;
}

/// Left, right or centred, from "left", "right", "center"; anything else is centred.
Qt::Alignment textAlignment(const Value& value);

}  // namespace torvel
