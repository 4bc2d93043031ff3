// What the constraint commands do: create, edit, query.
#include <algorithm>

#include "edit/constraint/edit.h"
#include "commands/constraint/flags.h"
#include "script/session.h"

namespace torvel {
namespace {

using Targets = std::vector<ConstraintTarget>;

const ConstraintKind& kindOf(const CommandCall& call) {
    return *constraintKind(call.name());
}

Value nameOf(const Scene& scene, NodeHandle node) {
    return Value::strings({scene.names().shortest(node)});
}

// --- create ---

Status checkEnds(const CommandCall& call, const std::vector<NodeHandle>& nodes) {
    const Scene& scene = call.scene();
    if (nodes.size() < 2)
        return call.fail("Needs at least one target and the object to constrain.");
    const NodeHandle object = nodes.back();
    for (NodeHandle node : nodes)
        if (!isTransform(scene, node) || node == scene.world())
            return Status::failure("Targets must be of type transform.");
    if (std::find(nodes.begin(), nodes.end() - 1, object) != nodes.end() - 1)
        return call.fail("'" + scene.node(object)->name + "' cannot be constrained to itself.");
    if (kindOf(call).holdsPole && !scene.isType(object, "ikHandle"))
        return call.fail("'" + scene.node(object)->name + "' is not an IK handle.");
    return Status::ok();
}

// Targets that the constraint has already get the weight, the others are added.
Status addTargets(const CommandCall& call, NodeHandle constraint,
                  const std::vector<NodeHandle>& nodes) {
    Scene& scene = call.scene();
    const double weight = call.number("weight", 1.0);
    for (std::size_t i = 0; i + 1 < nodes.size(); ++i) {
        const Targets present = constraintTargets(scene, constraint);
        const auto known =
            std::find_if(present.begin(), present.end(),
                         [&](const ConstraintTarget& t) { return t.node == nodes[i]; });
        if (known != present.end())
            scene.setNumber(known->weight, weight);
        else if (Status done = addConstraintTarget(scene, kindOf(call), constraint, nodes[i],
                                                   weight, call.has("maintainOffset"));
                 !done)
            return done;
    }
    return Status::ok();
}

Status build(const CommandCall& call, const std::vector<NodeHandle>& nodes, NodeHandle& made) {
    Scene& scene = call.scene();
    const ConstraintKind& kind = kindOf(call);
    const Channels present = channelsOf(scene, nodes.back());
    Status done = makeConstraint(scene, kind, nodes.back(), call.text("name"), made);
    if (done)
        done = applyConstraintFlags(call, made);
    if (done)
        done = addTargets(call, made, nodes);
    if (!done)
        return done;
    if (call.has("maintainOffset"))
        maintainOffset(scene, kind, made, present,
                       {});  // those of parent constraints stand already
    storeRest(scene, kind, made);
    return driveObject(scene, kind, made, skippedAxes(call));
}

Status createConstraint(const CommandCall& call, const std::vector<NodeHandle>& nodes,
                        Value& result) {
    Scene& scene = call.scene();
    NodeHandle made;
    if (const Status done = build(call, nodes, made); !done) {
        if (!made.isNull())
            scene.deleteNodes({made});
        scene.log().write(Channel::Error, done.text());
        return Status::failure("Could not add constraint or connections.");
    }
    scene.selection().replace(made);
    result = nameOf(scene, made);
    return Status::ok();
}

Targets namedTargets(const Scene& scene, NodeHandle constraint,
                     const std::vector<NodeHandle>& nodes) {
    Targets all = constraintTargets(scene, constraint);
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&](const ConstraintTarget& t) {
                                 return std::find(nodes.begin(), nodes.end(), t.node) ==
                                        nodes.end();
                             }),
              all.end());
    return all;
}

Status extendConstraint(const CommandCall& call, NodeHandle constraint,
                        const std::vector<NodeHandle>& nodes, Value& result) {
    Scene& scene = call.scene();
    const Channels present = channelsOf(scene, nodes.back());
    Status done = applyConstraintFlags(call, constraint);
    if (done)
        done = addTargets(call, constraint, nodes);
    if (!done)
        return call.fail(done.text());
    if (call.has("maintainOffset"))
        maintainOffset(scene, kindOf(call), constraint, present,
                       namedTargets(scene, constraint, nodes));
    scene.selection().replace(constraint);
    result = nameOf(scene, constraint);
    return Status::ok();
}

