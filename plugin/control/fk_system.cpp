#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

#include "control/control_window.h"
#include "control/run_script.h"
#include "control/system_names.h"
#include "shell/selection_checks.h"
#include "toolkit/circle_control.h"
#include "toolkit/duplication.h"
#include "toolkit/matching.h"
#include "toolkit/nodes.h"
#include "toolkit/text.h"

// One joint on its way to a control.
struct FKJoint {
    MObject joint;
    MString path;              // without the leading bar
    bool isDuplicate = false;  // of a chain whose joints end in "_FK"
    MObject control;
    MString ctrl;
    MString ctrlPath;  // as it was before the control got a parent, without the leading bar
    MString offsetPath;
};

static MString withoutLeadingBar(const MString& path) {
    if (path.indexW("|") != 0)
        return path;
    return path.substringW(1, static_cast<int>(path.length()) - 1);
}

static void makeControl(FKJoint& fk, const MString& axis) {
    const MString name = getNodeName(fk.joint, false);
    fk.path = withoutLeadingBar(getNodeName(fk.joint, true));
    fk.control = createCircleControl(fk.joint, axis, 5.0);
    fk.isDuplicate = endsWith(name, "_FK");
    fk.ctrl = fk.isDuplicate ? name + "_ctrl" : name + "_FK_ctrl";
    MFnDependencyNode(fk.control).setName(fk.ctrl);
    fk.ctrlPath = withoutLeadingBar(getNodeName(fk.control, true));
    runPython("cmds.setAttr('|" + fk.ctrlPath + ".overrideEnabled', 1)");
    runPython("cmds.setAttr('|" + fk.ctrlPath + ".overrideColor', 13)");
}

static MString makeGroupAtJoint(const FKJoint& fk, const char* suffix) {
    const MString path = getNodeName(createNamedTransform(groupName(fk.ctrl, suffix)), true);
    runMel("matchTransform " + path + " " + fk.path + ";");
    return path;
}

static void groupControl(FKJoint& fk, const MString& offsetType) {
    fk.offsetPath = makeGroupAtJoint(fk, "_Offset");
    if (offsetType == "offsetAuto") {
        const MString autoPath = makeGroupAtJoint(fk, "_Auto");
        runMel("parent " + fk.ctrlPath + " " + autoPath + ";");
        runMel("parent " + autoPath + " " + fk.offsetPath + ";");
    } else if (offsetType == "offset") {
        runMel("parent " + fk.ctrlPath + " " + fk.offsetPath + ";");
    }
}

// The child decides how its parent's name is read. A parent without "_FK" then keeps its bare name,
// and the group goes right under that joint: kept, that is where a duplicate chain's first group
// belongs.
static MString candidateName(const MString& parent, bool isDuplicate, const char* suffix) {
    if (!isDuplicate)
        return parent + suffix;
    MString name = parent;
    name.substitute("_FK", suffix);
    return name;
}

static void hookToParentControl(const FKJoint& fk) {
    const MObject parent = getParentNode(fk.joint);
    if (parent.isNull())
        return;
    const MString parentName = MFnDependencyNode(parent).name();
    MSelectionList found;
    for (const char* suffix : {"_IK_ctrl", "_FK_ctrl", "_MAIN"}) {
        const MString candidate = candidateName(parentName, fk.isDuplicate, suffix);
        if (found.add(candidate) != MS::kSuccess)
            continue;
        runMel("parent " + fk.offsetPath + " " + candidate + ";");
        return;
    }
    MGlobal::displayInfo("No se encontro un control padre valido para " + fk.ctrl);
}

static void selectControls(const MStringArray& paths) {
    MSelectionList list;
    for (unsigned int i = 0; i < paths.length(); ++i)
        if (list.add(paths[i]) != MS::kSuccess)
            MGlobal::displayError("Error al agregar el control: " + paths[i]);
    if (MGlobal::setActiveSelectionList(list) != MS::kSuccess)
        MGlobal::displayError(utf8Text("No se pudo establecer la selecci\xEF\xBF\xBDn."));
}

MObjectArray ControlWindow::createFKSystem() {
    MGlobal::displayInfo("Creando sistema FK...");
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    const MObjectArray joints = selectionToArray(selection);
    const bool areJoints = isJointSelection(selection);
    if (!findDuplicateNames(joints))
        return MObjectArray();
    if (!areJoints) {
        MGlobal::displayInfo("No todo son Joints...");
        return MObjectArray();
    }

    MObjectArray controls;
    MStringArray paths;
    for (unsigned int i = 0; i < joints.length(); ++i) {
        FKJoint fk;
        fk.joint = joints[i];
        makeControl(fk, primaryAxis);
        groupControl(fk, offsetType);
        hookToParentControl(fk);
        runPython("cmds.parentConstraint('" + fk.ctrlPath + "', '" + fk.path + "')");
        paths.append(fk.ctrlPath);
        controls.append(fk.control);
    }
    selectControls(paths);
    return controls;
}
