#include <algorithm>

#include "edit/placing.h"
#include "script/session.h"
#include "commands/skin/commands.h"
#include "commands/skin/pose.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

void addHierarchy(const Scene& scene, NodeHandle top, std::vector<NodeHandle>& out) {
    out.push_back(top);
    for (NodeHandle child : scene.node(top)->children)
        if (isTransform(scene, child))
            addHierarchy(scene, child, out);
}

// The pose that -name or the objects stand for.
Status findPose(const CommandCall& call, NodeHandle& pose) {
    const Scene& scene = call.scene();
    if (call.use("name") && !call.use("name")->values.empty()) {
        if (const Status status = call.resolve(call.text("name"), pose); !status)
            return status;
        return scene.isType(pose, "dagPose")
                   ? Status::ok()
                   : call.fail("'" + call.text("name") + "' is no dagPose");
    }
    std::vector<NodeHandle> nodes;
    if (const Status status = call.objectsOrSelection(nodes); !status)
        return status;
    for (NodeHandle node : nodes) {
        if (scene.isType(node, "dagPose")) {
            pose = node;
            return Status::ok();
        }
        const std::vector<NodeHandle> poses = posesOf(scene, node, call.has("bindPose"));
        if (!poses.empty()) {
            pose = poses.front();
            return Status::ok();
        }
    }
    return call.fail("No pose was found for the given objects.");
}

Status save(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    std::vector<NodeHandle> given;
    std::vector<NodeHandle> members;
    if (const Status status = call.objectsOrSelection(given); !status)
        return status;
    for (NodeHandle node : given) {
        if (!isTransform(scene, node))
            return call.fail("'" + scene.names().shortest(node) + "' is no transform");
        if (call.has("selection"))
            members.push_back(node);
        else
            addHierarchy(scene, node, members);
    }
    if (members.empty())
        return call.fail("There is nothing to save a pose of.");
    NodeHandle pose;
    if (const Status made =
            createPose(scene, members, call.has("bindPose"), call.text("name"), pose);
        !made)
        return made;
    result = Value(scene.names().shortest(pose));
    return Status::ok();
}

Status restore(const CommandCall& call) {
    NodeHandle pose;
    if (const Status status = findPose(call, pose); !status)
        return status;
    const Status status = restorePose(call.scene(), pose, call.has("global"));
    return status ? status : call.fail(status.text());
}

// Works on each object that is a member of a pose; the others do not matter as long as there is
// one.
Status reset(const CommandCall& call) {
    Scene& scene = call.scene();
    std::vector<NodeHandle> nodes;
    if (const Status status = call.objectsOrSelection(nodes); !status)
        return status;
    bool any = false;
    for (NodeHandle node : nodes)
        for (NodeHandle pose : posesOf(scene, node, call.has("bindPose")))
            if (call.text("name").empty() || scene.names().shortest(pose) == call.text("name"))
                any = resetMember(scene, pose, node) || any;
    return any ? Status::ok() : call.fail("None of the objects is a member of a pose.");
}

Status add(const CommandCall& call) {
    NodeHandle pose;
    std::vector<NodeHandle> nodes;
    if (call.text("name").empty())
        return call.fail("The flag 'addToPose' needs the name of a pose.");
    if (const Status status = findPose(call, pose); !status)
        return status;
    if (const Status status = call.objectsOrSelection(nodes); !status)
        return status;
    nodes.erase(std::remove_if(nodes.begin(), nodes.end(),
                               [&](NodeHandle node) { return !isTransform(call.scene(), node); }),
                nodes.end());
    addToPose(call.scene(), pose, nodes);
    return Status::ok();
}

Value listOf(const Scene& scene, const std::vector<NodeHandle>& nodes) {
    std::vector<std::string> names;
    for (NodeHandle node : nodes)
        names.push_back(scene.names().shortest(node));
    return names.empty() ? Value() : Value::strings(names);
}

Status query(const CommandCall& call, Value& result) {
    const Scene& scene = call.scene();
    if (call.has("members") || call.has("atPose")) {
        NodeHandle pose;
        if (const Status status = findPose(call, pose); !status)
            return status;
        std::vector<NodeHandle> nodes;
        for (const PoseMember& member : poseMembers(scene, pose)) {
            const auto held = scene.dataAs<MatrixData>(
                scene.element(scene.findPlug(pose, "worldMatrix"), member.logical));
            const bool away =
                held && !nearlyEqual(held->matrix, worldMatrix(scene, member.node), 1e-6);
            if (call.has("members") || away)
                nodes.push_back(member.node);
        }
        result = listOf(scene, nodes);
        return Status::ok();
    }
    std::vector<NodeHandle> given;
    std::vector<NodeHandle> poses;
    if (const Status status = call.objectsOrSelection(given); !status)
        return status;
    for (NodeHandle node : given)
        for (NodeHandle pose : posesOf(scene, node, call.has("bindPose")))
            if (std::find(poses.begin(), poses.end(), pose) == poses.end())
                poses.push_back(pose);
    result = listOf(scene, poses);
    return Status::ok();
}

}  // namespace

Status runDagPose(const CommandCall& call, Value& result) {
    if (call.isQuery())
        return query(call, result);
    if (call.has("save"))
        return save(call, result);
    if (call.has("restore"))
        return restore(call);
    if (call.has("reset"))
        return reset(call);
    if (call.has("addToPose"))
        return add(call);
    return call.fail("Needs one of the flags save, restore, reset and addToPose.");
}

}  // namespace torvel
