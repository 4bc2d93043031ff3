#include "edit/constraint/edit.h"

#include <algorithm>

#include "edit/constraint/offset.h"
#include "edit/placing.h"

namespace torvel {
namespace {

Plug targetChild(const Scene& scene, NodeHandle constraint, std::int32_t element,
                 std::string_view longName) {
    const Plug plug = scene.element(scene.findPlug(constraint, "target"), element);
    for (std::size_t i = 0; i < scene.info(plug).children.size(); ++i) {
        const Plug child = scene.child(plug, static_cast<int>(i));
        if (scene.info(child).longName == longName)
            return child;
    }
    return {};
}

NodeHandle driverOf(const Scene& scene, NodeHandle constraint, std::int32_t element) {
    const Plug plug = scene.element(scene.findPlug(constraint, "target"), element);
    for (std::size_t i = 0; i < scene.info(plug).children.size(); ++i) {
        const NodeHandle source = scene.source(scene.child(plug, static_cast<int>(i))).node;
        if (isTransform(scene, source) && source != constraint)
            return source;
    }
    return {};
}

Plug weightOf(const Scene& scene, NodeHandle constraint, std::int32_t element) {
    const Plug input = targetChild(scene, constraint, element, "targetWeight");
    const Plug source = scene.source(input);
    return source.node == constraint ? source : input;
}

std::string withoutNamespace(const std::string& name) {
    return name.substr(name.rfind(':') + 1);
}

Status link(Scene& scene, NodeHandle from, const char* attr, const Plug& target) {
    const Plug source = scene.findPlug(from, attr);
    return source.isNull() || target.isNull() ? Status::ok() : scene.connect(source, target);
}

Status linkAll(Scene& scene, const std::vector<ConstraintLink>& links, NodeHandle other,
               NodeHandle constraint, std::int32_t element) {
    const bool joint = isJoint(scene, other);
    for (const ConstraintLink& row : links) {
        if (row.jointsOnly && !joint)
            continue;
        const Plug own = element < 0 ? scene.findPlug(constraint, row.own)
                                     : targetChild(scene, constraint, element, row.own);
        if (Status done = link(scene, other, row.other, own); !done)
            return done;
    }
    return Status::ok();
}

// The chain's first joint stands for the handle: from it the pole vector is measured.
Status linkStartJoint(Scene& scene, NodeHandle handle, NodeHandle constraint) {
    const NodeHandle joint = scene.source(scene.findPlug(handle, "startJoint")).node;
    if (!isTransform(scene, joint))
        return Status::ok();
    Status done = link(scene, joint, "parentMatrix[0]", scene.findPlug(constraint, "pivotSpace"));
    return done ? link(scene, joint, "translate",
                       scene.findPlug(constraint, "constraintRotatePivot"))
                : done;
}

// Only the node state and the weights are keyable on a constraint.
void setStates(Scene& scene, NodeHandle constraint) {
    scene.setKeyable(scene.findPlug(constraint, "nodeState"), true);
    for (const char* attr : {"visibility", "tx", "ty", "tz", "rx", "ry", "rz", "sx", "sy", "sz"})
        scene.setKeyable(scene.findPlug(constraint, attr), false);
    scene.setNumber(scene.findPlug(constraint, "enableRestPosition"), 1.0);
}

void setIfThere(Scene& scene, NodeHandle node, const char* attr, const V3d& value) {
    if (const Plug plug = scene.findPlug(node, attr); !plug.isNull())
        scene.setVec3(plug, value);
}

const char* restOf(std::string_view output) {
    if (output == "constraintTranslate")
        return "restTranslate";
    return output == "constraintRotate" ? "restRotate" : "restScale";
}

void setRest(Scene& scene, const ConstraintKind& kind, NodeHandle object, NodeHandle constraint) {
    const Channels c = channelsOf(scene, object);
    setIfThere(scene, constraint, "restTranslate",
               kind.holdsPole ? scene.vec3(scene.findPlug(object, "poleVector")) : c.translate);
    setIfThere(scene, constraint, "restRotate", c.rotate);
    setIfThere(scene, constraint, "lastTargetRotate", c.rotate);
    setIfThere(scene, constraint, "restScale", c.scale);
}

// "-dcb 0 -ci true" tells readers of the file that the attribute goes with its connection.
AttrInfo weightInfo(const ConstraintKind& kind, const std::string& longName,
                    const std::string& shortName) {
    AttrInfo info;
    info.longName = longName;
    info.shortName = shortName;
    info.defaultValue = 1.0;
    info.flags = kDynamic | kDeleteElement;
    const std::string names = "-sn \"" + shortName + "\" -ln \"" + longName + "\" -dv 1";
    if (kind.keyableWeights) {
        info.flags |= kKeyable;
        info.minimum = 0.0;
        info.addAttrText = "-dcb 0 -ci true -k true " + names + " -min 0 -at \"double\"";
    } else {
        info.addAttrText = "-dcb 0 -ci true " + names + " -at \"double\"";
    }
    return info;
}

Status addWeight(Scene& scene, const ConstraintKind& kind, NodeHandle constraint,
                 std::int32_t element, const std::string& target, double weight) {
    const std::string number = std::to_string(element);
    AttrIndex made = kNoAttr;
    const AttrInfo info = weightInfo(kind, withoutNamespace(target) + "W" + number, "w" + number);
    if (Status done = scene.addAttribute(constraint, info, kNoAttr, made); !done)
        return done;
    const Plug plug(constraint, made);
    scene.setNumber(plug, weight);
    scene.setKeyable(plug, true);
    return scene.connect(plug, targetChild(scene, constraint, element, "targetWeight"));
}

}  // namespace

std::vector<ConstraintTarget> constraintTargets(const Scene& scene, NodeHandle constraint) {
    std::vector<ConstraintTarget> targets;
    const Plug array = scene.findPlug(constraint, "target");
    if (array.isNull())
        return targets;
    for (const std::int32_t element : scene.elementIndices(array))
        if (const NodeHandle driver = driverOf(scene, constraint, element); !driver.isNull())
            targets.push_back({element, driver, weightOf(scene, constraint, element)});
    return targets;
}

bool constraintFeeds(const Scene& scene, NodeHandle from, NodeHandle to) {
    for (const Scene::Connection& c : scene.outgoing(from)) {
        if (c.target.node == to)
            return true;
        if (scene.isType(c.target.node, "pairBlend"))
            for (const Scene::Connection& next : scene.outgoing(c.target.node))
                if (next.target.node == to)
                    return true;
    }
    return false;
}

NodeHandle findConstraint(const Scene& scene, const ConstraintKind& kind, NodeHandle object) {
    const Node* node = scene.node(object);
    for (std::size_t i = 0; node && i < node->children.size(); ++i)
        if (scene.isType(node->children[i], kind.type) &&
            constraintFeeds(scene, node->children[i], object))
            return node->children[i];
    return {};
}

NodeHandle constrainedObject(const Scene& scene, NodeHandle constraint) {
    const NodeHandle parent = parentOf(scene, constraint);
    return parent == scene.world() ? NodeHandle() : parent;
}

Status makeConstraint(Scene& scene, const ConstraintKind& kind, NodeHandle object,
                      const std::string& wantedName, NodeHandle& made) {
    const std::string stem = scene.node(object)->name + "_" + kind.type;
    const std::string name = wantedName.empty() ? scene.names().numbered(stem) : wantedName;
    if (Status done = scene.createNode(kind.type, name, object, made); !done)
        return done;
    setStates(scene, made);
    setRest(scene, kind, object, made);
    Status done = linkAll(scene, kind.objectLinks, object, made, -1);
    if (done && kind.holdsPole)
        done = linkStartJoint(scene, object, made);
    return done;
}

Status addConstraintTarget(Scene& scene, const ConstraintKind& kind, NodeHandle constraint,
                           NodeHandle target, double weight, bool keepPlace) {
    const std::int32_t element = scene.nextAvailable(scene.findPlug(constraint, "target"));
    const V3d zero(0.0);
    ParentOffset offset{zero, zero};
    if (keepPlace && kind.offset == OffsetOf::Target)
        offset = parentOffset(scene, channelsOf(scene, constrainedObject(scene, constraint)),
                              constrainedObject(scene, constraint), target);
    if (Status done = linkAll(scene, kind.targetLinks, target, constraint, element); !done)
        return done;
    if (offset.translate != zero)
        scene.setVec3(targetChild(scene, constraint, element, "targetOffsetTranslate"),
                      offset.translate);
    if (offset.rotate != zero)
        scene.setVec3(targetChild(scene, constraint, element, "targetOffsetRotate"), offset.rotate);
    return addWeight(scene, kind, constraint, element, scene.node(target)->name, weight);
}

void storeRest(Scene& scene, const ConstraintKind& kind, NodeHandle constraint) {
    for (const ConstraintLink& row : kind.outputs)
        setIfThere(scene, constraint, restOf(row.own),
                   scene.vec3(scene.findPlug(constraint, row.own)));
}

void maintainOffset(Scene& scene, const ConstraintKind& kind, NodeHandle constraint,
                    const Channels& present, const std::vector<ConstraintTarget>& targets) {
    if (kind.offset != OffsetOf::Target) {
        bakeOffset(scene, kind, constraint, present);
        return;
    }
    for (const ConstraintTarget& target : targets) {
        const ParentOffset offset =
            parentOffset(scene, present, constrainedObject(scene, constraint), target.node);
        scene.setVec3(targetChild(scene, constraint, target.element, "targetOffsetTranslate"),
                      offset.translate);
        scene.setVec3(targetChild(scene, constraint, target.element, "targetOffsetRotate"),
                      offset.rotate);
    }
}

void removeConstraintTarget(Scene& scene, NodeHandle constraint, std::int32_t element) {
    const Plug weight = weightOf(scene, constraint, element);
    scene.removeElement(scene.element(scene.findPlug(constraint, "target"), element));
    if (scene.info(weight).is(kDynamic))
        scene.deleteAttribute(constraint, weight.attr);
}

}  // namespace torvel
