#include <maya/MGlobal.h>
#include <maya/MString.h>

#include "skeleton/skeleton_window.h"

void SkeletonWindow::resetBindPose() {
    MGlobal::displayWarning("Reset Bind Pose: this tool is not built yet.");
}
