#pragma once

/// Whether the tools may open: yes, unless the settings file says "licence_required": true and not
/// "licence_accepted": true. An unreadable file is a yes. Creates the file when it is missing.
bool licenceGateIsOpen();

/// Stores "licence_accepted": true in the settings file and keeps its other keys. The file is
/// replaced as a whole, never half written. False when it could not be stored.
bool storeLicenceAcceptance();
