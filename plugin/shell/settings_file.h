#pragma once

#include <QJsonObject>
#include <QString>

/// Full path of the JSON file, under the user's home folder, that keeps the licence keys and the
/// date of the last version check. The file need not exist. Prints nothing.
QString settingsFilePath();

/// Reads the settings file. False, and `settings` untouched, when the file cannot be opened or
/// holds no JSON object. Prints nothing.
bool readSettings(QJsonObject& settings);

/// Replaces the settings file as a whole, in indented form: a reader meets the old content or the
/// new one. Makes the missing folders. False, and the file as it was, when it could not be stored.
bool writeSettings(const QJsonObject& settings);
