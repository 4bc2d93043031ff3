#pragma once

#include <string>

#include "plugin/plugin_scene.h"

namespace torvel::test {

// The texts that the skin-keeping tools run, as PluginScene::transcript() shows them.

inline std::string detachLine(const std::string& skin) {
    return "python plain: cmds.skinCluster('" + skin + "', e=True, unbindKeepHistory=True)";
}

inline std::string duplicateLine(const std::string& rootPath) {
    return "python string: cmds.duplicate('" + rootPath + "')[0]";
}

inline std::string stripLine(const std::string& dup) {
    return "python plain: import maya.cmds as cmds\n"
           "dup_joints = cmds.listRelatives('" +
           dup + "', ad=True, type='joint', f=True) + ['" + dup +
           "']\n"
           "for j in dup_joints:\n"
           "    cons = cmds.listRelatives(j, type='constraint', f=True) or []\n"
           "    if cons:\n"
           "        cmds.delete(cons)\n";
}

inline std::string listLine(const std::string& top) {
    return "python stringArray: cmds.listRelatives('" + top +
           "', ad=True, type='joint', f=True) + ['" + top + "']";
}

inline std::string freezeLine(const std::string& joint) {
    return "python plain: cmds.makeIdentity('" + joint + "', apply=True, rotate=True)";
}

inline std::string groupLine(const std::string& rootPath) {
    return "python plain: cmds.group('" + rootPath + "', n='tempOldSkeletonGroup')";
}

inline std::string deleteGroupLine() {
    return "python plain: cmds.delete('tempOldSkeletonGroup')";
}

inline std::string bindLine(const std::string& root, const std::string& mesh) {
    return "python plain: cmds.skinCluster('" + root + "', '" + mesh +
           "', bindMethod=0, skinMethod=0, normalizeWeights=1)";
}

inline Lines operator+(Lines a, const Lines& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

}  // namespace torvel::test
