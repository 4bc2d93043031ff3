// Sliders, alone and with a label and a field.
#include <cmath>

#include <QSlider>

#include "ui/controls/control_type.h"
#include "ui/controls/field_events.h"
#include "ui/controls/group_widget.h"
#include "ui/controls/number_field.h"
#include "ui/desktop/main_window.h"

namespace torvel {

namespace {

/// A slider over any range, in a thousand steps or, for whole numbers, in steps of one.
class Slider : public QSlider {
  public:
    Slider(QWidget* parent, bool whole) : QSlider(Qt::Horizontal, parent), m_whole(whole) {
        refresh(0.0);
    }
    double number() const {
        return m_whole ? sliderPosition()
                       : m_low + (m_high - m_low) * sliderPosition() / double(kSteps);
    }
    int wholeNumber() const { return static_cast<int>(std::lround(number())); }
    void setNumber(double number) { refresh(number); }
    double low() const { return m_low; }
    double high() const { return m_high; }
    int wholeLow() const { return static_cast<int>(m_low); }
    int wholeHigh() const { return static_cast<int>(m_high); }
    void setLow(double low) {
        const double kept = number();
        m_low = low;
        m_high = std::max(m_high, low);
        refresh(kept);
    }
    void setHigh(double high) {
        const double kept = number();
        m_high = high;
        m_low = std::min(m_low, high);
        refresh(kept);
    }

  private:
    static constexpr int kSteps = 1000;
    void refresh(double number) {
        const double limited = std::min(m_high, std::max(m_low, number));
        const double span = m_high > m_low ? m_high - m_low : 1.0;
        setRange(m_whole ? static_cast<int>(m_low) : 0,
                 m_whole ? static_cast<int>(m_high) : kSteps);
        setValue(
            static_cast<int>(std::lround(m_whole ? limited : kSteps * (limited - m_low) / span)));
    }

