// From the axis radios, the sign and the check box to the option strings of cmds.joint. A radio
// that is checked from here emits no `clicked`, so the handler does not run again.

#include <maya/MGlobal.h>

#include "skeleton/skeleton_window.h"

void SkeletonWindow::setOrientChildren(int state) {
    orientChildren = state == 2;
    if (orientChildren)
        MGlobal::displayInfo("Orient Children joints");
    else
        MGlobal::displayInfo("Orient just selected joints");
}

void SkeletonWindow::setAxisSign(int index) {
    if (index == 0) {
        MGlobal::displayInfo("+");
        axisSign = "up";
    } else if (index == 1) {
        MGlobal::displayInfo("-");
        axisSign = "down";
    }
    updateOrientOptions(false);
}

// The pairs of order and sign are a fixed table, not a rule: y with z and z with x are reversed.
void SkeletonWindow::updateOrientOptions(bool) {
    if (rad_primX->isChecked()) {
        if (rad_secX->isChecked())
            rad_secY->setChecked(true);
        orientOrder = "xyz";
        primAxis = "X";
    } else if (rad_primY->isChecked()) {
        if (rad_secY->isChecked())
            rad_secZ->setChecked(true);
        if (rad_secZ->isChecked())
            orientOrder = "yxz";
        else if (rad_secX->isChecked())
            orientOrder = "yzx";
        primAxis = "Y";
    } else if (rad_primZ->isChecked()) {
        if (rad_secZ->isChecked())
            rad_secX->setChecked(true);
        orientOrder = "zyx";
        primAxis = "Z";
    }

    // The clashes are settled by now; the tests below stand as a second safeguard.
    const bool up = axisSign == "up";
    if (rad_secX->isChecked()) {
        if (rad_primX->isChecked())
            rad_primY->setChecked(true);
        if (orientOrder == "zyx")
            secondaryAxisOrient = up ? "xdown" : "xup";
        else
            secondaryAxisOrient = up ? "xup" : "xdown";
        secAxis = "X";
    } else if (rad_secY->isChecked()) {
        secondaryAxisOrient = "yup";
        if (rad_primY->isChecked())
            rad_primZ->setChecked(true);
        secondaryAxisOrient = up ? "yup" : "ydown";
        secAxis = "Y";
    } else if (rad_secZ->isChecked()) {
        secondaryAxisOrient = "zup";
        if (rad_primZ->isChecked())
            rad_primX->setChecked(true);
        if (orientOrder == "yxz")
            secondaryAxisOrient = up ? "zdown" : "zup";
        else if (orientOrder == "xyz")
            secondaryAxisOrient = up ? "zup" : "zdown";
        secAxis = "Z";
    }
}
