#pragma once

#include <QString>

/// The version step that precedes the skeleton window, due at most once per calendar day: announces
/// itself, asks the update server and waits for it, and shows the dialog when there is a newer
/// version than `currentVersion`. Otherwise it says nothing but what went wrong. A day whose
/// question failed stays due.
void runDailyUpdateStep(const QString& currentVersion);
