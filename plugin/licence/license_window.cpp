#include "licence/license_window.h"

#include <maya/MGlobal.h>
#include <maya/MQtUtil.h>
#include <maya/MString.h>

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include "licence/gate.h"
#include "shell/plugin_info.h"

static const char* const kTerms =
    "This program is licensed under the Apache License, Version 2.0.\n\n"
    "You may use, copy, change and pass it on under the conditions of that licence. It is provided "
    "\"as is\", without warranties or conditions of any kind, and its authors are not liable for "
    "damages that come from its use.";

LicenseWindow::LicenseWindow(QWidget* parent) : QWidget(parent) {
    setObjectName("LicenseWindow");
    setWindowTitle(pluginInfo["name"] + " " + pluginInfo["version"] + " - Licence");
    setWindowIcon(QIcon(":/images/img/torvel.png"));
    setAttribute(Qt::WA_DeleteOnClose, true);
    if (QWidget* mainWindow = MQtUtil::mainWindow()) {
        setParent(mainWindow);
        setWindowFlags(Qt::Window | Qt::WindowCloseButtonHint);
    }

    auto* terms = new QLabel(kTerms, this);
    terms->setObjectName("label_terms");
    terms->setWordWrap(true);
    auto* accept = new QPushButton("Accept", this);
    accept->setObjectName("btn_acceptLicense");
    auto* decline = new QPushButton("Close", this);
    decline->setObjectName("btn_closeLicense");

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(terms);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(accept);
    buttons->addWidget(decline);
    layout->addLayout(buttons);
    resize(420, 200);

    connect(accept, &QPushButton::clicked, this, &LicenseWindow::acceptLicense);
    connect(decline, &QPushButton::clicked, this, &QWidget::close);
}

void LicenseWindow::acceptLicense() {
    if (m_isAccepted)
        return;
    m_isAccepted = true;
    if (!storeLicenceAcceptance())
        MGlobal::displayWarning("The licence acceptance could not be stored.");
    // The receiver may wait in an event loop of its own, in which this window can be closed.
    hide();
    const QPointer<LicenseWindow> self(this);
    Q_EMIT licenseValidated();
    if (self)
        self->close();
}