    bool m_whole;
    double m_low = 0.0, m_high = 100.0;
};

Value shown(const Slider& slider, bool whole) {
    return whole ? Value(slider.wholeNumber()) : Value(slider.number());
}

void wireSlider(MainWindow& window, int id, Slider* slider, NumberField* field, bool whole) {
    const auto tell = [&window, id, slider, field, whole](const char* event) {
        if (field)
            field->setValue(slider->number());
        window.runEvent(id, event, {shown(*slider, whole)});
    };
    QObject::connect(slider, &QSlider::sliderMoved, &window, [tell] { tell("dragCommand"); });
    QObject::connect(slider, &QSlider::sliderReleased, &window, [tell] { tell("changeCommand"); });
    QObject::connect(slider, &QSlider::actionTriggered, &window, [slider, tell](int action) {
        if (action != QAbstractSlider::SliderMove && !slider->isSliderDown())
            tell("changeCommand");
    });
}

// --- intSlider, floatSlider ----------------------------------------------------------------------

template <bool whole>
QWidget* makeSlider(const CommandCall&, QWidget* parent) {
    return new Slider(parent, whole);
}

template <bool whole>
void wireAlone(MainWindow& window, int id, QWidget* widget) {
    wireSlider(window, id, static_cast<Slider*>(widget), nullptr, whole);
}

template <bool whole>
Value numberOf(const Part& part, const FlagUse&) {
    return shown(*part.as<Slider>(), whole);
}

constexpr ControlFlag kIntSliderFlags[] = {
    {{"minValue", "min", "i"}, put<&Slider::setLow>, get<&Slider::wholeLow>},
    {{"maxValue", "max", "i"}, put<&Slider::setHigh>, get<&Slider::wholeHigh>},
    {{"value", "v", "i"}, put<&Slider::setNumber>, numberOf<true>},
    {{"step", "s", "i"}, setNothing},
    {{"horizontal", "hr", "b"}, setNothing},
    {{"changeCommand", "cc", "s"}, setEvent, eventText},
    {{"dragCommand", "dc", "s"}, setEvent, eventText},
};

constexpr ControlFlag kFloatSliderFlags[] = {
    {{"minValue", "min", "d"}, put<&Slider::setLow>, get<&Slider::low>},
    {{"maxValue", "max", "d"}, put<&Slider::setHigh>, get<&Slider::high>},
    {{"value", "v", "d"}, put<&Slider::setNumber>, numberOf<false>},
    {{"step", "s", "d"}, setNothing},
    {{"horizontal", "hr", "b"}, setNothing},
    {{"changeCommand", "cc", "s"}, setEvent, eventText},
    {{"dragCommand", "dc", "s"}, setEvent, eventText},
};

// --- intSliderGrp, floatSliderGrp ----------------------------------------------------------------

template <bool whole>
QWidget* makeGroup(const CommandCall& call, QWidget* parent) {
    auto* made = new GroupWidget(parent);
    auto* field = new NumberField(made, whole ? 0 : std::max(1, call.integer("precision", 3)));
    made->add(field, 60);
    made->add(new Slider(made, whole), 140);
    field->setVisible(call.flag("field", true));
    return made;
}

// The field counts; the slider follows it and moves it.
template <bool whole>
void wireGroup(MainWindow& window, int id, QWidget* widget) {
    const auto* made = static_cast<GroupWidget*>(widget);
    auto* field = made->as<NumberField>(0);
    auto* slider = made->as<Slider>(1);
    QObject::connect(field, &QLineEdit::editingFinished, slider,
                     [field, slider] { slider->setNumber(field->value()); });
    tellNumber(window, id, field);
    wireSlider(window, id, slider, field, whole);
}

Status setGroupNumber(const Part& part, const FlagUse& use) {
    const auto* made = part.as<GroupWidget>();
    made->as<NumberField>(0)->setValue(use.values[0].number());
    made->as<Slider>(1)->setNumber(made->as<NumberField>(0)->value());
    return Status::ok();
}

template <bool whole>
Value groupNumber(const Part& part, const FlagUse&) {
    const auto* field = part.as<GroupWidget>()->as<NumberField>(0);
    return whole ? Value(field->wholeValue()) : Value(field->value());
}

Status setLow(const Part& part, const FlagUse& use) {
    part.as<GroupWidget>()->as<NumberField>(0)->setMinimum(use.values[0].number());
    part.as<GroupWidget>()->as<Slider>(1)->setLow(use.values[0].number());
    return Status::ok();
}

Status setHigh(const Part& part, const FlagUse& use) {
    part.as<GroupWidget>()->as<NumberField>(0)->setMaximum(use.values[0].number());
    part.as<GroupWidget>()->as<Slider>(1)->setHigh(use.values[0].number());
    return Status::ok();
}

// What may be typed, when that is more than what may be dragged.
Status setFieldLow(const Part& part, const FlagUse& use) {
    part.as<GroupWidget>()->as<NumberField>(0)->setMinimum(use.values[0].number());
    return Status::ok();
}

Status setFieldHigh(const Part& part, const FlagUse& use) {
    part.as<GroupWidget>()->as<NumberField>(0)->setMaximum(use.values[0].number());
    return Status::ok();
}

Status setWidths(const Part& part, const FlagUse& use) {
    for (std::size_t i = 0; i < use.values.size(); ++i)
        part.as<GroupWidget>()->setColumnWidth(static_cast<int>(i) + 1,
                                               fromValue<int>(use.values[i]));
    return Status::ok();
}

Status setOneWidth(const Part& part, const FlagUse& use) {
    part.as<GroupWidget>()->setColumnWidth(fromValue<int>(use.values[0]),
                                           fromValue<int>(use.values[1]));
    return Status::ok();
}

// The limits of the slider come first: those of the field may be wider.
template <bool whole>
constexpr std::array<ControlFlag, 16> groupFlags() {
    constexpr const char* kArgs = whole ? "i" : "d";
    return {{
        {{"label", "l", "s"}, put<&GroupWidget::setLabel>, get<&GroupWidget::label>},
        {{"extraLabel", "el", "s"},
         put<&GroupWidget::setExtraLabel>,
         get<&GroupWidget::extraLabel>},
        {{"field", "f", "b", kCreate}},
        {{"precision", "pre", "i", kCreate}},
        {{"columnWidth", "cw", "ii", kAllModes, true}, setOneWidth},
        {{"columnWidth2", "cw2", "ii"}, setWidths},
        {{"columnWidth3", "cw3", "iii"}, setWidths},
        {{"adjustableColumn", "adj", "i"}, put<&GroupWidget::setAdjustable>},
        {{"minValue", "min", kArgs}, setLow},
        {{"maxValue", "max", kArgs}, setHigh},
        {{"fieldMinValue", "fmn", kArgs}, setFieldLow},
        {{"fieldMaxValue", "fmx", kArgs}, setFieldHigh},
        {{"value", "v", kArgs}, setGroupNumber, groupNumber<whole>},
        {{"step", "s", kArgs}, setNothing},
        {{"changeCommand", "cc", "s"}, setEvent, eventText},
        {{"dragCommand", "dc", "s"}, setEvent, eventText},
    }};
}

constexpr auto kIntGroupFlags = groupFlags<true>();
constexpr auto kFloatGroupFlags = groupFlags<false>();

}  // namespace

ControlTypes sliderTypes() {
    return {
        {"intSlider", UiKind::Control, kIntSliderFlags, std::size(kIntSliderFlags),
         makeSlider<true>, wireAlone<true>, "Slider for a whole number"},
        {"floatSlider", UiKind::Control, kFloatSliderFlags, std::size(kFloatSliderFlags),
         makeSlider<false>, wireAlone<false>, "Slider for a number"},
        {"intSliderGrp", UiKind::Control, kIntGroupFlags.data(), kIntGroupFlags.size(),
         makeGroup<true>, wireGroup<true>, "Label, field and slider for a whole number"},
        {"floatSliderGrp", UiKind::Control, kFloatGroupFlags.data(), kFloatGroupFlags.size(),
         makeGroup<false>, wireGroup<false>, "Label, field and slider for a number"},
    };
}

}  // namespace torvel
