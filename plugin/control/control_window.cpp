#include "control/control_window.h"

#include <maya/MGlobal.h>
#include <maya/MQtUtil.h>

#include <QColorDialog>
#include <QEvent>

#include "control/shape_routines.h"
#include "toolkit/text.h"

ControlWindow::ControlWindow(QWidget* parent) : QWidget(parent) {
    setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose, true);
    if (QWidget* mainWindow = MQtUtil::mainWindow()) {
        setParent(mainWindow);
        setWindowFlags(Qt::Window | Qt::WindowMaximizeButtonHint | Qt::WindowMinimizeButtonHint |
                       Qt::WindowCloseButtonHint);
    }
    show();

    connectSystems();
    connectShapes();
    label_colorPicked->setCursor(Qt::PointingHandCursor);
    label_colorPicked->setAttribute(Qt::WA_Hover, true);
    label_colorPicked->installEventFilter(this);
    connectShapeEditing();
    // Second connection of this button on purpose: it reports after the foot roll's step has run.
    connect(btn_footRoll, &QPushButton::clicked, this, &ControlWindow::inspectSelection);
}

void ControlWindow::connectSystems() {
    using Self = ControlWindow;
    connect(rad_X, &QRadioButton::clicked, this, &Self::onPrimaryAxisChanged);
    connect(rad_Y, &QRadioButton::clicked, this, &Self::onPrimaryAxisChanged);
    connect(rad_Z, &QRadioButton::clicked, this, &Self::onPrimaryAxisChanged);
    connect(rad_offset, &QRadioButton::clicked, this, &Self::onOffsetTypeChanged);
    connect(rad_offsetAuto, &QRadioButton::clicked, this, &Self::onOffsetTypeChanged);
    connect(btn_FKsystem, &QPushButton::clicked, this, &Self::createFKSystem);
    connect(btn_IKsystem, &QPushButton::clicked, this, &Self::createIKSystem);
    connect(btn_FKIKSystem, &QPushButton::clicked, this, &Self::createFKIKSystem);
    connect(btn_footRoll, &QPushButton::clicked, this, &Self::createFootRoll);
    connect(btn_cancelRoll, &QPushButton::clicked, this, &Self::cancelFootRoll);
}

void ControlWindow::connectShapes() {
    const struct {
        QPushButton* button;
        MObject (*routine)();
    } shapes[] = {
        {btnShape01, createShape01}, {btnShape02, createShape02}, {btnShape03, createShape03},
        {btnShape04, createShape04}, {btnShape05, createShape05}, {btnShape06, createShape06},
        {btnShape07, createShape07}, {btnShape08, createShape08}, {btnShape09, createShape09},
        {btnShape10, createShape10}, {btnShape12, createShape12}, {btnShape13, createShape13},
        {btnShape14, createShape14}, {btnShape15, createShape15}, {btnShape16, createShape16},
        {btnShape17, createShape17}, {btnShape18, createShape18}, {btnShape19, createShape19},
        {btnShape20, createShape20}, {btnShape21, createShape21}, {btnShape22, createShape22},
        {btnShape23, createShape23}, {btnShape26, createShape26}, {btnShape27, createShape27},
        {btnShape29, createShape29}, {btnShape32, createShape32}, {btnShape34, createShape34},
        {btnShape35, createShape35}, {btnShape36, createShape36}, {btnShape38, createShape38},
        {btnShape39, createShape39}, {btnShape40, createShape40}, {btnShape42, createShape42},
        {btnShape43, createShape43}, {btnShape46, createShape46},
    };
    for (const auto& shape : shapes) {
        MObject (*const routine)() = shape.routine;
        connect(shape.button, &QPushButton::clicked, this,
                [this, routine] { changeShape(routine); });
    }
}

void ControlWindow::connectShapeEditing() {
    using Self = ControlWindow;
    connect(hSlider_scalar, &QSlider::valueChanged, this, &Self::scaleShapes);
    connect(btn_reset, &QPushButton::clicked, this, &Self::resetScale);
    connect(rad_rotShp_X, &QRadioButton::clicked, this, &Self::onRotationAxisChanged);
    connect(rad_rotShp_Y, &QRadioButton::clicked, this, &Self::onRotationAxisChanged);
    connect(rad_rotShp_Z, &QRadioButton::clicked, this, &Self::onRotationAxisChanged);
    connect(btnRot180, &QPushButton::clicked, this, [this] { rotateShape(180); });
    connect(btnRot90, &QPushButton::clicked, this, [this] { rotateShape(90); });
    connect(cBox_freeModify, &QCheckBox::stateChanged, this, &Self::toggleFreeModify);
}

bool ControlWindow::eventFilter(QObject* watched, QEvent* event) {
    if (QObject::eventFilter(watched, event))
        return true;
    if (watched != label_colorPicked || event->type() != QEvent::MouseButtonPress)
        return QObject::eventFilter(watched, event);

    const QColor color = QColorDialog::getColor(chosenColor, this, "Selecciona un color");
    if (color.isValid()) {
        chosenColor = color;
        label_colorPicked->setStyleSheet(QString("background-color: rgb(%1,%2,%3);")
                                             .arg(color.red())
                                             .arg(color.green())
                                             .arg(color.blue()));
        applyColor(color.redF(), color.greenF(), color.blueF());
    }
    return true;
}

void ControlWindow::onPrimaryAxisChanged(bool) {
    if (rad_X->isChecked())
        primaryAxis = "x";
    else if (rad_Y->isChecked())
        primaryAxis = "y";
    else if (rad_Z->isChecked())
        primaryAxis = "z";
    MGlobal::displayInfo(primaryAxis);
}

void ControlWindow::onOffsetTypeChanged(bool) {
    if (rad_offset->isChecked())
        offsetType = "offset";
    else if (rad_offsetAuto->isChecked())
        offsetType = "offsetAuto";
    MGlobal::displayInfo(offsetType);
}

void ControlWindow::onRotationAxisChanged(bool) {
    if (rad_rotShp_X->isChecked()) {
        rotationAxis = "x";
        MGlobal::displayInfo(utf8Text("Eje X seleccionado para rotaci�n secundaria."));
    } else if (rad_rotShp_Y->isChecked()) {
        rotationAxis = "y";
        MGlobal::displayInfo(utf8Text("Eje Y seleccionado para rotaci�n secundaria."));
    } else if (rad_rotShp_Z->isChecked()) {
        rotationAxis = "z";
        MGlobal::displayInfo(utf8Text("Eje Z seleccionado para rotaci�n secundaria."));
    }
    MGlobal::displayInfo(rotationAxis);
}
