#include "twist/twist_command.h"

#include <maya/MGlobal.h>
#include <maya/MString.h>

TorvelTwist::~TorvelTwist() = default;

void* TorvelTwist::creator() {
    return new TorvelTwist;
}

MStatus TorvelTwist::doIt(const MArgList&) {
    MGlobal::displayWarning("torvel_twist: the twist tool is not built yet.");
    return MS::kSuccess;
}
