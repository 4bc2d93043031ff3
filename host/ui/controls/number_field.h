#pragma once

#include <QLineEdit>

namespace torvel {

/// A field for one number. What is typed counts when the field is left or Enter is pressed, brought
/// into the limits; a text that is no number gives way to the last value.
class NumberField : public QLineEdit {
  public:
    /// `digits` behind the point; 0 for whole numbers.
    NumberField(QWidget* parent, int digits);
    /// The number that the text stands for.
    double value() const;
    int wholeValue() const { return static_cast<int>(value()); }
    void setValue(double value);
    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }
    int wholeMinimum() const { return static_cast<int>(m_minimum); }
    int wholeMaximum() const { return static_cast<int>(m_maximum); }
    void setMinimum(double minimum);
    void setMaximum(double maximum);
    int digits() const { return m_digits; }
    void setDigits(int digits);
    /// Writes the number as it counts; true when it differs from the last one that counted.
    bool commit();

  private:
    QString shown(double value) const;

    double m_value = 0.0, m_minimum, m_maximum;
    int m_digits;
    bool m_whole;
};

}  // namespace torvel
