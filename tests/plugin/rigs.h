#pragma once

#include <string>
#include <vector>

#include "plugin/plugin_scene.h"

namespace torvel::test {

/// Joints one below the other under `parent` ("" for the world), five units apart along -y, each of
/// them turned, so that freezing has something to do. Gives their full paths.
std::vector<std::string> makeChain(PluginScene& scene, const std::vector<std::string>& names,
                                   const std::string& parent = {});

/// A tube around the first two bones of such a chain, bound to the skeleton of `root`; returns the
/// cluster.
std::string bindTube(PluginScene& scene, const std::string& root, const std::string& name);
/// The same without the bind.
void makeTube(PluginScene& scene, const std::string& name);

/// The chain hip, knee, ankle at the top of the scene and the tube "leg", bound by "skinCluster1".
void makeLeg(PluginScene& scene);

/// An empty transform.
void makeGroup(PluginScene& scene, const std::string& name, const std::string& parent = {});

/// Feeds a second tube "leg2" from outputGeometry[1] of the cluster.
void addSecondOutput(PluginScene& scene, const std::string& cluster);

/// A constraint node of the type under `joint`, named after it, with one element of `target` fed by
/// each driver's translate and nothing driven by it; returns its full path.
std::string addConstraint(PluginScene& scene, const std::string& type, const std::string& joint,
                          const std::vector<std::string>& drivers);

}  // namespace torvel::test
