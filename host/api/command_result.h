#pragma once

#include <maya/MCommandResult.h>

#include "api/bridge.h"
#include "base/value.h"

MAYA_API_NAMESPACE_OPEN

struct MCommandResult::Data {
    torvel::Value value;
};

MAYA_API_NAMESPACE_CLOSE
