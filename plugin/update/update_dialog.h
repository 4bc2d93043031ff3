#pragma once

#include <QString>

/// Shows, without waiting, a dialog that names the installed and the newest version and offers the
/// download at `url`; with no newer version it says so and offers nothing. A closed dialog stays
/// alive, hidden, as a child of the application's main window.
void showUpdateDialog(const QString& current, const QString& latest, const QString& url);
