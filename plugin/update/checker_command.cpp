#include "update/checker_command.h"

#include <maya/MGlobal.h>
#include <maya/MString.h>

CheckerWindow::~CheckerWindow() = default;

void* CheckerWindow::creator() {
    return new CheckerWindow;
}

MStatus CheckerWindow::doIt(const MArgList&) {
    MGlobal::displayWarning("checkUpdates: the update check is not built yet.");
    return MS::kSuccess;
}
