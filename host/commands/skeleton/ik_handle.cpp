// The command ikHandle.
#include "commands/skeleton/ik_create.h"
#include "script/session.h"
#include "nodes/ik/handle.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

const FlagRow kIkFlags[] = {
    {"disableHandles", "dh"},
    {"enableHandles", "eh"},
    {"endEffector", "ee", "s"},
    {"forceSolver", "fs", "b"},
    {"jointList", "jl", "", kQuery},
    {"name", "n", "s"},
    {"positionWeight", "pw", "d"},
    {"priority", "p", "i"},
    {"setupForRPsolver", "srp"},
    {"snapHandleFlagToggle", "shf", "b"},
    {"snapHandleToEffector", "see"},
    {"solver", "sol", "s"},
    {"startJoint", "sj", "s"},
    {"sticky", "s", "s"},
    {"weight", "w", "d"},
    // of the spline solver; taken so that they can be refused by name
    {"createCurve", "ccv", "b"},
    {"createRootAxis", "cra", "b"},
    {"curve", "c", "s"},
    {"numSpans", "ns", "i"},
    {"parentCurve", "pcv", "b"},
    {"rootOnCurve", "roc", "b"},
    {"rootTwistMode", "rtm", "b"},
    {"simplifyCurve", "scv", "b"},
    {"snapCurve", "snc", "b"},
    {"twistType", "tws", "s"},
};

constexpr const char* kSplineFlags[] = {
    "createCurve", "createRootAxis", "curve",         "numSpans",  "parentCurve",
    "rootOnCurve", "rootTwistMode",  "simplifyCurve", "snapCurve", "twistType"};
constexpr const char* kStickiness[] = {"off", "sticky", "superSticky"};

Status refuseSpline(const CommandCall& call) {
    for (const char* flag : kSplineFlags)
        if (call.has(flag))
            return call.fail(std::string("The flag '") + flag +
                             "' belongs to the spline solver, which is not evaluated here.");
    return Status::ok();
}

void setNumber(const CommandCall& call, NodeHandle handle, const char* attr, double value) {
    call.scene().setNumber(call.scene().findPlug(handle, attr), value);
}

// Plain values, in creation and in edit mode.
Status setPlain(const CommandCall& call, NodeHandle handle) {
    if (call.has("sticky")) {
        const std::string wanted = call.text("sticky");
        int value = -1;
        for (int i = 0; i < 3; ++i)
            value = wanted == kStickiness[i] ? i : value;
        if (value < 0)
            return call.fail("The flag 'sticky' takes off, sticky or superSticky, not '" + wanted +
                             "'.");
        setNumber(call, handle, "stickiness", value);
    }
    if (call.has("priority"))
        setNumber(call, handle, "priority", call.integer("priority"));
    if (call.has("weight"))
        setNumber(call, handle, "weight", call.number("weight"));
    if (call.has("positionWeight"))
        setNumber(call, handle, "poWeight", call.number("positionWeight"));
    if (call.has("snapHandleFlagToggle"))
        setNumber(call, handle, "snapEnable", call.flag("snapHandleFlagToggle"));
    if (call.has("disableHandles") || call.has("enableHandles"))
        setNumber(call, handle, "solverEnable", call.has("enableHandles"));
    return Status::ok();
}

// --- create --------------------------------------------------------------------------------------

// The ends by flag; those missing from the objects named or selected, in order.
Status endsOf(const CommandCall& call, IkWish& wish) {
    std::vector<NodeHandle> given;
    if (Status found = call.objectsOrSelection(given); !found)
        return found;
    std::size_t next = 0;
    for (const auto& [flag, end] :
         {std::pair{"startJoint", &wish.start}, std::pair{"endEffector", &wish.end}}) {
        if (call.has(flag)) {
            if (Status found = call.resolve(call.text(flag), *end); !found)
                return found;
        } else if (next < given.size()) {
            *end = given[next++];
        }
    }
    if (wish.start.isNull() || wish.end.isNull())
        return Status::failure(
            "Could not create IK handle: it needs a start joint and an end effector.");
    return Status::ok();
}

Status createHandle(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    IkWish wish;
    if (Status found = endsOf(call, wish); !found)
        return found;
    if (Status found = ikSolverNamed(scene, call.text("solver", "ikRPsolver"), wish.solver); !found)
        return found;
    wish.name = call.text("name");
    if (!wish.name.empty() && Names::legal(wish.name).empty())
        return Status::failure("New name has no legal characters.");
    NodeHandle handle, effector;
    if (Status done = createIkHandle(scene, wish, handle, effector); !done)
        return done;
    if (Status done = setPlain(call, handle); !done) {
        scene.deleteNodes(effector == wish.end ? std::vector{handle}
                                               : std::vector{handle, effector});
        return done;
    }
    scene.selection().replace(handle);
    result = Value::strings({scene.names().shortest(handle), scene.names().shortest(effector)});
    return Status::ok();
}

// --- edit ----------------------------------------------------------------------------------------

Status handlesOf(const CommandCall& call, std::vector<NodeHandle>& handles) {
    if (Status found = call.objectsOrSelection(handles); !found)
        return found;
    if (handles.empty())
        return call.fail("No IK handle was named and none is selected.");
    for (NodeHandle handle : handles)
        if (!call.scene().isType(handle, "ikHandle"))
            return call.fail("'" + call.scene().names().shortest(handle) + "' is no IK handle.");
    return Status::ok();
}

