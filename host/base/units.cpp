#include "base/units.h"

#include <cstdlib>

namespace torvel {

namespace {

constexpr double kPi = 3.14159265358979323846;

constexpr LengthUnit kLengths[] = {
    {"mm", "millimeter", 0.1}, {"cm", "centimeter", 1.0}, {"m", "meter", 100.0},
    {"km", "kilometer", 1e5},  {"in", "inch", 2.54},      {"ft", "foot", 30.48},
    {"yd", "yard", 91.44},     {"mi", "mile", 160934.4},
};
constexpr AngleUnit kAngles[] = {
    {"deg", "degree", 1.0, kPi / 180.0},
    {"rad", "radian", 57.295779513082320876798, 1.0},
    {"min", "minute", 1.0 / 60.0, kPi / 10800.0},
    {"sec", "second", 1.0 / 3600.0, kPi / 648000.0},
};

template <class Unit, std::size_t N>
const Unit* find(const Unit (&units)[N], std::string_view name) {
    for (const Unit& unit : units)
        if (name == unit.shortName || name == unit.longName)
            return &unit;
    return nullptr;
}

bool factorOf(std::string_view name, Measure kind, double& factor) {
    const bool any = kind == Measure::Any;
    if (const LengthUnit* unit = findLengthUnit(name); unit && (any || kind == Measure::Length))
        factor = unit->centimetres;
    else if (const AngleUnit* angle = findAngleUnit(name); angle && (any || kind == Measure::Angle))
        factor = angle->degrees;
    else
        return false;
    return true;
}

}  // namespace

const LengthUnit* findLengthUnit(std::string_view name) {
    return find(kLengths, name);
}

const AngleUnit* findAngleUnit(std::string_view name) {
    return find(kAngles, name);
}

bool readMeasure(const std::string& text, Measure kind, double& value) {
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    if (end == text.c_str())
        return false;
    while (*end == ' ')
        ++end;
    double factor = 1.0;
    if (*end != '\0' && !factorOf(end, kind, factor))
        return false;
    value = number * factor;
    return true;
}

}  // namespace torvel
