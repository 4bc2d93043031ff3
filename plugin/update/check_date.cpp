#include "update/check_date.h"

#include <QDate>
#include <QJsonObject>

#include "shell/settings_file.h"

static const char* const kDateKey = "last_version_check";

static QString today() {
    return QDate::currentDate().toString("yyyy-MM-dd");
}

bool shouldCheckToday() {
    QJsonObject settings;
    if (!readSettings(settings))
        return true;
    return settings[kDateKey].toString() != today();
}

void markCheckedToday() {
    QJsonObject settings;
    if (!readSettings(settings))
        return;
    settings[kDateKey] = today();
    writeSettings(settings);
}
