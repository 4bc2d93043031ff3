#pragma once

#include <map>
#include <string>

#include "graph/math.h"
#include "plugin/plugin_scene.h"

namespace torvel::test {

/// World directions of x, y and z.
struct Frame {
    V3d axes[3];
};

using Frames = std::map<std::string, Frame>;
using Places = std::map<std::string, V3d>;

/// The frame in which the joint's rotate channels turn: rotate * jointOrient * parent, rotateAxis
/// left out.
Frame rotationFrame(PluginScene& scene, const std::string& path);
/// The frames of all joints, by full path.
Frames framesOf(PluginScene& scene);
/// World positions of all joints, by full path.
Places placesOf(PluginScene& scene);

void expectSameFrame(const Frame& actual, const Frame& expected, const std::string& path);
/// Same joints, each within 1e-9 of its place.
void expectSamePlaces(const Places& actual, const Places& expected);

/// The axis of the order's first letter along `bone`, that of its second letter toward the world
/// axis that `up` ("yup", "xdown") names, as far as the bone lets it; right-handed.
void expectAimed(const Frame& frame, const std::string& order, const std::string& up,
                 const V3d& bone);
/// The two axes reversed, the third kept.
void expectFlipped(const Frame& actual, const Frame& before, char primary, char secondary,
                   const std::string& path);

}  // namespace torvel::test
