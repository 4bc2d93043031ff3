#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>

#include "control/control_window.h"
#include "control/run_script.h"
#include "control/system_names.h"
#include "shell/selection_checks.h"
#include "toolkit/circle_control.h"
#include "toolkit/duplication.h"
#include "toolkit/matching.h"
#include "toolkit/nodes.h"
#include "toolkit/pole_vector.h"

// The chain by short names, and what is made on it.
struct IKChain {
    MObject endJoint, middleJoint;
    MString start, mid, end;
    MString ctrl, handle;
};

// The start joint is tested, the end joint gives the names: kept, other systems look for them.
static void nameChain(IKChain& chain, const MObject& startJoint) {
    chain.end = getNodeName(chain.endJoint, false);
    chain.mid = getNodeName(chain.middleJoint, false);
    chain.start = getNodeName(startJoint, false);
    const bool isDuplicate = endsWith(chain.start, "_IK");
    chain.ctrl = isDuplicate ? chain.end + "_ctrl" : chain.end + "_IK_ctrl";
    chain.handle = isDuplicate ? chain.end + "_handle" : chain.end + "_IK_handle";
}

static MObject makeControl(const MObject& joint, const MString& name, const MString& axis,
                           double radius) {
    MObject control = createCircleControl(joint, axis, radius);
    MFnDependencyNode(control).setName(name);
    return control;
}

static MObject makeHandControl(const IKChain& chain, const MString& axis) {
    // No blanks before the flags, kept: the text is known that way, and MEL reads it all the same.
    runMel("ikHandle -sj " + chain.start + "-ee " + chain.end + "-sol ikRPsolver -n " +
           chain.handle + ";");
    getObjectByName(chain.handle);  // reports a handle that was not made
    const MObject control = makeControl(chain.endJoint, chain.ctrl, axis, 6.0);
    runMel("orientConstraint " + chain.ctrl + " " + chain.end + ";");
    runMel("setAttr \"" + chain.ctrl + ".overrideEnabled\" 1;");
    runMel("setAttr \"" + chain.ctrl + ".overrideColor\" 17;");
    runMel("parent " + chain.handle + " " + chain.ctrl + ";");
    return control;
}

static void groupHandControl(const IKChain& chain, const MString& offsetType) {
    const MString offset = groupName(chain.ctrl, "_Offset");
    createNamedTransform(offset);
    runMel("matchTransform " + offset + " " + chain.end + ";");
    if (offsetType == "offsetAuto") {
        const MString autoGroup = groupName(chain.ctrl, "_Auto");
        createNamedTransform(autoGroup);
        runMel("matchTransform " + autoGroup + " " + chain.end + ";");
        runMel("parent " + chain.ctrl + " " + autoGroup + ";");
        runMel("parent " + autoGroup + " " + offset + ";");
    } else if (offsetType == "offset") {
        runMel("parent " + chain.ctrl + " " + offset + ";");
    }
}

// The group is matched last, so that it takes the pole's place.
static MObject makePoleControl(const IKChain& chain, const MString& axis) {
    const MString pv = chain.mid + "_PV_ctrl";
    const MObject control = makeControl(chain.middleJoint, pv, axis, 3.0);
    computePoleVectorPosition(chain.start, chain.mid, chain.end, pv);
    runMel("poleVectorConstraint " + pv + " " + chain.handle + ";");
    const MString offset = groupName(pv, "_Offset");
    createNamedTransform(offset);
    runMel("matchTransform " + offset + " " + pv + ";");
    runMel("parent " + pv + " " + offset + ";");
    return control;
}

MObjectArray ControlWindow::createIKSystem() {
    MGlobal::displayInfo("Creando sistema IK...");
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    const MObjectArray selected = selectionToArray(selection);
    const MObject startJoint = elementOrNull(selected, 0);
    IKChain chain;
    chain.endJoint = elementOrNull(selected, 1);
    if (!chain.endJoint.isNull())
        chain.middleJoint = getParentNode(chain.endJoint);

    const bool areJoints = isJointSelection(selection);
    if (!findDuplicateNames(selected))
        return MObjectArray();
    if (!areJoints) {
        MGlobal::displayInfo("No todo son Joints...");
        return MObjectArray();
    }

    nameChain(chain, startJoint);
    MObjectArray controls;
    controls.append(makeHandControl(chain, primaryAxis));
    groupHandControl(chain, offsetType);
    controls.append(makePoleControl(chain, primaryAxis));
    MGlobal::displayInfo("Sistema IK creado exitosamente.");
    return controls;
}
