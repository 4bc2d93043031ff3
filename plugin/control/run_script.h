#pragma once

#include <maya/MGlobal.h>
#include <maya/MString.h>

// Shorthand of this folder: scripts run without display and undo, and their status is not read,
// since every system goes on with its next step after a failure.

inline void runMel(const MString& text) {
    MGlobal::executeCommand(text, false, false);
}

inline void runPython(const MString& text) {
    MGlobal::executePythonCommand(text, false, false);
}