Status create(const CommandCall& call, Value& result) {
    std::vector<NodeHandle> nodes;
    Status found = call.objectsOrSelection(nodes);
    if (found)
        found = checkEnds(call, nodes);
    if (!found)
        return found;
    const NodeHandle existing = findConstraint(call.scene(), kindOf(call), nodes.back());
    return existing.isNull() ? createConstraint(call, nodes, result)
                             : extendConstraint(call, existing, nodes, result);
}

// --- edit ---

// The call names targets, then the constraint or the object it drives.
struct Named {
    NodeHandle constraint;  ///< null when the object has none
    Targets targets;        ///< those named, or all when none is
    bool all = true;
};

Status named(const CommandCall& call, Named& out) {
    const Scene& scene = call.scene();
    std::vector<NodeHandle> nodes;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    if (nodes.empty())
        return call.fail("Needs the name of a constraint or of a constrained object.");
    const NodeHandle last = nodes.back();
    nodes.pop_back();
    out.constraint =
        scene.isType(last, kindOf(call).type) ? last : findConstraint(scene, kindOf(call), last);
    if (out.constraint.isNull())
        return Status::ok();
    out.all = nodes.empty();
    out.targets = out.all ? constraintTargets(scene, out.constraint)
                          : namedTargets(scene, out.constraint, nodes);
    for (NodeHandle node : nodes)
        if (std::none_of(out.targets.begin(), out.targets.end(),
                         [&](const ConstraintTarget& t) { return t.node == node; }))
            return call.fail("'" + scene.node(node)->name + "' is not a target of '" +
                             scene.node(out.constraint)->name + "'.");
    return Status::ok();
}

// Without its last target a constraint goes; the object keeps its values.
bool removeTargets(Scene& scene, const Named& what) {
    for (const ConstraintTarget& target : what.targets)
        removeConstraintTarget(scene, what.constraint, target.element);
    if (!constraintTargets(scene, what.constraint).empty())
        return false;
    scene.deleteNodes({what.constraint});
    return true;
}

Status editConstraint(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    Named what;
    if (Status found = named(call, what); !found)
        return found;
    if (what.constraint.isNull())
        return call.fail("The object has no " + call.name() + ".");
    if (call.has("remove")) {
        if (what.all)
            return call.fail("Needs the targets to remove.");
        if (!removeTargets(scene, what))
            result = nameOf(scene, what.constraint);
        return Status::ok();
    }
    if (call.has("weight"))
        for (const ConstraintTarget& target : what.targets)
            scene.setNumber(target.weight, call.number("weight"));
    if (Status done = applyConstraintFlags(call, what.constraint); !done)
        return call.fail(done.text());
    if (call.has("maintainOffset"))
        maintainOffset(scene, kindOf(call), what.constraint,
                       channelsOf(scene, constrainedObject(scene, what.constraint)), what.targets);
    if (call.has("name"))
        scene.rename(what.constraint, call.text("name"));
    if (givesSkips(call)) {
        releaseObject(scene, kindOf(call), what.constraint);
        if (Status done = driveObject(scene, kindOf(call), what.constraint, skippedAxes(call));
            !done)
            return call.fail(done.text());
    }
    result = nameOf(scene, what.constraint);
    return Status::ok();
}

// --- query ---

Value weightsOf(const Scene& scene, const Targets& targets) {
    std::vector<double> weights;
    for (const ConstraintTarget& target : targets)
        weights.push_back(scene.number(target.weight));
    return weights.size() == 1 ? Value(weights.front()) : Value::doubles(weights);
}

Value textsOf(const Scene& scene, const Targets& targets, bool aliases) {
    std::vector<std::string> names;
    for (const ConstraintTarget& target : targets)
        names.push_back(aliases ? scene.info(target.weight).longName
                                : scene.names().shortest(target.node));
    return names.empty() ? Value() : Value::strings(names);
}

Status query(const CommandCall& call, Value& result) {
    const Scene& scene = call.scene();
    Named what;
    if (Status found = named(call, what); !found || what.constraint.isNull())
        return found;
    if (call.has("targetList") || call.has("weightAliasList"))
        result = textsOf(scene, what.targets, call.has("weightAliasList"));
    else if (call.has("weight"))
        result = weightsOf(scene, what.targets);
    else if (!queryConstraintFlags(call, what.constraint, result))
        result = Value(scene.names().shortest(what.constraint));
    return Status::ok();
}

}  // namespace

Status constrain(const CommandCall& call, Value& result) {
    if (Status usable = refuseUncovered(call); !usable)
        return usable;
    if (call.isQuery())
        return query(call, result);
    return call.isEdit() ? editConstraint(call, result) : create(call, result);
}

}  // namespace torvel