void reconnect(Scene& scene, const Plug& source, const Plug& target) {
    if (const Plug old = scene.source(target); !old.isNull())
        ignore(scene.disconnect(old, target));
    ignore(scene.connect(source, target));
}

Status editEnds(const CommandCall& call, NodeHandle handle) {
    Scene& scene = call.scene();
    const IkParts parts = ikPartsOf(scene, handle);
    NodeHandle start = parts.start, end = parts.effector;
    for (const auto& [flag, node] :
         {std::pair{"startJoint", &start}, std::pair{"endEffector", &end}})
        if (call.has(flag))
            if (Status found = call.resolve(call.text(flag), *node); !found)
                return found;
    const bool isEnd = isJoint(scene, end) || scene.isType(end, "ikEffector");
    if (!isJoint(scene, start) || !isEnd || start == end || !scene.isAncestor(start, end))
        return call.fail("The start joint must be above the end joint or effector.");
    if (Status done = effectorFor(scene, end, end); !done)
        return done;
    reconnect(scene, scene.findPlug(start, "message"), scene.findPlug(handle, "startJoint"));
    reconnect(scene, scene.findPlug(end, "handlePath"), scene.findPlug(handle, "endEffector"));
    return Status::ok();
}

Status editHandle(const CommandCall& call, NodeHandle handle) {
    Scene& scene = call.scene();
    if (call.has("startJoint") || call.has("endEffector"))
        if (Status done = editEnds(call, handle); !done)
            return done;
    if (call.has("solver")) {
        NodeHandle solver;
        if (Status found = ikSolverNamed(scene, call.text("solver"), solver); !found)
            return found;
        setSolver(scene, handle, solver);
    }
    if (Status done = setPlain(call, handle); !done)
        return done;
    if (call.has("snapHandleToEffector"))
        snapToEffector(scene, handle);
    if (call.has("setupForRPsolver")) {
        setPoleToBend(scene, handle);
        setNumber(call, handle, "twist", 0.0);
    }
    if (call.has("name"))
        scene.rename(handle, call.text("name"));
    return Status::ok();
}

Status editHandle(const CommandCall& call, Value& result) {
    std::vector<NodeHandle> handles;
    if (Status found = handlesOf(call, handles); !found)
        return found;
    for (NodeHandle handle : handles)
        if (Status done = editHandle(call, handle); !done)
            return done;
    std::vector<std::string> names;
    for (NodeHandle handle : handles)
        names.push_back(call.scene().names().shortest(handle));
    result = Value::strings(names);
    return Status::ok();
}

// --- query ---------------------------------------------------------------------------------------

Value nameOf(const Scene& scene, NodeHandle node) {
    return node.isNull() ? Value() : Value(scene.names().shortest(node));
}

Status query(const CommandCall& call, Value& result) {
    const Scene& scene = call.scene();
    std::vector<NodeHandle> handles;
    if (Status found = handlesOf(call, handles); !found)
        return found;
    const NodeHandle handle = handles.front();
    const IkParts parts = ikPartsOf(scene, handle);
    const auto number = [&](const char* attr) {
        return scene.number(scene.findPlug(handle, attr));
    };
    if (call.has("startJoint"))
        result = nameOf(scene, parts.start);
    else if (call.has("endEffector"))
        result = nameOf(scene, parts.effector);
    else if (call.has("solver"))
        result = nameOf(scene, parts.solver);
    else if (call.has("name"))
        result = nameOf(scene, handle);
    else if (call.has("priority"))
        result = Value(static_cast<int>(number("priority")));
    else if (call.has("weight"))
        result = Value(number("weight"));
    else if (call.has("positionWeight"))
        result = Value(number("poWeight"));
    else if (call.has("sticky"))
        result = Value(kStickiness[number("stickiness") == 1.0   ? 1
                                   : number("stickiness") == 2.0 ? 2
                                                                 : 0]);
    else if (call.has("snapHandleFlagToggle"))
        result = Value(number("snapEnable") != 0.0);
    else if (call.has("enableHandles"))
        result = Value(number("solverEnable") != 0.0);
    else if (call.has("disableHandles"))
        result = Value(number("solverEnable") == 0.0);
    else if (call.has("forceSolver"))
        result = Value(true);
    else if (call.has("jointList")) {
        std::vector<std::string> names;
        for (NodeHandle joint : parts.joints)
            names.push_back(scene.names().shortest(joint));
        result = Value::strings(names);
    } else {
        return call.fail("Nothing that can be queried was named.");
    }
    return Status::ok();
}

Status ikHandle(const CommandCall& call, Value& result) {
    if (Status allowed = refuseSpline(call); !allowed)
        return allowed;
    if (call.isQuery())
        return query(call, result);
    return call.isEdit() ? editHandle(call, result) : createHandle(call, result);
}

const Command kIkCommands[] = {
    {"ikHandle", kIkFlags, countOf(kIkFlags), ikHandle, "Makes, changes and reads IK handles."}};

}  // namespace

CommandTable ikCommands() {
    return {kIkCommands, std::size(kIkCommands)};
}

}  // namespace torvel
