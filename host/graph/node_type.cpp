#include "graph/node_type.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "graph/attr_layout.h"

namespace torvel {
namespace {

// The tables are part of the program: a fault in them ends it, in every build, before any scene is
// read.
[[noreturn]] void tableFault(const std::string& what) {
    std::fprintf(stderr, "Node type table: %s\n", what.c_str());
    std::abort();
}

AttrType naturalChild(const AttrRow& row) {
    if (row.childType != AttrType::Double)
        return row.childType;
    switch (row.type) {
        case AttrType::Float2:
        case AttrType::Float3: return AttrType::Float;
        case AttrType::Long2:
        case AttrType::Long3: return AttrType::Long;
        case AttrType::Short2:
        case AttrType::Short3: return AttrType::Short;
        default: return AttrType::Double;
    }
}

std::vector<std::string> splitEnum(const char* text) {
    std::vector<std::string> names;
    std::stringstream stream(text);
    for (std::string part; std::getline(stream, part, ':');)
        names.push_back(part);
    return names;
}

std::vector<std::string> words(const char* text) {
    std::vector<std::string> out;
    std::istringstream stream(text);
    for (std::string word; stream >> word;)
        out.push_back(word);
    return out;
}

AttrInfo infoOfRow(const AttrRow& row) {
    AttrInfo info;
    info.longName = row.longName;
    info.shortName = row.shortName;
    info.type = row.type;
    info.flags = row.flags;
    info.defaultValue = row.defaultValue;
    info.minimum = row.minimum;
    info.maximum = row.maximum;
    if (row.enumNames)
        info.enumNames = splitEnum(row.enumNames);
    return info;
}

// "translate" + X: long names take the upper-case letter, short ones the lower-case letter.
AttrInfo childInfo(const AttrRow& row, std::size_t number) {
    const char letter = row.childSuffixes[number];
    AttrInfo info;
    info.longName = std::string(row.longName) + letter;
    info.shortName = std::string(row.shortName) + static_cast<char>(letter | 0x20);
    info.type = naturalChild(row);
    info.defaultValue = row.defaultValue;
    info.flags = row.flags & ~(kArray | kBulk | kNextAvailable | kDeleteElement);
    return info;
}

class TypeBuilder {
  public:
    explicit TypeBuilder(NodeType& type) : m_type(type) {}

    void addRow(const AttrRow& row) {
        const AttrIndex parent = row.parent ? find(row.parent) : kNoAttr;
        const AttrIndex index =
            layOutAttribute(m_type.attrs, m_type.slotCount, infoOfRow(row), parent);
        enter(index);
        for (std::size_t i = 0; i < ownChildren(row); ++i)
            enter(layOutAttribute(m_type.attrs, m_type.slotCount, childInfo(row, i), index));
    }

    void addAffect(const char* from, const char* to) {
        const AttrIndex input = find(from);
        for (const std::string& word : words(to)) {
            const AttrIndex output = find(word);
            link(input, output);
        }
    }

  private:
    AttrIndex find(const std::string& name) const {
        const auto it = m_type.byName.find(name);
        if (it == m_type.byName.end())
            tableFault("a row of '" + m_type.name + "' names the attribute '" + name +
                       "', which does not exist.");
        return it->second;
    }

    void enter(AttrIndex index) {
        m_type.byName.emplace(m_type.attrs[index].longName, index);
        m_type.byName.emplace(m_type.attrs[index].shortName, index);
    }

    void link(AttrIndex input, AttrIndex output) {
        std::vector<AttrIndex>& to = m_type.attrs[input].affects;
        if (std::find(to.begin(), to.end(), output) == to.end()) {
            to.push_back(output);
            m_type.attrs[output].dependsOn.push_back(input);
        }
    }

    NodeType& m_type;
};

std::unique_ptr<NodeType> makeType(const NodeTypeRow& row, const NodeType* base) {
    auto type = std::make_unique<NodeType>();
    if (base)
        *type = *base;
    type->name = row.name;
    type->base = base;
    type->apiType = row.apiType;
    type->apiTypeName = row.apiTypeName;
    type->flags = (base ? base->flags & ~(kAbstractType | kUniqueType) : 0u) | row.flags;
    if (row.evaluate)
        type->evaluate = row.evaluate;
    if (row.declareWrites)
        type->declareWrites = row.declareWrites;
    if (row.created)
        type->created.push_back(row.created);
    TypeBuilder builder(*type);
    for (std::size_t i = 0; i < row.attrCount; ++i)
        builder.addRow(row.attrs[i]);
    for (std::size_t i = 0; i < row.attrCount; ++i)
        builder.addAffect(row.attrs[i].longName, row.attrs[i].affects);
    for (std::size_t i = 0; i < row.affectCount; ++i)
        builder.addAffect(row.affects[i].from, row.affects[i].to);
    if (type->is(kDagType))
        type->world = {type->find("worldMatrix"), type->find("worldInverseMatrix"),
                       type->find("parentMatrix"), type->find("parentInverseMatrix")};
    return type;
}

}  // namespace

AttrIndex layOutAttribute(std::vector<AttrInfo>& attrs, std::uint32_t& slotCount, AttrInfo info,
                          AttrIndex parent, AttrIndex first) {
    const AttrIndex index = first + static_cast<AttrIndex>(attrs.size());
    AttrInfo* above = parent == kNoAttr ? nullptr : &attrs[parent - first];
    const AttrIndex owner = above ? above->arrayOwner : kNoAttr;
    info.parent = parent;
    info.arrayDepth = (above ? above->arrayDepth : 0) + (info.isArray() ? 1 : 0);
    assert(info.arrayDepth <= kMaxArrayDepth);
    if (above) {
        info.childNumber = static_cast<int>(above->children.size());
        above->children.push_back(index);
        info.bulkOwner = above->bulkOwner;
    }
    info.slot = owner == kNoAttr ? slotCount++ : attrs[owner - first].elementSize++;
    info.arrayOwner = info.isArray() ? index : owner;
    info.elementSize = info.isArray() ? 1 : 0;  // slot 0 is the element itself
    if (info.is(kBulk) && info.bulkOwner == kNoAttr)
        info.bulkOwner = index;
    attrs.push_back(std::move(info));
    return index;
}

AttrIndex NodeType::find(const std::string& attrName) const {
    const auto it = byName.find(attrName);
    return it == byName.end() ? kNoAttr : it->second;
}

bool NodeType::derivesFrom(std::string_view typeName) const {
    for (const NodeType* t = this; t; t = t->base)
        if (t->name == typeName)
            return true;
    return false;
}

bool NodeType::hasFn(int fn) const {
    for (const NodeType* t = this; t; t = t->base)
        if (t->apiType == fn)
            return true;
    return false;
}

void TypeRegistry::add(const NodeTypeRow* const* rows, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const NodeTypeRow& row = *rows[i];
        const NodeType* base = row.base[0] ? find(row.base) : nullptr;
        if (!base && row.base[0])
            tableFault(std::string("'") + row.name + "' stands before its base '" + row.base +
                       "' or without it.");
        if (find(row.name))
            tableFault(std::string("'") + row.name + "' stands in two rows.");
        m_types.push_back(makeType(row, base));
        m_byName[row.name] = m_types.back().get();
    }
}

const NodeType* TypeRegistry::find(std::string_view name) const {
    const auto it = m_byName.find(std::string(name));
    return it == m_byName.end() ? nullptr : it->second;
}

}  // namespace torvel
