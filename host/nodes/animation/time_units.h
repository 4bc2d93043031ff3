#pragma once

#include <string>

#include "graph/scene.h"

/// The time unit of a scene. Times are frames of that unit everywhere.
namespace torvel {

/// Position of time1.outTime, the time of the scene in frames.
AttrIndex timeAttr();

inline constexpr double kTicksPerSecond = 6000.0;

/// Frames a second of a unit name ("film", "ntsc", "23.976fps"); 0 for a word that names none.
double rateOfUnit(const std::string& unit);
/// Name of the scene's unit; "film" unless its file says otherwise.
std::string timeUnit(const Scene& scene);
double framesPerSecond(const Scene& scene);

}  // namespace torvel
