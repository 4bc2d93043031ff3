#pragma once

#include <string>

#include "base/status.h"
#include "graph/scene.h"

namespace torvel {

/// The scene as the text of a Maya ASCII file. The same scene gives the same text: no name of the
/// file, no time, no order of memory is in it. What was read and is not known to the host comes out
/// as it was read.
std::string sceneToText(const Scene& scene);

}  // namespace torvel
