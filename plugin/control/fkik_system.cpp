#include <maya/MDoubleArray.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MGlobal.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

#include "control/control_window.h"
#include "control/run_script.h"
#include "control/system_names.h"
#include "shell/selection_checks.h"
#include "toolkit/duplication.h"
#include "toolkit/hierarchy.h"
#include "toolkit/matching.h"
#include "toolkit/nodes.h"

// The three joints by full path. Every name of the system is such a path with text behind it, also
// where a duplicate no longer stands below that path: kept, the look-up then reports it.
struct FKIKChain {
    MString s, m, e;

    MStringArray with(const char* suffix) const {
        MStringArray names;
        for (const MString& joint : {s, m, e})
            names.append(joint + suffix);
        return names;
    }
};

// Copies the chain under a suffixed name and cuts the copy off at the end joint.
static MObject duplicateChain(const FKIKChain& chain, const char* suffix) {
    runMel("duplicate -n " + chain.s + suffix + " " + chain.s + ";");
    const MObject root = getObjectByName(chain.s + suffix);
    renameHierarchy(root, suffix);
    deleteHierarchyChildren(getObjectByName(chain.e + suffix));
    return root;
}

// The topmost group of a control's stack, by the text of the control's path.
static MString stackTop(const MObjectArray& controls) {
    if (controls.length() == 0)
        return MString();
    return groupName(getNodeName(controls[0], true), "_Offset");
}

static MObject groupFKChain(const FKIKChain& chain, const MObjectArray& controls) {
    const MObject group = createNamedTransform(chain.s + "_FK_ctrlGrp");
    runMel("matchTransform " + getNodeName(group, false) + " " + chain.s + "_FK;");
    const MString top = stackTop(controls);
    runMel("parent " + top + " " + getNodeName(group, false) + ";");
    runMel("parent " + chain.s + "_FK " + getNodeName(group, false) + ";");
    return group;
}

static MObject groupIKChain(const FKIKChain& chain, const MObjectArray& controls) {
    const MString top = stackTop(controls);
    const MObject group = createNamedTransform(chain.s + "_IK_ctrlGrp");
    runMel("matchTransform " + getNodeName(group, true) + " " + chain.s + "_IK;");
    runMel("parent " + top + " " + getNodeName(group, true) + ";");
    runMel("parent " + chain.m + "_IK_PV_Offset " + getNodeName(group, true) + ";");
    return group;
}

// A pyramid in one stroke: apex at the origin, square base above it.
static MObject makePyramid() {
    static const double kPoints[][4] = {
        // x, y, z, knot
        {-0.8, 3.2, 0.8, 0},          {0.8, 3.2, 0.8, 4},          {0.8, 3.2, -0.8, 8},
        {-0.8, 3.2, -0.8, 12},        {-0.8, 3.2, 0.8, 16},        {0, 0, 0, 24.485281},
        {0.8, 3.2, 0.8, 32.970563},   {0.8, 3.2, -0.8, 36.970563}, {0, 0, 0, 45.455844},
        {-0.8, 3.2, -0.8, 53.941125}, {-0.8, 3.2, 0.8, 57.941125}, {0, 0, 0, 66.426407},
        {0.8, 3.2, 0.8, 74.911688},
    };
    MPointArray cvs;
    MDoubleArray knots;
    for (const auto& p : kPoints) {
        cvs.append(MPoint(p[0], p[1], p[2], 1.0));
        knots.append(p[3]);
    }
    return MFnNurbsCurve().create(cvs, knots, 1, MFnNurbsCurve::kOpen, false, false,
                                  MObject::kNullObj);
}

static void makeSwitchCurve(const FKIKChain& chain) {
    const MString attr = chain.e + "_attr";
    MObject curve = makePyramid();
    MFnDependencyNode(curve).setName(attr);
    runMel("setAttr \"" + attr + ".overrideEnabled\" 1");
    runMel("setAttr \"" + attr + ".overrideColor\" 4");
    runPython("import maya.cmds as cmds\nhand_pos = cmds.xform('" + chain.e +
              "', q = True, ws = True, t = True)\n"
              "handMargin = [hand_pos[0], hand_pos[1] -10, hand_pos[2]]\n"
              "cmds.xform('" +
              attr + "', ws = True, t = handMargin)\n");
    createNamedTransform(chain.e + "_attr_offset");
    runMel("matchTransform " + attr + "_offset " + attr);
    runMel("parent " + attr + " " + attr + "_offset");
    runMel("parent -s " + attr + "_offset " + chain.e + "_MAIN");
    const MString attrName = MFnDependencyNode(curve).name();
    runPython("cmds.addAttr('" + attrName +
              "', ln='FKIK', at= 'float', min = 0, max = 1, k = True)");
}

