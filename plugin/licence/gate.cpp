#include "licence/gate.h"

#include <QFile>
#include <QJsonObject>

#include "shell/settings_file.h"

bool licenceGateIsOpen() {
    if (!QFile::exists(settingsFilePath()))
        writeSettings({{"licence_required", false}, {"licence_accepted", false}});
    QJsonObject settings;
    readSettings(settings);
    return !settings["licence_required"].toBool() || settings["licence_accepted"].toBool();
}

bool storeLicenceAcceptance() {
    QJsonObject settings;
    readSettings(settings);
    settings["licence_accepted"] = true;
    return writeSettings(settings);
}
