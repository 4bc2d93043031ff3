#include "twist/twist_window.h"

#include <maya/MQtUtil.h>

TwistWindow::TwistWindow(QWidget* parent) : QWidget(parent) {
    setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose, true);
    if (QWidget* mainWindow = MQtUtil::mainWindow()) {
        setParent(mainWindow);
        setWindowFlags(Qt::Window | Qt::WindowMaximizeButtonHint | Qt::WindowMinimizeButtonHint |
                       Qt::WindowCloseButtonHint);
    }
    show();

    connect(rad_X, &QRadioButton::clicked, this, &TwistWindow::setTwistAxis);
    connect(rad_Y, &QRadioButton::clicked, this, &TwistWindow::setTwistAxis);
    connect(rad_Z, &QRadioButton::clicked, this, &TwistWindow::setTwistAxis);
    connect(btn_createTwist, &QPushButton::clicked, this, &TwistWindow::createTwistJoints);
    connect(btn_paintWeights, &QPushButton::clicked, this, &TwistWindow::paintWeights);
    connect(btn_mirror, &QPushButton::clicked, this, &TwistWindow::mirrorWeights);
    connect(btn_animationTest, &QPushButton::clicked, this, &TwistWindow::testTwist);
}

void TwistWindow::setTwistAxis() {
    if (rad_X->isChecked())
        twistAxis = "X";
    else if (rad_Y->isChecked())
        twistAxis = "Y";
    else
        twistAxis = "Z";
}
