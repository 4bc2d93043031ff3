#pragma once

#include <maya/MObject.h>
#include <maya/MString.h>

/// A circle curve named after the joint with "_ctrl" behind it, placed at the joint, its points
/// scaled by `scale` so that the transform keeps scale 1. `axis` is the normal: "x", "y" or "z",
/// lower case; any other text gives a normal of 0 0 0. Returns the curve's transform, null when the
/// circle could not be made.
MObject createCircleControl(const MObject& joint, const MString& axis, const double& scale);
