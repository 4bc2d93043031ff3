#pragma once

#include <string>
#include <string_view>

#include "graph/attribute.h"

namespace torvel {

/// How numbers of a file become internal ones: internal = number * factor.
struct FileUnits {
    double angle = kDegreeFactor;
    double length = 1.0;

    /// Units of a "currentUnit" statement; degrees and centimetres where it says nothing or
    /// something unknown.
    static FileUnits of(std::string_view statement);
    double factor(AttrType type) const {
        return type == AttrType::Angle ? angle : type == AttrType::Distance ? length : 1.0;
    }
    static constexpr double kDegreeFactor = 3.14159265358979323846 / 180.0;
};

/// Shortest text that reads back as the same double; no exponent for numbers of usual size; "inf",
/// "-inf", "nan" and "-nan" for what is no number.
void appendDouble(std::string& out, double value);
/// The same for a value kept in single precision.
void appendFloat(std::string& out, double value);
/// Text of an internal value in file units, such that fromUnits gives exactly this value back: a
/// double where one does (the shortest that was found), else more digits than a double has.
void appendInUnits(std::string& out, double internal, double factor);
/// Internal value of a number in file units that was read from `text`.
double fromUnits(std::string_view text, double value, double factor);
/// A number as an attribute of this type is written: yes/no, whole numbers, file units.
void appendNumber(std::string& out, AttrType type, double value, const FileUnits& units);

}  // namespace torvel
