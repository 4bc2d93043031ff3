#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include "files/ma/add_attr.h"
#include "files/ma/data_values.h"
#include "graph/slot_walk.h"
#include "host/files/file_fixture.h"
#include "host/files/statement_facts.h"

namespace torvel::test {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNumbers[] = {
    0.0,      -0.0,  1.0 / 3.0,     1e39,         -1e39, 1e300, 1.7976931348623157e308,
    5e-324,   1e-45, kInf,          -kInf,        NAN,   -NAN,  2147483647.0,
    16777217, 1e22,  -2147483648.0, 123456789.125};
const char* const kTexts[] = {"",         "a \"b\" \\ c", "\\",     "\r\n\t",
                              "a\\nb",    "\x01\x7f",     "è日本",  "\xff\xc3",
                              "a;b // c", "( \"x\" + ",   "\\\\\"", " "};
const std::int32_t kIndices[] = {0, 1, 7, 16777217, 2147483647};
const char* const kNames[] = {"a", "a", "b", "a1", "ns:a", "time", "persp"};

constexpr std::uint32_t kFlags =
    kLocked | kKeyableOn | kKeyableOff | kChannelBoxOn | kChannelBoxOff;

std::uint64_t bitsOf(double number) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

// All that a file has to give back, one line for each fact, in bits.
std::string describe(Scene& scene) {
    std::vector<std::string> lines;
    for (NodeHandle handle : scene.allNodes()) {
        Node& node = *scene.node(handle);
        std::string head = scene.typeName(handle) + " " + scene.names().fullPath(handle) + " ";
        lines.push_back(head + node.uuid + (node.isShared ? " shared" : ""));
        for (AttrIndex a = static_cast<AttrIndex>(node.type->attrs.size()); a < node.attrCount();
             ++a)
            if (!node.attr(a).is(kOpaque))
                lines.push_back(head + addAttrText(node, a));
        walkNode(node, [&](const Plug& plug, Slot& slot) {
            const AttrInfo& info = node.attr(plug.attr);
            if (node.attr(node.rootOf(plug.attr)).is(kOutput | kNotStored))
                return;
            std::string line = head + scene.attrPath(plug, true);
            const bool driven = slot.links && !slot.links->source.isNull();
            if (driven)
                line += " from " + scene.plugName(slot.links->source);
            line += " " + std::to_string(slot.state & kFlags);
            const bool isNumber = isNumeric(info.type) && (slot.state & kSet) &&
                                  bitsOf(slot.number) != bitsOf(info.defaultValue);
            if (isNumber) {
                const std::uint64_t bits = bitsOf(slot.number);
                line += " " + std::to_string(slot.number) + " " + std::to_string(bits);
            }
            if (const auto* bulk = dynamic_cast<const BulkArray*>(slot.data.get()))
                bulk->write("." + info.shortName, line);
            else if (slot.data)
                appendDataValue(line, info.type, *slot.data);
            if (slot.state & kFlags || isNumber || slot.data || driven)
                lines.push_back(line);
        });
    }
    std::sort(lines.begin(), lines.end());
    std::string all;
    for (const std::string& line : lines)
        all += line + "\n";
    return all;
}

class BitForBit : public FileTest {
  protected:
    void expectKept(const std::string& what) {
        const std::string before = describe(scene()), text = saved();
        const Status status = openScene(session, write("kept.ma", text));
        ASSERT_TRUE(status) << what << ": " << status.text();
        const std::string after = describe(scene());
        EXPECT_TRUE(before == after) << what << ": " << firstDifference(before, after);
        EXPECT_TRUE(text == saved()) << what << ": " << firstDifference(text, saved());
    }

    template <class T, std::size_t N>
    const T& any(const T (&all)[N]) {
        return all[std::uniform_int_distribution<std::size_t>(0, N - 1)(random)];
    }
    bool chance(int percent) { return std::uniform_int_distribution<int>(0, 99)(random) < percent; }

    double anyNumber(AttrType type) {
        const double value = any(kNumbers);
        if (type != AttrType::Angle || std::fabs(value) < 1e305)
            return chance(50) ? value : std::uniform_real_distribution<double>(-7.0, 7.0)(random);
        return std::isfinite(value) ? 1.0 : value;
    }

    PayloadPtr anyData(AttrType type) {
        const auto doubles = [this](std::size_t count) {
            auto data = std::make_shared<DoubleArrayData>();
            while (data->items.size() < count)
                data->items.push_back(any(kNumbers));
            return data;
        };
        switch (type) {
            case AttrType::String: return std::make_shared<StringData>(any(kTexts));
            case AttrType::Matrix: {
                auto data = std::make_shared<MatrixData>();
                for (int i = 0; i < 16; ++i)
                    data->matrix[i / 4][i % 4] = any(kNumbers);
                return data;
            }
            case AttrType::DoubleArray: return doubles(5);
            case AttrType::VectorArray: return doubles(6);
            case AttrType::PointArray: return doubles(8);
            case AttrType::StringArray: {
                auto data = std::make_shared<StringArrayData>();
                data->items = {any(kTexts), any(kTexts)};
                return data;
            }
            default: return nullptr;
        }
    }

