#include "skeleton/skeleton_window.h"

#include <maya/MQtUtil.h>

SkeletonWindow::SkeletonWindow(QWidget* parent) : QWidget(parent) {
    setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose, true);
    if (QWidget* mainWindow = MQtUtil::mainWindow()) {
        setParent(mainWindow);
        setWindowFlags(Qt::Window | Qt::WindowMaximizeButtonHint | Qt::WindowMinimizeButtonHint |
                       Qt::WindowCloseButtonHint);
    }
    show();
    connectSignals();
}

void SkeletonWindow::connectSignals() {
    using Self = SkeletonWindow;
    const auto indexChanged = QOverload<int>::of(&QComboBox::currentIndexChanged);

    connect(cBox_ignoreLastChild, &QCheckBox::stateChanged, this, &Self::setIgnoreLastJoints);
    connect(btn_selAllHierar, &QPushButton::clicked, this, &Self::SelAllHierarchy);
    connect(btn_selChild, &QPushButton::clicked, this, &Self::selectChildren);
    connect(btn_showAxis, &QPushButton::clicked, this, &Self::showAxis);
    connect(btn_hideAxis, &QPushButton::clicked, this, &Self::hideAxis);
    connect(cBox_allHierarchy, &QCheckBox::stateChanged, this, &Self::setAllHierarchy);
    connect(btn_freezeRot, &QPushButton::clicked, this, &Self::freezeRotations);
    connect(btn_resetBndPose, &QPushButton::clicked, this, &Self::resetBindPose);
    connect(rad_primX, &QRadioButton::clicked, this, &Self::updateOrientOptions);
    connect(rad_primY, &QRadioButton::clicked, this, &Self::updateOrientOptions);
    connect(rad_primZ, &QRadioButton::clicked, this, &Self::updateOrientOptions);
    connect(rad_secX, &QRadioButton::clicked, this, &Self::updateOrientOptions);
    connect(rad_secY, &QRadioButton::clicked, this, &Self::updateOrientOptions);
    connect(rad_secZ, &QRadioButton::clicked, this, &Self::updateOrientOptions);
    connect(opt_revertAxis, indexChanged, this, &Self::setAxisSign);
    connect(cBox_orientChld, &QCheckBox::stateChanged, this, &Self::setOrientChildren);
    connect(btn_OrientJoints, &QPushButton::clicked, this, &Self::orientJoints);
    connect(btn_flipOrient, &QPushButton::clicked, this, &Self::flipOrientation);
    connect(btn_drawBone, &QPushButton::clicked, this, [this] { setDrawStyle(0); });
    connect(btn_drawBox, &QPushButton::clicked, this, [this] { setDrawStyle(1); });
    connect(btn_drawNone, &QPushButton::clicked, this, [this] { setDrawStyle(2); });
    connect(btn_drawJoint, &QPushButton::clicked, this, [this] { setDrawStyle(3); });
    connect(btn_minusRadius, &QPushButton::clicked, this, &Self::minusRadius);
    connect(btn_plusRadius, &QPushButton::clicked, this, &Self::plusRadius);
}
