#include "licence/gate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include "shell/settings_file.h"

static QJsonObject readSettings() {
    QFile file(settingsFilePath());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

// QSaveFile writes a temporary file beside the target and renames it on commit.
static bool writeSettings(const QJsonObject& settings) {
    QDir().mkpath(QFileInfo(settingsFilePath()).absolutePath());
    QSaveFile file(settingsFilePath());
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(QJsonDocument(settings).toJson());
    return file.commit();
}

bool licenceGateIsOpen() {
    if (!QFile::exists(settingsFilePath()))
        writeSettings({{"licence_required", false}, {"licence_accepted", false}});
    const QJsonObject settings = readSettings();
    return !settings["licence_required"].toBool() || settings["licence_accepted"].toBool();
}

bool storeLicenceAcceptance() {
    QJsonObject settings = readSettings();
    settings["licence_accepted"] = true;
    return writeSettings(settings);
}
