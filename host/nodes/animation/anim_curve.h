#pragma once

#include <vector>

#include "graph/scene.h"

namespace torvel {

/// Tangent kinds as files number them.
enum TangentKind {
    kFixedTangent = 1,
    kLinearTangent = 2,
    kFlatTangent = 3,
    kStepTangent = 5,
    kSplineTangent = 9,
    kClampedTangent = 10,
    kPlateauTangent = 16,
    kStepNextTangent = 17,
    kAutoTangent = 18
};

/// One key: time in frames (or the driver's unit), value in internal units.
struct CurveKey {
    double time = 0.0, value = 0.0;
    int inKind = kAutoTangent, outKind = kAutoTangent;
    double inSlope = 0.0, outSlope = 0.0;  ///< of fixed tangents: value per frame
};

/// How a curve goes on beyond its keys, as files number it.
enum CurveEnd {
    kConstantEnd = 0,
    kLinearEnd = 1,
    kCycleEnd = 3,
    kCycleOffsetEnd = 4,
    kOscillateEnd = 5
};

/// Keys made ready for evaluation: ascending in time, every slope worked out.
struct CurveShape : Payload {
    CurveShape() = default;
    explicit CurveShape(std::vector<CurveKey> sortedKeys);
    /// 0 without keys.
    double value(double time) const;

    std::vector<CurveKey> keys;  ///< inSlope and outSlope as they are, whatever the kinds
    int pre = kConstantEnd, post = kConstantEnd;

  private:
    double inside(double time) const;
    double beyond(double time, int kind) const;
};

/// Value at `time` of keys in ascending time; constant before the first and after the last, 0
/// without keys.
double curveValue(const std::vector<CurveKey>& keys, double time);

/// Keys of an animation curve node, ascending in time. Empty for other nodes.
std::vector<CurveKey> keysOf(const Scene& scene, NodeHandle curve);
/// Replaces all keys.
void setKeys(Scene& scene, NodeHandle curve, const std::vector<CurveKey>& keys);

/// The curve runs over time (types TL, TA, TU, TT), not over a driver.
bool isTimeCurve(const Scene& scene, NodeHandle curve);

double sceneTime(const Scene& scene);
/// Sets time1.outTime and makes everything that follows it dirty.
void setSceneTime(Scene& scene, double frame);
/// Curves without an input follow the scene's time on their own: call this after time1.outTime has
/// changed.
void dirtyTimeCurves(Scene& scene);

}  // namespace torvel
