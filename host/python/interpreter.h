#pragma once

#include "python/ref.h"

namespace torvel::py {

/// Starts the interpreter of the process once; later calls do nothing. It is isolated from the
/// user's settings but for PYTHONPATH, sees Debian's packages (PySide2), installs no signal
/// handlers and is never finalised. The caller's thread becomes the main thread and does not hold
/// the lock afterwards.
void startInterpreter();

/// Gives the lock back while Qt's loop waits, nested loops included. Does nothing before there is
/// an application and from the second time on.
void followEventLoop();

/// Takes back the lock that a wait gave away, if it did and has not been told of its end. What
/// Python code calls and may have run an event loop ends with this.
void endWait();

bool isMainThread();

/// Functions of the module `_torvel`, which the package `maya` is written on: write, eval_mel,
/// later, callback, in_main_thread.
PyObject* makeHostModule();

}  // namespace torvel::py
