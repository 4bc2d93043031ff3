#include "files/ma/block_writer.h"

#include "files/ma/add_attr.h"
#include "files/ma/data_values.h"
#include "files/ma/statement.h"

namespace torvel {
namespace {

constexpr std::uint32_t kFlagStates =
    kLocked | kKeyableOn | kKeyableOff | kChannelBoxOn | kChannelBoxOff;
// Elements with more numbers than this are written one number at a time.
constexpr int kRowNumbers = 4;

std::string typeFlag(AttrType type) {
    return isCompound(type) && type != AttrType::Compound
               ? std::string(" -type \"") + attrTypeName(type) + "\""
               : "";
}

// Files name only the arrays on the way: ".tx", ".tg[0].tot".
std::string joined(const std::string& path, const AttrInfo& child) {
    const std::size_t bracket = path.rfind(']');
    return (bracket == std::string::npos ? "" : path.substr(0, bracket + 1)) + "." +
           child.shortName;
}

}  // namespace

void BlockWriter::write(const Node& node, bool withUid) {
    if (withUid && !node.uuid.empty())
        m_out += "\trename -uid " + inQuotes(node.uuid) + ";\n";
    const AttrIndex first = static_cast<AttrIndex>(node.type->attrs.size());
    const AttrIndex count = static_cast<AttrIndex>(node.attrCount());
    for (AttrIndex attr = first; attr < count; ++attr)
        if (!node.attr(attr).is(kOpaque))
            m_out += "\taddAttr " + addAttrText(node, attr) + ";\n";
    for (const std::string& text : node.keptText)
        m_out += "\t" + text + "\n";
    for (AttrIndex attr = 0; attr < count; ++attr)
        if (node.attr(attr).parent == kNoAttr)
            attribute(node, attr);
}

void BlockWriter::attribute(const Node& node, AttrIndex attr) {
    const AttrInfo& info = node.attr(attr);
    if (info.is(kOpaque | kOutput | kNotStored) || info.type == AttrType::Any)
        return;
    const Plug plug(node.self, attr);
    if (info.is(kBulk)) {
        const BulkArray* values = m_scene.bulk(plug);
        if (values && values->size())
            values->write(info.shortName, m_out);
        return;
    }
    value(plug, "." + info.shortName);
}

bool BlockWriter::isDriven(const Plug& plug) const {
    const Slot* slot = m_scene.peekSlot(plug);
    return slot && slot->links && !slot->links->source.isNull();
}

// The lock of a driven plug goes with its connection: a locked plug takes none.
std::string BlockWriter::flagsOf(const Plug& plug) const {
    const Slot* slot = m_scene.peekSlot(plug);
    const std::uint32_t state = slot ? slot->state : 0;
    std::string flags;
    flags += (state & kLocked) && !isDriven(plug) ? " -l on" : "";
    flags += (state & kKeyableOn) ? " -k on" : (state & kKeyableOff) ? " -k off" : "";
    flags += (state & kChannelBoxOn) ? " -cb on" : (state & kChannelBoxOff) ? " -cb off" : "";
    return flags;
}

void BlockWriter::line(const std::string& flags, const std::string& path,
                       const std::string& value) {
    m_out += "\tsetAttr" + flags + " \"" + path + "\"" + value + ";\n";
}

void BlockWriter::value(const Plug& plug, const std::string& path) {
    const AttrInfo& info = m_scene.info(plug);
    if (info.is(kOpaque | kOutput | kNotStored))
        return;
    if (m_scene.isArrayPlug(plug))
        return array(plug, path);
    const std::string flags = flagsOf(plug);
    if (!info.children.empty())
        return compound(plug, path, flags);
    const Slot* slot = m_scene.peekSlot(plug);
    const bool has = slot && (slot->state & kSet) && info.type != AttrType::Message;
    single(plug, path, flags, has);
}

void BlockWriter::single(const Plug& plug, const std::string& path, const std::string& flags,
                         bool hasValue) {
    const AttrInfo& info = m_scene.info(plug);
    std::string text;
    if (hasValue && isNumeric(info.type)) {
        text = " ";
        appendNumber(text, info.type, m_scene.storedNumber(plug), m_units);
    } else if (hasValue) {
        const PayloadPtr data = m_scene.storedData(plug);
        if (!data || !appendDataValue(text, info.type, *data))
            text.clear();
    }
    if (!text.empty() || !flags.empty())
        line(flags, path, text);
}

// True when the plug can stand as one row of numbers: it has no flags of its own.
bool BlockWriter::isPlain(const Plug& plug, bool& set) const {
    const AttrInfo& info = m_scene.info(plug);
    const Slot* slot = m_scene.peekSlot(plug);
    if (m_scene.isArrayPlug(plug) || info.is(kOpaque | kOutput | kNotStored))
        return false;
    if (slot && (slot->state & kFlagStates))
        return false;
    if (info.children.empty()) {
        set = set || (slot && (slot->state & kSet));
        return isNumeric(info.type);
    }
    for (std::size_t i = 0; i < info.children.size(); ++i)
        if (!isPlain(m_scene.child(plug, static_cast<int>(i)), set))
            return false;
    return true;
}

int BlockWriter::leaves(const Plug& plug) const {
    const AttrInfo& info = m_scene.info(plug);
    int count = info.children.empty() ? 1 : 0;
    for (std::size_t i = 0; i < info.children.size(); ++i)
        count += leaves(m_scene.child(plug, static_cast<int>(i)));
    return count;
}

void BlockWriter::appendRow(std::string& text, const Plug& plug) const {
    const AttrInfo& info = m_scene.info(plug);
    if (info.children.empty()) {
        text += ' ';
        appendNumber(text, info.type, m_scene.storedNumber(plug), m_units);
        return;
    }
    for (std::size_t i = 0; i < info.children.size(); ++i)
        appendRow(text, m_scene.child(plug, static_cast<int>(i)));
}

// One line for double3 and its like where no child has flags; else child by child.
void BlockWriter::compound(const Plug& plug, const std::string& path, const std::string& flags) {
    const AttrInfo& info = m_scene.info(plug);
    bool set = false, plain = info.type != AttrType::Compound;
    for (std::size_t i = 0; plain && i < info.children.size(); ++i)
        plain = isPlain(m_scene.child(plug, static_cast<int>(i)), set);
    if (plain && set) {
        std::string row;
        appendRow(row, plug);
        return line(flags, path, typeFlag(info.type) + row + " ");
    }
    if (!flags.empty())
        line(flags, path, "");
    if (plain)
        return;
    for (std::size_t i = 0; i < info.children.size(); ++i) {
        const Plug child = m_scene.child(plug, static_cast<int>(i));
        value(child, joined(path, m_scene.info(child)));
    }
}

void BlockWriter::run(const std::string& path, const Plug& firstPlug,
                      const std::vector<std::int32_t>& indices) {
    const AttrInfo& info = m_scene.info(firstPlug);
    const std::string first = std::to_string(indices.front());
    const bool several = indices.size() > 1;
    const std::string range = several ? first + ":" + std::to_string(indices.back()) : first;
    std::string row = typeFlag(info.type);
    Plug plug = firstPlug;
    for (std::int32_t index : indices) {
        plug.index[info.arrayDepth - 1] = index;
        appendRow(row, plug);
    }
    line(several ? " -s " + std::to_string(indices.size()) : "", path + "[" + range + "]", row);
}

void BlockWriter::array(const Plug& plug, const std::string& path) {
    if (const std::string flags = flagsOf(plug); !flags.empty())
        line(flags, path, "");
    const std::size_t count = m_scene.elementCount(plug);
    const int depth = m_scene.info(plug).arrayDepth - 1;
    std::vector<std::int32_t> open;  // neighbours that can share one statement
    Plug first;
    const auto flush = [&] {
        if (!open.empty())
            run(path, first, open);
        open.clear();
    };
    for (std::size_t i = 0; i < count; ++i) {
        const Plug element = m_scene.elementAt(plug, i);
        bool set = false;
        if (isPlain(element, set) && leaves(element) <= kRowNumbers) {
            if (!set)
                continue;
            if (!open.empty() && open.back() + 1 != element.index[depth])
                flush();
            if (open.empty())
                first = element;
            open.push_back(element.index[depth]);
            continue;
        }
        flush();
        value(element, path + "[" + std::to_string(element.index[depth]) + "]");
    }
    flush();
}

}  // namespace torvel
