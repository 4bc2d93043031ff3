#include "commands/skeleton/ik_create.h"

#include <cmath>

#include "nodes/ik/handle.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

constexpr double kPoleLength = 2.0;  // only the direction matters

Status refused(const std::string& why) {
    return Status::failure("Could not create IK handle: " + why);
}

void link(Scene& scene, NodeHandle from, const char* source, NodeHandle to, const char* target) {
    const Plug destination = scene.findPlug(to, target);
    if (const Plug old = scene.source(destination); !old.isNull())
        ignore(scene.disconnect(old, destination));
    ignore(scene.connect(scene.findPlug(from, source), destination));
}

bool isEvaluated(std::string_view type) {
    return type == "ikRPsolver" || type == "ikSCsolver";
}

Status checkEnds(const Scene& scene, const IkWish& wish) {
    const auto name = [&](NodeHandle node) { return "'" + scene.names().shortest(node) + "'"; };
    if (!isJoint(scene, wish.start))
        return refused("the start " + name(wish.start) + " is no joint.");
    const bool isEffector = scene.isType(wish.end, "ikEffector");
    if (!isEffector && !isJoint(scene, wish.end))
        return refused("the end " + name(wish.end) + " is no joint and no effector.");
    if (wish.start == wish.end)
        return refused("start and end are the same joint, " + name(wish.start) + ".");
    if (!scene.isAncestor(wish.start, wish.end))
        return refused(name(wish.start) + " is not above " + name(wish.end) + ".");
    return Status::ok();
}

bool isZero(const V3d& v) {
    return std::fabs(v.x) + std::fabs(v.y) + std::fabs(v.z) < 1e-12;
}

// A bent chain whose joints never learned a preferred bend would snap straight.
void learnPreferredAngles(Scene& scene, const std::vector<NodeHandle>& joints) {
    bool learned = false, bent = false;
    for (NodeHandle joint : joints) {
        learned = learned || !isZero(scene.vec3(Plug(joint, jointAttrs().preferredAngle)));
        bent = bent || !isZero(scene.vec3(Plug(joint, transformAttrs().rotate)));
    }
    for (NodeHandle joint : joints)
        if (!learned && bent)
            scene.setVec3(Plug(joint, jointAttrs().preferredAngle),
                          scene.vec3(Plug(joint, transformAttrs().rotate)));
}

// The orientation of a single-chain handle is that of its start joint.
void turnToStart(Scene& scene, NodeHandle handle, NodeHandle start) {
    const M44d world = rotationPart(worldMatrix(scene, start));
    const M44d local = world * rotationPart(parentWorldMatrix(scene, handle)).transposed();
    const Plug rotate(handle, transformAttrs().rotate);
    const int order = static_cast<int>(scene.number(Plug(handle, transformAttrs().rotateOrder)));
    if (scene.isSettable(rotate))
        scene.setVec3(rotate, eulerFromMatrix(local, order));
}

V3d perpendicular(const V3d& v, const V3d& unitLine) {
    return v - unitLine * v.dot(unitLine);
}

// In the world: from the line between the ends to the joint farthest off it; the up side of a
// straight chain.
V3d bendDirection(const Scene& scene, const std::vector<NodeHandle>& joints, const V3d& end) {
    const V3d root = worldPosition(scene, joints.front()), line = (end - root).normalized();
    V3d off(0.0);
    for (NodeHandle joint : joints)
        if (const V3d here = perpendicular(worldPosition(scene, joint) - root, line);
            here.length() > off.length())
            off = here;
    if (off.length() > 1e-6 * (end - root).length() && off.length() > 0.0)
        return off.normalized();
    const V3d up = perpendicular(V3d(0, 1, 0), line), side = perpendicular(V3d(0, 0, 1), line);
    return (up.length() > 1e-3 ? up : side).normalized();
}

}  // namespace

