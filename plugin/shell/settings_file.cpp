#include "shell/settings_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>

QString settingsFilePath() {
    return QDir::homePath() + "/AppData/Roaming/Autodesk/torvelToolsToken.json";
}

bool readSettings(QJsonObject& settings) {
    QFile file(settingsFilePath());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject())
        return false;
    settings = document.object();
    return true;
}

// QSaveFile writes a temporary file beside the target and renames it on commit. In a folder that
// takes no new file it writes into the target itself.
bool writeSettings(const QJsonObject& settings) {
    QDir().mkpath(QFileInfo(settingsFilePath()).absolutePath());
    QSaveFile file(settingsFilePath());
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(QJsonDocument(settings).toJson());
    return file.commit();
}