    void setSomething(NodeHandle handle) {
        const Node& node = *scene().node(handle);
        for (AttrIndex a = 0; a < node.attrCount(); ++a) {
            const AttrInfo info = node.attr(a);
            if (!chance(30) || info.arrayDepth > 1 || !info.children.empty() ||
                info.is(kOutput | kNotStored | kOpaque))
                continue;
            Plug plug(handle, a);
            if (info.arrayDepth == 1)
                plug.index[0] = info.bulkOwner != kNoAttr ? any({0, 3, 7}) : any(kIndices);
            if (isNumeric(info.type)) {
                scene().setNumber(plug, anyNumber(info.type));
            } else if (PayloadPtr data = anyData(info.type); data && info.bulkOwner == kNoAttr) {
                scene().setData(plug, std::move(data));
            }
            if (info.bulkOwner == kNoAttr && chance(20))
                scene().setLocked(plug, true);
            if (info.bulkOwner == kNoAttr && chance(20))
                scene().setKeyable(plug, chance(50));
        }
    }
    template <std::size_t N>
    int any(const int (&&all)[N]) {
        return all[std::uniform_int_distribution<std::size_t>(0, N - 1)(random)];
    }

    void addSomething(NodeHandle handle) {
        AttrInfo info;
        info.longName = "added";
        info.shortName = chance(50) ? "ad" : ".x";
        info.type = any({0, 1}) ? AttrType::Double : AttrType::String;
        info.flags = chance(50) ? kArray : 0u;
        info.niceName = any(kTexts);
        if (info.type == AttrType::Double)
            info.defaultValue = any(kNumbers);
        AttrIndex made = kNoAttr;
        EXPECT_EQ(static_cast<bool>(scene().addAttribute(handle, info, kNoAttr, made)),
                  info.shortName == "ad");
    }

    std::mt19937 random{7};
};

TEST_F(BitForBit, WhatWasSetComesBack) {
    std::vector<std::string> types;
    for (const auto& type : scene().types().all())
        if (!type->is(kAbstractType | kUniqueType) && type->name != "world" && type->name != "time")
            types.push_back(type->name);
    for (int round = 0; round < 40 && !HasFailure(); ++round) {
        newScene(session);
        std::vector<NodeHandle> made;
        for (int i = 0; i < 25; ++i) {
            const std::string& type =
                types[std::uniform_int_distribution<std::size_t>(0, types.size() - 1)(random)];
            NodeHandle parent, node;
            if (!made.empty() && chance(60))
                parent =
                    made[std::uniform_int_distribution<std::size_t>(0, made.size() - 1)(random)];
            const bool isShape = scene().types().find(type)->is(kShapeType);
            if (!parent.isNull() && !scene().node(parent)->type->is(kTransformType))
                parent = {};
            if (isShape && parent.isNull()) {
                ASSERT_TRUE(scene().createNode("transform", any(kNames), {}, parent));
            }
            ASSERT_TRUE(scene().createNode(type, any(kNames), parent, node)) << type;
            if (chance(30))
                addSomething(node);
            setSomething(node);
            if (!made.empty() && chance(40))
                ignore(scene().connect(scene().findPlug(made.front(), "message"),
                                       scene().opaquePlug(node, "a\\\r[3].b")));
            made.push_back(node);
        }
        expectKept("round " + std::to_string(round));
    }
}

// Every statement of the user's own scenes is in what is saved of them, or says there what it said.
TEST_F(BitForBit, EveryStatementOfTheRigFolderIsKept) {
    const char* rigs = std::getenv("TORVEL_RIGS");
    if (!rigs || !std::filesystem::is_directory(rigs))
        GTEST_SKIP() << "TORVEL_RIGS names no folder";
    for (const auto& entry : std::filesystem::directory_iterator(rigs)) {
        if (entry.path().extension() != ".ma")
            continue;
        ASSERT_TRUE(openScene(session, entry.path().string()));
        const auto after = statementFacts(saved(), scene());
        const auto before = statementFacts(read(entry.path().string()), scene());
        int lost = 0;  // all are counted, some are shown
        for (const auto& [key, value] : before) {
            const auto found = after.find(key);
            if ((found == after.end() || found->second != value) && ++lost <= 8)
                ADD_FAILURE() << entry.path().filename() << "\n  " << key.substr(0, 200) << " = "
                              << value.substr(0, 200) << "\n  "
                              << (found == after.end() ? "gone" : found->second.substr(0, 200));
        }
        EXPECT_EQ(lost, 0) << entry.path().filename() << " of " << before.size();
    }
}

}  // namespace
}  // namespace torvel::test
