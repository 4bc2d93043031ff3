#include "ui/controls/number_field.h"

#include <algorithm>
#include <cmath>

#include <QRegularExpressionValidator>

namespace torvel {

NumberField::NumberField(QWidget* parent, int digits)
    : QLineEdit(parent),
      m_minimum(digits == 0 ? -2147483648.0 : -1e300),
      m_maximum(digits == 0 ? 2147483647.0 : 1e300),
      m_digits(digits),
      m_whole(digits == 0) {
    const QString pattern =
        QString::fromLatin1(m_whole ? "[-+]?\\d*" : "[-+]?\\d*\\.?\\d*([eE][-+]?\\d*)?");
    setValidator(new QRegularExpressionValidator(QRegularExpression(pattern), this));
    setText(shown(0.0));
}

QString NumberField::shown(double value) const {
    return m_whole ? QString::number(static_cast<qint64>(value))
                   : QString::number(value, 'f', m_digits);
}

double NumberField::value() const {
    // What was set counts in full, not as it was rounded for the eye.
    if (text() == shown(m_value))
        return m_value;
    bool good = false;
    const double typed = text().toDouble(&good);
    return good && std::isfinite(typed) ? std::clamp(typed, m_minimum, m_maximum) : m_value;
}

void NumberField::setValue(double value) {
    const double limited = std::clamp(value, m_minimum, m_maximum);
    m_value = m_whole ? std::trunc(limited) : limited;
    setText(shown(m_value));
}

void NumberField::setMinimum(double minimum) {
    m_minimum = minimum;
    m_maximum = std::max(m_maximum, minimum);
    setValue(value());
}

void NumberField::setMaximum(double maximum) {
    m_maximum = maximum;
    m_minimum = std::min(m_minimum, maximum);
    setValue(value());
}

void NumberField::setDigits(int digits) {
    const double kept = value();
    m_digits = std::clamp(digits, m_whole ? 0 : 1, 15);
    setValue(kept);
}

bool NumberField::commit() {
    const double before = m_value;
    setValue(value());
    return m_value != before;
}

}  // namespace torvel