Status ikSolverNamed(Scene& scene, const std::string& name, NodeHandle& solver) {
    solver = scene.names().lookUp(name);
    const bool exists = scene.isType(solver, "ikSolver");
    const std::string type = exists ? scene.typeName(solver) : name;
    if (!exists &&
        (!scene.types().find(name) || !scene.types().find(name)->derivesFrom("ikSolver")))
        return refused("there is no solver '" + name + "'.");
    if (!isEvaluated(type))
        return refused("the solver '" + name + "' is not evaluated here.");
    if (exists)
        return Status::ok();
    if (Status done = scene.createNode(name, name, {}, solver); !done)
        return done;
    const Plug list = scene.findPlug(scene.names().lookUp("ikSystem"), "ikSolver");
    if (!list.isNull())
        ignore(scene.connect(scene.findPlug(solver, "message"),
                             scene.element(list, scene.nextAvailable(list))));
    return Status::ok();
}

Status effectorFor(Scene& scene, NodeHandle end, NodeHandle& effector) {
    effector = end;
    if (scene.isType(end, "ikEffector"))
        return Status::ok();
    const NodeHandle above = scene.node(end)->parents.front();
    if (Status done =
            scene.createNode("ikEffector", scene.names().numbered("effector"), above, effector);
        !done)
        return done;
    scene.setNumber(scene.findPlug(effector, "visibility"), 0.0);
    scene.setNumber(scene.findPlug(effector, "hideDisplay"), 1.0);
    for (const char* attr : {"translateX", "translateY", "translateZ", "offsetParentMatrix"})
        link(scene, end, attr, effector, attr);
    return Status::ok();
}

void snapToEffector(Scene& scene, NodeHandle handle) {
    const IkParts parts = ikPartsOf(scene, handle);
    if (parts.path.empty())
        return;
    const V3d place =
        worldPosition(scene, parts.effector) * inverseOf(parentWorldMatrix(scene, handle));
    const Plug translate(handle, transformAttrs().translate);
    for (int axis = 0; axis < 3; ++axis)
        if (scene.isSettable(scene.child(translate, axis)))
            scene.setNumber(scene.child(translate, axis), place[axis]);
}

void setPoleToBend(Scene& scene, NodeHandle handle) {
    const IkParts parts = ikPartsOf(scene, handle);
    const Plug pole = scene.findPlug(handle, "poleVector");
    if (parts.joints.empty() || !scene.isSettable(pole))
        return;
    const V3d direction = bendDirection(scene, parts.joints, worldPosition(scene, parts.effector));
    const V3d local = direction * linearPart(inverseOf(parentWorldMatrix(scene, handle)));
    scene.setVec3(pole, local.normalized() * kPoleLength);
}

Status createIkHandle(Scene& scene, const IkWish& wish, NodeHandle& handle, NodeHandle& effector) {
    if (Status fits = checkEnds(scene, wish); !fits)
        return fits;
    if (Status done = effectorFor(scene, wish.end, effector); !done)
        return done;
    const std::string name = wish.name.empty() ? scene.names().numbered("ikHandle") : wish.name;
    if (Status done = scene.createNode("ikHandle", name, {}, handle); !done)
        return done;
    // While the solver is not tied yet, the chain keeps its pose: what depends on it is read and
    // set now.
    link(scene, wish.start, "message", handle, "startJoint");
    link(scene, effector, "handlePath", handle, "endEffector");
    scene.setNumber(scene.findPlug(handle, "rootOnCurve"), 1.0);
    const std::vector<NodeHandle> joints = ikPartsOf(scene, handle).joints;
    learnPreferredAngles(scene, joints);
    forgetFkRotates(scene, joints);
    snapToEffector(scene, handle);
    setPoleToBend(scene, handle);
    setSolver(scene, handle, wish.solver);
    return Status::ok();
}

void setSolver(Scene& scene, NodeHandle handle, NodeHandle solver) {
    if (scene.isType(solver, "ikSCsolver"))
        turnToStart(scene, handle, ikPartsOf(scene, handle).start);
    link(scene, solver, "message", handle, "ikSolver");
}

}  // namespace torvel
