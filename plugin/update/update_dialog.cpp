#include "update/update_dialog.h"

#include <maya/MQtUtil.h>

#include <QDesktopServices>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

// The address comes from the network: only web addresses (and none) are handed to the desktop,
// which would start a program for others.
static void openDownload(const QString& text) {
    const QUrl address(text);
    if (text.isEmpty() || address.scheme() == "http" || address.scheme() == "https")
        QDesktopServices::openUrl(address);
}

void showUpdateDialog(const QString& current, const QString& latest, const QString& url) {
    const bool isNewer = current < latest;
    auto* dialog = new QDialog(MQtUtil::mainWindow());
    dialog->setWindowTitle(QStringLiteral("Versión del Plugin"));

    auto* label = new QLabel(dialog);
    if (isNewer)
        label->setText(
            QStringLiteral("Tu versión: <b>%1</b><br>Nueva versión disponible: <b>%2</b>")
                .arg(current, latest));
    else
        label->setText(QStringLiteral("Estás usando la última versión: <b>%1</b>").arg(current));
    label->setWordWrap(true);

    auto* download = new QPushButton(QStringLiteral("Descargar actualización"));
    auto* close = new QPushButton(QStringLiteral("Cerrar"));

    auto* layout = new QVBoxLayout;
    layout->addWidget(label);
    if (isNewer)
        layout->addWidget(download);
    layout->addWidget(close);
    dialog->setLayout(layout);

    QObject::connect(download, &QPushButton::clicked, [url] { openDownload(url); });
    QObject::connect(close, &QPushButton::clicked, dialog, &QDialog::close);
    if (!isNewer)
        download->deleteLater();  // stands in no layout
    dialog->show();
}
