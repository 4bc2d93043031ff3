#include <gtest/gtest.h>

#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

class AttrInfoTest : public testing::Test {
  protected:
    void SetUp() override { scene.make("transform", "a"); }
    std::string listed(const char* object, TestScene::Flags flags = {}) {
        return scene.text("listAttr", {object}, flags);
    }
    Value fact(const char* attr, const char* what, const char* node = "a") {
        return scene.call("attributeQuery", {attr}, {flag("node", {node}), flag(what)});
    }
    TestScene scene;
};

TEST_F(AttrInfoTest, PlugsListTheirChildren) {
    EXPECT_EQ(listed("a.translate"), "translate translateX translateY translateZ");
    EXPECT_EQ(listed("a.t", {flag("shortNames")}), "t tx ty tz");
    EXPECT_EQ(listed("a.tx"), "translateX");
    EXPECT_EQ(listed("a.t", {flag("scalar")}), "translateX translateY translateZ");
    EXPECT_EQ(listed("a.t", {flag("leaf"), flag("string", {"*X"})}), "translateX");
    EXPECT_TRUE(scene.call("listAttr", {"a"}, {flag("userDefined")}).isNone());
}

TEST_F(AttrInfoTest, KeyableOnesAreTheChannels) {
    EXPECT_EQ(listed("a", {flag("keyable"), flag("string", {"r*X"}), flag("string", {"s*X"})}),
              "rotateX scaleX");
    EXPECT_EQ(
        listed("a", {flag("keyable")}),
        "visibility translateX translateY translateZ rotateX rotateY rotateZ scaleX scaleY scaleZ");
    scene.call("setAttr", {"a.tx"}, {flag("lock", {true})});
    scene.call("setAttr", {"a.ty"}, {flag("keyable", {false})});
    EXPECT_EQ(listed("a", {flag("locked")}), "translateX");
    EXPECT_EQ(
        listed("a", {flag("keyable"), flag("unlocked"), flag("leaf"), flag("string", {"tr*"})}),
        "translateZ");
}

TEST_F(AttrInfoTest, ElementsOfArraysAndChildrenBelowThem) {
    scene.make("plusMinusAverage", "sum");
    scene.set("sum.i1[2]", 1);
    scene.set("sum.i1[5]", 1);
    EXPECT_EQ(listed("sum.i1"), "input1D");
    EXPECT_EQ(listed("sum.i1", {flag("multi")}), "input1D[2] input1D[5]");
    scene.make("wtAddMatrix", "mix");
    EXPECT_EQ(listed("mix.i"), "wtMatrix wtMatrix.matrixIn wtMatrix.weightIn");
    scene.set("mix.i[1].w", 1);
    EXPECT_EQ(listed("mix.i", {flag("multi")}),
              "wtMatrix[1] wtMatrix[1].matrixIn wtMatrix[1].weightIn");
}

TEST_F(AttrInfoTest, InnerPlacesAreNotListed) {
    scene.make("unitConversion", "u");
    scene.make("choice", "c");
    for (const char* name : {"u", "c"})
        for (const std::string& attr : textsOf(scene.call("listAttr", {name})))
            EXPECT_EQ(attr.find_first_of("012"), std::string::npos) << attr;
    EXPECT_EQ(listed("time1", {flag("string", {"playback*"})}), "");
}

