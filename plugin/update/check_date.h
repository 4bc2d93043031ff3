#pragma once

// The date of the last version check, which stands in the settings file as "yyyy-MM-dd". Nothing
// here prints.

/// True unless the settings file holds today's date; also true when it cannot be read.
bool shouldCheckToday();

/// Stores today's date beside the other keys of the settings file. Without a readable file nothing
/// is stored: the file is never made here.
void markCheckedToday();
