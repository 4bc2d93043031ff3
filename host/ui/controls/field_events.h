#pragma once

class QLineEdit;

namespace torvel {

class MainWindow;
class NumberField;

/// Lets a field of the element tell what was typed: "changeCommand" when it is left or Enter is
/// pressed with another content, "enterCommand" at Enter. The value goes with both.
void tellNumber(MainWindow& window, int id, NumberField* field);
/// The same for a text, which tells "textChangedCommand" at every key besides.
void tellText(MainWindow& window, int id, QLineEdit* field);

}  // namespace torvel
