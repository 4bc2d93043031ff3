#pragma once

#include <string>

// The host is no plug-in: it has neither the version symbols nor entry functions.
#define MNoVersionString
#define MNoPluginEntry
#include <maya/MFnPlugin.h>

#include "base/status.h"
#include "base/value.h"

namespace torvel::api {

/// One call of a plug-in's command: makes the object, runs it, deletes it. `result` is what the
/// command set, none otherwise. Neither an exception nor a failure of the plug-in's code goes
/// further than the status.
Status runPluginCommand(const std::string& name, MCreatorFunction creator,
                        const std::vector<Value>& args, Value& result);

}  // namespace torvel::api
