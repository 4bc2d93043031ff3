#include "update/daily_step.h"

void runDailyUpdateStep(const QString&) {}
