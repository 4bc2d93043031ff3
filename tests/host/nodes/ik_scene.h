#pragma once

#include <random>

#include "nodes/ik/handle.h"
#include "node_scene.h"

namespace torvel::test {

/// Chains with handles, wired by hand as a file would wire them.
class IkScene : public NodeScene {
  protected:
    /// A joint `offset` away from its parent, linked as the joint command links it.
    NodeHandle joint(const char* name, NodeHandle parent, const V3d& offset) {
        const NodeHandle made = make("joint", name, parent);
        set(made, "translate", offset.x, offset.y, offset.z);
        if (isJoint(scene, parent))
            link(parent, "scale", made, "inverseScale");
        return made;
    }
    /// Handle `name` at the end joint's place from `start` to `end`.
    NodeHandle handleOn(NodeHandle start, NodeHandle end, const char* name = "handle",
                        const char* solverType = "ikRPsolver", NodeHandle parent = {}) {
        NodeHandle solver = scene.names().lookUp(solverType);
        if (solver.isNull())
            solver = make(solverType, solverType);
        const NodeHandle above = scene.node(end)->parents.front();
        const NodeHandle effector = make("ikEffector", "effector", above);
        link(end, "translate", effector, "translate");
        const V3d place = position(end);
        const NodeHandle handle = make("ikHandle", name, parent);
        const V3d local = place * inverseOf(parentWorldMatrix(scene, handle));
        set(handle, "translate", local.x, local.y, local.z);
        link(start, "message", handle, "startJoint");
        link(effector, "handlePath", handle, "endEffector");
        link(solver, "message", handle, "ikSolver");
        return handle;
    }
};

/// Angle in degrees between where the middle points off the line root-end and the direction
/// `side`.
inline double sideError(const V3d& root, const V3d& knee, const V3d& end, const V3d& side) {
    const V3d line = (end - root).normalized();
    const V3d off = (knee - root) - line * (knee - root).dot(line),
              wanted = side - line * side.dot(line);
    return std::atan2(off.cross(wanted).length(), off.dot(wanted)) * kRadToDeg;
}

/// The same numbers in every run.
class Dice {
  public:
    explicit Dice(unsigned seed) : m_engine(seed) {}
    double in(double low, double high) { return low + (high - low) * (m_engine() / 4294967296.0); }
    V3d vector(double size) { return {in(-size, size), in(-size, size), in(-size, size)}; }
    V3d direction() {
        for (;;)
            if (const V3d v = vector(1.0); v.length() > 0.2 && v.length() < 1.0)
                return v.normalized();
    }
    int below(int count) { return static_cast<int>(in(0.0, count)); }

  private:
    std::mt19937 m_engine;
};

}  // namespace torvel::test
