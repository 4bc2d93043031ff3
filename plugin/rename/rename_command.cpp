#include "rename/rename_command.h"

#include <maya/MGlobal.h>
#include <maya/MString.h>

torvel_renameUI::~torvel_renameUI() = default;

void* torvel_renameUI::creator() {
    return new torvel_renameUI;
}

MStatus torvel_renameUI::doIt(const MArgList&) {
    MGlobal::displayWarning("torvel_renameUI: the rename tool is not built yet.");
    return MS::kSuccess;
}
