#include "commands/skin/copy.h"

#include <tbb/parallel_for.h>

#include <algorithm>

#include "commands/skin/binding.h"
#include "commands/skin/commands.h"
#include "commands/skin/surface.h"

namespace torvel {

namespace {

std::vector<SkinWeight> mixedWeights(const SkinSurface& source, const SurfaceMix& mix,
                                     const std::vector<std::int32_t>& columns, bool normalize) {
    std::vector<SkinWeight> out;
    double sum = 0.0;
    for (int c = 0; c < 3; ++c)
        for (std::size_t i = 0; mix.share[c] > 0.0 && i < source.weights().count(mix.point[c]);
             ++i) {
            const SkinWeight w = source.weights().begin(mix.point[c])[i];
            const auto from = static_cast<std::size_t>(w.influence);
            const std::int32_t to = from < columns.size() ? columns[from] : -1;
            if (to < 0)
                continue;
            const auto there = std::find_if(out.begin(), out.end(),
                                            [&](const SkinWeight& o) { return o.influence == to; });
            (there == out.end() ? *out.insert(out.end(), {to, 0.0}) : *there).weight +=
                w.weight * mix.share[c];
            sum += w.weight * mix.share[c];
        }
    for (SkinWeight& w : out)
        w.weight = normalize && sum > 0.0 ? w.weight / sum : w.weight;
    return out;
}

std::vector<std::int32_t> columnsOf(const std::vector<InfluencePair>& pairs) {
    std::vector<std::int32_t> columns;
    for (const InfluencePair& pair : pairs) {
        columns.resize(std::max(columns.size(), static_cast<std::size_t>(pair.from) + 1), -1);
        columns[static_cast<std::size_t>(pair.from)] = pair.to;
    }
    return columns;
}

}  // namespace

Status copyWeights(Scene& scene, NodeHandle source, NodeHandle target, const CopyOptions& options) {
    SkinSurface from, to;
    Status status = SkinSurface::read(scene, source, from);
    status = status ? SkinSurface::read(scene, target, to) : status;
    if (!status)
        return status;
    const std::vector<std::int32_t> columns =
        columnsOf(matchInfluences(scene, source, target, options));
    const bool normalize =
        options.normalize || scene.number(scene.findPlug(target, "normalizeWeights")) != 0.0;
    from.prepare(options.closestPoint);
    std::vector<std::vector<SkinWeight>> lists(to.points().size());
    tbb::parallel_for(std::size_t(0), lists.size(), [&](std::size_t v) {
        if (mirrorSide(to.points()[v], options) <= 0)
            return;
        const V3d at = mirrored(to.points()[v], options.plane);
        lists[v] =
            mixedWeights(from, options.closestPoint ? from.nearestPlace(at) : from.nearestPoint(at),
                         columns, normalize);
    });
    changeWeights(scene, target, [&](WeightList& weights) {
        for (std::size_t v = 0; v < lists.size(); ++v)
            if (mirrorSide(to.points()[v], options) > 0)
                weights.assign(v, std::move(lists[v]));
    });
    return Status::ok();
}

namespace {

Status readSkins(const CommandCall& call, NodeHandle (&skins)[2]) {
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
        // A skin is mirrored onto itself when it is the only one.
        const auto at = nodes.size() == 1 && !call.has("noMirror") ? std::size_t(0)
                                                                   : static_cast<std::size_t>(i);
        const std::vector<NodeHandle> found =
            at < nodes.size() ? findSkinClusters(scene, bindableShape(scene, nodes[at]))
                              : std::vector<NodeHandle>();
        if (found.empty())
            return call.fail("A source and a destination skin are needed.");
        skins[i] = found.front();
    }
    return Status::ok();
}

Status readMatches(const CommandCall& call, std::vector<InfluenceMatch>& matches) {
    struct Name {
        const char* text;
        InfluenceMatch match;
    };
    constexpr Name kNames[] = {{"oneToOne", InfluenceMatch::ByOrder},
                               {"name", InfluenceMatch::ByName},
                               {"closestJoint", InfluenceMatch::ByClosest}};
    const std::vector<const FlagUse*> uses = call.uses("influenceAssociation");
    if (!uses.empty())
        matches.clear();
    for (const FlagUse* use : uses) {
        const std::string kind = use->values[0].string();
        const auto known = std::find_if(std::begin(kNames), std::end(kNames),
                                        [&](const Name& n) { return kind == n.text; });
        if (known == std::end(kNames))
            return call.fail("influenceAssociation '" + kind +
                             "' is not supported; use oneToOne, name or closestJoint.");
        matches.push_back(known->match);
    }
    return Status::ok();
}

// Without noMirror the weights are mirrored, at the plane XY unless another is named.
Status readPlane(const CommandCall& call, CopyOptions& options) {
    const std::string plane = call.text("mirrorMode", "XY");
    options.inverse = call.flag("mirrorInverse");
    if (call.flag("noMirror"))
        return Status::ok();
    if (plane == "YZ")
        options.plane = MirrorPlane::YZ;
    else if (plane == "XZ")
        options.plane = MirrorPlane::XZ;
    else if (plane == "XY")
        options.plane = MirrorPlane::XY;
    else
        return call.fail("mirrorMode '" + plane + "' is no plane; use YZ, XZ or XY.");
    return Status::ok();
}

}  // namespace

Status runCopySkinWeights(const CommandCall& call, Value&) {
    NodeHandle skins[2];
    CopyOptions options;
    const std::string association = call.text("surfaceAssociation", "closestComponent");
    if (association != "closestPoint" && association != "closestComponent")
        return call.fail("surfaceAssociation '" + association +
                         "' is not supported; use closestPoint or closestComponent.");
    options.closestPoint = association == "closestPoint";
    options.normalize = call.flag("normalize");
    Status status = readSkins(call, skins);
    status = status ? readMatches(call, options.matches) : status;
    status = status ? readPlane(call, options) : status;
    if (!status)
        return status;
    status = copyWeights(call.scene(), skins[0], skins[1], options);
    return status ? status : call.fail(status.text());
}

// Weights of other deformers are kept with them as a file has them and are not worked on.
Status runCopyDeformerWeights(const CommandCall& call, Value&) {
    return call.fail("Weights of deformers other than skinCluster cannot be copied.");
}

}  // namespace torvel
