#include <maya/MGlobal.h>
#include <maya/MString.h>

#include "skeleton/skeleton_window.h"

void SkeletonWindow::flipOrientation() {
    MGlobal::displayWarning("Flip: this tool is not built yet.");
}
