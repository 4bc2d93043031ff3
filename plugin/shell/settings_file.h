#pragma once

#include <QString>

/// Full path of the JSON file, under the user's home folder, that keeps the licence keys and the
/// date of the last version check. The file need not exist. Prints nothing.
QString settingsFilePath();
