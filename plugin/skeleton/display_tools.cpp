#include <maya/MGlobal.h>
#include <maya/MString.h>

#include "skeleton/skeleton_window.h"

void SkeletonWindow::showAxis() {
    MGlobal::displayWarning("Show Axis: this tool is not built yet.");
}

void SkeletonWindow::hideAxis() {
    MGlobal::displayWarning("Hide Axis: this tool is not built yet.");
}

void SkeletonWindow::setDrawStyle(int) {
    MGlobal::displayWarning("Draw Style: this tool is not built yet.");
}

void SkeletonWindow::minusRadius() {
    MGlobal::displayWarning("Radius -: this tool is not built yet.");
}

void SkeletonWindow::plusRadius() {
    MGlobal::displayWarning("Radius +: this tool is not built yet.");
}
