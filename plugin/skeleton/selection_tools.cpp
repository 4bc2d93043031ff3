#include <maya/MGlobal.h>

#include "skeleton/skeleton_window.h"
#include "toolkit/text.h"

void SkeletonWindow::setIgnoreLastJoints(int state) {
    ignoreLastJoints = state == 2;
    if (ignoreLastJoints)
        MGlobal::displayInfo(utf8Text("Se ignorará lastJnt"));
    else
        MGlobal::displayInfo(utf8Text("NO se ignorará lastJnt"));
}

void SkeletonWindow::SelAllHierarchy() {
    MGlobal::displayWarning("Select All Hierarchy: this tool is not built yet.");
}

void SkeletonWindow::selectChildren() {
    MGlobal::displayWarning("Select Children: this tool is not built yet.");
}
