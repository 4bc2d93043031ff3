#include <algorithm>

#include "edit/placing.h"
#include "script/session.h"
#include "commands/skin/binding.h"
#include "commands/skin/commands.h"
#include "nodes/deform/skin_weights.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

void addOnce(std::vector<NodeHandle>& list, NodeHandle node) {
    if (std::find(list.begin(), list.end(), node) == list.end())
        list.push_back(node);
}

// Joints of a hierarchy, parent first, children in child order. Other nodes are walked through.
void addSkeleton(const Scene& scene, NodeHandle top, bool withTransforms,
                 std::vector<NodeHandle>& out) {
    std::vector<NodeHandle> stack{top};
    while (!stack.empty()) {
        const NodeHandle node = stack.back();
        stack.pop_back();
        if (isJoint(scene, node) || (withTransforms && isTransform(scene, node)))
            addOnce(out, node);
        const std::vector<NodeHandle>& children = scene.node(node)->children;
        for (auto it = children.rbegin(); it != children.rend(); ++it)
            if (isTransform(scene, *it))
                stack.push_back(*it);
    }
}

NodeHandle skeletonRoot(const Scene& scene, NodeHandle joint) {
    while (isJoint(scene, parentOf(scene, joint)))
        joint = parentOf(scene, joint);
    return joint;
}

struct BindTargets {
    NodeHandle shape;
    std::vector<NodeHandle> influences;
};

Status sortTargets(const CommandCall& call, BindTargets& out) {
    const Scene& scene = call.scene();
    std::vector<NodeHandle> given;
    if (const Status status = call.objectsOrSelection(given); !status)
        return status;
    const bool listedOnly = call.has("toSelectedBones");
    for (NodeHandle node : given) {
        const NodeHandle shape = isJoint(scene, node) ? NodeHandle() : bindableShape(scene, node);
        if (!shape.isNull() && !out.shape.isNull() && shape != out.shape)
            return call.fail("Only one geometry can be bound at a time.");
        if (!shape.isNull())
            out.shape = shape;
        else if (!isTransform(scene, node))
            return call.fail("'" + scene.names().shortest(node) +
                             "' can neither be bound nor be an influence");
        else if (listedOnly || !isJoint(scene, node))
            addOnce(out.influences, node);
        else
            addSkeleton(scene, skeletonRoot(scene, node), call.has("toSkeletonAndTransforms"),
                        out.influences);
    }
    if (out.shape.isNull())
        return call.fail("No geometry to bind was given.");
    return Status::ok();
}

Status readOptions(const CommandCall& call, BindOptions& options) {
    options.name = call.text("name");
    options.maxInfluences = call.integer("maximumInfluences", options.maxInfluences);
    options.obeyMax = call.flag("obeyMaxInfluences");
    options.dropoff = call.number("dropoffRate", options.dropoff);
    options.bindMethod = call.integer("bindMethod");
    options.skinMethod = call.integer("skinMethod");
    options.normalize = call.integer("normalizeWeights", options.normalize);
    options.multi = call.has("multi");
    options.setsSkinMethod = call.has("skinMethod");
    options.setsNormalize = call.has("normalizeWeights");
    if (options.bindMethod == 2 || options.bindMethod == 3)
        return call.fail(std::string("bindMethod ") +
                         (options.bindMethod == 2 ? "2 (heat map)" : "3 (geodesic voxel)") +
                         " is not supported; use 0 or 1");
    if (options.bindMethod < 0 || options.bindMethod > 3 || options.skinMethod < 0 ||
        options.skinMethod > 2 || options.normalize < 0 || options.normalize > 2)
        return call.fail("One of bindMethod, skinMethod and normalizeWeights is out of range.");
    return options.maxInfluences >= 1 ? Status::ok()
                                      : call.fail("The flag 'maximumInfluences' needs 1 or more.");
}

Status create(const CommandCall& call, Value& result) {
    BindTargets targets;
    BindOptions options;
    if (const Status status = sortTargets(call, targets); !status)
        return status;
    if (const Status status = readOptions(call, options); !status)
        return status;
    NodeHandle cluster;
    if (const Status status =
            bindSkin(call.scene(), targets.shape, targets.influences, options, cluster);
        !status)
        return call.fail(status.text());
    result = Value::strings({call.scene().names().shortest(cluster)});
    return Status::ok();
}

// The clusters that the objects of an edit or query name: themselves, or those of the given
// geometry.
Status namedClusters(const CommandCall& call, std::vector<NodeHandle>& clusters) {
    const Scene& scene = call.scene();
    std::vector<NodeHandle> given;
    if (const Status status = call.objectsOrSelection(given); !status)
        return status;
    for (NodeHandle node : given) {
        if (scene.isType(node, "skinCluster"))
            addOnce(clusters, node);
        else if (const NodeHandle shape = bindableShape(scene, node); !shape.isNull())
            for (NodeHandle cluster : findSkinClusters(scene, shape))
                addOnce(clusters, cluster);
    }
    return clusters.empty() ? call.fail("No skinCluster was found on the given objects.")
                            : Status::ok();
}

