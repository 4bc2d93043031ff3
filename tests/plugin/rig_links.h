#pragma once

#include <string>
#include <vector>

#include "plugin/plugin_scene.h"

namespace torvel::test {

/// Every connection as "source > destination" with full paths, sorted. A constraint is named by
/// what it constrains, "|joint|<type>", since a rebuilt one is numbered anew; what ends at a
/// dagPose is left out, since a bind takes up its members in any order.
std::vector<std::string> linksOf(PluginScene& scene);

/// Every node as "type path", constraints named as above, sorted.
std::vector<std::string> namesOf(PluginScene& scene);

/// What `from` holds and `other` does not, repeats counted.
std::vector<std::string> missing(const std::vector<std::string>& from,
                                 const std::vector<std::string>& other);

}  // namespace torvel::test
