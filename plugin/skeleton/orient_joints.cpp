#include <maya/MGlobal.h>
#include <maya/MString.h>

#include "skeleton/skeleton_window.h"

void SkeletonWindow::orientJoints() {
    MGlobal::displayWarning("Orient Joints: this tool is not built yet.");
}
