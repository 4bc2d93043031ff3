#pragma once

#include <string>

namespace torvel::test {

/// One choice of the axis radios and the sign, and the texts that the tools then send.
struct AxisRow {
    char primary;       ///< 'x', 'y' or 'z': the checked radio
    char secondary;     ///< the same for the second row
    char sign;          ///< '+' or '-', of the combo box
    const char* order;  ///< option oj
    const char* up;     ///< option sao
};

inline constexpr AxisRow kAxisRows[] = {
    {'x', 'y', '+', "xyz", "yup"},   {'x', 'y', '-', "xyz", "ydown"},
    {'x', 'z', '+', "xyz", "zup"},   {'x', 'z', '-', "xyz", "zdown"},
    {'y', 'x', '+', "yzx", "xup"},   {'y', 'x', '-', "yzx", "xdown"},
    {'y', 'z', '+', "yxz", "zdown"}, {'y', 'z', '-', "yxz", "zup"},
    {'z', 'x', '+', "zyx", "xdown"}, {'z', 'x', '-', "zyx", "xup"},
    {'z', 'y', '+', "zyx", "yup"},   {'z', 'y', '-', "zyx", "ydown"},
};

inline char upperCase(char axis) {
    return static_cast<char>(axis - 'a' + 'A');
}

inline std::string nameOf(const AxisRow& row) {
    return std::string{row.primary, row.secondary} + (row.sign == '+' ? "_plus" : "_minus");
}

}  // namespace torvel::test
