#pragma once

#include <cstddef>

#include "graph/attr_layout.h"
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

/// Ends the program with the names of both. No constant expression: where a position is asked for
/// while the tables are compiled, the compiler stops here and shows the names.
[[noreturn]] void noSuchAttribute(const char* type, const char* attr);

/// A type's name and its attributes, those of the bases first. Both the type's row and all code
/// that works on its nodes go by it, so that a position is always that of the row:
///     constexpr AttrRow kClampAttrs[] = {...};
///     constexpr TypeAttrs kClamp("clamp", kDependNode, kClampAttrs);
///     constexpr AttrIndex kOutput = kClamp["output"];
struct TypeAttrs {
    const char* type;
    const TypeAttrs* base;  ///< null for the root type
    const AttrRow* rows = nullptr;
    std::size_t rowCount = 0;
    const AffectRow* affects = nullptr;
    std::size_t affectCount = 0;
    AttrIndex first = 0;     ///< position of the first row: attributes of all bases
    bool isDerived = false;  ///< has a base; checked builds cannot compare `base` while compiling

    constexpr TypeAttrs(const char* name, const TypeAttrs& baseType)
        : type(name), base(&baseType), first(baseType.count()), isDerived(true) {}
    template <std::size_t N>
    constexpr TypeAttrs(const char* name, const TypeAttrs& baseType, const AttrRow (&own)[N])
        : type(name),
          base(&baseType),
          rows(own),
          rowCount(N),
          first(baseType.count()),
          isDerived(true) {}
    template <std::size_t N, std::size_t M>
    constexpr TypeAttrs(const char* name, const TypeAttrs& baseType, const AttrRow (&own)[N],
                        const AffectRow (&ownAffects)[M])
        : type(name),
          base(&baseType),
          rows(own),
          rowCount(N),
          affects(ownAffects),
          affectCount(M),
          first(baseType.count()),
          isDerived(true) {}
    /// The root type.
    template <std::size_t N>
    constexpr TypeAttrs(const char* name, const AttrRow (&own)[N])
        : type(name), base(nullptr), rows(own), rowCount(N) {}

    /// Attributes of the type and its bases.
    constexpr AttrIndex count() const { return first + attrCountOf(rows, rowCount); }
    /// Position by long name, own and inherited attributes alike; kNoAttr when there is none.
    /// Children made by themselves have no name here: they follow their compound.
    constexpr AttrIndex find(const char* longName) const {
        for (const TypeAttrs* at = this;; at = at->base) {
            if (const AttrIndex own = positionIn(at->rows, at->rowCount, longName); own != kNoAttr)
                return at->first + own;
            if (!at->isDerived)
                return kNoAttr;
        }
    }
    /// The same of an attribute that must exist.
    constexpr AttrIndex operator[](const char* longName) const {
        const AttrIndex found = find(longName);
        if (found == kNoAttr)
            noSuchAttribute(type, longName);
        return found;
    }
};

using EvaluateFunction = void (*)(Evaluation&);
using CreatedFunction = void (*)(Scene&, Node&);

/// A node type: what it is called, what it has and what it does.
constexpr NodeTypeRow typeRow(const TypeAttrs& attrs, int apiType, const char* apiTypeName,
                              std::uint32_t flags = 0, EvaluateFunction evaluate = nullptr,
                              CreatedFunction created = nullptr) {
    return {attrs.type,    attrs.isDerived ? attrs.base->type : "",
            apiType,       apiTypeName,
            attrs.rows,    attrs.rowCount,
            attrs.affects, attrs.affectCount,
            evaluate,      flags,
            created};
}

/// The types of one source file, bases before derived types.
struct TypeRows {
    const NodeTypeRow* rows;
    std::size_t count;
};

template <std::size_t N>
constexpr TypeRows family(const NodeTypeRow (&rows)[N]) {
    return {rows, N};
}

}  // namespace torvel
