#include <algorithm>
#include <cmath>

#include "edit/components.h"
#include "edit/placing.h"
#include "script/session.h"

namespace torvel {
namespace {

const FlagRow kFreezeFlags[] = {
    {"apply", "a", "b"},     {"jointOrient", "jo"},
    {"normal", "n", "i"},    {"preserveNormals", "pn", "b"},
    {"rotate", "r", "b"},    {"scale", "s", "b"},
    {"translate", "t", "b"},
};

struct Parts {
    bool translate = false, rotate = false, scale = false, orient = false, apply = false;
};

Parts partsOf(const CommandCall& call) {
    Parts parts;
    parts.apply = call.flag("apply");
    parts.translate = call.flag("translate");
    parts.rotate = call.flag("rotate");
    parts.scale = call.flag("scale");
    parts.orient = call.has("jointOrient");
    if (!call.has("translate") && !call.has("rotate") && !call.has("scale") && !parts.orient)
        parts.translate = parts.rotate = parts.scale = true;
    return parts;
}

// Constraints and the parts of IK are placed by what drives them.
bool takesPart(const Scene& scene, NodeHandle node) {
    const NodeType& type = *scene.node(node)->type;
    return isTransform(scene, node) && !type.is(kConstraintType) &&
           !type.derivesFrom("ikEffector") && !type.derivesFrom("ikHandle");
}

/// One transform of the swept tree: its channels as they will be, and what its children and points
/// have to take over.
struct Step {
    NodeHandle node;
    Channels channels;
    M44d pushed;  ///< old local matrix = pushed * new local matrix
    ChannelPlan plan;
};

struct PointStep {
    PointSet set;
    std::vector<V3d> points;
};

class Freeze {
  public:
    Freeze(const CommandCall& call, const Parts& parts)
        : m_call(call), m_scene(call.scene()), m_parts(parts) {}

    Status plan(NodeHandle top) {
        struct Entry {
            NodeHandle node;
            M44d pushed;
            V3d parentScale;
        };
        std::vector<Entry> stack{{top, M44d(), V3d(0.0)}};
        while (!stack.empty()) {
            const Entry at = stack.back();
            stack.pop_back();
            Step step;
            step.node = at.node;
            if (Status done = planNode(at.pushed, at.parentScale, step); !done)
                return done;
            const std::vector<NodeHandle>& children = m_scene.node(at.node)->children;
            for (std::size_t i = children.size(); i-- > 0;) {
                if (takesPart(m_scene, children[i]))
                    stack.push_back({children[i], step.pushed, step.channels.scale});
                else if (Status done = planShape(children[i], step.pushed); !done)
                    return done;
            }
            m_steps.push_back(std::move(step));
        }
        return Status::ok();
    }

    Status apply() {
        for (const Step& step : m_steps)
            step.plan.apply(m_scene);
        for (const auto& [locator, pushed] : m_locators)
            moveLocator(locator, pushed);
        for (const PointStep& step : m_points)
            if (Status done = movePoints(m_scene, step.set, step.points); !done)
                return done;
        return Status::ok();
    }

  private:
    Status refuse(const std::string& why) const {
        return m_call.fail("Freeze Transform was not applied because " + why);
    }

    Status checkVector(NodeHandle node, AttrIndex compound, bool used) const {
        for (int i = 0; i < 3 && used; ++i) {
            const Plug plug = m_scene.child(Plug(node, compound), i);
            if (m_scene.isLocked(plug))
                return refuse(m_scene.plugName(plug, false) + " is locked");
            if (!m_scene.effectiveSource(plug).isNull())
                return refuse(m_scene.plugName(plug, false) + " has an incoming connection");
        }
        return Status::ok();
    }

    Status check(NodeHandle node, bool joint) const {
        Status done = checkVector(node, transformAttrs().translate, m_parts.translate && !joint);
        if (done)
            done = checkVector(node, transformAttrs().rotate, m_parts.rotate);
        if (done)
            done = checkVector(node, transformAttrs().scale, m_parts.scale);
        return done ? checkSkin(node) : done;
    }

    Status checkSkin(NodeHandle node) const {
        for (const Plug& target :
             m_scene.targets(m_scene.element(Plug(node, dagAttrs().worldMatrix), 0)))
            if (m_parts.apply && m_scene.isType(target.node, "skinCluster") &&
                m_scene.number(m_scene.findPlug(target.node, "nodeState")) == 0.0)
                return refuse(m_scene.names().shortest(node) + " is an influence of the skin " +
                              m_scene.node(target.node)->name);
        return Status::ok();
    }

