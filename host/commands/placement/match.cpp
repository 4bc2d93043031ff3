#include "script/session.h"
#include "edit/world_placing.h"

namespace torvel {
namespace {

const FlagRow kMatchFlags[] = {
    {"pivots", "piv"},   {"position", "pos"}, {"positionX", "px"}, {"positionY", "py"},
    {"positionZ", "pz"}, {"rotateX", "rx"},   {"rotateY", "ry"},   {"rotateZ", "rz"},
    {"rotation", "rot"}, {"scale", "scl"},    {"scaleX", "sx"},    {"scaleY", "sy"},
    {"scaleZ", "sz"},
};

/// Which axes of one kind of channel are asked for.
struct Axes {
    bool on[3] = {false, false, false};
    bool any() const { return on[0] || on[1] || on[2]; }
};

Axes axesOf(const CommandCall& call, const char* all, const char* stem, bool byDefault) {
    Axes axes;
    for (int i = 0; i < 3; ++i)
        axes.on[i] =
            byDefault || call.has(all) || call.has(std::string(stem) + static_cast<char>('X' + i));
    return axes;
}

V3d mixed(const Axes& axes, const V3d& wanted, const V3d& kept) {
    return {axes.on[0] ? wanted.x : kept.x, axes.on[1] ? wanted.y : kept.y,
            axes.on[2] ? wanted.z : kept.z};
}

V3d scaleUnderParent(const Scene& scene, NodeHandle node, NodeHandle target) {
    const V3d wanted = decompose(worldMatrix(scene, target)).scale;
    const V3d inherited = decompose(parentWorldMatrix(scene, node)).scale;
    V3d scale(1.0);
    for (int i = 0; i < 3; ++i)
        scale[i] = inherited[i] != 0.0 ? wanted[i] / inherited[i] : wanted[i];
    return scale;
}

Status match(const CommandCall& call, NodeHandle node, NodeHandle target) {
    Scene& scene = call.scene();
    const bool all = call.m_flags.empty();
    const Axes position = axesOf(call, "position", "position", all),
               rotation = axesOf(call, "rotation", "rotate", all),
               scale = axesOf(call, "scale", "scale", all);
    Channels c = channelsOf(scene, node);
    const V3d pivotNow = worldRotatePivot(scene, node), rotateNow = c.rotate, scaleNow = c.scale;
    if (call.has("pivots")) {
        const M44d toLocal = inverseOf(worldMatrix(scene, node));
        moveRotatePivot(c, worldRotatePivot(scene, target) * toLocal);
        moveScalePivot(c, worldScalePivot(scene, target) * toLocal);
    }
    if (scale.any())
        c.scale = mixed(scale, scaleUnderParent(scene, node, target), scaleNow);
    if (rotation.any()) {
        setWorldRotation(scene, node, worldRotation(scene, target), c);
        c.rotate = mixed(rotation, c.rotate, rotateNow);
    }
    if (position.any())
        setWorldPivotPosition(scene, node,
                              mixed(position, worldRotatePivot(scene, target), pivotNow), c);
    writeFreeChannels(scene, node, c);
    return Status::ok();
}

Status matchTransform(const CommandCall& call, Value&) {
    std::vector<NodeHandle> nodes;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    if (nodes.size() < 2)
        return call.fail("Needs objects and the one to match, last.");
    for (NodeHandle node : nodes)
        if (!isTransform(call.scene(), node))
            return call.fail("'" + call.scene().node(node)->name + "' has no transformation.");
    for (std::size_t i = 0; i + 1 < nodes.size(); ++i)
        if (Status done = match(call, nodes[i], nodes.back()); !done)
            return done;
    return Status::ok();
}

const Command kMatchCommands[] = {{"matchTransform", kMatchFlags, countOf(kMatchFlags),
                                   matchTransform, "Puts objects where another one is."}};

}  // namespace

CommandTable matchCommands() {
    return {kMatchCommands, std::size(kMatchCommands)};
}

}  // namespace torvel
