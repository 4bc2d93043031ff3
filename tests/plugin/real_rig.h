#pragma once

#include <map>
#include <string>

#include "plugin/rig_state.h"

namespace torvel::test {

/// Path of a rig that others made; empty when TORVEL_RIGS does not name a folder that holds it.
std::string rigPath(const std::string& file);

/// A scene of others, opened from its file.
class RealRig : public PluginScene {
  public:
    void open(const std::string& path);

    /// The skinned joints, each once, in the order of clusters and influences.
    Lines influences();
    /// The meshes with every cluster switched off.
    std::map<std::string, Points> restShapes();
    bool isAtRest();
    /// Whether anything feeds the joint's rotate channels.
    bool isDriven(const std::string& joint);
};

}  // namespace torvel::test