    Status planNode(const M44d& pushed, const V3d& parentScale, Step& step) {
        const bool joint = isJoint(m_scene, step.node);
        if (Status done = check(step.node, joint); !done)
            return done;
        const Channels before = channelsOf(m_scene, step.node);
        const M44d old = localMatrixOf(before) * (m_parts.apply ? pushed : M44d());
        step.channels = before;
        if (joint && m_parts.apply && before.inverseScale != V3d(1.0) && parentScale != V3d(0.0))
            step.channels.inverseScale = parentScale;
        // Nothing came from above: the channels hold `old` as they are, however they were
        // decomposed.
        if (!nearlyEqual(localMatrixOf(step.channels), old, 1e-12) &&
            !channelsForLocal(step.channels, old))
            channelsForLocalByRotate(step.channels, old);
        freezeChannels(joint, step.channels);
        step.pushed = m_parts.apply ? old * inverseOf(localMatrixOf(step.channels)) : M44d();
        Status planned = step.plan.plan(m_scene, step.node, step.channels);
        return planned ? planned : refuse(planned.text());
    }

    void freezeChannels(bool joint, Channels& c) const {
        if (joint)
            freezeJoint(c);
        else if (m_parts.apply)
            freezeTransform(c);
        else
            resetTransform(c);
    }

    void freezeJoint(Channels& c) const {
        if (m_parts.rotate && m_parts.apply && c.rotate != V3d(0.0)) {
            const V3d hint = c.jointOrient;
            c.jointOrient = eulerFromMatrix(
                eulerMatrix(c.rotate, c.rotateOrder) * eulerMatrix(c.jointOrient), kXYZ, &hint);
        }
        if (m_parts.orient)
            c.jointOrient = V3d(0.0);
        if (m_parts.rotate)
            c.rotate = V3d(0.0);
        if (m_parts.scale)
            c.scale = V3d(1.0);
    }

    void resetTransform(Channels& c) const {
        if (m_parts.translate)
            c.translate = V3d(0.0);
        if (m_parts.rotate)
            c.rotate = V3d(0.0);
        if (m_parts.scale) {
            c.scale = V3d(1.0);
            c.shear = V3d(0.0);
        }
    }

    // The pivots stay where they are in the world.
    void freezeTransform(Channels& c) const {
        if (m_parts.translate && m_parts.rotate && m_parts.scale) {
            const M44d old = localMatrixOf(c);
            c.rotatePivot = c.rotatePivot * old;
            c.scalePivot = c.scalePivot * old;
            c.rotatePivotTranslate = c.scalePivotTranslate = V3d(0.0);
        } else if (m_parts.translate) {
            c.rotatePivot += c.translate;
            c.scalePivot += c.translate;
        }
        resetTransform(c);
    }

    Status planShape(NodeHandle node, const M44d& pushed) {
        if (!m_scene.node(node)->type->is(kShapeType) || nearlyEqual(pushed, M44d(), 1e-12))
            return Status::ok();
        if (m_scene.instanceCount(node) > 1)
            return refuse(m_scene.names().shortest(node) + " is instanced");
        if (m_scene.isType(node, "locator")) {
            m_locators.emplace_back(node, pushed);
            return Status::ok();
        }
        PointStep step;
        step.set = allPoints(m_scene, node);
        step.points = shapePoints(m_scene, node);
        for (V3d& point : step.points)
            point = point * pushed;
        if (!step.points.empty())
            m_points.push_back(std::move(step));
        return Status::ok();
    }

    // A cross has a place and a size of its own, but no rotation.
    void moveLocator(NodeHandle locator, const M44d& pushed) {
        const Plug position = m_scene.findPlug(locator, "localPosition"),
                   size = m_scene.findPlug(locator, "localScale");
        m_scene.setVec3(position, m_scene.vec3(position) * pushed);
        m_scene.setVec3(size, m_scene.vec3(size) * decompose(pushed).scale);
    }

    const CommandCall& m_call;
    Scene& m_scene;
    const Parts& m_parts;
    std::vector<Step> m_steps;
    std::vector<PointStep> m_points;
    std::vector<std::pair<NodeHandle, M44d>> m_locators;
};

Status makeIdentity(const CommandCall& call, Value&) {
    std::vector<NodeHandle> nodes;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    const Parts parts = partsOf(call);
    // One that lies below another one is swept with it.
    std::vector<NodeHandle> tops;
    for (NodeHandle node : nodes) {
        if (!takesPart(call.scene(), node))
            return call.fail("'" + call.scene().node(node)->name +
                             "' has no transformation to freeze.");
        const bool below = std::any_of(nodes.begin(), nodes.end(), [&](NodeHandle other) {
            return other != node && call.scene().isAncestor(other, node);
        });
        if (!below && std::find(tops.begin(), tops.end(), node) == tops.end())
            tops.push_back(node);
    }
    Freeze freeze(call, parts);
    for (NodeHandle node : tops)
        if (Status done = freeze.plan(node); !done)
            return done;
    return freeze.apply();
}

const Command kFreezeCommands[] = {{"makeIdentity", kFreezeFlags, countOf(kFreezeFlags),
                                    makeIdentity, "Freezes or resets transformations."}};

}  // namespace

CommandTable freezeCommands() {
    return {kFreezeCommands, std::size(kFreezeCommands)};
}

}  // namespace torvel
