#include <algorithm>

#include "commands/skeleton/joint_orient.h"
#include "script/session.h"
#include "edit/world_placing.h"

namespace torvel {
namespace {

const FlagRow kJointFlags[] = {
    {"absolute", "a"},
    {"assumePreferredAngles", "apa"},
    {"children", "ch"},
    {"name", "n", "s"},
    {"orientJoint", "oj", "s"},
    {"orientation", "o", "aaa"},
    {"position", "p", "lll"},
    {"radius", "rad", "l"},
    {"relative", "r"},
    {"rotationOrder", "roo", "s"},
    {"scale", "s", "ddd"},
    {"scaleCompensate", "sc", "b"},
    {"scaleOrientation", "so", "aaa"},
    {"secondaryAxisOrient", "sao", "s"},
    {"setPreferredAngles", "spa"},
    {"zeroScaleOrient", "zso"},
};

V3d vectorOf(const CommandCall& call, const char* flag) {
    return {call.number(flag, 0.0, 0), call.number(flag, 0.0, 1), call.number(flag, 0.0, 2)};
}

// Flags that are plain values of the joint, in creation and in edit mode.
Status setPlain(const CommandCall& call, NodeHandle joint) {
    Scene& scene = call.scene();
    const TransformAttrs& t = transformAttrs();
    const JointAttrs& j = jointAttrs();
    if (call.has("rotationOrder")) {
        const int order = rotateOrderOf(call.text("rotationOrder"));
        if (order < 0)
            return call.fail("'" + call.text("rotationOrder") + "' is no rotate order.");
        scene.setNumber(Plug(joint, t.rotateOrder), order);
    }
    if (call.has("orientation"))
        scene.setVec3(Plug(joint, j.jointOrient), vectorOf(call, "orientation") * kDegToRad);
    if (call.has("scaleOrientation"))
        scene.setVec3(Plug(joint, t.rotateAxis), vectorOf(call, "scaleOrientation") * kDegToRad);
    if (call.has("scale"))
        scene.setVec3(Plug(joint, t.scale), vectorOf(call, "scale"));
    if (call.has("radius"))
        scene.setNumber(Plug(joint, j.radius), std::max(0.0, call.number("radius")));
    if (call.has("scaleCompensate"))
        scene.setNumber(Plug(joint, j.segmentScaleCompensate), call.flag("scaleCompensate"));
    if (call.has("position")) {
        const V3d position = vectorOf(call, "position");
        const V3d local =
            call.has("relative") ? position : position * inverseOf(parentWorldMatrix(scene, joint));
        scene.setVec3(Plug(joint, t.translate), local);
    }
    if (call.has("setPreferredAngles"))
        scene.setVec3(Plug(joint, j.preferredAngle), scene.vec3(Plug(joint, t.rotate)));
    if (call.has("assumePreferredAngles"))
        scene.setVec3(Plug(joint, t.rotate), scene.vec3(Plug(joint, j.preferredAngle)));
    return Status::ok();
}

// What setPlain would write must be free, so that an edit happens as a whole or not at all.
Status checkPlain(const CommandCall& call, NodeHandle joint) {
    struct Use {
        const char* flag;
        AttrIndex attr;
    };
    const TransformAttrs& t = transformAttrs();
    const JointAttrs& j = jointAttrs();
    const Use uses[] = {{"rotationOrder", t.rotateOrder},
                        {"orientation", j.jointOrient},
                        {"scaleOrientation", t.rotateAxis},
                        {"scale", t.scale},
                        {"radius", j.radius},
                        {"scaleCompensate", j.segmentScaleCompensate},
                        {"position", t.translate},
                        {"setPreferredAngles", j.preferredAngle},
                        {"assumePreferredAngles", t.rotate}};
    for (const Use& use : uses)
        if (call.has(use.flag) && !call.scene().isSettable(Plug(joint, use.attr)))
            return call.fail("The attribute '" + call.scene().plugName(Plug(joint, use.attr)) +
                             "' is locked or connected and cannot be modified.");
    return Status::ok();
}

// --- create --------------------------------------------------------------------------------------

NodeHandle selectedTransform(const Scene& scene) {
    NodeHandle found;
    for (NodeHandle node : scene.selection().nodes())
        if (isTransform(scene, node))
            found = node;
    return found;
}

Status createJoint(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    if (!call.args().empty())
        return call.fail("Objects are named in edit and query mode only.");
    for (const char* flag : {"orientJoint", "secondaryAxisOrient", "zeroScaleOrient", "children"})
        if (call.has(flag))
            return call.fail(std::string("The flag '") + flag + "' needs edit mode.");
    const NodeHandle parent = selectedTransform(scene);
    NodeHandle made;
    if (Status done = scene.createNode("joint", call.text("name"), parent, made); !done)
        return done;
    linkInverseScale(scene, parent, made);
    if (Status done = setPlain(call, made); !done) {
        scene.deleteNodes({made});
        return done;
    }
    scene.selection().replace(made);
    result = Value(scene.names().shortest(made));
    return Status::ok();
}

// --- edit ----------------------------------------------------------------------------------------

// Joints below the given ones follow them, parents first.
std::vector<NodeHandle> withChildJoints(const Scene& scene, const std::vector<NodeHandle>& tops) {
    std::vector<NodeHandle> all;
    for (NodeHandle top : tops) {
        std::vector<NodeHandle> stack{top};
        while (!stack.empty()) {
            const NodeHandle at = stack.back();
            stack.pop_back();
            if (isJoint(scene, at) && std::find(all.begin(), all.end(), at) == all.end())
                all.push_back(at);
            const std::vector<NodeHandle>& children = scene.node(at)->children;
            stack.insert(stack.end(), children.rbegin(), children.rend());
        }
    }
    return all;
}

Status readOrient(const CommandCall& call, OrientOptions& options) {
    const std::string text = call.text("orientJoint");
    if (call.has("orientJoint") && text != "none" && !parseOrient(text, options.letters))
        return call.fail("'" + text + "' is no joint orientation.");
    const std::string secondary = call.text("secondaryAxisOrient", "none");
    if (!parseSecondary(secondary, options.worldAxis, options.worldSign))
        return call.fail("'" + secondary + "' is no secondary axis.");
    options.zeroScaleOrient = call.has("zeroScaleOrient");
    return Status::ok();
}

Status orient(const CommandCall& call, NodeHandle joint, const OrientOptions& options) {
    if (call.has("orientation") || call.has("scaleOrientation"))
        return Status::ok();  // given orientations win over computed ones
    if (call.text("orientJoint") == "none")
        return clearJointOrient(call.scene(), joint);
    if (call.has("orientJoint"))
        return orientJoint(call.scene(), joint, options);
    return call.has("zeroScaleOrient") ? clearRotateAxis(call.scene(), joint) : Status::ok();
}

Status editJoints(const CommandCall& call, std::vector<NodeHandle> joints) {
    OrientOptions options;
    if (Status read = readOrient(call, options); !read)
        return read;
    if (call.has("children"))
        joints = withChildJoints(call.scene(), joints);
    for (NodeHandle joint : joints)
        if (Status free = checkPlain(call, joint); !free)
            return free;
    for (NodeHandle joint : joints) {
        Status done = setPlain(call, joint);
        if (done)
            done = orient(call, joint, options);
        if (!done)
            return done.text().find("joint:") == 0 ? done : call.fail(done.text());
        if (call.has("name"))
            call.scene().rename(joint, call.text("name"));
    }
    return Status::ok();
}

// --- query ---------------------------------------------------------------------------------------

Value listOf(const V3d& v) {
    return Value::doubles({v.x, v.y, v.z});
}

Status queryJoint(const CommandCall& call, NodeHandle joint, Value& result) {
    const Scene& scene = call.scene();
    const Channels c = channelsOf(scene, joint);
    if (call.has("position"))
        result = listOf(call.has("relative") ? c.translate : worldTranslation(scene, joint));
    else if (call.has("orientation"))
        result = listOf(c.jointOrient * kRadToDeg);
    else if (call.has("scaleOrientation"))
        result = listOf(c.rotateAxis * kRadToDeg);
    else if (call.has("scale"))
        result = listOf(c.scale);
    else if (call.has("radius"))
        result = Value::doubles({scene.number(Plug(joint, jointAttrs().radius))});
    else if (call.has("rotationOrder"))
        result = Value(rotateOrderName(c.rotateOrder));
    else if (call.has("scaleCompensate"))
        result = Value(scene.number(Plug(joint, jointAttrs().segmentScaleCompensate)) != 0.0);
    else if (call.has("name"))
        result = Value(scene.names().shortest(joint));
    else
        return call.fail("Needs a flag that tells what to query.");
    return Status::ok();
}

Status joint(const CommandCall& call, Value& result) {
    if (call.isCreate())
        return createJoint(call, result);
    std::vector<NodeHandle> nodes, joints;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    for (NodeHandle node : nodes) {
        if (isJoint(call.scene(), node))
            joints.push_back(node);
        else if (!call.args().empty())
            return call.fail("'" + call.scene().node(node)->name + "' is not a joint.");
    }
    if (joints.empty())
        return call.fail("No joint was named or is selected.");
    return call.isQuery() ? queryJoint(call, joints.front(), result) : editJoints(call, joints);
}

const Command kJointCommands[] = {
    {"joint", kJointFlags, countOf(kJointFlags), joint, "Makes, edits and queries joints."}};

}  // namespace

CommandTable jointCommands() {
    return {kJointCommands, std::size(kJointCommands)};
}

}  // namespace torvel
