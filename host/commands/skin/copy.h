#pragma once

#include <string>
#include <vector>

#include "graph/scene.h"

/// Copying and mirroring the weights of one skin to another or to itself.
namespace torvel {

/// How an influence of the source finds its partner at the destination.
enum class InfluenceMatch {
    ByOrder,    ///< the influence of the same place in the list
    ByName,     ///< the one of the same name; mirrored: of the name of the other side
    ByClosest,  ///< the one whose position is nearest to the (mirrored) position
};

/// A plane through the origin of the world.
enum class MirrorPlane { None, YZ, XZ, XY };

struct CopyOptions {
    MirrorPlane plane = MirrorPlane::None;
    bool inverse = false;       ///< from the negative side to the positive one
    bool closestPoint = false;  ///< the nearest place of any face; otherwise the nearest point
    bool normalize = false;     ///< also where the destination does not normalise by itself
    std::vector<InfluenceMatch> matches = {
        InfluenceMatch::ByClosest};  ///< the first that finds a partner counts
};

/// The partner of each influence: logical indices of the source, and of the destination or -1.
/// Ascending source index.
struct InfluencePair {
    std::int32_t from;
    std::int32_t to;
};
std::vector<InfluencePair> matchInfluences(const Scene& scene, NodeHandle source, NodeHandle target,
                                           const CopyOptions& options);

/// Each point of the destination gets the weights of the place of the source's surface that is
/// nearest to it; with a plane only the points of the side that is written to, from the place
/// opposite to them. World space, as the shapes stand now. Weights of influences without a partner
/// are lost. Points on the plane keep what they have.
Status copyWeights(Scene& scene, NodeHandle source, NodeHandle target, const CopyOptions& options);

/// 1 where a point is written to, -1 on the other side, 0 on the plane; 1 without a plane.
int mirrorSide(const V3d& point, const CopyOptions& options);

/// What mirroring would do to the points of a skin.
struct MirrorCount {
    std::size_t written = 0;  ///< on the side that is written to
    std::size_t kept = 0;     ///< on the other side
    std::size_t onPlane = 0;
};
Status countMirror(const Scene& scene, NodeHandle target, const CopyOptions& options,
                   MirrorCount& out);

/// The name of the other side: "L_arm" and "R_arm", "armLeft" and "armRight", "arm_lf" and
/// "arm_rt"; a name of no side as it is.
std::string otherSideName(const std::string& name);

/// The place of a point behind the plane.
V3d mirrored(const V3d& point, MirrorPlane plane);

}  // namespace torvel
