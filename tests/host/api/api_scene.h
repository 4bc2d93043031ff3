#pragma once

#include <string>

#include <gtest/gtest.h>
#include <maya/MDagPath.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>

#include "support/test_scene.h"

namespace torvel::test {

/// A scene driven through the API: nodes are made by the commands and looked up as a plug-in does.
class ApiTest : public testing::Test {
  protected:
    MObject find(const std::string& name) {
        MSelectionList list;
        MObject object;
        EXPECT_TRUE(list.add(MString(name.c_str()))) << name;
        list.getDependNode(0, object);
        return object;
    }
    MDagPath path(const std::string& name) {
        MDagPath found;
        EXPECT_TRUE(MDagPath::getAPathTo(find(name), found)) << name;
        return found;
    }
    MPlug plug(const std::string& node, const std::string& attribute) {
        return MFnDependencyNode(find(node)).findPlug(MString(attribute.c_str()), true);
    }
    MObject make(const std::string& type, const std::string& name, const std::string& parent = {}) {
        return find(scene.make(type, name, parent));
    }
    void connect(const std::string& from, const std::string& to) {
        scene.call("connectAttr", {from, to});
    }
    static std::string nameOf(const MObject& object) {
        return text(MFnDependencyNode(object).name());
    }
    static std::string text(const MString& string) { return string.asChar(); }

    TestScene scene;
};

}  // namespace torvel::test
