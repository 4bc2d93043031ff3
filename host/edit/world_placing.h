#pragma once

#include <string>

#include "edit/placing.h"

/// Placement of one node as xform, matchTransform, move and rotate read and write it. Radians and
/// centimetres. The setters give new channels and write nothing; ChannelPlan writes them.
namespace torvel {

/// World position that `xform -q -ws -t` gives: translate seen through the parent, pivots left out.
V3d worldTranslation(const Scene& scene, NodeHandle node);
/// Rotation of the node's world matrix.
M44d worldRotation(const Scene& scene, NodeHandle node);
/// Rotate or scale pivot in the world.
V3d worldRotatePivot(const Scene& scene, NodeHandle node);
V3d worldScalePivot(const Scene& scene, NodeHandle node);

/// translate so that worldTranslation becomes `position`.
void setWorldTranslation(const Scene& scene, NodeHandle node, const V3d& position,
                         Channels& channels);
/// rotate so that the world rotation becomes that of `rotation`; rotateAxis and jointOrient are
/// kept.
void setWorldRotation(const Scene& scene, NodeHandle node, const M44d& rotation,
                      Channels& channels);
/// translate, rotate, scale and shear for a world matrix; jointOrient is kept.
void setWorldMatrixChannels(const Scene& scene, NodeHandle node, const M44d& world,
                            Channels& channels);
/// translate so that the rotate pivot, with these channels, stands at `position` in the world.
void setWorldPivotPosition(const Scene& scene, NodeHandle node, const V3d& position,
                           Channels& channels);

/// Other pivots (in the node's own space). The matrix stays what it is: the pivot translations take
/// the difference.
void moveRotatePivot(Channels& channels, const V3d& pivot);
void moveScalePivot(Channels& channels, const V3d& pivot);
/// Another rotate order; with `preserve` the rotation stays and the angles change.
void changeRotateOrder(Channels& channels, int order, bool preserve);
/// Number of a rotate order's name ("zxy"); -1 when there is no such order.
int rotateOrderOf(const std::string& name);
/// Its name; a number out of range counts as xyz.
std::string rotateOrderName(int order);

/// Writes the channels that differ from the node's, passing over locked and driven ones in silence.
void writeFreeChannels(Scene& scene, NodeHandle node, const Channels& channels);

}  // namespace torvel
