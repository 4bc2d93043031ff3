#pragma once

#include "nodes/core/base_attrs.h"

/// Row spellings that utility nodes share.
namespace torvel {

/// Three floats whose children get the letters of `suffixes` ("RGB", "XYZ").
constexpr AttrRow floatTriple(const char* longName, const char* shortName, const char* suffixes,
                              double value = 0.0, std::uint32_t flags = kKeyable,
                              const char* affects = "") {
    AttrRow row = attrRow(longName, shortName, AttrType::Float3, value, flags, affects);
    row.childSuffixes = suffixes;
    return row;
}

/// A keyable number that dirties `affects`.
constexpr AttrRow inputRow(const char* longName, const char* shortName, const char* affects,
                           double value = 0.0, AttrType type = AttrType::Float) {
    return attrRow(longName, shortName, type, value, kKeyable, affects);
}

constexpr AttrRow outputRow(const char* longName, const char* shortName, AttrType type) {
    return attrRow(longName, shortName, type, 0.0, kComputedOutput);
}

}  // namespace torvel
