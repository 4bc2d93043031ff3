#include "skeleton/skeleton_command.h"

#include "licence/gate.h"
#include "licence/license_window.h"
#include "shell/plugin_info.h"
#include "skeleton/skeleton_window.h"
#include "update/daily_step.h"

torvel_skeleton::~torvel_skeleton() = default;

void* torvel_skeleton::creator() {
    return new torvel_skeleton;
}

static void openSkeletonWindow() {
    runDailyUpdateStep(pluginInfo["version"]);
    auto* window = new SkeletonWindow(nullptr);
    window->show();
}

MStatus torvel_skeleton::doIt(const MArgList&) {
    if (licenceGateIsOpen()) {
        openSkeletonWindow();
        return MS::kSuccess;
    }
    auto* licence = new LicenseWindow;
    QObject::connect(licence, &LicenseWindow::licenseValidated, openSkeletonWindow);
    licence->show();
    return MS::kSuccess;
}