TEST_F(AttrInfoTest, FactsOfAttributes) {
    EXPECT_EQ(fact("tx", "longName").string(), "translateX");
    EXPECT_EQ(fact("translate", "shortName").string(), "t");
    EXPECT_EQ(fact("translateX", "attributeType").string(), "doubleLinear");
    EXPECT_EQ(fact("rotateX", "niceName").string(), "Rotate X");
    EXPECT_EQ(textsOf(fact("t", "listChildren")),
              (std::vector<std::string>{"translateX", "translateY", "translateZ"}));
    EXPECT_EQ(textsOf(fact("tx", "listParent")), (std::vector<std::string>{"translate"}));
    EXPECT_EQ(textsOf(fact("tx", "listSiblings")),
              (std::vector<std::string>{"translateY", "translateZ"}));
    EXPECT_TRUE(fact("translate", "listParent").isNone());
    expectNear(numbersOf(fact("scale", "listDefault")), {1, 1, 1});
    EXPECT_EQ(fact("t", "numberOfChildren").integer(), 3);
    EXPECT_TRUE(fact("rotateOrder", "enum").truth());
    EXPECT_EQ(textsOf(fact("rotateOrder", "listEnum")),
              (std::vector<std::string>{"xyz:yzx:zxy:xzy:yxz:zyx"}));
    EXPECT_TRUE(fact("worldMatrix", "multi").truth());
    EXPECT_FALSE(fact("worldMatrix", "writable").truth());
    EXPECT_FALSE(fact("tx", "rangeExists").truth());
    EXPECT_FALSE(fact("nothing", "exists").truth());
    EXPECT_TRUE(fact("tx", "exists").truth());
    EXPECT_EQ(scene.error("attributeQuery", {"nothing"}, {flag("node", {"a"}), flag("longName")}),
              "attributeQuery: 'nothing' attribute does not exist.");
}

TEST_F(AttrInfoTest, FactsOfTypesAndOfAddedRanges) {
    EXPECT_EQ(textsOf(scene.call("attributeQuery", {"scale"},
                                 {flag("type", {"joint"}), flag("listChildren")})),
              (std::vector<std::string>{"scaleX", "scaleY", "scaleZ"}));
    EXPECT_FALSE(
        scene.call("attributeQuery", {"radius"}, {flag("type", {"transform"}), flag("exists")})
            .truth());
    EXPECT_TRUE(scene.call("attributeQuery", {"radius"}, {flag("type", {"joint"}), flag("exists")})
                    .truth());
    scene.call("addAttr", {"a"},
               {flag("longName", {"mix"}), flag("minValue", {0}), flag("maxValue", {2}),
                flag("softMinValue", {0.5}), flag("softMaxValue", {1}), flag("defaultValue", {1})});
    expectNear(numbersOf(fact("mix", "range")), {0, 2});
    expectNear(numbersOf(fact("mix", "softRange")), {0.5, 1});
    EXPECT_TRUE(fact("mix", "softRangeExists").truth() && fact("mix", "maxExists").truth());
    EXPECT_EQ(listed("a", {flag("userDefined")}), "mix");
}

TEST_F(AttrInfoTest, ConnectionFactsLookAboveThePlug) {
    scene.make("transform", "b");
    scene.call("connectAttr", {"a.t", "b.t"});
    const auto ask = [&](const char* plug, const char* what) {
        return scene.call("connectionInfo", {plug}, {flag(what)});
    };
    EXPECT_EQ(ask("b.tx", "sourceFromDestination").string(), "a.translateX");
    EXPECT_EQ(ask("b.t", "sourceFromDestination").string(), "a.translate");
    EXPECT_TRUE(ask("b.tx", "isDestination").truth());
    EXPECT_FALSE(ask("b.tx", "isExactDestination").truth());
    EXPECT_TRUE(ask("a.tx", "isSource").truth());
    EXPECT_FALSE(ask("a.tx", "isExactSource").truth());
    EXPECT_EQ(ask("b.tx", "getExactDestination").string(), "b.translate");
    EXPECT_EQ(ask("a.tx", "getExactSource").string(), "a.translate");
    EXPECT_EQ(textsOf(ask("a.t", "destinationFromSource")),
              (std::vector<std::string>{"b.translate"}));
    EXPECT_EQ(ask("a.s", "sourceFromDestination").string(), "");
    scene.call("setAttr", {"b.s"}, {flag("lock", {true})});
    EXPECT_TRUE(ask("b.sx", "isLocked").truth());
    EXPECT_EQ(ask("b.sx", "getLockedAncestor").string(), "b.scale");
}

}  // namespace