static MString makeReverse() {
    MString reverse;
    MGlobal::executeCommand("shadingNode -asUtility reverse", reverse, false, false);
    return reverse;
}

static void connectPython(const MString& source, const MString& target) {
    runPython("import maya.cmds as cmds\ncmds.connectAttr('" + source + "', '" + target +
              "', force=True)");
}

// One MAIN joint between its FK and IK twins: weights 1 - FKIK and FKIK.
static void blendJoint(const MString& fk, const MString& ik, const MString& main,
                       const MString& attr) {
    const MString constraint = MGlobal::executePythonCommandStringResult(
        "import maya.cmds as cmds; result = cmds.parentConstraint('" + fk + "', '" + ik + "', '" +
            main + "', mo=False, n='" + main + "_cnx'); result[0] if result else ''",
        false, false);
    const MString reverse = makeReverse();
    connectPython(attr + ".FKIK", reverse + ".inputX");
    connectPython(reverse + ".outputX", constraint + "." + fk + "W0");
    connectPython(attr + ".FKIK", constraint + "." + ik + "W1");
}

static void connectSwitch(const FKIKChain& chain) {
    runPython(
        "import maya.cmds as cmds\n"
        "cmds.parentConstraint('" +
        chain.s + "_MAIN','" + chain.s +
        "');\n"
        "cmds.parentConstraint('" +
        chain.m + "_MAIN','" + chain.m +
        "');\n"
        "cmds.parentConstraint('" +
        chain.e + "_MAIN','" + chain.e + "');\n");
    const MStringArray fkNames = chain.with("_FK");
    const MStringArray ikNames = chain.with("_IK");
    const MStringArray mainNames = chain.with("_MAIN");
    for (unsigned int i = 0; i < fkNames.length(); ++i)
        blendJoint(fkNames[i], ikNames[i], mainNames[i], chain.e + "_attr");
}

// The IK group stays at the top of the scene.
static void makeTopGroup(const FKIKChain& chain, const MObject& fkGroup) {
    const MObject top = createNamedTransform(chain.s + "_FKIK");
    runMel("matchTransform " + getNodeName(top, true) + " " + chain.s + ";");
    runMel("parent " + chain.s + "_MAIN " + getNodeName(top, true) + ";");
    runMel("parent " + getNodeName(fkGroup, true) + " " + getNodeName(top, true) + ";");
    runMel("parent " + chain.s + "_IK " + getNodeName(top, true) + ";");
}

static void connectVisibility(const FKIKChain& chain, const MObject& fkGroup,
                              const MObject& ikGroup) {
    const MString attr = chain.e + "_attr";
    connectPython(attr + ".FKIK", getNodeName(ikGroup, true) + ".visibility");
    connectPython(attr + ".FKIK", chain.s + "_IK.visibility");
    const MString reverse = makeReverse();
    connectPython(attr + ".FKIK", reverse + ".inputX");
    connectPython(reverse + ".outputX", getNodeName(fkGroup, true) + ".visibility");
}

// False when the selection is refused; a foreign object refuses it in silence.
static bool readChain(FKIKChain& chain) {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    const MObjectArray selected = selectionToArray(selection);
    const MObject endJoint = elementOrNull(selected, 1);
    const MObject middleJoint = endJoint.isNull() ? MObject() : getParentNode(endJoint);
    const bool areJoints = isJointSelection(selection);
    if (!findDuplicateNames(selected) || !areJoints)
        return false;
    chain.e = getNodeName(endJoint, true);
    chain.m = getNodeName(middleJoint, true);
    chain.s = getNodeName(elementOrNull(selected, 0), true);
    return true;
}

void ControlWindow::createFKIKSystem() {
    MGlobal::displayInfo("Creando sistema FKIK...");
    FKIKChain chain;
    if (!readChain(chain))
        return;

    MObjectArray fkRoots;
    fkRoots.append(duplicateChain(chain, "_FK"));
    selectHierarchy(fkRoots, false);
    const MObjectArray fkControls = createFKSystem();
    const MObject fkGroup = groupFKChain(chain, fkControls);

    duplicateChain(chain, "_IK");
    runMel("select -r " + chain.s + "_IK " + chain.e + "_IK;");
    const MObjectArray ikControls = createIKSystem();
    const MObject ikGroup = groupIKChain(chain, ikControls);

    duplicateChain(chain, "_MAIN");
    makeSwitchCurve(chain);
    connectSwitch(chain);
    makeTopGroup(chain, fkGroup);
    connectVisibility(chain, fkGroup, ikGroup);
    MGlobal::displayInfo("Sistema FKIK creado exitosamente.");
}
