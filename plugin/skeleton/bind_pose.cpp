#include <maya/MGlobal.h>
#include <maya/MString.h>

#include "skeleton/skeleton_window.h"

// Works on the selection that the first step leaves; after a refusal that is the user's own.
void SkeletonWindow::resetBindPose() {
    SelAllHierarchy();
    MGlobal::executeCommand("dagPose -bp -reset", false, false);
}
