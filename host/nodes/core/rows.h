#pragma once

#include <cstddef>

#include "graph/node_type.h"

/// Short spellings for the rows of node type tables. All of them are constant expressions, so that
/// the tables cost nothing at start-up and do not depend on the order of initialisation.
namespace torvel {

/// One plain attribute: a number, a matrix, a message, geometry ...
constexpr AttrRow attrRow(const char* longName, const char* shortName, AttrType type,
                          double defaultValue = 0.0, std::uint32_t flags = 0,
                          const char* affects = "") {
    AttrRow row{longName, shortName, type};
    row.defaultValue = defaultValue;
    row.flags = flags;
    row.affects = affects;
    return row;
}

/// Three numbers whose children get the suffixes X Y Z.
constexpr AttrRow vectorRow(const char* longName, const char* shortName, AttrType childType,
                            double defaultValue = 0.0, std::uint32_t flags = 0,
                            const char* affects = "") {
    AttrRow row = attrRow(longName, shortName, AttrType::Double3, defaultValue, flags, affects);
    row.childType = childType;
    return row;
}

/// A compound whose children follow as rows of their own.
constexpr AttrRow compoundRow(const char* longName, const char* shortName,
                              AttrType type = AttrType::Compound, std::uint32_t flags = 0,
                              const char* affects = "") {
    AttrRow row = attrRow(longName, shortName, type, 0.0, flags, affects);
    row.childSuffixes = "";
    return row;
}

/// `names` as "xyz:yzx" or "Bone=0:Box=1".
constexpr AttrRow enumRow(const char* longName, const char* shortName, const char* names,
                          double defaultValue = 0.0, std::uint32_t flags = 0,
                          const char* affects = "") {
    AttrRow row = attrRow(longName, shortName, AttrType::Enum, defaultValue, flags, affects);
    row.enumNames = names;
    return row;
}

constexpr AttrRow within(AttrRow row, double minimum, double maximum = 1e300) {
    row.minimum = minimum;
    row.maximum = maximum;
    return row;
}

/// The row as a child of the compound with this long name.
constexpr AttrRow under(const char* parent, AttrRow row) {
    row.parent = parent;
    return row;
}

using EvaluateFunction = void (*)(Evaluation&);
using CreatedFunction = void (*)(Scene&, Node&);

constexpr NodeTypeRow typeRow(const char* name, const char* base, int apiType,
                              const char* apiTypeName, std::uint32_t flags = 0,
                              EvaluateFunction evaluate = nullptr) {
    return {name, base, apiType, apiTypeName, nullptr, 0, nullptr, 0, evaluate, flags, nullptr};
}

template <std::size_t N>
constexpr NodeTypeRow typeRow(const char* name, const char* base, int apiType,
                              const char* apiTypeName, const AttrRow (&attrs)[N],
                              std::uint32_t flags = 0, EvaluateFunction evaluate = nullptr,
                              CreatedFunction created = nullptr) {
    return {name, base, apiType, apiTypeName, attrs, N, nullptr, 0, evaluate, flags, created};
}

template <std::size_t N, std::size_t M>
constexpr NodeTypeRow typeRow(const char* name, const char* base, int apiType,
                              const char* apiTypeName, const AttrRow (&attrs)[N],
                              const AffectRow (&affects)[M], std::uint32_t flags = 0,
                              EvaluateFunction evaluate = nullptr,
                              CreatedFunction created = nullptr) {
    return {name, base, apiType, apiTypeName, attrs, N, affects, M, evaluate, flags, created};
}

}  // namespace torvel
