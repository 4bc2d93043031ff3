#include "commands/skin/distance.h"

#include <algorithm>
#include <cmath>

#include "nodes/transform/transform.h"

namespace torvel {
namespace {

double distanceToSegment(const V3d& a, const V3d& b, const V3d& p) {
    const V3d along = b - a;
    const double length2 = along ^ along;
    const double t = length2 > 0.0 ? std::clamp(((p - a) ^ along) / length2, 0.0, 1.0) : 0.0;
    return (p - (a + along * t)).length();
}

}  // namespace

InfluenceShape influenceShape(const Scene& scene, NodeHandle node, double dropoff) {
    InfluenceShape out;
    out.position = worldPosition(scene, node);
    out.dropoff = dropoff;
    if (!isJoint(scene, node))
        return out;
    for (NodeHandle child : scene.node(node)->children)
        if (isJoint(scene, child))
            out.ends.push_back(worldPosition(scene, child));
    return out;
}

double distanceTo(const InfluenceShape& influence, const V3d& point) {
    if (influence.ends.empty())
        return (point - influence.position).length();
    double least = distanceToSegment(influence.position, influence.ends[0], point);
    for (std::size_t i = 1; i < influence.ends.size(); ++i)
        least = std::min(least, distanceToSegment(influence.position, influence.ends[i], point));
    return least;
}

std::vector<SkinWeight> distanceWeights(const std::vector<InfluenceShape>& influences,
                                        const V3d& point, int most) {
    std::vector<SkinWeight> kept;  // the weight field holds the distance until the end
    kept.reserve(influences.size());
    for (std::size_t i = 0; i < influences.size(); ++i)
        kept.push_back({static_cast<std::int32_t>(i), distanceTo(influences[i], point)});
    const std::size_t count = std::min(kept.size(), static_cast<std::size_t>(std::max(1, most)));
    std::partial_sort(kept.begin(), kept.begin() + static_cast<std::ptrdiff_t>(count), kept.end(),
                      [](const SkinWeight& a, const SkinWeight& b) {
                          return a.weight != b.weight ? a.weight < b.weight
                                                      : a.influence < b.influence;
                      });
    kept.resize(count);
    const bool touches = !kept.empty() && kept[0].weight == 0.0;
    double sum = 0.0;
    for (SkinWeight& w : kept) {
        const double dropoff = influences[static_cast<std::size_t>(w.influence)].dropoff;
        w.weight = touches ? (w.weight == 0.0 ? 1.0 : 0.0) : std::pow(w.weight, -dropoff);
        sum += w.weight;
    }
    for (SkinWeight& w : kept)
        w.weight = std::isfinite(sum) && sum > 0.0 ? w.weight / sum : (&w == &kept[0] ? 1.0 : 0.0);
    return kept;
}

}  // namespace torvel
