// How the outputs of a constraint reach the channels of its object.
#include "edit/channels.h"
#include "edit/constraint/edit.h"

namespace torvel {
namespace {

constexpr const char* kAxes = "XYZ";

Plug blendPlug(const Scene& scene, NodeHandle blend, const char* channel, int axis,
               const char* side) {
    // "inTranslateX1", "outRotateZ"
    const bool moves = std::string_view(channel) == "translate";
    const bool out = *side == '\0';
    return scene.findPlug(blend, std::string(out ? "out" : "in") +
                                     (moves ? "Translate" : "Rotate") + kAxes[axis] + side);
}

// The attribute on the object that tells how much of the constraint comes through.
Plug blendControl(Scene& scene, NodeHandle object, const char* name) {
    if (const Plug there = scene.findPlug(object, name); !there.isNull())
        return there;
    AttrInfo info;
    info.longName = info.shortName = name;
    info.defaultValue = 1.0;
    info.softMinimum = 0.0;
    info.softMaximum = 1.0;
    info.flags = kDynamic | kKeyable;
    AttrIndex made = kNoAttr;
    return scene.addAttribute(object, info, kNoAttr, made) ? Plug(object, made) : Plug();
}

Status makeBlend(Scene& scene, const ConstraintKind& kind, NodeHandle object, NodeHandle& blend) {
    if (Status done = scene.createNode("pairBlend", {}, {}, blend); !done)
        return done;
    ignore(
        scene.connect(scene.findPlug(object, "rotateOrder"), scene.findPlug(blend, "rotateOrder")));
    const Plug control = blendControl(scene, object, kind.blendAttr);
    return control.isNull() ? Status::ok()
                            : scene.connect(control, scene.findPlug(blend, "weight"));
}

class Driving {
  public:
    Driving(Scene& scene, const ConstraintKind& kind, NodeHandle constraint)
        : m_scene(scene),
          m_kind(kind),
          m_object(constrainedObject(scene, constraint)),
          m_constraint(constraint) {}

    Status run(unsigned skipped) {
        for (const auto pass : {&Driving::check, &Driving::drive})
            for (std::size_t i = 0; i < m_kind.outputs.size(); ++i)
                for (int axis = 0; axis < 3; ++axis)
                    if (!(skipped & (1u << (3 * i + static_cast<unsigned>(axis)))))
                        if (Status done = (this->*pass)(m_kind.outputs[i], axis); !done)
                            return done;
        return Status::ok();
    }

    void release() {
        for (const ConstraintLink& row : m_kind.outputs)
            for (int axis = 0; axis < 3; ++axis)
                ignore(m_scene.disconnect(sourceOf(row, axis), targetOf(row, axis)));
    }

  private:
    Plug sourceOf(const ConstraintLink& row, int axis) const {
        return m_scene.child(m_scene.findPlug(m_constraint, row.own), axis);
    }
    Plug targetOf(const ConstraintLink& row, int axis) const {
        return m_scene.child(m_scene.findPlug(m_object, row.other), axis);
    }
    bool canMix(const Plug& target) const {
        return m_kind.blendAttr && isKeyed(m_scene, target) && !m_scene.source(target).isNull();
    }
    bool drivesAlready(const Plug& source, const Plug& target) const {
        const Plug old = m_scene.source(target);
        return old == source || (m_scene.isType(old.node, "pairBlend") &&
                                 constraintFeeds(m_scene, m_constraint, target.node) &&
                                 !m_scene.targets(source).empty());
    }

    Status check(const ConstraintLink& row, int axis) {
        const Plug source = sourceOf(row, axis), target = targetOf(row, axis);
        if (target.isNull())
            return Status::failure("'" + m_scene.node(m_object)->name + "' has no attribute '" +
                                   row.other + "'.");
        const Plug old = m_scene.effectiveSource(target);
        if (drivesAlready(source, target))
            return Status::ok();
        if (m_scene.isLocked(target))
            return Status::failure("Connection not made: '" + m_scene.plugName(source) + "' -> '" +
                                   m_scene.plugName(target) +
                                   "'.  Destination attribute must be writable.");
        if (old.isNull() || canMix(target))
            return Status::ok();
        return Status::failure("'" + m_scene.plugName(target) +
                               "' already has an incoming connection from '" +
                               m_scene.plugName(old) + "'.");
    }

    Status drive(const ConstraintLink& row, int axis) {
        const Plug source = sourceOf(row, axis), target = targetOf(row, axis);
        if (drivesAlready(source, target))
            return Status::ok();
        return canMix(target) ? mix(row.other, axis, source, m_scene.source(target), target)
                              : m_scene.connect(source, target);
    }

    Status mix(const char* channel, int axis, const Plug& source, const Plug& keys,
               const Plug& target) {
        if (m_blend.isNull())
            if (Status done = makeBlend(m_scene, m_kind, m_object, m_blend); !done)
                return done;
        Status done = m_scene.disconnect(keys, target);
        if (done)
            done = m_scene.connect(keys, blendPlug(m_scene, m_blend, channel, axis, "1"));
        if (done)
            done = m_scene.connect(source, blendPlug(m_scene, m_blend, channel, axis, "2"));
        return done ? m_scene.connect(blendPlug(m_scene, m_blend, channel, axis, ""), target)
                    : done;
    }

    Scene& m_scene;
    const ConstraintKind& m_kind;
    NodeHandle m_object, m_constraint, m_blend;
};

}  // namespace

Status driveObject(Scene& scene, const ConstraintKind& kind, NodeHandle constraint,
                   unsigned skipped) {
    return Driving(scene, kind, constraint).run(skipped);
}

void releaseObject(Scene& scene, const ConstraintKind& kind, NodeHandle constraint) {
    Driving(scene, kind, constraint).release();
}

}  // namespace torvel
