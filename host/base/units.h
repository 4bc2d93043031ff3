#pragma once

#include <string>
#include <string_view>

namespace torvel {

/// A unit of length: value * centimetres is the length in the scene's unit.
struct LengthUnit {
    const char* shortName;
    const char* longName;
    double centimetres;
};

/// A unit of angles, in both of the units that the host works in.
struct AngleUnit {
    const char* shortName;
    const char* longName;
    double degrees, radians;
};

/// By short or long name ("cm", "centimeter"); null for any other text.
const LengthUnit* findLengthUnit(std::string_view name);
const AngleUnit* findAngleUnit(std::string_view name);

enum class Measure { Number, Length, Angle, Any };

/// A number with a unit of that kind behind it, or none: "2", "45deg", "1.5 in". Lengths become
/// centimetres, angles degrees; without a unit the number stays. False for any other text, which
/// leaves `value` open.
bool readMeasure(const std::string& text, Measure kind, double& value);

}  // namespace torvel
