#include "control/ctrl_creator.h"

#include "control/control_window.h"

CtrlCreator::~CtrlCreator() = default;

void* CtrlCreator::creator() {
    return new CtrlCreator;
}

MStatus CtrlCreator::doIt(const MArgList&) {
    auto* window = new ControlWindow(nullptr);
    window->show();
    return MS::kSuccess;
}
