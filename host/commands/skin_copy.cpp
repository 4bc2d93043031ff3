#include <tbb/parallel_for.h>

#include <algorithm>

#include "commands/components.h"
#include "commands/session.h"
#include "commands/skin_binding.h"
#include "commands/skin_commands.h"
#include "nodes/mesh.h"
#include "nodes/skin_weights.h"
#include "nodes/transform.h"

namespace torvel {
namespace {

// The shape of a skin in world space with the weights of its points.
struct SkinSurface
{
    std::vector<V3d> points;
    std::shared_ptr<const MeshTopology> topology;
    const WeightList* weights = nullptr;
};

// A place on a surface as a mix of its points.
struct Mix
{
    std::size_t point[3] = {0, 0, 0};
    double share[3] = {1.0, 0.0, 0.0};
};

V3d closestOnTriangle(const V3d& p, const V3d& a, const V3d& b, const V3d& c, double (&share)[3])
{
    const V3d ab = b - a, ac = c - a, ap = p - a;
    const auto set = [&](double u, double v) {
        share[0] = 1.0 - u - v;
        share[1] = u;
        share[2] = v;
        return a + ab * u + ac * v;
    };
    const double d1 = ab ^ ap, d2 = ac ^ ap;
    if (d1 <= 0.0 && d2 <= 0.0)
        return set(0, 0);
    const V3d bp = p - b;
    const double d3 = ab ^ bp, d4 = ac ^ bp;
    if (d3 >= 0.0 && d4 <= d3)
        return set(1, 0);
    if (const double vc = d1 * d4 - d3 * d2; vc <= 0.0 && d1 >= 0.0 && d3 <= 0.0)
        return set(d1 / (d1 - d3), 0);
    const V3d cp = p - c;
    const double d5 = ab ^ cp, d6 = ac ^ cp;
    if (d6 >= 0.0 && d5 <= d6)
        return set(0, 1);
    if (const double vb = d5 * d2 - d1 * d6; vb <= 0.0 && d2 >= 0.0 && d6 <= 0.0)
        return set(0, d2 / (d2 - d6));
    if (const double va = d3 * d6 - d5 * d4; va <= 0.0 && d4 - d3 >= 0.0 && d5 - d6 >= 0.0) {
        const double t = (d4 - d3) / ((d4 - d3) + (d5 - d6));
        return set(1.0 - t, t);
    }
    const double va = d3 * d6 - d5 * d4, vb = d5 * d2 - d1 * d6, vc = d1 * d4 - d3 * d2;
    const double sum = va + vb + vc;
    return sum > 0.0 ? set(vb / sum, vc / sum) : set(0, 0);
}

Mix nearestPoint(const SkinSurface& source, const V3d& p)
{
    Mix best;
    double least = 1e300;
    for (std::size_t i = 0; i < source.points.size(); ++i)
        if (const double d = (source.points[i] - p).length2(); d < least) {
            least = d;
            best.point[0] = i;
        }
    return best;
}

Mix nearestPlace(const SkinSurface& source, const V3d& p)
{
    Mix best;
    double least = 1e300;
    std::size_t at = 0;
    for (std::int32_t count : source.topology->faceCounts) {
        const std::int32_t* face = source.topology->faceVertices.data() + at;
        for (std::int32_t i = 1; i + 1 < count; ++i) {
            Mix mix;
            const std::int32_t corners[] = {face[0], face[i], face[i + 1]};
            for (int c = 0; c < 3; ++c)
                mix.point[c] = static_cast<std::size_t>(corners[c]);
            const V3d q = closestOnTriangle(p, source.points[mix.point[0]], source.points[mix.point[1]],
                                            source.points[mix.point[2]], mix.share);
            if (const double d = (q - p).length2(); d < least) {
                least = d;
                best = mix;
            }
        }
        at += static_cast<std::size_t>(count);
    }
    return least < 1e300 ? best : nearestPoint(source, p);
}

enum class Match { ByOrder, ByName, ByClosest };

// Destination index for each source index; -1: unmatched.
std::vector<std::int32_t> matchInfluences(const Scene& scene, NodeHandle source, NodeHandle target, Match match)
{
    const std::vector<Influence> from = influencesOf(scene, source);
    const std::vector<Influence> to = influencesOf(scene, target);
    std::vector<std::int32_t> out;
    const auto put = [&](std::int32_t at, std::int32_t value) {
        out.resize(std::max(out.size(), static_cast<std::size_t>(at) + 1), -1);
        out[static_cast<std::size_t>(at)] = value;
    };
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::int32_t found = -1;
        double least = 1e300;
        for (std::size_t k = 0; k < to.size(); ++k) {
            const double d = (worldPosition(scene, from[i].node) - worldPosition(scene, to[k].node)).length();
            const bool hit = match == Match::ByOrder  ? i == k
                             : match == Match::ByName ? scene.node(from[i].node)->name == scene.node(to[k].node)->name
                                                      : d < least;
            if (hit && (match == Match::ByClosest || found < 0)) {
                found = to[k].logical;
                least = d;
            }
        }
        put(from[i].logical, found);
    }
    return out;
}

Status readSurface(const CommandCall& call, NodeHandle cluster, SkinSurface& out)
{
    const Scene& scene = call.scene();
    const std::vector<NodeHandle> shapes = outputShapes(scene, cluster);
    out.weights = weightsOf(scene, cluster);
    if (!out.weights || shapes.empty() || !scene.isType(shapes.front(), "mesh"))
        return call.fail("'" + scene.names().shortest(cluster) + "' is no skin of a mesh");
    out.points = meshWorldPoints(scene, shapes.front());
    out.topology = meshPoints(scene, shapes.front())->topology;
    for (std::int32_t vertex : out.topology->faceVertices)
        if (vertex < 0 || static_cast<std::size_t>(vertex) >= out.points.size())
            return call.fail("the faces of the source are damaged");
    return Status::ok();
}

Status readSkins(const CommandCall& call, NodeHandle (&skins)[2])
{
    const Scene& scene = call.scene();
    const char* flags[] = {"sourceSkin", "destinationSkin"};
    for (int i = 0; i < 2; ++i) {
        if (call.has(flags[i])) {
            if (const Status status = call.resolve(call.text(flags[i]), skins[i]); !status)
                return status;
            continue;
        }
        std::vector<NodeHandle> nodes;
        if (const Status status = call.objectsOrSelection(nodes); !status)
            return status;
        const auto at = static_cast<std::size_t>(i);
        const std::vector<NodeHandle> found =
            at < nodes.size() ? findSkinClusters(scene, bindableShape(scene, nodes[at])) : std::vector<NodeHandle>();
        if (found.empty())
            return call.fail("a source and a destination skin are needed");
        skins[i] = found.front();
    }
    return Status::ok();
}

Status readMatch(const CommandCall& call, Match& match)
{
    const std::vector<const FlagUse*> uses = call.uses("influenceAssociation");
    const std::string kind = uses.empty() ? "closestJoint" : uses.front()->values[0].string();
    if (kind == "oneToOne")
        match = Match::ByOrder;
    else if (kind == "name")
        match = Match::ByName;
    else if (kind == "closestJoint")
        match = Match::ByClosest;
    else
        return call.fail("influenceAssociation '" + kind + "' is not supported; use oneToOne, name or closestJoint");
    return Status::ok();
}

std::vector<SkinWeight> mixedWeights(const SkinSurface& source, const Mix& mix, const std::vector<std::int32_t>& columns,
                                     bool normalize)
{
    std::vector<SkinWeight> out;
    double sum = 0.0;
    for (int c = 0; c < 3; ++c)
        for (std::size_t i = 0; mix.share[c] > 0.0 && i < source.weights->count(mix.point[c]); ++i) {
            const SkinWeight w = source.weights->begin(mix.point[c])[i];
            const auto from = static_cast<std::size_t>(w.influence);
            const std::int32_t to = from < columns.size() ? columns[from] : -1;
            if (to < 0)
                continue;
            const auto there = std::find_if(out.begin(), out.end(), [&](const SkinWeight& o) { return o.influence == to; });
            (there == out.end() ? *out.insert(out.end(), {to, 0.0}) : *there).weight += w.weight * mix.share[c];
            sum += w.weight * mix.share[c];
        }
    for (SkinWeight& w : out)
        w.weight = normalize && sum > 0.0 ? w.weight / sum : w.weight;
    return out;
}

}  // namespace

