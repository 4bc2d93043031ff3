#pragma once

namespace torvel {

/// From now on SIGINT and SIGTERM end this process at once, in the middle of whatever it does: the
/// temporary files of a save are removed (the target is the old or the new file, whole), printed
/// text is flushed, and the exit code is 128 + the signal's number. Processes forked off keep the
/// usual way. Once a process.
void endOnSignals();

}  // namespace torvel
