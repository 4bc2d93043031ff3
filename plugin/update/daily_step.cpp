#include "update/daily_step.h"

#include <maya/MGlobal.h>
#include <maya/MString.h>

#include "update/check_date.h"
#include "update/checker_command.h"
#include "update/update_dialog.h"

void runDailyUpdateStep(const QString& currentVersion) {
    if (!shouldCheckToday())
        return;
    MGlobal::displayInfo("Checking for plugin updates...");
    QString latest, url;
    if (checkForUpdate(latest, url))
        showUpdateDialog(currentVersion, latest, url);
}