Status runCopySkinWeights(const CommandCall& call, Value&)
{
    Scene& scene = call.scene();
    NodeHandle skins[2];
    SkinSurface source, target;
    Match match = Match::ByClosest;
    const std::string association = call.text("surfaceAssociation", "closestComponent");
    if (association != "closestPoint" && association != "closestComponent")
        return call.fail("surfaceAssociation '" + association + "' is not supported; use closestPoint or closestComponent");
    Status status = readSkins(call, skins);
    status = status ? readMatch(call, match) : status;
    status = status ? readSurface(call, skins[0], source) : status;
    status = status ? readSurface(call, skins[1], target) : status;
    if (!status)
        return status;
    const std::vector<std::int32_t> columns = matchInfluences(scene, skins[0], skins[1], match);
    const bool normalize = scene.number(scene.findPlug(skins[1], "normalizeWeights")) != 0.0;
    std::vector<std::vector<SkinWeight>> lists(target.points.size());
    tbb::parallel_for(std::size_t(0), lists.size(), [&](std::size_t v) {
        const Mix mix = association == "closestPoint" ? nearestPlace(source, target.points[v])
                                                      : nearestPoint(source, target.points[v]);
        lists[v] = mixedWeights(source, mix, columns, normalize);
    });
    changeWeights(scene, skins[1], [&](WeightList& weights) {
        for (std::size_t v = 0; v < lists.size(); ++v)
            weights.assign(v, std::move(lists[v]));
    });
    return Status::ok();
}

}  // namespace torvel
