#include <maya/MGlobal.h>
#include <maya/MObjectArray.h>
#include <maya/MSelectionList.h>

#include "shell/selection_checks.h"
#include "skeleton/skeleton_window.h"
#include "toolkit/hierarchy.h"
#include "toolkit/nodes.h"
#include "toolkit/text.h"

void SkeletonWindow::setIgnoreLastJoints(int state) {
    ignoreLastJoints = state == 2;
    if (ignoreLastJoints)
        MGlobal::displayInfo(utf8Text("Se ignorará lastJnt"));
    else
        MGlobal::displayInfo(utf8Text("NO se ignorará lastJnt"));
}

// False, with the refusal printed, unless joints alone are selected.
static bool selectedJoints(MObjectArray& joints) {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    if (!isJointSelection(selection)) {
        MGlobal::displayInfo("Todos no son Joints");
        return false;
    }
    joints = selectionToArray(selection);
    return true;
}

void SkeletonWindow::SelAllHierarchy() {
    MObjectArray joints;
    if (!selectedJoints(joints))
        return;
    const MObjectArray tops = getRootJoints(joints);
    printObjectPaths(tops);
    selectHierarchy(tops, ignoreLastJoints);
}

void SkeletonWindow::selectChildren() {
    MObjectArray joints;
    if (selectedJoints(joints))
        selectHierarchy(joints, ignoreLastJoints);
}
