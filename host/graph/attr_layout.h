#pragma once

#include <cstddef>

#include "graph/attribute.h"

/// How rows become attributes: each row one attribute in order, the children made by themselves
/// right behind their compound. Constant expressions, so that tables can tell positions while they
/// are compiled; the registry lays out by the same rule.
namespace torvel {

/// Children that a type brings with it; 0 for single values and for Compound.
constexpr std::size_t childCountOf(AttrType type) {
    switch (type) {
        case AttrType::Double2:
        case AttrType::Float2:
        case AttrType::Long2:
        case AttrType::Short2: return 2;
        case AttrType::Double3:
        case AttrType::Float3:
        case AttrType::Long3:
        case AttrType::Short3: return 3;
        case AttrType::Double4: return 4;
        default: return 0;
    }
}

/// Children that the row makes by itself; 0 when they follow as rows of their own.
constexpr std::size_t ownChildren(const AttrRow& row) {
    return row.childSuffixes[0] ? childCountOf(row.type) : 0;
}

constexpr AttrIndex attrCountOf(const AttrRow* rows, std::size_t rowCount) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < rowCount; ++i)
        count += 1 + ownChildren(rows[i]);
    return static_cast<AttrIndex>(count);
}

constexpr bool isSameName(const char* a, const char* b) {
    while (*a && *a == *b)
        ++a, ++b;
    return *a == *b;
}

/// Position of the row with this long name among the attributes of all rows; kNoAttr without it.
constexpr AttrIndex positionIn(const AttrRow* rows, std::size_t rowCount, const char* longName) {
    std::size_t at = 0;
    for (std::size_t i = 0; i < rowCount; at += 1 + ownChildren(rows[i]), ++i)
        if (isSameName(rows[i].longName, longName))
            return static_cast<AttrIndex>(at);
    return kNoAttr;
}

}  // namespace torvel
