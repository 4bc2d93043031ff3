#pragma once

#include <vector>

#include "nodes/transform/transform.h"

/// Writing matrices back into channels. Solving and writing are two steps, so that a command can
/// refuse before anything has moved.
namespace torvel {

struct ChannelValue {
    Plug plug;
    double value;
};
using ChannelValues = std::vector<ChannelValue>;

/// The node's channels with translate, rotate, scale and shear solved so that its local matrix
/// becomes `local`. Pivots, rotate axis, rotate order and (joints) joint orient stay. A joint has
/// no shear: that part is lost.
Channels channelsForLocal(const Scene& scene, NodeHandle node, const M44d& local);

/// The same for a joint that changes its parent: rotate and scale stay, translate and joint orient
/// are solved. `inverseScale` is the scale of the new parent joint (1 1 1 under anything else); it
/// counts only while segmentScaleCompensate is on. Returns false when no joint orient gives `local`
/// (within 1e-6): `out` is then useless.
bool jointChannelsForLocal(const Scene& scene, NodeHandle joint, const M44d& local,
                           const V3d& inverseScale, Channels& out);

/// The plugs of translate, rotate, scale, shear and (joints) joint orient whose value in `wanted`
/// differs from the present one by more than 1e-9 relative, in channel order.
ChannelValues changedChannels(const Scene& scene, NodeHandle node, const Channels& wanted);

/// Failure that names the first locked plug among those to be written; driven ones do not count.
Status checkWritable(const Scene& scene, const ChannelValues& values);
/// Writes all or, on failure of the check, none. Driven plugs are left to their drivers.
Status writeChannels(Scene& scene, const ChannelValues& values);

Status setLocalMatrix(Scene& scene, NodeHandle node, const M44d& local);
/// Through the present parent; instance 0.
Status setWorldMatrix(Scene& scene, NodeHandle node, const M44d& world);

}  // namespace torvel
