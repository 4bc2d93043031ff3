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

inline std::string restoreLine(const std::string& joint) {
    return "mel plain: dagPose -r -g -bp " + joint + ";";
}

inline std::string renameLine(const std::string& from, const std::string& to) {
    return "python string: cmds.rename('" + from + "', '" + to + "')";
}

/// Orient Joints on a skeleton without skin; by short name.
inline std::string orientBareLine(const std::string& joint, const std::string& order,
                                  const std::string& up, bool children) {
    return "python plain: cmds.joint(' " + joint + " ', edit=True, oj='" + order + "',sao ='" + up +
           (children ? "', ch=True)" : "')");
}

/// Orient Joints on the copy; by full path.
inline std::string orientCopyLine(const std::string& joint, const std::string& order,
                                  const std::string& up, bool children) {
    return "python plain: cmds.joint(' " + joint + " ', edit=True, oj='" + order + "', sao ='" +
           up + (children ? "', ch=True)" : "', ch=False)");
}

inline std::string toWorldLine(const std::string& node) {
    return "python plain: cmds.parent('" + node + "', w=True)";
}

inline std::string parentLine(const std::string& node, const std::string& parent) {
    return "python plain: cmds.parent('" + node + "', '" + parent + "')";
}

/// What the host prints when a node is sent to the parent that it has.
inline std::string skippedLine(const std::string& node, const std::string& parent) {
    return "warning: Object, '" + node + "', skipped.  It is already a child of the parent, '" +
           parent + "'.";
}

inline std::string flipLine(const std::string& joint, char primary, char secondary) {
    return "python plain: import maya.cmds as cmds\n"
           "jointName = '" +
           joint +
           "'\n"
           "primAxis = '" +
           std::string(1, primary) +
           "'\n"
           "secAxis = '" +
           std::string(1, secondary) +
           "'\n"
           "cmds.makeIdentity(jointName, apply=True, rotate=True)\n"
           "primAttr = jointName + '.rotate' + primAxis\n"
           "primValue = cmds.getAttr(primAttr)\n"
           "cmds.setAttr(primAttr, (primValue + 180.0) % 360)\n"
           "secAttr = jointName + '.rotate' + secAxis\n"
           "secValue = cmds.getAttr(secAttr)\n"
           "cmds.setAttr(secAttr, (secValue + 180.0) % 360)\n"
           "cmds.makeIdentity(jointName, apply=True, rotate=True)\n";
}

inline Lines operator+(Lines a, const Lines& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

}  // namespace torvel::test
