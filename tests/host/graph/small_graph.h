#pragma once

#include <gtest/gtest.h>

#include "graph/evaluation.h"
#include "graph/scene.h"

// A scene over a type table of its own: the graph is tested without the node library.
namespace torvel::test {

inline int g_evaluations = 0;

enum { kMessage, kInput, kFactor, kItems, kOutput_, kPoint };
inline const AttrRow kBaseRows[] = {
    {"message", "msg", AttrType::Message, 0.0, kOutput | kNotStored}};
inline const AttrRow kDoubleRows[] = {
    {"input", "i", AttrType::Double, 1.0, kKeyable, "output"},
    {"factor", "f", AttrType::Double, 2.0, 0, "output"},
    {"items", "it", AttrType::Double, 0.0, kArray | kDeleteElement, "output"},
    {"output", "o", AttrType::Double, 0.0, kOutput},
    {"point", "p", AttrType::Double3, 0.0, kKeyable, "output"},
    {"group", "g", AttrType::Compound, 0.0, kArray},
    {"member", "m", AttrType::Double, 5.0, 0, "", "group"},
};

inline void evaluateDouble(Evaluation& e) {
    ++g_evaluations;
    const NodeType& type = *e.node().type;
    const auto at = [&](const char* name) { return type.byName.at(name); };
    double sum = e.number(at("input")) * e.number(at("factor")) + e.vec3(at("point")).x;
    for (std::size_t i = 0; i < e.elementCount(at("items")); ++i)
        sum += e.number(e.plug(at("items"), e.logicalAt(at("items"), i)));
    e.set(at("output"), sum);
}

inline const AttrRow kDagRows[] = {
    {"tx", "tx", AttrType::Double, 0.0, kKeyable, "worldMatrix"},
    {"parentMatrix", "pm", AttrType::Matrix, 0.0, kOutput | kArray | kPerInstance, "worldMatrix"},
    {"worldMatrix", "wm", AttrType::Matrix, 0.0, kOutput | kArray | kPerInstance},
};

inline void evaluateDag(Evaluation& e) {
    const NodeType& type = *e.node().type;
    M44d world;
    world.setTranslation(V3d(e.number(type.byName.at("tx")), 0, 0));
    const NodeHandle parent = e.node().parents.empty() ? NodeHandle() : e.node().parents.front();
    const Node* above = e.scene().node(parent);
    if (above && above->type->byName.count("worldMatrix"))
        world = world * e.matrix(Plug(parent, above->type->byName.at("worldMatrix"), 0));
    e.set(e.plug(type.byName.at("worldMatrix"), 0), world);
}

inline const NodeTypeRow kBaseType{"base",  "", 4,       "kBase",       kBaseRows, 1,
                                   nullptr, 0,  nullptr, kAbstractType, nullptr};
inline const NodeTypeRow kTwice{"twice", "base",         5, "kTwice", kDoubleRows, 7, nullptr,
                                0,       evaluateDouble, 0, nullptr};
inline const NodeTypeRow kWorldType{"world", "base", 6,       "kWorld", nullptr, 0,
                                    nullptr, 0,      nullptr, kDagType, nullptr};
inline const NodeTypeRow kGroupType{"group", "base",  7, "kGroup",    kDagRows,
                                    3,       nullptr, 0, evaluateDag, kDagType | kTransformType,
                                    nullptr};

class SmallGraph : public ::testing::Test {
  protected:
    SmallGraph() { g_evaluations = 0; }

    static const TypeRegistry& registry() {
        static const TypeRegistry types = [] {
            TypeRegistry r;
            const NodeTypeRow* const rows[] = {&kBaseType, &kTwice, &kWorldType, &kGroupType};
            r.add(rows, 4);
            return r;
        }();
        return types;
    }

    NodeHandle make(const char* type, const char* name, NodeHandle parent = {}) {
        NodeHandle made;
        const Status status = scene.createNode(type, name, parent, made);
        EXPECT_TRUE(status) << status.text();
        return made;
    }
    Plug plug(NodeHandle node, const char* path) { return scene.findPlug(node, path); }
    double worldX(NodeHandle node) { return scene.matrix(plug(node, "worldMatrix[0]"))[3][0]; }

    Log log;
    Scene scene{registry(), log};
};

}  // namespace torvel::test
