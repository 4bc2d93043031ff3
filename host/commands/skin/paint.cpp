#include "commands/skin/paint.h"

#include <algorithm>
#include <cmath>

#include "commands/skin/binding.h"
#include "commands/skin/surface.h"

namespace torvel {

namespace {

struct Job {
    std::int32_t influence = 0;
    bool normalize = true;
    std::vector<bool> locked;  ///< by logical index
    std::vector<bool> fixed;   ///< the locked ones and the painted one
};

double heldWeight(const WeightList& weights, std::size_t vertex, const Job& job) {
    double sum = 0.0;
    for (std::size_t i = 0; i < weights.count(vertex); ++i) {
        const auto at = static_cast<std::size_t>(weights.begin(vertex)[i].influence);
        sum += at < job.locked.size() && job.locked[at] ? weights.begin(vertex)[i].weight : 0.0;
    }
    return sum;
}

// False, and nothing changed, when no other influence can make up for the change.
bool setWeight(WeightList& weights, std::size_t vertex, double wanted, const Job& job) {
    const double room = job.normalize ? std::max(0.0, 1.0 - heldWeight(weights, vertex, job)) : 1.0;
    std::vector<SkinWeight> before(weights.begin(vertex),
                                   weights.begin(vertex) + weights.count(vertex));
    weights.set(vertex, job.influence, std::clamp(wanted, 0.0, room));
    if (!job.normalize || normalizeVertex(weights, vertex, job.fixed) ||
        std::abs(weights.sum(vertex) - 1.0) < 1e-12)
        return true;
    weights.assign(vertex, std::move(before));
    return false;
}

std::vector<double> wantedWeights(const WeightList& weights, const Job& job, PaintMode mode,
                                  double value, const std::vector<int>& points,
                                  const std::vector<std::vector<int>>& around) {
    std::vector<double> wanted;
    for (int point : points) {
        const auto vertex = static_cast<std::size_t>(point);
        const double old = weights.weight(vertex, job.influence);
        double mean = 0.0;
        const bool smooth =
            mode == PaintMode::Smooth && vertex < around.size() && !around[vertex].empty();
        for (std::size_t i = 0; smooth && i < around[vertex].size(); ++i)
            mean += weights.weight(static_cast<std::size_t>(around[vertex][i]), job.influence) /
                    static_cast<double>(around[vertex].size());
        switch (mode) {
            case PaintMode::Replace: wanted.push_back(value); break;
            case PaintMode::Add: wanted.push_back(old + value); break;
            case PaintMode::Scale: wanted.push_back(old * value); break;
            case PaintMode::Smooth:
                wanted.push_back(smooth ? old + (mean - old) * std::clamp(value, 0.0, 1.0) : old);
                break;
        }
    }
    return wanted;
}

}  // namespace

std::vector<std::vector<int>> neighbours(const Scene& scene, NodeHandle cluster) {
    SkinSurface surface;
    if (!SkinSurface::read(scene, cluster, surface))
        return {};
    std::vector<std::vector<int>> around(surface.points().size());
    const MeshTopology& faces = surface.topology();
    std::size_t at = 0;
    for (std::int32_t count : faces.faceCounts) {
        for (std::int32_t i = 0; i < count; ++i) {
            const int a = faces.faceVertices[at + static_cast<std::size_t>(i)];
            const int b = faces.faceVertices[at + static_cast<std::size_t>((i + 1) % count)];
            around[static_cast<std::size_t>(a)].push_back(b);
            around[static_cast<std::size_t>(b)].push_back(a);
        }
        at += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    for (std::vector<int>& list : around) {
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
    }
    return around;
}

Status paintWeights(Scene& scene, NodeHandle cluster, std::int32_t influence, PaintMode mode,
                    double value, const std::vector<int>& points, PaintResult& result) {
    const WeightList* weights = weightsOf(scene, cluster);
    if (!weights || influence < 0)
        return Status::failure("there is no skin or no such influence to paint");
    Job job;
    job.influence = influence;
    job.locked = influenceLocks(scene, cluster);
    job.locked.resize(std::max(job.locked.size(), static_cast<std::size_t>(influence) + 1), false);
    if (job.locked[static_cast<std::size_t>(influence)])
        return Status::failure("the weights of this influence are locked");
    job.fixed = job.locked;
    job.fixed[static_cast<std::size_t>(influence)] = true;
    job.normalize = scene.number(scene.findPlug(cluster, "normalizeWeights")) == 1.0;
    std::vector<int> there;
    for (int point : points)
        if (point >= 0 && static_cast<std::size_t>(point) < weights->size())
            there.push_back(point);
    const std::vector<std::vector<int>> around =
        mode == PaintMode::Smooth ? neighbours(scene, cluster) : std::vector<std::vector<int>>();
    const std::vector<double> wanted = wantedWeights(*weights, job, mode, value, there, around);
    result = {};
    changeWeights(scene, cluster, [&](WeightList& list) {
        for (std::size_t i = 0; i < there.size(); ++i)
            ++(setWeight(list, static_cast<std::size_t>(there[i]), wanted[i], job)
                   ? result.changed
                   : result.refused);
    });
    return Status::ok();
}

}  // namespace torvel
