// Making the twist joints of the selected joints.

#include <maya/MDagPath.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>

#include "shell/selection_checks.h"
#include "toolkit/nodes.h"
#include "toolkit/skin_discovery.h"
#include "toolkit/text.h"
#include "twist/twist_window.h"

static MObject firstParent(const MObject& joint) {
    MDagPath path;
    MDagPath::getAPathTo(joint, path);
    return MFnDagNode(path).parent(0);
}

// The joint without what lies below it: those copies are moved under the world and stay there.
static MObject duplicateAlone(const MObject& joint) {
    MDagPath path;
    MDagPath::getAPathTo(joint, path);
    MFnDagNode jointFn(path);
    MObject copy = jointFn.duplicate(false, false);
    MFnDagNode copyFn(copy);
    copyFn.setName(jointFn.name() + "_twist");
    for (unsigned int i = copyFn.childCount(); i-- > 0;) {
        MObject child = copyFn.child(i);
        copyFn.removeChild(child);
    }
    return copy;
}

static MString nameOf(const MObject& node) {
    return MFnDependencyNode(node).name();
}

// iOrient is read by nothing and stays in the text.
static void placeAndConnect(const MString& parent, const MString& joint, const MString& twist,
                            const MString& axis) {
    // clang-format off
    const MString script =
        "iPos = cmds.xform('" + parent + "', query = True, worldSpace = True, translation = True)\n"
        "iChildPos = cmds.xform('" + joint + "', query = True, worldSpace = True, translation = True)\n"
        "twistPos = [(a + 4 * b) / 5 for a, b in zip(iPos, iChildPos)]\n"
        "cmds.xform('" + twist + "', ws = True, t = twistPos)\n"
        "iOrient = cmds.xform('" + parent + "', query = True, worldSpace = True, rotation = True)\n"
        "cmds.joint('" + twist + "', edit=True, o=(0,0,0))\n"
        "iChildRot = '" + joint + "' + '.rotate' + '" + axis + "'\n"
        "twistRot = '" + twist + "' + '.rotate' + '" + axis + "'\n"
        "cmds.connectAttr(iChildRot,twistRot)\n";
    // clang-format on
    MGlobal::executePythonCommand(script, false, false);
}

static void lockAllWeights() {
    const MString script =
        "for attr in cmds.ls('*.liw'):\n"
        "   cmds.setAttr(attr, True)\n";
    MGlobal::executePythonCommand(script, false, false);
}

// The line comes whether the skin took the influence or not.
static void offerToSkin(const MString& twist, const MString& skin) {
    // clang-format off
    const MString script =
        "try:\n"
        "   cmds.skinCluster('" + skin + "', edit = True, addInfluence = '" + twist + "', lw = True)\n"
        "except:\n"
        "   print('" + twist + "' + ' avoided!!')\n";
    // clang-format on
    MGlobal::executePythonCommand(script, false, false);
    MGlobal::displayInfo(twist + utf8Text(" añadido a ") + skin);
}

void TwistWindow::createTwistJoints() {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    const MObjectArray joints = selectionToArray(selection);
    if (!isJointSelection(selection)) {
        MGlobal::displayWarning("Please, select just joints");
        return;
    }
    const MObjectArray skins = collectSkinClusters(joints);

    for (unsigned int i = 0; i < joints.length(); ++i) {
        const MObject parent = firstParent(joints[i]);
        // The names are read after the copy was named: one that was taken has been numbered.
        const MString twist = nameOf(duplicateAlone(joints[i]));
        placeAndConnect(nameOf(parent), nameOf(joints[i]), twist, twistAxis);

        if (skins.length() == 0) {
            MGlobal::displayInfo("No hay Skins Cluster");
            continue;
        }
        lockAllWeights();
        for (unsigned int k = 0; k < skins.length(); ++k)
            offerToSkin(twist, nameOf(skins[k]));
    }
}
