#pragma once

#include "nodes/transform/rotation.h"

/// The arithmetic of constraints, free of any scene. Row vectors, radians, centimetres.
namespace torvel {

/// Quaternion of a rotation by angles in an order, as the product of the three half-angle
/// rotations: its sign follows the angles, so that a full turn gives the negative quaternion.
Quatd quaternionOfAngles(const V3d& angles, int rotateOrder);
/// Quaternion of an orthonormal matrix, with a real part that is not negative.
Quatd quaternionOfMatrix(const M44d& rotation);
/// The rotation that does `first`, then `second`; matrices multiply in the same order.
Quatd inTurn(const Quatd& first, const Quatd& second);
/// Rotation matrix of a unit quaternion.
M44d matrixOfQuaternion(const Quatd& q);

/// Values of every interpType attribute.
enum Interpolation { kNoFlip, kAverage, kShortest, kLongest, kCached };

/// A weighted mean of rotations. Average adds the quaternions with the signs they come with;
/// Shortest turns each one to the side of the sum so far, Longest to the other side, No Flip to the
/// side of `last`. Cached counts as Average.
class RotationMean {
  public:
    RotationMean(int interpolation, const Quatd& last)
        : m_interpolation(interpolation), m_last(last) {}
    /// Weights are above 0.
    void add(const Quatd& rotation, double weight);
    /// The mean; the first rotation when the others cancel it out. The identity when nothing was
    /// added.
    Quatd result() const;

  private:
    int m_interpolation;
    Quatd m_last;
    Quatd m_first;
    Quatd m_sum{0.0, 0.0, 0.0, 0.0};
    bool m_any = false;
};

/// Values of worldUpType.
enum WorldUp { kSceneUp, kObjectUp, kObjectRotationUp, kVectorUp, kNoUp };

/// What an aim constraint looks along.
struct AimFrame {
    V3d aimVector{1, 0, 0};  ///< axis of the object that points at the target
    V3d upVector{0, 1, 0};   ///< axis of the object that leans to `worldUp`
};
/// World rotation that turns the frame's aim axis to `direction` (any length above 0) and its up
/// axis as near as possible to `worldUp`. False when `worldUp` lies along `direction` or has no
/// length: no rotation is told then.
bool aimRotation(const AimFrame& frame, const V3d& direction, const V3d& worldUp, M44d& rotation);
/// Smallest rotation that turns `from` to `to`; a half turn about some axis when they are opposite.
M44d smallestRotation(const V3d& from, const V3d& to);
/// Some vector square to `v`, of length 1.
V3d anySquareTo(const V3d& v);

/// `a` * inverse(`rotation`) for an orthonormal matrix without translation.
M44d timesInverse(const M44d& a, const M44d& rotation);

}  // namespace torvel
