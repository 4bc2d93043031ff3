#pragma once

#include <vector>

#include "script/command.h"
#include "graph/scene.h"

namespace torvel {

/// One number that key commands work on, with the curve that feeds it.
struct KeyTarget {
    Plug plug;         ///< null when the call names the curve itself
    NodeHandle curve;  ///< null when none feeds the plug
};

enum class KeyScope {
    Keyable,  ///< of an object without -attribute: its keyable numbers
    Keyed     ///< of an object without -attribute: what has a curve already
};

/// Numbers that the positional names (objects, plugs, curves; the selection without any) and
/// -attribute mean, in the order named, each once. Compounds stand for their numbers. Objects that
/// have no such attribute are passed over.
Status keyTargets(const CommandCall& call, KeyScope scope, std::vector<KeyTarget>& out);

/// The curve (of any kind) that feeds the plug, directly or through one conversion; null when there
/// is none.
NodeHandle anyCurveOf(const Scene& scene, const Plug& plug);
/// The plug that a curve feeds first; null when it feeds none.
Plug plugFedBy(const Scene& scene, NodeHandle curve);

/// Name and type of a new curve for the plug: "joint1_rotateX", "animCurveTA" (or "animCurveUA"
/// with `driven`).
std::string curveNameFor(const Scene& scene, const Plug& plug);
std::string curveTypeFor(const Scene& scene, const Plug& plug, bool driven);

/// A time as commands take it: a number of frames, or a text such as "12", "1.5sec". False for
/// anything else.
bool timeOf(const Scene& scene, const Value& value, double& frame);

/// Ranges of a multi-use -time flag (also -float): "a:b", "a:", ":b", (a, b), a single time or one
/// number.
struct TimeRange {
    double from = -1e300, to = 1e300;
    bool holds(double time) const { return time >= from - 1e-6 && time <= to + 1e-6; }
};
Status timeRanges(const CommandCall& call, const char* flag, std::vector<TimeRange>& out);
bool inRanges(const std::vector<TimeRange>& ranges, double time);  ///< true without any range

/// Tangent kind of a word ("linear", "auto", "stepnext" ...); -1 for a word that names none.
int tangentKindOf(const std::string& word);
const char* tangentWord(int kind);  ///< inverse; "fixed" for a number that names none

}  // namespace torvel
