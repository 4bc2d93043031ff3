#include "update/checker_command.h"

#include <maya/MGlobal.h>
#include <maya/MString.h>

#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include "shell/plugin_info.h"
#include "toolkit/text.h"
#include "update/check_date.h"
#include "update/server_address.h"
#include "update/update_dialog.h"

static constexpr qint64 kLargestAnswer = 1 << 20;  // bytes, unpacked

// False, with an error line, when no whole answer came. An answer that grows past what any version
// text can need is given up, so that a server cannot fill the memory.
static bool askServer(QByteArray& answer) {
    QNetworkAccessManager manager;
    QEventLoop loop;
    QNetworkReply* reply = manager.get(QNetworkRequest(updateInfoAddress()));
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [reply] {
        if (reply->bytesAvailable() > kLargestAnswer)
            reply->abort();
    });
    loop.exec();
    // An application that ends takes every loop along, finished or not.
    const bool isGood = reply->isFinished() && reply->error() == QNetworkReply::NoError;
    if (isGood)
        answer = reply->readAll();
    else
        MGlobal::displayError(utf8Text("Error al obtener la versión desde el servidor."));
    reply->deleteLater();
    return isGood;
}

bool checkForUpdate(QString& latest, QString& url) {
    QByteArray answer;
    if (!askServer(answer))
        return false;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(answer, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        MGlobal::displayError(utf8Text("Error al analizar el JSON de versión."));
        return false;
    }
    latest = document.object().value("version").toString();
    url = document.object().value("download_url").toString();
    const QString current = pluginInfo["version"];
    markCheckedToday();
    return current < latest;
}

CheckerWindow::~CheckerWindow() = default;

void* CheckerWindow::creator() {
    return new CheckerWindow;
}

MStatus CheckerWindow::doIt(const MArgList&) {
    QString latest, url;
    if (checkForUpdate(latest, url))
        showUpdateDialog(pluginInfo["version"], latest, url);
    else
        MGlobal::displayInfo(utf8Text("Ya tienes la última versión del plugin."));
    return MS::kSuccess;
}
