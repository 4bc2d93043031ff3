#include "shell/settings_file.h"

#include <QDir>

QString settingsFilePath() {
    return QDir::homePath() + "/AppData/Roaming/Autodesk/torvelToolsToken.json";
}
