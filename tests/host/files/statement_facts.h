#pragma once

#include <map>
#include <string>

#include "graph/scene.h"

namespace torvel::test {

/// What the statements of a scene's text say, each fact under a key that does not depend on how the
/// text is laid out: "node |a" = "joint -s", "flag |a.translateX -k" = "off", "value |a.translateX"
/// = "1.5", "connect |a.tx" = ... Later statements replace earlier ones. `scene` (opened from the
/// text or its like) is asked for names and for which attributes an attribute consists of, for no
/// value.
std::map<std::string, std::string> statementFacts(const std::string& text, const Scene& scene);

}  // namespace torvel::test