Status editInfluences(const CommandCall& call, NodeHandle cluster) {
    AddInfluenceOptions options;
    options.hasWeight = call.has("weight");
    options.weight = call.number("weight");
    options.lock = call.flag("lockWeights");
    options.dropoff = call.number("dropoffRate", 4.0);
    for (const FlagUse* use : call.uses("addInfluence")) {
        NodeHandle node;
        if (const Status status = call.resolve(use->values[0].string(), node); !status)
            return status;
        if (const Status status = addInfluence(call.scene(), cluster, node, options); !status)
            return call.fail(status.text());
    }
    for (const FlagUse* use : call.uses("removeInfluence")) {
        NodeHandle node;
        if (const Status status = call.resolve(use->values[0].string(), node); !status)
            return status;
        if (const Status status = removeInfluence(call.scene(), cluster, node); !status)
            return call.fail(status.text());
    }
    return Status::ok();
}

struct StoredFlag {
    const char* flag;
    const char* attr;
};
constexpr StoredFlag kStoredFlags[] = {{"maximumInfluences", "maxInfluences"},
                                       {"obeyMaxInfluences", "maintainMaxInfluences"},
                                       {"skinMethod", "skinningMethod"},
                                       {"normalizeWeights", "normalizeWeights"},
                                       {"weightDistribution", "weightDistribution"},
                                       {"bindMethod", "bindMethod"}};

void removeUnused(Scene& scene, NodeHandle cluster) {
    const WeightList& weights = *weightsOf(scene, cluster);
    std::vector<bool> used;
    for (std::size_t v = 0; v < weights.size(); ++v)
        for (std::size_t i = 0; i < weights.count(v); ++i) {
            const auto at = static_cast<std::size_t>(weights.begin(v)[i].influence);
            used.resize(std::max(used.size(), at + 1), false);
            used[at] = true;
        }
    for (const Influence& influence : influencesOf(scene, cluster))
        if (static_cast<std::size_t>(influence.logical) >= used.size() ||
            !used[static_cast<std::size_t>(influence.logical)])
            ignore(removeInfluence(scene, cluster, influence.node));
}

Status editCluster(const CommandCall& call, NodeHandle cluster) {
    Scene& scene = call.scene();
    if (call.has("recacheBindMatrices"))
        return call.fail(
            "recacheBindMatrices is not supported: bind matrices are read when the skin is "
            "evaluated");
    for (const StoredFlag& row : kStoredFlags)
        if (const FlagUse* use = call.use(row.flag))
            scene.setNumber(scene.findPlug(cluster, row.attr), use->values[0].number());
    if (const FlagUse* use = call.use("dropoffRate"); use && !call.has("addInfluence"))
        for (const Influence& influence : influencesOf(scene, cluster))
            scene.setNumber(scene.element(scene.findPlug(cluster, "dropoff"), influence.logical),
                            use->values[0].number());
    if (const Status status = editInfluences(call, cluster); !status)
        return status;
    if (call.flag("removeUnusedInfluence"))
        removeUnused(scene, cluster);
    if (call.has("unbindKeepHistory"))
        unbindKeepHistory(scene, cluster);
    return call.has("unbind") ? unbindSkin(scene, cluster) : Status::ok();
}

Status editCluster(const CommandCall& call) {
    std::vector<NodeHandle> clusters;
    if (const Status status = namedClusters(call, clusters); !status)
        return status;
    for (NodeHandle cluster : clusters)
        if (const Status status = editCluster(call, cluster); !status)
            return status;
    return Status::ok();
}

Value namesOf(const Scene& scene, const std::vector<NodeHandle>& nodes) {
    std::vector<std::string> names;
    for (NodeHandle node : nodes)
        names.push_back(scene.names().shortest(node));
    return names.empty() ? Value() : Value::strings(names);
}

std::vector<NodeHandle> influenceNodes(const Scene& scene, NodeHandle cluster, bool weightedOnly) {
    std::vector<NodeHandle> out;
    std::vector<bool> used;
    const WeightList* weights = weightsOf(scene, cluster);
    for (std::size_t v = 0; weightedOnly && v < weights->size(); ++v)
        for (std::size_t i = 0; i < weights->count(v); ++i) {
            const auto at = static_cast<std::size_t>(weights->begin(v)[i].influence);
            used.resize(std::max(used.size(), at + 1), false);
            used[at] = true;
        }
    for (const Influence& influence : influencesOf(scene, cluster)) {
        const auto at = static_cast<std::size_t>(influence.logical);
        if (!weightedOnly || (at < used.size() && used[at]))
            out.push_back(influence.node);
    }
    return out;
}

Status query(const CommandCall& call, Value& result) {
    std::vector<NodeHandle> clusters;
    if (const Status status = namedClusters(call, clusters); !status)
        return status;
    const Scene& scene = call.scene();
    const NodeHandle cluster = clusters.front();
    if (call.has("influence") || call.has("weightedInfluence"))
        result = namesOf(scene, influenceNodes(scene, cluster, call.has("weightedInfluence")));
    if (call.has("geometry"))
        result = namesOf(scene, outputShapes(scene, cluster));
    for (const StoredFlag& row : kStoredFlags)
        if (call.has(row.flag)) {
            const Plug plug = scene.findPlug(cluster, row.attr);
            const double number = scene.number(plug);
            result = scene.info(plug).type == AttrType::Bool ? Value(number != 0.0)
                                                             : Value(static_cast<int>(number));
        }
    if (call.has("dropoffRate")) {
        const Plug first = scene.elementAt(scene.findPlug(cluster, "dropoff"), 0);
        result = Value(first.isNull() ? 4.0 : scene.number(first));
    }
    return Status::ok();
}

}  // namespace

Status runSkinCluster(const CommandCall& call, Value& result) {
    if (call.isQuery())
        return query(call, result);
    return call.isEdit() ? editCluster(call) : create(call, result);
}

}  // namespace torvel
