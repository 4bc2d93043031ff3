#pragma once

#include <string>

namespace torvel {

/// The text of a number with so many significant digits, as printf's %g writes it in the "C" locale
/// ("inf", "nan" included): a desktop's decimal comma never reaches a file or a script.
std::string numberText(double value, int digits);

/// Reads the number at the start of a text whatever the locale: blanks and a sign before it are
/// passed over. Returns where it ends; `text` itself (and 0) when there is none.
const char* readNumber(const char* text, double& value);

}  // namespace torvel
