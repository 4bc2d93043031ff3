#include <algorithm>
#include <cmath>

#include "edit/components.h"
#include "script/session.h"
#include "commands/skin/binding.h"
#include "commands/skin/commands.h"
#include "nodes/deform/skin_weights.h"

namespace torvel {
namespace {

struct Target {
    NodeHandle cluster;
    std::vector<int> points;
};

// Points named by the further arguments or the selection; a whole shape means all of its points.
Status readPoints(const CommandCall& call, std::size_t pointCount, std::vector<int>& points) {
    const Scene& scene = call.scene();
    std::vector<SelectionItem> items;
    const std::vector<std::string> texts = call.texts();
    for (std::size_t i = 1; i < texts.size(); ++i) {
        if (componentItems(scene, texts[i], items))
            continue;
        NodeHandle node;
        if (const Status status = call.resolve(texts[i], node); !status)
            return status;
        items.push_back({node, {}, {}, 0});
    }
    if (texts.size() == 1)
        items = scene.selection().items();
    for (const SelectionItem& item : items) {
        PointSet set;
        if (item.component.empty())
            set = allPoints(scene, bindableShape(scene, item.node));
        else
            pointsOfItem(scene, item, set);
        points.insert(points.end(), set.points.begin(), set.points.end());
    }
    std::sort(points.begin(), points.end());
    points.erase(std::unique(points.begin(), points.end()), points.end());
    while (!points.empty() && static_cast<std::size_t>(points.back()) >= pointCount)
        points.pop_back();
    return points.empty() ? call.fail("No points of the skin were given.") : Status::ok();
}

Status readTarget(const CommandCall& call, Target& out) {
    const std::vector<std::string> texts = call.texts();
    if (texts.empty())
        return call.fail("Needs the name of a skinCluster.");
    if (const Status status = call.resolve(texts[0], out.cluster); !status)
        return status;
    const WeightList* weights = weightsOf(call.scene(), out.cluster);
    if (!weights)
        return call.fail("'" + texts[0] + "' is no skinCluster");
    return readPoints(call, weights->size(), out.points);
}

Status readInfluence(const CommandCall& call, const Target& target, const std::string& text,
                     std::int32_t& logical) {
    NodeHandle node;
    if (const Status status = call.resolve(text, node); !status)
        return status;
    logical = influenceIndex(call.scene(), target.cluster, node);
    return logical >= 0 ? Status::ok()
                        : call.fail("'" + text + "' is not an influence of the skin");
}

// --- query ---------------------------------------------------------------------------------------

Value oneOrList(const std::vector<double>& values) {
    return values.size() == 1 ? Value(values[0]) : Value::doubles(values);
}

Value usedInfluences(const Scene& scene, const Target& target, double least) {
    const WeightList& weights = *weightsOf(scene, target.cluster);
    std::vector<std::string> names;
    for (const Influence& influence : influencesOf(scene, target.cluster))
        if (std::any_of(target.points.begin(), target.points.end(), [&](int point) {
                return weights.weight(static_cast<std::size_t>(point), influence.logical) > least;
            }))
            names.push_back(scene.names().shortest(influence.node));
    return names.empty() ? Value() : Value::strings(names);
}

Status ask(const CommandCall& call, const Target& target, Value& result) {
    const Scene& scene = call.scene();
    const WeightList& weights = *weightsOf(scene, target.cluster);
    const FlagUse* transform = call.use("transform");
    const bool named = transform && !transform->values.empty();
    if (!call.has("value") && !named) {
        result = usedInfluences(scene, target, call.number("ignoreBelow", 0.0));
        return Status::ok();
    }
    std::vector<std::int32_t> columns;
    if (named) {
        columns.resize(1);
        if (const Status status =
                readInfluence(call, target, transform->values[0].string(), columns[0]);
            !status)
            return status;
    } else {
        for (const Influence& influence : influencesOf(scene, target.cluster))
            columns.push_back(influence.logical);
    }
    std::vector<double> values;
    for (int point : target.points)
        for (std::int32_t column : columns)
            values.push_back(weights.weight(static_cast<std::size_t>(point), column));
    result = named ? oneOrList(values) : Value::doubles(values);
    return Status::ok();
}

// --- edit ----------------------------------------------------------------------------------------

struct Wanted {
    std::int32_t logical;
    double value;
};

struct Change {
    std::vector<Wanted> wanted;
    std::vector<bool> locked;
    bool normalize = true;
    bool relative = false;
    bool zeroOthers = false;
    double prune = 0.0;
    std::size_t refused = 0;  ///< points whose other weights are all held
};

bool isOn(const std::vector<bool>& flags, std::int32_t at) {
    return static_cast<std::size_t>(at) < flags.size() && flags[static_cast<std::size_t>(at)];
}

double heldWeight(const WeightList& weights, std::size_t vertex, const std::vector<bool>& held) {
    double sum = 0.0;
    for (std::size_t i = 0; i < weights.count(vertex); ++i)
        if (isOn(held, weights.begin(vertex)[i].influence))
            sum += weights.begin(vertex)[i].weight;
    return sum;
}

void changeVertex(WeightList& weights, std::size_t vertex, Change& change) {
    std::vector<SkinWeight> before(weights.begin(vertex),
                                   weights.begin(vertex) + weights.count(vertex));
    std::vector<bool> fixed = change.locked;
    if (change.zeroOthers)
        for (const SkinWeight& w : before)
            if (!isOn(change.locked, w.influence))
                weights.set(vertex, w.influence, 0.0);
    double room =
        change.normalize ? std::max(0.0, 1.0 - heldWeight(weights, vertex, change.locked)) : 1e300;
    for (const Wanted& wanted : change.wanted) {
        const double old = change.relative ? weights.weight(vertex, wanted.logical) : 0.0;
        const double value =
            change.normalize ? std::clamp(old + wanted.value, 0.0, room) : old + wanted.value;
        weights.set(vertex, wanted.logical, value);
        room -= value;
        fixed.resize(std::max(fixed.size(), static_cast<std::size_t>(wanted.logical) + 1), false);
        fixed[static_cast<std::size_t>(wanted.logical)] = true;
    }
    for (std::size_t i = weights.count(vertex); change.prune > 0.0 && i-- > 0;)
        if (const SkinWeight w = weights.begin(vertex)[i];
            w.weight < change.prune && !isOn(change.locked, w.influence))
            weights.set(vertex, w.influence, 0.0);
    if (!change.normalize || normalizeVertex(weights, vertex, fixed))
        return;
    const bool full = std::abs(weights.sum(vertex) - 1.0) < 1e-12;
    if (full || normalizeVertex(weights, vertex, change.locked))
        return;
    weights.assign(vertex, std::move(before));
    ++change.refused;
}

Status readChange(const CommandCall& call, const Target& target, Change& change) {
    const Scene& scene = call.scene();
    change.locked = influenceLocks(scene, target.cluster);
    change.normalize = call.flag(
        "normalize", scene.number(scene.findPlug(target.cluster, "normalizeWeights")) == 1.0);
    change.relative = call.flag("relative");
    change.zeroOthers = call.flag("zeroRemainingInfluences");
    change.prune = call.number("pruneWeights", 0.0);
    for (const FlagUse* use : call.uses("transformValue")) {
        Wanted wanted{0, use->values[1].number()};
        if (const Status status =
                readInfluence(call, target, use->values[0].string(), wanted.logical);
            !status)
            return status;
        if (isOn(change.locked, wanted.logical))
            return call.fail("The weights of '" + use->values[0].string() + "' are locked.");
        change.wanted.push_back(wanted);
    }
    return Status::ok();
}

}  // namespace

Status runSkinPercent(const CommandCall& call, Value& result) {
    Target target;
    if (const Status status = readTarget(call, target); !status)
        return status;
    if (call.isQuery())
        return ask(call, target, result);
    if (call.has("transform") || call.has("value"))
        return call.fail(
            "The flags transform and value are for queries; transformValue sets weights.");
    Change change;
    if (const Status status = readChange(call, target, change); !status)
        return status;
    changeWeights(call.scene(), target.cluster, [&](WeightList& weights) {
        for (int point : target.points)
            changeVertex(weights, static_cast<std::size_t>(point), change);
    });
    return change.refused == 0
               ? Status::ok()
               : call.fail("The weights of " + std::to_string(change.refused) +
                           " points stay: all other influences are locked or have no weight.");
}

}  // namespace torvel
