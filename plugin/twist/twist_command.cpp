#include "twist/twist_command.h"

#include "twist/twist_window.h"

TorvelTwist::~TorvelTwist() = default;

void* TorvelTwist::creator() {
    return new TorvelTwist;
}

MStatus TorvelTwist::doIt(const MArgList&) {
    auto* window = new TwistWindow(nullptr);
    window->show();
    return MS::kSuccess;
}
