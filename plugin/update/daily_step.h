#pragma once

#include <QString>

/// The version step that precedes the skeleton window, due at most once per calendar day.
/// @param currentVersion  the installed version, which the step compares with the newest one.
/// No update server is asked yet, so the step returns at once and prints nothing.
void runDailyUpdateStep(const QString& currentVersion);
